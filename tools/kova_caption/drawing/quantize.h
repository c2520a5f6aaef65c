// SPDX-License-Identifier: MIT
#ifndef KOVA_CAPTION_DRAWING_QUANTIZE_H
#define KOVA_CAPTION_DRAWING_QUANTIZE_H

#include <cstddef>

#include "drawing/picture.h"

namespace caption
{

// Reduces the picture to at most so many colours, besides transparent pixels. A picture that has no more stays as it is.
void Quantize(Picture &picture, std::size_t mostColors);

} // namespace caption

#endif
