// SPDX-License-Identifier: MIT
// What stops the tool, in words for its user: one line that says what is wrong and what to do.
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

// The command line itself is wrong.
class WrongUsage : public Failure
{
public:
    using Failure::Failure;
};

} // namespace caption

#endif
