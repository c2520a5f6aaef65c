// SPDX-License-Identifier: MIT
#include "page.h"

namespace bench
{

Cells::Cells(const Page &page)
{
    const kova_uint32 uiRowByte = (page.uiWidth + 7) / 8, uiCount = page.uiColumns * page.uiRows;

    for (size_t i = 0; i < uiRowByte * page.uiHeight; i++) m_bits.push_back(kova_uint8(0x9D * (i + 1)));
    for (kova_uint32 i = 0; i < uiCount; i++) {
        m_x.push_back(i % page.uiColumns * page.uiWidth * page.uiHorizontal);
        m_y.push_back(i / page.uiColumns * page.uiHeight * page.uiVertical);
    }
    m_data.assign(uiCount, m_bits.data());
    m_width.assign(uiCount, page.uiWidth);
    m_height.assign(uiCount, page.uiHeight);
    m_rowByte.assign(uiCount, uiRowByte);
    m_offset.assign(uiCount, 0);
    m_bg.assign(uiCount, 1);
    m_fg.assign(uiCount, 2);
    m_expand.assign(uiCount, page.eExpand);
}

void Cells::DrawBatch(const Display &display, size_t uiFirst, kova_uint8 ucCount)
{
    const size_t i = uiFirst;

    display->BatchDrawPixelExpand(display, 0, &m_data[i], &m_x[i], &m_y[i], &m_width[i], &m_height[i],
                                  &m_rowByte[i], &m_bg[i], &m_fg[i], &m_offset[i], &m_expand[i], ucCount);
}

void Cells::Draw(const Display &display)
{
    for (size_t i = 0; i < m_data.size(); i += 100) DrawBatch(display, i, 100);
}

} // namespace bench
