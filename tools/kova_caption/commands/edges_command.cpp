// SPDX-License-Identifier: MIT
#include <memory>

#include "command.h"
#include "common_options.h"
#include "edge_sheet.h"

namespace caption
{

Command AddEdges(CLI::App &tool)
{
    struct Arguments {
        Options options;
        std::string file;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command = AddCommand(
        tool, "edges", "Write one PNG with every edge in every colour mode, enlarged",
        {"kova-caption edges -o edges.png",
         "kova-caption edges -o edges.png --color FFFF00 --edge-color 000080 --background 808080"});

    command.add_option("-o", arguments->file, "The picture")->type_name("PNG")->required();
    AddLook(command, arguments->options);
    AddBackground(command, arguments->options);
    return {&command, [arguments](std::FILE *out) {
                WritePng(EdgeSheet(arguments->options), arguments->file);
                std::fprintf(out, "%s\n", arguments->file.c_str());
            }};
}

} // namespace caption
