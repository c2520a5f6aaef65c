// SPDX-License-Identifier: MIT
/* Two caption lines with edges on the on-screen display.  usage: hello_caption [FONT-FILE [SECONDS]] */
#include "kova/kova_textdisp.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

enum { WIDTH = 1280, HEIGHT = 720, WHITE = 1, YELLOW = 2, BLACK = 3 };

static int Line(pKovaITextDisplay_t pThiz, kova_sint8 scID, kova_uint32 uiY, KovaTextEdgeType_e eEdge,
                kova_uint32 color, const char *pcText)
{
    const kova_uint8 ucBytes = (kova_uint8)strlen(pcText);
    const void *const pText = pcText; /* the same parameter takes UTF-8 and 16-bit text */
    kova_uint32 uiWidth = 0;

    if (pThiz->SetEdgeType(pThiz, scID, eEdge) || pThiz->SetEdgeColor(pThiz, scID, BLACK)) return -1;
    if (pThiz->SetTextForeColor(pThiz, scID, color)) return -1;
    if (pThiz->GetStringWidth(pThiz, scID, pText, ucBytes, KOVA_TEXT_UTF8, &uiWidth)) return -1;
    return pThiz->DrawString(pThiz, scID, pText, ucBytes, (WIDTH - uiWidth) / 2, uiY, KOVA_TEXT_UTF8, 0);
}

static int Caption(pKovaITextDisplay_t pThiz, kova_sint8 scID, const char *pcFontFile)
{
    KovaTextColor_t colors[] = {{0, 0, 0, 0}, {255, 255, 255, 255}, {255, 230, 80, 255}, {0, 0, 0, 255}};
    kova_sint32 siFont = -1; /* stays -1 if no font is opened: CreateFont returns 0 in any case */

    Kova_TextDisp_SetActive(pThiz, scID, 1);
    pThiz->Show(pThiz, scID);
    if (pThiz->SetPalette(pThiz, scID, colors, 4, 0)) return -1;
    if (pThiz->CreateFont(pThiz, scID, pcFontFile, 48, KOVA_FONTATTR_NONE, &siFont)) return -1;
    if (pThiz->SetFont(pThiz, scID, siFont, 48, KOVA_FONTATTR_NONE)) return -1;
    if (Line(pThiz, scID, 580, KOVA_TEXT_EUNIFORM, WHITE, "Is anybody there?")) return -1;
    if (Line(pThiz, scID, 640, KOVA_TEXT_ERIGTHDROPSHADOW, YELLOW, "[door creaks]")) return -1;
    return pThiz->Flip(pThiz, scID);
}

int main(int argc, char **argv)
{
    const char *const pcFontFile = argc > 1 ? argv[1] : "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
    KovaTextInitParam_t param = {KOVA_GRAPHIC_LAYER1, 0, 0, WIDTH, HEIGHT, 0, 0, 0, 1};
    KovaTextContextParam_t geometry = {.uiPlaneWidth = WIDTH, .uiPlaneHeight = HEIGHT};

    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);
    const pKovaITextDisplay_t pThiz = Kova_TextDisp_GetDisplayByID(0); /* the only reliable result */
    if (!pThiz) return fprintf(stderr, "No display: is DirectFB installed?\n"), 1;

    const kova_sint8 scID = Kova_TextDisp_CreateContext(pThiz, &geometry);
    if (scID < 0) return fprintf(stderr, "No context\n"), 1;

    const int iFailed = Caption(pThiz, scID, pcFontFile);
    if (iFailed) fprintf(stderr, "No caption: is %s a font?\n", pcFontFile);
    if (!iFailed) sleep(argc > 2 ? (unsigned int)atoi(argv[2]) : 5);
    Kova_TextDisp_DestroyContext(pThiz, scID);
    Kova_TextDisp_Destroy(0);
    return iFailed ? 1 : 0;
}
