// SPDX-License-Identifier: MIT
// What moves: effects that show and hide a panel, and rows that scroll.
#ifndef KOVA_CAPTIONS_MOTION_H
#define KOVA_CAPTIONS_MOTION_H

#include "scene.h"

namespace captions
{

// Whether a motion is under way; asks for the next step.
bool IsMoving(View &view, const KovaCaptionsMotion &motion);

// Wipes and fades a placed panel; removes it where the effect has hidden it.
void ApplyEffect(View &view, const KovaCaptionsMotion &effect, bool visible, Frame &frame, uint8_t &alpha);

// Displaces the cells; `before` is the panel as it is on the screen, of which a row may be leaving.
void ApplyScroll(View &view, const KovaCaptionsMotion &scroll, int first_row, const Panel &before,
                 Panel &panel);

} // namespace captions

#endif
