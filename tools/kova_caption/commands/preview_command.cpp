// SPDX-License-Identifier: MIT
#include <memory>

#include "command.h"
#include "common_options.h"
#include "preview.h"

namespace caption
{

Command AddPreview(CLI::App &tool)
{
    struct Arguments {
        Options options;
        std::vector<std::string> fonts;
        std::string file;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command = AddCommand(
        tool, "preview", "Write one PNG with every edge, size and colour of each font on three backgrounds",
        {"kova-caption preview -o settings.png", "kova-caption preview -o settings.png --font sets/Sans.ttf",
         "kova-caption preview -o settings.png --height 20 --edge-color 000080"});

    command.add_option("-o", arguments->file, "The picture")->type_name("PNG")->required();
    command
        .add_option("--font", arguments->fonts,
                    "A font to show; may be given several times (DejaVu Sans, Serif and Sans Mono)")
        ->type_name("FILE")
        ->allow_extra_args(false);
    command.add_option("--height", arguments->options.height, "Height of the letters' em at 100 % (32)")
        ->type_name("PIXELS")
        ->check(CLI::Range(1, 77).description(""));
    AddEdgeColor(command, arguments->options);
    AddHeadless(command, arguments->options);
    return {&command, [arguments](std::FILE *out) {
                WritePng(Preview(arguments->fonts, arguments->options), arguments->file);
                std::fprintf(out, "%s\n", arguments->file.c_str());
            }};
}

} // namespace caption
