// SPDX-License-Identifier: MIT
// What the codes of line 21 do to the memories of a channel. Rows and columns count from 0.
#ifndef KOVA_CAPTIONS_CEA608_H
#define KOVA_CAPTIONS_CEA608_H

#include "state.h"

namespace captions
{

constexpr int kCaptionChannels = 4;
constexpr uint8_t kLastRow = kChannelRows - 1;
constexpr uint8_t kLastColumn = kChannelColumns - 1;

// What the low bits of mid-row, preamble and background codes say.
uint8_t ForegroundOf(uint8_t bits);
uint8_t BackgroundOf(uint8_t bits);
bool IsItalics(uint8_t bits);

// Puts a character or code at the cursor and moves the cursor on.
void Put(State &state, Channel &channel, Code code);

// Moves the cursor back to the cell of the last character, which what comes replaces.
void StepOntoLast(Channel &channel);

void Backspace(State &state, Channel &channel);
void DeleteToEndOfRow(State &state, Channel &channel);
void MoveCursor(Channel &channel, uint8_t row, uint8_t column);
void SwapMemories(State &state, Channel &channel);

// Moves the roll-up window to another base row, or as near as its depth allows.
void MoveBaseRow(State &state, Channel &channel, uint8_t row);

// Changes the depth of the roll-up window; rows that fall out are erased.
void SetDepth(State &state, Channel &channel, uint8_t depth);

// Moves rows first to last up by one; the last becomes empty.
void RollRows(State &state, Channel &channel, uint8_t first, uint8_t last);

} // namespace captions

#endif // KOVA_CAPTIONS_CEA608_H
