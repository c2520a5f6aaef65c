// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/failure.h"
#include "base/options.h"
#include "commands/command.h"
#include "commands/common_options.h"
#include "drawing/directfb_system.h"
#include "drawing/label.h"
#include "drawing/picture.h"
#include "playing/menu_view.h"

namespace caption
{

static const char *const g_usual[] = {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
                                      "/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf",
                                      "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf"};

static const struct {
    const char *name;
    Color color;
} g_colors[] = {{"white", {255, 255, 255}}, {"black", {0, 0, 0}},   {"red", {255, 0, 0}},
                {"green", {0, 255, 0}},     {"blue", {0, 0, 255}},  {"yellow", {255, 255, 0}},
                {"magenta", {255, 0, 255}}, {"cyan", {0, 255, 255}}};

static const int g_percents[] = {50, 100, 200};

static const char g_sample[] = "Ág";
static const int g_gap = 16;
static const int g_labelWidth = 250;
static const int g_nameHeight = 26;  // of the letters of a font's name
static const int g_labelHeight = 20; // of an edge's and a background's
static const int g_smallHeight = 13; // of a size's and a colour's

using Brush = Color (*)(int x, int y);

static Color Dark(int, int)
{
    return {24, 28, 36, 255};
}

static Color Bright(int, int)
{
    return {232, 234, 238, 255};
}

// A gradient with a fine chequerboard, so that light and dark are close together everywhere.
static Color Busy(int x, int y)
{
    const double light = (x / 13 + y / 11) % 2 ? 1.0 : 0.65;
    const auto wave = [&](double across, double down, double phase) {
        return std::uint8_t(light * (150 + 75 * std::sin(x / across + y / down + phase)));
    };
    return {wave(61, 37, 0), wave(-83, 29, 2), wave(47, -53, 4), 255};
}

static const struct {
    const char *name;
    Brush brush;
} g_backgrounds[] = {{"dark", Dark}, {"bright", Bright}, {"busy", Busy}};

namespace
{

// Sizes in pixels. A block shows every size, one below the other, in every colour.
struct Measures {
    explicit Measures(int height) : em(height)
    {
    }

    int EmOf(std::size_t size) const
    {
        return std::max(1, em * g_percents[size] / 100);
    }
    int RowOf(std::size_t size) const
    {
        return EmOf(size) * 3 / 2;
    }
    int TopOf(std::size_t size) const
    {
        int top = 0;
        for (std::size_t i = 0; i < size; ++i) top += RowOf(i);
        return top;
    }
    int CellWidth() const
    {
        return em * 3 + g_gap / 2;
    }
    Size Block() const
    {
        return {CellWidth() * int(std::size(g_colors)), TopOf(std::size(g_percents))};
    }
    int BlockX(std::size_t background) const
    {
        return g_labelWidth + int(background) * (Block().width + g_gap);
    }
    int HeadHeight() const
    {
        return g_nameHeight * 2 + g_smallHeight * 3 / 2;
    }
    int BlockY(std::size_t edge) const
    {
        return HeadHeight() + int(edge) * (Block().height + g_gap);
    }
    Size Section() const
    {
        return {BlockX(std::size(g_backgrounds)), BlockY(std::size(g_edges)) + g_gap};
    }

