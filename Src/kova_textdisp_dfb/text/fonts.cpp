// SPDX-License-Identifier: MIT
// Eight font slots, and eight rows of names that outlive them: a font that is opened again finds its row by its name.
#include "operations.h"

#include <string.h>

namespace textdisp
{

// What encoding_callback fills, during one enumeration.
typedef struct KovaDFBTextEncodingCallbackInfo_tag {
    KovaDFBDisplay_t *pDisplay;
    kova_sint32 siFontNumb;
    kova_uint8 ucCurrentEncoding; // stored so far
} KovaDFBTextEncodingCallbackInfo_t;

static DFBEnumerationResult encoding_callback(DFBTextEncodingID id, const char *name, void *context)
{
    auto *const pInfo = static_cast<KovaDFBTextEncodingCallbackInfo_t *>(context);

    if (!pInfo) return TEXTDISP_ERROR("NULL POINTER!"), DFENUM_CANCEL;
    if (!name) return TEXTDISP_ERROR("NULL POINTER!"), DFENUM_CANCEL;
    if (!pInfo->pDisplay) return TEXTDISP_ERROR("NULL POINTER!"), DFENUM_CANCEL;
    TEXTDISP_TRACE("id:0x%x,encoding:%s\n", unsigned(id), name);
    // The message and the table disagree; neither may change.
    if (pInfo->ucCurrentEncoding >= MAX_ENCODINGS) {
        return TEXTDISP_ERROR("Only can support max 16 encoding!"), DFENUM_CANCEL;
    }
    KovaDFBFont_t &font = pInfo->pDisplay->font[pInfo->siFontNumb];
    font.encoding[pInfo->ucCurrentEncoding] = {id, name};
    // Reset by every further encoding: UTF-8 is kept only when it comes last, and the index is 0, DirectFB's default,
    // otherwise. Strings on sets in the field depend on it.
    font.ucUTF8Index = 0;
    if (strcmp(name, "UTF8") == 0) font.ucUTF8Index = kova_uint8(id);
    pInfo->ucCurrentEncoding++;
    return DFENUM_OK;
}

DFBResult EnumerateEncodings(KovaDFBDisplay_t *pDisplay, kova_sint32 siFontNumb)
{
    KovaDFBTextEncodingCallbackInfo_t info = {pDisplay, siFontNumb, 0};

    return Call(pDisplay->font[siFontNumb].pFont, &IDirectFBFont::EnumEncodings, encoding_callback, &info);
}

// The row for the name: the slot's own if it holds the name, else the first that does, else the first free one.
static char *FindNameRow(KovaDFBDisplay_t *pDisplay, int iSlot, const char *pcFontName) HOLDS_DISPLAY
{
    if (strcmp(pDisplay->FontName[iSlot], pcFontName) == 0) return pDisplay->FontName[iSlot];
    char *pcFree = nullptr;
    for (char(&row)[MAX_FONT_NAME] : pDisplay->FontName) {
        if (strcmp(row, pcFontName) == 0) return row;
        if (row[0] == 0 && !pcFree) pcFree = row;
    }
    return pcFree;
}

static int FindFreeSlot(const KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY
{
    int iSlot = 0;
    while (iSlot < MAX_FONTS && pDisplay->font[iSlot].pFont) iSlot++;
    return iSlot;
}

int CreateFontInternal(pKovaITextDisplay_t pThiz, kova_sint8, const char *pcFontName, kova_uint32 ucHeight,
                       KovaTextFontAttr_e eAttr, kova_sint32 *psiFontNumb)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    if (!pcFontName) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!psiFontNumb) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    DFBFontDescription desc = {};
    desc.flags = DFBFontDescriptionFlags(DFDESC_ATTRIBUTES | DFDESC_HEIGHT);
    // Passed by number: here DirectFB takes italic for "no bitmap strikes", and only SetFont slants the glyphs.
    desc.attributes = DFBFontAttributes(eAttr);
    desc.height = int(ucHeight);

    for (int iSlot = 0; iSlot < MAX_FONTS; iSlot++) {
        KovaDFBFont_t &font = pDisplay->font[iSlot];
        if (!font.pcFontName || strcmp(font.pcFontName, pcFontName) != 0) continue;
        if (font.ucHeight == ucHeight) { // the same font, whatever its attributes
            *psiFontNumb = iSlot;
            font.ucWidth = 0;
            return 0;
        }
        if (font.pFont) DFB_CHECK(ReleaseAndClear(font.pFont));
        font = {};
        break;
    }

    const int iSlot = FindFreeSlot(pDisplay);
    if (iSlot == MAX_FONTS) return TEXTDISP_ERROR("Can only support max 8 fonts!"), -1;
    KovaDFBFont_t &font = pDisplay->font[iSlot];
    DFB_CHECK(Call(pDisplay->pDfb, &IDirectFB::CreateFont, pcFontName, &desc, &font.pFont));
    if (!font.pFont) return TEXTDISP_ERROR("Can only support max 8 fonts!"), -1; // the words of a full table

    // From here on a refusal leaves the font in its slot, which is then in use without a name.
    const size_t uiLength = strlen(pcFontName);
    if (uiLength >= MAX_FONT_NAME) {
        return TEXTDISP_ERROR_RECORD("\n font name too long. We support at most %d characters \n",
                                     MAX_FONT_NAME - 1),
               -1;
    }
    char *const pcRow = FindNameRow(pDisplay, iSlot, pcFontName);
    if (!pcRow) return TEXTDISP_ERROR("Can only support max 8 fonts!"), -1;
    memmove(pcRow, pcFontName, uiLength + 1); // the name may be this very row
    font.pcFontName = pcRow;
    font.eAttr = eAttr;
    font.ucHeight = ucHeight;
    *psiFontNumb = iSlot;
    DFB_CHECK(EnumerateEncodings(pDisplay, iSlot));
    font.ucWidth = 0;
    return 0;
}

int CreateFont(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const char *pcFontName,
               kova_uint32 ucHeight, KovaTextFontAttr_e eAttr, kova_sint32 *psiFontNumb)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    TEXTDISP_ENTER_WITH("height:%ld %s", Long(ucHeight), pcFontName ? pcFontName : "(null)");
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    // A font that cannot be opened is no failure of the call: the caller sees its number left unwritten.
    CreateFontInternal(pThiz, scContextID, pcFontName, ucHeight, eAttr, psiFontNumb);
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

void DropFonts(KovaDFBDisplay_t *pDisplay)
{
    for (KovaDFBFont_t &font : pDisplay->font) {
        if (font.pcFontName) DFB_CHECK(ReleaseAndClear(font.pFont));
    }
    memset(pDisplay->font, 0, sizeof pDisplay->font);
    Poke(pDisplay->scActiveFontID, -1);
}

void RecreateFonts(pKovaITextDisplay_t pThiz, kova_sint8 scContextID)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);
    const kova_sint8 scSelected = pDisplay->scActiveFontID;
    KovaDFBFont_t saved[MAX_FONTS];

    memcpy(saved, pDisplay->font, sizeof saved);
    DropFonts(pDisplay);
    // The names are still valid, because the rows are kept. A gap in the old table closes, so numbers may change.
    for (const KovaDFBFont_t &font : saved) {
        kova_sint32 siFontNumb;
        if (!font.pcFontName) continue;
        CreateFontInternal(pThiz, scContextID, font.pcFontName, font.ucHeight, font.eAttr, &siFontNumb);
    }
    if (scSelected >= 0)
        SetFontInternal(pThiz, scSelected, saved[scSelected].ucHeight, saved[scSelected].eAttr);
}

} // namespace textdisp
