// SPDX-License-Identifier: MIT
#include "commands/command.h"

#include <CLI/CLI.hpp>

namespace caption
{

std::vector<Command> AddCommands(CLI::App &tool)
{
    tool.require_subcommand(1);
    tool.set_version_flag("--version", KOVA_VERSION, "Print the version and exit");
    tool.footer("Exit status:\n"
                "  0  done\n"
                "  1  something could not be done; one line says what, and what to do\n"
                "  2  the command line is wrong\n"
                "\n"
                "Environment:\n"
                "  DISPLAY     the X server to open a window on; without one nothing needs a screen, and\n"
                "              layer 1 alone is there\n"
                "  DFBARGS     DirectFB's own settings, taken as they are if set\n"
                "  KOVA_DEBUG  how much the library tells, 0 to 5");
    return {AddPlay(tool),  AddSnapshot(tool), AddSheet(tool),     AddInfo(tool),
            AddList(tool),  AddCoverage(tool), AddEdges(tool),     AddPreview(tool),
            AddBench(tool), AddMan(tool),      AddCompletion(tool)};
}

CLI::App &AddCommand(CLI::App &tool, const std::string &name, const std::string &purpose,
                     const std::vector<std::string> &examples)
{
    std::string footer = "Examples:";

    for (const std::string &example : examples) footer += "\n  " + example;
    CLI::App &command = *tool.add_subcommand(name, purpose);
    command.footer(footer);
    return command;
}

} // namespace caption
