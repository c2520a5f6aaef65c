// SPDX-License-Identifier: MIT
#include "commands/parse.h"

#include <cctype>
#include <cstdio>
#include <regex>
#include <string>

#include "base/failure.h"
#include "kova/kova_captions.h"

namespace caption
{

Color ParseColor(const std::string &option, const std::string &text)
{
    const std::string digits = text.rfind('#', 0) == 0 ? text.substr(1) : text;

    if (digits.size() != 6 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
        throw WrongUsage(option + " " + text + ": expected six hexadecimal digits, RRGGBB, such as FFFF00");
    }
    const auto value = std::stoul(digits, nullptr, 16);
    return {std::uint8_t(value >> 16), std::uint8_t(value >> 8 & 255), std::uint8_t(value & 255)};
}

Size ParsePlane(const std::string &text)
{
    Size plane;
    char rest = 0;
    const bool bounded = text.size() <= 9; // so that no number overflows

    if (!bounded || std::sscanf(text.c_str(), "%dx%d%c", &plane.width, &plane.height, &rest) != 2 ||
        plane.width < 1 || plane.width > 1920 || plane.height < 1 || plane.height > 1080) {
        throw WrongUsage("--plane " + text +
                         ": expected WIDTHxHEIGHT from 1x1 to 1920x1080, such as 1280x720");
    }
    return plane;
}

std::int64_t ParseTime(const std::string &option, const std::string &text)
{
    static const std::regex form(R"((?:(?:(\d{1,3}):)?([0-5]?\d):)?(\d{1,6})(?:[.,](\d{1,3}))?)");
    std::smatch parts;

    if (!std::regex_match(text, parts, form)) {
        throw WrongUsage(option + " " + text + ": expected [[HH:]MM:]SS[.mmm], such as 1:02:03.5 or 90");
    }
    const auto number = [&](std::size_t part) { return parts[part].length() ? std::stoll(parts[part]) : 0; };
    const std::string thousandths = (parts[4].str() + "000").substr(0, 3);
    return ((number(1) * 60 + number(2)) * 60 + number(3)) * 1000 + std::stoll(thousandths);
}

std::uint8_t ParseService(const std::string &text)
{
    const std::uint8_t source = Kova_Captions_SourceByName(text.c_str());

    if (source == KOVA_CAPTIONS_NONE || source > KOVA_CAPTIONS_T4) {
        throw WrongUsage("--service " + text + ": must be one of s1 to s63, cc1 to cc4 and t1 to t4");
    }
    return source;
}

} // namespace caption
