// SPDX-License-Identifier: MIT
// A string and its edge: the same string drawn several times, in the edge colour at small offsets and then in
// the text colour. Coordinates are unsigned; an offset that runs below 0 wraps, and DirectFB clips it away.
#include "color.h"
#include "operations.h"

namespace textdisp
{

static void DrawPass(KovaDFBDisplay_t *pDisplay, const char *pcUTF8, kova_uint32 uiBytes, kova_uint32 uiX,
                     kova_uint32 uiY, DFBSurfaceTextFlags eFlags) HOLDS_DISPLAY
{
    DFB_CHECK(
        Call(pDisplay->pActiveSurface, &IDirectFBSurface::DrawString, pcUTF8, uiBytes, uiX, uiY, eFlags));
}

static int DrawTextEdgeStyle(pKovaITextDisplay_t pThiz, const char *ucStrUTF8, kova_uint32 uiStrLen,
                             kova_uint32 uiX, kova_uint32 uiY,
                             DFBSurfaceTextFlags dfb_text_flag) HOLDS_DISPLAY
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);
    kova_uint32 uiTextX = uiX;

    if (!pDisplay->pActiveSurface) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    SelectColor(pDisplay, pDisplay->ucEdgeColorIndex);
    switch (int(pDisplay->eEdge)) {
    case KOVA_TEXT_ERAISED:
        DrawPass(pDisplay, ucStrUTF8, uiStrLen, uiX, uiY - 2, dfb_text_flag);
        uiTextX = uiX + 2;
        break;
    case KOVA_TEXT_EDEPRESSED:
        DrawPass(pDisplay, ucStrUTF8, uiStrLen, uiX, uiY + 1, dfb_text_flag);
        DrawPass(pDisplay, ucStrUTF8, uiStrLen, uiX + 1, uiY + 1, dfb_text_flag);
        break;
    case KOVA_TEXT_ELEFTDROPSHADOW:
        DrawPass(pDisplay, ucStrUTF8, uiStrLen, uiX - 2, uiY + 2, dfb_text_flag);
        break;
    default: // KOVA_TEXT_ERIGTHDROPSHADOW: nothing else comes here
        DrawPass(pDisplay, ucStrUTF8, uiStrLen, uiX + 2, uiY + 2, dfb_text_flag);
        break;
    }
    SelectColor(pDisplay, pDisplay->ucFgColorIndex);
    DrawPass(pDisplay, ucStrUTF8, uiStrLen, uiTextX, uiY, dfb_text_flag);
    SelectColor(pDisplay, pDisplay->ucFgColorIndex); // once more: the surface is left in the text colour
    return 0;
}

// An outline one pixel wide. It starts at the given position, so the text is one pixel further right and down.
static int DrawTextContourStyle(pKovaITextDisplay_t pThiz, const char *ucStrUTF8, kova_uint32 uiStrLen,
                                kova_uint32 uiX, kova_uint32 uiY,
                                DFBSurfaceTextFlags dfb_text_flag) HOLDS_DISPLAY
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    if (!pDisplay->pActiveSurface) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    SelectColor(pDisplay, pDisplay->ucEdgeColorIndex);
    DrawPass(pDisplay, ucStrUTF8, uiStrLen, uiX, uiY + 1, dfb_text_flag);
    DrawPass(pDisplay, ucStrUTF8, uiStrLen, uiX + 2, uiY + 1, dfb_text_flag);
    DrawPass(pDisplay, ucStrUTF8, uiStrLen, uiX + 1, uiY, dfb_text_flag);
    DrawPass(pDisplay, ucStrUTF8, uiStrLen, uiX + 1, uiY + 2, dfb_text_flag);
    SelectColor(pDisplay, pDisplay->ucFgColorIndex);
    DrawPass(pDisplay, ucStrUTF8, uiStrLen, uiX + 1, uiY + 1, dfb_text_flag);
    SelectColor(pDisplay, pDisplay->ucFgColorIndex);
    return 0;
}

// eFlag is for the trace alone: the text always starts at its top left corner.
int DrawString(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const unsigned short *pusStr,
               kova_uint8 ucBytes, kova_uint32 uiX, kova_uint32 uiY, KovaTextEncoding_e eEncoding,
               KovaTextAlignFlag_e eFlag)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);
    char acUTF8[1024] = {};

    TEXTDISP_ENTER_WITH("string len:%d eEncoding:%d, eFlag:%d", ucBytes, int(eEncoding), int(eFlag));
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    Lock(pDisplay);
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), Unlock(pDisplay), -1;
    if (!IsShown(pDisplay)) return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
    if (!pDisplay->pActiveSurface) return TEXTDISP_ERROR("NULL Pointer!"), Unlock(pDisplay), -1;
    const auto ucFont = kova_uint8(pDisplay->scActiveFontID);
    if (!IsFontID(ucFont)) return TEXTDISP_ERROR("Only can support max 8 fonts!"), Unlock(pDisplay), -1;
    const KovaDFBFont_t &font = pDisplay->font[ucFont];
    if (!font.pFont) return TEXTDISP_ERROR("NULL POINTER!"), Unlock(pDisplay), -1;
    const kova_uint32 uiBytes = ToUTF8(pusStr, ucBytes, eEncoding, acUTF8, sizeof acUTF8);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    DFB_CHECK(Call(font.pFont, &IDirectFBFont::SetEncoding, font.ucUTF8Index));
    SelectColor(pDisplay, pDisplay->ucFgColorIndex);
    switch (int(pDisplay->eEdge)) {
    case KOVA_TEXT_ENONE:
    case KOVA_TEXT_EMAX:
        DrawPass(pDisplay, acUTF8, uiBytes, uiX, uiY, DSTF_TOPLEFT);
        break;
    case KOVA_TEXT_ERAISED:
    case KOVA_TEXT_EDEPRESSED:
    case KOVA_TEXT_ELEFTDROPSHADOW:
    case KOVA_TEXT_ERIGTHDROPSHADOW:
        DrawTextEdgeStyle(pThiz, acUTF8, uiBytes, uiX, uiY, DSTF_TOPLEFT);
        break;
    case KOVA_TEXT_EUNIFORM:
        DrawTextContourStyle(pThiz, acUTF8, uiBytes, uiX, uiY, DSTF_TOPLEFT);
        break;
    default: // nothing is drawn, and the flip is made all the same
        TEXTDISP_ERROR_WITH("invalid etype:%d\n", int(pDisplay->eEdge));
        break;
    }
    FilpInternal(pThiz);
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

} // namespace textdisp
