// SPDX-License-Identifier: MIT
// What tools see of the decoding: a bounded ring of codes and runs of text.
#ifndef KOVA_CAPTIONS_EVENTS_H
#define KOVA_CAPTIONS_EVENTS_H

#include "state.h"

#include <initializer_list>

namespace captions
{

// Reports a code with its arguments.
void Report(State &state, uint8_t source, uint8_t code, std::initializer_list<unsigned> arguments = {});

// Reports a text that is whole.
void ReportText(State &state, uint8_t source, uint8_t code, const uint16_t *characters, int count);

// Goes on with a run of text; a run of another source ends first.
void AddToRun(State &state, Run &run, uint8_t source, uint16_t character);

// Puts a character in the place of the run's last one.
void ReplaceInRun(State &state, Run &run, uint8_t source, uint16_t character);

void EndRun(State &state, Run &run);
void EndAllRuns(State &state);

} // namespace captions

#endif // KOVA_CAPTIONS_EVENTS_H
