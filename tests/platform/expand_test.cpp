// SPDX-License-Identifier: MIT
// Bit-expanded drawing without the platform's calls: the library draws into the surface itself.
// The result is compared with a plain loop, pixel by pixel.
#include "expect.h"

#include <memory>
#include <random>
#include <sys/mman.h>
#include <unistd.h>

using namespace test;

static const int WIDTH = 200, HEIGHT = 150;

// One bitmap, in memory that ends with its last pixel, so that the address sanitizer detects reads beyond it.
struct Glyph_t {
    int iX, iY, iWidth, iHeight, iRowByte, iBitOffset, iCode;
    kova_uint32 uiBg, uiFg;
    std::unique_ptr<kova_uint8[]> data;

    int Horizontal() const
    {
        return iCode & 4 ? 2 : 1;
    }
    int Vertical() const
    {
        return iCode & 3 ? 2 * (iCode & 3) : 1;
    }
    bool Bit(int x, int y) const
    {
        const int iBit = iBitOffset + x;
        return data[size_t(y * iRowByte + iBit / 8)] >> (7 - iBit % 8) & 1;
    }
};

// The expected contents of a surface.
class Reference_t
{
public:
    explicit Reference_t(IDirectFBSurface *pSurface) : m_pSurface(pSurface), m_memory(Memory(pSurface))
    {
        pSurface->GetPixelFormat(pSurface, &m_eFormat);
    }
    void Draw(const Glyph_t &g)
    {
        const DFBRegion clip = ClipOf(m_pSurface);

        for (int y = 0; y < g.iHeight * g.Vertical(); y++) {
            for (int x = 0; x < g.iWidth * g.Horizontal(); x++) {
                const int iX = g.iX + x, iY = g.iY + y;
                if (iX < 0 || iX >= WIDTH || iX < clip.x1 || iX > clip.x2) continue;
                if (iY < 0 || iY >= HEIGHT || iY < clip.y1 || iY > clip.y2) continue;
                const kova_uint32 uiColor = g.Bit(x / g.Horizontal(), y / g.Vertical()) ? g.uiFg : g.uiBg;
                const size_t uiPixel = size_t(iY) * WIDTH + size_t(iX);
                if (m_eFormat == DSPF_LUT8) {
                    m_memory[uiPixel] = kova_uint8(uiColor);
                } else {
                    memcpy(&m_memory[4 * uiPixel], &uiColor, 4);
                }
            }
        }
    }
    // Includes the padding of the rows, which must not change.
    void Compare() const
    {
        int iPitch = 0;
        const unsigned char *const pucPixels = Pixels(m_pSurface, &iPitch);
        const size_t uiRow = m_memory.size() / HEIGHT;

        for (size_t y = 0; y < HEIGHT; y++) {
            const unsigned char *const pucRow = pucPixels + y * size_t(iPitch);
            if (memcmp(pucRow, &m_memory[y * uiRow], uiRow) == 0) continue;
            size_t x = 0;
            while (pucRow[x] == m_memory[y * uiRow + x]) x++;
            FAIL() << "row " << y << ", byte " << x;
        }
        for (size_t y = 0; y < HEIGHT; y++) {
            for (size_t x = uiRow; x < size_t(iPitch); x++) {
                ASSERT_EQ(pucPixels[y * size_t(iPitch) + x], 0) << "padding of row " << y;
            }
        }
    }

private:
    IDirectFBSurface *m_pSurface;
    DFBSurfacePixelFormat m_eFormat = DSPF_UNKNOWN;
    std::vector<unsigned char> m_memory;
};

class Dice_t
{
public:
    explicit Dice_t(unsigned uiSeed) : m_engine(uiSeed)
    {
    }
    int Between(int iLow, int iHigh)
    {
        return std::uniform_int_distribution<int>(iLow, iHigh)(m_engine);
    }
    kova_uint32 Bits()
    {
        return kova_uint32(m_engine());
    }

private:
    std::mt19937 m_engine;
};

