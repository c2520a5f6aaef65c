// SPDX-License-Identifier: MIT
// CEA-708: code space, characters, commands, windows.
#include "driver.h"

#include <cstring>

// A visible window of some rows and columns, and what follows it.
static ByteString Grid(unsigned rows, unsigned columns, const ByteString &rest = {})
{
    return Define(Window(0).Rows(rows).Columns(columns)) + rest;
}

static ByteString Directions(unsigned print, unsigned scroll)
{
    WindowAttributes attributes;

    attributes.print = print;
    attributes.scroll = scroll;
    return SetWindowAttributes(attributes);
}

// What a fresh decoder makes of a service's bytes.
static std::string TextOf(const ByteString &bytes, unsigned window = 0)
{
    Driver decoder;

    decoder.SendService(1, bytes);
    return decoder.WindowText(window);
}

static std::string PenOf(const ByteString &bytes, unsigned window = 0)
{
    Driver decoder;

    decoder.SendService(1, bytes);
    return decoder.Pen(window);
}

enum Direction : unsigned { LTR, RTL, TTB, BTT };

/* ------------------------------------------------------------------------------------------------------ Code space */

TEST(Codes708, OfG0AndG1AreAsciiAndLatin1)
{
    Requirement("C1");

    for (unsigned code = 0x20; code < 0x100; code = code == 0x7F ? 0xA0 : code + 1) {
        Driver decoder;
        decoder.SendService(1, Grid(1, 3) + Bytes({code}));
        const auto window = decoder.Window(0);
        EXPECT_EQ(window->cells[0][0].character, code == 0x7F ? 0x266A : code);
        EXPECT_EQ(window->cells[0][0].kind, KOVA_CAPTIONS_CHARACTER);
        EXPECT_EQ(decoder.Pen(), "0,1");
    }
}

TEST(Codes708, OfG2AreAsTabled)
{
    Requirement("C2");
    const struct {
        unsigned code, character;
    } cases[] = {{0x25, 0x2026}, {0x2A, 0x160},  {0x2C, 0x152},  {0x30, 0x2588}, {0x31, 0x2018},
                 {0x32, 0x2019}, {0x33, 0x201C}, {0x34, 0x201D}, {0x35, 0x2022}, {0x39, 0x2122},
                 {0x3A, 0x161},  {0x3C, 0x153},  {0x3D, 0x2120}, {0x3F, 0x178},  {0x76, 0x215B},
                 {0x77, 0x215C}, {0x78, 0x215D}, {0x79, 0x215E}, {0x7A, 0x2502}, {0x7B, 0x2510},
                 {0x7C, 0x2514}, {0x7D, 0x2500}, {0x7E, 0x2518}, {0x7F, 0x250C}};

    for (const auto &each : cases) {
        EXPECT_EQ(TextOf(Grid(1, 9, Bytes({'A', EXT1, each.code, 'B'}))),
                  "0 A" + ToUtf8(each.character) + "B");
    }
}

TEST(Codes708, HaveTransparentSpaces)
{
    Requirement("C2");
    Driver decoder;

    decoder.SendService(1, Grid(1, 9, Ascii("ABCD") + SetPenLocation(0, 1) + Hex("10 20 10 21")));

    EXPECT_EQ(decoder.WindowText(), "0 A~~D");
    EXPECT_EQ(decoder.Window(0)->cells[0][1].character, 0x20);
    EXPECT_EQ(decoder.Window(0)->cells[0][2].character, 0xA0);
    EXPECT_EQ(decoder.Pen(), "0,3");
}

TEST(Codes708, OfG2WithoutAssignmentShowAnUnderscore)
{
    Requirement("C4");
    const std::string assigned = "\x20\x21\x25\x2A\x2C\x30\x31\x32\x33\x34\x35\x39\x3A\x3C\x3D\x3F\x76\x77"
                                 "\x78\x79\x7A\x7B\x7C\x7D\x7E\x7F";

    for (unsigned code = 0x20; code < 0x80; code++) {
        if (assigned.find(char(code)) != std::string::npos) continue;
        EXPECT_EQ(TextOf(Grid(1, 9, Bytes({'A', EXT1, code, 'B'}))), "0 A_B") << std::hex << code;
    }
}

