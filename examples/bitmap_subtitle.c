// SPDX-License-Identifier: MIT
/* A bitmap subtitle with its own palette, as in broadcasts.
   usage: bitmap_subtitle [SECONDS] */
#include "kova/kova_textdisp.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

/* A small plane: layer 1 is a window that is scaled to the whole screen. */
enum { WIDTH = 96, HEIGHT = 54, FIRST = 16, COLORS = 3, ROWS = 13 };

/* The received bitmap, one character per pixel: '.' is the box, 'o' the outline, '#' the letters. */
static const char *const received[ROWS] = {
    ".......................................................",
    ".......................................................",
    "..ooo......................ooo.....ooo...........ooo...",
    "..o#o......................o#o.....o#o...........o#o...",
    "..o#o.....ooooo.oooooo..oooo#o.....o#oooo..ooooo.o#o...",
    "..o#o.....o###ooo#o##oooo##o#o.....o#o##oooo###ooo#o...",
    "..o#o.....oooo#oo##oo#oo#oo##o.....o##oo#oo#ooo#oo#o...",
    "..o#o....oo####oo#ooo#oo#ooo#o.....o#ooo#oo#o.o#oo#o...",
    "..o#oooooo#ooo#oo#o.o#oo#oo##o.....o#o.o#oo#ooo#oooo...",
    "..o#####ooo####oo#o.o#ooo##o#o.....o#o.o#ooo###ooo#o...",
    "..ooooooo.ooooooooo.ooo.oooooo.....ooo.ooo.ooooo.ooo...",
    ".......................................................",
    ".......................................................",
};

/* Converts the pixels to indexes into the display's palette, behind the entries of other captions. */
static kova_uint8 *Unpack(void)
{
    const size_t width = strlen(received[0]);
    kova_uint8 *const pixels = malloc(ROWS * width);
    size_t y, x;

    for (y = 0; pixels && y < ROWS; y++) {
        for (x = 0; x < width; x++) {
            pixels[y * width + x] = (kova_uint8)(FIRST + (strchr(".o#", received[y][x]) - ".o#"));
        }
    }
    return pixels;
}

static int Subtitle(pKovaITextDisplay_t pThiz, kova_sint8 scID, kova_uint8 *pixels)
{
    const kova_uint32 width = (kova_uint32)strlen(received[0]);
    KovaTextColor_t colors[COLORS] = {{0, 0, 0, 140}, {0, 0, 0, 255}, {255, 235, 130, 255}};

    Kova_TextDisp_SetActive(pThiz, scID, 1);
    pThiz->Show(pThiz, scID);
    if (pThiz->SetPalette(pThiz, scID, colors, COLORS, FIRST)) return -1;
    return pThiz->DrawPixel(pThiz, scID, pixels, (WIDTH - width) / 2, HEIGHT - ROWS - 4, width, ROWS, width);
}

int main(int argc, char **argv)
{
    /* Index mode: each pixel is one byte, a palette index. DrawPixel requires it. */
    KovaTextInitParam_t param = {KOVA_GRAPHIC_LAYER1, 0, 0, WIDTH, HEIGHT, 0, 0, 0, 0};
    KovaTextContextParam_t geometry = {.uiPlaneWidth = WIDTH, .uiPlaneHeight = HEIGHT};
    kova_uint8 *const pixels = Unpack();

    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);
    const pKovaITextDisplay_t pThiz = Kova_TextDisp_GetDisplayByID(0);
    if (!pThiz || !pixels) return fprintf(stderr, "No display: is DirectFB installed?\n"), 1;

    const kova_sint8 scID = Kova_TextDisp_CreateContext(pThiz, &geometry);
    const int iFailed = scID < 0 || Subtitle(pThiz, scID, pixels);
    if (iFailed) fprintf(stderr, "No subtitle\n");
    if (!iFailed) sleep(argc > 1 ? (unsigned int)atoi(argv[1]) : 5);
    if (scID >= 0) Kova_TextDisp_DestroyContext(pThiz, scID);
    Kova_TextDisp_Destroy(0);
    free(pixels);
    return iFailed;
}
