// SPDX-License-Identifier: MIT
#include "reading/captions/ccd.h"

#include <algorithm>
#include <string>

#include "base/failure.h"
#include "reading/text_lines.h"

namespace caption
{

static std::string_view WithoutComment(std::string_view line)
{
    return Trimmed(line.substr(0, line.find('#')));
}

// "HH:MM:SS.mmm" or milliseconds, in microseconds; negative if it is neither.
static std::int64_t ParseTime(std::string_view text)
{
    const std::int64_t wrong = -1;

    if (const auto milliseconds = Decimal(text)) return std::int64_t(*milliseconds) * 1000;
    const std::size_t hoursEnd = text.find(':');
    if (hoursEnd < 2 || hoursEnd > 3 || text.size() != hoursEnd + 10) return wrong;
    const std::string_view rest = text.substr(hoursEnd); // ":MM:SS.mmm"
    if (rest[3] != ':' || rest[6] != '.') return wrong;
    const auto hours = Decimal(text.substr(0, hoursEnd));
    const auto minutes = Decimal(rest.substr(1, 2));
    const auto seconds = Decimal(rest.substr(4, 2));
    const auto thousandths = Decimal(rest.substr(7, 3));
    if (!hours || !minutes || !seconds || !thousandths || *minutes > 59 || *seconds > 59) return wrong;
    return (((*hours * 60LL + *minutes) * 60 + *seconds) * 1000 + *thousandths) * 1000;
}

// Appends the triplets of a line. Returns what is wrong with it; then nothing is appended.
static std::string ReadLine(std::string_view line, Triplets &read)
{
    const std::string_view label = TakeWord(line);
    const std::int64_t time = ParseTime(label);
    std::string digits(line);

    if (time < 0) {
        return "'" + std::string(label.substr(0, 40)) + "' is not a time (HH:MM:SS.mmm, or milliseconds)";
    }
    digits.erase(std::remove_if(digits.begin(), digits.end(), [](char c) { return c == ' ' || c == '\t'; }),
                 digits.end());
    const std::size_t other = digits.find_first_not_of("0123456789abcdefABCDEF");
    if (other != std::string::npos) return std::string("'") + digits[other] + "' is not a hexadecimal digit";
    if (digits.size() % 6 != 0) {
        return "its " + std::to_string(digits.size()) +
               " hexadecimal digits are not whole triplets of six digits";
    }
    for (std::size_t i = 0; i < digits.size(); i += 6) {
        const std::uint32_t bytes = *Hexadecimal(std::string_view(digits).substr(i, 6));
        read.triplets.push_back(
            {time, {std::uint8_t(bytes >> 16), std::uint8_t(bytes >> 8), std::uint8_t(bytes)}});
    }
    read.end = std::max(read.end, time);
    return "";
}

bool IsCcd(std::string_view text)
{
    TextLines lines(text);

    for (auto line = lines.Next(); line; line = lines.Next()) {
        const std::string_view content = WithoutComment(*line);
        Triplets read;
        if (!content.empty()) return ReadLine(content, read).empty() && !read.triplets.empty();
    }
    return false;
}

Triplets ReadCcd(std::string_view text)
{
    Triplets read;
    TextLines lines(text);

    for (auto line = lines.Next(); line; line = lines.Next()) {
        const std::string_view content = WithoutComment(*line);
        const std::string problem = content.empty() ? "" : ReadLine(content, read);
        if (!problem.empty()) throw Failure("line " + std::to_string(lines.number()) + ": " + problem);
    }
    return read;
}

} // namespace caption
