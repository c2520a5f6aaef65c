// SPDX-License-Identifier: MIT
#include "expand.h"

#include <string.h>

namespace textdisp
{

// What eight bits look like, a byte a pixel: all ones or all zeros.
struct Masks_t {
    kova_uint8 bytes[256][8];

    constexpr Masks_t() : bytes()
    {
        for (int iCode = 0; iCode < 256; iCode++) {
            for (int i = 0; i < 8; i++) bytes[iCode][i] = iCode >> (7 - i) & 1 ? 0xFF : 0;
        }
    }
};
static constexpr Masks_t s_masks = {};

// Bits become pixels a block at a time, in a glyph's two colours. An ink gives the block of so many bits, and
// is small enough to pass by value; its inker keeps what the colours alone decide. The pixels of a block lie
// as in memory, so that a machine of either endianness may write all of them at once.

// Pixels of one byte, eight at a time.
struct ByteInk_t {
    enum { BITS = 8, BYTES = 8 };

    uint64_t Block(unsigned uiCode) const
    {
        uint64_t uiMask;
        memcpy(&uiMask, s_masks.bytes[uiCode], BYTES);
        return uiBackground ^ (uiMask & uiDifference);
    }

    uint64_t uiBackground, uiDifference;
};

struct ByteInker_t {
    ByteInk_t Ink(kova_sint32 siFgColor, kova_sint32 siBgColor)
    {
        const uint64_t uiOnes = UINT64_MAX / 0xFF; // a one in every byte
        return {uiOnes * kova_uint8(siBgColor), uiOnes * kova_uint8(siFgColor ^ siBgColor)};
    }
};

// Larger pixels, four bits at a time: a table of what they look like.
template <typename Pixel, int iFactor> struct TableInk_t {
    enum { BITS = 4, BYTES = BITS * iFactor * int(sizeof(Pixel)) };
    struct Block_t {
        Pixel pixels[BITS * iFactor];
    };

    const Block_t &Block(unsigned uiCode) const
    {
        return pBlocks[uiCode];
    }

    const Block_t *pBlocks;
};

template <typename Pixel, int iFactor> class TableInker_t
{
public:
    typedef TableInk_t<Pixel, iFactor> Ink_t;

    // Neighbours mostly have the same colours, and then nothing is to be done.
    Ink_t Ink(kova_sint32 siFgColor, kova_sint32 siBgColor)
    {
        if (m_bReady && m_siFgColor == siFgColor && m_siBgColor == siBgColor) return {m_blocks};
        m_bReady = true;
        m_siFgColor = siFgColor;
        m_siBgColor = siBgColor;
        for (int iCode = 0; iCode < 1 << Ink_t::BITS; iCode++) {
            Pixel *pTo = m_blocks[iCode].pixels;
            for (int iBit = 8; iBit != 0; iBit >>= 1) {
                for (int i = 0; i < iFactor; i++) *pTo++ = Pixel(iCode & iBit ? siFgColor : siBgColor);
            }
        }
        return {m_blocks};
    }

private:
    bool m_bReady = false;
    kova_sint32 m_siFgColor, m_siBgColor;
    alignas(16) typename Ink_t::Block_t m_blocks[1 << Ink_t::BITS];
};

// A row of BITS bits or more, written iRows times: copying from the first of them would wait for it to be
// written. The last block ends where the row ends, and overlaps the one before it where it must.
template <int iRows, typename Ink>
static inline void WriteRow(Ink ink, const kova_uint8 *pucBits, unsigned uiWidth, kova_uint8 *pucTo,
                            ptrdiff_t iPitch)
{
    enum { BITS = Ink::BITS, BYTES = Ink::BYTES, BYTES_A_BIT = BYTES / BITS };
    enum {
        PIECE = BYTES < 16 ? BYTES : 16
    }; // what registers hold, so that a block is read once for all rows
    const auto write = [=](unsigned uiCode, kova_uint8 *pucBlock) {
        const auto &block = ink.Block(uiCode);
        for (int iAt = 0; iAt < BYTES; iAt += PIECE) {
            uint64_t auiPiece[PIECE / 8];
            memcpy(auiPiece, reinterpret_cast<const kova_uint8 *>(&block) + iAt, PIECE);
            for (int i = 0; i < iRows; i++) memcpy(pucBlock + i * iPitch + iAt, auiPiece, PIECE);
        }
    };
    const unsigned uiRest = uiWidth % 8;

#pragma GCC unroll 2
    for (const kova_uint8 *const pucEnd = pucBits + uiWidth / 8; pucBits != pucEnd;
         pucTo += 8 * BYTES_A_BIT) {
        const unsigned uiByte = *pucBits++;
        write(uiByte >> (8 - BITS), pucTo);
        if (BITS == 4) write(uiByte & 15, pucTo + BYTES);
    }
    if (uiRest == 0) return;
    if (uiRest > BITS) write(*pucBits >> 4, pucTo);
    // The last BITS bits lie in this byte, or in the one before it too.
    const unsigned uiWindow = (uiRest < BITS ? unsigned(pucBits[-1]) << 8 : 0u) | *pucBits;
    write(uiWindow >> (8 - uiRest) & ((1 << BITS) - 1), pucTo + (int(uiRest) - BITS) * BYTES_A_BIT);
}

struct Target_t {
    kova_uint8 *pucData;
    int iPitch;
    DFBRegion clip; // inclusive, inside the surface
};

// The rows of a glyph that are to be seen, and where.
struct Rows_t {
    const kova_uint8 *pucRow; // of the bitmap
    int iRowByte;
    unsigned uiOffset, uiWidth; // bits before the first pixel of a row, and bits that are pixels
    unsigned uiLast;            // the last byte of a row that holds a pixel
    int iRows;                  // of the surface
    int iCopies;                // rows of the surface for the first row of the bitmap, which the clip may cut
    int iVertical;              // and for the others
    kova_uint8 *pucTo;
    int iPitch;
    size_t uiBytes, uiSkipped; // bytes of a row that are drawn, and those the clip cuts off on the left
    bool bWhole;               // nothing is cut off a row
};

// A row of the bitmap moved so that its first pixel is the first bit of a byte. No byte is read that holds no
// pixel of the row.
static void Align(const kova_uint8 *pucRow, unsigned uiOffset, unsigned uiLast, kova_uint8 *pucAligned)
{
    for (unsigned i = 0; i <= uiLast && i < MAX_GLYPH_SIZE / 8; i++) {
        const unsigned uiWindow = unsigned(pucRow[i] << 8 | (i < uiLast ? pucRow[i + 1] : 0));
        pucAligned[i] = kova_uint8(uiWindow << uiOffset >> 8);
    }
}

// Rows of which nothing is cut off, and which are as wide as a block or wider.
template <typename Ink> static __attribute__((noinline)) void DrawWholeRows(Ink ink, const Rows_t &rows)
{
    kova_uint8 aucAligned[MAX_GLYPH_SIZE / 8];
    const unsigned uiOffset = rows.uiOffset, uiWidth = rows.uiWidth;
    const ptrdiff_t iPitch = rows.iPitch;
    const kova_uint8 *pucRow = rows.pucRow;
    kova_uint8 *pucTo = rows.pucTo;
    int iCopies = rows.iCopies;

    for (int iRows = rows.iRows; iRows > 0; pucRow += rows.iRowByte, iCopies = rows.iVertical) {
        const kova_uint8 *pucBits = pucRow;
        if (uiOffset != 0) Align(pucRow, uiOffset, rows.uiLast, aucAligned), pucBits = aucAligned;
        if (iCopies > iRows) iCopies = iRows;
        iRows -= iCopies;
        for (; iCopies > 1; iCopies -= 2, pucTo += 2 * iPitch)
            WriteRow<2>(ink, pucBits, uiWidth, pucTo, iPitch);
        if (iCopies == 0) continue;
        WriteRow<1>(ink, pucBits, uiWidth, pucTo, 0);
        pucTo += iPitch;
    }
}

// The others are made aside, a block wide at least, and copied in part.
template <typename Ink> static void DrawRows(Ink ink, Rows_t rows)
{
    kova_uint8 aucRow[MAX_GLYPH_SIZE / Ink::BITS * Ink::BYTES];
    Rows_t row = rows;

    if (rows.bWhole && rows.uiWidth >= Ink::BITS) return DrawWholeRows(ink, rows);
    if (row.uiWidth < Ink::BITS) row.uiWidth = Ink::BITS;
    row.pucTo = aucRow;
    row.iRows = row.iCopies = 1;
    for (; rows.iRows > 0; row.pucRow += rows.iRowByte, rows.iCopies = rows.iVertical) {
        DrawWholeRows(ink, row);
        for (; rows.iCopies > 0 && rows.iRows > 0; rows.iCopies--, rows.iRows--, rows.pucTo += rows.iPitch) {
            memcpy(rows.pucTo, aucRow + rows.uiSkipped, rows.uiBytes);
        }
    }
}

static int64_t Larger(int64_t a, int64_t b)
{
    return a > b ? a : b;
}

static int64_t Smaller(int64_t a, int64_t b)
{
    return a < b ? a : b;
}

// False when the clip leaves nothing of the glyph.
static bool FindRows(const Target_t &target, const MonoGlyph_t &glyph, int iPixelBytes,
                     const kova_uint8 *pucData, Rows_t *pRows)
{
    const int iWidth = glyph.siWidth * glyph.siHorizontal, iHeight = glyph.siHeight * glyph.siVertical;
    const int64_t iLeft = Larger(glyph.siX, target.clip.x1), iTop = Larger(glyph.siY, target.clip.y1);
    const int64_t iRight = Smaller(int64_t(glyph.siX) + iWidth - 1, target.clip.x2);
    const int64_t iBottom = Smaller(int64_t(glyph.siY) + iHeight - 1, target.clip.y2);

    if (iLeft > iRight || iTop > iBottom) return false;
    pRows->pucRow = pucData + kova_uint32(glyph.siBitOffset) / 8;
    pRows->uiOffset = kova_uint32(glyph.siBitOffset) % 8;
    pRows->iRowByte = glyph.siRowByte;
    pRows->uiWidth = unsigned(glyph.siWidth);
    pRows->uiLast = (pRows->uiOffset + pRows->uiWidth - 1) / 8;
    pRows->iRows = int(iBottom - iTop + 1);
    pRows->iCopies = pRows->iVertical = glyph.siVertical;
    pRows->pucTo = target.pucData + ptrdiff_t(iTop) * target.iPitch + ptrdiff_t(iLeft) * iPixelBytes;
    pRows->iPitch = target.iPitch;
    pRows->uiBytes = size_t(iRight - iLeft + 1) * size_t(iPixelBytes);
    pRows->uiSkipped = size_t(iLeft - glyph.siX) * size_t(iPixelBytes);
    pRows->bWhole = iRight - iLeft + 1 == iWidth;
    int iAbove = int(iTop - glyph.siY); // rows of the enlarged glyph above the clip
    for (; iAbove >= glyph.siVertical; iAbove -= glyph.siVertical) pRows->pucRow += glyph.siRowByte;
    pRows->iCopies -= iAbove;
    return true;
}

template <typename Narrow, typename Wide>
static void ExpandAll(Narrow narrow, Wide wide, const Target_t &target, int iPixelBytes,
                      const kova_uint8 *const *ppucData, const MonoGlyph_t *pGlyphs, int iCount)
{
    for (int i = 0; i < iCount; i++) {
        const MonoGlyph_t &glyph = pGlyphs[i];
        Rows_t rows;
        if (!FindRows(target, glyph, iPixelBytes, ppucData[i], &rows)) continue;
        if (glyph.siHorizontal == 1) {
            DrawRows(narrow.Ink(glyph.siFgColor, glyph.siBgColor), rows);
        } else {
            DrawRows(wide.Ink(glyph.siFgColor, glyph.siBgColor), rows);
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
    if (eFormat == DSPF_LUT8) {
        ExpandAll(ByteInker_t(), TableInker_t<kova_uint8, 2>(), target, 1, ppucData, pGlyphs, iCount);
    } else {
        ExpandAll(TableInker_t<kova_uint32, 1>(), TableInker_t<kova_uint32, 2>(), target, 4, ppucData,
                  pGlyphs, iCount);
    }
    return Call(pSurface, &IDirectFBSurface::Unlock);
}

} // namespace textdisp
