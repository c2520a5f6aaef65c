// SPDX-License-Identifier: MIT
#include "damage.h"

#include <string.h>

namespace captions
{

static bool IsSame(const Rect &first, const Rect &second)
{
    return memcmp(&first, &second, sizeof first) == 0;
}

void Damage::Add(const Rect &rect)
{
    if (IsEmpty(rect)) return;
    for (int i = 0; i < count; ++i) {
        if (IsSame(Intersection(rects[i], rect), rect)) return;
    }
    if (count < kMost) {
        rects[count++] = rect;
    } else {
        rects[kMost - 1] = Union(rects[kMost - 1], rect);
    }
}

static Rect Seen(const Frame &frame)
{
    return frame.exists ? Intersection(OuterRect(frame), frame.shown) : Rect{};
}

static bool HasSameCells(const Panel &before, const Panel &after)
{
    return memcmp(before.cells, after.cells, sizeof before.cells) == 0;
}

// Rows that differ, neighbours as one.
static void AddRows(const Panel &before, const Panel &after, Damage &damage)
{
    Rect rows = {};
    for (int row = 0; row < after.frame.rows; ++row) {
        if (memcmp(before.cells[row], after.cells[row], sizeof before.cells[row]) == 0) continue;
        const Rect reach =
            Intersection(Union(RowReach(before, row), RowReach(after, row)), after.frame.shown);
        if (!IsEmpty(rows) && reach.y > rows.Bottom()) {
            damage.Add(rows);
            rows = {};
        }
        rows = Union(rows, reach);
    }
    damage.Add(rows);
}

// Whether the panels differ in nothing but what this makes the same.
template <typename Change> static bool DiffersInThis(const Panel &before, const Panel &after, Change change)
{
    Frame frame = before.frame;
    change(frame);
    return memcmp(&frame, &after.frame, sizeof frame) == 0 && HasSameCells(before, after);
}

// The part that one rectangle has and the other lacks, if it is one strip; both if it is not.
static void AddStrip(const Rect &before, const Rect &after, Damage &damage)
{
    const bool grows = after.width * after.height > before.width * before.height;
    const Rect &large = grows ? after : before, &small = grows ? before : after;
    const bool inside = IsSame(Intersection(large, small), small);

    if (IsEmpty(small)) {
        damage.Add(large);
    } else if (inside && large.y == small.y && large.height == small.height && large.x == small.x) {
        damage.Add(FromEdges(small.Right(), large.y, large.Right(), large.Bottom()));
    } else if (inside && large.y == small.y && large.height == small.height &&
               large.Right() == small.Right()) {
        damage.Add(FromEdges(large.x, large.y, small.x, large.Bottom()));
    } else if (inside && large.x == small.x && large.width == small.width && large.y == small.y) {
        damage.Add(FromEdges(large.x, small.Bottom(), large.Right(), large.Bottom()));
    } else if (inside && large.x == small.x && large.width == small.width &&
               large.Bottom() == small.Bottom()) {
        damage.Add(FromEdges(large.x, large.y, large.Right(), small.y));
    } else {
        damage.Add(large);
        damage.Add(small);
    }
}

static bool StandsFree(const Scene &scene, int panel)
{
    for (int i = 0; i < kPanels; ++i) {
        const Frame &other = scene.panels[i].frame;
        if (i == panel || !other.exists) continue;
        if (!IsEmpty(Intersection(OuterRect(other), OuterRect(scene.panels[panel].frame)))) return false;
    }
    return true;
}

// Pixels that only move are copied, and the strips that come free are drawn. A copy takes what was flipped last, so it
// comes before anything is drawn.
static void AddShift(const Frame &before, const Frame &after, Damage &damage)
{
    const int dx = after.dx - before.dx, dy = after.dy - before.dy;
    const Rect band = after.band;
    const Rect target = Intersection(band, Moved(band, dx, dy));

    if (IsEmpty(target)) {
        damage.Add(band);
        return;
    }
    damage.shifts[damage.shift_count++] = {Moved(target, -dx, -dy), target.x, target.y};
    damage.Add(FromEdges(band.x, band.y, band.Right(), target.y));
    damage.Add(FromEdges(band.x, target.Bottom(), band.Right(), band.Bottom()));
    damage.Add(FromEdges(band.x, band.y, target.x, band.Bottom()));
    damage.Add(FromEdges(target.Right(), band.y, band.Right(), band.Bottom()));
}

void Compare(const View &view, const Scene &before, const Scene &after, bool all, bool may_shift,
             Damage &damage)
{
    damage.count = damage.shift_count = 0;
    const bool everything = all || before.economy != after.economy;
    for (int i = 0; i < kPanels; ++i) {
        const Panel &old = before.panels[i], &panel = after.panels[i];
        const bool alike = memcmp(&old.frame, &panel.frame, sizeof old.frame) == 0;

        if (!old.frame.exists && !panel.frame.exists) continue;
        if (everything) {
            damage.Add(Seen(old.frame));
            damage.Add(Seen(panel.frame));
        } else if (alike) {
            AddRows(old, panel, damage);
        } else if (DiffersInThis(old, panel, [&](Frame &frame) { frame.shown = panel.frame.shown; })) {
            AddStrip(old.frame.shown, panel.frame.shown, damage);
        } else if (may_shift && StandsFree(before, i) && StandsFree(after, i) &&
                   IsSame(Seen(panel.frame), OuterRect(panel.frame)) &&
                   IsSame(Intersection(view.plane, panel.frame.band), panel.frame.band) &&
                   DiffersInThis(old, panel, [&](Frame &frame) {
                       frame.dx = panel.frame.dx;
                       frame.dy = panel.frame.dy;
                   })) {
            AddShift(old.frame, panel.frame, damage);
        } else {
            damage.Add(Seen(old.frame));
            damage.Add(Seen(panel.frame));
        }
    }
    for (int i = 0; i < damage.count; ++i) damage.rects[i] = Intersection(damage.rects[i], view.plane);
}

} // namespace captions
