// SPDX-License-Identifier: MIT
// The public interface: one block of memory, one lock, and copies of the state.
#include "decoder.h"

#include "cea708.h"
#include "events.h"

#include <stdlib.h>
#include <string.h>

using namespace captions;

static void Lock(KovaCaptions *decoder)
{
    pthread_mutex_lock(&decoder->mutex);
}

static void Unlock(KovaCaptions *decoder)
{
    __atomic_store_n(&decoder->revision, decoder->state.revision, __ATOMIC_RELEASE);
    pthread_mutex_unlock(&decoder->mutex);
}

// ---------------------------------------------------------------------------------------------------------- Creation

// Times and timeouts stay so small that sums of them are in range.
constexpr int64_t kLongestTimeout = int64_t(1) << 61;
constexpr int64_t kDefaultTimeout = 16000000;
constexpr uint64_t kAllServices = ~uint64_t(1);

void Kova_Captions_GetDefaults(KovaCaptionsOptions *options)
{
    if (!options) return;
    *options = {};
    options->services = kAllServices;
    options->channel_timeout = kDefaultTimeout;
    options->service_timeout = kDefaultTimeout;
}

static KovaCaptionsOptions Chosen(const KovaCaptionsOptions *options)
{
    KovaCaptionsOptions chosen;
    Kova_Captions_GetDefaults(&chosen);
    if (options) chosen = *options;
    chosen.services &= kAllServices;
    if (chosen.channel_timeout > kLongestTimeout) chosen.channel_timeout = kLongestTimeout;
    if (chosen.service_timeout > kLongestTimeout) chosen.service_timeout = kLongestTimeout;
    return chosen;
}

static uint32_t CountServices(uint64_t services)
{
    uint32_t count = 0;
    for (; services; services &= services - 1) ++count;
    return count;
}

static size_t MemorySize(const KovaCaptionsOptions &options)
{
    if (options.channel_timeout < 0 || options.service_timeout < 0) return 0;
    const size_t fixed = sizeof(KovaCaptions) + CountServices(options.services) * sizeof(Service);
    if (options.event_capacity > (SIZE_MAX - fixed) / sizeof(KovaCaptionsEvent)) return 0;
    return fixed + options.event_capacity * sizeof(KovaCaptionsEvent);
}

size_t Kova_Captions_GetMemorySize(const KovaCaptionsOptions *options)
{
    return MemorySize(Chosen(options));
}

static void NumberServices(State &state)
{
    uint32_t next = 0;
    for (int number = 0; number < kServices; ++number) {
        const bool wanted = state.options.services >> number & 1;

        state.slot[number] = wanted ? uint8_t(next) : kNoSlot;
        if (!wanted) continue;
        Service &service = state.services[next++];
        service.number = uint8_t(number);
        service.korean = state.options.korean_services >> number & 1;
        service.used = true;
    }
}

// The services and the events follow the decoder in its block of memory.
static void LayOut(KovaCaptions *decoder, const KovaCaptionsOptions &options)
{
    State &state = decoder->state;

    state.options = options;
    state.service_count = CountServices(options.services);
    state.services = reinterpret_cast<Service *>(decoder + 1);
    state.events.capacity = options.event_capacity;
    state.events.ring = reinterpret_cast<KovaCaptionsEvent *>(state.services + state.service_count);
}

KovaCaptions *Kova_Captions_Create(const KovaCaptionsOptions *options)
{
    const KovaCaptionsOptions chosen = Chosen(options);
    const size_t size = MemorySize(chosen);
    auto *const decoder = size ? static_cast<KovaCaptions *>(calloc(1, size)) : nullptr;

    if (!decoder) return nullptr;
    if (pthread_mutex_init(&decoder->mutex, nullptr) != 0) return free(decoder), nullptr;
    LayOut(decoder, chosen);
    NumberServices(decoder->state);
    ResetAll(decoder->state);
    decoder->revision = decoder->state.revision;
    return decoder;
}

void Kova_Captions_Destroy(KovaCaptions *decoder)
{
    if (!decoder) return;
    pthread_mutex_destroy(&decoder->mutex);
    free(decoder);
}

// ----------------------------------------------------------------------------------------------------------- Feeding

int Kova_Captions_PushTriplets(KovaCaptions *decoder, int64_t time, const uint8_t *triplets, size_t count)
{
    if (!decoder || (!triplets && count > 0)) return -1;
    Lock(decoder);
    MoveTime(decoder->state, time);
    for (size_t i = 0; i < count; ++i) DecodeTriplet(decoder->state, triplets + 3 * i);
    return Unlock(decoder), 0;
}

static void CountCutData(State &state, size_t announced, size_t present)
{
    ++state.counters.cut_cc_data;
    Report(state, KOVA_CAPTIONS_NONE, KOVA_CAPTIONS_EVENT_CUT_CC_DATA,
           {unsigned(announced), unsigned(present)});
}

