// SPDX-License-Identifier: MIT
// Parses values of options. Throws WrongUsage with the name of the option if the text is not valid.
#ifndef KOVA_CAPTION_COMMANDS_PARSE_H
#define KOVA_CAPTION_COMMANDS_PARSE_H

#include <cstdint>
#include <string>

#include "base/color.h"
#include "base/rect.h"

namespace caption
{

// "RRGGBB", with or without a leading #.
Color ParseColor(const std::string &option, const std::string &text);

// "WIDTHxHEIGHT", 1x1 to 1920x1080.
Size ParsePlane(const std::string &text);

// "[[HH:]MM:]SS[.mmm]" in milliseconds.
std::int64_t ParseTime(const std::string &option, const std::string &text);

// "s1" to "s63", "cc1" to "cc4" or "t1" to "t4": a number of KovaCaptionsSource.
std::uint8_t ParseService(const std::string &text);

} // namespace caption

#endif
