// SPDX-License-Identifier: MIT
// The state for later drawing. Except for the clip it is in the active surface alone, and is not carried over when
// another surface becomes the active one.
#include "color.h"
#include "operations.h"

namespace textdisp
{

int SetClip(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect)
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
    if (!IsShown(pDisplay)) return TEXTDISP_EXIT(), 0;
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    if (pRect) {
        Poke(pDisplay->clip.x1, pRect->uiX);
        Poke(pDisplay->clip.y1, pRect->uiY);
        Poke(pDisplay->clip.x2, pRect->uiX + pRect->uiWidth - 1);
        Poke(pDisplay->clip.y2, pRect->uiY + pRect->uiHeight - 1);
        TEXTDISP_TRACE("Set Clip Area: x:0x%x,y:0x%x,width:0x%x,height:0x%x\n", pRect->uiX, pRect->uiY,
                       pRect->uiWidth, pRect->uiHeight);
        DFB_CHECK(Call(pDisplay->pActiveSurface, &IDirectFBSurface::SetClip, &pDisplay->clip));
    } else {
        // The record keeps its clip, so DrawPixel goes on clipping to the last rectangle given.
        DFB_CHECK(Call(pDisplay->pActiveSurface, &IDirectFBSurface::SetClip, nullptr));
    }
    pDisplay->blast_frame_changed = 1;
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

int SetDstColorKey(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 color)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER_WITH("color:0x%08lx", (unsigned long)color);
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    if (!IsShown(pDisplay)) return TEXTDISP_EXIT(), 0;
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    TEXTDISP_TRACE("Set Dst Color Key to 0x%x\n", color);
    IDirectFBSurface *const pSurface = pDisplay->pActiveSurface;
    if (IsIndexed(pDisplay)) {
        DFB_CHECK(Call(pSurface, &IDirectFBSurface::SetDstColorKeyIndex, color));
    } else {
        const KovaTextColor_t c =
            Peek(pDisplay->bColor32) ? UnpackColor(color) : PaletteColor(pDisplay, color);

        DFB_CHECK(Call(pSurface, &IDirectFBSurface::SetDstColorKey, c.r, c.g, c.b));
    }
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

int SetDrawingFlags(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, KovaTextDrawFlag_e eFlag)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    if (!IsShown(pDisplay)) return TEXTDISP_EXIT(), 0;
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    const auto eFlags = eFlag & KOVA_DSDRAW_DST_COLORKEY ? DSDRAW_DST_COLORKEY : DSDRAW_NOFX;
    TEXTDISP_TRACE("Set Drawing Flag to 0x%x\n", unsigned(eFlags));
    DFB_CHECK(Call(pDisplay->pActiveSurface, &IDirectFBSurface::SetDrawingFlags, eFlags));
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

int SetBlittingFlags(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, KovaTextBlitFlag_e eFlag)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    if (!IsShown(pDisplay)) return TEXTDISP_EXIT(), 0;
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    // The two flags have DirectFB's own values.
    const auto eFlags =
        DFBSurfaceBlittingFlags(eFlag & (KOVA_DSBLIT_SRC_COLORKEY | KOVA_DSBLIT_DST_COLORKEY));
    TEXTDISP_TRACE("Set Blitting Flag to 0x%x\n", unsigned(eFlags));
    DFB_CHECK(Call(pDisplay->pActiveSurface, &IDirectFBSurface::SetBlittingFlags, eFlags));
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

static_assert(int(KOVA_DSBLIT_SRC_COLORKEY) == int(DSBLIT_SRC_COLORKEY), "passed on unchanged");
static_assert(int(KOVA_DSBLIT_DST_COLORKEY) == int(DSBLIT_DST_COLORKEY), "passed on unchanged");

} // namespace textdisp
