// SPDX-License-Identifier: MIT
// The elements of a caption service: what each does, and how it is reported. [79.102(d), 708 7.1, 8.10.5]
#include "cea708.h"
#include "characters.h"
#include "events.h"

#include <string.h>

namespace captions
{

// An element on its way to its handler.
struct Context {
    State &state;
    Service &service;
    const uint8_t *bytes;
    int length;
};

static Target CurrentWindow(const Context &context)
{
    return {context.state, context.service, context.service.windows[context.service.current]};
}

static bool HasCurrentWindow(const Context &context)
{
    return context.service.current != kNoWindow;
}

// ----------------------------------------------------------------------------------------------------- Characters

static void PrintCharacter(const Context &context, uint16_t character)
{
    State &state = context.state;
    Service &service = context.service;

    state.activity.services_with_text |= uint64_t(1) << service.number;
    AddToRun(state, service.run, service.number, character);
    if (!HasCurrentWindow(context)) return;
    const Target target = CurrentWindow(context);
    // What is not to be displayed keeps the places of the rest.
    if (target.window.pen.text_tag == KOVA_CAPTIONS_TAG_HIDDEN) {
        Print(target, kSpace, KOVA_CAPTIONS_TRANSPARENT_SPACE);
    } else {
        Print(target, character, KOVA_CAPTIONS_CHARACTER);
    }
}

static void PrintTransparentSpace(const Context &context, uint16_t character)
{
    EndRun(context.state, context.service.run);
    Report(context.state, context.service.number, KOVA_CAPTIONS_EVENT_TRANSPARENT_SPACE);
    if (HasCurrentWindow(context)) Print(CurrentWindow(context), character, KOVA_CAPTIONS_TRANSPARENT_SPACE);
}

static void PrintG2(const Context &context)
{
    const uint8_t code = context.bytes[1];
    const bool transparent = code == 0x20 || code == 0x21;
    const uint16_t character = G2Character(code);

    if (transparent) return PrintTransparentSpace(context, character);
    PrintCharacter(context, character);
}

static void PrintP16(const Context &context)
{
    const uint8_t first = context.bytes[1], second = context.bytes[2];
    const bool korean = context.service.korean && IsKoreanByte(first) && IsKoreanByte(second);
    PrintCharacter(context, korean ? KoreanCharacter(first, second) : P16Character(first, second));
}

static void PrintG1(const Context &context)
{
    const bool pair = context.length == 2;
    PrintCharacter(context, pair ? KoreanCharacter(context.bytes[0], context.bytes[1]) : context.bytes[0]);
}

// ----------------------------------------------------------------------------------------------------- C0 commands

static void EndOfText(const Context &context)
{
    CompleteRow(CurrentWindow(context).window);
}

static void BackspaceCommand(const Context &context)
{
    MovePenBack(CurrentWindow(context));
}

static void ClearWindow(const Target &target)
{
    EraseText(target);
    MovePen(target.window, 0, 0);
    TouchUnseen(target);
}

static void FormFeed(const Context &context)
{
    ClearWindow(CurrentWindow(context));
}

static void CarriageReturn(const Context &context)
{
    CompleteRow(CurrentWindow(context).window);
    StartNextRow(CurrentWindow(context));
}

static void HorizontalCarriageReturn(const Context &context)
{
    EraseRow(CurrentWindow(context));
}

// --------------------------------------------------------------------------------------------------- Window commands

static void SetCurrentWindow(const Context &context)
{
    const uint8_t index = context.bytes[0] & 7;
    if (!context.service.windows[index].exists) return;
    context.service.current = index;
    Touch(context.state, context.service.status, false);
}

// Does something to every window of a map that exists.
template <typename Action> static void ForWindows(const Context &context, Action action)
{
    for (int index = 0; index < kWindows; ++index) {
        Window &window = context.service.windows[index];
        if ((context.bytes[1] >> index & 1) && window.exists)
            action(Target{context.state, context.service, window});
    }
}

static void ClearWindows(const Context &context)
{
    ForWindows(context, [](const Target &target) { ClearWindow(target); });
}

static void DisplayWindows(const Context &context)
{
    ForWindows(context, [](const Target &target) { SetVisible(target, true); });
}

static void HideWindows(const Context &context)
{
    ForWindows(context, [](const Target &target) { SetVisible(target, false); });
}

static void ToggleWindows(const Context &context)
{
    ForWindows(context, [](const Target &target) { SetVisible(target, !target.window.visible); });
}

static void DeleteWindows(const Context &context)
{
    ForWindows(context, [](const Target &target) { DeleteWindow(target); });
}

static void Delay(const Context &context)
{
    constexpr int64_t kTenth = 100000;
    if (context.bytes[1] == 0) return;
    context.service.delay_until = context.state.now + context.bytes[1] * kTenth;
    ExpectChange(context.state, context.service.delay_until);
    Touch(context.state, context.service.status, false);
}

static void Reset(const Context &context)
{
    ResetService(context.state, context.service);
    // What follows in the same block is the service's state again.
    context.service.used = true;
}

// Delay cancel acts when it arrives; taken out without a delay it has nothing to end.
static void Nothing(const Context &)
{
}

// ------------------------------------------------------------------------------------------------------- Attributes

// Bits of a byte: the highest and the lowest.
static uint8_t Bits(uint8_t byte, int high, int low)
{
    return uint8_t(byte >> low & ((2 << (high - low)) - 1));
}

// Reserved sizes and offsets (3) are read as the middle one. [708 8.5.1, 8.5.4]
static uint8_t SizeOrOffset(uint8_t value)
{
    constexpr uint8_t kReserved = 3;
    return value == kReserved ? uint8_t(KOVA_CAPTIONS_PEN_STANDARD) : value;
}

static uint8_t EdgeOrBorder(uint8_t value)
{
    return value > KOVA_CAPTIONS_EDGE_SHADOW_RIGHT ? uint8_t(KOVA_CAPTIONS_EDGE_NONE) : value;
}

static KovaCaptionsPen ReadPenAttributes(const uint8_t *bytes, KovaCaptionsPen pen)
{
    pen.text_tag = Bits(bytes[1], 7, 4);
    pen.offset = SizeOrOffset(Bits(bytes[1], 3, 2));
    pen.size = SizeOrOffset(Bits(bytes[1], 1, 0));
    pen.italics = Bits(bytes[2], 7, 7);
    pen.underline = Bits(bytes[2], 6, 6);
    pen.edge_type = EdgeOrBorder(Bits(bytes[2], 5, 3));
    pen.font = Bits(bytes[2], 2, 0);
    return pen;
}

static KovaCaptionsPen ReadPenColor(const uint8_t *bytes, KovaCaptionsPen pen)
{
    pen.foreground_opacity = Bits(bytes[1], 7, 6);
    pen.foreground = Bits(bytes[1], 5, 0);
    pen.background_opacity = Bits(bytes[2], 7, 6);
    pen.background = Bits(bytes[2], 5, 0);
    pen.edge_color = Bits(bytes[3], 5, 0);
    return pen;
}

static void ChangePen(const Target &target, const KovaCaptionsPen &pen)
{
    SetPen(target.window, pen);
    TouchUnseen(target);
}

static void SetPenAttributes(const Context &context)
{
    const Target target = CurrentWindow(context);
    ChangePen(target, ReadPenAttributes(context.bytes, target.window.pen));
}

static void SetPenColor(const Context &context)
{
    const Target target = CurrentWindow(context);
    ChangePen(target, ReadPenColor(context.bytes, target.window.pen));
}

static KovaCaptionsWindowAttributes ReadWindowAttributes(const uint8_t *bytes)
{
    KovaCaptionsWindowAttributes attributes = {};
    attributes.fill_opacity = Bits(bytes[1], 7, 6);
    attributes.fill_color = Bits(bytes[1], 5, 0);
    attributes.border_type = EdgeOrBorder(uint8_t(Bits(bytes[3], 7, 7) << 2 | Bits(bytes[2], 7, 6)));
    attributes.border_color = Bits(bytes[2], 5, 0);
    attributes.word_wrap = Bits(bytes[3], 6, 6);
    attributes.print_direction = Bits(bytes[3], 5, 4);
    attributes.scroll_direction = Bits(bytes[3], 3, 2);
    attributes.justify = Bits(bytes[3], 1, 0);
    attributes.effect_speed = Bits(bytes[4], 7, 4);
    attributes.effect_direction = Bits(bytes[4], 3, 2);
    attributes.display_effect = Bits(bytes[4], 1, 0);
    return attributes;
}

static void SetWindowAttributes(const Context &context)
{
    SetAttributes(CurrentWindow(context), ReadWindowAttributes(context.bytes));
}

static void SetPenLocation(const Context &context)
{
    LocatePen(CurrentWindow(context), Bits(context.bytes[1], 3, 0), Bits(context.bytes[2], 5, 0));
}

// ------------------------------------------------------------------------------------------------------- Definitions

struct WindowStyle {
    uint8_t justify;
    uint8_t print_direction;
    uint8_t scroll_direction;
    uint8_t word_wrap;
    uint8_t fill_opacity;
};

constexpr uint8_t kLeft = KOVA_CAPTIONS_JUSTIFY_LEFT, kCenter = KOVA_CAPTIONS_JUSTIFY_CENTER;
constexpr uint8_t kLtr = KOVA_CAPTIONS_LEFT_TO_RIGHT, kRtl = KOVA_CAPTIONS_RIGHT_TO_LEFT;
constexpr uint8_t kTtb = KOVA_CAPTIONS_TOP_TO_BOTTOM, kBtt = KOVA_CAPTIONS_BOTTOM_TO_TOP;
constexpr uint8_t kSolid = KOVA_CAPTIONS_SOLID, kClear = KOVA_CAPTIONS_TRANSPARENT;

// All snap, have no border and are filled black. [79.102(i) table 4]
static const WindowStyle kWindowStyles[7] = {
    {kLeft, kLtr, kBtt, 0, kSolid},   // 1 pop-up, as NTSC
    {kLeft, kLtr, kBtt, 0, kClear},   // 2 pop-up without black
    {kCenter, kLtr, kBtt, 0, kSolid}, // 3 centred pop-up
    {kLeft, kLtr, kBtt, 1, kSolid},   // 4 roll-up
    {kLeft, kLtr, kBtt, 1, kClear},   // 5 roll-up without black
    {kCenter, kLtr, kBtt, 1, kSolid}, // 6 centred roll-up
    {kLeft, kTtb, kRtl, 0, kSolid},   // 7 ticker tape
};

struct PenStyle {
    uint8_t font;
    uint8_t edge_type;
    uint8_t background_opacity;
};

// All are of standard size, upright, (2,2,2) on black, with a black edge. [79.102(i) table 5]
static const PenStyle kPenStyles[7] = {
    {KOVA_CAPTIONS_FONT_DEFAULT, KOVA_CAPTIONS_EDGE_NONE, kSolid},      // 1
    {KOVA_CAPTIONS_FONT_MONO_SERIF, KOVA_CAPTIONS_EDGE_NONE, kSolid},   // 2
    {KOVA_CAPTIONS_FONT_SERIF, KOVA_CAPTIONS_EDGE_NONE, kSolid},        // 3
    {KOVA_CAPTIONS_FONT_MONO_SANS, KOVA_CAPTIONS_EDGE_NONE, kSolid},    // 4
    {KOVA_CAPTIONS_FONT_SANS, KOVA_CAPTIONS_EDGE_NONE, kSolid},         // 5
    {KOVA_CAPTIONS_FONT_MONO_SANS, KOVA_CAPTIONS_EDGE_UNIFORM, kClear}, // 6
    {KOVA_CAPTIONS_FONT_SANS, KOVA_CAPTIONS_EDGE_UNIFORM, kClear},      // 7
};

static KovaCaptionsWindowAttributes StyledAttributes(uint8_t id)
{
    const WindowStyle &style = kWindowStyles[id - 1];
    KovaCaptionsWindowAttributes attributes = {};
    attributes.fill_opacity = style.fill_opacity;
    attributes.word_wrap = style.word_wrap;
    attributes.print_direction = style.print_direction;
    attributes.scroll_direction = style.scroll_direction;
    attributes.justify = style.justify;
    return attributes;
}

static KovaCaptionsPen StyledPen(uint8_t id, uint8_t text_tag)
{
    constexpr uint8_t kWhite = 0x2A;
    const PenStyle &style = kPenStyles[id - 1];
    KovaCaptionsPen pen = {};
    pen.foreground = kWhite;
    pen.background_opacity = style.background_opacity;
    pen.edge_type = style.edge_type;
    pen.size = KOVA_CAPTIONS_PEN_STANDARD;
    pen.offset = KOVA_CAPTIONS_NORMAL;
    pen.font = style.font;
    pen.text_tag = text_tag;
    return pen;
}

static uint8_t AtMost(unsigned value, unsigned limit)
{
    return uint8_t(value < limit ? value : limit);
}

static KovaCaptionsDefinition ReadDefinition(const uint8_t *bytes)
{
    KovaCaptionsDefinition definition = {};
    definition.row_lock = Bits(bytes[1], 4, 4);
    definition.column_lock = Bits(bytes[1], 3, 3);
    definition.priority = Bits(bytes[1], 2, 0);
    definition.relative = Bits(bytes[2], 7, 7);
    // Beyond the grid, which ends at 74 and 209, or at 99 if it is relative, the anchor is clamped.
    definition.anchor_vertical = AtMost(Bits(bytes[2], 6, 0), definition.relative ? 99 : 74);
    definition.anchor_horizontal = AtMost(bytes[3], definition.relative ? 99 : 209);
    definition.anchor_point = Bits(bytes[4], 7, 4);
    definition.rows = AtMost(Bits(bytes[4], 3, 0) + 1U, kWindowRows);
    definition.columns = AtMost(Bits(bytes[5], 5, 0) + 1U, kWindowColumns);
    definition.window_style = Bits(bytes[6], 5, 3);
    definition.pen_style = Bits(bytes[6], 2, 0);
    return definition;
}

static void DefineNewWindow(const Target &target, const KovaCaptionsDefinition &definition)
{
    Window &window = target.window;
    constexpr uint8_t kDefaultStyle = 1;

    window.definition = definition;
    CreateWindow(target);
    window.attributes = StyledAttributes(definition.window_style ? definition.window_style : kDefaultStyle);
    SetPen(window, StyledPen(definition.pen_style ? definition.pen_style : kDefaultStyle, 0));
}

// Whether two definitions put a window in the same place, above and below the same windows.
static bool IsSamePlace(const KovaCaptionsDefinition &one, const KovaCaptionsDefinition &other)
{
    return one.priority == other.priority && one.relative == other.relative &&
           one.anchor_vertical == other.anchor_vertical && one.anchor_horizontal == other.anchor_horizontal &&
           one.anchor_point == other.anchor_point;
}

// Text, pen location and, with style 0, attributes stay. [708 8.10.5.2]
static void ChangeDefinition(const Target &target, const KovaCaptionsDefinition &definition)
{
    Window &window = target.window;
    const bool moved = !IsSamePlace(window.definition, definition);

    Resize(target, definition.rows, definition.columns);
    window.definition = definition;
    if (definition.window_style) SetAttributes(target, StyledAttributes(definition.window_style));
    if (definition.pen_style) SetPen(window, StyledPen(definition.pen_style, window.pen.text_tag));
    // Many definitions that differ change nothing that shows: the visible bit repeats what a command did before.
    if (moved) TouchWindow(target);
    TouchUnseen(target);
}

static void DefineWindow(const Context &context)
{
    constexpr uint8_t kLastAnchorPoint = 8;
    const uint8_t index = context.bytes[0] & 7;
    const Target target = {context.state, context.service, context.service.windows[index]};
    Window &window = target.window;
    const KovaCaptionsDefinition definition = ReadDefinition(context.bytes);
    const bool visible = Bits(context.bytes[1], 5, 5);

    if (definition.anchor_point > kLastAnchorPoint) return;
    if (!window.exists) {
        DefineNewWindow(target, definition);
    } else if (memcmp(window.defined_as, context.bytes + 1, sizeof window.defined_as) != 0) {
        ChangeDefinition(target, definition);
    }
    memcpy(window.defined_as, context.bytes + 1, sizeof window.defined_as);
    context.service.current = index;
    Touch(context.state, context.service.status, false);
    // Commands may have changed the visibility since the last definition, so it is compared with what it is now.
    SetVisible(target, visible);
}

// ----------------------------------------------------------------------------------------------------------- Reports

static void ReportPlain(const Context &context, uint8_t event)
{
    Report(context.state, context.service.number, event);
}

static void ReportWindow(const Context &context, uint8_t event)
{
    Report(context.state, context.service.number, event, {Bits(context.bytes[0], 2, 0)});
}

static void ReportByte(const Context &context, uint8_t event)
{
    Report(context.state, context.service.number, event, {context.bytes[1]});
}

static void ReportPenAttributes(const Context &context, uint8_t event)
{
    const KovaCaptionsPen pen = ReadPenAttributes(context.bytes, {});
    Report(context.state, context.service.number, event,
           {pen.text_tag, pen.offset, pen.size, pen.italics, pen.underline, pen.edge_type, pen.font});
}

static void ReportPenColor(const Context &context, uint8_t event)
{
    const KovaCaptionsPen pen = ReadPenColor(context.bytes, {});
    Report(context.state, context.service.number, event,
           {pen.foreground, pen.foreground_opacity, pen.background, pen.background_opacity, pen.edge_color});
}

static void ReportPenLocation(const Context &context, uint8_t event)
{
    Report(context.state, context.service.number, event,
           {Bits(context.bytes[1], 3, 0), Bits(context.bytes[2], 5, 0)});
}

static void ReportWindowAttributes(const Context &context, uint8_t event)
{
    const KovaCaptionsWindowAttributes found = ReadWindowAttributes(context.bytes);
    Report(context.state, context.service.number, event,
           {found.fill_color, found.fill_opacity, found.border_type, found.border_color, found.word_wrap,
            found.print_direction, found.scroll_direction, found.justify, found.display_effect,
            found.effect_direction, found.effect_speed});
}

static void ReportDefinition(const Context &context, uint8_t event)
{
    const KovaCaptionsDefinition found = ReadDefinition(context.bytes);
    Report(context.state, context.service.number, event,
           {Bits(context.bytes[0], 2, 0), Bits(context.bytes[1], 5, 5), found.row_lock, found.column_lock,
            found.priority, found.relative, found.anchor_vertical, found.anchor_horizontal,
            found.anchor_point, found.rows, found.columns, found.window_style, found.pen_style});
}

// --------------------------------------------------------------------------------------------------------- Commands

// What a command needs and what it means for a row that is not left-justified. [708 8.4]
enum Nature : uint8_t {
    // Of the service: works without a current window, and completes the row of the one there is.
    kOfService,
    // Of the current window: nothing without one, and completes its row.
    kOfWindow,
    // Of the current window, whose row goes on.
    kOfRow
};

struct Command {
    uint8_t first, last;
    Nature nature;
    uint8_t event;
    void (*handler)(const Context &);
    void (*report)(const Context &, uint8_t event);
};

static const Command kCommands[] = {
    {0x03, 0x03, kOfRow, KOVA_CAPTIONS_EVENT_END_OF_TEXT, EndOfText, ReportPlain},          // ETX
    {0x08, 0x08, kOfRow, KOVA_CAPTIONS_EVENT_BACKSPACE, BackspaceCommand, ReportPlain},     // BS
    {0x0C, 0x0C, kOfRow, KOVA_CAPTIONS_EVENT_FORM_FEED, FormFeed, ReportPlain},             // FF
    {0x0D, 0x0D, kOfRow, KOVA_CAPTIONS_EVENT_CARRIAGE_RETURN, CarriageReturn, ReportPlain}, // CR
    {0x0E, 0x0E, kOfRow, KOVA_CAPTIONS_EVENT_HORIZONTAL_CARRIAGE_RETURN, HorizontalCarriageReturn,
     ReportPlain}, // HCR
    {0x80, 0x87, kOfService, KOVA_CAPTIONS_EVENT_SET_CURRENT_WINDOW, SetCurrentWindow,
     ReportWindow},                                                                            // CW0-CW7
    {0x88, 0x88, kOfService, KOVA_CAPTIONS_EVENT_CLEAR_WINDOWS, ClearWindows, ReportByte},     // CLW
    {0x89, 0x89, kOfService, KOVA_CAPTIONS_EVENT_DISPLAY_WINDOWS, DisplayWindows, ReportByte}, // DSW
    {0x8A, 0x8A, kOfService, KOVA_CAPTIONS_EVENT_HIDE_WINDOWS, HideWindows, ReportByte},       // HDW
    {0x8B, 0x8B, kOfService, KOVA_CAPTIONS_EVENT_TOGGLE_WINDOWS, ToggleWindows, ReportByte},   // TGW
    {0x8C, 0x8C, kOfService, KOVA_CAPTIONS_EVENT_DELETE_WINDOWS, DeleteWindows, ReportByte},   // DLW
    {0x8D, 0x8D, kOfService, KOVA_CAPTIONS_EVENT_DELAY, Delay, ReportByte},                    // DLY
    {0x8E, 0x8E, kOfService, KOVA_CAPTIONS_EVENT_DELAY_CANCEL, Nothing, ReportPlain},          // DLC
    {0x8F, 0x8F, kOfService, KOVA_CAPTIONS_EVENT_RESET, Reset, ReportPlain},                   // RST
    {0x90, 0x90, kOfRow, KOVA_CAPTIONS_EVENT_SET_PEN_ATTRIBUTES, SetPenAttributes,
     ReportPenAttributes},                                                                         // SPA
    {0x91, 0x91, kOfRow, KOVA_CAPTIONS_EVENT_SET_PEN_COLOR, SetPenColor, ReportPenColor},          // SPC
    {0x92, 0x92, kOfRow, KOVA_CAPTIONS_EVENT_SET_PEN_LOCATION, SetPenLocation, ReportPenLocation}, // SPL
    {0x97, 0x97, kOfWindow, KOVA_CAPTIONS_EVENT_SET_WINDOW_ATTRIBUTES, SetWindowAttributes,
     ReportWindowAttributes},                                                                    // SWA
    {0x98, 0x9F, kOfService, KOVA_CAPTIONS_EVENT_DEFINE_WINDOW, DefineWindow, ReportDefinition}, // DF0-DF7
};

static void ExecuteCommand(const Context &context, const Command &command)
{
    EndRun(context.state, context.service.run);
    command.report(context, command.event);
    if (command.nature != kOfRow && HasCurrentWindow(context)) CompleteRow(CurrentWindow(context).window);
    if (command.nature != kOfService && !HasCurrentWindow(context)) return;
    command.handler(context);
}

static void CountUnknown(const Context &context, unsigned code)
{
    ++context.state.counters.unknown_codes;
    EndRun(context.state, context.service.run);
    Report(context.state, context.service.number, KOVA_CAPTIONS_EVENT_UNKNOWN_CODE, {code});
}

static void ExecuteExtended(const Context &context)
{
    const uint8_t code = context.bytes[1];

    if (code >= 0xA0) return PrintCharacter(context, G3Character(code));
    if (code >= 0x20 && code < 0x80) return PrintG2(context);
    CountUnknown(context, 0x1000U | code);
}

void Execute(State &state, Service &service, const uint8_t *element, int length)
{
    constexpr uint8_t kNul = 0x00, kExtended = 0x10, kP16 = 0x18;
    const Context context = {state, service, element, length};
    const uint8_t code = element[0];

    if (code >= 0x20 && code < 0x80) return PrintCharacter(context, G0Character(code));
    if (code >= 0xA0) return PrintG1(context);
    if (code == kNul) return;
    if (code == kExtended) return ExecuteExtended(context);
    if (code == kP16) return PrintP16(context);
    for (const Command &command : kCommands) {
        if (code >= command.first && code <= command.last) return ExecuteCommand(context, command);
    }
    CountUnknown(context, code);
}

} // namespace captions
