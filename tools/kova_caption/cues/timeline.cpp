// SPDX-License-Identifier: MIT
#include "cues/timeline.h"

#include <algorithm>

namespace caption
{

void Timeline::Add(Cue cue)
{
    cue.end = std::max(cue.start, cue.end);
    cues_.push_back(std::move(cue));
}

void Timeline::Show(Cue cue, std::optional<std::int64_t> end)
{
    Clear(cue.start);
    open_ = cues_.size();
    latestEnd_ = end;
    cues_.push_back(std::move(cue));
}

void Timeline::Clear(std::int64_t time)
{
    if (!open_) return;
    Cue &cue = cues_[*open_];
    cue.end = std::max(cue.start, latestEnd_ ? std::min(*latestEnd_, time) : time);
    open_.reset();
}

Cue *Timeline::Current()
{
    return open_ ? &cues_[*open_] : nullptr;
}

std::vector<Cue> Timeline::Finish(std::int64_t endOfSource)
{
    if (open_) cues_[*open_].openEnd = !latestEnd_;
    if (open_) Clear(latestEnd_ ? *latestEnd_ : std::max(endOfSource, cues_[*open_].start + 4000));
    std::stable_sort(cues_.begin(), cues_.end(),
                     [](const Cue &a, const Cue &b) { return a.start < b.start; });
    return std::move(cues_);
}

} // namespace caption