TEST(Codes708, OfG3ShowTheCCIconOrAnUnderscore)
{
    Requirement("C4");

    EXPECT_EQ(TextOf(Grid(1, 9, Bytes({'A', EXT1, 0xA0, 'B'}))), "0 A" + ToUtf8(0xE9A0) + "B");
    for (unsigned code = 0xA1; code < 0x100; code++) {
        EXPECT_EQ(TextOf(Grid(1, 9, Bytes({'A', EXT1, code, 'B'}))), "0 A_B") << std::hex << code;
    }
}

// A code and its parameters, which would be seen as text if the code were taken for shorter, and swallow the text after
// it if it were taken for longer.
static void ExpectSkipped(ByteString code, size_t length)
{
    ASSERT_LE(code.size(), length);
    code.resize(length, 'x');
    EXPECT_EQ(TextOf(Grid(1, 9, Ascii("A") + code + Ascii("BC"))), "0 ABC")
        << ToHex(code.data(), code.size());
}

TEST(Codes708, WithoutAssignmentAreSkippedByTheirLength)
{
    Requirement("C5");

    for (unsigned code = 0x00; code <= 0x0F; code++) {
        if (code != BS708 && code != FF && code != CR708 && code != HCR) ExpectSkipped(Bytes({code}), 1);
    }
    for (unsigned code = 0x11; code <= 0x17; code++) ExpectSkipped(Bytes({code}), 2);
    for (unsigned code = 0x19; code <= 0x1F; code++) ExpectSkipped(Bytes({code}), 3);
    for (unsigned code = 0x93; code <= 0x96; code++) ExpectSkipped(Bytes({code}), 1);
    for (unsigned code = 0x00; code <= 0x1F; code++) ExpectSkipped(Bytes({EXT1, code}), 2 + code / 8);
    for (unsigned code = 0x80; code <= 0x87; code++) ExpectSkipped(Bytes({EXT1, code}), 6);
    for (unsigned code = 0x88; code <= 0x8F; code++) ExpectSkipped(Bytes({EXT1, code}), 7);
}

TEST(Codes708, OfVariableLengthAreSkippedByTheirLengthField)
{
    Requirement("C6");

    for (unsigned code = 0x90; code <= 0x9F; code++) {
        for (const unsigned length : {0u, 1u, 5u, 18u}) {
            for (const unsigned type : {0x00u, 0x40u, 0xC0u})
                ExpectSkipped(Bytes({EXT1, code, type | length}), 3 + length);
        }
    }
}

TEST(Codes708, OfVariableLengthHoldUpTo31Bytes)
{
    Requirement("C6");
    Driver decoder;

    // a block holds 31 bytes, so 28 follow the length in the one block it must stay in
    decoder.SendBlocks(Block(1, Grid(1, 9, Ascii("A"))) + Block(1, Hex("10 9f 1c") + ByteString(28, 'x')) +
                       Block(1, Ascii("B")));

    EXPECT_EQ(decoder.WindowText(), "0 AB");
}

TEST(Codes708, HaveAWayToAnyCharacter)
{
    Requirement("C7");

    EXPECT_EQ(TextOf(Grid(1, 9, Wide(0xD55C) + Wide(0xAE00) + Wide(0x41) + Wide(0x20) + Wide(0x266A))),
              "0 한글A ♪");
}

TEST(Codes708, ShowAnUnderscoreForSurrogatesAndControls)
{
    Requirement("C7");

    for (const unsigned character : {0x0000u, 0x0001u, 0x001Fu, 0xD800u, 0xDBFFu, 0xDC00u, 0xDFFFu}) {
        EXPECT_EQ(TextOf(Grid(1, 9, Ascii("A") + Wide(character) + Ascii("B"))), "0 A_B")
            << std::hex << character;
    }
    EXPECT_EQ(TextOf(Grid(1, 9, Wide(0xD7FF) + Wide(0xE000))), "0 " + ToUtf8(0xD7FF) + ToUtf8(0xE000));
}

