// SPDX-License-Identifier: MIT
#include <memory>
#include <string>

#include "base/options.h"
#include "commands/command.h"
#include "commands/common_options.h"
#include "drawing/directfb_system.h"
#include "drawing/label.h"
#include "drawing/picture.h"

namespace caption
{

static const Size g_sample = {92, 46};
static const int g_scale = 4;
static const int g_gap = 8;
static const int g_textHeight = 32;
static const Size g_label = {190, 40};
static const int g_labelHeight = 24;

static void PutLabels(Picture &sheet, const Options &options, Fonts &fonts, Size cell)
{
    Options plain = options;
    plain.mode = ColorMode::PALETTE;
    plain.plane = g_label;
    Display display(plain);
    Labels labels(display, fonts);

    for (std::size_t row = 0; row < std::size(g_edges); ++row) {
        const int y = g_label.height + int(row) * cell.height + (cell.height - g_labelHeight) / 2;
        labels.Put(sheet, g_edges[row].name, g_labelHeight, g_gap, y);
    }
    for (std::size_t column = 0; column < std::size(g_modes); ++column) {
        labels.Put(sheet, g_modes[column].name, g_labelHeight,
                   g_label.width + int(column) * cell.width + g_gap, g_gap / 2);
    }
}

// One picture with every edge in every colour mode, enlarged until its pixels are visible. Uses the font and
// the colours of the options; each colour mode has a display of its own.
static Picture EdgeSheet(const Options &options)
{
    const int columns = int(std::size(g_modes));
    const int rows = int(std::size(g_edges));
    const Size cell = {g_sample.width * g_scale + g_gap, g_sample.height * g_scale + g_gap};
    Fonts fonts(options);
    ChooseDirectFBSystem(options);
    Picture sheet({g_label.width + columns * cell.width, g_label.height + rows * cell.height},
                  options.background.value_or(g_sheetBackground));

    PutLabels(sheet, options, fonts, cell);
    for (int column = 0; column < columns; ++column) {
        Options each = options;
        each.mode = g_modes[column].value;
        each.plane = g_sample;
        Display display(each);
        for (int row = 0; row < rows; ++row) {
            display.SetEdge(g_edges[row].value);
            display.Clear();
            DrawLine(display, fonts, {{"Ágy", {}}}, g_textHeight, 4, 4);
            PasteEnlarged(sheet, display.Present(), g_label.width + column * cell.width,
                          g_label.height + row * cell.height, g_scale);
        }
    }
    return sheet;
}

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

    command.add_option("-o", arguments->file, "Output file")->type_name("PNG")->required();
    AddLook(command, arguments->options);
    AddBackground(command, arguments->options);
    return {&command, [arguments](std::FILE *out) {
                WritePng(EdgeSheet(arguments->options), arguments->file);
                std::fprintf(out, "%s\n", arguments->file.c_str());
            }};
}

} // namespace caption
