// Pixels that the library writes itself, beside memcpy and memset of as many bytes to the same place.
#include "bed.h"

#include <cstring>
#include <vector>

namespace bench
{

// ------------------------------------------------------------------ DrawPixel

static void DrawPixels(benchmark::State &state, kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    Display display(false);
    std::vector<kova_uint8> pixels(uiWidth * uiHeight, 7);

    for (auto _ : state) {
        display->DrawPixel(display, 0, pixels.data(), 0, 0, uiWidth, uiHeight, uiWidth);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * uiWidth * uiHeight);
}

static void CopyPixels(benchmark::State &state, kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    Display display(false);
    std::vector<kova_uint8> pixels(uiWidth * uiHeight, 7);
    void *pData;
    int iPitch;

    display.Surface()->Lock(display.Surface(), DSLF_WRITE, &pData, &iPitch);
    for (auto _ : state) {
        for (kova_uint32 y = 0; y < uiHeight; y++) {
            std::memcpy(static_cast<char *>(pData) + y * kova_uint32(iPitch), pixels.data() + y * uiWidth,
                        uiWidth);
        }
        benchmark::ClobberMemory();
    }
    display.Surface()->Unlock(display.Surface());
    state.SetBytesProcessed(int64_t(state.iterations()) * uiWidth * uiHeight);
}

static void LockAndCopyPixels(benchmark::State &state, kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    Display display(false);
    std::vector<kova_uint8> pixels(uiWidth * uiHeight, 7);
    IDirectFBSurface *const pSurface = display.Surface();
    void *pData;
    int iPitch;

    for (auto _ : state) {
        pSurface->Lock(pSurface, DSLF_WRITE, &pData, &iPitch);
        for (kova_uint32 y = 0; y < uiHeight; y++) {
            std::memcpy(static_cast<char *>(pData) + y * kova_uint32(iPitch), pixels.data() + y * uiWidth,
                        uiWidth);
        }
        pSurface->Unlock(pSurface);
    }
}

// ------------------------------------------------------------------ one-bit bitmaps

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

static void DrawPage(benchmark::State &state, const Page &page, bool bPalette)
{
    Display display(bPalette);
    const kova_uint32 uiRowByte = (page.uiWidth + 7) / 8, uiCount = page.uiColumns * page.uiRows;
    std::vector<kova_uint8> bits(uiRowByte * page.uiHeight);
    std::vector<kova_uint8 *> data(uiCount, bits.data());
    std::vector<kova_uint32> x, y, width(uiCount, page.uiWidth), height(uiCount, page.uiHeight),
        row(uiCount, uiRowByte), offset(uiCount, 0);
    std::vector<kova_sint32> bg(uiCount, 1), fg(uiCount, 2);
    std::vector<KovaTextExpand_e> expand(uiCount, page.eExpand);

    for (size_t i = 0; i < bits.size(); i++) bits[i] = kova_uint8(0x9D * (i + 1));
    for (kova_uint32 i = 0; i < uiCount; i++) {
        x.push_back(i % page.uiColumns * page.uiWidth * page.uiHorizontal);
        y.push_back(i / page.uiColumns * page.uiHeight * page.uiVertical);
    }
    for (auto _ : state) {
        for (kova_uint32 i = 0; i < uiCount; i += 100) {
            display->BatchDrawPixelExpand(display, 0, &data[i], &x[i], &y[i], &width[i], &height[i], &row[i],
                                          &bg[i], &fg[i], &offset[i], &expand[i], 100);
        }
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * page.Pixels() * (bPalette ? 4 : 1));
}

// The same cells as rows of finished pixels: what the drawing would cost if there were no bits to expand.
static void MovePage(benchmark::State &state, const Page &page, bool bPalette, bool bFill)
{
    Display display(bPalette);
    const size_t uiBytes = bPalette ? 4 : 1, uiRow = page.uiWidth * page.uiHorizontal * uiBytes,
                 uiRows = page.uiHeight * page.uiVertical;
    const std::vector<char> source(uiRow * uiRows, 7);
    void *pData;
    int iPitch;

    display.Surface()->Lock(display.Surface(), DSLF_WRITE, &pData, &iPitch);
    for (auto _ : state) {
        for (kova_uint32 i = 0; i < page.uiColumns * page.uiRows; i++) {
            char *pcTo = static_cast<char *>(pData) + i / page.uiColumns * uiRows * size_t(iPitch) +
                         i % page.uiColumns * uiRow;
            for (size_t y = 0; y < uiRows; y++, pcTo += iPitch) {
                if (bFill) {
                    std::memset(pcTo, 7, uiRow);
                } else {
                    std::memcpy(pcTo, source.data() + y * uiRow, uiRow);
                }
            }
        }
        benchmark::ClobberMemory();
    }
    display.Surface()->Unlock(display.Surface());
    state.SetBytesProcessed(int64_t(state.iterations()) * page.Pixels() * int64_t(uiBytes));
}

static const int s_registered = [] {
    const auto pixels = [](const char *pcSize, kova_uint32 uiWidth, kova_uint32 uiHeight) {
        const std::string size = pcSize;
        const std::string ours = "DrawPixel " + size, copy = "memcpy " + size, lock = "Lock+memcpy " + size;
        benchmark::RegisterBenchmark(ours.c_str(), DrawPixels, uiWidth, uiHeight);
        benchmark::RegisterBenchmark(copy.c_str(), CopyPixels, uiWidth, uiHeight);
        benchmark::RegisterBenchmark(lock.c_str(), LockAndCopyPixels, uiWidth, uiHeight);
        Compare(ours.c_str(), copy.c_str());
        Compare(ours.c_str(), lock.c_str());
    };
    pixels("1920x1080", 1920, 1080);
    pixels("32x32", 32, 32);

    const auto page = [](const char *pcName, const Page &cells, bool bPalette) {
        const std::string name = std::string(pcName) + (bPalette ? " ARGB" : " LUT8");
        const std::string ours = "Batch " + name, copy = "memcpy " + name, fill = "memset " + name;
        benchmark::RegisterBenchmark(ours.c_str(), DrawPage, cells, bPalette);
        benchmark::RegisterBenchmark(copy.c_str(), MovePage, cells, bPalette, false);
        benchmark::RegisterBenchmark(fill.c_str(), MovePage, cells, bPalette, true);
        Compare(ours.c_str(), copy.c_str());
        Compare(ours.c_str(), fill.c_str());
    };
    for (const bool bPalette : {false, true}) {
        page("teletext 40x25", TELETEXT, bPalette);
        page("glyphs 100x48x48", GLYPHS, bPalette);
    }
    return 0;
}();

} // namespace bench
