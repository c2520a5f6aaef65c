// SPDX-License-Identifier: MIT
#include "sheet.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string>

#include "failure.h"
#include "progress.h"
#include "remarks.h"
#include "stage.h"
#include "stop_signals.h"
#include "timestamp.h"

namespace caption
{

static const int g_longest = 8192; // pixels of a side of the sheet
static const int g_widest = 320;   // of a thumbnail
static const int g_narrowest = 96;
static const int g_gap = 4;
static const int g_smallestLabel = 11;

namespace
{

// Where thumbnails stand, each with a label beneath.
struct Grid {
    int columns = 0;
    int rows = 0;
    Size thumbnail;
    int labelHeight = 0; // of the letters' em

    Size Cell() const
    {
        return {thumbnail.width + g_gap, thumbnail.height + labelHeight * 3 / 2 + g_gap};
    }
    Size Whole() const
    {
        return {columns * Cell().width + g_gap, rows * Cell().height + g_gap};
    }
};

} // namespace

static Grid GridOf(int cues, int wantedColumns, Size plane)
{
    Grid grid;

    grid.columns = std::min(cues, wantedColumns > 0 ? wantedColumns : int(std::ceil(std::sqrt(cues))));
    grid.rows = (cues + grid.columns - 1) / grid.columns;
    for (int width = std::min(plane.width, g_widest); width >= std::min(plane.width, g_narrowest); --width) {
        grid.thumbnail = {width, std::max(1, plane.height * width / plane.width)};
        grid.labelHeight = std::max(width / 20, g_smallestLabel);
        if (grid.Whole().width <= g_longest && grid.Whole().height <= g_longest) return grid;
    }
    throw Failure(std::to_string(cues) + " cues in " + std::to_string(grid.columns) +
                  " columns would be too small to see on one sheet; choose other --columns, or use snapshot");
}

// Signs that times are made of, each drawn once.
static std::map<char, Picture> DrawSigns(Stage &stage, int height)
{
    std::map<char, Picture> signs;

    for (const char sign : std::string("-0123456789:. ")) {
        std::vector<Letters> lines = {Prepare({{std::string(1, sign), {}}})};
        stage.fonts.Choose(lines);
        const Piece piece = Pieces(lines.front()).front();
        const Reach reach = ReachOf(*piece.face, height);
        stage.display.Clear();
        stage.display.Draw(piece, height, 0, 0);
        const Size size = {stage.display.Width(piece, height), reach.ascent + reach.descent};
        signs.emplace(sign, Corner(stage.display.Present(), size));
    }
    return signs;
}

static int WidthOf(const std::string &text, const std::map<char, Picture> &signs)
{
    int width = 0;

    for (const char sign : text) width += signs.at(sign).size().width;
    return width;
}

static void Write(Picture &sheet, const std::string &text, const std::map<char, Picture> &signs, int x, int y)
{
    for (const char sign : text) {
        PasteEnlarged(sheet, signs.at(sign), x, y, 1);
        x += signs.at(sign).size().width;
    }
}

// From when to when; where that is too long, from when.
static std::string Label(const Cue &cue, const std::map<char, Picture> &signs, int width)
{
    const std::string times = Timestamp(cue.start) + " - " + Timestamp(cue.end);

    return WidthOf(times, signs) <= width ? times : Timestamp(cue.start);
}

Picture Sheet(const SourceOptions &source, int columns, const Options &options)
{
    const Subtitles subtitles = ReadSubtitles(source);
    const std::vector<Cue> &cues = subtitles.cues;
    const Grid grid = GridOf(int(cues.size()), columns, options.plane);
    const Color background = options.background.value_or(Color{112, 128, 144});
    Stage stage(FitTo(cues, options));
    const StopSignals signals;
    const Progress progress(cues.size());
    Remarks remarks;
    Picture sheet(grid.Whole(), {0, 0, 0, 255});

    for (const std::string &notice : subtitles.notices) Say(notice);
    stage.display.SetEdge(KOVA_TEXT_ENONE);
    const std::map<char, Picture> signs = DrawSigns(stage, grid.labelHeight);
    stage.display.SetEdge(options.edge);
    for (std::size_t i = 0; i < cues.size(); ++i) {
        const int x = g_gap + int(i) % grid.columns * grid.Cell().width;
        const int y = g_gap + int(i) / grid.columns * grid.Cell().height;

        signals.Read();
        progress.Show(i);
        Drawn drawn;
        const Picture picture = Over(Shoot(stage, {&cues[i]}, drawn), background);
        PasteEnlarged(sheet, Scaled(picture, grid.thumbnail), x, y, 1);
        Write(sheet, Label(cues[i], signs, grid.thumbnail.width), signs, x, y + grid.thumbnail.height);
        for (const std::string &remark : remarks.On(drawn, stage.fonts)) {
            progress.Hide();
            Say("cue " + std::to_string(i + 1) + ": " + remark);
        }
    }
    stage.display.Clear();
    return sheet;
}

} // namespace caption
