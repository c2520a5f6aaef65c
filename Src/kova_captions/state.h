// SPDX-License-Identifier: MIT
// The state of a decoder, as plain data. Decoding is a function from state, bytes and time to state.
#ifndef KOVA_CAPTIONS_STATE_H
#define KOVA_CAPTIONS_STATE_H

#include <kova/kova_captions.h>

namespace captions
{

// Text that no code has ended yet, for the events.
struct Run {
    int64_t time;
    uint8_t source;
    uint8_t count;
    uint16_t characters[KOVA_CAPTIONS_EVENT_CHARACTERS];
};

// ------------------------------------------------------------------------------------------------------------- 608

constexpr int kChannels = 8;
constexpr int kChannelRows = KOVA_CAPTIONS_CHANNEL_ROWS;
constexpr int kChannelColumns = KOVA_CAPTIONS_CHANNEL_COLUMNS;

// What a cell of 608 memory holds: a character, or a code that takes the cell. The attributes in force follow from
// reading the row from left to right, so that overwriting a code changes the look of what is right of it.
enum CodeKind : uint8_t {
    kEmpty,
    kCharacter,
    kTransparentSpace,
    kMidRow,
    kFlashOn,
    kBackground,
    kBlackForeground
};

// A preamble's low five bits with this bit set: no mark at all is 0.
constexpr uint8_t kMark = 0x80;

// The background code BT, beside the low four bits of the others.
constexpr uint8_t kBackgroundTransparent = 0x10;

struct Code {
    uint16_t character;
    CodeKind kind;
    // What the kind needs: the low bits of the code's second byte.
    uint8_t bits;
    // The mark that a preamble left in the cell to the left, or 0.
    uint8_t mark;
};

struct Memory {
    Code cells[kChannelRows][kChannelColumns];
    uint32_t row_revision[kChannelRows];
    // Bit n: something may be in row n. Most memories hold a row or two, and the other rows need not be looked at.
    uint16_t written;
    // Whether a flash code was put in since the memory was last found without one.
    bool may_flash;
};

struct Channel {
    KovaCaptionsStatus status;
    KovaCaptionsMotion roll;
    int64_t last_data;
    uint8_t mode;
    uint8_t depth;
    uint8_t base_row;
    uint8_t row;
    uint8_t column;
    // The last character went into column 32, so that the cursor could not advance.
    bool filled;
    // The preamble that the next characters may mark, with kMark, or 0.
    uint8_t preamble;
    // Which memories it has. Text has but the displayed one.
    uint8_t displayed;
    uint8_t non_displayed;
};

// Whether it is a caption channel: Text has no memory beside the displayed one.
inline bool HasNonDisplayedMemory(const Channel &channel)
{
    return channel.displayed != channel.non_displayed;
}

constexpr uint8_t kNoChannel = 0xFF;

// What the characters of a field belong to.
enum Flow : uint8_t { kNowhere, kCaptions, kExtendedData };

struct Field {
    // The last control pair, and whether its repetition is still to come.
    uint8_t control[2];
    bool repetition_due;
    int64_t control_time;
    Flow flow;
    // The data channel that receives, 0 or 1, and for both which of the eight channels their codes go to.
    uint8_t data_channel;
    uint8_t selected[2];
    uint8_t bad_pairs;
    Run run;
};

// An extended data packet under way.
struct ExtendedPacket {
    bool open;
    uint8_t type;
    uint8_t count;
    uint8_t sum;
    uint8_t data[32];
};

constexpr int kExtendedClasses = 7;
constexpr uint8_t kNoClass = 0xFF;

struct ExtendedData {
    ExtendedPacket packets[kExtendedClasses];
    uint8_t active;
};

// ------------------------------------------------------------------------------------------------------------- 708

constexpr int kServices = 64;
constexpr int kWindows = KOVA_CAPTIONS_WINDOWS;
constexpr int kWindowRows = KOVA_CAPTIONS_WINDOW_ROWS;
constexpr int kWindowColumns = KOVA_CAPTIONS_WINDOW_COLUMNS;
constexpr int kBuffer = 128;
constexpr uint8_t kNoWindow = KOVA_CAPTIONS_NO_WINDOW;

// KovaCaptionsWindowCell in half the room: most of a decoder's memory is these.
struct Cell {
    uint16_t character;
    uint8_t kind;
    // Opacity in bits 7-6, colour in bits 5-0.
    uint8_t foreground;
    uint8_t background;
    // Offset in bits 7-6, edge colour in bits 5-0.
    uint8_t edge_color;
    // Size in bits 7-6, font in bits 5-3, edge type in bits 2-0.
    uint8_t font;
    // Italics in bit 7, underline in bit 6, text tag in bits 3-0.
    uint8_t style;
};

struct Window {
    KovaCaptionsMotion effect;
    KovaCaptionsMotion scroll;
    // Bit n: row n (column n for vertical print) was completed, so that what comes is a new row.
    uint64_t completed;
    uint32_t revision;
    uint32_t row_revision[kWindowRows];
    bool exists;
    bool visible;
    // Whether something was printed or filled to flash since it was last found not to.
    bool may_flash;
    uint8_t pen_row;
    uint8_t pen_column;
    // The six bytes of the last definition.
    uint8_t defined_as[6];
    KovaCaptionsDefinition definition;
    KovaCaptionsWindowAttributes attributes;
    KovaCaptionsPen pen;
    // The pen as cells carry it.
    Cell brush;
    Cell cells[kWindowRows][kWindowColumns];
};

struct Service {
    KovaCaptionsStatus status;
    int64_t delay_until;
    uint8_t number;
    bool korean;
    // Whether it holds anything but the initial state.
    bool used;
    bool blanked;
    uint8_t current;
    // The input buffer, and how much of it is whole elements.
    uint8_t size;
    uint8_t scanned;
    uint8_t buffer[kBuffer];
    Run run;
    Window windows[kWindows];
};

// ------------------------------------------------------------------------------------------------------- Transport

constexpr int kPacket = 128;
constexpr uint8_t kNoSequence = 0xFF;

struct Packet {
    // Bytes received and announced; none are announced while no packet is open.
    uint8_t size;
    uint8_t announced;
    // The number of the last packet, or kNoSequence before the first.
    uint8_t sequence;
    uint8_t bytes[kPacket];
};

// ------------------------------------------------------------------------------------------------------- Everything

struct Events {
    KovaCaptionsEvent *ring;
    uint32_t capacity;
    uint32_t first;
    uint32_t count;
};

struct State {
    KovaCaptionsOptions options;
    // The latest time, or KOVA_CAPTIONS_NO_TIME.
    int64_t now;
    // Nothing ends by itself before this time; it may be earlier than what ends first.
    int64_t due;
    uint32_t revision;
    KovaCaptionsCounters counters;
    KovaCaptionsActivity activity;
    Events events;

