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

static bool AreCaptions(const std::vector<Cue> &cues)
{
    return !cues.empty() && cues.front().captions;
}

Options ResolveMode(const std::vector<Cue> &cues, Options options)
{
    const auto translucent = [&](const Cue &cue) { return HasTranslucentText(cue, options); };
    if (AreCaptions(cues)) return ForCaptions(options);
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

// The rows of the picture that show something, one rectangle for each row of text or rows that touch.
static std::vector<Rect> SeenIn(const Picture &picture)
{
    std::vector<Rect> seen;
    bool above = false;

    for (int y = 0; y < picture.size().height; ++y) {
        int left = picture.size().width, right = -1;
        for (int x = 0; x < picture.size().width; ++x) {
            if (picture.At(x, y).alpha == 0) continue;
            left = std::min(left, x);
            right = x;
        }
        if (right >= left && above) {
            Rect &rect = seen.back();
            const int end = std::max(rect.x + rect.width, right + 1);
            rect.x = std::min(rect.x, left);
            rect.width = end - rect.x;
            ++rect.height;
        } else if (right >= left) {
            seen.push_back({left, y, right + 1 - left, 1});
        }
        above = right >= left;
    }
    return seen;
}

static Picture RenderCaptions(Stage &stage, const Cue &cue, Drawn &drawn)
{
    stage.captions->DrawAtRest(*cue.captions);
    Picture picture = stage.display.Present();
    drawn = {};
    drawn.blocks = SeenIn(picture);
    drawn.lines = Lines(cue).size();
    return picture;
}

Picture RenderFrame(Stage &stage, const std::vector<const Cue *> &cues, Drawn &drawn)
{
    if (stage.captions) return RenderCaptions(stage, *cues.front(), drawn);
    stage.display.Clear();
    drawn = stage.renderer.Draw(cues);
    if (drawn.lines == 0 && drawn.left > 0 && drawn.bitmaps.empty()) {
        throw Failure("--height " + std::to_string(stage.options.TextHeight()) +
                      ": a line of text does not fit a plane " + std::to_string(stage.options.plane.height) +
                      " pixels high; choose a smaller value");
    }
    return stage.display.Present();
}

// Drawn by the renderer without a glyph: the CC icon.
static const char g_ownSign[] = "\uE9A0";

// The files of the fonts for characters of the captions that the first font lacks.
static std::vector<std::string> FallbacksFor(const std::vector<Cue> &cues, Fonts &fonts)
{
    std::vector<std::string> files;

    for (const Cue &cue : cues) {
        std::vector<Letters> lines;
        for (const Line &line : Lines(cue)) {
            Line upright;
            for (const Run &run : line) {
                std::string text = run.text;
                for (std::size_t at; (at = text.find(g_ownSign)) != std::string::npos;) {
                    text.erase(at, sizeof g_ownSign - 1);
                }
                Append(upright, text, {});
            }
            lines.push_back(Prepare(upright));
        }
        fonts.Choose(lines);
        for (const Letters &letters : lines) {
            for (const Letter &letter : letters) {
                if (!letter.face || letter.face == &fonts.First()) continue;
                if (std::find(files.begin(), files.end(), FileOf(*letter.face)) == files.end()) {
                    files.push_back(FileOf(*letter.face));
                }
            }
        }
    }
    return files;
}

static std::unique_ptr<CaptionRenderer> CaptionsOf(const std::vector<Cue> &cues, const Options &options,
                                                   Fonts &fonts, Display &display)
{
    if (!AreCaptions(cues)) return nullptr;
    return std::make_unique<CaptionRenderer>(options, fonts, FallbacksFor(cues, fonts), display);
}

Stage::Stage(const Options &wanted, const std::vector<Cue> &cues)
    : options(Checked(wanted)), fonts(options), display(Prepare(options)), renderer(options, display, fonts),
      captions(CaptionsOf(cues, options, fonts, display))
{
}

} // namespace caption
