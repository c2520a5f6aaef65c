// SPDX-License-Identifier: MIT
// Scenarist closed captions (.scc): CEA-608 pairs of field 1 as text.
#ifndef KOVA_CAPTION_READING_CAPTIONS_SCC_H
#define KOVA_CAPTION_READING_CAPTIONS_SCC_H

#include <string_view>

#include "base/notices.h"
#include "reading/captions/triplets.h"

namespace caption
{

bool IsScc(std::string_view text);

// The first word of a line is sent at the line's time, each further one a frame later. Words that would be
// sent while those of the line before still are follow them without a gap. Damaged lines are reported, and
// what is intact of them is read.
Triplets ReadScc(std::string_view text, Notices &notices);

} // namespace caption

#endif
