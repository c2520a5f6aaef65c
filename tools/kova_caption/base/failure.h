// SPDX-License-Identifier: MIT
// Errors that end the tool. The text is one line for its user that says what is wrong and what to do.
#ifndef KOVA_CAPTION_BASE_FAILURE_H
#define KOVA_CAPTION_BASE_FAILURE_H

#include <stdexcept>

namespace caption
{

class Failure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The command line is invalid.
class WrongUsage : public Failure
{
public:
    using Failure::Failure;
};

} // namespace caption

#endif
