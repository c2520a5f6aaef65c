// SPDX-License-Identifier: MIT
#include <memory>

#include "commands/command.h"
#include "commands/common_options.h"
#include "commands/reference.h"

namespace caption
{

Command AddCompletion(CLI::App &tool)
{
    static constexpr Choice<int> shells[] = {{"bash", 0}};
    const auto shell = std::make_shared<int>();
    CLI::App &command = AddCommand(tool, "completion", "Print the completion script for a shell",
                                   {"source <(kova-caption completion bash)"});

    AddChoice(command, "SHELL", *shell, "bash", shells, "Shell")->required();
    return {&command, [&tool, shell](std::FILE *out) { std::fputs(BashCompletion(tool).c_str(), out); }};
}

} // namespace caption