TEST(Codes708, AreKoreanWhereTheCallerSaysSo)
{
    Requirement("C8");
    KovaCaptionsOptions options;
    Kova_Captions_GetDefaults(&options);
    EXPECT_EQ(options.korean_services, 0u);
    options.korean_services = 1u << 1;
    Driver decoder(options);
    // EUC-KR: 한 c7d1, 글 b1db, 가 b0a1, 힝 c8fe, ★ a1da; then a value of Unicode, with a byte below A1
    const ByteString bytes = Grid(
        1, 20, Wide(0xC7D1) + Wide(0xB1DB) + Hex("b0 a1 c8 fe") + Ascii("AB") + Hex("a1 da") + Wide(0x266A));

    decoder.SendService(1, bytes);
    decoder.SendService(2, Grid(1, 20, Hex("b0 a1")));

    EXPECT_EQ(decoder.WindowText(0, 1), "0 한글가힝AB★♪");
    EXPECT_EQ(decoder.WindowText(0, 2), "0 °¡");
}

TEST(Codes708, WithoutACurrentWindowDoNothing)
{
    Requirement("C9");
    Driver decoder;
    const ByteString everything = Ascii("TEXT") + Bytes({BS708, FF, CR708, HCR, ETX}) + Wide(0x266A) +
                                  Hex("10 25 10 a0") + SetPenAttributes({}) + SetPenColor({}) +
                                  SetPenLocation(0, 0) + SetWindowAttributes({});

    decoder.SendService(1, everything);
    EXPECT_EQ(decoder.Service().existing_windows, 0);
    EXPECT_EQ(decoder.Service().current_window, KOVA_CAPTIONS_NO_WINDOW);

    // and what follows them is read from its start
    decoder.SendService(1, everything + Grid(1, 9, Ascii("A")));
    EXPECT_EQ(decoder.WindowText(), "0 A");

    // the same once the current window is gone, with another one there
    decoder.SendService(1, Define(Window(1)) + Ascii("B") + DeleteWindows(0x02) + everything);
    EXPECT_EQ(decoder.WindowText(0), "0 A");
    EXPECT_EQ(decoder.Pen(0), "0,1");
}

/* ----------------------------------------------------------------------------------------------------- C0 controls */

TEST(EndOfText, ChangesNothing)
{
    Requirement("C10");
    Driver decoder;
    decoder.SendService(1, Grid(2, 9, Ascii("AB")));
    const std::string before = decoder.Snapshot();

    decoder.SendService(1, Bytes({ETX}));
    EXPECT_EQ(decoder.Snapshot(), before);
    decoder.SendService(1, Ascii("C"));

    EXPECT_EQ(decoder.WindowText(), "0 ABC");
}

TEST(Backspace708, GoesBackAndErases)
{
    Requirement("C11");
    const struct {
        unsigned print, scroll, row, column;
        const char *written, *once, *pen;
    } cases[] = {
        // "ABC" in a window of 5 by 5; then one backspace
        {LTR, BTT, 2, 0, "2 ABC", "2 AB", "2,2"},
        {RTL, BTT, 2, 4, "2 ..CBA", "2 ...BA", "2,2"},
        {TTB, RTL, 0, 2, "0 ..A|1 ..B|2 ..C", "0 ..A|1 ..B", "2,2"},
        {BTT, RTL, 4, 2, "2 ..C|3 ..B|4 ..A", "3 ..B|4 ..A", "2,2"},
    };

    for (const auto &each : cases) {
        const ByteString start = Grid(
            5, 5, Directions(each.print, each.scroll) + SetPenLocation(each.row, each.column) + Ascii("ABC"));
        EXPECT_EQ(TextOf(start), each.written);
        EXPECT_EQ(TextOf(start + Bytes({BS708})), each.once);
        EXPECT_EQ(PenOf(start + Bytes({BS708})), each.pen);
        const std::string atStart = std::to_string(each.row) + "," + std::to_string(each.column);
        EXPECT_EQ(PenOf(start + Bytes({BS708, BS708, BS708})), atStart);
        EXPECT_EQ(TextOf(start + Bytes({BS708, BS708, BS708})), "");
        // at the row's start nothing
        EXPECT_EQ(PenOf(start + Bytes({BS708, BS708, BS708, BS708})), atStart);
    }
}

TEST(Backspace708, KeepsTheCharacterAtTheRowsStart)
{
    Requirement("C11");

    EXPECT_EQ(TextOf(Grid(2, 5, Ascii("AB") + SetPenLocation(0, 0) + Bytes({BS708}))), "0 AB");
    EXPECT_EQ(TextOf(Grid(2, 5, Ascii("AB") + Bytes({CR708, BS708}))), "0 AB");
}

