// SPDX-License-Identifier: MIT
#include <memory>

#include "bench.h"
#include "command.h"
#include "common_options.h"

namespace caption
{

Command AddBench(CLI::App &tool)
{
    struct Arguments {
        Options options;
        int milliseconds = 50;
        bool json = false;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command =
        AddCommand(tool, "bench", "Measure what captions cost here, every edge in every colour mode",
                   {"kova-caption bench --headless", "kova-caption bench --plane 640x360 --json"});

    AddPlane(command, arguments->options);
    AddLook(command, arguments->options);
    command.add_option("--time", arguments->milliseconds, "Milliseconds to spend on each figure (50)")
        ->type_name("MILLISECONDS")
        ->check(CLI::Range(1, 10000).description(""));
    command.add_flag("--json", arguments->json, "For programs, in microseconds throughout");
    return {&command, [arguments](std::FILE *out) {
                Bench(arguments->options, std::chrono::milliseconds(arguments->milliseconds), arguments->json,
                      out);
            }};
}

} // namespace caption
