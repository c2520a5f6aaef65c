// SPDX-License-Identifier: MIT
#include "motion.h"

#include <string.h>

namespace captions
{

bool IsMoving(View &view, const KovaCaptionsMotion &motion)
{
    if (motion.kind == KOVA_CAPTIONS_STILL || motion.duration <= 0) return false;
    const int64_t end = motion.start + motion.duration;
    if (view.time >= end) return false;
    const int64_t step = view.time + KOVA_CAPTIONS_STEP;
    const int64_t next = step < end ? step : end;
    if (next < view.next) view.next = next;
    return true;
}

// The part of a length that is done.
static int Done(const View &view, const KovaCaptionsMotion &motion, int length)
{
    const int64_t passed = view.time - motion.start;
    return passed <= 0 ? 0 : int(passed * length / motion.duration);
}

// What a wipe has not covered. A window that appears is uncovered from where the movement starts; one that goes is covered
// from there.
static Rect Uncovered(const Rect &whole, const KovaCaptionsMotion &effect, const View &view)
{
    const bool vertical = effect.direction >= KOVA_CAPTIONS_TOP_TO_BOTTOM;
    const bool forward =
        effect.direction == KOVA_CAPTIONS_LEFT_TO_RIGHT || effect.direction == KOVA_CAPTIONS_TOP_TO_BOTTOM;
    const int length = vertical ? whole.height : whole.width;
    const int done = Done(view, effect, length);
    const int seen = effect.showing ? done : length - done;
    const int skipped = forward == bool(effect.showing) ? 0 : length - seen;

    if (vertical) return {whole.x, whole.y + skipped, whole.width, seen};
    return {whole.x + skipped, whole.y, seen, whole.height};
}

void ApplyEffect(View &view, const KovaCaptionsMotion &effect, bool visible, Frame &frame, uint8_t &alpha)
{
    frame.shown = OuterRect(frame);
    const bool fades = effect.kind == KOVA_CAPTIONS_FADE && !view.snaps;
    const bool moves = effect.kind == KOVA_CAPTIONS_WIPE || fades;
    if (!moves || !IsMoving(view, effect)) {
        // Drawn at its end already, the decoder takes the window away a moment later.
        if (!visible) frame = {};
        return;
    }
    if (effect.kind == KOVA_CAPTIONS_WIPE) {
        frame.shown = Uncovered(frame.shown, effect, view);
        return;
    }
    const int done = Done(view, effect, 254);
    frame.fades = 1;
    alpha = uint8_t(effect.showing ? 1 + done : 255 - done);
}

// The row or column that the scroll pushes out: of the screen as it was when the scroll began, if it was drawn then.
static void KeepLeaver(const View &view, const Panel &before, int first_row, Panel &panel)
{
    Frame &frame = panel.frame;
    const bool alike = before.frame.exists && before.frame.rows == frame.rows &&
                       before.frame.columns == frame.columns && before.frame.margin == frame.margin;

    if (!alike) return;
    if (before.frame.scroll_start == frame.scroll_start) {
        memcpy(frame.leaver, before.frame.leaver, sizeof frame.leaver);
        return;
    }
    if (view.previous > frame.scroll_start) return;
    switch (frame.leaving) {
    case kAboveFirstRow:
        memcpy(frame.leaver, before.cells[first_row], sizeof frame.leaver);
        break;
    case kBelowLastRow:
        memcpy(frame.leaver, before.cells[frame.rows - 1], sizeof frame.leaver);
        break;
    default:
        for (int row = 0; row < frame.rows; ++row) {
            frame.leaver[row] =
                before.cells[row][frame.leaving == kLeftOfFirstColumn ? 0 : CellsOf(frame) - 1];
        }
    }
}

void ApplyScroll(View &view, const KovaCaptionsMotion &scroll, int first_row, const Panel &before,
                 Panel &panel)
{
    Frame &frame = panel.frame;

    if (!frame.exists || !IsMoving(view, scroll)) return;
    const int height = frame.area.height / frame.rows, width = frame.area.width / frame.columns;
    const int up = height - Done(view, scroll, height), across = width - Done(view, scroll, width);

    frame.scroll_start = scroll.start;
    frame.band = Intersection(frame.band, frame.rect);
    frame.shown = Intersection(frame.shown, OuterRect(frame));
    switch (scroll.direction) {
    case KOVA_CAPTIONS_LEFT_TO_RIGHT:
        frame.dx = -across;
        frame.leaving = kRightOfLastColumn;
        break;
    case KOVA_CAPTIONS_RIGHT_TO_LEFT:
        frame.dx = across;
        frame.leaving = kLeftOfFirstColumn;
        break;
    case KOVA_CAPTIONS_TOP_TO_BOTTOM:
        frame.dy = -up;
        frame.leaving = kBelowLastRow;
        frame.leaver_row = int8_t(frame.rows);
        break;
    default:
        frame.dy = up;
        frame.leaver_row = int8_t(first_row - 1);
        frame.leaving = kAboveFirstRow;
        break;
    }
    KeepLeaver(view, before, first_row, panel);
}

} // namespace captions
