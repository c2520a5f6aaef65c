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
                "  0  success\n"
                "  1  failure; one line on standard error says what is wrong and what to do\n"
                "  2  invalid command line\n"
                "\n"
                "Environment:\n"
                "  DISPLAY     X server to open a window on; without one only layer 1 is available, and it\n"
                "              is drawn in memory\n"
                "  DFBARGS     settings of DirectFB; used unchanged if set\n"
                "  KOVA_DEBUG  log level of the library, 0 to 5\n"
                "  XDG_CONFIG_HOME\n"
                "              the viewer's settings are in kova-caption/settings there [~/.config]");
    return {AddPlay(tool),     AddSnapshot(tool), AddSheet(tool),     AddInfo(tool),     AddList(tool),
            AddCoverage(tool), AddEdges(tool),    AddPreview(tool),   AddSettings(tool), AddGenerate(tool),
            AddBench(tool),    AddMan(tool),      AddCompletion(tool)};
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
