// SPDX-License-Identifier: MIT
// Builds cues from events in order of time.
#ifndef KOVA_CAPTION_CUES_TIMELINE_H
#define KOVA_CAPTION_CUES_TIMELINE_H

#include <cstdint>
#include <optional>
#include <vector>

#include "cues/cue.h"

namespace caption
{

class Timeline
{
public:
    // Adds a cue with an end of its own, whatever follows.
    void Add(Cue cue);

    // Adds a cue that lasts until the next call of Show or Clear, but no longer than `end` where there is
    // one.
    void Show(Cue cue, std::optional<std::int64_t> end);

    // Ends the open cue at this time. Cues that were added keep their ends.
    void Clear(std::int64_t time);

    // The open cue; null if there is none.
    Cue *Current();

    // All cues, sorted by start. A cue that is still open ends four seconds after its start, or at the end of
    // the source if that is later.
    std::vector<Cue> Finish(std::int64_t endOfSource);

private:
    std::vector<Cue> cues_;
    std::optional<std::size_t> open_;
    std::optional<std::int64_t> latestEnd_; // of the open one
};

} // namespace caption

#endif
