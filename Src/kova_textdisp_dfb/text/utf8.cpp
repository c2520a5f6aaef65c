// SPDX-License-Identifier: MIT
#include "operations.h"

#include <string.h>

namespace textdisp
{

static inline unsigned Encode2(unsigned uiUnit, kova_uint8 *pucOut)
{
    pucOut[0] = kova_uint8(0xC0 | uiUnit >> 6);
    pucOut[1] = kova_uint8(0x80 | (uiUnit & 0x3F));
    return 2;
}

static inline unsigned Encode3(unsigned uiUnit, kova_uint8 *pucOut)
{
    pucOut[0] = kova_uint8(0xE0 | uiUnit >> 12);
    pucOut[1] = kova_uint8(0x80 | (uiUnit >> 6 & 0x3F));
    pucOut[2] = kova_uint8(0x80 | (uiUnit & 0x3F));
    return 3;
}

// One unit, at a place with three bytes of room; how many it took.
static unsigned Encode(unsigned uiUnit, kova_uint8 *pucOut)
{
    if (uiUnit >= 0x800) return Encode3(uiUnit, pucOut);
    if (uiUnit >= 0x80) return Encode2(uiUnit, pucOut);
    return pucOut[0] = kova_uint8(uiUnit), 1;
}

// Converts four units at once; false if one of them is not ASCII. It works on machines of either endianness.
static inline bool EncodeFourOfAscii(const unsigned short *pusUnits, kova_uint8 *pucOut)
{
    uint64_t uiUnits;

    memcpy(&uiUnits, pusUnits, sizeof uiUnits);
    if (uiUnits & 0xFF80FF80FF80FF80) return false;
    uiUnits = (uiUnits | uiUnits >> 8) & 0x0000FFFF0000FFFF;
    const auto uiBytes = uint32_t(uiUnits | uiUnits >> 16);
    memcpy(pucOut, &uiBytes, sizeof uiBytes);
    return true;
}

// Each unit stands for itself: half a surrogate pair becomes three bytes of its own, a NUL a byte of 0.
void ConvertUnicode2UTF8(const unsigned short *pusStrUni, kova_uint8 ucBytes, char *pcStrUTF8,
                         kova_uint32 uiRoom, kova_uint32 *puiBytes)
{
    if (!pusStrUni) return TEXTDISP_ERROR("NULL Pointer!");
    auto *const pucStart = reinterpret_cast<kova_uint8 *>(pcStrUTF8);
    const kova_uint8 *const pucEnd = pucStart + uiRoom;
    const unsigned short *const pusEnd = pusStrUni + ucBytes;
    kova_uint8 *pucOut = pucStart;

    // Where the longest text fits no unit need ask for room.
    while (uiRoom >= 3u * ucBytes && pusStrUni != pusEnd) {
        const unsigned uiUnit = *pusStrUni;
        if (uiUnit >= 0x80) {
            pusStrUni++;
            pucOut += uiUnit < 0x800 ? Encode2(uiUnit, pucOut) : Encode3(uiUnit, pucOut);
        } else if (pusEnd - pusStrUni >= 4 && EncodeFourOfAscii(pusStrUni, pucOut)) {
            pusStrUni += 4, pucOut += 4;
        } else {
            pusStrUni++;
            *pucOut++ = kova_uint8(uiUnit);
        }
    }
    // What is left may not fit: it ends before the first character that does not.
    for (; pusStrUni != pusEnd; pusStrUni++) {
        kova_uint8 aucUnit[3];
        const unsigned uiLength = Encode(*pusStrUni, aucUnit);
        if (size_t(pucEnd - pucOut) < uiLength) break;
        memcpy(pucOut, aucUnit, uiLength);
        pucOut += uiLength;
    }
    *puiBytes = kova_uint32(pucOut - pucStart);
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
