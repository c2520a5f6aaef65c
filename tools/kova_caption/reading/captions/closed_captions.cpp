// SPDX-License-Identifier: MIT
#include "reading/captions/closed_captions.h"

#include <algorithm>
#include <new>
#include <utility>

namespace caption
{

// A time that is further back than this starts the decoder anew.
static const std::int64_t g_furthestBack = 1000000;

// More than one push can make.
static const std::uint32_t g_events = 1 << 14;

static KovaCaptions *Create(ClosedCaptions::Keep keep)
{
    KovaCaptionsOptions options;

    Kova_Captions_GetDefaults(&options);
    if (keep == ClosedCaptions::Keep::COMMANDS) options.event_capacity = g_events;
    KovaCaptions *const decoder = Kova_Captions_Create(&options);
    if (!decoder) throw std::bad_alloc();
    return decoder;
}

ClosedCaptions::ClosedCaptions(Keep keep) : decoder_(Create(keep), Kova_Captions_Destroy)
{
}

void ClosedCaptions::Take(std::int64_t time, const std::uint8_t *triplets, std::size_t count)
{
    if (time_ != KOVA_CAPTIONS_NO_TIME && time < time_ - g_furthestBack) Restart();
    RunTo(time);
    Kova_Captions_PushTriplets(decoder_.get(), time, triplets, count);
    recording_.bytes.insert(recording_.bytes.end(), triplets, triplets + 3 * count);
    recording_.portions.push_back({time, recording_.bytes.size()});
    RecordCommands();
}

// What changes at one time changes at once, so a state is recorded when its time is over. Delays and timeouts
// that end before the next bytes come make states of their own.
void ClosedCaptions::RunTo(std::int64_t time)
{
    if (time_ == KOVA_CAPTIONS_NO_TIME) time_ = time;
    while (time_ < time) {
        Record();
        const std::int64_t next =
            Kova_Captions_NextChange(decoder_.get(), KOVA_CAPTIONS_NONE, KOVA_CAPTIONS_CHANGE_STATE);
        time_ = std::min(next, time);
        if (time_ < time) Kova_Captions_Advance(decoder_.get(), time_);
    }
}

// The time goes back: what is shown ends here.
void ClosedCaptions::Restart()
{
    Record();
    for (auto &source : decoded_.states) source.second.push_back({time_, {}, recording_.portions.size()});
    time_ = KOVA_CAPTIONS_NO_TIME;
}

void ClosedCaptions::Record()
{
    KovaCaptionsActivity activity;

    if (Kova_Captions_Revision(decoder_.get()) == revision_) return;
    revision_ = Kova_Captions_Revision(decoder_.get());
    Kova_Captions_GetActivity(decoder_.get(), &activity);
    for (unsigned i = KOVA_CAPTIONS_S1; i <= KOVA_CAPTIONS_S63; ++i) {
        if (activity.services_with_data >> i & 1) recorded_.insert({std::uint8_t(i), 0});
    }
    for (unsigned i = KOVA_CAPTIONS_CC1; i <= KOVA_CAPTIONS_T4; ++i) {
        if (activity.channels_with_data >> (i - KOVA_CAPTIONS_CC1) & 1)
            recorded_.insert({std::uint8_t(i), 0});
    }
    for (auto &source : recorded_) {
        KovaCaptionsStatus status;
        Kova_Captions_GetStatus(decoder_.get(), source.first, &status);
        if (std::exchange(source.second, status.visible_revision) != status.visible_revision) {
            Record(source.first);
        }
    }
}

void ClosedCaptions::Record(std::uint8_t source)
{
    const auto states = decoded_.states.find(source);
    CaptionScreen screen;

    if (source <= KOVA_CAPTIONS_S63) {
        KovaCaptionsService service;
        Kova_Captions_GetService(decoder_.get(), source, &service, windows_.data(), 0xFF);
        screen = ReadScreen(service, windows_.data());
    } else {
        Kova_Captions_GetChannel(decoder_.get(), source, &channel_);
        screen = ReadScreen(channel_);
    }
    if (states == decoded_.states.end()) {
        if (!screen.empty()) {
            decoded_.states[source].push_back({time_, std::move(screen), recording_.portions.size()});
        }
        return;
    }
    if (screen != states->second.back().screen) {
        states->second.push_back({time_, std::move(screen), recording_.portions.size()});
    }
}

void ClosedCaptions::RecordCommands()
{
    KovaCaptionsEvent event;

    while (Kova_Captions_NextEvent(decoder_.get(), &event) == 1) {
        std::array<char, KOVA_CAPTIONS_LINE> line;
        if (event.source == KOVA_CAPTIONS_NONE || event.source > KOVA_CAPTIONS_T4) continue;
        Kova_Captions_FormatEvent(&event, line.data(), line.size());
        decoded_.commands[event.source].push_back({event.time, line.data()});
    }
}

DecodedCaptions ClosedCaptions::Finish(std::int64_t endOfSource)
{
    if (time_ != KOVA_CAPTIONS_NO_TIME) {
        endOfSource = std::max(endOfSource, time_);
        RunTo(endOfSource);
        Kova_Captions_Advance(decoder_.get(), endOfSource);
        Record();
    }
    Kova_Captions_EndRuns(decoder_.get());
    RecordCommands();
    decoded_.end = endOfSource;
    decoded_.recording = std::make_shared<const CaptionRecording>(std::move(recording_));
    return std::move(decoded_);
}

} // namespace caption
