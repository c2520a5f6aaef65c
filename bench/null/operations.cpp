// SPDX-License-Identifier: MIT
#include "operations.h"

#include <unistd.h>

namespace bench
{

static constexpr char TEXT[] = "The quick brown fox jumps over a"; // 32 characters
static const auto *const pTEXT = reinterpret_cast<const unsigned short *>(TEXT);
static KovaTextRect_t g_rect = {10, 10, 8, 8};
static KovaTextColor_t g_colors[256];
static kova_uint8 g_aucBits[8];

NullDisplay::NullDisplay(Colors_e eColors, KovaGraphicLayer_e eLayer) : m_display(eColors, eLayer)
{
    m_display.OpenFont();
    m_display->SetEdgeType(m_display, 0, KOVA_TEXT_ENONE);
    // No operation creates a backup surface; with one, the two operations that use it run completely.
    KovaDFBDisplay_t *const pRecord = m_display.Record();
    pRecord->pDfb->CreateSurface(pRecord->pDfb, nullptr, &pRecord->pBackupSurface);
}

// A hundred glyphs of 8 by 8.
static struct Batch {
    kova_uint8 *apucData[100];
    kova_uint32 auiPlace[100] = {}, auiSize[100], auiRowByte[100];
    kova_sint32 asiColor[100] = {};
    KovaTextExpand_e aeExpand[100] = {};

