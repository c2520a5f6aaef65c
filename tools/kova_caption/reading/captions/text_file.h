// SPDX-License-Identifier: MIT
// Files of captions in text: SCC, MCC and raw triplets.
#ifndef KOVA_CAPTION_READING_CAPTIONS_TEXT_FILE_H
#define KOVA_CAPTION_READING_CAPTIONS_TEXT_FILE_H

#include <string>

#include "base/notices.h"
#include "reading/captions/triplets.h"

namespace caption
{

// By its content; a file named .ccd need not be in order to be known.
bool IsCaptionText(const std::string &text, const std::string &file);

// "scc", "mcc" or "ccd".
std::string CaptionTextFormat(const std::string &text);

// A Failure where the format tolerates no damage.
Triplets ReadCaptionText(const std::string &text, const std::string &file, Notices &notices);

} // namespace caption

#endif
