// SPDX-License-Identifier: MIT
/* A roll-up window of three rows: each new line is written at the bottom and moves the others up.
   usage: roll_up [FONT-FILE [SECONDS]] */
#include "kova/kova_textdisp.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

enum { WIDTH = 1280, HEIGHT = 720, ROWS = 3, ROW = 48, LETTERS = 36, STEP = 4, BOX = 1, WHITE = 2 };

static KovaTextRect_t window = {240, 500, 800, ROWS *ROW};

static int Write(pKovaITextDisplay_t pThiz, kova_sint8 scID, const char *pcText)
{
    const kova_uint32 uiRow = window.uiY + (ROWS - 1) * ROW;

    /* At least STEP pixel rows below the letters stay empty, so nothing needs to be cleared. */
    return pThiz->DrawString(pThiz, scID, (const void *)pcText, (kova_uint8)strlen(pcText), window.uiX + 16,
                             uiRow, KOVA_TEXT_UTF8, 0);
}

/* Moves the window up one row, a few pixels per frame: each Blit flips and waits for the vertical sync. */
static int RollUp(pKovaITextDisplay_t pThiz, kova_sint8 scID)
{
    KovaTextRect_t below = {window.uiX, window.uiY + STEP, window.uiWidth, window.uiHeight - STEP};
    int i;

    for (i = 0; i < ROW / STEP; i++) {
        if (pThiz->Blit(pThiz, scID, &below, window.uiX, window.uiY)) return -1;
    }
    return 0;
}

static int Captions(pKovaITextDisplay_t pThiz, kova_sint8 scID, const char *pcFontFile)
{
    const char *const lines[] = {">> The ferry is late.", "It left the pier at noon",
                                 "and it has not been seen since.", ">> Look again.",
                                 "There, behind the lighthouse."};
    KovaTextColor_t colors[] = {{0, 0, 0, 0}, {0, 0, 0, 200}, {255, 255, 255, 255}};
    kova_sint32 siFont = -1;
    unsigned int i;

    Kova_TextDisp_SetActive(pThiz, scID, 1);
    pThiz->Show(pThiz, scID);
    if (pThiz->SetPalette(pThiz, scID, colors, 3, 0)) return -1;
    if (pThiz->CreateFont(pThiz, scID, pcFontFile, LETTERS, KOVA_FONTATTR_NONE, &siFont)) return -1;
    if (pThiz->SetFont(pThiz, scID, siFont, LETTERS, KOVA_FONTATTR_NONE)) return -1;
    if (pThiz->SetEdgeType(pThiz, scID, KOVA_TEXT_ENONE)) return -1;
    if (pThiz->SetTextForeColor(pThiz, scID, WHITE)) return -1;
    if (pThiz->FillRect(pThiz, scID, &window, BOX)) return -1;
    for (i = 0; i < sizeof lines / sizeof *lines; i++) {
        if (i && RollUp(pThiz, scID)) return -1;
        if (Write(pThiz, scID, lines[i])) return -1;
    }
    return 0;
}

int main(int argc, char **argv)
{
    const char *const pcFontFile = argc > 1 ? argv[1] : "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
    KovaTextInitParam_t param = {KOVA_GRAPHIC_LAYER1, 0, 0, WIDTH, HEIGHT, 0, 0, 0, 1};
    KovaTextContextParam_t geometry = {.uiPlaneWidth = WIDTH, .uiPlaneHeight = HEIGHT};

    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);
    const pKovaITextDisplay_t pThiz = Kova_TextDisp_GetDisplayByID(0);
    if (!pThiz) return fprintf(stderr, "No display: is DirectFB installed?\n"), 1;

    const kova_sint8 scID = Kova_TextDisp_CreateContext(pThiz, &geometry);
    const int iFailed = scID < 0 || Captions(pThiz, scID, pcFontFile);
    if (iFailed) fprintf(stderr, "No captions: is %s a font?\n", pcFontFile);
    if (!iFailed) sleep(argc > 2 ? (unsigned int)atoi(argv[2]) : 5);
    if (scID >= 0) Kova_TextDisp_DestroyContext(pThiz, scID);
    Kova_TextDisp_Destroy(0);
    return iFailed;
}
