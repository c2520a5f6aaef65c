// SPDX-License-Identifier: MIT
// What time does without bytes: it ends delays, effects, rolls and scrolls, and blanks what has become old.
#include "cea708.h"
#include "events.h"

namespace captions
{

constexpr int64_t kLimit = int64_t(1) << 61;
constexpr int64_t kBackwards = 1000000;

static int64_t Earlier(int64_t a, int64_t b)
{
    return a < b ? a : b;
}

static int64_t EndOf(const KovaCaptionsMotion &motion)
{
    return motion.kind == KOVA_CAPTIONS_STILL ? KOVA_CAPTIONS_NEVER : motion.start + motion.duration;
}

static bool HasDrawnWindow(const Service &service)
{
    for (const Window &window : service.windows) {
        if (IsDrawn(service, window)) return true;
    }
    return false;
}

// --------------------------------------------------------------------------------------------------------- What ends

// When the displayed memory of a caption channel has become old. [608 C.9]
static int64_t TimeoutOf(const State &state, const Channel &channel)
{
    if (!HasNonDisplayedMemory(channel) || state.options.channel_timeout == 0 ||
        channel.last_data == KOVA_CAPTIONS_NO_TIME || IsBlank(state.memories[channel.displayed]))
        return KOVA_CAPTIONS_NEVER;
    return channel.last_data + state.options.channel_timeout;
}

static int64_t TimeoutOf(const State &state, const Service &service)
{
    if (state.options.service_timeout == 0 || !HasDrawnWindow(service)) return KOVA_CAPTIONS_NEVER;
    return state.last_dtvcc + state.options.service_timeout;
}

static int64_t DelayOf(const Service &service)
{
    return service.delay_until == KOVA_CAPTIONS_NO_TIME ? KOVA_CAPTIONS_NEVER : service.delay_until;
}

static int64_t MotionOf(const Service &service)
{
    int64_t end = KOVA_CAPTIONS_NEVER;
    for (const Window &window : service.windows) {
        end = Earlier(end, EndOf(window.effect));
        end = Earlier(end, EndOf(window.scroll));
    }
    return end;
}

static int64_t NextEnd(const State &state)
{
    int64_t next = KOVA_CAPTIONS_NEVER;
    for (const Channel &channel : state.channels) {
        next = Earlier(next, EndOf(channel.roll));
        next = Earlier(next, TimeoutOf(state, channel));
    }
    for (uint32_t i = 0; i < state.service_count; ++i) {
        const Service &service = state.services[i];
        if (!service.used) continue;
        next = Earlier(next, DelayOf(service));
        next = Earlier(next, MotionOf(service));
        next = Earlier(next, TimeoutOf(state, service));
    }
    return next;
}

// ------------------------------------------------------------------------------------------------------------ Ending

static void CountTimeout(State &state, uint8_t source, Run *run)
{
    ++state.counters.timeouts;
    if (run) EndRun(state, *run);
    Report(state, source, KOVA_CAPTIONS_EVENT_TIMEOUT);
}

static void EndMotions(State &state, Channel &channel)
{
    if (EndOf(channel.roll) > state.now) return;
    channel.roll = {};
    Touch(state, channel.status, false);
}

static void EndMotions(const Target &target)
{
    if (EndOf(target.window.scroll) <= target.state.now) {
        target.window.scroll = {};
        TouchUnseen(target);
    }
    if (EndOf(target.window.effect) <= target.state.now) {
        // The touch comes first: a window on its way out is seen until now.
        TouchWindow(target);
        target.window.effect = {};
        if (!target.window.visible) target.window.scroll = {};
    }
}

static void TimeOut(State &state, Channel &channel)
{
    if (TimeoutOf(state, channel) > state.now) return;
    const auto index = uint8_t(&channel - state.channels);
    Run &run = state.fields[index >> 1 & 1].run;
    CountTimeout(state, uint8_t(KOVA_CAPTIONS_CC1 + index), &run);
    EraseMemory(state, channel, channel.displayed);
    SettleFlash(state, channel);
}

// Definitions, visibility and hidden windows stay, so that what was sent ahead can still be shown.
static void TimeOut(State &state, Service &service)
{
    if (TimeoutOf(state, service) > state.now) return;
    CountTimeout(state, service.number, &service.run);
    for (Window &window : service.windows) {
        const Target target = {state, service, window};
        if (!IsDrawn(service, window)) continue;
        EraseText(target);
        TouchWindow(target);
        window.effect = {};
    }
    service.blanked = state.blanked = true;
    SettleFlash(state, service);
}

static void EndWhatIsDue(State &state)
{
    for (Channel &channel : state.channels) {
        EndMotions(state, channel);
        TimeOut(state, channel);
    }
    for (uint32_t i = 0; i < state.service_count; ++i) {
        Service &service = state.services[i];
        if (!service.used) continue;
        for (Window &window : service.windows) EndMotions({state, service, window});
        TimeOut(state, service);
        if (DelayOf(service) <= state.now) EndDelay(state, service);
        SettleFlash(state, service);
    }
}

void EndBlanking(State &state)
{
    if (!state.blanked) return;
    state.blanked = false;
    for (uint32_t i = 0; i < state.service_count; ++i) {
        Service &service = state.services[i];
        if (!service.blanked) continue;
        service.blanked = false;
        Touch(state, service.status, HasDrawnWindow(service));
    }
}

static int64_t Clamp(int64_t time)
{
    return time < -kLimit ? -kLimit : time > kLimit ? kLimit : time;
}

void MoveTime(State &state, int64_t wanted)
{
    const int64_t time = Clamp(wanted);

    if (state.now != KOVA_CAPTIONS_NO_TIME && time < state.now - kBackwards) TakeDiscontinuity(state);
    if (state.now == KOVA_CAPTIONS_NO_TIME) state.now = time;
    while (state.due <= time) {
        // What is due may have been moved on or cancelled since.
        state.due = NextEnd(state);
        if (state.due > time) break;
        state.now = state.due;
        EndWhatIsDue(state);
    }
    if (state.now < time) state.now = time;
}

// ------------------------------------------------------------------------------------------------------------- Flash

static void SettleFlash(const State &state, KovaCaptionsStatus &status, bool flashes)
{
    if (!flashes) {
        status.flash_since = KOVA_CAPTIONS_NO_TIME;
    } else if (status.flash_since == KOVA_CAPTIONS_NO_TIME) {
        status.flash_since = state.now;
    }
}

void SettleFlash(State &state, Channel &channel)
{
    SettleFlash(state, channel.status, HasFlash(state.memories[channel.displayed]));
}

static bool IsFlashing(const Cell &cell)
{
    const bool glyph = cell.character != ' ' && cell.foreground >> 6 == KOVA_CAPTIONS_FLASH;
    const bool background = cell.background >> 6 == KOVA_CAPTIONS_FLASH;
    return cell.kind == KOVA_CAPTIONS_CHARACTER && (glyph || background);
}

static bool HasFlash(Window &window)
{
    if (!window.may_flash) return false;
    if (window.attributes.fill_opacity == KOVA_CAPTIONS_FLASH) return true;
    for (int row = 0; row < window.definition.rows; ++row) {
        for (int column = 0; column < window.definition.columns; ++column) {
            if (IsFlashing(window.cells[row][column])) return true;
        }
    }
    window.may_flash = false;
    return false;
}

void SettleFlash(State &state, Service &service)
{
    bool flashes = false;
    for (Window &window : service.windows) {
        if (IsDrawn(service, window) && HasFlash(window)) flashes = true;
    }
    SettleFlash(state, service.status, flashes);
}

// ------------------------------------------------------------------------------------------------------- Next change

static int64_t NextStep(const State &state, int64_t end)
{
    return end == KOVA_CAPTIONS_NEVER ? end : Earlier(end, state.now + KOVA_CAPTIONS_STEP);
}

static int64_t NextPhase(const State &state, const KovaCaptionsStatus &status)
{
    if (status.flash_since == KOVA_CAPTIONS_NO_TIME) return KOVA_CAPTIONS_NEVER;
    const int64_t phases = (state.now - status.flash_since) / KOVA_CAPTIONS_FLASH_HALF + 1;
    return status.flash_since + phases * KOVA_CAPTIONS_FLASH_HALF;
}

static int64_t NextChange(const State &state, const Channel &channel, unsigned kinds)
{
    int64_t next = KOVA_CAPTIONS_NEVER;
    if (kinds & KOVA_CAPTIONS_CHANGE_STATE) next = Earlier(next, TimeoutOf(state, channel));
    if (kinds & KOVA_CAPTIONS_CHANGE_MOTION) next = Earlier(next, NextStep(state, EndOf(channel.roll)));
    if (kinds & KOVA_CAPTIONS_CHANGE_FLASH) next = Earlier(next, NextPhase(state, channel.status));
    return next;
}

static int64_t NextChange(const State &state, const Service &service, unsigned kinds)
{
    int64_t next = KOVA_CAPTIONS_NEVER;
    if (kinds & KOVA_CAPTIONS_CHANGE_STATE) {
        next = Earlier(next, DelayOf(service));
        next = Earlier(next, TimeoutOf(state, service));
    }
    if (kinds & KOVA_CAPTIONS_CHANGE_MOTION) next = Earlier(next, NextStep(state, MotionOf(service)));
    if (kinds & KOVA_CAPTIONS_CHANGE_FLASH) next = Earlier(next, NextPhase(state, service.status));
    return next;
}

int64_t NextChange(const State &state, uint8_t source, unsigned kinds)
{
    int64_t next = KOVA_CAPTIONS_NEVER;
    for (int channel = 0; channel < kChannels; ++channel) {
        const bool wanted = source == KOVA_CAPTIONS_NONE || source == KOVA_CAPTIONS_CC1 + channel;
        if (wanted) next = Earlier(next, NextChange(state, state.channels[channel], kinds));
    }
    for (uint32_t i = 0; i < state.service_count; ++i) {
        const Service &service = state.services[i];
        const bool wanted = source == KOVA_CAPTIONS_NONE || source == service.number;
        if (wanted && service.used) next = Earlier(next, NextChange(state, service, kinds));
    }
    return next;
}

} // namespace captions