TEST(Backspace708, FromTheLastCellErasesTheOneBefore)
{
    Requirement("C11", "C43");

    EXPECT_EQ(TextOf(Grid(1, 4, Ascii("ABCD") + Bytes({BS708}))), "0 AB.D");
}

TEST(FormFeed, ErasesTheWindowAndHomesThePen)
{
    Requirement("C12");
    const unsigned directions[][2] = {{LTR, BTT}, {RTL, BTT}, {TTB, RTL}, {BTT, LTR}};

    for (const auto &each : directions) {
        const ByteString bytes =
            Grid(3, 5, Directions(each[0], each[1]) + SetPenLocation(1, 2) + Ascii("AB") + Bytes({FF}));
        EXPECT_EQ(TextOf(bytes), "");
        EXPECT_EQ(PenOf(bytes), "0,0");
    }
}

TEST(FormFeed, KeepsPenAndVisibility)
{
    Requirement("C12");
    Driver decoder;
    PenAttributes italics;
    italics.italics = 1;

    decoder.SendService(1, Grid(1, 5, SetPenAttributes(italics) + Ascii("A") + Bytes({FF}) + Ascii("B")));

    EXPECT_EQ(decoder.Window(0)->visible, 1);
    EXPECT_EQ(decoder.Window(0)->cells[0][0].pen.italics, 1);
}

TEST(CarriageReturn708, GoesToTheNextRowByTheScrollDirection)
{
    Requirement("C13", "C39", "C40");
    const struct {
        unsigned print, scroll, row, column;
        const char *text, *pen, *scrolled, *penScrolled;
    } cases[] = {
        // A, CR, B, CR, C in a window of 3 by 3; then one more
        {LTR, BTT, 0, 0, "0 A|1 B|2 C", "2,1", "0 B|1 C", "2,0"},
        {LTR, TTB, 2, 0, "0 C|1 B|2 A", "0,1", "1 C|2 B", "0,0"},
        {RTL, BTT, 0, 2, "0 ..A|1 ..B|2 ..C", "2,1", "0 ..B|1 ..C", "2,2"},
        {RTL, TTB, 2, 2, "0 ..C|1 ..B|2 ..A", "0,1", "1 ..C|2 ..B", "0,2"},
        {TTB, RTL, 0, 0, "0 ABC", "1,2", "0 BC", "0,2"},
        {TTB, LTR, 0, 2, "0 CBA", "1,0", "0 .CB", "0,0"},
        {BTT, RTL, 2, 0, "2 ABC", "1,2", "2 BC", "2,2"},
        {BTT, LTR, 2, 2, "2 CBA", "1,0", "2 .CB", "2,0"},
        // directions that are parallel: bottom to top, or right to left
        {LTR, LTR, 0, 0, "0 A|1 B|2 C", "2,1", "0 B|1 C", "2,0"},
        {LTR, RTL, 0, 0, "0 A|1 B|2 C", "2,1", "0 B|1 C", "2,0"},
        {TTB, TTB, 0, 0, "0 ABC", "1,2", "0 BC", "0,2"},
        {BTT, BTT, 2, 0, "2 ABC", "1,2", "2 BC", "2,2"},
    };

    for (const auto &each : cases) {
        const ByteString three = Grid(3, 3,
                                      Directions(each.print, each.scroll) +
                                          SetPenLocation(each.row, each.column) + Ascii("A\rB\rC"));
        EXPECT_EQ(TextOf(three), each.text) << each.print << each.scroll;
        EXPECT_EQ(PenOf(three), each.pen) << each.print << each.scroll;
        EXPECT_EQ(TextOf(three + Ascii("\r")), each.scrolled) << each.print << each.scroll;
        EXPECT_EQ(PenOf(three + Ascii("\r")), each.penScrolled) << each.print << each.scroll;
    }
}

TEST(CarriageReturn708, KeepsTheTextOfTheNextRow)
{
    Requirement("C13");

    EXPECT_EQ(TextOf(Grid(2, 9,
                          SetPenLocation(1, 0) + Ascii("KEPT") + SetPenLocation(0, 3) + Ascii("A") +
                              Bytes({CR708}) + Ascii("x"))),
              "0 ...A|1 xEPT");
}

