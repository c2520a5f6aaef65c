// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <string>

#include "base/failure.h"
#include "base/options.h"
#include "base/timestamp.h"
#include "commands/command.h"
#include "commands/common_options.h"
#include "drawing/label.h"
#include "drawing/picture.h"
#include "drawing/remarks.h"
#include "drawing/stage.h"
#include "reading/subtitles.h"
#include "terminal/progress.h"
#include "terminal/report.h"
#include "terminal/stop_signals.h"

namespace caption
{

static const int g_longest = 8192; // pixels of a side of the sheet
static const int g_widest = 320;   // of a thumbnail
static const int g_narrowest = 96;
static const int g_gap = 4;
static const int g_smallestLabel = 11;

namespace
{

// The positions of the thumbnails, each with a label below.
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
                  " columns do not fit one sheet; choose another --columns, or use snapshot");
}

// The characters of timestamps. Each is drawn once, because there may be thousands of timestamps.
static const char g_signs[] = "-0123456789:. ";

static int WidthOf(const std::string &text, Labels &signs, int height)
{
    int width = 0;

    for (const char sign : text) width += signs.Get({sign}, height).size().width;
    return width;
}

static void PutTime(Picture &sheet, const std::string &text, Labels &signs, int height, int x, int y)
{
    for (const char sign : text) {
        signs.Put(sheet, {sign}, height, x, y);
        x += signs.Get({sign}, height).size().width;
    }
}

// Start and end, or only the start where both are too long.
static std::string TimesOf(const Cue &cue, Labels &signs, const Grid &grid)
{
    const std::string times = Timestamp(cue.start) + " - " + Timestamp(cue.end);

    return WidthOf(times, signs, grid.labelHeight) <= grid.thumbnail.width ? times : Timestamp(cue.start);
}

// Every cue on a thumbnail of its own, with its times below. The more cues, the smaller the thumbnails;
// throws Failure if they would be too small to see. With 0 columns a suitable number is chosen.
static Picture Sheet(const SourceOptions &source, int columns, const Options &options)
{
    const Subtitles subtitles = ReadSubtitles(source);
    const std::vector<Cue> &cues = subtitles.cues;
    const Grid grid = GridOf(int(cues.size()), columns, options.plane);
    const Color background = options.background.value_or(g_sheetBackground);
    Stage stage(ResolveMode(cues, options), cues);
    const StopSignals signals;
    const Progress progress(cues.size());
    Remarks remarks;
    Picture sheet(grid.Whole(), {0, 0, 0, 255});

    for (const std::string &notice : subtitles.notices) Report(notice);
    Labels signs(stage.display, stage.fonts);
    for (const char sign : std::string(g_signs)) signs.Get({sign}, grid.labelHeight);
    if (stage.captions) stage.captions->Redraw(); // the signs took its font and its colours
    stage.display.SetEdge(options.edge);
    for (std::size_t i = 0; i < cues.size(); ++i) {
        const int x = g_gap + int(i) % grid.columns * grid.Cell().width;
        const int y = g_gap + int(i) / grid.columns * grid.Cell().height;

        signals.Read();
        progress.Show(i);
        Drawn drawn;
        const Picture picture = Over(RenderFrame(stage, {&cues[i]}, drawn), background);
        PasteEnlarged(sheet, Scaled(picture, grid.thumbnail), x, y, 1);
        PutTime(sheet, TimesOf(cues[i], signs, grid), signs, grid.labelHeight, x, y + grid.thumbnail.height);
        for (const std::string &remark : remarks.On(drawn, stage.fonts)) {
            progress.Hide();
            Report("cue " + std::to_string(i + 1) + ": " + remark);
        }
    }
    stage.display.Clear();
    return sheet;
}

Command AddSheet(CLI::App &tool)
{
    struct Arguments {
        SourceOptions source;
        Options options;
        std::optional<std::string> settings;
        int columns = 0;
        std::string picture;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command = AddCommand(
        tool, "sheet", "Write one PNG with a thumbnail of every cue and its times",
        {"kova-caption sheet film.srt -o film.png", "kova-caption sheet film.srt -o film.png --columns 5"});

    AddSource(command, arguments->source);
    command.add_option("-o", arguments->picture, "Output file")->type_name("PNG")->required();
    command.add_option("--columns", arguments->columns, "Thumbnails per row [about as many as rows]")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, 1000).description(""));
    AddPlace(command, arguments->options);
    AddLetters(command, arguments->options);
    AddLook(command, arguments->options);
    AddSettingsFile(command, arguments->settings);
    AddBackground(command, arguments->options);
    return {&command, [arguments](std::FILE *out) {
                arguments->options.viewer = arguments->source.viewer = ReadSettings(arguments->settings);
                WritePng(Sheet(arguments->source, arguments->columns, arguments->options),
                         arguments->picture);
                std::fprintf(out, "%s\n", arguments->picture.c_str());
            }};
}

} // namespace caption
