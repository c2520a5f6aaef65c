// SPDX-License-Identifier: MIT
// A command of the tool: its part of the command line, and its action.
#ifndef KOVA_CAPTION_COMMANDS_COMMAND_H
#define KOVA_CAPTION_COMMANDS_COMMAND_H

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace CLI
{
class App;
}

namespace caption
{

struct Command {
    const CLI::App *line;                    // its part of the command line
    std::function<void(std::FILE *out)> run; // `out` is standard output, without what the library prints
};

// Each is defined in a file of its own, with its options, help and examples.
Command AddBench(CLI::App &tool);
Command AddCompletion(CLI::App &tool);
Command AddCoverage(CLI::App &tool);
Command AddEdges(CLI::App &tool);
Command AddGenerate(CLI::App &tool);
Command AddInfo(CLI::App &tool);
Command AddList(CLI::App &tool);
Command AddMan(CLI::App &tool);
Command AddPlay(CLI::App &tool);
Command AddPreview(CLI::App &tool);
Command AddSettings(CLI::App &tool);
Command AddSheet(CLI::App &tool);
Command AddSnapshot(CLI::App &tool);

// All commands, in the order of the help.
std::vector<Command> AddCommands(CLI::App &tool);

// Adds a command to the command line. Help, manual page and completion are generated from it. An example is a
// complete command line, and tests run it.
CLI::App &AddCommand(CLI::App &tool, const std::string &name, const std::string &purpose,
                     const std::vector<std::string> &examples);

} // namespace caption

#endif