TEST(HorizontalCarriageReturn, ErasesTheRowAndGoesToItsStart)
{
    Requirement("C14");
    const struct {
        unsigned print, scroll;
        const char *text, *pen;
    } cases[] = {
        // a window of 3 by 3 full of text, the pen in its middle
        {LTR, BTT, "0 ABC|2 GHI", "1,0"},
        {RTL, BTT, "0 ABC|2 GHI", "1,2"},
        {TTB, RTL, "0 A.C|1 D.F|2 G.I", "0,1"},
        {BTT, RTL, "0 A.C|1 D.F|2 G.I", "2,1"},
    };

    for (const auto &each : cases) {
        ByteString bytes = Grid(3, 3, Directions(each.print, each.scroll));
        for (unsigned i = 0; i < 9; i++) bytes = bytes + SetPenLocation(i / 3, i % 3) + Bytes({'A' + i});
        bytes = bytes + SetPenLocation(1, 1) + Bytes({HCR});
        EXPECT_EQ(TextOf(bytes), each.text) << each.print;
        EXPECT_EQ(PenOf(bytes), each.pen) << each.print;
    }
}

/* ------------------------------------------------------------------------------------------------ Window commands */

TEST(SetCurrentWindow708, ChoosesWhereTextGoes)
{
    Requirement("C15");
    Driver decoder;

    for (unsigned window = 0; window < 8; window++) decoder.SendService(1, Define(Window(window)));
    for (unsigned window = 0; window < 8; window++) {
        decoder.SendService(1, SetCurrentWindow(window) + Ascii(std::to_string(window)));
        EXPECT_EQ(decoder.Service().current_window, window);
    }

    for (unsigned window = 0; window < 8; window++)
        EXPECT_EQ(decoder.WindowText(window), "0 " + std::to_string(window));
}

TEST(SetCurrentWindow708, OfAWindowThatDoesNotExistKeepsTheCurrentOne)
{
    Requirement("C15");
    Driver decoder;

    decoder.SendService(1, Define(Window(2)) + Ascii("A") + SetCurrentWindow(5) + Ascii("B"));

    EXPECT_EQ(decoder.WindowText(2), "0 AB");
    EXPECT_EQ(decoder.WindowText(5), "-");
    EXPECT_EQ(decoder.Service().current_window, 2);
}

TEST(ClearWindows708, ErasesTextAndHomesThePenOfTheMapsWindows)
{
    Requirement("C16");
    Driver decoder;
    PenAttributes underline;
    underline.underline = 1;
    decoder.SendService(1, Define(Window(0)) + Ascii("A") + Define(Window(3).Hidden()) +
                               SetPenAttributes(underline) + Ascii("B") + Define(Window(7)) + Ascii("C"));

    // windows 1 and 2 do not exist
    decoder.SendService(1, ClearWindows(0x0E));

    EXPECT_EQ(decoder.WindowText(0), "0 A");
    EXPECT_EQ(decoder.WindowText(3), "");
    EXPECT_EQ(decoder.WindowText(7), "0 C");
    EXPECT_EQ(decoder.Pen(3), "0,0");
    EXPECT_EQ(decoder.Window(3)->pen.underline, 1);
    EXPECT_EQ(decoder.Window(3)->visible, 0);
    EXPECT_EQ(decoder.Service().current_window, 7);
    EXPECT_EQ(decoder.Service().existing_windows, 0x89);
}

TEST(ShowingWindows, FollowsTheMap)
{
    Requirement("C17");
    Driver decoder;
    decoder.SendService(1, Define(Window(0)) + Define(Window(1).Hidden()) + Define(Window(6)) +
                               Define(Window(7).Hidden()));
    ASSERT_EQ(decoder.Service().visible_windows, 0x41);

    decoder.SendService(1, DisplayWindows(0x06));
    EXPECT_EQ(decoder.Service().visible_windows, 0x43);
    decoder.SendService(1, HideWindows(0xF1));
    EXPECT_EQ(decoder.Service().visible_windows, 0x02);
    decoder.SendService(1, ToggleWindows(0xFF));
    EXPECT_EQ(decoder.Service().visible_windows, 0xC1);
    EXPECT_EQ(decoder.Service().existing_windows, 0xC3);
    EXPECT_EQ(decoder.Service().current_window, 7);
}

