// SPDX-License-Identifier: MIT
// MacCaption files (.mcc), versions 1.0 and 2.0: ancillary data packets with captions as text.
#ifndef KOVA_CAPTION_READING_CAPTIONS_MCC_H
#define KOVA_CAPTION_READING_CAPTIONS_MCC_H

#include <string_view>

#include "base/notices.h"
#include "reading/captions/triplets.h"

namespace caption
{

bool IsMcc(std::string_view text);

// Damaged lines are reported and ignored.
Triplets ReadMcc(std::string_view text, Notices &notices);

} // namespace caption

#endif
