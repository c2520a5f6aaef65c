// SPDX-License-Identifier: MIT
// What the commands of a caption service do to its windows.
#ifndef KOVA_CAPTIONS_CEA708_H
#define KOVA_CAPTIONS_CEA708_H

#include "state.h"

namespace captions
{

// The longest element: a variable C3 command.
constexpr int kLongestElement = 3 + 31;

// The bytes of the element that starts here, or 0 if it is not complete yet. [708 7.1]
int ElementLength(const uint8_t *bytes, int count, bool korean);

// A window with the service it belongs to.
struct Target {
    State &state;
    Service &service;
    Window &window;
};

// Whether a viewer sees the window: visible, or on its way out.
bool IsDrawn(const Service &service, const Window &window);

// Says that something of a window changed.
void TouchWindow(const Target &target);
// Says the same of what no viewer sees.
void TouchUnseen(const Target &target);

void SetPen(Window &window, const KovaCaptionsPen &pen);
void SetVisible(const Target &target, bool visible);
void SetAttributes(const Target &target, const KovaCaptionsWindowAttributes &attributes);
void Resize(const Target &target, uint8_t rows, uint8_t columns);
void CreateWindow(const Target &target);
void DeleteWindow(const Target &target);
void EraseText(const Target &target);

// Prints at the pen and moves the pen on.
void Print(const Target &target, uint16_t character, uint8_t kind);

// Says that what comes for the pen's row is a new row. [708 8.4]
void CompleteRow(Window &window);

void MovePen(Window &window, uint8_t row, uint8_t column);
// Moves the pen as SetPenLocation does.
void LocatePen(const Target &target, uint8_t row, uint8_t column);

void MovePenBack(const Target &target);
void StartNextRow(const Target &target);
void EraseRow(const Target &target);

} // namespace captions

#endif // KOVA_CAPTIONS_CEA708_H
