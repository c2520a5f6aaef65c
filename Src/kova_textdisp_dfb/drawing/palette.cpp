// SPDX-License-Identifier: MIT
#include "operations.h"

#include <string.h>

namespace textdisp
{

// Entries past the end of the palette are left out.
static void CopyToRecord(KovaDFBDisplay_t *pDisplay, const KovaTextColor_t *pColor, kova_uint32 uiNumber,
                         kova_uint8 ucOffset) HOLDS_DISPLAY
{
    const kova_uint32 uiRoom = kova_uint32(MAX_PALETTE_COLOR) - ucOffset;

    // The source may be the record's palette itself.
    memmove(pDisplay->palette + ucOffset, pColor, (uiNumber < uiRoom ? uiNumber : uiRoom) * sizeof *pColor);
}

int SetPaletteInternal(pKovaITextDisplay_t pThiz, kova_sint8, const KovaTextColor_t *pColor,
                       kova_uint32 uiNumber, kova_uint8 ucOffset)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    if (Peek(pDisplay->bColor32)) return 0;
    if (pDisplay->bTextDisp_Palette) {
        if (ucOffset + uiNumber > MAX_PALETTE_COLOR) {
            return TEXTDISP_ERROR_RECORD("invalide offset:%d, uiNumber:%d", ucOffset, int(uiNumber)), -1;
        }
        return CopyToRecord(pDisplay, pColor, uiNumber, ucOffset), 0;
    }

    DFBColor colors[MAX_PALETTE_COLOR] = {};
    IDirectFBPalette *pPalette = nullptr;
    DFB_CHECK(Call(pDisplay->pActiveSurface, &IDirectFBSurface::GetPalette, &pPalette));
    for (kova_uint32 i = 0; i < uiNumber; i++) {
        colors[i].a = pColor[i].a;
        colors[i].r = pColor[i].r;
        colors[i].g = pColor[i].g;
        colors[i].b = pColor[i].b;
    }
    for (kova_uint32 i = 0; i < uiNumber && IsLogged(LEVEL_LOG); i++) {
        TEXTDISP_TRACE("colors[%d].a:%d\n", int(i), colors[i].a);
    }
    if (pPalette) {
        // Count and offset are passed unchanged, even past the end: DirectFB checks them.
        DFB_CHECK(Call(pPalette, &IDirectFBPalette::SetEntries, colors, uiNumber, ucOffset));
        if (pDisplay->pBaseSurface != pDisplay->pActiveSurface) {
            DFB_CHECK(Call(pDisplay->pBaseSurface, &IDirectFBSurface::SetPalette, pPalette));
        }
        DFB_CHECK(Call(pPalette, &IDirectFBPalette::Release));
    }
    return CopyToRecord(pDisplay, pColor, uiNumber, ucOffset), 0;
}

// A palette may be loaded while the display is hidden.
int SetPalette(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextColor_t pColor,
               kova_uint32 uiNumber, kova_uint8 ucOffset)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    if (!pColor) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (uiNumber > MAX_PALETTE_COLOR) {
        return TEXTDISP_ERROR("Palette length should be less than MAX_PALETTE_COLOR!"), -1;
    }
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    if (!pDisplay->pActiveSurface) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    SetPaletteInternal(pThiz, scContextID, pColor, uiNumber, ucOffset);
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

} // namespace textdisp
