// SPDX-License-Identifier: MIT
// What the readers of line-oriented caption files share.
#ifndef KOVA_CAPTION_READING_TEXT_LINES_H
#define KOVA_CAPTION_READING_TEXT_LINES_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/notices.h"

namespace caption
{

// Goes through the lines of a text, whichever of LF, CR LF and CR ends them.
class TextLines
{
public:
    // A byte order mark at the beginning is skipped.
    explicit TextLines(std::string_view text);

    // The next line without its end and without blanks around it; none after the last one.
    std::optional<std::string_view> Next();

    // Of the line that Next returned last, from 1.
    int number() const
    {
        return number_;
    }

private:
    std::string_view rest_;
    int number_ = 0;
};

// The first line that holds more than blanks; empty if there is none.
std::string_view FirstLine(std::string_view text);

std::string_view Trimmed(std::string_view text);

// Removes the text up to the first blank, and the blanks behind it, from the front.
std::string_view TakeWord(std::string_view &text);

// An unsigned number of exactly these digits, which is all of the text.
std::optional<std::uint32_t> Hexadecimal(std::string_view digits);

// An unsigned decimal number of 1 to 9 digits, which is all of the text.
std::optional<int> Decimal(std::string_view digits);

bool StartsWith(std::string_view text, std::string_view start);

// Reports damaged lines: each of the first ten by its number, the rest by their count.
class DamagedLines
{
public:
    explicit DamagedLines(Notices &notices) : notices_(notices)
    {
    }
    DamagedLines(const DamagedLines &) = delete;
    DamagedLines &operator=(const DamagedLines &) = delete;

    // Only the first report of a line counts. The reason completes "line 7: ".
    void Report(int line, const std::string &reason);

    // After the last line.
    void Finish();

private:
    Notices &notices_;
    int last_ = 0;
    int count_ = 0;
};

} // namespace caption

#endif
