// SPDX-License-Identifier: MIT
#include "platform.h"

#include "expand.h"

#include <type_traits>

namespace textdisp
{

// Every question about the header is asked of a template parameter, so that a "no" is an answer and no error.
template <typename, typename = void> struct HasDescriptionFlags : std::false_type {
};
template <typename Surface>
struct HasDescriptionFlags<Surface, std::void_t<decltype(&Surface::SetDescriptionFlags)>> : std::true_type {
};

template <typename, typename = void> struct HasOsdScale : std::false_type {
};
template <typename Surface>
struct HasOsdScale<Surface, std::void_t<decltype(&Surface::SetOSDScaleInfo)>> : std::true_type {
};

template <typename, typename = void> struct HasMonoGlyph : std::false_type {
};
template <typename Surface>
struct HasMonoGlyph<Surface, std::void_t<decltype(&Surface::DrawMonoGlyph)>> : std::true_type {
};

template <typename, typename = void> struct HasMonoGlyphBatch : std::false_type {
};
template <typename Surface>
struct HasMonoGlyphBatch<Surface, std::void_t<decltype(&Surface::BatchDrawMonoGlyph)>> : std::true_type {
};

template <typename Attributes, typename = void> struct Italic {
    static constexpr Attributes eValue = Attributes::DFFA_STYLE_ITALIC;
};
template <typename Attributes>
struct Italic<Attributes, std::void_t<decltype(Attributes::DFFA_ITALIC_STYLE)>> {
    static constexpr Attributes eValue = Attributes::DFFA_ITALIC_STYLE;
};

template <typename Flags, typename = void> struct IndexedPlane {
    static constexpr unsigned uiValue = 2048; // the call without its name
};
template <typename Flags> struct IndexedPlane<Flags, std::void_t<decltype(Flags::DSDESC_DESTINATION_LUT8)>> {
    static constexpr unsigned uiValue = Flags::DSDESC_DESTINATION_LUT8;
};

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

// The record that the platform's call takes is known from the call.
template <typename Surface, typename Result, typename Info>
static DFBResult CallOsdScale(Surface *pSurface, Result (*Surface::*method)(Surface *, Info *),
                              const Surface_OsdScaleInfo &info)
{
    std::remove_const_t<Info> scale = {}; // buf_w and buf_h stay 0: they are not the caller's to say
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

template <typename Surface>
static DFBResult DrawOne(Surface *pSurface, const kova_uint8 *pucData, const MonoGlyph_t &glyph)
{
    if constexpr (HasMonoGlyph<Surface>::value) {
        return Call(pSurface, &Surface::DrawMonoGlyph, pucData, glyph.siWidth, glyph.siHeight,
                    glyph.siRowByte, glyph.siBitOffset, glyph.siX, glyph.siY, glyph.siFgColor,
                    glyph.siBgColor, glyph.siHorizontal, glyph.siVertical);
    } else {
        return ExpandGlyphs(pSurface, &pucData, &glyph, 1);
    }
}

DFBResult DrawGlyph(IDirectFBSurface *pSurface, const kova_uint8 *pucData, const MonoGlyph_t &glyph)
{
    return DrawOne(pSurface, pucData, glyph);
}

template <typename Surface, typename Result, typename Glyphs, typename Attributes, typename Count>
static DFBResult CallBatch(Surface *pSurface,
                           Result (*Surface::*method)(Surface *, Glyphs, Attributes *, const DFBPoint *,
                                                      Count),
                           const kova_uint8 *const *ppucData, const MonoGlyph_t *pGlyphs, kova_uint8 ucCount)
{
    std::remove_const_t<Attributes> attributes[MAX_BATCH];
    DFBPoint points[MAX_BATCH];

    for (int i = 0; i < ucCount; i++) {
        attributes[i].w = pGlyphs[i].siWidth;
        attributes[i].h = pGlyphs[i].siHeight;
        attributes[i].rowbyte = pGlyphs[i].siRowByte;
        attributes[i].bitoffset = pGlyphs[i].siBitOffset;
        attributes[i].fgcolor = pGlyphs[i].siFgColor;
        attributes[i].bgcolor = pGlyphs[i].siBgColor;
        attributes[i].hz = pGlyphs[i].siHorizontal;
        attributes[i].vz = pGlyphs[i].siVertical;
        points[i].x = pGlyphs[i].siX;
        points[i].y = pGlyphs[i].siY;
    }
    // Headers disagree about the constness of the data, and none of them writes to it.
    return pSurface ? DFBResult((pSurface->*method)(pSurface, (Glyphs)ppucData, attributes, points, ucCount))
                    : DFB_DESTROYED;
}

template <typename Surface>
static DFBResult DrawMany(Surface *pSurface, const kova_uint8 *const *ppucData, const MonoGlyph_t *pGlyphs,
                          kova_uint8 ucCount)
{
    if constexpr (HasMonoGlyphBatch<Surface>::value) {
        return CallBatch(pSurface, &Surface::BatchDrawMonoGlyph, ppucData, pGlyphs, ucCount);
    } else {
        return ExpandGlyphs(pSurface, ppucData, pGlyphs, ucCount);
    }
}

DFBResult DrawGlyphs(IDirectFBSurface *pSurface, const kova_uint8 *const *ppucData,
                     const MonoGlyph_t *pGlyphs, kova_uint8 ucCount)
{
    return DrawMany(pSurface, ppucData, pGlyphs, ucCount);
}

} // namespace textdisp
