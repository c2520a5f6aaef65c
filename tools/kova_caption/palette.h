// The colours of a caption for a display that has 256.
#ifndef KOVA_CAPTION_PALETTE_H
#define KOVA_CAPTION_PALETTE_H

#include <vector>

#include "kova/kova_textdisp_types.h"
#include "options.h"

namespace caption
{

enum { PALETTE_TRANSPARENT = 0, PALETTE_EDGE = 1, PALETTE_TEXT = 2 };

// Transparent, edge and text colour, and the shades between them that smooth glyphs need: an indexed surface
// takes the nearest entry to what a true-colour one would hold.
std::vector<KovaTextColor_t> CaptionPalette(Color text, Color edge);

} // namespace caption

#endif
