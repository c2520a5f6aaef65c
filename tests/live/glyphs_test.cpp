// SPDX-License-Identifier: MIT
// One-bit bitmaps, which the library draws itself on published DirectFB, compared with a plain loop.
#include "fixture.h"

#include <string.h>

#include <random>

using namespace live;

enum { ROUNDS = 4000, BATCHES = 150 };

struct Glyph_t {
    std::vector<kova_uint8> data;
    int iX, iY, iWidth, iHeight, iRowByte, iBitOffset;
    kova_uint32 uiForeground, uiBackground; // palette entries
    KovaTextExpand_e eExpand;
};

static void DrawPlainly(Picture_t &picture, const DFBRegion &clip, const Glyph_t &glyph)
{
    const int iHorizontal = glyph.eExpand & 4 ? 2 : 1;
    const int iVertical = (glyph.eExpand & 3) == 0 ? 1 : 2 * (glyph.eExpand & 3);

    for (int y = 0; y < glyph.iHeight * iVertical; y++) {
        for (int x = 0; x < glyph.iWidth * iHorizontal; x++) {
            const int iBit = glyph.iBitOffset + x / iHorizontal;
            const kova_uint8 ucByte = glyph.data[size_t(y / iVertical * glyph.iRowByte + iBit / 8)];
            const bool bSet = ucByte & 0x80 >> iBit % 8;
            const int iX = glyph.iX + x, iY = glyph.iY + y;
            if (iX < 0 || iY < 0 || iX >= picture.iWidth || iY >= picture.iHeight) continue;
            if (iX < clip.x1 || iY < clip.y1 || iX > clip.x2 || iY > clip.y2) continue;
            const kova_uint32 uiPixel = StoredColor(bSet ? glyph.uiForeground : glyph.uiBackground);
            if (picture.iBytes == 1) {
                *picture.At(iX, iY) = kova_uint8(uiPixel);
            } else {
                memcpy(picture.At(iX, iY), &uiPixel, 4);
            }
        }
    }
}

class RandomGlyphs
{
public:
    explicit RandomGlyphs(unsigned uiSeed) : m_random(uiSeed)
    {
    }

    int Between(int iFrom, int iTo)
    {
        return int(m_random() % unsigned(iTo - iFrom + 1)) + iFrom;
    }

    Glyph_t Glyph()
    {
        static const int aiCodes[] = {0, 1, 2, 3, 4, 5, 6, 7};
        Glyph_t glyph;
        glyph.iWidth = Between(0, 48);
        glyph.iHeight = Between(0, 48);
        glyph.iBitOffset = Between(0, 9) == 0 ? Between(8, 40) : Between(0, 7);
        const int iNeeded = (glyph.iBitOffset + glyph.iWidth + 7) / 8;
        glyph.iRowByte =
            Between(0, 19) == 0 ? Between(0, iNeeded) : iNeeded + Between(0, 5); // rows may overlap
        glyph.iX = Between(-120, int(PLANE_WIDTH) + 20);
        glyph.iY = Between(-120, int(PLANE_HEIGHT) + 20);
        glyph.uiForeground = kova_uint32(Between(0, 255));
        glyph.uiBackground = kova_uint32(Between(0, 255));
        glyph.eExpand = KovaTextExpand_e(aiCodes[Between(0, 7)]);
        // Exactly the bytes of the pixels, so that a sanitizer detects reads beyond them.
        const bool bEmpty = glyph.iWidth == 0 || glyph.iHeight == 0;
        const int iBytes =
            bEmpty ? 1 : (glyph.iHeight - 1) * glyph.iRowByte + (glyph.iBitOffset + glyph.iWidth - 1) / 8 + 1;
        glyph.data.resize(size_t(iBytes));
        for (kova_uint8 &uc : glyph.data) uc = kova_uint8(m_random());
        return glyph;
    }

