// SPDX-License-Identifier: MIT
// Where the library draws the strings of an edge, and how far they reach.
#ifndef KOVA_CAPTION_DRAWING_EDGES_H
#define KOVA_CAPTION_DRAWING_EDGES_H

#include <vector>

#include "kova/kova_textdisp_types.h"

namespace caption
{

// Pixels to the right and down.
struct Offset {
    int x = 0;
    int y = 0;
};

// The library draws the edge's strings first and the text on top of them, each at an offset from the position
// that the caller gives.
struct EdgeOffsets {
    std::vector<Offset> edge;
    Offset text;
};

const EdgeOffsets &OffsetsOf(KovaTextEdgeType_e edge);

// How far text and edge reach beyond text without an edge at the same position, in pixels.
struct Margins {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

Margins MarginsOf(KovaTextEdgeType_e edge);

} // namespace caption

#endif
