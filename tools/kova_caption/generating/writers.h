// SPDX-License-Identifier: MIT
// Recordings become files.
#ifndef KOVA_CAPTION_GENERATING_WRITERS_H
#define KOVA_CAPTION_GENERATING_WRITERS_H

#include <string>

#include "generating/recording.h"

namespace caption
{

// What a recording needs that a file of .scc cannot hold, which is everything but field 1 of CEA-608. Empty if there
// is nothing.
std::string BeyondScc(const Recording &recording);

// The texts of the formats. Frames without captions are left out.
std::string SccText(const Recording &recording);
std::string MccText(const Recording &recording);
std::string CcdText(const Recording &recording);

// A transport stream of MPEG-2 video with the captions in it, which shows the scenes of the recording. Starts DirectFB,
// which draws their text.
void WriteTs(const Recording &recording, const std::string &file);

// "00:01:00;02": drop-frame counting, which stays with the clock.
std::string FrameLabel(std::size_t frame);

// Hexadecimal digits, capitals as MCC has them.
std::string HexText(const encoding::ByteString &bytes);

} // namespace caption

#endif
