#include "expand.h"

#include <string.h>

namespace textdisp
{

// What one bit after the other becomes: all ones or all zeros over a whole pixel. Kept as bytes in the order
// of memory, so that a machine of either endianness may take a word of them.
template <typename Pixel, int iBits, int iFactor> struct Masks_t {
    Pixel pixels[1 << iBits][iBits * iFactor];

    constexpr Masks_t() : pixels()
    {
        for (int iCode = 0; iCode < 1 << iBits; iCode++) {
            for (int i = 0; i < iBits * iFactor; i++) {
                const bool bSet = iCode >> (iBits - 1 - i / iFactor) & 1;
                pixels[iCode][i] = bSet ? Pixel(~Pixel(0)) : Pixel(0);
            }
        }
    }
};

// Eight bytes of pixels at a time: eight or four bits to a word of indexes, two or one to a word of ARGB.
template <typename Pixel, int iFactor>
static void ExpandBits(uint64_t uiBits, int iWidth, Pixel fg, Pixel bg, void *pRow)
{
    constexpr int iBits = int(sizeof(uint64_t) / sizeof(Pixel)) / iFactor;
    static constexpr Masks_t<Pixel, iBits, iFactor> masks;
    constexpr uint64_t uiRepeat = sizeof(Pixel) == 1 ? 0x0101010101010101u : 0x0000000100000001u;
    const uint64_t uiBackground = bg * uiRepeat;
    const uint64_t uiDifference = Pixel(fg ^ bg) * uiRepeat;
    auto *pucRow = static_cast<kova_uint8 *>(pRow);

    for (int i = 0; i < iWidth; i += iBits, uiBits <<= iBits, pucRow += sizeof(uint64_t)) {
        uint64_t uiWord;
        memcpy(&uiWord, masks.pixels[uiBits >> (64 - iBits)], sizeof uiWord);
        uiWord = uiBackground ^ (uiWord & uiDifference);
        memcpy(pucRow, &uiWord, sizeof uiWord);
    }
}

// The first pixel comes to lie in the top bit. No byte is read that holds no pixel of the row.
static uint64_t GatherBits(const kova_uint8 *pucRow, int iBitOffset, int iWidth)
{
    const int iBytes = (iBitOffset + iWidth + 7) / 8;
    uint64_t uiBits = 0;

    for (int i = 0; i < iBytes; i++) uiBits = uiBits << 8 | pucRow[i];
    return uiBits << (64 - 8 * iBytes + iBitOffset);
}

struct Target_t {
    kova_uint8 *pucData;
    int iPitch;
    DFBRegion clip; // inclusive, inside the surface
};

static int64_t Larger(int64_t a, int64_t b)
{
    return a > b ? a : b;
}

static int64_t Smaller(int64_t a, int64_t b)
{
    return a < b ? a : b;
}

template <typename Pixel>
static void ExpandGlyph(const Target_t &target, const kova_uint8 *pucData, const MonoGlyph_t &glyph)
{
    // A row at its widest, and the part of a word by which the last one may overshoot.
    Pixel row[size_t(MAX_GLYPH_SIZE) * 2 + sizeof(uint64_t)];
    const int64_t iLeft = Larger(glyph.siX, target.clip.x1);
    const int64_t iRight =
        Smaller(glyph.siX + int64_t(glyph.siWidth) * glyph.siHorizontal - 1, target.clip.x2);
    const auto uiOffset = kova_uint32(glyph.siBitOffset);

    if (iLeft > iRight) return;
    const size_t uiBytes = size_t(iRight - iLeft + 1) * sizeof(Pixel);
    for (int iRow = 0; iRow < glyph.siHeight; iRow++) {
        const int64_t iY = glyph.siY + int64_t(iRow) * glyph.siVertical;
        const int64_t iTop = Larger(iY, target.clip.y1);
        const int64_t iBottom = Smaller(iY + glyph.siVertical - 1, target.clip.y2);
        if (iTop > iBottom) continue;
        const kova_uint8 *const pucRow = pucData + ptrdiff_t(iRow) * glyph.siRowByte + uiOffset / 8;
        const uint64_t uiBits = GatherBits(pucRow, int(uiOffset % 8), glyph.siWidth);
        if (glyph.siHorizontal == 1) {
            ExpandBits<Pixel, 1>(uiBits, glyph.siWidth, Pixel(glyph.siFgColor), Pixel(glyph.siBgColor), row);
        } else {
            ExpandBits<Pixel, 2>(uiBits, glyph.siWidth, Pixel(glyph.siFgColor), Pixel(glyph.siBgColor), row);
        }
        for (int64_t i = iTop; i <= iBottom; i++) {
            memcpy(target.pucData + ptrdiff_t(i) * target.iPitch + iLeft * int64_t(sizeof(Pixel)),
                   row + (iLeft - glyph.siX), uiBytes);
        }
    }
}

DFBResult ExpandGlyphs(IDirectFBSurface *pSurface, const kova_uint8 *const *ppucData,
                       const MonoGlyph_t *pGlyphs, int iCount)
{
    DFBSurfacePixelFormat eFormat = DSPF_UNKNOWN;
    int iWidth = 0, iHeight = 0, iPitch = 0;
    DFBRegion clip = {};
    void *pData = nullptr;

    DFBResult eResult = Call(pSurface, &IDirectFBSurface::GetPixelFormat, &eFormat);
    if (eResult == DFB_OK) eResult = Call(pSurface, &IDirectFBSurface::GetSize, &iWidth, &iHeight);
    if (eResult == DFB_OK) eResult = Call(pSurface, &IDirectFBSurface::GetClip, &clip);
    if (eResult == DFB_OK && eFormat != DSPF_LUT8 && eFormat != DSPF_ARGB) eResult = DFB_UNSUPPORTED;
    if (eResult == DFB_OK) eResult = Call(pSurface, &IDirectFBSurface::Lock, DSLF_WRITE, &pData, &iPitch);
    if (eResult != DFB_OK) return eResult;

    const DFBRegion inside = {int(Larger(clip.x1, 0)), int(Larger(clip.y1, 0)),
                              int(Smaller(clip.x2, iWidth - 1)), int(Smaller(clip.y2, iHeight - 1))};
    const Target_t target = {static_cast<kova_uint8 *>(pData), iPitch, inside};
    for (int i = 0; i < iCount; i++) {
        if (eFormat == DSPF_LUT8) {
            ExpandGlyph<kova_uint8>(target, ppucData[i], pGlyphs[i]);
        } else {
            ExpandGlyph<kova_uint32>(target, ppucData[i], pGlyphs[i]);
        }
    }
    return Call(pSurface, &IDirectFBSurface::Unlock);
}

} // namespace textdisp
