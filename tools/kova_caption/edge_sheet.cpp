// SPDX-License-Identifier: MIT
#include "edge_sheet.h"

#include <string>

#include "directfb_system.h"
#include "lettering.h"

namespace caption
{

static const Size g_sample = {92, 46};
static const int g_scale = 4;
static const int g_gap = 8;
static const int g_textHeight = 32;
static const Size g_label = {190, 40};
static const int g_labelHeight = 24;

static Picture Draw(Display &display, Fonts &fonts, const std::string &text, int height)
{
    display.Clear();
    Write(display, fonts, {{text, {}}}, height, 4, 4);
    return display.Present();
}

Picture EdgeSheet(const Options &options)
{
    const int columns = int(std::size(g_modes));
    const int rows = int(std::size(g_edges));
    const Size cell = {g_sample.width * g_scale + g_gap, g_sample.height * g_scale + g_gap};
    const Color background = options.background.value_or(Color{112, 128, 144});
    Fonts fonts(options);
    ChooseDirectFBSystem(options);
    Picture sheet({g_label.width + columns * cell.width, g_label.height + rows * cell.height},
                  {background.red, background.green, background.blue, 255});

    for (int column = 0; column < columns; ++column) {
        Options each = options;
        each.mode = g_modes[column].value;
        each.plane = g_label;
        if (column == 0) {
            // The names stand in pictures of their own, drawn by the same means.
            Options plain = options;
            plain.mode = ColorMode::PALETTE;
            plain.plane = g_label;
            Display labels(plain);
            labels.SetEdge(KOVA_TEXT_ENONE);
            for (int row = 0; row < rows; ++row) {
                PasteEnlarged(sheet, Draw(labels, fonts, g_edges[row].name, g_labelHeight), g_gap,
                              g_label.height + row * cell.height + (cell.height - g_label.height) / 2, 1);
            }
            for (int i = 0; i < columns; ++i) {
                PasteEnlarged(sheet, Draw(labels, fonts, g_modes[i].name, g_labelHeight),
                              g_label.width + i * cell.width + g_gap, 0, 1);
            }
        }
        each.plane = g_sample;
        Display display(each);
        for (int row = 0; row < rows; ++row) {
            display.SetEdge(g_edges[row].value);
            const Picture sample = Draw(display, fonts, "Ágy", g_textHeight);
            PasteEnlarged(sheet, sample, g_label.width + column * cell.width,
                          g_label.height + row * cell.height, g_scale);
        }
    }
    return sheet;
}

} // namespace caption