    Field fields[2];
    Channel channels[kChannels];
    // Two for each caption channel, one for each text channel.
    Memory memories[12];
    ExtendedData extended;
    KovaCaptionsProgram program;

    Packet packet;
    int64_t last_dtvcc;
    // Whether a service is blanked.
    bool blanked;
    Service *services;
    uint32_t service_count;
    // Which of the services has a number, or kNoSlot.
    uint8_t slot[kServices];
};

constexpr uint8_t kNoSlot = 0xFF;

// The steps of decoding, each in the file of its name.

// transport.cpp
void DecodeTriplet(State &state, const uint8_t *triplet);
void DropPacket(State &state);

// cea608.cpp
void DecodePair(State &state, int field, uint8_t first, uint8_t second);

// cea608_memory.cpp
void ResetChannel(State &state, int channel);
void EraseMemory(State &state, Channel &channel, uint8_t memory);
bool IsBlank(const Memory &memory);
bool HasFlash(Memory &memory);
void ReadRow(const Code *cells, KovaCaptionsChannelCell *result);

// xds.cpp
void DecodeExtendedPair(State &state, uint8_t first, uint8_t second);
void DropExtendedPacket(State &state);

// cea708.cpp
void DecodeBlock(State &state, Service &service, const uint8_t *bytes, int count);
void EndBlocks(State &state, Service &service);
void EndDelay(State &state, Service &service);

// cea708_commands.cpp
void Execute(State &state, Service &service, const uint8_t *element, int length);

// cea708_window.cpp
void ResetService(State &state, Service &service);

// clock.cpp
void MoveTime(State &state, int64_t time);
void EndBlanking(State &state);
void SettleFlash(State &state, Channel &channel);
void SettleFlash(State &state, Service &service);
int64_t NextChange(const State &state, uint8_t source, unsigned kinds);

// reset.cpp
void ResetAll(State &state);
void TakeDiscontinuity(State &state);

// Says that something changes by itself at a time.
inline void ExpectChange(State &state, int64_t time)
{
    if (time < state.due) state.due = time;
}

// Says that a source changed, and whether it shows.
inline void Touch(State &state, KovaCaptionsStatus &status, bool shows)
{
    status.revision = ++state.revision;
    if (!shows) return;
    status.visible_revision = status.revision;
    status.visible_since = state.now;
}

} // namespace captions

#endif // KOVA_CAPTIONS_STATE_H
