// SPDX-License-Identifier: MIT
// Cues as they are listed: when they come and go, and their lines.
#ifndef KOVA_CAPTION_CUES_LISTED_CUE_H
#define KOVA_CAPTION_CUES_LISTED_CUE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace caption
{

// Closed captions alone stand in rows and columns, and only those of CEA-708 in windows.
struct ListedLine {
    std::optional<int> window; // 0 to 7
    std::optional<int> row;    // of CEA-608 from 1, of a window from 0
    std::optional<int> column; // of its first character, from 0
    std::string text;

    bool operator==(const ListedLine &other) const
    {
        return window == other.window && row == other.row && column == other.column && text == other.text;
    }
};

struct ListedCue {
    std::int64_t start = 0;          // milliseconds
    std::optional<std::int64_t> end; // none: nothing in the source ends it
    std::vector<ListedLine> lines;   // from top to bottom
    std::size_t pictures = 0;
};

} // namespace caption

#endif