    int em; // of the letters at 100 %
};

} // namespace

// Letters in the colour of their edge would merge with it.
static Style StyleOf(Color color, Color edge)
{
    Style style;

    style.color = color;
    if (color == edge)
        style.edgeColor = color == Color{255, 255, 255} ? Color{0, 0, 0} : Color{255, 255, 255};
    return style;
}

static Picture DrawBlock(Display &display, Fonts &fonts, const Measures &measures, Color edge)
{
    display.Clear();
    for (std::size_t size = 0; size < std::size(g_percents); ++size) {
        const int em = measures.EmOf(size);
        const Reach reach = ReachOf(fonts.First(), em);
        const int y = measures.TopOf(size) + (measures.RowOf(size) - reach.ascent - reach.descent) / 2;
        int x = g_gap / 2;
        for (const auto &color : g_colors) {
            DrawLine(display, fonts, {{g_sample, StyleOf(color.color, edge)}}, em, x, y);
            x += measures.CellWidth();
        }
    }
    return display.Present();
}

static void Paint(Picture &sheet, Brush brush, int x, int y, Size size)
{
    for (int row = 0; row < size.height; ++row) {
        for (int column = 0; column < size.width; ++column) {
            sheet.At(x + column, y + row) = brush(column, row);
        }
    }
}

static void PutLabels(Picture &sheet, Labels &labels, const Measures &measures, const std::string &font,
                      int top)
{
    labels.Put(sheet, font, g_nameHeight, g_gap, top + g_gap / 2);
    for (std::size_t i = 0; i < std::size(g_backgrounds); ++i) {
        labels.Put(sheet, g_backgrounds[i].name, g_labelHeight, measures.BlockX(i), top + g_gap);
        int x = measures.BlockX(i) + g_gap / 2;
        for (const auto &color : g_colors) {
            labels.Put(sheet, color.name, g_smallHeight, x,
                       top + measures.HeadHeight() - g_smallHeight * 3 / 2);
            x += measures.CellWidth();
        }
    }
    for (std::size_t i = 0; i < std::size(g_edges); ++i) {
        const int y = top + measures.BlockY(i);
        labels.Put(sheet, g_edges[i].name, g_labelHeight, g_gap, y);
        for (std::size_t size = 0; size < std::size(g_percents); ++size) {
            labels.Put(sheet, std::to_string(g_percents[size]) + " %", g_smallHeight, g_labelWidth - 56,
                       y + measures.TopOf(size) + measures.RowOf(size) / 2 - g_smallHeight * 2 / 3);
        }
    }
}

static Options LabelOptions(Options options)
{
    options.plane = {1280, g_nameHeight * 2};
    options.color = {222, 226, 232};
    options.font.clear();
    return options;
}

static std::vector<std::string> OrUsual(std::vector<std::string> fonts)
{
    if (!fonts.empty()) return fonts;
    for (const char *const file : g_usual) {
        if (std::filesystem::exists(file)) fonts.push_back(file);
    }
    if (fonts.empty()) throw Failure("none of the default fonts is installed; give one with --font");
    return fonts;
}

// For each font, or for the default fonts if none is given: every edge at three sizes in the eight caption
// colours, over a dark, a bright and a busy background. Uses the text height, which is 100 %, and the edge
// colour of the options.
static Picture Preview(const std::vector<std::string> &named, const Options &options)
{
    const Measures measures(options.height ? options.height : 32);
    const std::vector<std::string> files = OrUsual(named);
    std::vector<std::unique_ptr<Fonts>> fonts;
    for (const std::string &file : files) { // fails before anything is drawn
        Options each = options;
        each.font = file;
        fonts.push_back(std::make_unique<Fonts>(each, Fonts::Reserve::NONE));
    }
    ChooseDirectFBSystem(options);
    Picture sheet({measures.Section().width, measures.Section().height * int(files.size())},
                  {44, 50, 60, 255});

    {
        const Options plain = LabelOptions(options);
        Fonts labelFonts(plain);
        Display labelDisplay(plain);
        Labels labels(labelDisplay, labelFonts);
        for (std::size_t i = 0; i < files.size(); ++i) {
            PutLabels(sheet, labels, measures, std::filesystem::path(files[i]).stem().string(),
                      int(i) * measures.Section().height);
        }
    }
    Options plane = options;
    plane.plane = measures.Block();
    Display display(plane);
    for (std::size_t i = 0; i < files.size(); ++i) {
        for (std::size_t edge = 0; edge < std::size(g_edges); ++edge) {
            display.SetEdge(g_edges[edge].value);
            const Picture block = DrawBlock(display, *fonts[i], measures, options.edgeColor);
            const int y = int(i) * measures.Section().height + measures.BlockY(edge);
            for (std::size_t background = 0; background < std::size(g_backgrounds); ++background) {
                const int x = measures.BlockX(background);
                Paint(sheet, g_backgrounds[background].brush, x, y, block.size());
                PasteEnlarged(sheet, block, x, y, 1);
            }
        }
    }
    return sheet;
}

Command AddPreview(CLI::App &tool)
{
    struct Arguments {
        Options options;
        std::vector<std::string> fonts;
        std::string file;
        std::optional<std::string> settings;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command = AddCommand(tool, "preview",
                                   "Write one PNG with every edge, size and colour of each font on three "
                                   "backgrounds, or with --settings "
                                   "the menu of the viewer's settings and a caption that has them",
                                   {"kova-caption preview -o edges.png",
                                    "kova-caption preview -o edges.png --font sets/Sans.ttf",
                                    "kova-caption preview -o edges.png --height 20 --edge-color 000080",
                                    "kova-caption preview -o settings.png --settings viewer.txt"});

    command.add_option("-o", arguments->file, "Output file")->type_name("PNG")->required();
    command
        .add_option("--font", arguments->fonts,
                    "Font to show; may be repeated [DejaVu Sans, Serif and Sans Mono]")
        ->type_name("FILE")
        ->allow_extra_args(false);
    command.add_option("--height", arguments->options.height, "Text size at 100 %, in pixels [32]")
        ->type_name("PIXELS")
        ->check(CLI::Range(1, 77).description(""));
    AddEdgeColor(command, arguments->options);
    AddHeadless(command, arguments->options);
    command.add_option("--settings", arguments->settings, "Draw this file of the viewer's settings")
        ->type_name("FILE");
    return {&command, [arguments](std::FILE *out) {
                WritePng(arguments->settings
                             ? MenuPicture(Menu(ReadSettings(arguments->settings)), arguments->options)
                             : Preview(arguments->fonts, arguments->options),
                         arguments->file);
                std::fprintf(out, "%s\n", arguments->file.c_str());
            }};
}

} // namespace caption
