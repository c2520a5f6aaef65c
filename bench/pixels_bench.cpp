// SPDX-License-Identifier: MIT
// Pixels that the library writes itself, compared with memcpy and memset of the same number of bytes to the
// same place.
#include "fixture.h"
#include "page.h"

#include <cstring>

namespace bench
{

// Writes the same cells as rows of finished pixels: the cost of drawing without expanding bits.
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

    // The address does not change while nothing flips.
    display.Surface()->Lock(display.Surface(), DSLF_WRITE, &pData, &iPitch);
    display.Surface()->Unlock(display.Surface());
    const auto draw = [&] { cells.Draw(display); };
    if (bFill) {
        CompareWith(state, "memset", draw, [&] {
            MoveCells(page, uiBytes, pData, iPitch,
                      [&](char *pcTo, size_t, size_t uiRow) { std::memset(pcTo, 7, uiRow); });
        });
    } else {
        CompareWith(state, "memcpy", draw, [&] {
            MoveCells(page, uiBytes, pData, iPitch, [&](char *pcTo, size_t y, size_t uiRow) {
                std::memcpy(pcTo, source.data() + y * uiRow, uiRow);
            });
        });
    }
}

// Raw rows without DirectFB; direct_bench.cpp includes its lock.
static void DrawPixels(benchmark::State &state, kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    Display display(INDEX);
    std::vector<kova_uint8> pixels(uiWidth * uiHeight, 7);
    void *pData;
    int iPitch;

    display.Surface()->Lock(display.Surface(), DSLF_WRITE, &pData, &iPitch);
    display.Surface()->Unlock(display.Surface());
    CompareWith(
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
    if (IsX11()) return 0; // the result would be the same
    for (const bool bFill : {false, true}) {
        for (const Colors_e eColors : {INDEX, PALETTE}) {
            const std::string group = std::string("pixels/") + (bFill ? "memset " : "memcpy ") +
                                      (eColors == INDEX ? "LUT8/" : "ARGB/");
            Register(group + "teletext page 40x25, expanded 2x2",
                     [=](benchmark::State &state) { DrawPage(state, TELETEXT, eColors, bFill); });
            Register(group + "100 glyphs of 48x48",
                     [=](benchmark::State &state) { DrawPage(state, GLYPHS, eColors, bFill); });
        }
    }
    Register("pixels/memcpy LUT8/rows 32x32", [](benchmark::State &state) { DrawPixels(state, 32, 32); });
    Register("pixels/memcpy LUT8/rows 1920x1080",
             [](benchmark::State &state) { DrawPixels(state, 1920, 1080); });
    return 0;
}();

} // namespace bench
