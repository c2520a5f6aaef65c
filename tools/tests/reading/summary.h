// SPDX-License-Identifier: MIT
// What was read, in short: when each cue comes and goes, and its text.
#ifndef KOVA_CAPTION_TESTS_SUMMARY_H
#define KOVA_CAPTION_TESTS_SUMMARY_H

#include <string>
#include <vector>

#include "reading/subtitles.h"

inline std::string Summary(const caption::Cue &cue)
{
    return std::to_string(cue.start) + "-" + std::to_string(cue.end) + " " + PlainText(cue);
}

inline std::vector<std::string> Summaries(const caption::Subtitles &subtitles)
{
    std::vector<std::string> summaries;
    for (const caption::Cue &cue : subtitles.cues) summaries.push_back(Summary(cue));
    return summaries;
}

#endif
