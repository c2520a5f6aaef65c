// SPDX-License-Identifier: MIT
#include "stage.h"

#include <algorithm>

#include "directfb_system.h"
#include "failure.h"

namespace caption
{

static const Options &Prepare(const Options &options)
{
    ChooseDirectFBSystem(options);
    return options;
}

static const Options &Checked(const Options &options)
{
    Check(options);
    return options;
}

Options FitTo(const std::vector<Cue> &cues, Options options)
{
    const bool bitmaps =
        std::any_of(cues.begin(), cues.end(), [](const Cue &cue) { return !cue.bitmaps.empty(); });

    if (!bitmaps) return options;
    if (options.mode && *options.mode != ColorMode::INDEX) {
        throw Failure("--mode: these subtitles are pictures, which are drawn as indexes into a palette; use "
                      "--mode index, or leave it out");
    }
    options.mode = ColorMode::INDEX;
    return options;
}

Picture Shoot(Stage &stage, const std::vector<const Cue *> &cues, Drawn &drawn)
{
    stage.display.Clear();
    drawn = stage.renderer.Draw(cues);
    if (drawn.lines == 0 && drawn.left > 0 && drawn.bitmaps.empty()) {
        throw Failure("--height " + std::to_string(stage.options.TextHeight()) +
                      ": a line of text finds no room on a plane " +
                      std::to_string(stage.options.plane.height) + " pixels high; choose a smaller one");
    }
    return stage.display.Present();
}

Stage::Stage(const Options &wanted)
    : options(Checked(wanted)), fonts(options), display(Prepare(options)), renderer(options, display, fonts)
{
}

} // namespace caption
