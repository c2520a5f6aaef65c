#include "command.h"

#include <CLI/CLI.hpp>

namespace caption
{

std::vector<Command> AddCommands(CLI::App &tool)
{
    tool.require_subcommand(1);
    return {AddSnapshot(tool), AddSheet(tool), AddCoverage(tool),
            AddPlay(tool),     AddEdges(tool), AddBench(tool)};
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