static Glyph_t AnyGlyph(Dice_t &dice, bool bIndexed)
{
    static const int aiPlaces[] = {-400, -97, -20, -1, 0, 1, 30, 90, 180, 198, 199, 200, 1000};
    Glyph_t g;

    g.iWidth = dice.Between(0, 48);
    g.iHeight = dice.Between(0, 48);
    g.iBitOffset = dice.Between(0, 17);
    g.iRowByte = (g.iBitOffset % 8 + g.iWidth + 7) / 8 + dice.Between(0, 3);
    g.iCode = dice.Between(0, 7);
    g.iX = aiPlaces[dice.Between(0, 12)] + dice.Between(0, 5);
    g.iY = aiPlaces[dice.Between(0, 12)] + dice.Between(0, 5);
    g.uiBg = bIndexed ? kova_uint32(dice.Between(0, 255)) : dice.Bits();
    g.uiFg = bIndexed ? kova_uint32(dice.Between(0, 255)) : dice.Bits();
    const int iRows = g.iHeight > 0 ? (g.iHeight - 1) * g.iRowByte : 0;
    const size_t uiBytes = size_t(iRows + (g.iBitOffset + g.iWidth + 7) / 8);
    g.data.reset(new kova_uint8[uiBytes]);
    for (size_t i = 0; i < uiBytes; i++) g.data[i] = kova_uint8(dice.Bits() >> 24);
    return g;
}

static int Draw(pKovaITextDisplay_t pDisplay, const Glyph_t &g)
{
    return pDisplay->DrawPixelExpand(pDisplay, 0, g.data.get(), kova_uint32(g.iX), kova_uint32(g.iY),
                                     kova_uint32(g.iWidth), kova_uint32(g.iHeight), kova_uint32(g.iRowByte),
                                     kova_sint32(g.uiBg), kova_sint32(g.uiFg), kova_uint32(g.iBitOffset),
                                     KovaTextExpand_e(g.iCode));
}

static int DrawAll(pKovaITextDisplay_t pDisplay, const std::vector<Glyph_t> &glyphs)
{
    kova_uint8 *apucData[100];
    kova_uint32 auiX[100], auiY[100], auiWidth[100], auiHeight[100], auiRowByte[100], auiBitOffset[100];
    kova_sint32 asiBg[100], asiFg[100];
    KovaTextExpand_e aeExpand[100];

    for (size_t i = 0; i < glyphs.size(); i++) {
        apucData[i] = glyphs[i].data.get();
        auiX[i] = kova_uint32(glyphs[i].iX);
        auiY[i] = kova_uint32(glyphs[i].iY);
        auiWidth[i] = kova_uint32(glyphs[i].iWidth);
        auiHeight[i] = kova_uint32(glyphs[i].iHeight);
        auiRowByte[i] = kova_uint32(glyphs[i].iRowByte);
        auiBitOffset[i] = kova_uint32(glyphs[i].iBitOffset);
        asiBg[i] = kova_sint32(glyphs[i].uiBg);
        asiFg[i] = kova_sint32(glyphs[i].uiFg);
        aeExpand[i] = KovaTextExpand_e(glyphs[i].iCode);
    }
    return pDisplay->BatchDrawPixelExpand(pDisplay, 0, apucData, auiX, auiY, auiWidth, auiHeight, auiRowByte,
                                          asiBg, asiFg, auiBitOffset, aeExpand, kova_uint8(glyphs.size()));
}

static std::string Describe(const Glyph_t &g)
{
    std::string text;
    for (const int i : {g.iX, g.iY, g.iWidth, g.iHeight, g.iRowByte, g.iBitOffset, g.iCode}) {
        text += std::to_string(i) + " ";
    }
    return text;
}

static pKovaITextDisplay_t GivenSmallPlane(ColorMode_e eMode)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, eMode);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, WIDTH, HEIGHT), 0);
    SetThreshold(0);
    ClearTrace();
    return pDisplay;
}

