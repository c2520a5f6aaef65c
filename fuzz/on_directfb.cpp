// SPDX-License-Identifier: MIT
// On real DirectFB without a screen: one display for the whole run, because DirectFB does not like to be
// taken down and brought up again. Each input begins with a fresh plane.
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
        fprintf(stderr, "No display: is libdirectfb-dev installed?\n");
        exit(1);
    }
    Kova_TextDisp_SetActive(pDisplay, 0, 1);
    return pDisplay;
}

// Fonts, what is none, and one that breaks off in the middle of its tables.
static const fuzz::Below &Published()
{
    static const char FONT[] = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
    static std::string begun(4096, '\0');
    std::ifstream(FONT, std::ios::binary).read(begun.data(), std::streamsize(begun.size()));
    static const fuzz::MemoryFile cut(begun.data(), begun.size()), nothing("", 0),
        text("no font at all\n", 15);
    static const fuzz::Below below = {{FONT, "/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf",
                                       "/nowhere/at/all.ttf", "/", "", cut.Name(), nothing.Name(),
                                       text.Name()},
                                      false};
    return below;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize)
{
    static pKovaITextDisplay_t pDisplay = TheDisplay();
    static int iInputs;
    fuzz::Bytes bytes(pData, uiSize);

    // Fonts pile up in the slots; now and then all is made anew.
    if (iInputs++ % 64 == 0) {
        Kova_TextDisp_SetActive(pDisplay, 0, 0);
        Kova_TextDisp_SetActive(pDisplay, 0, 1);
    }
    pDisplay->Show(pDisplay, 0);
    fuzz::PlayOperations(pDisplay, bytes, Published());
    pDisplay->UseBackupSurface(pDisplay, 0, 0);
    pDisplay->SetClip(pDisplay, 0, nullptr);
    return 0;
}
