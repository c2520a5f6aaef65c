// SPDX-License-Identifier: MIT
// A glyph is drawn in three steps: Clip finds the part of it that is visible, in pixels; DrawPart walks over the
// rows of the bitmap that lie in that part; WriteRow turns the bits of one row into pixels (ink.h).
#include "expand.h"

#include "ink.h"

#include <algorithm>
#include <stddef.h>

namespace textdisp
{

// The memory of a locked surface.
struct Target_t {
    kova_uint8 *pucData;
    ptrdiff_t iPitch;
    int iPixelBytes;
    DFBRegion clip; // inclusive, inside the surface
};

// The visible part of a glyph, in pixels of the enlarged glyph: how much the clip cuts off on the left and at the
// top, and how much remains.
struct Part_t {
    int iLeft, iTop, iWidth, iHeight;
};

// The rows of a bitmap, from the first visible one on.
struct Bitmap_t {
    const kova_uint8 *pucRow; // the byte that holds the row's first pixel
    ptrdiff_t iRowByte;
    unsigned uiOffset;  // bits before the first pixel in that byte, 0 to 7
    unsigned uiWidth;   // pixels of a row
    unsigned uiLast;    // the last byte of a row that holds a pixel, from pucRow
    int iFirstVertical; // rows of the surface for the first visible row, which the clip may cut
    int iVertical;      // rows of the surface for each of the others
};

// False when nothing is visible.
static bool Clip(const DFBRegion &clip, const DFBPoint &point, int iWidth, int iHeight, Part_t *pPart)
{
    const int64_t iX = point.x, iY = point.y;
    const int64_t iLeft = std::max<int64_t>(iX, clip.x1),
                  iRight = std::min<int64_t>(iX + iWidth - 1, clip.x2);
    const int64_t iTop = std::max<int64_t>(iY, clip.y1),
                  iBottom = std::min<int64_t>(iY + iHeight - 1, clip.y2);

    if (iLeft > iRight || iTop > iBottom) return false;
    *pPart = {int(iLeft - iX), int(iTop - iY), int(iRight - iLeft + 1), int(iBottom - iTop + 1)};
    return true;
}

// The rows above the part are skipped here, so that only the first visible one needs care.
static Bitmap_t BitmapOf(const kova_uint8 *pucData, const GlyphAttributes_t &glyph, const Part_t &part)
{
    const auto uiBitOffset = unsigned(glyph.bitoffset), uiWidth = unsigned(glyph.w);
    const unsigned uiOffset = uiBitOffset % 8;
    Bitmap_t bitmap = {pucData + uiBitOffset / 8,    glyph.rowbyte, uiOffset, uiWidth,
                       (uiOffset + uiWidth - 1) / 8, glyph.vz,      glyph.vz};

    int iAbove = part.iTop;
    for (; iAbove >= bitmap.iVertical; iAbove -= bitmap.iVertical) bitmap.pucRow += bitmap.iRowByte;
    bitmap.iFirstVertical -= iAbove;
    return bitmap;
}

// As many as a row has that starts in the middle of a byte.
enum { ALIGNED_BYTES = MAX_GLYPH_SIZE / 8 + 1 };

// Shifts a row of bits so that its first pixel becomes the first bit of a byte. It reads no byte after uiLast, the last
// one that holds a pixel.
static void Align(const kova_uint8 *pucRow, unsigned uiOffset, unsigned uiLast, kova_uint8 *pucAligned)
{
    for (unsigned i = 0; i < uiLast; i++) {
        pucAligned[i] = kova_uint8((pucRow[i] << 8 | pucRow[i + 1]) << uiOffset >> 8);
    }
    pucAligned[uiLast] = kova_uint8(pucRow[uiLast] << uiOffset);
}

// Writes the same row of BITS pixels or more iRows times; copying from the first of them would have to wait for it
// to be written. The last block ends where the row ends, so it may overlap the one before it.
template <int iRows, typename Ink>
static inline void WriteRow(Ink ink, const kova_uint8 *pucBits, unsigned uiWidth, kova_uint8 *pucTo,
                            ptrdiff_t iPitch)
{
    enum { BITS = Ink::BITS, BYTES = Ink::BYTES, BYTES_A_BIT = BYTES / BITS };
    // As much as registers hold, so that a block is read once for all rows.
    enum { PIECE = BYTES < 16 ? BYTES : 16 };
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

// Writes whole rows of BITS pixels or more.
template <typename Ink>
static __attribute__((noinline)) void DrawWholeRows(Ink ink, Bitmap_t bitmap, const Part_t &part,
                                                    const Target_t &target, kova_uint8 *pucTo)
{
    kova_uint8 aucAligned[ALIGNED_BYTES];
    const unsigned uiOffset = bitmap.uiOffset, uiWidth = bitmap.uiWidth;
    const ptrdiff_t iPitch = target.iPitch;
    const kova_uint8 *pucRow = bitmap.pucRow;
    int iCopies = bitmap.iFirstVertical;

    for (int iRows = part.iHeight; iRows > 0; pucRow += bitmap.iRowByte, iCopies = bitmap.iVertical) {
        const kova_uint8 *pucBits = pucRow;
        if (uiOffset != 0) Align(pucRow, uiOffset, bitmap.uiLast, aucAligned), pucBits = aucAligned;
        if (iCopies > iRows) iCopies = iRows;
        iRows -= iCopies;
        for (; iCopies > 1; iCopies -= 2, pucTo += 2 * iPitch)
            WriteRow<2>(ink, pucBits, uiWidth, pucTo, iPitch);
        if (iCopies != 0) WriteRow<1>(ink, pucBits, uiWidth, pucTo, 0), pucTo += iPitch;
    }
}

// Writes rows that the clip cuts on the left or right, or that are narrower than a block: each is made aside, and the
// visible bytes are copied.
template <typename Ink>
static __attribute__((noinline)) void DrawCutRows(Ink ink, const Bitmap_t &bitmap, const Part_t &part,
                                                  const Target_t &target, kova_uint8 *pucTo)
{
    kova_uint8 aucAligned[ALIGNED_BYTES], aucRow[MAX_GLYPH_SIZE / Ink::BITS * Ink::BYTES];
    const size_t uiSkipped = size_t(part.iLeft) * size_t(target.iPixelBytes);
    const size_t uiBytes = size_t(part.iWidth) * size_t(target.iPixelBytes);
    const unsigned uiOffset = bitmap.uiOffset, uiWidth = std::max(bitmap.uiWidth, unsigned(Ink::BITS));
    const kova_uint8 *pucRow = bitmap.pucRow;
    int iRows = part.iHeight;

    for (int iVertical = bitmap.iFirstVertical; iRows > 0; iVertical = bitmap.iVertical) {
        const kova_uint8 *pucBits = pucRow;
        if (uiOffset != 0) Align(pucRow, uiOffset, bitmap.uiLast, aucAligned), pucBits = aucAligned;
        WriteRow<1>(ink, pucBits, uiWidth, aucRow, 0);
        for (int iCopies = std::min(iVertical, iRows); iCopies > 0;
             iCopies--, iRows--, pucTo += target.iPitch)
            memcpy(pucTo, aucRow + uiSkipped, uiBytes);
        pucRow += bitmap.iRowByte;
    }
}

template <typename Ink>
static void DrawPart(Ink ink, const GlyphAttributes_t &glyph, const DFBPoint &point, const Bitmap_t &bitmap,
                     const Part_t &part, const Target_t &target)
{
    kova_uint8 *const pucTo = target.pucData + (point.y + part.iTop) * target.iPitch +
                              ptrdiff_t(point.x + part.iLeft) * target.iPixelBytes;

    if (part.iWidth == glyph.w * glyph.hz && glyph.w >= Ink::BITS) {
        DrawWholeRows(ink, bitmap, part, target, pucTo);
    } else {
        DrawCutRows(ink, bitmap, part, target, pucTo);
    }
}

// Draws each glyph in the ink for its horizontal factor: narrow for 1, wide for 2.
template <typename Narrow, typename Wide>
static void DrawAll(Narrow narrow, Wide wide, const Target_t &target, const kova_uint8 *const *ppucData,
                    const GlyphAttributes_t *pGlyphs, const DFBPoint *pPoints, int iCount)
{
    for (int i = 0; i < iCount; i++) {
        const GlyphAttributes_t &glyph = pGlyphs[i];
        const DFBPoint &point = pPoints[i];
        Part_t part;
        if (!Clip(target.clip, point, glyph.w * glyph.hz, glyph.h * glyph.vz, &part)) continue;
        const Bitmap_t bitmap = BitmapOf(ppucData[i], glyph, part);
        if (glyph.hz == 1) {
            DrawPart(narrow.Ink(glyph.fgcolor, glyph.bgcolor), glyph, point, bitmap, part, target);
        } else {
            DrawPart(wide.Ink(glyph.fgcolor, glyph.bgcolor), glyph, point, bitmap, part, target);
        }
    }
}

DFBResult ExpandGlyphs(IDirectFBSurface *pSurface, const kova_uint8 *const *ppucData,
                       const GlyphAttributes_t *pGlyphs, const DFBPoint *pPoints, int iCount)
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

    const DFBRegion inside = {std::max(clip.x1, 0), std::max(clip.y1, 0), std::min(clip.x2, iWidth - 1),
                              std::min(clip.y2, iHeight - 1)};
    const Target_t target = {static_cast<kova_uint8 *>(pData), iPitch, eFormat == DSPF_LUT8 ? 1 : 4, inside};
    if (eFormat == DSPF_LUT8) {
        DrawAll(ByteInker_t(), TableInker_t<kova_uint8, 2>(), target, ppucData, pGlyphs, pPoints, iCount);
    } else {
        DrawAll(TableInker_t<kova_uint32, 1>(), TableInker_t<kova_uint32, 2>(), target, ppucData, pGlyphs,
                pPoints, iCount);
    }
    return Call(pSurface, &IDirectFBSurface::Unlock);
}

} // namespace textdisp
