// SPDX-License-Identifier: MIT
#include "events.h"

#include <string.h>

namespace captions
{

// The place of a new event, zeroed, or null where none is wanted or there is no room.
static KovaCaptionsEvent *NewEvent(State &state, int64_t time, uint8_t source, uint8_t code)
{
    Events &events = state.events;
    if (events.capacity == 0) return nullptr;
    if (events.count == events.capacity) return ++state.counters.lost_events, nullptr;

    const uint32_t free = events.capacity - events.first;
    KovaCaptionsEvent *const event =
        &events.ring[events.count < free ? events.first + events.count : events.count - free];
    ++events.count;
    memset(event, 0, sizeof *event);
    event->time = time;
    event->source = source;
    event->code = code;
    return event;
}

static void Fill(KovaCaptionsEvent &event, const uint16_t *characters, int count)
{
    event.character_count = uint8_t(count);
    memcpy(event.characters, characters, unsigned(count) * sizeof *characters);
}

void Report(State &state, uint8_t source, uint8_t code, std::initializer_list<unsigned> arguments)
{
    KovaCaptionsEvent *const event = NewEvent(state, state.now, source, code);
    if (!event) return;
    for (unsigned argument : arguments) event->arguments[event->argument_count++] = uint16_t(argument);
}

void ReportText(State &state, uint8_t source, uint8_t code, const uint16_t *characters, int count)
{
    KovaCaptionsEvent *const event = NewEvent(state, state.now, source, code);
    if (event) Fill(*event, characters, count);
}

void AddToRun(State &state, Run &run, uint8_t source, uint16_t character)
{
    if (state.events.capacity == 0) return;
    if (run.source != source || run.count == KOVA_CAPTIONS_EVENT_CHARACTERS) EndRun(state, run);
    if (run.count == 0) {
        run.source = source;
        run.time = state.now;
    }
    run.characters[run.count++] = character;
}

void ReplaceInRun(State &state, Run &run, uint8_t source, uint16_t character)
{
    if (run.count > 0 && run.source == source) --run.count;
    AddToRun(state, run, source, character);
}

void EndRun(State &state, Run &run)
{
    if (run.count == 0) return;
    KovaCaptionsEvent *const event = NewEvent(state, run.time, run.source, KOVA_CAPTIONS_EVENT_TEXT);
    if (event) Fill(*event, run.characters, run.count);
    run = {};
}

void EndAllRuns(State &state)
{
    for (Field &field : state.fields) EndRun(state, field.run);
    for (uint32_t i = 0; i < state.service_count; ++i) EndRun(state, state.services[i].run);
}

} // namespace captions
