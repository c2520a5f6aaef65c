// SPDX-License-Identifier: MIT
// Fuzzes on the recording double: a new display for each input, on any layer, in any colour mode, with one
// injected failure.
#include "double.h"
#include "play.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize)
{
    fuzz::Bytes bytes(pData, uiSize);
    KovaTextInitParam_t param = {};

    fake::Reset();
    fake::HoldSleeps(false);
    fake::SetThreshold(bytes.Byte() % 6);
    param.eLayer = KovaGraphicLayer_e(bytes.Byte() % 3);
    param.bColor32Bit = bytes.Byte() & 1;
    param.bTextDisp_Palette = bytes.Byte() & 1;
    param.uiPlaneWidth = bytes.Size() + 1;
    param.uiPlaneHeight = bytes.Size() + 1;
    const int iFailing = bytes.Byte();
    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);
    pKovaITextDisplay_t pDisplay = Kova_TextDisp_GetDisplayByID(0);
    if (!pDisplay) abort(); // no failure has been injected yet
    if (iFailing > 128) fake::GiveNothingAtCall(fake::CallCount() + iFailing - 128);
    if (iFailing > 0 && iFailing <= 128) fake::FailCall(fake::CallCount() + iFailing, DFB_FAILURE);
    fuzz::PlayDisplay(
        pDisplay, bytes,
        {{"a.ttf", "b.ttf", "c.ttf", "d.ttf", "e.ttf", "f.ttf", "g.ttf", "h.ttf", "i.ttf", ""}, true});
    fuzz::EndContexts(pDisplay);
    Kova_TextDisp_Destroy(0);
    fake::DropObjects(); // objects that an injected failure or a refusal did not release
    return 0;
}