TEST(DeleteWindows708, ForgetsThem)
{
    Requirement("C18");
    Driver decoder;
    PenAttributes large;
    large.size = 2;
    decoder.SendService(1, Define(Window(0)) + SetPenAttributes(large) + Ascii("A") + Define(Window(1)) +
                               Ascii("B"));

    decoder.SendService(1, DeleteWindows(0x81));
    EXPECT_EQ(decoder.WindowText(0), "-");
    EXPECT_EQ(decoder.Service().existing_windows, 0x02);
    EXPECT_EQ(decoder.Service().current_window, 1);
    decoder.SendService(1, Ascii("C") + Define(Window(0).Styles(0, 0)));

    EXPECT_EQ(decoder.WindowText(1), "0 BC");
    EXPECT_EQ(decoder.WindowText(0), "");
    EXPECT_EQ(decoder.Window(0)->pen.size, KOVA_CAPTIONS_PEN_STANDARD);
}

TEST(DeleteWindows708, OfTheCurrentOneLeavesNoneCurrent)
{
    Requirement("C18");
    Driver decoder;

    decoder.SendService(1, Define(Window(0)) + Define(Window(1)) + DeleteWindows(0x02) + Ascii("A"));

    EXPECT_EQ(decoder.Service().current_window, KOVA_CAPTIONS_NO_WINDOW);
    EXPECT_EQ(decoder.WindowText(0), "");
}

/* ---------------------------------------------------------------------------------------------------- Bit fields */

TEST(Fields, OfDefineWindowAreAsTabled)
{
    Requirement("C19");
    Driver decoder;

    // 9a: window 2; 15: hidden, row lock, no column lock, priority 5; a3: relative, 35; 4d: 77; 82: point 8, 3 rows;
    // 11: 18 columns; 2b: styles 5 and 3
    decoder.SendService(1, Hex("9a 15 a3 4d 82 11 2b"));

    const auto window = decoder.Window(2);
    EXPECT_EQ(window->exists, 1);
    EXPECT_EQ(window->visible, 0);
    EXPECT_EQ(window->definition.row_lock, 1);
    EXPECT_EQ(window->definition.column_lock, 0);
    EXPECT_EQ(window->definition.priority, 5);
    EXPECT_EQ(window->definition.relative, 1);
    EXPECT_EQ(window->definition.anchor_vertical, 35);
    EXPECT_EQ(window->definition.anchor_horizontal, 77);
    EXPECT_EQ(window->definition.anchor_point, 8);
    EXPECT_EQ(window->definition.rows, 3);
    EXPECT_EQ(window->definition.columns, 18);
    EXPECT_EQ(window->definition.window_style, 5);
    EXPECT_EQ(window->definition.pen_style, 3);
}

TEST(Fields, OfDefineWindowAreAsTabledTheOtherWayRound)
{
    Requirement("C19");
    Driver decoder;

    // ea: visible, no row lock, column lock, priority 2, both zero bits set; 1c: absolute, 28; c8: 200; 40: point 4, 1 row;
    // e9: 42 columns and both zero bits; d4: styles 2 and 4 and both zero bits
    decoder.SendService(1, Hex("9f ea 1c c8 40 e9 d4"));

    const auto window = decoder.Window(7);
    EXPECT_EQ(window->visible, 1);
    EXPECT_EQ(window->definition.row_lock, 0);
    EXPECT_EQ(window->definition.column_lock, 1);
    EXPECT_EQ(window->definition.priority, 2);
    EXPECT_EQ(window->definition.relative, 0);
    EXPECT_EQ(window->definition.anchor_vertical, 28);
    EXPECT_EQ(window->definition.anchor_horizontal, 200);
    EXPECT_EQ(window->definition.anchor_point, 4);
    EXPECT_EQ(window->definition.rows, 1);
    EXPECT_EQ(window->definition.columns, 42);
    EXPECT_EQ(window->definition.window_style, 2);
    EXPECT_EQ(window->definition.pen_style, 4);
}

static KovaCaptionsPen PenAfter(const ByteString &command)
{
    Driver decoder;

    decoder.SendService(1, Grid(1, 9, command));
    return decoder.Window(0)->pen;
}

