#include "operations.h"

#include <string.h>

namespace textdisp
{

// Each unit stands for itself: half a surrogate pair becomes three bytes of its own, a NUL a byte of 0.
void ConvertUnicode2UTF8(const unsigned short *pusStrUni, kova_uint8 ucBytes, char *pcStrUTF8,
                         kova_uint32 uiRoom, kova_uint32 *puiBytes)
{
    if (!pusStrUni) return TEXTDISP_ERROR("NULL Pointer!");
    auto *const pucOut = reinterpret_cast<kova_uint8 *>(pcStrUTF8);
    kova_uint32 uiBytes = 0;

    for (int i = 0; i < ucBytes; i++) {
        const unsigned uiUnit = pusStrUni[i];
        const kova_uint32 uiLength = uiUnit < 0x80 ? 1 : uiUnit < 0x800 ? 2 : 3;
        if (uiRoom - uiBytes < uiLength) break;
        kova_uint8 *const pucUnit = pucOut + uiBytes;
        if (uiLength == 1) {
            pucUnit[0] = kova_uint8(uiUnit);
        } else if (uiLength == 2) {
            pucUnit[0] = kova_uint8(0xC0 | uiUnit >> 6);
            pucUnit[1] = kova_uint8(0x80 | (uiUnit & 0x3F));
        } else {
            pucUnit[0] = kova_uint8(0xE0 | uiUnit >> 12);
            pucUnit[1] = kova_uint8(0x80 | (uiUnit >> 6 & 0x3F));
            pucUnit[2] = kova_uint8(0x80 | (uiUnit & 0x3F));
        }
        uiBytes += uiLength;
    }
    *puiBytes = uiBytes;
}

kova_uint32 ToUTF8(const unsigned short *pusStr, kova_uint8 ucBytes, KovaTextEncoding_e eEncoding,
                   char *pcStrUTF8, kova_uint32 uiRoom)
{
    kova_uint32 uiBytes = 0; // and so it stays for ASCII, which therefore draws nothing

    if (eEncoding == KOVA_TEXT_UNICODE) {
        ConvertUnicode2UTF8(pusStr, ucBytes >> 1, pcStrUTF8, uiRoom, &uiBytes);
    } else if (eEncoding == KOVA_TEXT_UTF8 && pusStr) {
        memcpy(pcStrUTF8, pusStr, ucBytes);
        uiBytes = ucBytes;
    }
    return uiBytes;
}

int GetStringWidth(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const unsigned short *pusStr,
                   kova_uint8 ucBytes, KovaTextEncoding_e eEncoding, kova_uint32 *puiWidth)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);
    char acUTF8[256] = {};

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    Lock(pDisplay);
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), Unlock(pDisplay), -1;
    if (!IsShown(pDisplay)) return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
    if (!pusStr) return TEXTDISP_ERROR("NULL Pointer!"), Unlock(pDisplay), -1;
    if (!puiWidth) return TEXTDISP_ERROR("NULL Pointer!"), Unlock(pDisplay), -1;
    const auto ucFont = kova_uint8(pDisplay->scActiveFontID);
    if (!IsFontID(ucFont)) return TEXTDISP_ERROR("Only can support max 8 fonts!"), Unlock(pDisplay), -1;
    const KovaDFBFont_t &font = pDisplay->font[ucFont];
    if (!font.pFont) return TEXTDISP_ERROR("NULL POINTER!"), Unlock(pDisplay), -1;
    const kova_uint32 uiBytes = ToUTF8(pusStr, ucBytes, eEncoding, acUTF8, sizeof acUTF8);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    DFB_CHECK(Call(font.pFont, &IDirectFBFont::SetEncoding, font.ucUTF8Index));
    int iWidth = 0;
    DFB_CHECK(Call(font.pFont, &IDirectFBFont::GetStringWidth, acUTF8, uiBytes, &iWidth));
    *puiWidth = kova_uint32(iWidth);
    return Unlock(pDisplay), TEXTDISP_EXIT_WITH("return width:%ld", Long(iWidth)), 0;
}

} // namespace textdisp
