// SPDX-License-Identifier: MIT
// The platform's extensions of DirectFB, and the fallback for each where the header lacks it.
#ifndef TEXTDISP_PLATFORM_H
#define TEXTDISP_PLATFORM_H

#include "call.h"
#include "glyph.h"

namespace textdisp
{

// The font attribute that asks for slanted glyphs.
DFBFontAttributes ItalicAttribute();

// The base surface that is kept over a configuration of the layer has to be taken anew.
constexpr bool SIZE_COMES_LATE = IsPublished<IDirectFBSurface>::value;

// Tells the platform that an indexed surface is shown through an 8-bit plane; does nothing without the platform's call.
DFBResult DeclareIndexedPlane(IDirectFBSurface *pSurface);

// Without the platform's call, the layer's source and screen rectangles do the same, on layers that have them.
DFBResult SetOsdScale(IDirectFBSurface *pSurface, IDirectFBDisplayLayer *pLayer,
                      const Surface_OsdScaleInfo &info);

DFBResult DrawGlyph(IDirectFBSurface *pSurface, const kova_uint8 *pucData, const MonoGlyph_t &glyph,
                    const DFBPoint &point);
// At most MAX_BATCH of them, in one call of the platform or under one lock of the surface.
DFBResult DrawGlyphs(IDirectFBSurface *pSurface, const kova_uint8 *const *ppucData,
                     const MonoGlyph_t *pGlyphs, const DFBPoint *pPoints, kova_uint8 ucCount);

} // namespace textdisp

#endif