TEST(Fields, OfSetPenAttributesAreAsTabled)
{
    Requirement("C19");

    for (unsigned i = 0; i < 16; i++) EXPECT_EQ(PenAfter(Bytes({0x90, i << 4 | 0x05, 0})).text_tag, i);
    for (unsigned i = 0; i < 4; i++) {
        // 3 is reserved: normal and standard
        EXPECT_EQ(PenAfter(Bytes({0x90, i << 2 | 1, 0})).offset, i < 3 ? i : 1);
        EXPECT_EQ(PenAfter(Bytes({0x90, 0x04 | i, 0})).size, i < 3 ? i : 1);
    }
    for (unsigned i = 0; i < 8; i++) {
        // 6 and 7 are reserved: none
        EXPECT_EQ(PenAfter(Bytes({0x90, 0x05, i << 3})).edge_type, i < 6 ? i : 0);
        EXPECT_EQ(PenAfter(Bytes({0x90, 0x05, i})).font, i);
    }
    EXPECT_EQ(PenAfter(Bytes({0x90, 0x05, 0x80})).italics, 1);
    EXPECT_EQ(PenAfter(Bytes({0x90, 0x05, 0x80})).underline, 0);
    EXPECT_EQ(PenAfter(Bytes({0x90, 0x05, 0x40})).italics, 0);
    EXPECT_EQ(PenAfter(Bytes({0x90, 0x05, 0x40})).underline, 1);
}

TEST(Fields, OfSetPenColorAreAsTabled)
{
    Requirement("C19");

    // foreground flashing (3,1,2), background translucent (0,2,1), edge (1,3,0) with its upper bits set
    const KovaCaptionsPen pen = PenAfter(Hex("91 76 89 dc"));
    EXPECT_EQ(pen.foreground_opacity, KOVA_CAPTIONS_FLASH);
    EXPECT_EQ(pen.foreground, 0x36);
    EXPECT_EQ(pen.background_opacity, KOVA_CAPTIONS_TRANSLUCENT);
    EXPECT_EQ(pen.background, 0x09);
    EXPECT_EQ(pen.edge_color, 0x1C);

    const KovaCaptionsPen other = PenAfter(Hex("91 c0 3f 3f"));
    EXPECT_EQ(other.foreground_opacity, KOVA_CAPTIONS_TRANSPARENT);
    EXPECT_EQ(other.foreground, 0);
    EXPECT_EQ(other.background_opacity, KOVA_CAPTIONS_SOLID);
    EXPECT_EQ(other.background, 0x3F);
    EXPECT_EQ(other.edge_color, 0x3F);
}

TEST(Fields, OfThePenAreThoseOfTheCellsThatItPrints)
{
    Requirement("C19");
    // SetPenAttributes and SetPenColor with every bit that counts in turn
    for (unsigned bit = 0; bit < 40; bit++) {
        unsigned bytes[5] = {};
        bytes[bit / 8] = 1u << bit % 8;
        Driver decoder;
        decoder.SendService(
            1,
            Grid(1, 9, Bytes({0x90, bytes[0], bytes[1], 0x91, bytes[2], bytes[3], bytes[4]})) + Ascii("A"));
        const auto window = decoder.Window(0);
        ASSERT_EQ(window->cells[0][0].character, 'A');
        EXPECT_EQ(memcmp(&window->cells[0][0].pen, &window->pen, sizeof window->pen), 0) << bit;
    }
}

TEST(Fields, OfSetPenLocationAreAsTabled)
{
    Requirement("C19");

    EXPECT_EQ(PenOf(Grid(15, 42, Hex("92 0c 27"))), "12,39");
    // upper bits are not looked at
    EXPECT_EQ(PenOf(Grid(15, 42, Hex("92 fc e7"))), "12,39");
    // outside of the window the last row and column
    EXPECT_EQ(PenOf(Grid(3, 10, Hex("92 05 05"))), "2,5");
    EXPECT_EQ(PenOf(Grid(3, 10, Hex("92 01 20"))), "1,9");
    EXPECT_EQ(PenOf(Grid(15, 42, Hex("92 0f 3f"))), "14,41");
}

