// SPDX-License-Identifier: MIT
// What the DirectFB header at hand has beyond the published interfaces. It is found at compile time and never by
// version. Each question is asked of a template parameter, so that "no" is an answer and not a compile error.
#ifndef TEXTDISP_EXTENSIONS_H
#define TEXTDISP_EXTENSIONS_H

#include "directfb_c.h"

#include <type_traits>

namespace textdisp
{

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

// The header has none of the platform's calls. A surface of published DirectFB that is kept while its layer is
// configured learns its new size a moment later, from another thread.
template <typename Surface>
struct IsPublished : std::bool_constant<!HasDescriptionFlags<Surface>::value &&
                                        !HasMonoGlyph<Surface>::value && !HasMonoGlyphBatch<Surface>::value> {
};

template <typename Attributes, typename = void> struct Italic {
    static constexpr Attributes eValue = Attributes::DFFA_STYLE_ITALIC;
};
template <typename Attributes>
struct Italic<Attributes, std::void_t<decltype(Attributes::DFFA_ITALIC_STYLE)>> {
    static constexpr Attributes eValue = Attributes::DFFA_ITALIC_STYLE;
};

template <typename Flags, typename = void> struct IndexedPlane {
    // The platform's value, for a header that has the call but not the name.
    static constexpr unsigned uiValue = 2048;
};
template <typename Flags> struct IndexedPlane<Flags, std::void_t<decltype(Flags::DSDESC_DESTINATION_LUT8)>> {
    static constexpr unsigned uiValue = Flags::DSDESC_DESTINATION_LUT8;
};

} // namespace textdisp

#endif
