// SPDX-License-Identifier: MIT
// How the next strings are drawn. The values are kept as they come; drawing makes sense of them.
#include "operations.h"

namespace textdisp
{

int SetTextForeColor(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 color)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER_WITH("color:%ld", Long(color));
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    if (!IsShown(pDisplay)) return TEXTDISP_EXIT(), 0;
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    pDisplay->ucFgColorIndex = color;
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

// Unlike the other two it asks for a selected font, and locks before it looks.
int SetEdgeColor(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 color)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    Lock(pDisplay);
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), Unlock(pDisplay), -1;
    const auto ucFont = kova_uint8(pDisplay->scActiveFontID);
    if (!IsFontID(ucFont)) return TEXTDISP_ERROR("Only can support max 8 fonts!"), Unlock(pDisplay), -1;
    if (!pDisplay->font[ucFont].pFont) return TEXTDISP_ERROR("NULL POINTER!"), Unlock(pDisplay), -1;
    if (!IsShown(pDisplay)) return Unlock(pDisplay), 0; // and no exit trace
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    pDisplay->ucEdgeColorIndex = color;
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

// Any value is kept; DrawString reports the ones it does not know.
int SetEdgeType(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, KovaTextEdgeType_e eEdge)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    if (!IsShown(pDisplay)) return TEXTDISP_EXIT(), 0;
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    pDisplay->eEdge = eEdge;
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

} // namespace textdisp
