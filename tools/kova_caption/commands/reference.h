// SPDX-License-Identifier: MIT
// The command line described for the shell and for man, made from the command line itself, so that neither
// says anything else than --help.
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

// In roff.
std::string ManualPage(const CLI::App &tool);

} // namespace caption

#endif
