// SPDX-License-Identifier: MIT
// Every cue of a source as a picture.
#ifndef KOVA_CAPTION_SNAPSHOT_H
#define KOVA_CAPTION_SNAPSHOT_H

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>

#include "options.h"
#include "subtitles.h"

namespace caption
{

struct SnapshotOptions {
    SourceOptions source;
    std::filesystem::path folder;   // made if need be
    std::optional<std::int64_t> at; // milliseconds; none: every cue by itself
    bool json = false;              // what is listed
};

// Writes 0001.png and so on, one a cue, or one picture of everything that is shown at a moment. Lists them
// with times and texts.
void Snapshot(const SnapshotOptions &snapshot, const Options &options, std::FILE *listing);

} // namespace caption

#endif
