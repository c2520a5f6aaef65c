// SPDX-License-Identifier: MIT
// A command of the tool: what it adds to the command line, and its work.
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
    const CLI::App *line; // its part of the command line: its options once that is parsed
    std::function<void(std::FILE *out)>
        run; // `out` is standard output; the library's own prints go elsewhere
};

// Each stands in a file of its own, with its options, its help and its examples.
Command AddBench(CLI::App &tool);
Command AddCompletion(CLI::App &tool);
Command AddCoverage(CLI::App &tool);
Command AddEdges(CLI::App &tool);
Command AddInfo(CLI::App &tool);
Command AddList(CLI::App &tool);
Command AddMan(CLI::App &tool);
Command AddPlay(CLI::App &tool);
Command AddPreview(CLI::App &tool);
Command AddSheet(CLI::App &tool);
Command AddSnapshot(CLI::App &tool);

// Every command, in the order in which the help lists them.
std::vector<Command> AddCommands(CLI::App &tool);

// What the commands begin with. Help, manual page and completion are all made from what stands here; an
// example is a whole line as it is typed, and tests type it.
CLI::App &AddCommand(CLI::App &tool, const std::string &name, const std::string &purpose,
                     const std::vector<std::string> &examples);

} // namespace caption

#endif
