// SPDX-License-Identifier: MIT
// Eight callers draw on one display on real DirectFB while they change its geometry. The pixels cannot be
// compared: the test checks that every call returns, nothing crashes and no sanitizer reports anything.
// usage: callers_stress [SECONDS]    3 by default; KOVA_LIVE_LAYER is the layer, 2 by default
#include "kova/kova_textdisp.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

enum { CALLERS = 8, CONTEXTS = 4 };

static const struct {
    kova_uint32 uiWidth, uiHeight;
} s_planes[CONTEXTS] = {{320, 200}, {720, 480}, {64, 48}, {1280, 720}};

static std::atomic<long> s_lCalls{0}, s_lGeometryChanges{0};

static void ChangeGeometry(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID, unsigned uiWhich)
{
    const auto &plane = s_planes[uiWhich / 4 % CONTEXTS];

    s_lGeometryChanges++;
    switch (uiWhich % 4) {
    case 0:
        Kova_TextDisp_SetActive(pDisplay, scContextID, 1);
        break;
    case 1:
        pDisplay->SetPlane(pDisplay, scContextID, 0, 0, plane.uiWidth, plane.uiHeight);
        break;
    case 2:
        pDisplay->AdjustDisplaySize(pDisplay, scContextID, 0, 0, plane.uiWidth, plane.uiHeight);
        break;
    case 3:
        pDisplay->Create32BitPlane(pDisplay, scContextID, 0, 0, plane.uiWidth, plane.uiHeight);
        break;
    }
}

static void Draw(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID, std::mt19937 &random)
{
    static kova_uint8 s_aucPixels[64 * 64];
    const auto uiX = kova_uint32(random() % 1300), uiY = kova_uint32(random() % 740);
    KovaTextRect_t rect = {uiX, uiY, 1 + kova_uint32(random()) % 200, 1 + kova_uint32(random()) % 200};

    switch (random() % 7) {
    case 0:
        pDisplay->FillRect(pDisplay, scContextID, &rect, kova_uint32(random()));
        break;
    case 1:
        pDisplay->DrawLine(pDisplay, scContextID, 0, 0, int(uiX), int(uiY), kova_uint32(random()));
        break;
    case 2:
        pDisplay->DrawPixel(pDisplay, scContextID, s_aucPixels, uiX, uiY, 64, 64, 64);
        break;
    case 3:
        pDisplay->DrawPixelExpand(pDisplay, scContextID, s_aucPixels, uiX, uiY, 48, 48, 6, 1, 2, 0,
                                  KOVA_EXPAND_2X4Y);
        break;
    case 4:
        pDisplay->Blit(pDisplay, scContextID, &rect, uiY, uiX);
        break;
    case 5:
        pDisplay->SetClip(pDisplay, scContextID, random() % 2 ? &rect : nullptr);
        break;
    case 6:
        pDisplay->Flip(pDisplay, scContextID);
        break;
    }
}

static void Call(pKovaITextDisplay_t pDisplay, unsigned uiSeed, std::chrono::steady_clock::time_point end)
{
    std::mt19937 random(uiSeed);

    while (std::chrono::steady_clock::now() < end) {
        const auto scContextID = kova_sint8(random() % CONTEXTS);
        if (random() % 16 == 0) {
            ChangeGeometry(pDisplay, scContextID, unsigned(random()));
        } else {
            Draw(pDisplay, scContextID, random);
        }
        s_lCalls++;
    }
}

int main(int argc, char **argv)
{
    const int iSeconds = argc > 1 ? atoi(argv[1]) : 3;
    if (argc > 2 || iSeconds < 1) return fprintf(stderr, "usage: callers_stress [SECONDS]\n"), 2;
    const char *const pcLayer = getenv("KOVA_LIVE_LAYER");
    KovaTextInitParam_t param = {};
    param.eLayer = KovaGraphicLayer_e((pcLayer ? atoi(pcLayer) : 2) - 1);
    param.uiPlaneWidth = 320;
    param.uiPlaneHeight = 200;
    if (Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param) != 0) return fprintf(stderr, "no display\n"), 1;
    pKovaITextDisplay_t pDisplay = Kova_TextDisp_GetDisplayByID(0);
    for (const auto &plane : s_planes) {
        KovaTextContextParam_t context = {};
        context.uiPlaneWidth = plane.uiWidth;
        context.uiPlaneHeight = plane.uiHeight;
        if (Kova_TextDisp_CreateContext(pDisplay, &context) < 0) return fprintf(stderr, "no context\n"), 1;
    }
    Kova_TextDisp_SetActive(pDisplay, 0, 1);
    pDisplay->Show(pDisplay, 0);

    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(iSeconds);
    std::vector<std::thread> callers;
    for (unsigned i = 0; i < CALLERS; i++) callers.emplace_back(Call, pDisplay, i + 1, end);
    for (std::thread &caller : callers) caller.join();

    for (int i = 0; i < CONTEXTS; i++) Kova_TextDisp_DestroyContext(pDisplay, kova_sint8(i));
    Kova_TextDisp_Destroy(0);
    printf("%ld calls, %ld of them changed the geometry\n", s_lCalls.load(), s_lGeometryChanges.load());
    return 0;
}
