// SPDX-License-Identifier: MIT
// What differs between two scenes: the rectangles to draw again, and the panels whose pixels only move.
#ifndef KOVA_CAPTIONS_DAMAGE_H
#define KOVA_CAPTIONS_DAMAGE_H

#include "scene.h"

namespace captions
{

// A copy of pixels by a scroll's step.
struct Shift {
    Rect from;
    int x, y;
};

struct Damage {
    static constexpr int kMost = 160;
    Rect rects[kMost];
    int count;
    Shift shifts[kPanels];
    int shift_count;

    void Add(const Rect &rect);
};

// Everything of both scenes if the palette entries are other ones, or `all` is asked for.
void Compare(const View &view, const Scene &before, const Scene &after, bool all, bool may_shift,
             Damage &damage);

} // namespace captions

#endif
