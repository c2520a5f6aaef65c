// SPDX-License-Identifier: MIT
#include "operations.h"
#include "platform/platform.h"

namespace textdisp
{

// A font opened again is slanted or not; its other attributes are dropped.
static DFBFontAttributes SlantOnly(KovaTextFontAttr_e eAttr)
{
    return eAttr & KOVA_FONTATTR_ITALIC ? ItalicAttribute() : DFFA_NONE;
}

// The font of a slot, opened from its old name into the same slot; the old font is released already. False
// leaves the slot empty.
static bool Reopen(KovaDFBDisplay_t *pDisplay, kova_sint32 siFontNumb, const DFBFontDescription &desc,
                   KovaTextFontAttr_e eAttr) HOLDS_DISPLAY
{
    KovaDFBFont_t &font = pDisplay->font[siFontNumb];
    char *const pcFontName = font.pcFontName;

    font = {};
    DFB_CHECK(Call(pDisplay->pDfb, &IDirectFB::CreateFont, pcFontName, &desc, &font.pFont));
    if (!font.pFont) return false;
    font.pcFontName = pcFontName;
    font.ucWidth = desc.flags & DFDESC_WIDTH ? kova_uint32(desc.width) : 0;
    font.eAttr = eAttr;
    font.ucHeight = kova_uint32(desc.height);
    DFB_CHECK(EnumerateEncodings(pDisplay, siFontNumb));
    return true;
}

// The encoding is left alone: drawing sets it.
static void Attach(KovaDFBDisplay_t *pDisplay, kova_sint32 siFontNumb) HOLDS_DISPLAY
{
    DFB_CHECK(Call(pDisplay->pActiveSurface, &IDirectFBSurface::SetFont, pDisplay->font[siFontNumb].pFont));
    Poke(pDisplay->scActiveFontID, siFontNumb);
}

int SetFontInternal(pKovaITextDisplay_t pThiz, kova_sint32 siFontNumb, kova_uint32 ucHeight,
                    KovaTextFontAttr_e eFontAttr)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);
    KovaDFBFont_t &font = pDisplay->font[siFontNumb];

    if (font.ucHeight != ucHeight || font.eAttr != eFontAttr) {
        DFBFontDescription desc = {};
        desc.flags = DFBFontDescriptionFlags(DFDESC_ATTRIBUTES | DFDESC_HEIGHT);
        desc.attributes = SlantOnly(eFontAttr);
        desc.height = int(ucHeight);
        ReleaseAndClear(font.pFont);
        if (!Reopen(pDisplay, siFontNumb, desc, eFontAttr)) return 0;
    }
    if (font.pFont) Attach(pDisplay, siFontNumb);
    return 0;
}

int SetFont(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 siFontNumb, kova_uint32 ucHeight,
            KovaTextFontAttr_e eFontAttr)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    Lock(pDisplay);
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), Unlock(pDisplay), -1;
    if (!IsFontID(siFontNumb)) return TEXTDISP_ERROR("Only can support max 8 fonts!"), Unlock(pDisplay), -1;
    if (!pDisplay->font[siFontNumb].pFont) return TEXTDISP_ERROR("Invalid Font id!"), Unlock(pDisplay), -1;
    if (ucHeight == 0) return TEXTDISP_ERROR("Height should be bigger than 0!\n"), Unlock(pDisplay), -1;
    TEXTDISP_ENTER_WITH("FontNumb:%ld height:%ld", Long(siFontNumb), Long(ucHeight));
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    SetFontInternal(pThiz, siFontNumb, ucHeight, eFontAttr);
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

int GetFontHeight(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 *pHeight)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    // cppcheck-suppress nullPointerRedundantCheck ; the null test comes too late to help, and is known to
    TEXTDISP_ENTER_WITH("input pHeight:%ld", Long(*pHeight));
    // cppcheck-suppress nullPointerRedundantCheck
    *pHeight = 0; // before every check
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    Lock(pDisplay);
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), Unlock(pDisplay), -1;
    const auto ucFont = kova_uint8(pDisplay->scActiveFontID);
    if (!IsFontID(ucFont)) return TEXTDISP_ERROR("Only can support max 8 fonts!"), Unlock(pDisplay), -1;
    IDirectFBFont *const pFont = pDisplay->font[ucFont].pFont;
    if (!pFont) return TEXTDISP_ERROR("NULL POINTER!"), Unlock(pDisplay), -1;
    if (!pHeight) return TEXTDISP_ERROR("NULL Pointer!"), Unlock(pDisplay), -1;
    if (IsShown(pDisplay)) {
        if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
        DFB_CHECK(Call(pFont, &IDirectFBFont::GetHeight, pHeight));
    }
    return Unlock(pDisplay), TEXTDISP_TRACE_WITH("", "return height:%ld", Long(*pHeight)), TEXTDISP_EXIT(), 0;
}

// The second argument, whether to scale, is not looked at: every call applies its factor.
int ScaleFontWidth(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_bool, kova_uint32 scaleFactor)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    Lock(pDisplay);
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), Unlock(pDisplay), -1;
    const auto ucFont = kova_uint8(pDisplay->scActiveFontID);
    if (!IsFontID(ucFont)) return TEXTDISP_ERROR("Only can support max 8 fonts!"), Unlock(pDisplay), -1;
    KovaDFBFont_t &font = pDisplay->font[ucFont];
    if (!font.pFont) return TEXTDISP_ERROR("Invalid Font id!"), Unlock(pDisplay), -1;
    TEXTDISP_ENTER();
    if (!IsShown(pDisplay)) return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    const auto ucHeight = kova_uint8(font.ucHeight); // a byte here: a height of 300 becomes 44
    const kova_uint32 uiWidth = scaleFactor * ucHeight >> 16;
    if (uiWidth != font.ucWidth) {
        DFBFontDescription desc = {};
        desc.flags = DFBFontDescriptionFlags(DFDESC_ATTRIBUTES | DFDESC_HEIGHT | DFDESC_WIDTH);
        desc.attributes = SlantOnly(font.eAttr);
        desc.height = ucHeight;
        desc.width = int(uiWidth);
        DFB_CHECK(ReleaseAndClear(font.pFont));
        if (Reopen(pDisplay, ucFont, desc, font.eAttr)) Attach(pDisplay, ucFont);
    }
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

// Always of the active font; the font named in the arguments is not looked at.
int GetUnderlineInfo(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32, kova_uint32, kova_uint32,
                     kova_sint32 *psiPos, kova_sint32 *psiThick)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    Lock(pDisplay);
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), Unlock(pDisplay), -1;
    if (!psiPos) return TEXTDISP_ERROR("NULL Pointer!"), Unlock(pDisplay), -1;
    if (!psiThick) return TEXTDISP_ERROR("NULL Pointer!"), Unlock(pDisplay), -1;
    const auto ucFont = kova_uint8(pDisplay->scActiveFontID);
    if (!IsFontID(ucFont)) return TEXTDISP_ERROR("Only can support max 8 fonts!"), Unlock(pDisplay), -1;
    IDirectFBFont *const pFont = pDisplay->font[ucFont].pFont;
    if (!pFont) return TEXTDISP_ERROR("NULL POINTER!"), Unlock(pDisplay), -1;
    if (!IsShown(pDisplay)) return Unlock(pDisplay), 0; // and no exit trace
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    DFB_CHECK(Call(pFont, &IDirectFBFont::GetUnderline, psiPos, psiThick));
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

} // namespace textdisp
