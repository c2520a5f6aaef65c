#include "expand.h"

#include <string.h>

namespace textdisp
{

// What a few bits look like: all ones or all zeros over each of their pixels. Pixels lie as in memory, so
// that a machine of either endianness may take a block of them.
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

// Bits become pixels a block at a time: eight bytes of indexes, sixteen of ARGB.
template <typename Pixel, int iFactor> class Expander_t
{
public:
    enum {
        BLOCK = sizeof(Pixel) == 1 ? 8 : 16,
        BITS = BLOCK / int(sizeof(Pixel)) / iFactor,
        BYTES_A_BIT = BLOCK / BITS
    };

    Expander_t(kova_sint32 siFgColor, kova_sint32 siBgColor)
    {
        Pixel background[BLOCK / sizeof(Pixel)], difference[BLOCK / sizeof(Pixel)];

        for (Pixel &pixel : background) pixel = Pixel(siBgColor);
        for (Pixel &pixel : difference) pixel = Pixel(siFgColor ^ siBgColor);
        memcpy(&m_background, background, BLOCK);
        memcpy(&m_difference, difference, BLOCK);
    }

    // A row of BITS bits or more. Its last block ends where the row ends, and overlaps the one before it
    // where it must.
    void Write(uint64_t uiBits, int iWidth, kova_uint8 *pucTo) const
    {
        const int iLast = iWidth - BITS;

        for (int iBit = 0; iBit < iLast; iBit += BITS) WriteBlock(uiBits << iBit, pucTo + iBit * BYTES_A_BIT);
        WriteBlock(uiBits << iLast, pucTo + iLast * BYTES_A_BIT);
    }

private:
    typedef uint64_t Block_t __attribute__((vector_size(BLOCK)));
    static constexpr Masks_t<Pixel, BITS, iFactor> s_masks = {};

    void WriteBlock(uint64_t uiBits, kova_uint8 *pucTo) const
    {
        Block_t block;
        memcpy(&block, s_masks.pixels[uiBits >> (64 - BITS)], BLOCK);
        block = m_background ^ (block & m_difference);
        memcpy(pucTo, &block, BLOCK);
    }

    Block_t m_background, m_difference;
};

// Rows are short: a loop of words beats the call.
static void CopyRow(kova_uint8 *pucTo, const kova_uint8 *pucFrom, int iBytes)
{
    uint64_t uiWord;
    int i = 0;

    for (; i + 8 <= iBytes; i += 8) {
        memcpy(&uiWord, pucFrom + i, 8);
        memcpy(pucTo + i, &uiWord, 8);
    }
    for (; i < iBytes; i++) pucTo[i] = pucFrom[i];
}

// The first pixel comes to lie in the top bit. No byte is read that holds no pixel of the bitmap, which ends
// at pucEnd.
static uint64_t GatherBits(const kova_uint8 *pucRow, const kova_uint8 *pucEnd, int iBitOffset, int iWidth)
{
    uint64_t uiBits = 0;

    if (pucEnd - pucRow >= 8) {
        for (int i = 0; i < 8; i++) uiBits = uiBits << 8 | pucRow[i];
        return uiBits << iBitOffset;
    }
    const int iBytes = (iBitOffset + iWidth + 7) / 8;
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

template <typename Pixel, int iFactor>
static void ExpandGlyph(const Target_t &target, const kova_uint8 *pucData, const MonoGlyph_t &glyph)
{
    typedef Expander_t<Pixel, iFactor> Expander;
    const Expander expander(glyph.siFgColor, glyph.siBgColor);
    const int64_t iLeft = Larger(glyph.siX, target.clip.x1);
    const int64_t iWidth = int64_t(glyph.siWidth) * iFactor;
    const int64_t iRight = Smaller(glyph.siX + iWidth - 1, target.clip.x2);
    const auto uiOffset = kova_uint32(glyph.siBitOffset);

    if (iLeft > iRight || glyph.siHeight <= 0) return;
    const kova_uint8 *pucRow = pucData + uiOffset / 8;
    const kova_uint8 *const pucEnd = pucRow + ptrdiff_t(glyph.siHeight - 1) * glyph.siRowByte +
                                     (uiOffset % 8 + kova_uint32(glyph.siWidth) + 7) / 8;
    const int iBytes = int(iRight - iLeft + 1) * int(sizeof(Pixel));
    const bool bWhole = iRight - iLeft + 1 == iWidth && glyph.siWidth >= Expander::BITS;
    kova_uint8 *const pucColumn = target.pucData + iLeft * int64_t(sizeof(Pixel));
    // Where a row is made that is too narrow for a block, or cut off by the clip.
    Pixel aside[MAX_GLYPH_SIZE * iFactor];

    for (int64_t iRow = 0; iRow < glyph.siHeight; iRow++, pucRow += glyph.siRowByte) {
        const int64_t iY = glyph.siY + iRow * glyph.siVertical;
        const int64_t iTop = Larger(iY, target.clip.y1);
        const int64_t iBottom = Smaller(iY + glyph.siVertical - 1, target.clip.y2);
        if (iTop > iBottom) continue;
        const uint64_t uiBits = GatherBits(pucRow, pucEnd, int(uiOffset % 8), glyph.siWidth);
        kova_uint8 *pucTo = pucColumn + ptrdiff_t(iTop) * target.iPitch;
        const kova_uint8 *pucFrom = pucTo;
        int64_t iY2 = iTop;
        if (bWhole) {
            expander.Write(uiBits, glyph.siWidth, pucTo);
            iY2++, pucTo += target.iPitch;
        } else {
            const int iRounded = (glyph.siWidth + Expander::BITS - 1) / Expander::BITS * Expander::BITS;
            expander.Write(uiBits, iRounded, reinterpret_cast<kova_uint8 *>(aside));
            pucFrom = reinterpret_cast<kova_uint8 *>(aside + (iLeft - glyph.siX));
        }
        for (; iY2 <= iBottom; iY2++, pucTo += target.iPitch) CopyRow(pucTo, pucFrom, iBytes);
    }
}

template <typename Pixel>
static void ExpandByFactor(const Target_t &target, const kova_uint8 *pucData, const MonoGlyph_t &glyph)
{
    if (glyph.siHorizontal == 1) {
        ExpandGlyph<Pixel, 1>(target, pucData, glyph);
    } else {
        ExpandGlyph<Pixel, 2>(target, pucData, glyph);
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
            ExpandByFactor<kova_uint8>(target, ppucData[i], pGlyphs[i]);
        } else {
            ExpandByFactor<kova_uint32>(target, ppucData[i], pGlyphs[i]);
        }
    }
    return Call(pSurface, &IDirectFBSurface::Unlock);
}

} // namespace textdisp