TEST(Fields, OfSetWindowAttributesAreAsTabled)
{
    Requirement("C19");
    Driver decoder;

    // fill flashing (1,2,3); border 01 (3,2,1); border bit 2, no wrap, print 3, scroll 1, justify 2; speed 9, 2, effect 1
    decoder.SendService(1, Grid(1, 9, Hex("97 5b 79 b6 99")));
    KovaCaptionsWindowAttributes attributes = decoder.Window(0)->attributes;
    EXPECT_EQ(attributes.fill_opacity, KOVA_CAPTIONS_FLASH);
    EXPECT_EQ(attributes.fill_color, 0x1B);
    EXPECT_EQ(attributes.border_type, KOVA_CAPTIONS_EDGE_SHADOW_RIGHT);
    EXPECT_EQ(attributes.border_color, 0x39);
    EXPECT_EQ(attributes.word_wrap, 0);
    EXPECT_EQ(attributes.print_direction, KOVA_CAPTIONS_BOTTOM_TO_TOP);
    EXPECT_EQ(attributes.scroll_direction, KOVA_CAPTIONS_RIGHT_TO_LEFT);
    EXPECT_EQ(attributes.justify, KOVA_CAPTIONS_JUSTIFY_CENTER);
    EXPECT_EQ(attributes.effect_speed, 9);
    EXPECT_EQ(attributes.effect_direction, KOVA_CAPTIONS_TOP_TO_BOTTOM);
    EXPECT_EQ(attributes.display_effect, 1);

    // the complement in every field
    decoder.SendService(1, Hex("97 a4 86 49 66"));
    attributes = decoder.Window(0)->attributes;
    EXPECT_EQ(attributes.fill_opacity, KOVA_CAPTIONS_TRANSLUCENT);
    EXPECT_EQ(attributes.fill_color, 0x24);
    EXPECT_EQ(attributes.border_type, KOVA_CAPTIONS_EDGE_DEPRESSED);
    EXPECT_EQ(attributes.border_color, 0x06);
    EXPECT_EQ(attributes.word_wrap, 1);
    EXPECT_EQ(attributes.print_direction, KOVA_CAPTIONS_LEFT_TO_RIGHT);
    EXPECT_EQ(attributes.scroll_direction, KOVA_CAPTIONS_TOP_TO_BOTTOM);
    EXPECT_EQ(attributes.justify, KOVA_CAPTIONS_JUSTIFY_RIGHT);
    EXPECT_EQ(attributes.effect_speed, 6);
    EXPECT_EQ(attributes.effect_direction, KOVA_CAPTIONS_RIGHT_TO_LEFT);
    EXPECT_EQ(attributes.display_effect, 2);
}

TEST(Fields, OfAReservedBorderAreNone)
{
    Requirement("C19");

    for (unsigned border = 0; border < 8; border++) {
        Driver decoder;
        WindowAttributes attributes;
        attributes.border = border;
        decoder.SendService(1, Grid(1, 9, SetWindowAttributes(attributes)));
        EXPECT_EQ(decoder.Window(0)->attributes.border_type, border < 6 ? border : 0);
    }
}

TEST(Pen708, GoesWithTheCharacterNotWithTheCell)
{
    Requirement("C19", "C22");
    Driver decoder;
    PenAttributes italics;
    italics.italics = 1;
    PenColor color;
    color.foreground = 0x30;

    decoder.SendService(
        1, Grid(1, 9, Ascii("A") + SetPenAttributes(italics) + Ascii("B") + SetPenColor(color) + Ascii("C")));

    const auto window = decoder.Window(0);
    EXPECT_EQ(window->cells[0][0].pen.italics, 0);
    EXPECT_EQ(window->cells[0][0].pen.foreground, 0x2A);
    EXPECT_EQ(window->cells[0][1].pen.italics, 1);
    EXPECT_EQ(window->cells[0][1].pen.foreground, 0x2A);
    EXPECT_EQ(window->cells[0][2].pen.italics, 1);
    EXPECT_EQ(window->cells[0][2].pen.foreground, 0x30);
}

TEST(TextTag, OfWhatIsNotDisplayedTakesCellsAndShowsNothing)
{
    Requirement("C56");
    Driver decoder;
    PenAttributes hidden, shown;
    hidden.tag = 15;
    shown.tag = 14;

    decoder.SendService(1, Grid(1, 9,
                                Ascii("ABCDEF") + SetPenLocation(0, 1) + SetPenAttributes(hidden) +
                                    Ascii("xy") + SetPenAttributes(shown) + Ascii("z")));

    EXPECT_EQ(decoder.WindowText(), "0 A~~zEF");
}
