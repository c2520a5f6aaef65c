// SPDX-License-Identifier: MIT
// Rectangles of the plane, and the grids that lie on the safe area.
#ifndef KOVA_CAPTIONS_GRID_H
#define KOVA_CAPTIONS_GRID_H

#include <kova/kova_captions.h>

namespace captions
{

struct Rect {
    int x, y, width, height;

    int Right() const
    {
        return x + width;
    }
    int Bottom() const
    {
        return y + height;
    }
};

inline bool IsEmpty(const Rect &rect)
{
    return rect.width <= 0 || rect.height <= 0;
}

Rect FromEdges(int left, int top, int right, int bottom);
Rect Intersection(const Rect &first, const Rect &second);
Rect Union(const Rect &first, const Rect &second);
Rect Grown(const Rect &rect, int by);
Rect Moved(const Rect &rect, int dx, int dy);

// Where the k-th half of `count` equal parts of a length ends. Neighbouring parts share their edge, whatever the length;
// k may lie outside.
int HalfEdge(int start, int length, int count, int k);

// The middle of the picture, as many percent of it in each direction.
Rect SafeArea(const Rect &picture, int percent);

// Where a window lies: its anchor in the grid of `units` by 75, its size of cells in percent of the standard cell. It is
// moved inside the safe area.
Rect PlaceWindow(const Rect &safe, int units, const KovaCaptionsDefinition &definition, int rows, int columns,
                 int percent);

constexpr int kGridRows = 75;
// Units of the grid that a standard cell takes in both directions.
constexpr int kCellUnits = 5;

} // namespace captions

#endif