    DFBRegion Clip()
    {
        const int iX = Between(0, int(PLANE_WIDTH) - 1), iY = Between(0, int(PLANE_HEIGHT) - 1);
        return {iX, iY, iX + Between(0, int(PLANE_WIDTH)), iY + Between(0, int(PLANE_HEIGHT))};
    }

private:
    std::mt19937 m_random;
};

static int Draw(pKovaITextDisplay_t pDisplay, Glyph_t &glyph)
{
    return pDisplay->DrawPixelExpand(pDisplay, 0, glyph.data.data(), kova_uint32(glyph.iX),
                                     kova_uint32(glyph.iY), kova_uint32(glyph.iWidth),
                                     kova_uint32(glyph.iHeight), kova_uint32(glyph.iRowByte),
                                     GlyphColor(glyph.uiBackground), GlyphColor(glyph.uiForeground),
                                     kova_uint32(glyph.iBitOffset), glyph.eExpand);
}

static void SetClip(pKovaITextDisplay_t pDisplay, const DFBRegion &clip)
{
    KovaTextRect_t rect = {kova_uint32(clip.x1), kova_uint32(clip.y1), kova_uint32(clip.x2 - clip.x1 + 1),
                           kova_uint32(clip.y2 - clip.y1 + 1)};
    ASSERT_EQ(pDisplay->SetClip(pDisplay, 0, &rect), 0);
}

TEST(DrawPixelExpand, DrawsAsAPlainLoopDoes)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    RandomGlyphs random(4711);
    Picture_t expected = Drawn();
    DFBRegion clip = {0, 0, PLANE_WIDTH - 1, PLANE_HEIGHT - 1};
    int iChanged = 0;

    for (int i = 0; i < ROUNDS; i++) {
        if (i % 5 == 4) SetClip(pDisplay, clip = random.Clip());
        if (i % 25 == 20) {
            ASSERT_EQ(pDisplay->SetClip(pDisplay, 0, nullptr), 0);
            clip = {0, 0, PLANE_WIDTH - 1, PLANE_HEIGHT - 1};
        }
        Glyph_t glyph = random.Glyph();
        ASSERT_EQ(Draw(pDisplay, glyph), 0);
        const Picture_t before = expected;
        DrawPlainly(expected, clip, glyph);
        iChanged += before.data != expected.data;
        ASSERT_TRUE(Same(expected, Drawn()))
            << "round " << i << ": " << glyph.iX << "," << glyph.iY << " " << glyph.iWidth << "x"
            << glyph.iHeight << " bit " << glyph.iBitOffset << " row " << glyph.iRowByte << " code "
            << glyph.eExpand << " clip " << clip.x1 << "," << clip.y1 << "-" << clip.x2 << "," << clip.y2;
    }
    EXPECT_GT(iChanged, ROUNDS / 10); // enough of them are inside the clip
}

TEST(DrawPixelExpand, DrawsEveryFactorBitOffsetAndWidth)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    RandomGlyphs random(815);
    Picture_t expected = Drawn();
    const DFBRegion clip = {0, 0, PLANE_WIDTH - 1, PLANE_HEIGHT - 1};

    for (int iCode : {0, 1, 2, 4, 5, 6, 3, 7}) {
        for (int iBitOffset = 0; iBitOffset < 8; iBitOffset++) {
            for (int iWidth = 1; iWidth <= 48; iWidth++) {
                Glyph_t glyph = random.Glyph();
                glyph.eExpand = KovaTextExpand_e(iCode);
                glyph.iBitOffset = iBitOffset;
                glyph.iWidth = iWidth;
                glyph.iHeight = 2;
                glyph.iRowByte = (iBitOffset + iWidth + 7) / 8;
                glyph.iX = 1;
                glyph.iY = 1;
                glyph.data.assign(size_t(2 * glyph.iRowByte), 0);
                for (kova_uint8 &uc : glyph.data) uc = kova_uint8(random.Between(0, 255));
                ASSERT_EQ(Draw(pDisplay, glyph), 0);
                DrawPlainly(expected, clip, glyph);
                ASSERT_TRUE(Same(expected, Drawn()))
                    << "code " << iCode << " bit " << iBitOffset << " width " << iWidth;
            }
        }
    }
}

