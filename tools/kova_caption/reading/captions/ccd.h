// SPDX-License-Identifier: MIT
// Raw caption data (.ccd): lines of a time, a blank, and triplets in hexadecimal, blanks optional within.
//
//     # pop-on captions of CC1
//     00:00:01.000  fc 94 20  fc 94 20
//     1033          fc9470 fcc8e9
#ifndef KOVA_CAPTION_READING_CAPTIONS_CCD_H
#define KOVA_CAPTION_READING_CAPTIONS_CCD_H

#include <string_view>

#include "reading/captions/triplets.h"

namespace caption
{

// Whether its first line that is no comment is a whole line of the format with at least one triplet.
bool IsCcd(std::string_view text);

// A Failure that begins with "line 7: " where a line is wrong. A time without triplets lets the clock run to
// it.
Triplets ReadCcd(std::string_view text);

} // namespace caption

#endif
