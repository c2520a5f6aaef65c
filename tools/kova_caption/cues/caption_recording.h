// SPDX-License-Identifier: MIT
// The bytes of closed captions, kept so that what they show at a time can be drawn as a set draws it.
#ifndef KOVA_CAPTION_CUES_CAPTION_RECORDING_H
#define KOVA_CAPTION_CUES_CAPTION_RECORDING_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace caption
{

// What was pushed into a decoder at one time.
struct CaptionPortion {
    std::int64_t time = 0; // microseconds
    std::size_t end = 0;   // of its bytes; they begin where those of the portion before end
};

struct CaptionRecording {
    std::vector<CaptionPortion> portions;
    std::vector<std::uint8_t> bytes; // triplets
};

// A moment of a recording: what is on the screen after that many portions, at that time.
struct CaptionMoment {
    std::shared_ptr<const CaptionRecording> recording;
    std::uint8_t source = 0;  // KOVA_CAPTIONS_CC1 and so on
    std::size_t portions = 0; // the last one may have a later time than the first of the next
    std::int64_t time = 0;    // microseconds
};

} // namespace caption

#endif