int Kova_Captions_PushCcData(KovaCaptions *decoder, int64_t time, const uint8_t *data, size_t size)
{
    constexpr size_t kHeader = 2;
    if (!decoder || !data) return -1;

    const bool process = size > 0 && (data[0] & 0x40);
    const size_t announced = size > 0 ? data[0] & 0x1F : 0;
    const size_t present = size > kHeader ? (size - kHeader) / 3 : 0;
    Lock(decoder);
    MoveTime(decoder->state, time);
    if (process || size == 0) {
        const bool cut = size < kHeader || present < announced;
        for (size_t i = 0; i < (cut ? present : announced); ++i) {
            DecodeTriplet(decoder->state, data + kHeader + 3 * i);
        }
        if (cut) CountCutData(decoder->state, announced, present);
    }
    return Unlock(decoder), 0;
}

int Kova_Captions_PushPair(KovaCaptions *decoder, int64_t time, int field, uint8_t first, uint8_t second)
{
    if (!decoder || (field != 1 && field != 2)) return -1;
    const uint8_t triplet[3] = {uint8_t(0xFC | (field - 1)), first, second};
    return Kova_Captions_PushTriplets(decoder, time, triplet, 1);
}

int Kova_Captions_Advance(KovaCaptions *decoder, int64_t time)
{
    return Kova_Captions_PushTriplets(decoder, time, nullptr, 0);
}

int Kova_Captions_Discontinuity(KovaCaptions *decoder)
{
    if (!decoder) return -1;
    Lock(decoder);
    TakeDiscontinuity(decoder->state);
    return Unlock(decoder), 0;
}

// ------------------------------------------------------------------------------------------------------------ Sources

static bool IsChannel(uint8_t source)
{
    return source >= KOVA_CAPTIONS_CC1 && source <= KOVA_CAPTIONS_T4;
}

static Service *FindService(State &state, uint8_t number)
{
    if (number >= kServices || state.slot[number] == kNoSlot) return nullptr;
    return &state.services[state.slot[number]];
}

static const KovaCaptionsStatus *FindStatus(State &state, uint8_t source)
{
    if (IsChannel(source)) return &state.channels[source - KOVA_CAPTIONS_CC1].status;
    const Service *const service = FindService(state, source);
    return service ? &service->status : nullptr;
}

static void EraseSelected(State &state, Channel &channel)
{
    EraseMemory(state, channel, channel.displayed);
    EraseMemory(state, channel, channel.non_displayed);
    SettleFlash(state, channel);
}

int Kova_Captions_Select(KovaCaptions *decoder, uint8_t source, int keep)
{
    if (!decoder || !FindStatus(decoder->state, source)) return -1;
    if (!IsChannel(source) || keep) return 0;
    Lock(decoder);
    EraseSelected(decoder->state, decoder->state.channels[source - KOVA_CAPTIONS_CC1]);
    return Unlock(decoder), 0;
}

// ------------------------------------------------------------------------------------------------------------ Reading

uint32_t Kova_Captions_Revision(const KovaCaptions *decoder)
{
    return decoder ? __atomic_load_n(&decoder->revision, __ATOMIC_ACQUIRE) : 0;
}

int Kova_Captions_GetStatus(KovaCaptions *decoder, uint8_t source, KovaCaptionsStatus *status)
{
    const KovaCaptionsStatus *const found = decoder ? FindStatus(decoder->state, source) : nullptr;
    if (!found || !status) return -1;
    Lock(decoder);
    *status = *found;
    return Unlock(decoder), 0;
}

static void CopyMemory(const Memory &memory, KovaCaptionsChannelCell (*rows)[kChannelColumns])
{
    for (int row = 0; row < kChannelRows; ++row) ReadRow(memory.cells[row], rows[row]);
}

// As a memory that a channel does not have.
static void EmptyCells(KovaCaptionsChannelCell (*rows)[kChannelColumns])
{
    const Code nothing[kChannelColumns] = {};
    for (int row = 0; row < kChannelRows; ++row) ReadRow(nothing, rows[row]);
}

static void CopyChannel(const State &state, const Channel &from, KovaCaptionsChannel &to)
{
    const Memory &displayed = state.memories[from.displayed];

    memset(&to, 0, sizeof to);
    to.status = from.status;
    to.roll = from.roll;
    memcpy(to.row_revision, displayed.row_revision, sizeof to.row_revision);
    to.mode = from.mode;
    to.depth = from.depth;
    to.base_row = from.base_row;
    to.cursor_row = from.row;
    to.cursor_column = from.column;
    CopyMemory(displayed, to.displayed);
    CopyMemory(state.memories[from.non_displayed], to.non_displayed);
    if (!HasNonDisplayedMemory(from)) EmptyCells(to.non_displayed);
}

