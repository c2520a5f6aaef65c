// SPDX-License-Identifier: MIT
#include "reading/text_lines.h"

namespace caption
{

static const std::string_view g_blanks = " \t\v\f";
static const int g_mostReports = 10;

TextLines::TextLines(std::string_view text) : rest_(text)
{
    const std::string_view mark = "\xEF\xBB\xBF";
    if (StartsWith(rest_, mark)) rest_.remove_prefix(mark.size());
}

std::optional<std::string_view> TextLines::Next()
{
    if (rest_.empty()) return std::nullopt;
    const std::size_t end = rest_.find_first_of("\r\n");
    const std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(line.size());
    rest_.remove_prefix(StartsWith(rest_, "\r\n") ? 2 : rest_.empty() ? 0 : 1);
    ++number_;
    return Trimmed(line);
}

std::string_view FirstLine(std::string_view text)
{
    TextLines lines(text);

    for (auto line = lines.Next(); line; line = lines.Next()) {
        if (!line->empty()) return *line;
    }
    return {};
}

std::string_view Trimmed(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(g_blanks);

    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(g_blanks) - begin + 1);
}

std::string_view TakeWord(std::string_view &text)
{
    const std::string_view word = text.substr(0, text.find_first_of(g_blanks));

    text = Trimmed(text.substr(word.size()));
    return word;
}

std::optional<std::uint32_t> Hexadecimal(std::string_view digits)
{
    std::uint32_t value = 0;

    if (digits.empty() || digits.size() > 8) return std::nullopt;
    for (const char digit : digits) {
        if (digit >= '0' && digit <= '9') {
            value = value << 4 | std::uint32_t(digit - '0');
        } else if (digit >= 'A' && digit <= 'F') {
            value = value << 4 | std::uint32_t(digit - 'A' + 10);
        } else if (digit >= 'a' && digit <= 'f') {
            value = value << 4 | std::uint32_t(digit - 'a' + 10);
        } else {
            return std::nullopt;
        }
    }
    return value;
}

std::optional<int> Decimal(std::string_view digits)
{
    int value = 0;

    if (digits.empty() || digits.size() > 9) return std::nullopt;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9') return std::nullopt;
        value = value * 10 + (digit - '0');
    }
    return value;
}

bool StartsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

void DamagedLines::Report(int line, const std::string &reason)
{
    if (line == last_) return;
    last_ = line;
    if (++count_ <= g_mostReports) notices_.Say("line " + std::to_string(line) + ": " + reason);
}

void DamagedLines::Finish()
{
    if (count_ > g_mostReports) {
        notices_.Say(std::to_string(count_ - g_mostReports) + " further lines are damaged");
    }
}

} // namespace caption
