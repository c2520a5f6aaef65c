// SPDX-License-Identifier: MIT
/* A page in a bitmap font: the display expands the glyphs, one call per line.
   usage: teletext_page [SECONDS] */
#include "kova/kova_textdisp.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

enum { WIDTH = 480, HEIGHT = 272, CELL = 8, BLACK = 1, WHITE, YELLOW, CYAN, BLUE };

/* Eight bytes per letter, one per row; the most significant bit is leftmost. */
static const char *const letters = " ABDEGHILOTW:01246";
static kova_uint8 font[] = {
    0,    0,    0,    0,    0,    0,    0,    0, 0x38, 0x44, 0x44, 0x7C, 0x44, 0x44, 0x44, 0,
    0x78, 0x44, 0x44, 0x78, 0x44, 0x44, 0x78, 0, 0x78, 0x44, 0x44, 0x44, 0x44, 0x44, 0x78, 0,
    0x7C, 0x40, 0x40, 0x78, 0x40, 0x40, 0x7C, 0, 0x38, 0x44, 0x40, 0x5C, 0x44, 0x44, 0x38, 0,
    0x44, 0x44, 0x44, 0x7C, 0x44, 0x44, 0x44, 0, 0x38, 0x10, 0x10, 0x10, 0x10, 0x10, 0x38, 0,
    0x40, 0x40, 0x40, 0x40, 0x40, 0x40, 0x7C, 0, 0x38, 0x44, 0x44, 0x44, 0x44, 0x44, 0x38, 0,
    0x7C, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0, 0x44, 0x44, 0x44, 0x54, 0x54, 0x6C, 0x44, 0,
    0,    0x10, 0x10, 0,    0x10, 0x10, 0,    0, 0x38, 0x4C, 0x54, 0x54, 0x54, 0x64, 0x38, 0,
    0x10, 0x30, 0x10, 0x10, 0x10, 0x10, 0x38, 0, 0x38, 0x44, 0x04, 0x18, 0x20, 0x40, 0x7C, 0,
    0x08, 0x18, 0x28, 0x48, 0x7C, 0x08, 0x08, 0, 0x38, 0x40, 0x40, 0x78, 0x44, 0x44, 0x38, 0};

static int Line(pKovaITextDisplay_t pThiz, kova_sint8 scID, kova_uint32 y, KovaTextExpand_e eExpand,
                kova_sint32 paper, kova_sint32 ink, const char *pcText)
{
    enum { MOST = 40 };
    kova_uint8 *bits[MOST], n = 0;
    kova_uint32 xs[MOST], ys[MOST], sizes[MOST], bytes[MOST], offsets[MOST];
    kova_sint32 papers[MOST], inks[MOST];
    KovaTextExpand_e expansions[MOST];

    for (; n < MOST && pcText[n]; n++) {
        bits[n] = font + CELL * (strchr(letters, pcText[n]) - letters);
        xs[n] = 16 + n * (eExpand & 4 ? 2u : 1u) * CELL;
        ys[n] = y, sizes[n] = CELL, bytes[n] = 1, offsets[n] = 0;
        papers[n] = paper, inks[n] = ink, expansions[n] = eExpand;
    }
    return pThiz->BatchDrawPixelExpand(pThiz, scID, bits, xs, ys, sizes, sizes, bytes, papers, inks, offsets,
                                       expansions, n);
}

static int Page(pKovaITextDisplay_t pThiz, kova_sint8 scID)
{
    KovaTextColor_t colors[] = {{0, 0, 0, 0},       {0, 0, 0, 255},     {255, 255, 255, 255},
                                {255, 255, 0, 255}, {0, 255, 255, 255}, {0, 0, 160, 255}};
    KovaTextRect_t page = {0, 0, WIDTH, HEIGHT};

    Kova_TextDisp_SetActive(pThiz, scID, 1);
    pThiz->Show(pThiz, scID);
    if (pThiz->SetPalette(pThiz, scID, colors, 6, 0) || pThiz->FillRect(pThiz, scID, &page, BLACK)) return -1;
    if (Line(pThiz, scID, 16, KOVA_EXPAND_2X4Y, BLUE, YELLOW, " TIDE TABLE ")) return -1;
    if (Line(pThiz, scID, 80, KOVA_EXPAND_2X2Y, BLACK, WHITE, "HIGH  06:12  TO 06:41")) return -1;
    if (Line(pThiz, scID, 112, KOVA_EXPAND_2X2Y, BLACK, WHITE, "LOW   12:26  TO 12:46")) return -1;
    if (Line(pThiz, scID, 160, KOVA_EXPAND_1X2Y, BLACK, CYAN, "TWILIGHT 04:20  TO  20:14")) return -1;
    if (Line(pThiz, scID, 192, KOVA_EXPAND_1X1Y, BLACK, CYAN, "THE TIDE AT THE OLD GATE")) return -1;
    return pThiz->Flip(pThiz, scID);
}

int main(int argc, char **argv)
{
    KovaTextInitParam_t param = {KOVA_GRAPHIC_LAYER1, 0, 0, WIDTH, HEIGHT, 0, 0, 0, 0};
    KovaTextContextParam_t geometry = {.uiPlaneWidth = WIDTH, .uiPlaneHeight = HEIGHT};

    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);
    const pKovaITextDisplay_t pThiz = Kova_TextDisp_GetDisplayByID(0);
    if (!pThiz) return fprintf(stderr, "No display: is DirectFB installed?\n"), 1;

    const kova_sint8 scID = Kova_TextDisp_CreateContext(pThiz, &geometry);
    const int iFailed = scID < 0 || Page(pThiz, scID);
    if (iFailed) fprintf(stderr, "No page\n");
    if (!iFailed) sleep(argc > 1 ? (unsigned int)atoi(argv[1]) : 5);
    if (scID >= 0) Kova_TextDisp_DestroyContext(pThiz, scID);
    Kova_TextDisp_Destroy(0);
    return iFailed;
}