int Kova_Captions_GetChannel(KovaCaptions *decoder, uint8_t source, KovaCaptionsChannel *channel)
{
    if (!decoder || !channel || !IsChannel(source)) return -1;
    Lock(decoder);
    CopyChannel(decoder->state, decoder->state.channels[source - KOVA_CAPTIONS_CC1], *channel);
    return Unlock(decoder), 0;
}

static KovaCaptionsPen PenOf(const Cell &cell)
{
    KovaCaptionsPen pen = {};
    pen.foreground = cell.foreground & 0x3F;
    pen.foreground_opacity = cell.foreground >> 6;
    pen.background = cell.background & 0x3F;
    pen.background_opacity = cell.background >> 6;
    pen.edge_color = cell.edge_color & 0x3F;
    pen.edge_type = cell.font & 7;
    pen.size = cell.font >> 6;
    pen.offset = cell.edge_color >> 6;
    pen.font = cell.font >> 3 & 7;
    pen.italics = cell.style >> 7;
    pen.underline = cell.style >> 6 & 1;
    pen.text_tag = cell.style & 0x0F;
    return pen;
}

static void CopyWindow(const Window &from, KovaCaptionsWindow &to)
{
    memset(&to, 0, sizeof to);
    to.effect = from.effect;
    to.scroll = from.scroll;
    to.revision = from.revision;
    memcpy(to.row_revision, from.row_revision, sizeof to.row_revision);
    to.exists = from.exists;
    to.visible = from.visible;
    to.pen_row = from.pen_row;
    to.pen_column = from.pen_column;
    to.definition = from.definition;
    to.attributes = from.attributes;
    to.pen = from.pen;
    for (int row = 0; row < from.definition.rows; ++row) {
        for (int column = 0; column < from.definition.columns; ++column) {
            const Cell &cell = from.cells[row][column];
            if (cell.kind == KOVA_CAPTIONS_EMPTY) continue;
            to.cells[row][column] = {cell.character, cell.kind, 0, PenOf(cell)};
        }
    }
}

static void CopyService(const Service &from, KovaCaptionsService &to)
{
    to = {};
    to.status = from.status;
    to.delay_until = from.delay_until;
    to.current_window = from.current;
    for (int index = 0; index < kWindows; ++index) {
        if (from.windows[index].exists) to.existing_windows |= uint8_t(1 << index);
        if (from.windows[index].visible) to.visible_windows |= uint8_t(1 << index);
    }
    to.blanked = from.blanked;
    to.buffered = from.size;
}

int Kova_Captions_GetService(KovaCaptions *decoder, uint8_t number, KovaCaptionsService *state,
                             KovaCaptionsWindow *windows, uint8_t window_map)
{
    const Service *const service = decoder ? FindService(decoder->state, number) : nullptr;
    if (!service || (!windows && window_map != 0)) return -1;
    Lock(decoder);
    if (state) CopyService(*service, *state);
    for (int index = 0; index < kWindows; ++index) {
        if (window_map >> index & 1) CopyWindow(service->windows[index], windows[index]);
    }
    return Unlock(decoder), 0;
}

template <typename Record> static int Copy(KovaCaptions *decoder, const Record &from, Record *to)
{
    Lock(decoder);
    *to = from;
    return Unlock(decoder), 0;
}

int Kova_Captions_GetProgram(KovaCaptions *decoder, KovaCaptionsProgram *program)
{
    if (!decoder || !program) return -1;
    return Copy(decoder, decoder->state.program, program);
}

int Kova_Captions_GetActivity(KovaCaptions *decoder, KovaCaptionsActivity *activity)
{
    if (!decoder || !activity) return -1;
    return Copy(decoder, decoder->state.activity, activity);
}

int Kova_Captions_GetCounters(KovaCaptions *decoder, KovaCaptionsCounters *counters)
{
    if (!decoder || !counters) return -1;
    return Copy(decoder, decoder->state.counters, counters);
}

int64_t Kova_Captions_NextChange(KovaCaptions *decoder, uint8_t source, unsigned kinds)
{
    if (!decoder) return KOVA_CAPTIONS_NEVER;
    Lock(decoder);
    const int64_t next = NextChange(decoder->state, source, kinds);
    return Unlock(decoder), next;
}

// ------------------------------------------------------------------------------------------------------------- Events

static bool TakeEvent(Events &events, KovaCaptionsEvent &event)
{
    if (events.count == 0) return false;
    event = events.ring[events.first];
    if (++events.first == events.capacity) events.first = 0;
    --events.count;
    return true;
}

int Kova_Captions_NextEvent(KovaCaptions *decoder, KovaCaptionsEvent *event)
{
    if (!decoder || !event) return -1;
    Lock(decoder);
    const bool taken = TakeEvent(decoder->state.events, *event);
    return Unlock(decoder), taken;
}

int Kova_Captions_EndRuns(KovaCaptions *decoder)
{
    if (!decoder) return -1;
    Lock(decoder);
    EndAllRuns(decoder->state);
    return Unlock(decoder), 0;
}
