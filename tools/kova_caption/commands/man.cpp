// SPDX-License-Identifier: MIT
#include "commands/command.h"
#include "commands/common_options.h"
#include "commands/reference.h"

namespace caption
{

Command AddMan(CLI::App &tool)
{
    CLI::App &command =
        AddCommand(tool, "man", "Print the manual page", {"kova-caption man > kova-caption.1"});

    return {&command, [&tool](std::FILE *out) { std::fputs(ManualPage(tool).c_str(), out); }};
}

} // namespace caption
