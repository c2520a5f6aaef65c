// SPDX-License-Identifier: MIT
// The test fixture: a display on real DirectFB, what it drew, and the same drawn with DirectFB only.
//
// The environment selects the display under test, so that one executable runs every scenario on every
// layer and in every colour mode: KOVA_LIVE_LAYER (1 to 3) and KOVA_LIVE_COLORS (index, palette, packed).
#ifndef TEXTDISP_TESTS_LIVE_FIXTURE_H
#define TEXTDISP_TESTS_LIVE_FIXTURE_H

#ifndef DIRECTFBPP_H
#define DIRECTFBPP_H // excludes the C++ wrapper classes of directfb.h
#endif
#include "kova/kova_textdisp.h"
#include "kova/kova_textdisp_dfb.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace live
{

constexpr char FONT[] = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
constexpr char OTHER_FONT[] = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf";
constexpr kova_uint32 PLANE_WIDTH = 320, PLANE_HEIGHT = 200;

enum Colors_e {
    INDEX,   // LUT8, a colour is an index into the surface's palette
    PALETTE, // ARGB, a colour is an index into the display's palette
    PACKED   // ARGB, a colour is 0xRRGGBBAA
};

// The display under test in this process.
KovaGraphicLayer_e Layer();
Colors_e Colors();

// 256 different colours with four opacities. Entry 0 is transparent black, as after Show.
const std::array<KovaTextColor_t, 256> &TestPalette();

// Entry i of the palette as a colour argument of drawing calls, and of bit-expanded drawing.
kova_uint32 Color(kova_uint32 i);
kova_sint32 GlyphColor(kova_uint32 i);
// The surface pixel that this argument of bit-expanded drawing gives.
kova_uint32 StoredColor(kova_uint32 i);

// A failure here fails the test and ends the process.
pKovaITextDisplay_t GivenDisplay(kova_uint32 uiWidth = PLANE_WIDTH, kova_uint32 uiHeight = PLANE_HEIGHT);
kova_sint8 GivenContext(pKovaITextDisplay_t pDisplay, kova_uint32 uiWidth = PLANE_WIDTH,
                        kova_uint32 uiHeight = PLANE_HEIGHT);
// Context 0 is active, the palette is loaded and the display is shown.
pKovaITextDisplay_t GivenShownDisplay(kova_uint32 uiWidth = PLANE_WIDTH, kova_uint32 uiHeight = PLANE_HEIGHT);
void LoadPalette(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID);
void DestroyContext(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID);
// Destroys the remaining contexts and the display, if there is one. Called after every test.
void DestroyDisplay();

IDirectFB *DirectFB();
// The surface that the display draws on, obtained independently: the layer's, or that of the only window on
// the primary layer. The caller releases it.
IDirectFBSurface *DisplaySurface();

// Pixels as in memory, rows without gaps.
struct Picture_t {
    int iWidth = 0, iHeight = 0;
    int iBytes = 0; // per pixel
    std::vector<kova_uint8> data;

    kova_uint8 *At(int iX, int iY)
    {
        return data.data() + (size_t(iY) * size_t(iWidth) + size_t(iX)) * size_t(iBytes);
    }
    kova_uint32 Pixel(int iX, int iY) const;
};

Picture_t Read(IDirectFBSurface *pSurface, bool bFront);
Picture_t Drawn();    // what the next flip would show
Picture_t OnScreen(); // what the last flip showed

// Compares byte for byte; the message names the first difference and the number of different pixels.
testing::AssertionResult Same(const Picture_t &expected, const Picture_t &seen);

// The expected picture: a double-buffered surface with the display's size and format, drawn with direct
// DirectFB calls.
class Reference
{
public:
    explicit Reference(kova_uint32 uiWidth = PLANE_WIDTH, kova_uint32 uiHeight = PLANE_HEIGHT);
    ~Reference();
    Reference(const Reference &) = delete;
    Reference &operator=(const Reference &) = delete;

    IDirectFBSurface *operator->() const
    {
        return m_pSurface;
    }
    IDirectFBSurface *Surface() const
    {
        return m_pSurface;
    }
    // Sets entry i of the palette, as the colour mode requires.
    void SetColor(kova_uint32 i);
    void Fill(int iX, int iY, int iWidth, int iHeight, kova_uint32 i);
    void Text(const std::string &text, int iX, int iY);
    // Makes what was drawn available to copies: DirectFB copies from the front buffer of a surface.
    void Flip();
    Picture_t Pixels() const;

private:
    IDirectFBSurface *m_pSurface = nullptr;
};

// A font opened with DirectFB directly.
class Font
{
public:
    Font(const char *pcName, int iHeight, unsigned uiAttributes = 0, int iWidth = 0);
    ~Font();
    Font(const Font &) = delete;
    Font &operator=(const Font &) = delete;

    IDirectFBFont *Interface() const
    {
        return m_pFont;
    }
    IDirectFBFont *operator->() const
    {
        return m_pFont;
    }

private:
    IDirectFBFont *m_pFont = nullptr;
};

// Opens the font in the display and selects it; returns its number.
kova_sint32 GivenFont(pKovaITextDisplay_t pDisplay, const char *pcName, kova_uint32 ucHeight,
                      KovaTextFontAttr_e eAttr = KOVA_FONTATTR_NONE);

// ASCII text as 16-bit units; and drawing it with the display.
std::vector<unsigned short> Wide(const std::string &text);
int DrawText(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID, const std::string &text, kova_uint32 uiX,
             kova_uint32 uiY);

// Waits until the condition holds, for at most a minute; whether it came to hold.
template <typename Condition> bool Eventually(Condition condition);

void SleepMilliseconds(int iMilliseconds);

template <typename Condition> bool Eventually(Condition condition)
{
    for (int i = 0; i < 6000; i++) {
        if (condition()) return true;
        SleepMilliseconds(10);
    }
    return condition();
}

} // namespace live

#endif
