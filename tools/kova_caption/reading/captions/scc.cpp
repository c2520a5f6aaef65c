// SPDX-License-Identifier: MIT
#include "reading/captions/scc.h"

#include <algorithm>
#include <string>

#include "reading/captions/time_code.h"
#include "reading/text_lines.h"

namespace caption
{

static const KovaCaptionsFrameRate g_rate = KOVA_CAPTIONS_RATE_29_97;
static const std::uint8_t g_fieldOne = 0xFC;

bool IsScc(std::string_view text)
{
    return StartsWith(FirstLine(text), "Scenarist_SCC");
}

Triplets ReadScc(std::string_view text, Notices &notices)
{
    Triplets read;
    DamagedLines damaged(notices);
    TextLines lines(text);
    std::int64_t frame = 0;

    for (auto line = lines.Next(); line; line = lines.Next()) {
        if (line->empty() || IsScc(*line)) continue;
        const std::string_view label = TakeWord(*line);
        const auto timeCode = ParseTimeCode(label);
        const std::int64_t start = timeCode ? Kova_Captions_CountFrames(g_rate, &*timeCode) : -1;
        if (start < 0) {
            damaged.Report(lines.number(),
                           "'" + std::string(label.substr(0, 40)) +
                               "' is not a time code (HH:MM:SS:FF or HH:MM:SS;FF); the line is "
                               "ignored");
            continue;
        }
        for (frame = std::max(frame, start); !line->empty(); ++frame) {
            const std::string_view word = TakeWord(*line);
            const auto pair = word.size() == 4 ? Hexadecimal(word) : std::nullopt;
            if (!pair) {
                damaged.Report(lines.number(),
                               "'" + std::string(word.substr(0, 40)) +
                                   "' is not a word of four hexadecimal digits; it is ignored");
                continue;
            }
            read.triplets.push_back({Kova_Captions_FramesToTime(g_rate, frame),
                                     {g_fieldOne, std::uint8_t(*pair >> 8), std::uint8_t(*pair)}});
        }
    }
    damaged.Finish();
    read.end = Kova_Captions_FramesToTime(g_rate, frame);
    return read;
}

} // namespace caption