    Batch()
    {
        for (int i = 0; i < 100; i++) {
            apucData[i] = g_aucBits;
            auiSize[i] = 8;
            auiRowByte[i] = 1;
        }
    }
    void Draw(NullDisplay &d)
    {
        d->BatchDrawPixelExpand(d, 0, apucData, auiPlace, auiPlace, auiSize, auiSize, auiRowByte, asiColor,
                                asiColor, auiPlace, aeExpand, 100);
    }
} g_batch;

// Sleeps longer than the 16 ms in which a flip on layers 2 and 3 is deferred.
static void AwaitFlipTime(NullDisplay &)
{
    usleep(40000);
}

// Makes a direct flip, so that the next one is deferred, after the flip thread has gone to sleep.
static void JustFlipped(NullDisplay &d)
{
    usleep(40000);
    d->Flip(d, 0);
}

const std::vector<Operation> &Operations()
{
    typedef NullDisplay &D;
    constexpr auto L1 = KOVA_GRAPHIC_LAYER1, L2 = KOVA_GRAPHIC_LAYER2;
    static const std::vector<Operation> s_operations = {
        {"Show", [](D d) { d->Show(d, 0); }, nullptr, L1, PALETTE},
        {"Hide", [](D d) { d->Hide(d, 0); }, [](D d) { d->Show(d, 0); }, L1, PALETTE},
        {"SetTextWindowSize", [](D d) { d->SetTextWindowSize(d, 0, 100, 100); }, nullptr, L1, PALETTE},
        {"SetPlane", [](D d) { d->SetPlane(d, 0, 0, 0, 1280, 720); }, nullptr, L1, PALETTE},
        {"SetDisplayWindow", [](D d) { d->SetDisplayWindow(d, 0, d.Turn(), 0, 1, 1); }, nullptr, L1, PALETTE},
        {"SetPalette, 256 colours", [](D d) { d->SetPalette(d, 0, g_colors, 256, 0); }, nullptr, L1, PALETTE},
        {"FillRect", [](D d) { d->FillRect(d, 0, &g_rect, 7); }, nullptr, L1, PALETTE},
        {"DrawPixel, 8x8", [](D d) { d->DrawPixel(d, 0, g_aucBits, 0, 0, 8, 8, 0); }, nullptr, L1, PALETTE},
        {"Flip", [](D d) { d->Flip(d, 0); }, nullptr, L1, PALETTE},
        {"SetBlittingFlags", [](D d) { d->SetBlittingFlags(d, 0, KOVA_DSBLIT_NOFX); }, nullptr, L1, PALETTE},
        {"SetDrawingFlags", [](D d) { d->SetDrawingFlags(d, 0, KOVA_DSDRAW_NOFX); }, nullptr, L1, PALETTE},
        {"SetDstColorKey", [](D d) { d->SetDstColorKey(d, 0, 7); }, nullptr, L1, PALETTE},
        {"SetClip", [](D d) { d->SetClip(d, 0, &g_rect); }, nullptr, L1, PALETTE},
        {"DrawPixelExpand",
         [](D d) { d->DrawPixelExpand(d, 0, g_aucBits, 0, 0, 8, 8, 1, 1, 2, 0, KOVA_EXPAND_1X1Y); }, nullptr,
         L1, PALETTE},
        {"CreateFont, another height",
         [](D d) {
             kova_sint32 siFont;
             d->CreateFont(d, 0, FONT, 20 + d.Turn(), KOVA_FONTATTR_NONE, &siFont);
         },
         nullptr, L1, PALETTE},
        {"SetFont", [](D d) { d->SetFont(d, 0, 0, FONT_HEIGHT, KOVA_FONTATTR_NONE); }, nullptr, L1, PALETTE},
        {"DrawString, 32 characters",
         [](D d) { d->DrawString(d, 0, pTEXT, sizeof TEXT - 1, 9, 9, KOVA_TEXT_UTF8, KOVA_TEXT_LEFT); },
         nullptr, L1, PALETTE},
        {"GetStringWidth, 32 characters",
         [](D d) {
             kova_uint32 uiWidth;
             d->GetStringWidth(d, 0, pTEXT, sizeof TEXT - 1, KOVA_TEXT_UTF8, &uiWidth);
         },
         nullptr, L1, PALETTE},
        {"GetUnderlineInfo",
         [](D d) {
             kova_sint32 siPosition, siThickness;
             d->GetUnderlineInfo(d, 0, 0, 0, 0, &siPosition, &siThickness);
         },
         nullptr, L1, PALETTE},
        {"SetEdgeType", [](D d) { d->SetEdgeType(d, 0, KOVA_TEXT_ENONE); }, nullptr, L1, PALETTE},
        {"SetEdgeColor", [](D d) { d->SetEdgeColor(d, 0, 7); }, nullptr, L1, PALETTE},
        {"SetTextForeColor", [](D d) { d->SetTextForeColor(d, 0, 7); }, nullptr, L1, PALETTE},
        {"Blit", [](D d) { d->Blit(d, 0, &g_rect, 50, 50); }, nullptr, L1, PALETTE},
        {"ScaleFontWidth, another width", [](D d) { d->ScaleFontWidth(d, 0, 1, 65536 + (d.Turn() << 15)); },
         nullptr, L1, PALETTE},
        {"GetFontHeight",
         [](D d) {
             kova_sint32 siHeight = 0;
             d->GetFontHeight(d, 0, &siHeight);
         },
         nullptr, L1, PALETTE},
        {"BatchDrawPixelExpand, 100 glyphs", [](D d) { g_batch.Draw(d); }, nullptr, L1, PALETTE},
        {"UseBackupSurface", [](D d) { d->UseBackupSurface(d, 0, kova_bool(d.Turn())); }, nullptr, L1,
         PALETTE},
        {"BlitBackupSurface", [](D d) { d->BlitBackupSurface(d, 0, &g_rect, 50, 50); }, nullptr, L1, PALETTE},
        {"DrawLine", [](D d) { d->DrawLine(d, 0, 1, 1, 9, 9, 7); }, nullptr, L1, PALETTE},
        {"Create32BitPlane", [](D d) { d->Create32BitPlane(d, 0, 0, 0, 1280, 720); }, nullptr, L1, PALETTE},
        {"Release32BitPlane", [](D d) { d->Release32BitPlane(d); },
         [](D d) { d->Create32BitPlane(d, 0, 0, 0, 1280, 720); }, L1, PALETTE},
        {"SetFlip", [](D d) { d->SetFlip(d, 0); }, nullptr, L1, PALETTE},
        {"SetSurface_OsdScaleInfo",
         [](D d) {
             Surface_OsdScaleInfo info = {};
             d->SetSurface_OsdScaleInfo(d, &info);
         },
         nullptr, L1, PALETTE},
        {"AdjustDisplaySize", [](D d) { d->AdjustDisplaySize(d, 0, 0, 0, 1280, 720); }, nullptr, L1, PALETTE},
        // Layers 2 and 3 and index mode do more in these operations.
        {"FillRect, index mode", [](D d) { d->FillRect(d, 0, &g_rect, 7); }, nullptr, L2, INDEX},
        {"SetPalette, 256 colours, index mode", [](D d) { d->SetPalette(d, 0, g_colors, 256, 0); }, nullptr,
         L2, INDEX},
        {"Flip, layer 2, at once", [](D d) { d->Flip(d, 0); }, AwaitFlipTime, L2, INDEX},
        {"Flip, layer 2, deferred", [](D d) { d->Flip(d, 0); }, JustFlipped, L2, INDEX},
        {"DrawString, 32 characters, layer 2, deferred",
         [](D d) { d->DrawString(d, 0, pTEXT, sizeof TEXT - 1, 9, 9, KOVA_TEXT_UTF8, KOVA_TEXT_LEFT); },
         JustFlipped, L2, INDEX},
    };
    return s_operations;
}

} // namespace bench
