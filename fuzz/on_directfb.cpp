// SPDX-License-Identifier: MIT
// Fuzzes on real DirectFB without a screen. There is one display for the whole run, because DirectFB can
// crash when it is shut down and initialised again. Each input starts with a cleared plane.
#include "memory_file.h"
#include "play.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize);

static pKovaITextDisplay_t TheDisplay()
{
    KovaTextInitParam_t param = {};

    setenv("DFBARGS", "system=dummy,mode=320x240,no-sighandler,no-banner,quiet", 1);
    param.uiPlaneWidth = 720;
    param.uiPlaneHeight = 480;
    param.bTextDisp_Palette = getenv("KOVA_FUZZ_PALETTE") != nullptr;
    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);
    pKovaITextDisplay_t pDisplay = Kova_TextDisp_GetDisplayByID(0);
    KovaTextContextParam_t context = {720, 480, 0, 0, 0, 0, 720, 480};
    if (!pDisplay || Kova_TextDisp_CreateContext(pDisplay, &context) != 0) {
        fprintf(stderr, "No display: install libdirectfb-dev.\n");
        exit(1);
    }
    Kova_TextDisp_SetActive(pDisplay, 0, 1);
    return pDisplay;
}

// Fonts, files that are not fonts, and a font truncated within its tables.
static const fuzz::Limits &PublishedDirectFB()
{
    static const char FONT[] = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
    static std::string head(4096, '\0');
    std::ifstream(FONT, std::ios::binary).read(head.data(), std::streamsize(head.size()));
    static const fuzz::MemoryFile truncated(head.data(), head.size()), nothing("", 0),
        text("not a font....\n", 15);
    static const fuzz::Limits limits = {{FONT, "/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf",
                                         "/nowhere/at/all.ttf", "/", "", truncated.Name(), nothing.Name(),
                                         text.Name()},
                                        false};
    return limits;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize)
{
    static pKovaITextDisplay_t pDisplay = TheDisplay();
    static int iInputs;
    fuzz::Bytes bytes(pData, uiSize);

    // Fonts accumulate in the slots; an activation now and then opens them again.
    if (iInputs++ % 64 == 0) {
        Kova_TextDisp_SetActive(pDisplay, 0, 0);
        Kova_TextDisp_SetActive(pDisplay, 0, 1);
    }
    pDisplay->Show(pDisplay, 0);
    fuzz::PlayOperations(pDisplay, bytes, PublishedDirectFB());
    pDisplay->UseBackupSurface(pDisplay, 0, 0);
    pDisplay->SetClip(pDisplay, 0, nullptr);
    return 0;
}
