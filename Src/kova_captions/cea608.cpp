// SPDX-License-Identifier: MIT
// Line 21: from byte pairs to codes, and what each code does. [79.101]
#include "cea608.h"

#include "characters.h"
#include "events.h"

namespace captions
{

// Null pairs between the two transmissions of a control pair are looked past for as long as this.
constexpr int64_t kRepetitionWithin = 100000;

// So many bad pairs in a row are no captions any more. [608 C.21]
constexpr uint8_t kTooManyBadPairs = 45;

// A control pair on its way to its handler.
struct Control {
    State &state;
    Field &field;
    // The channel that the code is for; for EDM and ENM and the mode codes the caption channel.
    Channel &channel;
    uint8_t source;
    // Bit 3 removed.
    uint8_t first;
    uint8_t second;
};

static uint8_t CaptionChannel(int field, int data_channel)
{
    return uint8_t(2 * field + data_channel);
}

static uint8_t SourceOf(const State &state, const Channel &channel)
{
    return uint8_t(KOVA_CAPTIONS_CC1 + (&channel - state.channels));
}

// ------------------------------------------------------------------------------------------- Miscellaneous codes

// Makes a channel the one that its data channel's codes and characters go to.
static void Select(const Control &control)
{
    const auto index = uint8_t(&control.channel - control.state.channels);
    control.channel.filled = false;
    control.field.selected[index & 1] = index;
}

static void ResumeCaptionLoading(const Control &control)
{
    Select(control);
    control.channel.mode = KOVA_CAPTIONS_POP_ON;
    control.channel.depth = 0;
}

static void ResumeDirectCaptioning(const Control &control)
{
    Select(control);
    control.channel.mode = KOVA_CAPTIONS_PAINT_ON;
    control.channel.depth = 0;
}

// [79.101(f)(1)(ii), (x)]
static void StartRollUp(State &state, Channel &channel, uint8_t depth)
{
    EraseMemory(state, channel, channel.displayed);
    EraseMemory(state, channel, channel.non_displayed);
    channel.mode = KOVA_CAPTIONS_ROLL_UP;
    channel.depth = depth;
    channel.base_row = kLastRow;
    channel.preamble = 0;
    MoveCursor(channel, kLastRow, 0);
}

static void RollUp(const Control &control)
{
    const auto depth = uint8_t(control.second - 0x25 + 2);

    Select(control);
    if (control.channel.mode == KOVA_CAPTIONS_ROLL_UP) return SetDepth(control.state, control.channel, depth);
    StartRollUp(control.state, control.channel, depth);
}

static void EndOfCaption(const Control &control)
{
    Select(control);
    control.channel.mode = KOVA_CAPTIONS_POP_ON;
    control.channel.depth = 0;
    SwapMemories(control.state, control.channel);
}

static void TextRestart(const Control &control)
{
    Select(control);
    EraseMemory(control.state, control.channel, control.channel.displayed);
    control.channel.mode = KOVA_CAPTIONS_TEXT_MODE;
    control.channel.preamble = 0;
    MoveCursor(control.channel, 0, 0);
}

static void ResumeTextDisplay(const Control &control)
{
    Select(control);
    control.channel.mode = KOVA_CAPTIONS_TEXT_MODE;
}

static void EraseDisplayedMemory(const Control &control)
{
    EraseMemory(control.state, control.channel, control.channel.displayed);
}

static void EraseNonDisplayedMemory(const Control &control)
{
    EraseMemory(control.state, control.channel, control.channel.non_displayed);
}

static void CarriageReturn(const Control &control)
{
    Channel &channel = control.channel;

    if (channel.mode == KOVA_CAPTIONS_ROLL_UP) {
        RollRows(control.state, channel, uint8_t(channel.base_row - channel.depth + 1), channel.base_row);
    } else if (channel.mode != KOVA_CAPTIONS_TEXT_MODE) {
        return;
    } else if (channel.row < kLastRow) {
        ++channel.row;
    } else {
        RollRows(control.state, channel, 0, kLastRow);
    }
    channel.preamble = 0;
    MoveCursor(channel, channel.row, 0);
}

static void Backspace(const Control &control)
{
    Backspace(control.state, control.channel);
}

static void DeleteToEndOfRow(const Control &control)
{
    DeleteToEndOfRow(control.state, control.channel);
}

static void FlashOn(const Control &control)
{
    Put(control.state, control.channel, {kSpace, kFlashOn, 0, 0});
}

static void Nothing(const Control &)
{
}

// Which channel a code is for, and what it selects for the characters that follow.
enum Address : uint8_t {
    // The caption channel, which it selects.
    kToCaptions,
    // The text channel, which it selects.
    kToText,
    // The channel that was selected before.
    kToSelected,
    // The caption channel, without selecting anything. [608 C.16]
    kToMemory
};

// ------------------------------------------------------------------------------------ Codes with bits of their own

// The rows of the preambles, by the first byte's low bits and the half of the second byte. [79.101(e)(1)]
constexpr uint8_t kNoRow = 0xFF;
static const uint8_t kPreambleRows[8][2] = {
    {11, kNoRow}, // 10
    {1, 2},       // 11
    {3, 4},       // 12
    {12, 13},     // 13
    {14, 15},     // 14
    {5, 6},       // 15
    {7, 8},       // 16
    {9, 10},      // 17
};

static uint8_t PreambleRow(const Control &control)
{
    return kPreambleRows[control.first & 7][control.second >> 5 & 1];
}

static uint8_t PreambleColumn(uint8_t second)
{
    const bool indent = second & 0x10;
    return indent ? uint8_t((second >> 1 & 7) * 4) : uint8_t(0);
}

static void Preamble(const Control &control)
{
    Channel &channel = control.channel;
    const auto row = uint8_t(PreambleRow(control) - 1);

    channel.preamble = uint8_t(kMark | (control.second & 0x1F));
    if (channel.mode == KOVA_CAPTIONS_ROLL_UP) {
        MoveBaseRow(control.state, channel, row);
    } else if (channel.mode != KOVA_CAPTIONS_TEXT_MODE) {
        channel.row = row;
    }
    MoveCursor(channel, channel.row, PreambleColumn(control.second));
}

static void MidRow(const Control &control)
{
    Put(control.state, control.channel, {kSpace, kMidRow, uint8_t(control.second & 0x0F), 0});
}

// Encoders send a space first, which the code takes the place of. [608 6.2]
static void PutOverSpace(const Control &control, CodeKind kind, uint8_t bits)
{
    StepOntoLast(control.channel);
    Put(control.state, control.channel, {kSpace, kind, bits, 0});
}

static void Background(const Control &control)
{
    PutOverSpace(control, kBackground, control.second & 0x0F);
}

static void BackgroundTransparent(const Control &control)
{
    PutOverSpace(control, kBackground, kBackgroundTransparent);
}

static void BlackForeground(const Control &control)
{
    PutOverSpace(control, kBlackForeground, control.second & 1);
}

static void TabOffset(const Control &control)
{
    const int column = control.channel.column + (control.second & 3);
    MoveCursor(control.channel, control.channel.row, uint8_t(column < kLastColumn ? column : kLastColumn));
}

static void Special(const Control &control)
{
    Put(control.state, control.channel, {SpecialCharacter(control.second), kCharacter, 0, 0});
}

static void TransparentSpace(const Control &control)
{
    Put(control.state, control.channel, {kSpace, kTransparentSpace, 0, 0});
}

// An encoder sends a stand-in from the basic set first, which the character takes the place of. [608 6.4.2]
static void Extended(const Control &control)
{
    StepOntoLast(control.channel);
    Put(control.state, control.channel, {ExtendedCharacter(control.first, control.second), kCharacter, 0, 0});
}

// ---------------------------------------------------------------------------------------------------------- Reports

static void ReportPlain(const Control &control, uint8_t event)
{
    Report(control.state, control.source, event);
}

static void ReportRollUp(const Control &control, uint8_t event)
{
    Report(control.state, control.source, event, {control.second - 0x25U + 2});
}

static void ReportPreamble(const Control &control, uint8_t event)
{
    const bool indent = control.second & 0x10, italics = !indent && IsItalics(control.second);
    const unsigned color = indent ? unsigned(KOVA_CAPTIONS_WHITE) : ForegroundOf(control.second);
    Report(control.state, control.source, event,
           {PreambleRow(control), PreambleColumn(control.second), color, italics ? 1U : KOVA_CAPTIONS_ABSENT,
            control.second & 1U});
}

static void ReportMidRow(const Control &control, uint8_t event)
{
    const bool italics = IsItalics(control.second);
    Report(control.state, control.source, event,
           {italics ? unsigned(KOVA_CAPTIONS_ABSENT) : ForegroundOf(control.second), italics,
            control.second & 1U});
}

static void ReportBackground(const Control &control, uint8_t event)
{
    const unsigned opacity = control.second & 1 ? KOVA_CAPTIONS_TRANSLUCENT : KOVA_CAPTIONS_SOLID;
    Report(control.state, control.source, event, {BackgroundOf(control.second), opacity});
}

static void ReportTransparent(const Control &control, uint8_t event)
{
    Report(control.state, control.source, event, {KOVA_CAPTIONS_ABSENT, KOVA_CAPTIONS_TRANSPARENT});
}

static void ReportBlackForeground(const Control &control, uint8_t event)
{
    Report(control.state, control.source, event, {control.second & 1U});
}

static void ReportTabOffset(const Control &control, uint8_t event)
{
    Report(control.state, control.source, event, {control.second & 3U});
}

static void ReportCharacterSet(const Control &control, uint8_t event)
{
    Report(control.state, control.source, event, {control.second});
}

static void ReportSpecial(const Control &control, uint8_t)
{
    AddToRun(control.state, control.field.run, control.source, SpecialCharacter(control.second));
}

static void ReportExtended(const Control &control, uint8_t)
{
    ReplaceInRun(control.state, control.field.run, control.source,
                 ExtendedCharacter(control.first, control.second));
}

// ------------------------------------------------------------------------------------------------- All control codes

// The codes from a low to a high first byte and a low to a high second byte: which channel they are for, what they
// do, how they are reported.
struct ControlCode {
    uint8_t first_low, first_high;
    uint8_t second_low, second_high;
    Address address;
    uint8_t event;
    void (*handler)(const Control &);
    void (*report)(const Control &, uint8_t event);
};

// By the first byte without bit 3. Bit 0 of 14 and 15 names the field, and is not looked at: streams use 14 in field 2.
// What is not here is unassigned.
static const ControlCode kControlCodes[] = {
    {0x10, 0x10, 0x20, 0x2F, kToSelected, KOVA_CAPTIONS_EVENT_BACKGROUND_ATTRIBUTES, Background,
     ReportBackground}, // [608 6.2]
    {0x10, 0x10, 0x40, 0x5F, kToSelected, KOVA_CAPTIONS_EVENT_PREAMBLE, Preamble,
     ReportPreamble}, // [79.101(e)(1)(i)]
    {0x11, 0x17, 0x40, 0x7F, kToSelected, KOVA_CAPTIONS_EVENT_PREAMBLE, Preamble,
     ReportPreamble}, // [79.101(e)(1)(i)]
    {0x11, 0x11, 0x20, 0x2F, kToSelected, KOVA_CAPTIONS_EVENT_MID_ROW, MidRow,
     ReportMidRow},                                                                          // [79.101(h)(1)]
    {0x11, 0x11, 0x30, 0x38, kToSelected, KOVA_CAPTIONS_EVENT_TEXT, Special, ReportSpecial}, // [79.101(g)]
    {0x11, 0x11, 0x39, 0x39, kToSelected, KOVA_CAPTIONS_EVENT_TRANSPARENT_SPACE, TransparentSpace,
     ReportPlain},                                                                             // [79.101(g)]
    {0x11, 0x11, 0x3A, 0x3F, kToSelected, KOVA_CAPTIONS_EVENT_TEXT, Special, ReportSpecial},   // [79.101(g)]
    {0x12, 0x13, 0x20, 0x3F, kToSelected, KOVA_CAPTIONS_EVENT_TEXT, Extended, ReportExtended}, // [608 6.4.2]
    {0x14, 0x15, 0x20, 0x20, kToCaptions, KOVA_CAPTIONS_EVENT_RESUME_CAPTION_LOADING, ResumeCaptionLoading,
     ReportPlain},                                                                                // RCL
    {0x14, 0x15, 0x21, 0x21, kToSelected, KOVA_CAPTIONS_EVENT_BACKSPACE, Backspace, ReportPlain}, // BS
    {0x14, 0x15, 0x22, 0x22, kToSelected, KOVA_CAPTIONS_EVENT_ALARM_OFF, Nothing, ReportPlain},   // AOF
    {0x14, 0x15, 0x23, 0x23, kToSelected, KOVA_CAPTIONS_EVENT_ALARM_ON, Nothing, ReportPlain},    // AON
    {0x14, 0x15, 0x24, 0x24, kToSelected, KOVA_CAPTIONS_EVENT_DELETE_TO_END_OF_ROW, DeleteToEndOfRow,
     ReportPlain},                                                                             // DER
    {0x14, 0x15, 0x25, 0x27, kToCaptions, KOVA_CAPTIONS_EVENT_ROLL_UP, RollUp, ReportRollUp},  // RU2-RU4
    {0x14, 0x15, 0x28, 0x28, kToSelected, KOVA_CAPTIONS_EVENT_FLASH_ON, FlashOn, ReportPlain}, // FON
    {0x14, 0x15, 0x29, 0x29, kToCaptions, KOVA_CAPTIONS_EVENT_RESUME_DIRECT_CAPTIONING,
     ResumeDirectCaptioning, ReportPlain},                                                         // RDC
    {0x14, 0x15, 0x2A, 0x2A, kToText, KOVA_CAPTIONS_EVENT_TEXT_RESTART, TextRestart, ReportPlain}, // TR
    {0x14, 0x15, 0x2B, 0x2B, kToText, KOVA_CAPTIONS_EVENT_RESUME_TEXT_DISPLAY, ResumeTextDisplay,
     ReportPlain}, // RTD
    {0x14, 0x15, 0x2C, 0x2C, kToMemory, KOVA_CAPTIONS_EVENT_ERASE_DISPLAYED_MEMORY, EraseDisplayedMemory,
     ReportPlain}, // EDM
    {0x14, 0x15, 0x2D, 0x2D, kToSelected, KOVA_CAPTIONS_EVENT_CARRIAGE_RETURN, CarriageReturn,
     ReportPlain}, // CR
    {0x14, 0x15, 0x2E, 0x2E, kToMemory, KOVA_CAPTIONS_EVENT_ERASE_NON_DISPLAYED_MEMORY,
     EraseNonDisplayedMemory, ReportPlain}, // ENM
    {0x14, 0x15, 0x2F, 0x2F, kToCaptions, KOVA_CAPTIONS_EVENT_END_OF_CAPTION, EndOfCaption,
     ReportPlain}, // EOC
    {0x17, 0x17, 0x21, 0x23, kToSelected, KOVA_CAPTIONS_EVENT_TAB_OFFSET, TabOffset,
     ReportTabOffset}, // TO1-TO3
    {0x17, 0x17, 0x24, 0x2A, kToSelected, KOVA_CAPTIONS_EVENT_CHARACTER_SET, Nothing,
     ReportCharacterSet}, // [608 6.3]
    {0x17, 0x17, 0x2D, 0x2D, kToSelected, KOVA_CAPTIONS_EVENT_BACKGROUND_ATTRIBUTES, BackgroundTransparent,
     ReportTransparent}, // BT
    {0x17, 0x17, 0x2E, 0x2F, kToSelected, KOVA_CAPTIONS_EVENT_BLACK_FOREGROUND, BlackForeground,
     ReportBlackForeground}, // FA, FAU
};

static const ControlCode *FindControlCode(uint8_t first, uint8_t second)
{
    for (const ControlCode &code : kControlCodes) {
        if (first >= code.first_low && first <= code.first_high && second >= code.second_low &&
            second <= code.second_high)
            return &code;
    }
    return nullptr;
}

// ------------------------------------------------------------------------------------------------------- Channels

// Bookkeeping of a channel that something came for.
static void NoteData(State &state, Channel &channel)
{
    const auto bit = uint8_t(1 << (&channel - state.channels));
    state.activity.channels_with_data |= bit;
    channel.last_data = state.now;
    if (state.options.channel_timeout > 0) ExpectChange(state, state.now + state.options.channel_timeout);
}

static uint8_t ChannelFor(const State &state, int field, uint8_t data_channel, Address address)
{
    const uint8_t captions = CaptionChannel(field, data_channel),
                  selected = state.fields[field].selected[data_channel];

    if (address == kToText) return uint8_t(kCaptionChannels + captions);
    if (address == kToSelected && selected != kNoChannel) return selected;
    return captions;
}

// Which channel a control code is for; an unassigned one counts as the selected channel's.
static Channel &ChannelOf(State &state, int field, uint8_t first, uint8_t second)
{
    const ControlCode *const code = FindControlCode(first & 0x17, second);
    const Address address = code ? code->address : kToSelected;
    return state.channels[ChannelFor(state, field, first >> 3 & 1, address)];
}

static void CountUnknown(State &state, Field &field, uint8_t source, uint8_t first, uint8_t second)
{
    ++state.counters.unknown_codes;
    EndRun(state, field.run);
    Report(state, source, KOVA_CAPTIONS_EVENT_UNKNOWN_CODE, {unsigned(first << 8 | second)});
}

static void DecodeControl(State &state, int field_index, uint8_t first, uint8_t second)
{
    Field &field = state.fields[field_index];
    Channel &channel = ChannelOf(state, field_index, first, second);
    const uint8_t source = SourceOf(state, channel);
    const ControlCode *const code = FindControlCode(first & 0x17, second);
    if (!code) return CountUnknown(state, field, source, first, second);

    const Address address = code->address;
    const Control control = {state, field, channel, source, uint8_t(first & 0x17), second};
    const bool prints = code->event == KOVA_CAPTIONS_EVENT_TEXT;

    field.flow = kCaptions;
    if (field_index == 1) state.extended.active = kNoClass;
    if (address != kToMemory) field.data_channel = first >> 3 & 1;
    if (!prints) EndRun(state, field.run);
    code->report(control, code->event);
    NoteData(state, channel);

    // Without a mode code nothing is known about the channel yet.
    const bool selects = address == kToCaptions || address == kToText;
    if (channel.mode == KOVA_CAPTIONS_NO_MODE && !selects) return;
    code->handler(control);
    if (prints) state.activity.channels_with_text |= uint8_t(1 << (&channel - state.channels));
    Touch(state, channel.status, false);
    SettleFlash(state, channel);
}

// ------------------------------------------------------------------------------------------------------ Characters

static void DecodeCharacter(State &state, int field_index, uint16_t character)
{
    Field &field = state.fields[field_index];
    if (field.flow != kCaptions) return;

    Channel &channel = state.channels[ChannelFor(state, field_index, field.data_channel, kToSelected)];
    AddToRun(state, field.run, SourceOf(state, channel), character);
    NoteData(state, channel);
    if (channel.mode == KOVA_CAPTIONS_NO_MODE) return;
    Put(state, channel, {character, kCharacter, 0, 0});
    SettleFlash(state, channel);
    state.activity.channels_with_text |= uint8_t(1 << (&channel - state.channels));
}

// A byte of a character pair: codes below 20 are no characters.
static void DecodeByte(State &state, int field, uint8_t byte)
{
    if (byte >= 0x20) DecodeCharacter(state, field, BasicCharacter(byte));
}

// ---------------------------------------------------------------------------------------------------------- Parity

static bool HasOddParity(uint8_t byte)
{
    byte = uint8_t(byte ^ byte >> 4);
    byte = uint8_t(byte ^ byte >> 2);
    byte = uint8_t(byte ^ byte >> 1);
    return byte & 1;
}

// [608 C.21, 79.101(k)]
static void ResetCaptions(State &state, int field)
{
    EndRun(state, state.fields[field].run);
    Report(state, KOVA_CAPTIONS_NONE, KOVA_CAPTIONS_EVENT_INVALID_DATA, {unsigned(field + 1)});
    for (int data_channel = 0; data_channel < 2; ++data_channel) {
        const uint8_t captions = CaptionChannel(field, data_channel);
        uint8_t &selected = state.fields[field].selected[data_channel];

        ResetChannel(state, captions);
        SettleFlash(state, state.channels[captions]);
        if (selected == captions) selected = kNoChannel;
    }
}

static void CountBadPair(State &state, int field, uint8_t first, uint8_t second)
{
    ++state.counters.parity_errors;
    EndRun(state, state.fields[field].run);
    Report(state, KOVA_CAPTIONS_NONE, KOVA_CAPTIONS_EVENT_PARITY_ERROR, {unsigned(field + 1), first, second});
    if (++state.fields[field].bad_pairs < kTooManyBadPairs) return;
    state.fields[field].bad_pairs = 0;
    ResetCaptions(state, field);
}

// Whether the repetition of the last control pair may still come.
static bool IsRepetitionDue(const State &state, const Field &field)
{
    return field.repetition_due && state.now - field.control_time <= kRepetitionWithin;
}

// A pair of which at least one byte fails. [79.101(i), (j)]
static void DecodeBadPair(State &state, int field_index, uint8_t first, uint8_t second)
{
    Field &field = state.fields[field_index];
    const uint8_t code = first & 0x7F, character = second & 0x7F;
    const bool repeats = IsRepetitionDue(state, field) && character == field.control[1];

    field.repetition_due = false;
    if (field.flow == kExtendedData) return DropExtendedPacket(state);
    if (!HasOddParity(first)) {
        // The first byte may have been a control code's, and this the repetition of the last.
        if (repeats) return;
        DecodeCharacter(state, field_index, kSolidBlock);
        if (!HasOddParity(second)) return DecodeCharacter(state, field_index, kSolidBlock);
        return DecodeByte(state, field_index, character);
    }
    // The repetition of a control pair acts in its place.
    if (code >= 0x10 && code < 0x20) return;
    if (code >= 0x01 && code < 0x10 && field_index == 1) {
        field.flow = kExtendedData;
        return DropExtendedPacket(state);
    }
    DecodeByte(state, field_index, code);
    DecodeCharacter(state, field_index, kSolidBlock);
}

// ----------------------------------------------------------------------------------------------------------- Pairs

// Control pairs are sent twice; the second is ignored once. [79.101(i)(4), 608 B.14]
static bool IsRepetition(State &state, Field &field, uint8_t first, uint8_t second)
{
    const bool same = field.control[0] == first && field.control[1] == second;
    const bool repetition = same && IsRepetitionDue(state, field);

    field.repetition_due = !repetition;
    field.control[0] = first;
    field.control[1] = second;
    field.control_time = state.now;
    return repetition;
}

static void DecodeControlPair(State &state, int field_index, uint8_t first, uint8_t second)
{
    Field &field = state.fields[field_index];

    if (second < 0x20) {
        field.repetition_due = false;
        return;
    }
    if (!IsRepetition(state, field, first, second)) return DecodeControl(state, field_index, first, second);
    // The repetition does nothing, but it is data for the channel.
    NoteData(state, ChannelOf(state, field_index, first, second));
}

static void DecodeGoodPair(State &state, int field_index, uint8_t first, uint8_t second)
{
    Field &field = state.fields[field_index];

    field.bad_pairs = 0;
    if (first == 0 && second == 0) return;
    if (first >= 0x10 && first < 0x20) return DecodeControlPair(state, field_index, first, second);
    field.repetition_due = false;
    if (field_index == 1 && first > 0 && first < 0x10) {
        field.flow = first == 0x0F ? kNowhere : kExtendedData;
        return DecodeExtendedPair(state, first, second);
    }
    if (field.flow == kExtendedData) return DecodeExtendedPair(state, first, second);
    DecodeByte(state, field_index, first);
    DecodeByte(state, field_index, second);
}

void DecodePair(State &state, int field, uint8_t first, uint8_t second)
{
    // Null pairs without parity are what careless encoders fill up with.
    if (first == 0 && second == 0) return;
    if (HasOddParity(first) && HasOddParity(second)) {
        DecodeGoodPair(state, field, first & 0x7F, second & 0x7F);
    } else {
        CountBadPair(state, field, first, second);
        DecodeBadPair(state, field, first, second);
    }
}

} // namespace captions
