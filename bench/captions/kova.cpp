// SPDX-License-Identifier: MIT
#include "contender.h"

#include "fixture.h"

const char *const CONTENDER = "this library";
const char *const DIFFERENCES = "DirectFB draws the string once per pass; glyph by glyph, hinted by FreeType";

static bench::Display *g_pDisplay;

void Start()
{
    g_pDisplay = new bench::Display(bench::PALETTE);
}

void Open(Edge_e eEdge)
{
    static constexpr KovaTextEdgeType_e EDGE[] = {KOVA_TEXT_ENONE,           KOVA_TEXT_ERAISED,
                                                  KOVA_TEXT_EDEPRESSED,      KOVA_TEXT_EUNIFORM,
                                                  KOVA_TEXT_ELEFTDROPSHADOW, KOVA_TEXT_ERIGTHDROPSHADOW};
    bench::Display &display = *g_pDisplay;
    KovaTextColor_t colors[] = {{0, 0, 0, 0}, {255, 255, 255, 255}, {0, 0, 0, 255}};

    display.OpenFont(0, FONT_SIZE);
    display->SetPalette(display, 0, colors, 3, 0);
    display->SetEdgeType(display, 0, EDGE[eEdge]);
    display->SetTextForeColor(display, 0, 1);
    display->SetEdgeColor(display, 0, 2);
}

void Draw(int iCaption)
{
    bench::Display &display = *g_pDisplay;
    KovaTextRect_t box = {BOX_X, BOX_Y, BOX_WIDTH, BOX_HEIGHT};

    display->FillRect(display, 0, &box, 0);
    for (int i = 0; i < 2; i++) {
        display->DrawString(display, 0, reinterpret_cast<const unsigned short *>(CAPTIONS[iCaption][i]),
                            LINE_LENGTH, LEFT, kova_uint32(TOPS[i]), KOVA_TEXT_UTF8, KOVA_TEXT_LEFT);
    }
}

const uint32_t *Pixels(int *piPitch)
{
    IDirectFBSurface *const pSurface = g_pDisplay->Surface();
    void *pData;

    pSurface->Lock(pSurface, DSLF_WRITE, &pData,
                   piPitch);    // the back buffer; a read lock would return the front buffer
    pSurface->Unlock(pSurface); // the address does not change while nothing flips
    *piPitch /= 4;
    return static_cast<const uint32_t *>(pData);
}
