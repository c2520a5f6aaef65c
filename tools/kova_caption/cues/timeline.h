// SPDX-License-Identifier: MIT
// Cues made of what comes one after the other.
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
    // A cue that lasts as long as its end says, whatever else comes.
    void Add(Cue cue);

    // A cue that lasts until the next one is shown or until Clear, and no longer than to its end, if there is
    // one.
    void Show(Cue cue, std::optional<std::int64_t> end);

    // Nothing is shown from this moment on but what was added.
    void Clear(std::int64_t time);

    // The cue that is open; null where there is none.
    Cue *Current();

    // All cues by their start. The last open one ends four seconds after its start, or at the end of the
    // source if that is later.
    std::vector<Cue> Finish(std::int64_t endOfSource);

private:
    std::vector<Cue> cues_;
    std::optional<std::size_t> open_;
    std::optional<std::int64_t> latestEnd_; // of the open one
};

} // namespace caption

#endif
