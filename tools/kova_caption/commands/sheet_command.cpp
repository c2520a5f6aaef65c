// SPDX-License-Identifier: MIT
#include <memory>

#include "command.h"
#include "common_options.h"
#include "sheet.h"

namespace caption
{

Command AddSheet(CLI::App &tool)
{
    struct Arguments {
        SourceOptions source;
        Options options;
        int columns = 0;
        std::string picture;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command = AddCommand(
        tool, "sheet", "Write one PNG with every cue of a source, small, and the time at which it comes",
        {"kova-caption sheet film.srt -o film.png", "kova-caption sheet film.srt -o film.png --columns 5"});

    AddSource(command, arguments->source);
    command.add_option("-o", arguments->picture, "The picture")->type_name("PNG")->required();
    command
        .add_option("--columns", arguments->columns, "Cues side by side (about as many as below each other)")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, 1000).description(""));
    AddPlace(command, arguments->options);
    AddLetters(command, arguments->options);
    AddLook(command, arguments->options);
    AddBackground(command, arguments->options);
    return {&command, [arguments](std::FILE *out) {
                WritePng(Sheet(arguments->source, arguments->columns, arguments->options),
                         arguments->picture);
                std::fprintf(out, "%s\n", arguments->picture.c_str());
            }};
}

} // namespace caption
