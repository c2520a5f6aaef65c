// Every cue of a subtitle file as a picture.
#ifndef KOVA_CAPTION_SNAPSHOT_H
#define KOVA_CAPTION_SNAPSHOT_H

#include <cstdio>
#include <filesystem>

#include "options.h"
#include "subtitles.h"

namespace caption
{

// Writes 0001.png and so on into the folder, which is made if need be, and a line for each to the listing.
void Snapshot(const SourceOptions &source, const std::filesystem::path &folder, const Options &options,
              std::FILE *listing);

} // namespace caption

#endif
