// SPDX-License-Identifier: MIT
// The caption renderer on real DirectFB: what tests on a table of operations cannot see, such as how copies, clips and fonts
// behave there.
#include "fixture.h"

#include "kova/kova_captions_draw.h"

#include <string.h>

#include <memory>

namespace live
{
namespace
{

constexpr char MONO[] = "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf";
constexpr int64_t START = 1000000;

struct Destroy_t {
    void operator()(KovaCaptionsRenderer *pRenderer) const
    {
        Kova_Captions_DestroyRenderer(pRenderer);
    }
};
using Renderer_t = std::unique_ptr<KovaCaptionsRenderer, Destroy_t>;

// The safe area is 256 by 160: the columns of CEA-608 are 8 pixels wide, its rows 10 or 11 high.
Renderer_t GivenRenderer(pKovaITextDisplay_t pDisplay, bool bNoBlit = false)
{
    KovaCaptionsScreen screen;

    Kova_Captions_GetDefaultScreen(&screen);
    screen.display = pDisplay;
    screen.plane_width = PLANE_WIDTH;
    screen.plane_height = PLANE_HEIGHT;
    screen.layer = uint8_t(Layer());
    screen.color_mode = uint8_t(Colors());
    screen.no_blit = bNoBlit;
    screen.fonts[KOVA_CAPTIONS_FONT_DEFAULT] = MONO;
    screen.fonts[KOVA_CAPTIONS_FONT_SANS] = FONT;
    return Renderer_t(Kova_Captions_CreateRenderer(&screen));
}

void Print(KovaCaptionsChannel &channel, unsigned uiRow, const std::string &text)
{
    for (size_t i = 0; i < text.size(); i++) {
        KovaCaptionsChannelCell &cell = channel.displayed[uiRow][i];
        cell = {};
        cell.character = uint16_t(text[i]);
        cell.kind = KOVA_CAPTIONS_CHARACTER;
        cell.foreground = KOVA_CAPTIONS_WHITE;
    }
}

// Three rows of a roll-up caption at the bottom.
std::unique_ptr<KovaCaptionsChannel> GivenRollUp()
{
    auto pChannel = std::make_unique<KovaCaptionsChannel>();

    pChannel->mode = KOVA_CAPTIONS_ROLL_UP;
    pChannel->depth = 3;
    pChannel->base_row = 14;
    pChannel->status.flash_since = KOVA_CAPTIONS_NO_TIME;
    // On layer 1 every letter flips, which takes its time.
    const size_t uiLetters = Layer() == KOVA_GRAPHIC_LAYER1 ? 2 : 32;
    Print(*pChannel, 12, std::string("The ferry is late.").substr(0, uiLetters));
    Print(*pChannel, 13, std::string(uiLetters, 'W'));
    Print(*pChannel, 14, std::string("gjpqy (ABC)").substr(0, uiLetters));
    return pChannel;
}

void RollUp(KovaCaptionsChannel &channel, int64_t siTime)
{
    for (unsigned uiRow = 12; uiRow < 14; uiRow++) {
        memcpy(channel.displayed[uiRow], channel.displayed[uiRow + 1], sizeof channel.displayed[uiRow]);
    }
    memset(channel.displayed[14], 0, sizeof channel.displayed[14]);
    channel.roll = {siTime, KOVA_CAPTIONS_ROLL, KOVA_CAPTIONS_SCROLL, KOVA_CAPTIONS_BOTTOM_TO_TOP, 0, {}};
}

bool IsPresented()
{
    return Eventually([] { return OnScreen().data == Drawn().data; });
}

// What a renderer of its own draws on the empty plane. One display takes the same font files again.
Picture_t DrawnFresh(pKovaITextDisplay_t pDisplay, const KovaCaptionsChannel &channel, int64_t siTime)
{
    pDisplay->Show(pDisplay, 0);
    const Renderer_t pRenderer = GivenRenderer(pDisplay, true);
    EXPECT_EQ(Kova_Captions_DrawChannel(pRenderer.get(), &channel, siTime), 1);
    return Drawn();
}

} // namespace
} // namespace live

using namespace live;

TEST(Captions, FillTheirCellsOnTheGridOfTheSafeArea)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    const Renderer_t pRenderer = GivenRenderer(pDisplay);
    const auto pChannel = GivenRollUp();
    Print(*pChannel, 13, std::string(32, 'W'));
    ASSERT_TRUE(pRenderer);

    ASSERT_EQ(Kova_Captions_DrawChannel(pRenderer.get(), pChannel.get(), START), 1);
    EXPECT_TRUE(IsPresented());

    // Row 13 of 15 has 32 characters and a box on both sides: 34 columns of 8 pixels, in two colours.
    const Picture_t seen = OnScreen();
    const kova_uint32 uiBlack = Colors() == INDEX ? 1 : 0xFF000000;
    const kova_uint32 uiWhite = 64;
    const int iTop = 20 + 160 * 13 / 15 + 1, iBottom = 20 + 160 * 14 / 15;
    int iWhite = 0;
    for (int iY = iTop; iY < iBottom; iY++) {
        EXPECT_EQ(seen.Pixel(32 - 8 - 1, iY), 0u);
        EXPECT_EQ(seen.Pixel(32 + 33 * 8, iY), 0u);
        for (int iX = 32 - 8; iX < 32 + 33 * 8; iX++) {
            const kova_uint32 uiPixel = seen.Pixel(iX, iY);
            iWhite += uiPixel != uiBlack;
            if (iX < 32 || iX >= 32 + 32 * 8) {
                EXPECT_EQ(uiPixel, uiBlack);
            }
            if (Colors() == INDEX) {
                EXPECT_TRUE(uiPixel == uiBlack || uiPixel == uiWhite);
            }
        }
    }
    EXPECT_GT(iWhite, 32 * 8);
}

