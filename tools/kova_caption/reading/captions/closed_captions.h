// SPDX-License-Identifier: MIT
// CEA-608 and CEA-708 captions, from their bytes to what each channel and service shows.
#ifndef KOVA_CAPTION_READING_CAPTIONS_CLOSED_CAPTIONS_H
#define KOVA_CAPTION_READING_CAPTIONS_CLOSED_CAPTIONS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cues/caption_recording.h"
#include "kova/kova_captions.h"
#include "reading/captions/cells.h"

namespace caption
{

// What a source shows from a moment on, until the next state's.
struct CaptionState {
    std::int64_t start = 0; // microseconds
    CaptionScreen screen;
    std::size_t portions = 0; // of the recording, up to here
};

// A decoded code, or a run of text, as Kova_Captions_FormatEvent writes it.
struct CaptionCommand {
    std::int64_t time = 0; // microseconds
    std::string text;
};

// By numbers of KovaCaptionsSource. Their order is that in which sources are preferred: services, then
// captions of CEA-608, then its text channels.
template <class Value> using BySource = std::map<std::uint8_t, Value>;

struct DecodedCaptions {
    BySource<std::vector<CaptionState>> states; // of the sources that show something at least once
    BySource<std::vector<CaptionCommand>> commands;
    std::shared_ptr<const CaptionRecording> recording;
    std::int64_t end = 0; // microseconds
};

class ClosedCaptions
{
public:
    enum class Keep { STATES, COMMANDS };

    explicit ClosedCaptions(Keep keep);
    ClosedCaptions(const ClosedCaptions &) = delete;
    ClosedCaptions &operator=(const ClosedCaptions &) = delete;

    // Triplets of three bytes each, in presentation order, at a time in microseconds.
    void Take(std::int64_t time, const std::uint8_t *triplets, std::size_t count);

    // After the last triplet: lets the time run to the end of the source.
    DecodedCaptions Finish(std::int64_t endOfSource);

private:
    void RunTo(std::int64_t time);
    void Restart();
    void Record();
    void Record(std::uint8_t source);
    void RecordCommands();

    std::unique_ptr<KovaCaptions, void (*)(KovaCaptions *)> decoder_;
    DecodedCaptions decoded_;
    CaptionRecording recording_;
    std::int64_t time_ = KOVA_CAPTIONS_NO_TIME;
    std::uint32_t revision_ = 0;
    BySource<std::uint32_t> recorded_; // visible revisions
    KovaCaptionsChannel channel_ = {};
    std::array<KovaCaptionsWindow, KOVA_CAPTIONS_WINDOWS> windows_ = {};
};

} // namespace caption

#endif
