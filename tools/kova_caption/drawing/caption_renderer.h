// SPDX-License-Identifier: MIT
// Closed captions as a set draws them: a decoder gets the bytes of a recording again, and the renderer of the caption
// library brings its state to the display.
#ifndef KOVA_CAPTION_DRAWING_CAPTION_RENDERER_H
#define KOVA_CAPTION_DRAWING_CAPTION_RENDERER_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/options.h"
#include "cues/caption_recording.h"
#include "drawing/display.h"
#include "kova/kova_captions.h"
#include "kova/kova_captions_draw.h"
#include "text/fonts.h"

namespace caption
{

// The options with a layer and a colour mode that closed captions are drawn well in, unless a mode or another layer than
// the first is chosen. In memory that is layer 1 in index mode, as sets have it: there text can be translucent. In a
// window every string of layer 1 is a flip, which takes seconds for a page, and layers 2 and 3 show no index mode.
Options ForCaptions(Options options);

class CaptionRenderer
{
public:
    // The display shows nothing but closed captions from now on, unless what is drawn beside them keeps to its palette.
    // The fallbacks are files for characters that the fonts of the styles lack.
    CaptionRenderer(const Options &options, const Fonts &fonts, const std::vector<std::string> &fallbacks,
                    Display &display);
    CaptionRenderer(const CaptionRenderer &) = delete;
    CaptionRenderer &operator=(const CaptionRenderer &) = delete;

    // What is on the screen at that moment, at rest: what rolls or fades has arrived, and what flashes is seen.
    void DrawAtRest(const CaptionMoment &moment);

    // What is on the screen of that source at a time in microseconds, whatever moves under way.
    void Draw(const CaptionMoment &source, std::int64_t time);

    // When Draw changes something next, in microseconds, if the recording says nothing else or was read up to there;
    // KOVA_CAPTIONS_NEVER at its end.
    std::int64_t NextDraw() const;

    void SetSettings(const ViewerSettings &settings);

    // A sample text; the time is that of flashing.
    void Preview(const char *text, std::int64_t time);

    // After others drew on the plane.
    void Redraw();

private:
    void GoTo(const CaptionMoment &moment);
    void Push(const CaptionRecording &recording, std::size_t end);

    std::unique_ptr<KovaCaptions, void (*)(KovaCaptions *)> decoder_;
    std::unique_ptr<KovaCaptionsRenderer, void (*)(KovaCaptionsRenderer *)> renderer_;
    std::shared_ptr<const CaptionRecording> recording_;
    std::size_t pushed_ = 0; // portions
    std::int64_t time_ = KOVA_CAPTIONS_NO_TIME;
};

} // namespace caption

#endif
