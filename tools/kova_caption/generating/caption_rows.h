// SPDX-License-Identifier: MIT
// Cues become rows of closed captions: wrapped to 32 columns, with the colours and styles that both standards have.
#ifndef KOVA_CAPTION_GENERATING_CAPTION_ROWS_H
#define KOVA_CAPTION_GENERATING_CAPTION_ROWS_H

#include <array>
#include <set>
#include <string>
#include <vector>

#include "cues/cue.h"
#include "generating/encoder608.h"

namespace caption
{

inline constexpr std::size_t g_columns = 32;

struct PenLook {
    encoding::Color608 color = encoding::WHITE;
    bool italics = false;
    bool underline = false;

    bool operator==(const PenLook &other) const
    {
        return color == other.color && italics == other.italics && underline == other.underline;
    }
};

struct CaptionCell {
    char32_t code = 0;
    PenLook look;
};

struct CaptionRow {
    std::vector<CaptionCell> cells; // without blanks at its ends
    Horizontal horizontal = Horizontal::CENTER;
};

// What a cell of a row of CEA-608 is sent as: text, or an attribute code, which takes a cell too.
struct Item608 {
    std::u32string text;
    bool isCode = false;
    encoding::Color608 code = encoding::WHITE;
    bool underline = false;
};

// A change of the look is sent in place of the space before it, or takes a cell more. Characters that CEA-608 has
// nothing for become question marks and are added to `missing`.
std::vector<Item608> ItemsOf(const std::vector<CaptionCell> &cells, std::set<char32_t> &missing);
std::size_t WidthOf(const std::vector<Item608> &items);

// The rows at the top, in the middle and at the bottom of the picture, at most 15 in all.
struct CaptionPage {
    std::array<std::vector<CaptionRow>, 3> groups; // by Vertical
    std::size_t lost = 0;                          // rows that found no place

    std::size_t RowCount() const
    {
        return groups[0].size() + groups[1].size() + groups[2].size();
    }
};

// Cues that are shown together.
CaptionPage PageOf(const std::vector<const Cue *> &cues);

} // namespace caption

#endif
