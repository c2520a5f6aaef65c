// SPDX-License-Identifier: MIT
// The time from the first call to the first caption on the screen, and the memory then and after ten thousand
// captions, with the library or with DirectFB alone. usage: kova_footprint ours|direct OUT.json
#include "direct_window.h"
#include "fixture.h"
#include "memory.h"

#include <cstdio>
#include <cstring>

static constexpr char TEXT[] = "The quick brown fox jumps over a";

static void DrawOurs(pKovaITextDisplay_t display, int i)
{
    display->DrawString(display, 0, reinterpret_cast<const unsigned short *>(TEXT), sizeof TEXT - 1,
                        kova_uint32(i % 800), 900, KOVA_TEXT_UTF8, KOVA_TEXT_LEFT);
}

static void DrawDirectly(IDirectFBSurface *pSurface, int i)
{
    pSurface->SetColor(pSurface, 255, 255, 255, 255);
    pSurface->DrawString(pSurface, TEXT, sizeof TEXT - 1, i % 800, 900, DSTF_TOPLEFT);
    pSurface->Flip(pSurface, nullptr, DFBSurfaceFlipFlags(DSFLIP_WAIT | DSFLIP_BLIT | DSFLIP_ONSYNC));
}

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s ours|direct OUT.json\n", argv[0]);
        return 2;
    }
    const bool bOurs = std::strcmp(argv[1], "ours") == 0;
    double fFirst;
    long lStart, lEnd;

    if (bOurs) {
        KovaTextInitParam_t init = {};
        pKovaITextDisplay_t display = nullptr;
        fFirst = bench::SecondsOf(1, [&] {
            kova_sint32 siFont = -1;
            init.uiPlaneWidth = bench::PLANE_WIDTH;
            init.uiPlaneHeight = bench::PLANE_HEIGHT;
            init.bTextDisp_Palette = 1;
            Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &init);
            display = Kova_TextDisp_GetDisplayByID(0);
            if (!display) return;
            display->Show(display, 0);
            display->CreateFont(display, 0, bench::FONT, bench::FONT_HEIGHT, KOVA_FONTATTR_NONE, &siFont);
            display->SetFont(display, 0, siFont, bench::FONT_HEIGHT, KOVA_FONTATTR_NONE);
            display->SetEdgeType(display, 0, KOVA_TEXT_ENONE);
            DrawOurs(display, 0);
        });
        if (!display) return 1;
        bench::Mute(reinterpret_cast<KovaDFBDisplay_t *>(display)->pActiveSurface);
        lStart = MemoryKiB("VmRSS:");
        for (int i = 0; i < 10000; i++) DrawOurs(display, i);
        lEnd = MemoryKiB("VmRSS:");
    } else {
        bench::DirectWindow *pWindow = nullptr;
        fFirst = bench::SecondsOf(1, [&] {
            pWindow = new bench::DirectWindow(bench::KeepDirectFB());
            pWindow->Open(bench::PLANE_WIDTH, bench::PLANE_HEIGHT, 1);
            DrawDirectly(pWindow->Surface(), 0);
        });
        bench::Mute(pWindow->Surface());
        lStart = MemoryKiB("VmRSS:");
        for (int i = 0; i < 10000; i++) DrawDirectly(pWindow->Surface(), i);
        lEnd = MemoryKiB("VmRSS:");
    }
    FILE *const pOut = std::fopen(argv[2], "w");
    if (!pOut) return std::perror(argv[2]), 1;
    std::fprintf(
        pOut,
        "{\"benchmarks\": [{\"name\": \"footprint//%s\", \"first_caption\": %.2f, \"resident\": %ld, "
        "\"resident_later\": %ld}]}\n",
        bOurs ? "this library" : "raw DirectFB", fFirst * 1e3, lStart, lEnd);
    std::fclose(pOut);
    quick_exit(0);
}
