// SPDX-License-Identifier: MIT
#include "drawing/stage.h"

#include <algorithm>

#include "base/failure.h"
#include "cues/look.h"
#include "drawing/directfb_system.h"
#include "terminal/report.h"

namespace caption
{

static const Options &Prepare(const Options &options)
{
    ChooseDirectFBSystem(options);
    return options;
}

// With the viewer's settings. Refuses what the display cannot do: 32-bit colours in the window of layer 1, text
// higher than the plane.
static Options Checked(const Options &wanted)
{
    const Options options = WithSettings(wanted);

    if (options.Mode() == ColorMode::ARGB && options.layer == KOVA_GRAPHIC_LAYER1) {
        throw Failure("--mode argb: layer 1 has no 32-bit mode; use --mode palette, or --layer 2 or 3");
    }
    if (options.TextHeight() > options.plane.height) {
        throw Failure("--height " + std::to_string(options.height) + ": larger than the plane height of " +
                      std::to_string(options.plane.height) + " pixels; choose a smaller value");
    }
    return options;
}

static bool HasTranslucentText(const Cue &cue, const Options &options)
{
    for (const Block &block : cue.blocks) {
        for (const Line &line : block.lines) {
            for (const Run &run : line) {
                const Color color = WithSettings(run.style, options).color.value_or(options.color);
                if (color.alpha > 0 && color.alpha < 255) return true;
            }
        }
    }
    return false;
}

Options ResolveMode(const std::vector<Cue> &cues, Options options)
{
    const auto translucent = [&](const Cue &cue) { return HasTranslucentText(cue, options); };
    const bool bitmaps =
        std::any_of(cues.begin(), cues.end(), [](const Cue &cue) { return !cue.bitmaps.empty(); });

    // A window of the layers 2 and 3 shows no index mode.
    if (!bitmaps && !options.mode && options.layer == KOVA_GRAPHIC_LAYER1 &&
        std::any_of(cues.begin(), cues.end(), translucent)) {
        Report("translucent text needs index mode, where letters are not smoothed; --mode palette draws it "
               "opaque");
        options.mode = ColorMode::INDEX;
    }
    if (!bitmaps) return options;
    if (options.mode && *options.mode != ColorMode::INDEX) {
        throw Failure(
            "--mode: bitmap subtitles are drawn in index mode only; use --mode index, or omit the option");
    }
    options.mode = ColorMode::INDEX;
    return options;
}

Picture RenderFrame(Stage &stage, const std::vector<const Cue *> &cues, Drawn &drawn)
{
    stage.display.Clear();
    drawn = stage.renderer.Draw(cues);
    if (drawn.lines == 0 && drawn.left > 0 && drawn.bitmaps.empty()) {
        throw Failure("--height " + std::to_string(stage.options.TextHeight()) +
                      ": a line of text does not fit a plane " + std::to_string(stage.options.plane.height) +
                      " pixels high; choose a smaller value");
    }
    return stage.display.Present();
}

Stage::Stage(const Options &wanted)
    : options(Checked(wanted)), fonts(options), display(Prepare(options)), renderer(options, display, fonts)
{
}

} // namespace caption
