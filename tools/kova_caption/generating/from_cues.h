// SPDX-License-Identifier: MIT
// Cues of any source become closed captions: pop-on captions of CEA-608 in CC1, and windows of service 1 of CEA-708.
#ifndef KOVA_CAPTION_GENERATING_FROM_CUES_H
#define KOVA_CAPTION_GENERATING_FROM_CUES_H

#include <string>
#include <vector>

#include "base/notices.h"
#include "cues/cue.h"
#include "generating/recording.h"

namespace caption
{

enum class CaptionKinds { CEA_608, BOTH };

// A caption is sent ahead, and appears in the frame nearest to its start. If the frames since the one before do not
// suffice, control codes of CEA-608 are sent once instead of twice; if that does not suffice either, the caption is
// late. Whatever was changed is said in the notices. Throws Failure if nothing can be sent.
Recording FromCues(const std::string &title, const std::vector<Cue> &cues, CaptionKinds kinds,
                   Notices &notices);

} // namespace caption

#endif
