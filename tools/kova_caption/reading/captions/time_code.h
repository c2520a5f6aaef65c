// SPDX-License-Identifier: MIT
// Time codes of caption files, which count frames.
#ifndef KOVA_CAPTION_READING_CAPTIONS_TIME_CODE_H
#define KOVA_CAPTION_READING_CAPTIONS_TIME_CODE_H

#include <optional>
#include <string_view>

#include "kova/kova_captions_carriage.h"

namespace caption
{

// "HH:MM:SS:FF", or "HH:MM:SS;FF" for drop-frame counting. None if it is written in another way; whether the
// frames fit a rate is left to Kova_Captions_CountFrames.
std::optional<KovaCaptionsTimeCode> ParseTimeCode(std::string_view text);

} // namespace caption

#endif
