// SPDX-License-Identifier: MIT
#include "cea608.h"

#include "characters.h"

#include <string.h>

namespace captions
{

static uint8_t ReceivingMemory(const Channel &channel)
{
    return channel.mode == KOVA_CAPTIONS_POP_ON ? channel.non_displayed : channel.displayed;
}

static void TouchRow(State &state, Channel &channel, uint8_t memory, int row)
{
    Touch(state, channel.status, memory == channel.displayed);
    state.memories[memory].row_revision[row] = state.revision;
}

static void TouchRows(State &state, Channel &channel, uint8_t memory, int first, int last)
{
    Touch(state, channel.status, memory == channel.displayed);
    for (int row = first; row <= last; ++row) state.memories[memory].row_revision[row] = state.revision;
}

static bool IsBlankRow(const Code *cells)
{
    for (int column = 0; column < kChannelColumns; ++column) {
        if (cells[column].kind != kEmpty) return false;
    }
    return true;
}

// Bits first to last, of a memory's rows.
static unsigned RowBits(int first, int last)
{
    return (2U << last) - (1U << first);
}

static bool AreBlankRows(const Memory &memory, int first, int last)
{
    unsigned left = memory.written & RowBits(first, last);
    for (int row = 0; left; ++row, left >>= 1) {
        if ((left & 1) && !IsBlankRow(memory.cells[row])) return false;
    }
    return true;
}

bool IsBlank(const Memory &memory)
{
    return AreBlankRows(memory, 0, kLastRow);
}

static void EraseRows(State &state, Channel &channel, uint8_t memory, int first, int last)
{
    Memory &erased = state.memories[memory];
    const bool blank = AreBlankRows(erased, first, last);

    // Marks of preambles may stand in a blank row too, but in none that was never written to.
    unsigned left = erased.written & RowBits(first, last);
    for (int row = 0; left; ++row, left >>= 1) {
        if (left & 1) memset(erased.cells[row], 0, sizeof erased.cells[row]);
    }
    erased.written &= uint16_t(~RowBits(first, last));
    if (!blank) TouchRows(state, channel, memory, first, last);
}

void EraseMemory(State &state, Channel &channel, uint8_t memory)
{
    if (memory == channel.displayed) channel.roll = {};
    EraseRows(state, channel, memory, 0, kLastRow);
}

void ResetChannel(State &state, int channel_index)
{
    Channel &channel = state.channels[channel_index];
    const bool captions = channel_index < kCaptionChannels;

    EraseMemory(state, channel, channel.displayed);
    EraseMemory(state, channel, channel.non_displayed);
    const KovaCaptionsStatus status = channel.status;
    channel = {};
    channel.status = status;
    channel.status.flash_since = KOVA_CAPTIONS_NO_TIME;
    channel.last_data = KOVA_CAPTIONS_NO_TIME;
    channel.base_row = captions ? kLastRow : 0;
    channel.row = channel.base_row;
    channel.displayed = uint8_t(captions ? 2 * channel_index : kCaptionChannels + channel_index);
    channel.non_displayed = uint8_t(captions ? channel.displayed + 1 : channel.displayed);
    Touch(state, channel.status, false);
}

void MoveCursor(Channel &channel, uint8_t row, uint8_t column)
{
    channel.row = row;
    channel.column = column;
    channel.filled = false;
}

void StepOntoLast(Channel &channel)
{
    // The character in column 32 left the cursor on itself.
    if (channel.filled || channel.column == 0) return;
    --channel.column;
}

// Whether a preamble's mark has room left of a cell. A transparent space changes no attribute, so it is looked past.
static bool MayTakeMark(const Code *cells, int column)
{
    while (column > 0 && cells[column - 1].kind == kTransparentSpace) --column;
    return column == 0 || cells[column - 1].kind == kEmpty;
}

void Put(State &state, Channel &channel, Code code)
{
    const uint8_t memory = ReceivingMemory(channel);
    Code *const cells = state.memories[memory].cells[channel.row];
    Code &cell = cells[channel.column];

    // A mark is in the cell to the left of its text: this cell keeps its own, and the right neighbour loses the mark that
    // was in this cell.
    code.mark = cell.mark;
    if (code.kind != kTransparentSpace) {
        if (channel.preamble && MayTakeMark(cells, channel.column)) code.mark = channel.preamble;
        if (channel.column < kLastColumn) cells[channel.column + 1].mark = 0;
    }
    cell = code;
    state.memories[memory].written |= uint16_t(1U << channel.row);
    state.memories[memory].may_flash |= code.kind == kFlashOn;
    channel.filled = channel.column == kLastColumn;
    if (!channel.filled) ++channel.column;
    TouchRow(state, channel, memory, channel.row);
}

// Empties a cell and removes the mark in it.
static void Erase(Code *cells, int column)
{
    const uint8_t mark = cells[column].mark;
    cells[column] = {};
    cells[column].mark = mark;
    if (column < kLastColumn) cells[column + 1].mark = 0;
}

void Backspace(State &state, Channel &channel)
{
    if (channel.column == 0) return;
    const uint8_t memory = ReceivingMemory(channel);

    MoveCursor(channel, channel.row, uint8_t(channel.column - 1));
    Erase(state.memories[memory].cells[channel.row], channel.column);
    TouchRow(state, channel, memory, channel.row);
}

void DeleteToEndOfRow(State &state, Channel &channel)
{
    const uint8_t memory = ReceivingMemory(channel);
    Code *const cells = state.memories[memory].cells[channel.row];

    for (int column = channel.column; column < kChannelColumns; ++column) Erase(cells, column);
    channel.filled = false;
    TouchRow(state, channel, memory, channel.row);
}

void SwapMemories(State &state, Channel &channel)
{
    const uint8_t shown = channel.non_displayed;
    const bool shows = !IsBlank(state.memories[shown]) || !IsBlank(state.memories[channel.displayed]);

    channel.non_displayed = channel.displayed;
    channel.displayed = shown;
    channel.roll = {};
    Touch(state, channel.status, shows);
    for (uint32_t &revision : state.memories[shown].row_revision) revision = state.revision;
}

// Moves the rows of the roll-up window, unerased, and empties those that it leaves.
static void MoveRows(State &state, Channel &channel, int from, int to, int count)
{
    Memory &memory = state.memories[channel.displayed];
    Code moved[4][kChannelColumns];

    const bool blank = AreBlankRows(memory, from, from + count - 1);
    memcpy(moved, memory.cells[from], unsigned(count) * sizeof *moved);
    memset(memory.cells[from], 0, unsigned(count) * sizeof *moved);
    memcpy(memory.cells[to], moved, unsigned(count) * sizeof *moved);
    const unsigned rows = RowBits(0, count - 1), written = memory.written >> from & rows;
    memory.written = uint16_t((memory.written & ~(rows << from) & ~(rows << to)) | written << to);
    channel.roll = {};
    if (!blank) TouchRows(state, channel, channel.displayed, 0, kLastRow);
}

void MoveBaseRow(State &state, Channel &channel, uint8_t row)
{
    const auto highest = uint8_t(channel.depth - 1);
    if (row < highest) row = highest;
    if (row == channel.base_row) return;

    MoveRows(state, channel, channel.base_row - highest, row - highest, channel.depth);
    channel.base_row = row;
    MoveCursor(channel, row, channel.column);
}

void SetDepth(State &state, Channel &channel, uint8_t depth)
{
    if (depth < channel.depth) {
        EraseRows(state, channel, channel.displayed, channel.base_row - channel.depth + 1,
                  channel.base_row - depth);
    } else if (depth > channel.base_row + 1) {
        MoveBaseRow(state, channel, uint8_t(depth - 1));
    }
    channel.depth = depth;
}

void RollRows(State &state, Channel &channel, uint8_t first, uint8_t last)
{
    Memory &memory = state.memories[channel.displayed];
    const bool blank = AreBlankRows(memory, first, last);

    memmove(memory.cells[first], memory.cells[first + 1], unsigned(last - first) * sizeof *memory.cells);
    memset(memory.cells[last], 0, sizeof *memory.cells);
    const unsigned rows = RowBits(first, last);
    memory.written = uint16_t((memory.written & ~rows) | ((memory.written & rows) >> 1 & rows));
    if (blank) return;
    channel.roll = {state.now, KOVA_CAPTIONS_ROLL, KOVA_CAPTIONS_SCROLL, KOVA_CAPTIONS_BOTTOM_TO_TOP, 1, {}};
    ExpectChange(state, state.now + KOVA_CAPTIONS_ROLL);
    TouchRows(state, channel, channel.displayed, first, last);
}

// ------------------------------------------------------------------------------------------------------ Attributes

// What is in force while a row is read. [79.101(h)]
struct Look {
    uint8_t foreground;
    uint8_t background;
    uint8_t background_opacity;
    uint8_t italics;
    uint8_t underline;
    uint8_t flash;
};

constexpr Look kDefaultLook = {KOVA_CAPTIONS_WHITE, KOVA_CAPTIONS_BLACK, KOVA_CAPTIONS_SOLID, 0, 0, 0};

// Bits 3-1 of mid-row codes and of the first half of the preambles; entry 7 is italics there. [79.101(h)]
static const uint8_t kForegrounds[8] = {KOVA_CAPTIONS_WHITE,   KOVA_CAPTIONS_GREEN, KOVA_CAPTIONS_BLUE,
                                        KOVA_CAPTIONS_CYAN,    KOVA_CAPTIONS_RED,   KOVA_CAPTIONS_YELLOW,
                                        KOVA_CAPTIONS_MAGENTA, KOVA_CAPTIONS_WHITE};

// Bits 3-1 of background codes. [608 6.2]
static const uint8_t kBackgrounds[8] = {KOVA_CAPTIONS_WHITE,   KOVA_CAPTIONS_GREEN, KOVA_CAPTIONS_BLUE,
                                        KOVA_CAPTIONS_CYAN,    KOVA_CAPTIONS_RED,   KOVA_CAPTIONS_YELLOW,
                                        KOVA_CAPTIONS_MAGENTA, KOVA_CAPTIONS_BLACK};

uint8_t ForegroundOf(uint8_t bits)
{
    return kForegrounds[bits >> 1 & 7];
}

uint8_t BackgroundOf(uint8_t bits)
{
    return kBackgrounds[bits >> 1 & 7];
}

bool IsItalics(uint8_t bits)
{
    return (bits & 0x0E) == 0x0E;
}

static void ReadMark(Look &look, uint8_t mark)
{
    const bool indent = mark & 0x10;
    look.foreground = indent ? uint8_t(KOVA_CAPTIONS_WHITE) : ForegroundOf(mark);
    look.italics = !indent && IsItalics(mark);
    look.underline = mark & 1;
    look.flash = 0;
}

static void ReadCode(Look &look, const Code &code)
{
    switch (code.kind) {
    case kMidRow:
        if (!IsItalics(code.bits)) look.foreground = ForegroundOf(code.bits);
        look.italics = IsItalics(code.bits);
        look.underline = code.bits & 1;
        look.flash = 0;
        break;
    case kFlashOn:
        look.flash = 1;
        break;
    case kBackground:
        if (code.bits & kBackgroundTransparent) {
            look.background_opacity = KOVA_CAPTIONS_TRANSPARENT;
        } else {
            look.background = BackgroundOf(code.bits);
            look.background_opacity = code.bits & 1 ? KOVA_CAPTIONS_TRANSLUCENT : KOVA_CAPTIONS_SOLID;
        }
        break;
    case kBlackForeground:
        look.foreground = KOVA_CAPTIONS_BLACK;
        look.italics = look.flash = 0;
        look.underline = code.bits & 1;
        break;
    case kEmpty:
    case kCharacter:
    case kTransparentSpace:
        break;
    }
}

static bool IsBoxCorner(uint16_t character)
{
    return character == 0x250C || character == 0x2510 || character == 0x2514 || character == 0x2518;
}

static void Show(const Code &code, const Look &look, KovaCaptionsChannelCell &cell)
{
    const bool character = code.kind == kCharacter, corner = character && IsBoxCorner(code.character);

    cell.character = character ? code.character : uint16_t(kSpace);
    cell.kind = character ? KOVA_CAPTIONS_CHARACTER : KOVA_CAPTIONS_ATTRIBUTE;
    cell.foreground = look.foreground;
    cell.background = look.background;
    cell.background_opacity = look.background_opacity;
    cell.italics = look.italics && !corner;
    cell.underline = look.underline && !corner && cell.character != kSpace;
    cell.flash = look.flash;
}

void ReadRow(const Code *cells, KovaCaptionsChannelCell *result)
{
    Look look = kDefaultLook;

    for (int column = 0; column < kChannelColumns; ++column) {
        const Code &code = cells[column];
        KovaCaptionsChannelCell &cell = result[column];

        cell = {};
        cell.background_opacity = KOVA_CAPTIONS_TRANSPARENT;
        if (code.mark) ReadMark(look, code.mark);
        if (code.kind == kEmpty) continue;
        if (code.kind == kTransparentSpace) {
            cell.character = kSpace;
            cell.kind = KOVA_CAPTIONS_TRANSPARENT_SPACE;
            continue;
        }
        ReadCode(look, code);
        Show(code, look, cell);
    }
}

bool HasFlash(Memory &memory)
{
    if (!memory.may_flash) return false;
    bool holds_code = false;
    for (int row = 0; row < kChannelRows; ++row) {
        if (!(memory.written >> row & 1)) continue;
        KovaCaptionsChannelCell cells[kChannelColumns];
        ReadRow(memory.cells[row], cells);
        for (int column = 0; column < kChannelColumns; ++column) {
            holds_code |= memory.cells[row][column].kind == kFlashOn;
            if (cells[column].flash && cells[column].kind == KOVA_CAPTIONS_CHARACTER &&
                cells[column].character != kSpace)
                return true;
        }
    }
    memory.may_flash = holds_code;
    return false;
}

} // namespace captions
