// SPDX-License-Identifier: MIT
#include "platform.h"

#include "expand.h"

namespace textdisp
{

DFBFontAttributes ItalicAttribute()
{
    return Italic<DFBFontAttributes>::eValue;
}

template <typename Surface> static DFBResult DeclareIndexed(Surface *pSurface)
{
    if constexpr (HasDescriptionFlags<Surface>::value) {
        return Call(pSurface, &Surface::SetDescriptionFlags,
                    IndexedPlane<DFBSurfaceDescriptionFlags>::uiValue);
    } else {
        return (void)pSurface, DFB_OK;
    }
}

DFBResult DeclareIndexedPlane(IDirectFBSurface *pSurface)
{
    return DeclareIndexed(pSurface);
}

// The type of the record is taken from the platform's call.
template <typename Surface, typename Result, typename Info>
static DFBResult CallOsdScale(Surface *pSurface, Result (*Surface::*method)(Surface *, Info *),
                              const Surface_OsdScaleInfo &info)
{
    std::remove_const_t<Info> scale = {}; // buf_w and buf_h stay 0: the caller does not set them
    scale.plane_x = info.plane_x;
    scale.plane_y = info.plane_y;
    scale.plane_w = info.plane_w;
    scale.plane_h = info.plane_h;
    scale.crop_x = info.crop_x;
    scale.crop_y = info.crop_y;
    scale.crop_w = info.crop_w;
    scale.crop_h = info.crop_h;
    return Call(pSurface, method, &scale);
}

template <typename Surface>
static DFBResult ScaleOsd(Surface *pSurface, IDirectFBDisplayLayer *pLayer, const Surface_OsdScaleInfo &info)
{
    if constexpr (HasOsdScale<Surface>::value) {
        return (void)pLayer, CallOsdScale(pSurface, &Surface::SetOSDScaleInfo, info);
    } else {
        const DFBResult eSource = Call(pLayer, &IDirectFBDisplayLayer::SetSourceRectangle, info.crop_x,
                                       info.crop_y, info.crop_w, info.crop_h);
        const DFBResult eScreen = Call(pLayer, &IDirectFBDisplayLayer::SetScreenRectangle, info.plane_x,
                                       info.plane_y, info.plane_w, info.plane_h);
        return (void)pSurface, eSource != DFB_OK ? eSource : eScreen;
    }
}

DFBResult SetOsdScale(IDirectFBSurface *pSurface, IDirectFBDisplayLayer *pLayer,
                      const Surface_OsdScaleInfo &info)
{
    return ScaleOsd(pSurface, pLayer, info);
}

// Headers differ in the constness and the types of the pointers, and no platform writes to what they point to. So they
// are cast to whatever the call takes.
template <typename Surface, typename Result, typename Data, typename... Numbers>
static DFBResult CallGlyph(Surface *pSurface, Result (*Surface::*method)(Surface *, Data, Numbers...),
                           const kova_uint8 *pucData, const MonoGlyph_t &glyph, const DFBPoint &point)
{
    return Call(pSurface, method, (Data)pucData, glyph.w, glyph.h, glyph.rowbyte, glyph.bitoffset, point.x,
                point.y, glyph.fgcolor, glyph.bgcolor, glyph.hz, glyph.vz);
}

template <typename Surface, typename Result, typename Data, typename Glyphs, typename Points, typename Count>
static DFBResult CallBatch(Surface *pSurface,
                           Result (*Surface::*method)(Surface *, Data, Glyphs *, Points *, Count),
                           const kova_uint8 *const *ppucData, const MonoGlyph_t *pGlyphs,
                           const DFBPoint *pPoints, kova_uint8 ucCount)
{
    return Call(pSurface, method, (Data)ppucData, (Glyphs *)pGlyphs, (Points *)pPoints, ucCount);
}

// With the result of the first call that failed.
template <typename Surface>
static DFBResult CallEach(Surface *pSurface, const kova_uint8 *const *ppucData, const MonoGlyph_t *pGlyphs,
                          const DFBPoint *pPoints, kova_uint8 ucCount)
{
    DFBResult eFirst = DFB_OK;

    for (int i = 0; i < ucCount; i++) {
        const DFBResult eResult =
            CallGlyph(pSurface, &Surface::DrawMonoGlyph, ppucData[i], pGlyphs[i], pPoints[i]);
        if (eFirst == DFB_OK) eFirst = eResult;
    }
    return eFirst;
}

// A platform with one of the two calls draws everything with it: its bit order need not be that of our own expansion.
template <typename Surface>
static DFBResult DrawOne(Surface *pSurface, const kova_uint8 *pucData, const MonoGlyph_t &glyph,
                         const DFBPoint &point)
{
    if constexpr (HasMonoGlyph<Surface>::value) {
        return CallGlyph(pSurface, &Surface::DrawMonoGlyph, pucData, glyph, point);
    } else if constexpr (HasMonoGlyphBatch<Surface>::value) {
        return CallBatch(pSurface, &Surface::BatchDrawMonoGlyph, &pucData, &glyph, &point, 1);
    } else {
        return ExpandGlyphs(pSurface, &pucData, &glyph, &point, 1);
    }
}

DFBResult DrawGlyph(IDirectFBSurface *pSurface, const kova_uint8 *pucData, const MonoGlyph_t &glyph,
                    const DFBPoint &point)
{
    return DrawOne(pSurface, pucData, glyph, point);
}

template <typename Surface>
static DFBResult DrawMany(Surface *pSurface, const kova_uint8 *const *ppucData, const MonoGlyph_t *pGlyphs,
                          const DFBPoint *pPoints, kova_uint8 ucCount)
{
    if constexpr (HasMonoGlyphBatch<Surface>::value) {
        return CallBatch(pSurface, &Surface::BatchDrawMonoGlyph, ppucData, pGlyphs, pPoints, ucCount);
    } else if constexpr (HasMonoGlyph<Surface>::value) {
        return CallEach(pSurface, ppucData, pGlyphs, pPoints, ucCount);
    } else {
        return ExpandGlyphs(pSurface, ppucData, pGlyphs, pPoints, ucCount);
    }
}

DFBResult DrawGlyphs(IDirectFBSurface *pSurface, const kova_uint8 *const *ppucData,
                     const MonoGlyph_t *pGlyphs, const DFBPoint *pPoints, kova_uint8 ucCount)
{
    return DrawMany(pSurface, ppucData, pGlyphs, pPoints, ucCount);
}

} // namespace textdisp
