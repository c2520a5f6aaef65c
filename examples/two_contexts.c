// SPDX-License-Identifier: MIT
/* Two callers on one display, each with its own plane size: subtitles, and a menu that replaces them.
   usage: two_contexts [FONT-FILE [SECONDS]] */
#include "kova/kova_textdisp.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

enum { BOX = 1, WHITE = 2, BLACK = 3 };

static int Text(pKovaITextDisplay_t pThiz, kova_sint8 scID, kova_uint32 uiX, kova_uint32 uiY,
                const char *pcText)
{
    return pThiz->DrawString(pThiz, scID, (const void *)pcText, (kova_uint8)strlen(pcText), uiX, uiY,
                             KOVA_TEXT_UTF8, 0);
}

static int Subtitle(pKovaITextDisplay_t pThiz, kova_sint8 scID)
{
    return pThiz->SetEdgeType(pThiz, scID, KOVA_TEXT_EUNIFORM) ||
           Text(pThiz, scID, 300, 620, "Is anybody there?");
}

static int Menu(pKovaITextDisplay_t pThiz, kova_sint8 scID)
{
    KovaTextRect_t box = {40, 40, 390, 130};

    if (pThiz->FillRect(pThiz, scID, &box, BOX) || pThiz->SetEdgeType(pThiz, scID, KOVA_TEXT_ENONE))
        return -1;
    return Text(pThiz, scID, 60, 50, "Subtitles: on") || Text(pThiz, scID, 60, 105, "Language: Welsh");
}

static int Use(pKovaITextDisplay_t pThiz, kova_sint8 scSubtitles, kova_sint8 scMenu, const char *pcFontFile,
               unsigned int uiSeconds)
{
    KovaTextColor_t colors[] = {{0, 0, 0, 0}, {0, 60, 120, 255}, {255, 255, 255, 255}, {0, 0, 0, 255}};
    kova_sint32 siFont = -1;

    Kova_TextDisp_SetActive(pThiz, scSubtitles, 1);
    pThiz->Show(pThiz, scSubtitles);
    if (pThiz->SetPalette(pThiz, scSubtitles, colors, 4, 0)) return -1;
    if (pThiz->CreateFont(pThiz, scSubtitles, pcFontFile, 40, KOVA_FONTATTR_NONE, &siFont)) return -1;
    if (pThiz->SetFont(pThiz, scSubtitles, siFont, 40, KOVA_FONTATTR_NONE)) return -1;
    if (pThiz->SetTextForeColor(pThiz, scSubtitles, WHITE)) return -1;
    if (pThiz->SetEdgeColor(pThiz, scSubtitles, BLACK)) return -1;
    if (Subtitle(pThiz, scSubtitles)) return -1;
    sleep(uiSeconds);

    /* Palette, fonts and colours belong to the display and are kept. The contents of the plane are not. */
    Kova_TextDisp_SetActive(pThiz, scMenu, 1);
    if (Menu(pThiz, scMenu)) return -1;
    if (!Subtitle(pThiz, scSubtitles)) return -1; /* must be refused: only the active context can draw */
    sleep(uiSeconds);
    Kova_TextDisp_SetActive(pThiz, scSubtitles, 1);
    return Subtitle(pThiz, scSubtitles);
}

int main(int argc, char **argv)
{
    const char *const pcFontFile = argc > 1 ? argv[1] : "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
    KovaTextInitParam_t param = {KOVA_GRAPHIC_LAYER1, 0, 0, 1280, 720, 0, 0, 0, 1};
    KovaTextContextParam_t large = {.uiPlaneWidth = 1280, .uiPlaneHeight = 720};
    KovaTextContextParam_t small = {.uiPlaneWidth = 640, .uiPlaneHeight = 360};

    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);
    const pKovaITextDisplay_t pThiz = Kova_TextDisp_GetDisplayByID(0);
    if (!pThiz) return fprintf(stderr, "No display: is DirectFB installed?\n"), 1;

    const kova_sint8 scSubtitles = Kova_TextDisp_CreateContext(pThiz, &large);
    const kova_sint8 scMenu = Kova_TextDisp_CreateContext(pThiz, &small);
    const int iFailed =
        scMenu < 0 || Use(pThiz, scSubtitles, scMenu, pcFontFile, argc > 2 ? (unsigned int)atoi(argv[2]) : 3);
    if (iFailed) fprintf(stderr, "Not drawn: is %s a font?\n", pcFontFile);
    if (scMenu >= 0) Kova_TextDisp_DestroyContext(pThiz, scMenu);
    if (scSubtitles >= 0) Kova_TextDisp_DestroyContext(pThiz, scSubtitles);
    Kova_TextDisp_Destroy(0);
    return iFailed;
}
