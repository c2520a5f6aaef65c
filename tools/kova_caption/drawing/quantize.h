// SPDX-License-Identifier: MIT
#ifndef KOVA_CAPTION_DRAWING_QUANTIZE_H
#define KOVA_CAPTION_DRAWING_QUANTIZE_H

#include <cstddef>

#include "drawing/picture.h"

namespace caption
{

// Reduces the picture to at most `mostColors` colours besides transparent pixels. A picture with no more
// colours stays unchanged.
void Quantize(Picture &picture, std::size_t mostColors);

} // namespace caption

#endif