// The expected pixels by hand: 3 by 2 pixels starting at bit 1, double width and quadruple height.
TEST(DrawPixelExpand, DrawsTheMostSignificantBitFirst)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    kova_uint8 aucData[] = {0x40, 0x30}; // 1 0 0 and 0 1 1
    ASSERT_EQ(pDisplay->DrawPixelExpand(pDisplay, 0, aucData, 10, 20, 3, 2, 1, GlyphColor(2), GlyphColor(3),
                                        1, KOVA_EXPAND_2X4Y),
              0);

    const Picture_t seen = Drawn();
    const kova_uint32 uiSet = StoredColor(3), uiClear = StoredColor(2);
    for (int y = 0; y < 8; y++) {
        for (int x = 0; x < 6; x++) {
            const bool bSet = y < 4 ? x < 2 : x >= 2;
            EXPECT_EQ(seen.Pixel(10 + x, 20 + y), bSet ? uiSet : uiClear) << x << "," << y;
        }
    }
    EXPECT_EQ(seen.Pixel(16, 20), 0u);
    EXPECT_EQ(seen.Pixel(10, 28), 0u);
    EXPECT_EQ(seen.Pixel(9, 20), 0u);
    EXPECT_EQ(seen.Pixel(10, 19), 0u);
}

TEST(BatchDrawPixelExpand, DrawsAllOfThemInOrder)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    RandomGlyphs random(90210);
    Picture_t expected = Drawn();

    for (int i = 0; i < BATCHES; i++) {
        const int iCount = i < 3 ? (i == 0 ? 0 : i == 1 ? 1 : 100) : random.Between(0, 100);
        const DFBRegion clip = random.Clip();
        std::vector<Glyph_t> glyphs;
        std::vector<kova_uint8 *> data;
        std::vector<kova_uint32> x, y, width, height, row, offset;
        std::vector<kova_sint32> background, foreground;
        std::vector<KovaTextExpand_e> expand;
        for (int k = 0; k < iCount; k++) glyphs.push_back(random.Glyph());
        for (Glyph_t &glyph : glyphs) {
            data.push_back(glyph.data.data());
            x.push_back(kova_uint32(glyph.iX));
            y.push_back(kova_uint32(glyph.iY));
            width.push_back(kova_uint32(glyph.iWidth));
            height.push_back(kova_uint32(glyph.iHeight));
            row.push_back(kova_uint32(glyph.iRowByte));
            offset.push_back(kova_uint32(glyph.iBitOffset));
            background.push_back(GlyphColor(glyph.uiBackground));
            foreground.push_back(GlyphColor(glyph.uiForeground));
            expand.push_back(glyph.eExpand);
        }
        data.reserve(1);
        SetClip(pDisplay, clip);
        ASSERT_EQ(pDisplay->BatchDrawPixelExpand(
                      pDisplay, 0, data.data(), x.data(), y.data(), width.data(), height.data(), row.data(),
                      background.data(), foreground.data(), offset.data(), expand.data(), kova_uint8(iCount)),
                  0);
        for (const Glyph_t &glyph : glyphs) DrawPlainly(expected, clip, glyph);
        ASSERT_TRUE(Same(expected, Drawn())) << "batch " << i << " of " << iCount;
    }
}

TEST(DrawPixelExpand, MakesNoFlip)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    kova_uint8 ucByte = 0xFF;
    pDisplay->Flip(pDisplay, 0);
    ASSERT_TRUE(Eventually([] { return OnScreen().data == Drawn().data; }));
    const Picture_t before = OnScreen();

    EXPECT_EQ(pDisplay->DrawPixelExpand(pDisplay, 0, &ucByte, 10, 10, 8, 1, 1, GlyphColor(1), GlyphColor(2),
                                        0, KOVA_EXPAND_1X1Y),
              0);
    SleepMilliseconds(60);

    EXPECT_TRUE(Same(before, OnScreen()));
    EXPECT_FALSE(Same(before, Drawn()));
}