static const DFBRegion CLIPS[] = {
    {0, 0, WIDTH - 1, HEIGHT - 1}, // the whole surface
    {21, 33, 110, 97},             // a part
    {40, 40, 40, 40},              // one pixel
    {-50, -50, 500, 500},          // past the surface
    {300, 300, 400, 400},          // outside
};

class ExpandGlyphs : public testing::TestWithParam<ColorMode_e>
{
};

TEST_P(ExpandGlyphs, DrawsWhatThePlainLoopDraws)
{
    pKovaITextDisplay_t pDisplay = GivenSmallPlane(GetParam());
    IDirectFBSurface *const pSurface = RecordOf(pDisplay)->pActiveSurface;
    Reference_t reference(pSurface);
    Dice_t dice(20);

    for (const DFBRegion &clip : CLIPS) {
        ASSERT_EQ(pSurface->SetClip(pSurface, &clip), DFB_OK);
        for (int i = 0; i < 800; i++) {
            const Glyph_t glyph = AnyGlyph(dice, GetParam() == INDEX_COLORS);
            SCOPED_TRACE(Describe(glyph));
            ASSERT_EQ(Draw(pDisplay, glyph), 0);
            reference.Draw(glyph);
            ASSERT_NO_FATAL_FAILURE(reference.Compare());
        }
        ClearTrace();
    }
    Destroy(pDisplay);
}

TEST_P(ExpandGlyphs, DrawsEveryWidthOffsetAndFactor)
{
    pKovaITextDisplay_t pDisplay = GivenSmallPlane(GetParam());
    Reference_t reference(RecordOf(pDisplay)->pActiveSurface);
    Dice_t dice(21);

    for (int iWidth = 1; iWidth <= 48; iWidth++) {
        for (int iBitOffset = 0; iBitOffset < 9; iBitOffset++) {
            for (int iCode = 0; iCode < 8; iCode++) {
                Glyph_t g = AnyGlyph(dice, GetParam() == INDEX_COLORS);
                g.iWidth = iWidth;
                g.iHeight = 2;
                g.iBitOffset = iBitOffset;
                g.iRowByte = (iBitOffset + iWidth + 7) / 8;
                g.iCode = iCode;
                g.iX = dice.Between(0, WIDTH - 96);
                g.iY = dice.Between(0, HEIGHT - 12);
                g.data.reset(new kova_uint8[size_t(2 * g.iRowByte)]);
                for (int i = 0; i < 2 * g.iRowByte; i++) g.data[size_t(i)] = kova_uint8(dice.Bits() >> 24);
                SCOPED_TRACE(Describe(g));
                ASSERT_EQ(Draw(pDisplay, g), 0);
                reference.Draw(g);
                ASSERT_NO_FATAL_FAILURE(reference.Compare());
            }
        }
        ClearTrace();
    }
    Destroy(pDisplay);
}

TEST_P(ExpandGlyphs, DrawsABatchInItsOrderUnderOneLock)
{
    pKovaITextDisplay_t pDisplay = GivenSmallPlane(GetParam());
    Reference_t reference(RecordOf(pDisplay)->pActiveSurface);
    Dice_t dice(22);

    for (const size_t uiCount : {size_t(1), size_t(3), size_t(100)}) {
        std::vector<Glyph_t> glyphs;
        for (size_t i = 0; i < uiCount; i++) glyphs.push_back(AnyGlyph(dice, GetParam() == INDEX_COLORS));
        ClearTrace();
        EXPECT_EQ(DrawAll(pDisplay, glyphs), 0);
        for (const Glyph_t &glyph : glyphs) reference.Draw(glyph);
        ASSERT_NO_FATAL_FAILURE(reference.Compare());
        EXPECT_EQ(CountOf(Trace(), ".Lock WRITE\n"), 1);
        EXPECT_EQ(CountOf(Trace(), ".Unlock\n"), 1);
    }
    Destroy(pDisplay);
}

