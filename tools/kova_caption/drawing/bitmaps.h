// SPDX-License-Identifier: MIT
// Scales and combines the bitmaps of a source for the plane.
#ifndef KOVA_CAPTION_DRAWING_BITMAPS_H
#define KOVA_CAPTION_DRAWING_BITMAPS_H

#include <vector>

#include "base/rect.h"
#include "cues/cue.h"
#include "drawing/picture.h"

namespace caption
{

// The rectangle of a bitmap on the plane when its canvas is scaled to the whole plane.
Rect PlaceOnPlane(const Bitmap &bitmap, Size canvas, Size plane);

// Draws the cues' bitmaps on an empty plane, later ones over earlier ones, in at most `mostColors` colours. A
// canvas of the plane's size is copied pixel for pixel. Otherwise pixels are averaged or interpolated,
// because repeated or omitted indexes show as steps in slanted strokes. That creates new colours, which are
// reduced to the most significant ones.
Picture Compose(const std::vector<const Cue *> &cues, Size plane, std::size_t mostColors);

} // namespace caption

#endif
