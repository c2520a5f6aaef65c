// SPDX-License-Identifier: MIT
#include "operations.h"

namespace textdisp
{

KovaDFBSize_t MeasureBackupSurface(KovaDFBDisplay_t *pDisplay)
{
    if (pDisplay->pMeasuredBackup != pDisplay->pBackupSurface) {
        pDisplay->pMeasuredBackup = pDisplay->pBackupSurface;
        pDisplay->sBackupSize = {pDisplay->uiPlaneWidth, pDisplay->uiPlaneHeight};
    }
    return pDisplay->sBackupSize;
}

int UseBackupSurface(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_bool bBackup)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    Lock(pDisplay);
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), Unlock(pDisplay), -1;
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    IDirectFBSurface *const pTarget = bBackup ? pDisplay->pBackupSurface : pDisplay->pBaseSurface;
    if (pDisplay->pActiveSurface == pTarget) return Unlock(pDisplay), 0; // and no exit trace
    if (bBackup) MeasureBackupSurface(pDisplay);
    if (!pDisplay->pActiveSurface) {
        Poke(pDisplay->pActiveSurface, pTarget);
        return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
    }

    DFBColor colors[MAX_PALETTE_COLOR] = {};
    IDirectFBPalette *pSource = nullptr;
    DFB_CHECK(Call(pDisplay->pActiveSurface, &IDirectFBSurface::GetPalette, &pSource));
    if (pSource) {
        DFB_CHECK(Call(pSource, &IDirectFBPalette::GetEntries, colors, MAX_PALETTE_COLOR, 0));
        DFB_CHECK(Call(pSource, &IDirectFBPalette::Release));
    }
    Poke(pDisplay->pActiveSurface, pTarget);
    // The palette is carried over with a font, or not at all.
    if (pTarget && IsFontID(kova_uint8(pDisplay->scActiveFontID))) {
        IDirectFBFont *const pFont = pDisplay->font[pDisplay->scActiveFontID].pFont;
        if (pFont) DFB_CHECK(Call(pTarget, &IDirectFBSurface::SetFont, pFont));
        if (pSource) {
            IDirectFBPalette *pPalette = nullptr;
            DFB_CHECK(Call(pTarget, &IDirectFBSurface::GetPalette, &pPalette));
            if (pPalette) {
                DFB_CHECK(Call(pPalette, &IDirectFBPalette::SetEntries, colors, MAX_PALETTE_COLOR, 0));
                DFB_CHECK(Call(pPalette, &IDirectFBPalette::Release));
            }
        }
    }
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

int BlitBackupSurface(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect,
                      kova_uint32 uiDstX, kova_uint32 uiDstY)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    if (!pRect) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    // A copy between surfaces requires a selected font; callers know the message, so it stays.
    if (!IsFontID(kova_uint8(Peek(pDisplay->scActiveFontID)))) {
        return TEXTDISP_ERROR("Only can support max 8 fonts!"), -1;
    }
    if (!Peek(pDisplay->pBaseSurface)) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!Peek(pDisplay->pBackupSurface)) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsShown(pDisplay)) return TEXTDISP_EXIT(), 0;
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    const DFBRectangle source = {int(pRect->uiX), int(pRect->uiY), int(pRect->uiWidth), int(pRect->uiHeight)};
    MeasureBackupSurface(pDisplay);
    DFB_CHECK(Call(pDisplay->pBaseSurface, &IDirectFBSurface::Blit, pDisplay->pBackupSurface, &source, uiDstX,
                   uiDstY));
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

} // namespace textdisp
