// SPDX-License-Identifier: MIT
#include "grid.h"

namespace captions
{

static int Least(int first, int second)
{
    return first < second ? first : second;
}

static int Most(int first, int second)
{
    return first > second ? first : second;
}

Rect FromEdges(int left, int top, int right, int bottom)
{
    return {left, top, Most(right - left, 0), Most(bottom - top, 0)};
}

Rect Intersection(const Rect &first, const Rect &second)
{
    return FromEdges(Most(first.x, second.x), Most(first.y, second.y), Least(first.Right(), second.Right()),
                     Least(first.Bottom(), second.Bottom()));
}

Rect Union(const Rect &first, const Rect &second)
{
    if (IsEmpty(first)) return second;
    if (IsEmpty(second)) return first;
    return FromEdges(Least(first.x, second.x), Least(first.y, second.y), Most(first.Right(), second.Right()),
                     Most(first.Bottom(), second.Bottom()));
}

Rect Grown(const Rect &rect, int by)
{
    return {rect.x - by, rect.y - by, rect.width + 2 * by, rect.height + 2 * by};
}

Rect Moved(const Rect &rect, int dx, int dy)
{
    return {rect.x + dx, rect.y + dy, rect.width, rect.height};
}

static int FloorOf(int64_t numerator, int64_t denominator)
{
    const int64_t quotient = numerator / denominator;
    return int(numerator % denominator < 0 ? quotient - 1 : quotient);
}

int HalfEdge(int start, int length, int count, int k)
{
    return start + FloorOf(int64_t(k) * length + count, 2 * int64_t(count));
}

Rect SafeArea(const Rect &picture, int percent)
{
    const int width = int(int64_t(picture.width) * percent / 100);
    const int height = int(int64_t(picture.height) * percent / 100);
    return {picture.x + (picture.width - width) / 2, picture.y + (picture.height - height) / 2, width,
            height};
}

// One direction of a window: in 200ths of a unit, so that half cells and percent come out whole.
struct Span {
    int start, end;
};

static Span PlaceSpan(int start, int length, int units, int anchor, bool relative, int point, int cells,
                      int percent)
{
    const int64_t whole = 200 * int64_t(units);
    const int64_t half = int64_t(kCellUnits) * cells * percent;
    const int64_t limit = relative ? 99 : units - 1;
    const int64_t at = anchor < limit ? anchor : limit;
    int64_t first = (relative ? 2 * int64_t(units) : 200) * at - point * half;

    if (first > whole - 2 * half) first = whole - 2 * half;
    if (first < 0) first = 0;
    int64_t last = first + 2 * half;
    if (last > whole) last = whole;
    return {start + FloorOf(first * length + whole / 2, whole),
            start + FloorOf(last * length + whole / 2, whole)};
}

Rect PlaceWindow(const Rect &safe, int units, const KovaCaptionsDefinition &definition, int rows, int columns,
                 int percent)
{
    const Span x = PlaceSpan(safe.x, safe.width, units, definition.anchor_horizontal, definition.relative,
                             definition.anchor_point % 3, columns, percent);
    const Span y = PlaceSpan(safe.y, safe.height, kGridRows, definition.anchor_vertical, definition.relative,
                             definition.anchor_point / 3, rows, percent);
    return FromEdges(x.start, y.start, x.end, y.end);
}

} // namespace captions
