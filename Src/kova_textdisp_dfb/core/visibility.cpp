// SPDX-License-Identifier: MIT
// Show and hide wipe the plane; the layer itself stays as it is. The next flip brings the wipe to the screen.
#include "operations.h"

namespace textdisp
{

static void Wipe(pKovaITextDisplay_t pThiz, kova_sint8 scContextID) HOLDS_DISPLAY
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);
    const KovaTextColor_t transparent = {0, 0, 0, 0};
    const KovaTextRect_t plane = {0, 0, pDisplay->uiPlaneWidth, pDisplay->uiPlaneHeight};

    if (!Peek(pDisplay->bColor32)) SetPaletteInternal(pThiz, scContextID, &transparent, 1, 0);
    FillRectInternal(pThiz, scContextID, &plane, 0);
}

void ShowInternal(pKovaITextDisplay_t pThiz, kova_sint8 scContextID)
{
    Wipe(pThiz, scContextID);
    Poke(Record(pThiz)->bShow, 1);
}

void HideInternal(pKovaITextDisplay_t pThiz, kova_sint8 scContextID)
{
    Wipe(pThiz, scContextID);
    Poke(Record(pThiz)->bShow, 0);
}

void RestoreShownState(pKovaITextDisplay_t pThiz, kova_sint8 scContextID)
{
    if (IsShown(Record(pThiz))) {
        ShowInternal(pThiz, scContextID);
    } else {
        HideInternal(pThiz, scContextID);
    }
}

void Show(pKovaITextDisplay_t pThiz, kova_sint8 scContextID)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!");
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!");
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay);
    ShowInternal(pThiz, scContextID); // a display shown already is wiped again
    return Unlock(pDisplay), TEXTDISP_EXIT();
}

void Hide(pKovaITextDisplay_t pThiz, kova_sint8 scContextID)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!");
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!");
    if (!IsShown(pDisplay)) return TEXTDISP_EXIT();
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay);
    HideInternal(pThiz, scContextID);
    return Unlock(pDisplay), TEXTDISP_EXIT();
}

} // namespace textdisp
