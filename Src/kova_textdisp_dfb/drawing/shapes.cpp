// SPDX-License-Identifier: MIT
#include "color.h"
#include "operations.h"

namespace textdisp
{

// Inline: the smallest fills cost little more than the calls on the way to them.
static inline __attribute__((always_inline)) void Fill(KovaDFBDisplay_t *pDisplay,
                                                       const KovaTextRect_t *pRect,
                                                       kova_uint32 color) HOLDS_DISPLAY
{
    SelectColor(pDisplay, color);
    DFB_CHECK(Call(pDisplay->pActiveSurface, &IDirectFBSurface::FillRectangle, pRect->uiX, pRect->uiY,
                   pRect->uiWidth, pRect->uiHeight));
    pDisplay->blast_frame_changed = 1;
}

int FillRectInternal(pKovaITextDisplay_t pThiz, kova_sint8, const KovaTextRect_t *pRect, kova_uint32 color)
{
    return Fill(Record(pThiz), pRect, color), 0;
}

int FillRect(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect, kova_uint32 color)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    if (pRect) {
        TEXTDISP_ENTER_WITH("(%ldx%ld)--(%ldx%ld)", Long(pRect->uiX), Long(pRect->uiY),
                            Long(pRect->uiX + pRect->uiWidth), Long(pRect->uiY + pRect->uiHeight));
    } else {
        TEXTDISP_ENTER_TEXT("pRect:NULL");
    }
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    // Before the rectangle: a null one is no error while the display is hidden.
    if (!IsShown(pDisplay)) return TEXTDISP_EXIT(), 0;
    if (!pRect) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    Fill(pDisplay, pRect, color);
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0; // the caller flips
}

int DrawLine(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 x1, kova_sint32 y1,
             kova_sint32 x2, kova_sint32 y2, kova_uint32 color)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    Lock(pDisplay);
    if (IsShown(pDisplay)) { // any context may draw a line, the active one or not
        SelectColor(pDisplay, color);
        DFB_CHECK(Call(pDisplay->pActiveSurface, &IDirectFBSurface::DrawLine, x1, y1, x2, y2));
        pDisplay->blast_frame_changed = 1;
        FilpInternal(pThiz);
    }
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

} // namespace textdisp
