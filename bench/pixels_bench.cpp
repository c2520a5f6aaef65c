// Pixels that the library writes itself, beside memcpy and memset of as many bytes to the same place.
#include "bed.h"

#include <cstring>

namespace bench
{

// What is drawn in one go: cells of glyphs, in batches of a hundred.
struct Page {
    kova_uint32 uiColumns, uiRows, uiWidth, uiHeight; // cells, and pixels a cell before enlarging
    KovaTextExpand_e eExpand;
    kova_uint32 uiHorizontal, uiVertical;

    kova_uint32 Pixels() const
    {
        return uiColumns * uiRows * uiWidth * uiHeight * uiHorizontal * uiVertical;
    }
};

static constexpr Page TELETEXT = {40, 25, 12, 10, KOVA_EXPAND_2X2Y, 2, 2};
static constexpr Page GLYPHS = {10, 10, 48, 48, KOVA_EXPAND_1X1Y, 1, 1};

// The cells of a page as the library is told them.
class Cells
{
public:
    explicit Cells(const Page &page);
    void Draw(const Display &display)
    {
        for (size_t i = 0; i < m_data.size(); i += 100) {
            display->BatchDrawPixelExpand(display, 0, &m_data[i], &m_x[i], &m_y[i], &m_width[i], &m_height[i],
                                          &m_rowByte[i], &m_bg[i], &m_fg[i], &m_offset[i], &m_expand[i], 100);
        }
    }

private:
    std::vector<kova_uint8> m_bits;
    std::vector<kova_uint8 *> m_data;
    std::vector<kova_uint32> m_x, m_y, m_width, m_height, m_rowByte, m_offset;
    std::vector<kova_sint32> m_bg, m_fg;
    std::vector<KovaTextExpand_e> m_expand;
};

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

// The same cells as rows of finished pixels: what the drawing would cost if there were no bits to expand.
template <typename Move>
static void MoveCells(const Page &page, size_t uiBytes, void *pData, int iPitch, Move move)
{
    const size_t uiRow = page.uiWidth * page.uiHorizontal * uiBytes, uiRows = page.uiHeight * page.uiVertical;

    for (kova_uint32 i = 0; i < page.uiColumns * page.uiRows; i++) {
        char *pcTo = static_cast<char *>(pData) + i / page.uiColumns * uiRows * size_t(iPitch) +
                     i % page.uiColumns * uiRow;
        for (size_t y = 0; y < uiRows; y++, pcTo += iPitch) move(pcTo, y, uiRow);
    }
    benchmark::ClobberMemory();
}

static void DrawPage(benchmark::State &state, const Page &page, Colors_e eColors, bool bFill)
{
    Display display(eColors);
    Cells cells(page);
    const size_t uiBytes = eColors == INDEX ? 1 : 4;
    const std::vector<char> source(page.Pixels() * uiBytes / page.uiColumns / page.uiRows, 7);
    void *pData;
    int iPitch;

    // The address stays the same as long as nothing flips.
    display.Surface()->Lock(display.Surface(), DSLF_WRITE, &pData, &iPitch);
    display.Surface()->Unlock(display.Surface());
    const auto draw = [&] { cells.Draw(display); };
    if (bFill) {
        Versus(state, "memset", draw, [&] {
            MoveCells(page, uiBytes, pData, iPitch,
                      [&](char *pcTo, size_t, size_t uiRow) { std::memset(pcTo, 7, uiRow); });
        });
    } else {
        Versus(state, "memcpy", draw, [&] {
            MoveCells(page, uiBytes, pData, iPitch, [&](char *pcTo, size_t y, size_t uiRow) {
                std::memcpy(pcTo, source.data() + y * uiRow, uiRow);
            });
        });
    }
}

// Raw rows without DirectFB at all; beside its lock they stand among the direct calls.
static void DrawPixels(benchmark::State &state, kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    Display display(INDEX);
    std::vector<kova_uint8> pixels(uiWidth * uiHeight, 7);
    void *pData;
    int iPitch;

    display.Surface()->Lock(display.Surface(), DSLF_WRITE, &pData, &iPitch);
    display.Surface()->Unlock(display.Surface());
    Versus(
        state, "memcpy",
        [&] { display->DrawPixel(display, 0, pixels.data(), 0, 0, uiWidth, uiHeight, uiWidth); },
        [&] {
            for (kova_uint32 y = 0; y < uiHeight; y++) {
                std::memcpy(static_cast<char *>(pData) + y * kova_uint32(iPitch), pixels.data() + y * uiWidth,
                            uiWidth);
            }
            benchmark::ClobberMemory();
        });
}

static const int s_registered = [] {
    if (IsX11()) return 0; // the memory is the same there
    for (const bool bFill : {false, true}) {
        for (const Colors_e eColors : {INDEX, PALETTE}) {
            const std::string group = std::string("pixels/beside ") + (bFill ? "memset " : "memcpy ") +
                                      (eColors == INDEX ? "LUT8/" : "ARGB/");
            Register(group + "teletext page 40x25, enlarged 2x2",
                     [=](benchmark::State &state) { DrawPage(state, TELETEXT, eColors, bFill); });
            Register(group + "100 glyphs of 48x48",
                     [=](benchmark::State &state) { DrawPage(state, GLYPHS, eColors, bFill); });
        }
    }
    Register("pixels/beside memcpy LUT8/rows 32x32",
             [](benchmark::State &state) { DrawPixels(state, 32, 32); });
    Register("pixels/beside memcpy LUT8/rows 1920x1080",
             [](benchmark::State &state) { DrawPixels(state, 1920, 1080); });
    return 0;
}();

} // namespace bench
