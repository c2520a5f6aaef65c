// SPDX-License-Identifier: MIT
#include "reading/captions/time_code.h"

#include "reading/text_lines.h"

namespace caption
{

std::optional<KovaCaptionsTimeCode> ParseTimeCode(std::string_view text)
{
    if (text.size() != 11 || text[2] != ':' || text[5] != ':') return std::nullopt;
    if (text[8] != ':' && text[8] != ';') return std::nullopt;
    const auto hours = Decimal(text.substr(0, 2));
    const auto minutes = Decimal(text.substr(3, 2));
    const auto seconds = Decimal(text.substr(6, 2));
    const auto frames = Decimal(text.substr(9, 2));
    if (!hours || !minutes || !seconds || !frames) return std::nullopt;

    KovaCaptionsTimeCode timeCode = {};
    timeCode.hours = std::uint8_t(*hours);
    timeCode.minutes = std::uint8_t(*minutes);
    timeCode.seconds = std::uint8_t(*seconds);
    timeCode.frames = std::uint8_t(*frames);
    timeCode.drop = text[8] == ';';
    return timeCode;
}

} // namespace caption
