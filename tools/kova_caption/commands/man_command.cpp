// SPDX-License-Identifier: MIT
#include "command.h"
#include "common_options.h"
#include "reference.h"

namespace caption
{

Command AddMan(CLI::App &tool)
{
    CLI::App &command =
        AddCommand(tool, "man", "Print the manual page", {"kova-caption man > kova-caption.1"});

    return {&command, [&tool](std::FILE *out) { std::fputs(ManualPage(tool).c_str(), out); }};
}

} // namespace caption
