// SPDX-License-Identifier: MIT
// Draws a thousand times a second for some seconds, then pauses: what is flipped, when, and at what cost.
// usage: kova_burst LAYER(2, 3) ours|direct SECONDS OUT.json
#include "fixture.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <pthread.h>
#include <sys/resource.h>
#include <time.h>

static DFBResult (*g_pFlip)(IDirectFBSurface *, const DFBRegion *, DFBSurfaceFlipFlags);
static pthread_t g_mainThread;
static std::atomic<int> g_iDirect, g_iDeferred;
static std::atomic<double> g_fLastFlip;

static double Now()
{
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

static double ProcessorSeconds()
{
    struct rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) { return double(time.tv_sec) + double(time.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

static DFBResult CountFlip(IDirectFBSurface *pSurface, const DFBRegion *pRegion, DFBSurfaceFlipFlags eFlags)
{
    const DFBResult eResult = g_pFlip(pSurface, pRegion, eFlags);

    (pthread_equal(pthread_self(), g_mainThread) ? g_iDirect : g_iDeferred)++;
    g_fLastFlip = Now();
    return eResult;
}

int main(int argc, char **argv)
{
    if (argc != 5) {
        std::fprintf(stderr, "usage: %s LAYER ours|direct SECONDS OUT.json\n", argv[0]);
        return 2;
    }
    const bool bOurs = std::strcmp(argv[2], "ours") == 0;
    const double fSeconds = std::atof(argv[3]);
    bench::Display display(bench::PALETTE, KovaGraphicLayer_e(std::atoi(argv[1]) - 1), false);
    IDirectFBSurface *const pSurface = display.Surface();

    g_mainThread = pthread_self();
    g_pFlip = pSurface->Flip;
    pSurface->Flip = CountFlip;
    const double fStart = Now(), fProcessor = ProcessorSeconds();
    int iDraws = 0;
    while (Now() < fStart + fSeconds) {
        const int iX = 100 + iDraws % 800;
        if (bOurs) {
            display->DrawLine(display, 0, 100, 100, iX, 500, kova_uint32(iDraws % 256));
        } else {
            pSurface->SetColor(pSurface, kova_uint8(iDraws), 0, 0, 255);
            pSurface->DrawLine(pSurface, 100, 100, iX, 500);
            pSurface->Flip(pSurface, nullptr, DFBSurfaceFlipFlags(DSFLIP_WAIT | DSFLIP_BLIT | DSFLIP_ONSYNC));
        }
        iDraws++;
        // Wait for the next millisecond; continue at once if it has passed.
        const double fNext = fStart + iDraws / 1000.0, fLeft = fNext - Now();
        const struct timespec pause = {0, long(fLeft * 1e9)};
        if (fLeft > 0) nanosleep(&pause, nullptr);
    }
    const double fLastDraw = Now(), fSpent = ProcessorSeconds() - fProcessor;
    const struct timespec rest = {0, 200000000};
    nanosleep(&rest, nullptr);

    const double fTime = fLastDraw - fStart, fToFlip = (g_fLastFlip.load() - fLastDraw) * 1e3;
    FILE *const pOut = std::fopen(argv[4], "w");
    if (!pOut) return std::perror(argv[4]), 1;
    std::fprintf(pOut,
                 "{\"benchmarks\": [{\"name\": \"burst/layer %s/%s\", \"draws\": %.1f, \"direct\": %.1f, "
                 "\"deferred\": %.1f, \"to_flip\": %.1f, \"processor\": %.1f}]}\n",
                 argv[1], bOurs ? "this library" : "raw DirectFB, one flip per draw", iDraws / fTime,
                 g_iDirect / fTime, g_iDeferred / fTime, fToFlip > 0 ? fToFlip : 0, 100 * fSpent / fTime);
    return std::fclose(pOut);
}
