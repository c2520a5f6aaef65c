// SPDX-License-Identifier: MIT
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "base/options.h"
#include "commands/command.h"
#include "commands/common_options.h"
#include "drawing/directfb_system.h"
#include "drawing/display.h"
#include "drawing/renderer.h"
#include "text/fonts.h"

namespace caption
{

namespace
{

// One row of a table: the mean duration in each colour mode.
struct Figures {
    std::string name;
    double microseconds[std::size(g_modes)] = {};
};

struct Results {
    std::vector<Figures> captions; // by edge
    std::vector<Figures> operations;
};

} // namespace

static const char g_sentence[] = "A caption of two lines, as long as they are";

static Cue Sample()
{
    Block block;
    block.lines = {{{g_sentence, {}}}, {{"read in a few seconds before the next.", {}}}};
    Cue cue;
    cue.blocks = {block};
    return cue;
}

// The mean duration of the operation. A first run, which fills DirectFB's caches, is not counted.
static double Microseconds(const std::function<void()> &operation, std::chrono::milliseconds least)
{
    using Clock = std::chrono::steady_clock;
    int count = 0;

    operation();
    const auto start = Clock::now();
    auto now = start;
    while (count < 5 || now - start < least) {
        operation();
        now = Clock::now();
        ++count;
    }
    return std::chrono::duration<double, std::micro>(now - start).count() / count;
}

static void MeasureMode(std::size_t mode, const Options &options, Fonts &fonts,
                        std::chrono::milliseconds time, Results &results)
{
    const Cue cue = Sample();
    std::vector<Letters> line = {Prepare(cue.blocks.front().lines.front())};
    fonts.Choose(line);
    const Piece piece = Pieces(line.front(), options).front();
    Display display(options);
    std::size_t operation = 0;
    const auto measure = [&](const std::string &name, const std::function<void()> &work) {
        if (mode == 0) results.operations.push_back({name, {}});
        results.operations[operation++].microseconds[mode] = Microseconds(work, time);
    };

    measure("clear the plane", [&] { display.Clear(); });
    measure("measure a line", [&] { display.Width(piece, options.TextHeight()); });
    measure("flip", [&] { display.Flip(); });
    for (std::size_t i = 0; i < std::size(g_edges); ++i) {
        Options each = options;
        each.edge = g_edges[i].value;
        display.SetEdge(each.edge);
        Renderer renderer(each, display, fonts);
        if (i == 0) measure("lay out a caption", [&] { renderer.LayOut({&cue}); });
        measure(std::string("draw a line, ") + g_edges[i].name,
                [&] { display.Draw(piece, options.TextHeight(), 50, 50); });

        if (mode == 0) results.captions.push_back({g_edges[i].name, {}});
        results.captions[i].microseconds[mode] = Microseconds(
            [&] {
                display.Clear();
                renderer.Draw({&cue});
                display.Release();
            },
            time);
    }
}

static void PrintTable(const char *title, const std::vector<Figures> &rows, bool perSecond, std::FILE *out)
{
    std::fprintf(out, "\n%-26s", title);
    for (const auto &mode : g_modes) std::fprintf(out, "%10s", mode.name);
    for (const Figures &row : rows) {
        std::fprintf(out, "\n%-26s", row.name.c_str());
        for (const double value : row.microseconds)
            std::fprintf(out, "%10.1f", perSecond ? 1e6 / value : value);
    }
    std::fprintf(out, "\n");
}

// One object for each figure: what was measured, in which mode, and the mean.
static nlohmann::ordered_json Listed(const char *what, const std::vector<Figures> &rows)
{
    nlohmann::ordered_json list = nlohmann::ordered_json::array();

    for (const Figures &row : rows) {
        for (std::size_t i = 0; i < std::size(g_modes); ++i) {
            list.push_back(
                {{what, row.name}, {"mode", g_modes[i].name}, {"microseconds", row.microseconds[i]}});
        }
    }
    return list;
}

// Measures every edge in every colour mode in the window of layer 1, where no flip is deferred. Each figure
// is a mean over at least `time`. Prints a table or JSON.
static void Bench(const Options &options, std::chrono::milliseconds time, bool json, std::FILE *out)
{
    Fonts fonts(options);
    ChooseDirectFBSystem(options);
    Results results;
    for (std::size_t mode = 0; mode < std::size(g_modes); ++mode) {
        Options each = options;
        each.mode = g_modes[mode].value;
        MeasureMode(mode, each, fonts, time, results);
    }

    if (json) {
        const nlohmann::ordered_json all = {
            {"plane", {{"width", options.plane.width}, {"height", options.plane.height}}},
            {"text_height", options.TextHeight()},
            {"captions", Listed("edge", results.captions)},
            {"operations", Listed("operation", results.operations)}};
        std::fprintf(out, "%s\n", all.dump(2).c_str());
        return;
    }
    std::fprintf(out, "layer 1, plane %dx%d, text height %d pixels, DFBARGS=%s\n", options.plane.width,
                 options.plane.height, options.TextHeight(), std::getenv("DFBARGS"));
    std::fprintf(out,
                 "argb: a 32-bit plane in place of the window, which DirectFB does not show on the screen\n");
    PrintTable("captions per second", results.captions, true, out);
    PrintTable("microseconds", results.operations, false, out);
}

Command AddBench(CLI::App &tool)
{
    struct Arguments {
        Options options;
        int milliseconds = 50;
        bool json = false;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command =
        AddCommand(tool, "bench", "Measure the speed of every edge in every colour mode on this machine",
                   {"kova-caption bench --headless", "kova-caption bench --plane 640x360 --json"});

    AddPlane(command, arguments->options);
    AddLook(command, arguments->options);
    command.add_option("--time", arguments->milliseconds, "Minimum time per figure in milliseconds [50]")
        ->type_name("MILLISECONDS")
        ->check(CLI::Range(1, 10000).description(""));
    command.add_flag("--json", arguments->json, "Print JSON");
    return {&command, [arguments](std::FILE *out) {
                Bench(arguments->options, std::chrono::milliseconds(arguments->milliseconds), arguments->json,
                      out);
            }};
}

} // namespace caption