// Neighbours often share a colour, and a table prepared for one must not be used for the other.
TEST_P(ExpandGlyphs, DrawsNeighboursInABatchEachInItsOwnColors)
{
    pKovaITextDisplay_t pDisplay = GivenSmallPlane(GetParam());
    Reference_t reference(RecordOf(pDisplay)->pActiveSurface);
    Dice_t dice(23);
    std::vector<Glyph_t> glyphs;

    for (int i = 0; i < 100; i++) {
        glyphs.push_back(AnyGlyph(dice, GetParam() == INDEX_COLORS));
        glyphs.back().uiFg = kova_uint32(dice.Between(1, 2));
        glyphs.back().uiBg = kova_uint32(dice.Between(3, 4));
    }
    EXPECT_EQ(DrawAll(pDisplay, glyphs), 0);
    for (const Glyph_t &glyph : glyphs) reference.Draw(glyph);
    ASSERT_NO_FATAL_FAILURE(reference.Compare());
    Destroy(pDisplay);
}

INSTANTIATE_TEST_SUITE_P(On, ExpandGlyphs, testing::Values(INDEX_COLORS, PACKED_COLORS), [](const auto &row) {
    return std::string(row.param == INDEX_COLORS ? "Indexed" : "TrueColours");
});

TEST(ExpandGlyphsIn, NoByteBeforeOrBehindTheBitmapIsRead)
{
    const size_t uiPage = size_t(sysconf(_SC_PAGESIZE));
    // cppcheck-suppress invalidFunctionArg ; an anonymous mapping has no file
    void *const pPages = mmap(nullptr, uiPage * 3, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    // cppcheck-suppress memleak ; a failed assertion ends the process
    ASSERT_NE(pPages, MAP_FAILED);
    kova_uint8 *const pucBegin = static_cast<kova_uint8 *>(pPages) + uiPage, *const pucEnd =
                                                                                 pucBegin + uiPage;
    ASSERT_EQ(mprotect(pucBegin, uiPage, PROT_READ | PROT_WRITE), 0); // a read on either side crashes
    pKovaITextDisplay_t pDisplay = GivenSmallPlane(INDEX_COLORS);
    const kova_uint32 uiRowByte = 7;

    for (const kova_uint32 uiWidth : {1u, 3u, 8u, 9u, 17u, 48u}) {
        for (const kova_uint32 uiHeight : {1u, 3u, 48u}) {
            for (const kova_uint32 uiOffset : {0u, 7u}) {
                const kova_uint32 uiLast =
                    (uiOffset + uiWidth + 7) / 8; // the last row ends with its last pixel
                for (kova_uint8 *const pucData : {pucBegin, pucEnd - (uiHeight - 1) * uiRowByte - uiLast}) {
                    EXPECT_EQ(pDisplay->DrawPixelExpand(pDisplay, 0, pucData, 0, 0, uiWidth, uiHeight,
                                                        uiRowByte, 1, 2, uiOffset, KovaTextExpand_e(0)),
                              0);
                }
            }
        }
    }
    Destroy(pDisplay);
    munmap(pPages, uiPage * 3);
}

TEST(ExpandGlyphsIn, ThePaletteCopyModeDrawsThePackedEntry)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, PALETTE_COLORS);
    KovaTextColor_t color = {0x11, 0x22, 0x33, 0x44};
    EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, &color, 1, 9), 0);
    kova_uint8 ucBits = 0x80;

    EXPECT_EQ(pDisplay->DrawPixelExpand(pDisplay, 0, &ucBits, 0, 0, 1, 1, 1, 0, 9, 0, KOVA_EXPAND_1X1Y), 0);

    kova_uint32 uiPixel = 0;
    int iPitch = 0;
    memcpy(&uiPixel, Pixels(RecordOf(pDisplay)->pActiveSurface, &iPitch), 4);
    EXPECT_EQ(uiPixel, 0x44112233u);
    Destroy(pDisplay);
}

static const char *const ASKED = "  base2.GetPixelFormat\n"
                                 "  base2.GetSize\n"
                                 "  base2.GetClip\n";

