// SPDX-License-Identifier: MIT
// Pages of one-bit bitmaps.
#ifndef BENCH_PAGE_H
#define BENCH_PAGE_H

#include "fixture.h"

namespace bench
{

// A page consists of cells, each with one glyph, and is drawn in batches of a hundred.
struct Page {
    kova_uint32 uiColumns, uiRows, uiWidth, uiHeight; // in cells; pixels per cell before expansion
    KovaTextExpand_e eExpand;
    kova_uint32 uiHorizontal, uiVertical;

    kova_uint32 Pixels() const
    {
        return uiColumns * uiRows * uiWidth * uiHeight * uiHorizontal * uiVertical;
    }
};

constexpr Page TELETEXT = {40, 25, 12, 10, KOVA_EXPAND_2X2Y, 2, 2};
constexpr Page GLYPHS = {10, 10, 48, 48, KOVA_EXPAND_1X1Y, 1, 1};

// The cells of a page as arguments of the library.
class Cells
{
public:
    explicit Cells(const Page &page);
    void Draw(const Display &display); // all cells, in batches of a hundred
    void DrawBatch(const Display &display, size_t uiFirst, kova_uint8 ucCount);

private:
    std::vector<kova_uint8> m_bits;
    std::vector<kova_uint8 *> m_data;
    std::vector<kova_uint32> m_x, m_y, m_width, m_height, m_rowByte, m_offset;
    std::vector<kova_sint32> m_bg, m_fg;
    std::vector<KovaTextExpand_e> m_expand;
};

} // namespace bench

#endif
