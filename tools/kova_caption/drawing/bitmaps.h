// SPDX-License-Identifier: MIT
// Pictures of a source, which have a canvas and palettes of their own, made fit for the plane.
#ifndef KOVA_CAPTION_DRAWING_BITMAPS_H
#define KOVA_CAPTION_DRAWING_BITMAPS_H

#include <vector>

#include "base/rect.h"
#include "cues/cue.h"
#include "drawing/picture.h"

namespace caption
{

// Where a bitmap lies on the plane when its canvas is stretched over the whole of it.
Rect PlaceOnPlane(const Bitmap &bitmap, Size canvas, Size plane);

// The cues' bitmaps on an empty plane, later ones over earlier ones, in at most so many colours. A canvas as
// large as the plane is copied pixel for pixel. Otherwise pixels are averaged and weighed, because the steps
// of slanted strokes show when indexes are repeated or left out; that makes new colours, of which the most
// telling are kept.
Picture Compose(const std::vector<const Cue *> &cues, Size plane, std::size_t mostColors);

} // namespace caption

#endif
