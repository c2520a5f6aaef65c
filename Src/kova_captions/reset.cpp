// SPDX-License-Identifier: MIT
// The initial state of everything.
#include "events.h"

#include <string.h>

namespace captions
{

static void ResetField(Field &field)
{
    field = {};
    for (uint8_t &selected : field.selected) selected = kNoChannel;
}

static void ForgetTimes(KovaCaptionsStatus &status)
{
    status.visible_since = KOVA_CAPTIONS_NO_TIME;
    status.flash_since = KOVA_CAPTIONS_NO_TIME;
}

static void ResetProgram(State &state)
{
    const KovaCaptionsProgram &program = state.program;
    const bool known = program.start_month || program.rating_system || program.name[0] ||
                       program.network[0] || program.call_letters[0];
    const uint32_t revision = program.revision;

    state.program = {};
    state.program.revision = known ? ++state.revision : revision;
}

void ResetAll(State &state)
{
    for (Field &field : state.fields) ResetField(field);
    for (int channel = 0; channel < kChannels; ++channel) {
        ResetChannel(state, channel);
        ForgetTimes(state.channels[channel].status);
    }
    for (uint32_t i = 0; i < state.service_count; ++i) {
        ResetService(state, state.services[i]);
        ForgetTimes(state.services[i].status);
    }
    state.extended = {};
    state.extended.active = kNoClass;
    ResetProgram(state);
    DropPacket(state);
    state.packet.sequence = kNoSequence;
    state.last_dtvcc = KOVA_CAPTIONS_NO_TIME;
    state.blanked = false;
    state.activity = {};
    state.now = KOVA_CAPTIONS_NO_TIME;
    state.due = KOVA_CAPTIONS_NEVER;
}

void TakeDiscontinuity(State &state)
{
    ++state.counters.discontinuities;
    EndAllRuns(state);
    Report(state, KOVA_CAPTIONS_NONE, KOVA_CAPTIONS_EVENT_DISCONTINUITY);
    ResetAll(state);
}

} // namespace captions