TEST(Captions, RollTheSameByCopyingAndByDrawing)
{
    if (Layer() == KOVA_GRAPHIC_LAYER1) GTEST_SKIP() << "nothing is copied there";
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    const auto pChannel = GivenRollUp();
    std::vector<Picture_t> pictures[2];

    for (const bool bNoBlit : {false, true}) {
        pDisplay->Show(pDisplay, 0);
        pDisplay->Flip(pDisplay, 0);
        const auto pRolling = std::make_unique<KovaCaptionsChannel>(*pChannel);
        const Renderer_t pRenderer = GivenRenderer(pDisplay, bNoBlit);
        Kova_Captions_DrawChannel(pRenderer.get(), pRolling.get(), START);
        RollUp(*pRolling, START);
        for (int i = 0; i <= 5; i++) {
            SleepMilliseconds(20); // a frame, as on a TV
            Kova_Captions_DrawChannel(pRenderer.get(), pRolling.get(), START + i * KOVA_CAPTIONS_ROLL / 5);
            pictures[bNoBlit].push_back(Drawn());
        }
        EXPECT_TRUE(IsPresented());
    }
    for (size_t i = 0; i < pictures[0].size(); i++) EXPECT_TRUE(Same(pictures[1][i], pictures[0][i])) << i;
    EXPECT_FALSE(Same(pictures[0][0], pictures[0][2]));
}

TEST(Captions, ChangedRowByRowAreTheSameAsDrawnAtOnce)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Renderer_t pRenderer = GivenRenderer(pDisplay);
    const auto pChannel = GivenRollUp();
    KovaCaptionsChannelCell(&row)[KOVA_CAPTIONS_CHANNEL_COLUMNS] = pChannel->displayed[14];

    Kova_Captions_DrawChannel(pRenderer.get(), pChannel.get(), START);
    const unsigned uiChanges = Layer() == KOVA_GRAPHIC_LAYER1 ? 3 : 12;
    for (unsigned i = 0; i < uiChanges; i++) {
        Print(*pChannel, 14, std::string(i + 1, char('A' + i)));
        row[i].italics = i % 2;
        row[i].underline = i % 3 == 0;
        row[i].background = i % 4 == 0 ? KOVA_CAPTIONS_BLUE : KOVA_CAPTIONS_BLACK;
        row[i].background_opacity = i % 4 == 1 ? KOVA_CAPTIONS_TRANSLUCENT : KOVA_CAPTIONS_SOLID;
        Kova_Captions_DrawChannel(pRenderer.get(), pChannel.get(), START);
    }
    const Picture_t changed = Drawn();
    EXPECT_TRUE(IsPresented());
    pRenderer.reset();

    EXPECT_TRUE(Same(DrawnFresh(pDisplay, *pChannel, START), changed));
}

TEST(Captions, ComeBackAfterAnActivation)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    const Renderer_t pRenderer = GivenRenderer(pDisplay);
    const auto pChannel = GivenRollUp();
    Kova_Captions_DrawChannel(pRenderer.get(), pChannel.get(), START);
    const Picture_t before = Drawn();
    if (Colors() == PACKED) GTEST_SKIP() << "an activation ends 32-bit mode";

    ASSERT_EQ(GivenContext(pDisplay), 1);
    Kova_TextDisp_SetActive(pDisplay, 1, 1);
    Kova_TextDisp_SetActive(pDisplay, 0, 1);
    pDisplay->Show(pDisplay, 0);
    EXPECT_FALSE(Same(before, Drawn()));
    EXPECT_EQ(Kova_Captions_Redraw(pRenderer.get()), 1);

    EXPECT_TRUE(Same(before, Drawn()));
    EXPECT_TRUE(IsPresented());
}

TEST(Captions, FlashByThePaletteOfTheSurface)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    const Renderer_t pRenderer = GivenRenderer(pDisplay);
    const auto pChannel = GivenRollUp();
    for (unsigned i = 0; i < 11; i++) pChannel->displayed[14][i].flash = 1;
    pChannel->status.flash_since = START;
    Kova_Captions_DrawChannel(pRenderer.get(), pChannel.get(), START);
    const Picture_t on = Drawn();

    const int iDrawn =
        Kova_Captions_DrawChannel(pRenderer.get(), pChannel.get(), START + KOVA_CAPTIONS_FLASH_HALF);

    if (Colors() == INDEX) {
        EXPECT_EQ(iDrawn, 0);
        EXPECT_TRUE(Same(on, Drawn()));
        // White over black is the first entry of the pool.
        IDirectFBSurface *const pSurface = DisplaySurface();
        IDirectFBPalette *pPalette = nullptr;
        DFBColor color = {};
        ASSERT_EQ(pSurface->GetPalette(pSurface, &pPalette), DFB_OK);
        pPalette->GetEntries(pPalette, &color, 1, 193);
        EXPECT_EQ(color.a, 255);
        EXPECT_EQ(color.r, 0);
        pPalette->Release(pPalette);
        pSurface->Release(pSurface);
    } else {
        EXPECT_EQ(iDrawn, 1);
        EXPECT_FALSE(Same(on, Drawn()));
        Kova_Captions_DrawChannel(pRenderer.get(), pChannel.get(), START + 2 * KOVA_CAPTIONS_FLASH_HALF);
        EXPECT_TRUE(Same(on, Drawn()));
    }
}