static std::string DrawOne(pKovaITextDisplay_t pDisplay)
{
    kova_uint8 ucBits = 0x80;

    ClearTrace();
    EXPECT_EQ(pDisplay->DrawPixelExpand(pDisplay, 0, &ucBits, 0, 0, 1, 1, 1, 5, 9, 0, KOVA_EXPAND_1X1Y), 0);
    const std::string trace = Trace(), begin = "enter DrawPixelExpand\n", end = "exit DrawPixelExpand\n";
    EXPECT_EQ(trace.rfind(begin, 0), 0u);
    EXPECT_EQ(trace.substr(trace.size() - end.size()), end);
    return trace.substr(begin.size(), trace.size() - begin.size() - end.size());
}

TEST(ExpandGlyphsIn, TheSurfaceIsLockedAndNotFlipped)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->blast_frame_changed = 0;

    EXPECT_EQ(DrawOne(pDisplay), std::string(ASKED) + "  base2.Lock WRITE\n  base2.Unlock\n");

    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    ClearTrace();
    EXPECT_EQ(DrawAll(pDisplay, {}), 0); // an empty batch locks too
    EXPECT_TRUE(Contains(Trace(), "  base2.Lock WRITE\n  base2.Unlock\n"));
    Destroy(pDisplay);
}

TEST(ExpandGlyphsIn, AFailureIsReportedAndNothingIsDrawn)
{
    const struct {
        const char *pcMethod;
        int iLines; // of calls made
    } rows[] = {
        {"Surface.GetPixelFormat", 1}, {"Surface.GetSize", 2}, {"Surface.GetClip", 3}, {"Surface.Lock", 4}};
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    const std::string whole = std::string(ASKED) + "  base2.Lock WRITE\n";
    for (const auto &row : rows) {
        SCOPED_TRACE(row.pcMethod);
        FailNth(row.pcMethod, 1, DFB_BUSY);
        size_t uiEnd = 0;
        for (int i = 0; i < row.iLines; i++) uiEnd = whole.find('\n', uiEnd) + 1;
        RecordOf(pDisplay)->blast_frame_changed = 0;

        EXPECT_EQ(DrawOne(pDisplay), whole.substr(0, uiEnd) + CheckLine(DFB_BUSY));

        EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
        EXPECT_EQ(Memory(RecordOf(pDisplay)->pActiveSurface)[0], 0);
    }
    FailNth("Surface.Unlock", 1, DFB_BUSY);
    EXPECT_EQ(DrawOne(pDisplay), whole + "  base2.Unlock\n" + CheckLine(DFB_BUSY));
    EXPECT_EQ(Memory(RecordOf(pDisplay)->pActiveSurface)[0], 9);
    Destroy(pDisplay);
}

TEST(ExpandGlyphsIn, AnotherFormatIsUnsupported)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    IDirectFBSurface *const pBase = RecordOf(pDisplay)->pActiveSurface;
    IDirectFBSurface *const pOther = MakeSurface("base", 16, 16, DSPF_RGB32);
    RecordOf(pDisplay)->pActiveSurface = pOther;

    const std::string trace = DrawOne(pDisplay);

    EXPECT_TRUE(Contains(trace, CheckLine(DFB_UNSUPPORTED))) << trace;
    EXPECT_FALSE(Contains(trace, "Lock"));
    RecordOf(pDisplay)->pActiveSurface = pBase;
    pOther->Release(pOther);
    Destroy(pDisplay);
}

TEST(ExpandGlyphsIn, AMissingSurfaceIsReportedAsDestroyed)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0); // it does not exist

    EXPECT_EQ(DrawOne(pDisplay), CheckLine(DFB_DESTROYED));
    ClearTrace();
    EXPECT_EQ(DrawAll(pDisplay, {}), 0);
    EXPECT_TRUE(Contains(Trace(), CheckLine(DFB_DESTROYED)));
    Destroy(pDisplay);
}
