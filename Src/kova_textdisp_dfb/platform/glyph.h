// SPDX-License-Identifier: MIT
// How a one-bit bitmap is described to whoever draws it: the platform, or expand.cpp.
#ifndef TEXTDISP_GLYPH_H
#define TEXTDISP_GLYPH_H

#include "extensions.h"
#include "kova/kova_textdisp_types.h"

namespace textdisp
{

enum { MAX_GLYPH_SIZE = 48, MAX_BATCH = 100 };

// Rows are rowbyte bytes apart. The first pixel of a row is bit bitoffset of its first byte, the most significant bit
// first. A set bit is drawn in fgcolor and a clear one in bgcolor. The names are those of the platform's own record.
struct GlyphAttributes_t {
    int w, h; // pixels, before enlarging
    int rowbyte, bitoffset;
    int fgcolor, bgcolor;
    int hz, vz; // factors
};

template <typename Surface, typename Result, typename Data, typename Attributes, typename Points,
          typename Count>
std::remove_const_t<Attributes> AttributesOf(Result (*Surface::*method)(Surface *, Data, Attributes *, Points,
                                                                        Count));

// A platform with a batch call takes its own record, so the glyphs of a batch are described in that record at once.
template <typename, typename = void> struct GlyphRecord {
    typedef GlyphAttributes_t Type;
};
template <typename Surface> struct GlyphRecord<Surface, std::void_t<decltype(&Surface::BatchDrawMonoGlyph)>> {
    typedef decltype(AttributesOf(&Surface::BatchDrawMonoGlyph)) Type;
};
typedef GlyphRecord<IDirectFBSurface>::Type MonoGlyph_t;

} // namespace textdisp

#endif
