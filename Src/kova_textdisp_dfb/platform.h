// SPDX-License-Identifier: MIT
// What a platform's DirectFB may have beyond the published interfaces. Each piece is looked for in the header
// at compile time, never by version, and made good here where it is missing.
#ifndef TEXTDISP_PLATFORM_H
#define TEXTDISP_PLATFORM_H

#include "call.h"

namespace textdisp
{

// How a one-bit bitmap is drawn, and where. Rows are siRowByte bytes apart, the first pixel is bit
// siBitOffset of the first byte, most significant bit first; a set bit is drawn in siFgColor and a clear one
// in siBgColor.
struct MonoGlyph_t {
    kova_sint32 siX, siY;
    kova_sint32 siWidth, siHeight; // pixels, before enlarging
    kova_sint32 siRowByte, siBitOffset;
    kova_sint32 siFgColor, siBgColor;
    kova_sint32 siHorizontal, siVertical; // factors
};

enum { MAX_GLYPH_SIZE = 48, MAX_BATCH = 100 };

// What asks for slanted glyphs in a font's attributes.
DFBFontAttributes ItalicAttribute();

// Tells the platform that an indexed surface is shown through an 8-bit plane; nothing where nothing can be
// told.
DFBResult DeclareIndexedPlane(IDirectFBSurface *pSurface);

// Without the platform's own call the layer's source and screen rectangles say the same, where the layer has
// them.
DFBResult SetOsdScale(IDirectFBSurface *pSurface, IDirectFBDisplayLayer *pLayer,
                      const Surface_OsdScaleInfo &info);

DFBResult DrawGlyph(IDirectFBSurface *pSurface, const kova_uint8 *pucData, const MonoGlyph_t &glyph);
// At most MAX_BATCH of them, in one call of the platform or under one lock of the surface.
DFBResult DrawGlyphs(IDirectFBSurface *pSurface, const kova_uint8 *const *ppucData,
                     const MonoGlyph_t *pGlyphs, kova_uint8 ucCount);

} // namespace textdisp

#endif
