// SPDX-License-Identifier: MIT
#include <memory>

#include "command.h"
#include "common_options.h"
#include "coverage.h"

namespace caption
{

Command AddCoverage(CLI::App &tool)
{
    struct Arguments {
        SourceOptions source;
        Options options;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command =
        AddCommand(tool, "coverage", "List the characters that no font has, or none of those named",
                   {"kova-caption coverage film.srt", "kova-caption coverage film.srt --font sets/Sans.ttf"});

    AddSource(command, arguments->source);
    AddFonts(command, arguments->options);
    return {&command, [arguments](std::FILE *out) { Coverage(arguments->source, arguments->options, out); }};
}

} // namespace caption
