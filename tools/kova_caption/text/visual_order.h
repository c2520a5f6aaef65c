// SPDX-License-Identifier: MIT
#ifndef KOVA_CAPTION_TEXT_VISUAL_ORDER_H
#define KOVA_CAPTION_TEXT_VISUAL_ORDER_H

#include <cstddef>

#include "text/letters.h"

namespace caption
{

// The letters from begin to end in visual order, left to right. Each must have its face.
Letters InVisualOrder(const Letters &letters, std::size_t begin, std::size_t end);

} // namespace caption

#endif
