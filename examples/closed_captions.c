// SPDX-License-Identifier: MIT
/* Closed captions: caption bytes go in, what they mean is on the screen, rolling included. A stream of CEA-608 is built in.
   usage: closed_captions [FONT-FILE [SECONDS]] */
#include "kova/kova_captions_draw.h"

#include <stdio.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>

enum { WIDTH = 1280, HEIGHT = 720, FRAME = 33367 };

/* Roll-up captions of three rows at row 15, then a carriage return before each line. A TV has them from its video. */
static const char stream[] = "\x14\x26\x14\x2D\x14\x70>> Is anybody there?"
                             "\x14\x2D[door creaks]\0"
                             "\x14\x2D>> Only the wind.\0";

static int64_t Now(void)
{
    struct timespec now;

    clock_gettime(CLOCK_MONOTONIC, &now);
    return (int64_t)now.tv_sec * 1000000 + now.tv_nsec / 1000;
}

static void SleepUntil(int64_t time)
{
    const int64_t left = time - Now();
    const struct timespec pause = {0, (long)(left < 500000 ? left : 500000) * 1000};

    if (left > 0) nanosleep(&pause, NULL);
}

static uint8_t WithParity(char c)
{
    const uint8_t byte = (uint8_t)c;
    uint8_t ones = (uint8_t)(byte ^ byte >> 4);

    ones = (uint8_t)(ones ^ ones >> 2);
    return (uint8_t)(byte | (((ones ^ ones >> 1) & 1) ? 0 : 0x80));
}

/* Draws until the next picture is due: once, and at each step of what moves. */
static void DrawUntil(KovaCaptionsRenderer *renderer, KovaCaptions *decoder, int64_t end)
{
    while (Now() < end) {
        Kova_Captions_Draw(renderer, decoder, KOVA_CAPTIONS_CC1, Now());
        const int64_t next = Kova_Captions_NextDraw(renderer);
        SleepUntil(next < end ? next : end);
    }
}

static void Play(KovaCaptionsRenderer *renderer, KovaCaptions *decoder)
{
    int64_t time = Now();
    size_t i;

    for (i = 0; i + 1 < sizeof stream; i += 2, time += FRAME) {
        Kova_Captions_PushPair(decoder, time, 1, WithParity(stream[i]), WithParity(stream[i + 1]));
        DrawUntil(renderer, decoder, time + FRAME);
    }
    /* The last roll goes on a little, and then it has ended, however busy the machine was. */
    DrawUntil(renderer, decoder, time + KOVA_CAPTIONS_ROLL);
    Kova_Captions_Draw(renderer, decoder, KOVA_CAPTIONS_CC1, time + KOVA_CAPTIONS_ROLL);
}

int main(int argc, char **argv)
{
    KovaTextInitParam_t param = {KOVA_GRAPHIC_LAYER2, 0, 0, WIDTH, HEIGHT, 0, 0, 0, 0}; /* index mode */
    KovaTextContextParam_t geometry = {.uiPlaneWidth = WIDTH, .uiPlaneHeight = HEIGHT};
    KovaCaptionsScreen screen;

    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);
    Kova_Captions_GetDefaultScreen(&screen);
    screen.display = Kova_TextDisp_GetDisplayByID(0);
    if (!screen.display) return fprintf(stderr, "No display: is DirectFB installed?\n"), 1;
    screen.context = Kova_TextDisp_CreateContext(screen.display, &geometry);
    screen.plane_width = WIDTH;
    screen.plane_height = HEIGHT;
    screen.fonts[0] = argc > 1 ? argv[1] : "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf";
    Kova_TextDisp_SetActive(screen.display, screen.context, 1);
    screen.display->Show(screen.display, screen.context);

    KovaCaptions *const decoder = Kova_Captions_Create(NULL);
    KovaCaptionsRenderer *const renderer = Kova_Captions_CreateRenderer(&screen);
    const int failed = !decoder || !renderer;
    if (failed) fprintf(stderr, "No caption: out of memory\n");
    if (!failed) Play(renderer, decoder);
    if (!failed) sleep(argc > 2 ? (unsigned int)atoi(argv[2]) : 5);
    Kova_Captions_DestroyRenderer(renderer);
    Kova_Captions_Destroy(decoder);
    Kova_TextDisp_DestroyContext(screen.display, screen.context);
    Kova_TextDisp_Destroy(0);
    return failed;
}
