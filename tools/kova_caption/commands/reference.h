// SPDX-License-Identifier: MIT
// The manual page and the shell completion, generated from the command line itself so that they agree with
// --help.
#ifndef KOVA_CAPTION_COMMANDS_REFERENCE_H
#define KOVA_CAPTION_COMMANDS_REFERENCE_H

#include <string>
#include <vector>

namespace CLI
{
class App;
class Option;
} // namespace CLI

namespace caption
{

std::string BashCompletion(const CLI::App &tool);

// The manual page in roff.
std::string ManualPage(const CLI::App &tool);

} // namespace caption

#endif
