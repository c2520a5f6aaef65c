// SPDX-License-Identifier: MIT
// Bits become pixels, a block at a time. An ink returns the pixels of a block of BITS bits in a glyph's two colours; it
// is small enough to be passed by value. An inker keeps what the colours alone decide, and makes inks. The pixels of a
// block lie as they do in memory, so they can be written in one piece on a machine of either endianness.
#ifndef TEXTDISP_INK_H
#define TEXTDISP_INK_H

#include "kova/kova_textdisp_types.h"

#include <stdint.h>
#include <string.h>

namespace textdisp
{

// The eight bits of each byte as eight bytes: all ones for a set bit, all zeros for a clear one.
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

// Pixels of one byte, not enlarged: eight at a time.
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

// All other pixels: four bits at a time, from a table of the sixteen blocks.
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

    // Most glyphs have the colours of the one before, and the table is ready then.
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

} // namespace textdisp

#endif
