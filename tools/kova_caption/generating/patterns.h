// SPDX-License-Identifier: MIT
// Test patterns: short recordings that exercise one feature each, and say what must be seen.
#ifndef KOVA_CAPTION_GENERATING_PATTERNS_H
#define KOVA_CAPTION_GENERATING_PATTERNS_H

#include <string>
#include <vector>

#include "generating/recording.h"

namespace caption
{

struct Pattern {
    const char *name;
    const char *purpose;
    const char *seen; // what a viewer must see
    void (*write)(Script &script);
};

// In the order of the list: CEA-708, CEA-608, damage.
const std::vector<Pattern> &Patterns();

// Null if there is none of that name.
const Pattern *FindPattern(const std::string &name);

Recording Record(const Pattern &pattern);

// Their functions, one for each row of the table. What each shows is said there.
namespace patterns
{

// patterns708.cpp
void WindowStyles(Script &script);
void WindowFills(Script &script);
void Borders(Script &script);
void PenStyles(Script &script);
void Fonts(Script &script);
void Edges(Script &script);
void ColorCube(Script &script);
void Opacities(Script &script);
void Flashing(Script &script);
void PenSizes(Script &script);
void PenOffsets(Script &script);
void Characters708(Script &script);

// patterns708_windows.cpp
void Anchors(Script &script);
void RelativeAnchors(Script &script);
void Priorities(Script &script);
void Directions(Script &script);
void Justification(Script &script);
void Effects(Script &script);
void WindowCommands(Script &script);
void Delays(Script &script);
void Services(Script &script);

// patterns608.cpp
void PopOn(Script &script);
void RollUp(Script &script);
void PaintOn(Script &script);
void Rows(Script &script);
void Attributes608(Script &script);
void Characters608(Script &script);
void Channels608(Script &script);

// patterns_damaged.cpp
void Damaged608(Script &script);
void Damaged708(Script &script);

} // namespace patterns

} // namespace caption

#endif
