// SPDX-License-Identifier: MIT
/* A plane with 32-bit colours on layer 2: each colour is 0xRRGGBBAA, including opacity; there is no palette.
   usage: plane32 [FONT-FILE [SECONDS]] */
#include "kova/kova_textdisp.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

enum { WIDTH = 1280, HEIGHT = 720, BAR = 60 };

static kova_uint32 Rgba(kova_uint32 r, kova_uint32 g, kova_uint32 b, kova_uint32 a)
{
    return r << 24 | g << 16 | b << 8 | a;
}

/* Two bars: 256 colours, and below them 256 opacities. */
static int Bars(pKovaITextDisplay_t pThiz, kova_sint8 scID, kova_uint32 uiY)
{
    const kova_uint32 uiStep = WIDTH / 256;
    kova_uint32 i;

    for (i = 0; i < 256; i++) {
        KovaTextRect_t upper = {i * uiStep, uiY, uiStep, BAR};
        KovaTextRect_t lower = {i * uiStep, uiY + BAR, uiStep, BAR};
        if (pThiz->FillRect(pThiz, scID, &upper, Rgba(255 - i, 60, i, 255))) return -1;
        if (pThiz->FillRect(pThiz, scID, &lower, Rgba(0, 0, 0, i))) return -1;
    }
    return 0;
}

static int Draw(pKovaITextDisplay_t pThiz, kova_sint8 scID, const char *pcFontFile)
{
    const char *const pcText = "Every colour, every opacity";
    kova_sint32 siFont = -1;

    /* Must come first: it activates the context and closes all fonts. An activation would end 32-bit mode. */
    if (pThiz->Create32BitPlane(pThiz, scID, 0, 0, WIDTH, HEIGHT)) return -1;
    pThiz->Show(pThiz, scID);
    if (Bars(pThiz, scID, 540)) return -1;
    if (pThiz->CreateFont(pThiz, scID, pcFontFile, 56, KOVA_FONTATTR_NONE, &siFont)) return -1;
    if (pThiz->SetFont(pThiz, scID, siFont, 56, KOVA_FONTATTR_NONE)) return -1;
    if (pThiz->SetEdgeType(pThiz, scID, KOVA_TEXT_ERIGTHDROPSHADOW)) return -1;
    if (pThiz->SetEdgeColor(pThiz, scID, Rgba(0, 0, 0, 255))) return -1;
    if (pThiz->SetTextForeColor(pThiz, scID, Rgba(255, 255, 255, 255))) return -1;
    return pThiz->DrawString(pThiz, scID, (const void *)pcText, (kova_uint8)strlen(pcText), 220, 566,
                             KOVA_TEXT_UTF8, 0);
}

int main(int argc, char **argv)
{
    const char *const pcFontFile = argc > 1 ? argv[1] : "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
    KovaTextInitParam_t param = {KOVA_GRAPHIC_LAYER2, 0, 0, WIDTH, HEIGHT, 0, 1, 0, 0};
    KovaTextContextParam_t geometry = {.uiPlaneWidth = WIDTH, .uiPlaneHeight = HEIGHT};

    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);
    const pKovaITextDisplay_t pThiz = Kova_TextDisp_GetDisplayByID(0);
    if (!pThiz) return fprintf(stderr, "No display: is there a layer 2? DirectFB's x11 system has one.\n"), 1;

    const kova_sint8 scID = Kova_TextDisp_CreateContext(pThiz, &geometry);
    const int iFailed = scID < 0 || Draw(pThiz, scID, pcFontFile);
    if (iFailed) fprintf(stderr, "Not drawn: is %s a font?\n", pcFontFile);
    if (!iFailed) sleep(argc > 2 ? (unsigned int)atoi(argv[2]) : 5);
    if (!iFailed) pThiz->Release32BitPlane(pThiz);
    if (scID >= 0) Kova_TextDisp_DestroyContext(pThiz, scID);
    Kova_TextDisp_Destroy(0);
    return iFailed;
}
