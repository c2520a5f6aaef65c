// SPDX-License-Identifier: MIT
// CEA-708: how windows are defined and defined again, the predefined styles, rows, movements.
#include "driver.h"

static ByteString Attributes(unsigned justify, unsigned print = 0, unsigned scroll = 3)
{
    WindowAttributes attributes;

    attributes.justify = justify;
    attributes.print = print;
    attributes.scroll = scroll;
    return SetWindowAttributes(attributes);
}

static std::string TextOf(const ByteString &bytes)
{
    Driver decoder;

    decoder.SendService(1, bytes);
    return decoder.WindowText();
}

static std::string PenOf(const ByteString &bytes)
{
    Driver decoder;

    decoder.SendService(1, bytes);
    return decoder.Pen();
}

/* ------------------------------------------------------------------------------------------------------ Definition */

static void ExpectPenStyle1(const KovaCaptionsPen &pen)
{
    EXPECT_EQ(pen.size, KOVA_CAPTIONS_PEN_STANDARD);
    EXPECT_EQ(pen.offset, KOVA_CAPTIONS_NORMAL);
    EXPECT_EQ(pen.font, KOVA_CAPTIONS_FONT_DEFAULT);
    EXPECT_EQ(pen.italics, 0);
    EXPECT_EQ(pen.underline, 0);
    EXPECT_EQ(pen.edge_type, KOVA_CAPTIONS_EDGE_NONE);
    EXPECT_EQ(pen.foreground, 0x2A);
    EXPECT_EQ(pen.foreground_opacity, KOVA_CAPTIONS_SOLID);
    EXPECT_EQ(pen.background, KOVA_CAPTIONS_BLACK);
    EXPECT_EQ(pen.background_opacity, KOVA_CAPTIONS_SOLID);
    EXPECT_EQ(pen.text_tag, 0);
}

static void ExpectWindowStyle1(const KovaCaptionsWindowAttributes &attributes)
{
    EXPECT_EQ(attributes.justify, KOVA_CAPTIONS_JUSTIFY_LEFT);
    EXPECT_EQ(attributes.print_direction, KOVA_CAPTIONS_LEFT_TO_RIGHT);
    EXPECT_EQ(attributes.scroll_direction, KOVA_CAPTIONS_BOTTOM_TO_TOP);
    EXPECT_EQ(attributes.word_wrap, 0);
    EXPECT_EQ(attributes.display_effect, 0);
    EXPECT_EQ(attributes.effect_speed, 0);
    EXPECT_EQ(attributes.fill_color, KOVA_CAPTIONS_BLACK);
    EXPECT_EQ(attributes.fill_opacity, KOVA_CAPTIONS_SOLID);
    EXPECT_EQ(attributes.border_type, KOVA_CAPTIONS_EDGE_NONE);
}

TEST(NewWindow, IsEmptyCurrentAndOfStyle1)
{
    Requirement("C20", "C25");

    for (const unsigned style : {0u, 1u}) {
        Driver decoder;
        decoder.SendService(1, Define(Window(4).Rows(3).Styles(style, style)));
        const auto window = decoder.Window(4);
        EXPECT_EQ(window->exists, 1);
        EXPECT_EQ(decoder.WindowText(4), "");
        EXPECT_EQ(decoder.Pen(4), "0,0");
        EXPECT_EQ(decoder.Service().current_window, 4);
        ExpectPenStyle1(window->pen);
        ExpectWindowStyle1(window->attributes);
    }
}

TEST(NewWindow, FindsNothingOfTheOneItFollows)
{
    Requirement("C20", "C18");
    Driver decoder;
    PenAttributes pen;
    pen.tag = 3;
    pen.italics = 1;
    PenColor color;
    color.foreground = 0x03;

    decoder.SendService(1, Define(Window(0).Rows(2)) + Attributes(2) + SetPenAttributes(pen) +
                               SetPenColor(color) + SetPenLocation(1, 4) + Ascii("TEXT") +
                               DeleteWindows(0x01) + Define(Window(0).Rows(2).Styles(0, 0)));

    EXPECT_EQ(decoder.WindowText(), "");
    EXPECT_EQ(decoder.Pen(), "0,0");
    ExpectPenStyle1(decoder.Window(0)->pen);
    ExpectWindowStyle1(decoder.Window(0)->attributes);
}

TEST(SameDefinition, ChangesOnlyTheCurrentWindow)
{
    Requirement("C21");
    Driver decoder;
    PenAttributes pen;
    pen.underline = 1;
    decoder.SendService(1, Define(Window(0).Rows(2).Styles(2, 5)) + Attributes(2) + SetPenAttributes(pen) +
                               SetPenLocation(1, 0) + Ascii("TEXT") + Define(Window(1)));
    const KovaCaptionsWindow before = *decoder.Window(0);

    decoder.SendService(1, Define(Window(0).Rows(2).Styles(2, 5)));

    const auto after = decoder.Window(0);
    EXPECT_EQ(decoder.Service().current_window, 0);
    EXPECT_EQ(decoder.WindowText(), "1 TEXT");
    EXPECT_EQ(decoder.Pen(), "1,4");
    EXPECT_EQ(after->pen.underline, 1);
    EXPECT_EQ(after->attributes.justify, KOVA_CAPTIONS_JUSTIFY_CENTER);
    EXPECT_EQ(after->revision, before.revision);
}

TEST(SameDefinition, ShowsAWindowThatWasHiddenSince)
{
    Requirement("C21");
    Driver decoder;

    decoder.SendService(1, Define(Window(0)) + Ascii("TEXT") + HideWindows(0x01) + Define(Window(0)));
    EXPECT_EQ(decoder.Service().visible_windows, 0x01);
    EXPECT_EQ(decoder.WindowText(), "0 TEXT");
    decoder.SendService(1, Define(Window(1).Hidden()) + DisplayWindows(0x02) + Define(Window(1).Hidden()));
    EXPECT_EQ(decoder.Service().visible_windows, 0x01);
}

TEST(ChangedDefinition, KeepsTextPenAndAttributes)
{
    Requirement("C22");
    Driver decoder;
    PenAttributes pen;
    pen.italics = 1;
    decoder.SendService(1, Define(Window(0).Rows(2)) + Attributes(2) + SetPenAttributes(pen) +
                               SetPenLocation(1, 0) + Ascii("TEXT"));

    decoder.SendService(
        1, Define(Window(0).Rows(2).Priority(3).Anchor(7, 70, 100).Locks(0, 0).Hidden().Styles(0, 0)));

    const auto window = decoder.Window(0);
    EXPECT_EQ(decoder.WindowText(), "1 TEXT");
    EXPECT_EQ(decoder.Pen(), "1,4");
    EXPECT_EQ(window->pen.italics, 1);
    EXPECT_EQ(window->attributes.justify, KOVA_CAPTIONS_JUSTIFY_CENTER);
    EXPECT_EQ(window->visible, 0);
    EXPECT_EQ(window->definition.priority, 3);
    EXPECT_EQ(window->definition.anchor_point, 7);
    EXPECT_EQ(window->definition.anchor_vertical, 70);
    EXPECT_EQ(window->definition.anchor_horizontal, 100);
    EXPECT_EQ(window->definition.row_lock, 0);
    EXPECT_EQ(window->definition.column_lock, 0);
}

TEST(ChangedDefinition, TakesTheStylesItNames)
{
    Requirement("C22");
    Driver decoder;
    PenAttributes pen;
    pen.italics = 1;
    decoder.SendService(1, Define(Window(0)) + SetPenAttributes(pen) + Ascii("AB"));

    // window style 2 differs in the fill, pen style 5 in the font
    decoder.SendService(1, Define(Window(0).Styles(2, 5)) + Ascii("C"));

    const auto window = decoder.Window(0);
    EXPECT_EQ(decoder.WindowText(), "0 ABC");
    EXPECT_EQ(window->attributes.fill_opacity, KOVA_CAPTIONS_TRANSPARENT);
    EXPECT_EQ(window->pen.italics, 0);
    EXPECT_EQ(window->pen.font, KOVA_CAPTIONS_FONT_SANS);
    // text on the screen keeps its look
    EXPECT_EQ(window->cells[0][1].pen.italics, 1);
    EXPECT_EQ(window->cells[0][1].pen.font, KOVA_CAPTIONS_FONT_DEFAULT);
    EXPECT_EQ(window->cells[0][2].pen.font, KOVA_CAPTIONS_FONT_SANS);
}

TEST(ChangedDefinition, BecomesTheCurrentWindow)
{
    Requirement("C22");
    Driver decoder;

    decoder.SendService(1,
                        Define(Window(0)) + Define(Window(1)) + Define(Window(0).Priority(1)) + Ascii("A"));

    EXPECT_EQ(decoder.WindowText(0), "0 A");
}

static const ByteString FOUR_ROWS = Define(Window(0).Rows(4).Columns(6));

TEST(SmallerWindow, LosesTheOldestRows)
{
    Requirement("C23");

    // bottom to top: the rest moves up
    EXPECT_EQ(TextOf(FOUR_ROWS + Ascii("A\rB\rC\rD") + Define(Window(0).Rows(2).Columns(6).Styles(0, 0))),
              "0 C|1 D");
    // top to bottom: the last rows go
    EXPECT_EQ(TextOf(FOUR_ROWS + Attributes(0, 0, 2) + SetPenLocation(3, 0) + Ascii("A\rB\rC\rD") +
                     Define(Window(0).Rows(2).Columns(6).Styles(0, 0))),
              "0 D|1 C");
}

TEST(SmallerWindow, LosesTheColumnsOnTheRight)
{
    Requirement("C23");

    EXPECT_EQ(TextOf(FOUR_ROWS + Ascii("ABCDEF") + Define(Window(0).Rows(4).Columns(4).Styles(0, 0))),
              "0 ABCD");
}

TEST(SmallerWindow, ClampsThePen)
{
    Requirement("C23");

    EXPECT_EQ(PenOf(FOUR_ROWS + SetPenLocation(3, 5) + Define(Window(0).Rows(2).Columns(3).Styles(0, 0))),
              "1,2");
}

TEST(LargerWindow, HasEmptyRowsAndColumnsAdded)
{
    Requirement("C23", "C22");

    EXPECT_EQ(TextOf(Define(Window(0).Rows(1).Columns(2)) + Ascii("AB") +
                     Define(Window(0).Rows(2).Columns(4).Styles(0, 0)) + SetPenLocation(0, 3) + Ascii("C") +
                     SetPenLocation(1, 1) + Ascii("D")),
              "0 AB.C|1 .D");
}

TEST(LargestWindow, HasFifteenRowsAnd42Columns)
{
    Requirement("C24");
    Driver decoder;

    // 16 rows and 64 columns
    decoder.SendService(1, Define(Window(0).Rows(16).Columns(64)) + SetPenLocation(15, 63) + Ascii("Z"));

    EXPECT_EQ(decoder.Window(0)->definition.rows, 15);
    EXPECT_EQ(decoder.Window(0)->definition.columns, 42);
    EXPECT_EQ(decoder.WindowText(), "14 " + std::string(41, '.') + "Z");
}

TEST(AnchorPoint, AboveEightIsRefused)
{
    Requirement("C24");

    for (unsigned point = 9; point < 16; point++) {
        Driver decoder;
        decoder.SendService(1, Define(Window(1)) + Define(Window(0).Anchor(point, 0, 0)) + Ascii("A"));
        EXPECT_EQ(decoder.WindowText(0), "-") << point;
        EXPECT_EQ(decoder.WindowText(1), "0 A") << point;
        EXPECT_EQ(decoder.Service().current_window, 1) << point;
    }
}

TEST(AnchorPoint, AboveEightLeavesAWindowAsItIs)
{
    Requirement("C24");
    Driver decoder;

    decoder.SendService(1, Define(Window(0)) + Ascii("A") +
                               Define(Window(0).Anchor(9, 10, 10).Hidden().Rows(3)));

    EXPECT_EQ(decoder.Window(0)->visible, 1);
    EXPECT_EQ(decoder.Window(0)->definition.rows, 1);
    EXPECT_EQ(decoder.Window(0)->definition.anchor_vertical, 0);
}

TEST(Anchor, OutsideOfTheGridIsClamped)
{
    Requirement("C24");
    Driver decoder;

    decoder.SendService(1, Define(Window(0).Anchor(0, 74, 209)) + Define(Window(1).Anchor(0, 75, 210)) +
                               Define(Window(2).Anchor(0, 127, 255)) +
                               Define(Window(3).Relative().Anchor(8, 99, 99)) +
                               Define(Window(4).Relative().Anchor(8, 100, 100)) +
                               Define(Window(5).Relative().Anchor(8, 127, 255)));

    for (unsigned window = 0; window < 6; window++) {
        EXPECT_EQ(decoder.Window(window)->definition.anchor_vertical, window < 3 ? 74 : 99) << window;
        EXPECT_EQ(decoder.Window(window)->definition.anchor_horizontal, window < 3 ? 209 : 99) << window;
    }
}

/* ---------------------------------------------------------------------------------------------- Predefined styles */

TEST(WindowStyles, AreAsTabled)
{
    Requirement("C25", "C26");
    enum { LEFT, RIGHT, CENTER };
    enum { LTR, RTL, TTB, BTT };
    enum { SOLID = 0, CLEAR = 3 };
    const struct {
        unsigned style, justify, print, scroll, wrap, opacity;
    } table[] = {{1, LEFT, LTR, BTT, 0, SOLID},   {2, LEFT, LTR, BTT, 0, CLEAR},
                 {3, CENTER, LTR, BTT, 0, SOLID}, {4, LEFT, LTR, BTT, 1, SOLID},
                 {5, LEFT, LTR, BTT, 1, CLEAR},   {6, CENTER, LTR, BTT, 1, SOLID},
                 {7, LEFT, TTB, RTL, 0, SOLID}};

    for (const auto &row : table) {
        Driver decoder;
        decoder.SendService(1, Define(Window(0).Styles(row.style, 0)));
        const KovaCaptionsWindowAttributes attributes = decoder.Window(0)->attributes;
        EXPECT_EQ(attributes.justify, row.justify) << row.style;
        EXPECT_EQ(attributes.print_direction, row.print) << row.style;
        EXPECT_EQ(attributes.scroll_direction, row.scroll) << row.style;
        EXPECT_EQ(attributes.word_wrap, row.wrap) << row.style;
        EXPECT_EQ(attributes.fill_opacity, row.opacity) << row.style;
        EXPECT_EQ(attributes.fill_color, 0) << row.style;
        EXPECT_EQ(attributes.border_type, 0) << row.style;
        EXPECT_EQ(attributes.display_effect, 0) << row.style;
        EXPECT_EQ(attributes.effect_speed, 0) << row.style;
    }
}

TEST(PenStyles, AreAsTabled)
{
    Requirement("C25", "C26");
    const struct {
        unsigned style, font, edge, opacity;
    } table[] = {{1, 0, 0, 0}, {2, 1, 0, 0}, {3, 2, 0, 0}, {4, 3, 0, 0},
                 {5, 4, 0, 0}, {6, 3, 3, 3}, {7, 4, 3, 3}};

    for (const auto &row : table) {
        Driver decoder;
        decoder.SendService(1, Define(Window(0).Styles(0, row.style)));
        const KovaCaptionsPen pen = decoder.Window(0)->pen;
        EXPECT_EQ(pen.font, row.font) << row.style;
        EXPECT_EQ(pen.edge_type, row.edge) << row.style;
        EXPECT_EQ(pen.background_opacity, row.opacity) << row.style;
        EXPECT_EQ(pen.edge_color, 0) << row.style;
        EXPECT_EQ(pen.size, KOVA_CAPTIONS_PEN_STANDARD) << row.style;
        EXPECT_EQ(pen.offset, KOVA_CAPTIONS_NORMAL) << row.style;
        EXPECT_EQ(pen.italics + pen.underline, 0) << row.style;
        EXPECT_EQ(pen.foreground, 0x2A) << row.style;
        EXPECT_EQ(pen.foreground_opacity, 0) << row.style;
        EXPECT_EQ(pen.background, 0) << row.style;
    }
}

/* ------------------------------------------------------------------------------------- Justification and direction */

TEST(Justification, ClearsTheWindowWhenItChanges)
{
    Requirement("C27");

    for (const unsigned justify : {1u, 2u, 3u}) {
        const ByteString bytes =
            Define(Window(0).Rows(3)) + SetPenLocation(1, 0) + Ascii("TEXT") + Attributes(justify);
        EXPECT_EQ(TextOf(bytes), "");
        // the pen stays in its row
        EXPECT_EQ(PenOf(bytes).substr(0, 2), "1,");
    }
    EXPECT_EQ(PenOf(Define(Window(0).Rows(3)) + SetPenLocation(1, 7) + Attributes(2)), "1,7");
}

TEST(Justification, ClearsTheWindowWhenAStyleChangesIt)
{
    Requirement("C27");

    EXPECT_EQ(TextOf(Define(Window(0)) + Ascii("TEXT") + Define(Window(0).Styles(3, 0))), "");
    EXPECT_EQ(TextOf(Define(Window(0)) + Ascii("TEXT") + Define(Window(0).Styles(2, 0))), "0 TEXT");
}

TEST(Justification, KeepsTheTextWhenItStays)
{
    Requirement("C27");

    EXPECT_EQ(TextOf(Define(Window(0)) + Ascii("TEXT") + Attributes(0)), "0 TEXT");
    EXPECT_EQ(TextOf(Define(Window(0).Styles(3, 0)) + Ascii("TEXT") + Attributes(2)), "0 TEXT");
}

TEST(Direction, ClearsTheWindowWhenItChanges)
{
    Requirement("C28");
    const struct {
        unsigned print, scroll;
        const char *pen;
    } cases[] = {{1, 3, "1,31"}, {0, 2, "1,0"}};

    for (const auto &each : cases) {
        const ByteString bytes = Define(Window(0).Rows(3)) + SetPenLocation(1, 3) + Ascii("TEXT") +
                                 Attributes(0, each.print, each.scroll);
        EXPECT_EQ(TextOf(bytes), "") << each.print;
        // the pen goes to the row's start
        EXPECT_EQ(PenOf(bytes), each.pen) << each.print;
    }
    const ByteString vertical = Define(Window(0).Rows(3)) + SetPenLocation(1, 3) + Ascii("TEXT");
    EXPECT_EQ(TextOf(vertical + Attributes(0, 2, 1)), "");
    EXPECT_EQ(PenOf(vertical + Attributes(0, 2, 1)).substr(0, 2), "0,");
    EXPECT_EQ(PenOf(vertical + Attributes(0, 3, 1)).substr(0, 2), "2,");
}

TEST(Direction, MakesATickerOfStyle7)
{
    Requirement("C40", "C26");

    EXPECT_EQ(TextOf(Define(Window(0).Rows(4).Columns(3).Styles(7, 0)) + Ascii("AB\rCD\rE")), "0 ACE|1 BD");
    EXPECT_EQ(TextOf(Define(Window(0).Rows(4).Columns(3).Styles(7, 0)) + Ascii("AB\rCD\rE\rF")), "0 CEF|1 D");
}

/* ------------------------------------------------------------------------------------------------------------ Rows */

TEST(Rows, OfOtherJustificationAreClearedByANewCharacterOnceComplete)
{
    Requirement("C38");
    const ByteString home = SetPenLocation(0, 0);

    for (const unsigned justify : {1u, 2u, 3u}) {
        const ByteString begin = Define(Window(0).Rows(2)) + Attributes(justify) + Ascii("ABC");
        // completed by ETX, by a carriage return and the way back, by another command
        EXPECT_EQ(TextOf(begin + Bytes({ETX}) + home + Ascii("x")), "0 x") << justify;
        EXPECT_EQ(TextOf(begin + Bytes({CR708}) + home + Ascii("x")), "0 x") << justify;
        EXPECT_EQ(TextOf(begin + DisplayWindows(0x01) + home + Ascii("x")), "0 x") << justify;
        EXPECT_EQ(TextOf(begin + SetCurrentWindow(0) + home + Ascii("xy")), "0 xy") << justify;
    }
}

TEST(Rows, AreClearedWhicheverRowItIs)
{
    Requirement("C38");
    const ByteString begin = Define(Window(0).Rows(3)) + Attributes(2);

    for (unsigned row = 0; row < 3; row++) {
        const ByteString there = SetPenLocation(row, 0);
        const std::string number = std::to_string(row);
        EXPECT_EQ(TextOf(begin + there + Ascii("ABC") + Bytes({ETX}) + Ascii("x")), number + " x");
        EXPECT_EQ(TextOf(begin + there + Ascii("ABC") + Ascii("x")), number + " ABCx");
    }
}

TEST(Rows, AreNotCompletedByPenAttributesAndColor)
{
    Requirement("C38");

    EXPECT_EQ(TextOf(Define(Window(0).Rows(2)) + Attributes(2) + Ascii("ABC") + SetPenAttributes({}) +
                     SetPenColor({}) + Ascii("D")),
              "0 ABCD");
}

TEST(Rows, OfLeftJustificationAreEditedInPlace)
{
    Requirement("C38");

    EXPECT_EQ(
        TextOf(Define(Window(0).Rows(2)) + Ascii("ABC") + Bytes({ETX}) + SetPenLocation(0, 0) + Ascii("x")),
        "0 xBC");
}

TEST(Rows, KeepTheOtherRowsWhenOneIsCleared)
{
    Requirement("C38");

    EXPECT_EQ(TextOf(Define(Window(0).Rows(2)) + Attributes(2) + Ascii("ABC\rDEF") + Bytes({ETX}) +
                     SetPenLocation(0, 0) + Ascii("x")),
              "0 x|1 DEF");
}

TEST(Rows, EndAtTheirLastCell)
{
    Requirement("C43");
    const struct {
        unsigned print, scroll, row, column;
        const char *text, *pen;
    } cases[] = {{0, 3, 1, 0, "1 ABF", "1,2"},
                 {1, 3, 1, 2, "1 FBA", "1,0"},
                 {2, 1, 0, 1, "0 .A|1 .B|2 .F", "2,1"},
                 {3, 1, 2, 1, "0 .F|1 .B|2 .A", "0,1"}};

    for (const auto &each : cases) {
        const ByteString bytes = Define(Window(0).Rows(3).Columns(3)) +
                                 Attributes(0, each.print, each.scroll) +
                                 SetPenLocation(each.row, each.column) + Ascii("ABCDEF");
        EXPECT_EQ(TextOf(bytes), each.text) << each.print;
        EXPECT_EQ(PenOf(bytes), each.pen) << each.print;
    }
}

TEST(Rows, AreNeverWrapped)
{
    Requirement("C43");

    // styles 4 to 6 have the bit set
    for (const unsigned style : {4u, 5u, 6u}) {
        EXPECT_EQ(TextOf(Define(Window(0).Rows(3).Columns(5).Styles(style, 0)) + Ascii("TWO WORDS")),
                  "0 TWO S")
            << style;
    }
}

TEST(Rows, StandInUpToEightWindowsOfFifteen)
{
    Requirement("C34", "C35");
    Driver decoder;

    for (unsigned window = 0; window < 8; window++) {
        decoder.SendService(1, Define(Window(window).Rows(15).Columns(42)));
        for (unsigned row = 0; row < 15; row++) {
            decoder.SendService(1, SetPenLocation(row, 0) + ByteString(42, uint8_t('A' + window)));
        }
    }

    EXPECT_EQ(decoder.Service().visible_windows, 0xFF);
    for (unsigned window = 0; window < 8; window++) {
        const auto state = decoder.Window(window);
        for (const auto &row : state->cells) {
            for (const auto &cell : row) ASSERT_EQ(cell.character, 'A' + window);
        }
    }
}

/* ------------------------------------------------------------------------------------------------------- Movements */

static ByteString Effect(unsigned effect, unsigned direction, unsigned speed)
{
    WindowAttributes attributes;

    attributes.effect = effect;
    attributes.effectDirection = direction;
    attributes.effectSpeed = speed;
    return SetWindowAttributes(attributes);
}

TEST(Scroll, TakesNoMoreThan433Milliseconds)
{
    Requirement("C41");
    Driver decoder;
    decoder.SendService(1, Define(Window(0).Rows(2)) + Ascii("A\rB"));
    EXPECT_EQ(decoder.Window(0)->scroll.kind, KOVA_CAPTIONS_STILL);

    const int64_t start = decoder.Now();
    decoder.SendService(1, Ascii("\rC"));

    const KovaCaptionsMotion scroll = decoder.Window(0)->scroll;
    EXPECT_EQ(scroll.kind, KOVA_CAPTIONS_SCROLL);
    EXPECT_EQ(scroll.direction, KOVA_CAPTIONS_BOTTOM_TO_TOP);
    EXPECT_EQ(scroll.start, start);
    EXPECT_GE(scroll.duration, 200000);
    EXPECT_LE(scroll.duration, 433000);
    EXPECT_EQ(decoder.WindowText(), "0 B|1 C");
    decoder.Wait(433000);
    EXPECT_EQ(decoder.Window(0)->scroll.kind, KOVA_CAPTIONS_STILL);
}

TEST(Scroll, IsEndedByTheNext)
{
    Requirement("C41");
    Driver decoder;
    decoder.SendService(1, Define(Window(0).Rows(2)) + Ascii("A\rB\rC"));

    const int64_t start = decoder.Now();
    decoder.SendService(1, Ascii("\rD"));

    EXPECT_EQ(decoder.Window(0)->scroll.start, start);
    EXPECT_EQ(decoder.WindowText(), "0 C|1 D");
}

TEST(Scroll, OfAHiddenWindowIsAtOnce)
{
    Requirement("C41");
    Driver decoder;

    decoder.SendService(1, Define(Window(0).Rows(2).Hidden()) + Ascii("A\rB\rC"));

    EXPECT_EQ(decoder.WindowText(), "0 B|1 C");
    EXPECT_EQ(decoder.Window(0)->scroll.kind, KOVA_CAPTIONS_STILL);
}

TEST(Snap, IgnoresTheSpeed)
{
    Requirement("C44");

    // 0 is snap, 3 is reserved
    for (const unsigned effect : {0u, 3u}) {
        Driver decoder;
        decoder.SendService(1, Define(Window(0).Hidden()) + Effect(effect, 0, 15) + DisplayWindows(0x01));
        EXPECT_EQ(decoder.Window(0)->visible, 1);
        EXPECT_EQ(decoder.Window(0)->effect.kind, KOVA_CAPTIONS_STILL);
    }
}

TEST(Fade, TakesHalfASecondPerUnitOfSpeed)
{
    Requirement("C45");

    for (unsigned speed = 1; speed < 16; speed++) {
        Driver decoder;
        decoder.SendService(1, Define(Window(0).Hidden()) + Effect(1, 0, speed));
        const int64_t start = decoder.Now();
        decoder.SendService(1, DisplayWindows(0x01));
        const KovaCaptionsMotion effect = decoder.Window(0)->effect;
        EXPECT_EQ(decoder.Window(0)->visible, 1);
        EXPECT_EQ(effect.kind, KOVA_CAPTIONS_FADE);
        EXPECT_EQ(effect.showing, 1);
        EXPECT_EQ(effect.start, start);
        EXPECT_EQ(effect.duration, speed * SECOND / 2);
        decoder.Wait(start + effect.duration - 1 - decoder.Now());
        EXPECT_EQ(decoder.Window(0)->effect.kind, KOVA_CAPTIONS_FADE);
        decoder.Wait(1);
        EXPECT_EQ(decoder.Window(0)->effect.kind, KOVA_CAPTIONS_STILL);
    }
}

TEST(Fade, OfSpeed0IsSnap)
{
    Requirement("C45", "C44");
    Driver decoder;

    decoder.SendService(1, Define(Window(0).Hidden()) + Effect(1, 0, 0) + DisplayWindows(0x01));

    EXPECT_EQ(decoder.Window(0)->effect.kind, KOVA_CAPTIONS_STILL);
}

TEST(Wipe, HidesInTheOppositeDirection)
{
    Requirement("C45");
    const unsigned opposite[] = {1, 0, 3, 2};

    for (unsigned direction = 0; direction < 4; direction++) {
        Driver decoder;
        decoder.SendService(1, Define(Window(0).Hidden()) + Effect(2, direction, 2) + DisplayWindows(0x01));
        EXPECT_EQ(decoder.Window(0)->effect.kind, KOVA_CAPTIONS_WIPE);
        EXPECT_EQ(decoder.Window(0)->effect.direction, direction);
        decoder.Wait(SECOND);
        decoder.SendService(1, HideWindows(0x01));
        EXPECT_EQ(decoder.Window(0)->visible, 0);
        EXPECT_EQ(decoder.Window(0)->effect.kind, KOVA_CAPTIONS_WIPE);
        EXPECT_EQ(decoder.Window(0)->effect.direction, opposite[direction]);
        EXPECT_EQ(decoder.Window(0)->effect.showing, 0);
        EXPECT_EQ(decoder.Window(0)->effect.duration, SECOND);
    }
}

TEST(Effects, RunWheneverVisibilityChanges)
{
    Requirement("C45");
    const ByteString begin = Define(Window(0)) + Effect(1, 0, 2);
    const ByteString hidden = begin + HideWindows(0x01);

    // by toggling, and by a definition
    // (a definition with a style would bring the style's effect, snap)
    for (const ByteString &hide : {ToggleWindows(0x01), Define(Window(0).Hidden().Styles(0, 0))}) {
        Driver decoder;
        decoder.SendService(1, begin + hide);
        EXPECT_EQ(decoder.Window(0)->effect.kind, KOVA_CAPTIONS_FADE);
        EXPECT_EQ(decoder.Window(0)->effect.showing, 0);
    }
    for (const ByteString &show : {ToggleWindows(0x01), Define(Window(0).Styles(0, 0))}) {
        Driver decoder;
        decoder.SendService(1, hidden);
        decoder.Wait(2 * SECOND);
        decoder.SendService(1, show);
        EXPECT_EQ(decoder.Window(0)->effect.kind, KOVA_CAPTIONS_FADE);
        EXPECT_EQ(decoder.Window(0)->effect.showing, 1);
    }
}

TEST(Effects, DoNotRunIfVisibilityStays)
{
    Requirement("C45");
    Driver decoder;

    decoder.SendService(1, Define(Window(0)) + Effect(1, 0, 2) + DisplayWindows(0x01));

    EXPECT_EQ(decoder.Window(0)->effect.kind, KOVA_CAPTIONS_STILL);
}

TEST(Effects, GoBackFromWhereTheyAre)
{
    Requirement("C45");
    Driver decoder;
    decoder.SendService(1, Define(Window(0).Hidden()) + Effect(1, 0, 4));
    const int64_t start = decoder.Now();
    decoder.SendService(1, DisplayWindows(0x01));

    // a quarter of two seconds is done, so hiding ends after as long
    decoder.Wait(start + SECOND / 2 - decoder.Now());
    decoder.SendService(1, HideWindows(0x01));

    const KovaCaptionsMotion effect = decoder.Window(0)->effect;
    EXPECT_EQ(effect.showing, 0);
    EXPECT_EQ(effect.duration, 2 * SECOND);
    EXPECT_EQ(effect.start + effect.duration, start + SECOND);
}

TEST(Effects, AreNoneForDeletingAndClearing)
{
    Requirement("C45");
    Driver decoder;

    decoder.SendService(1, Define(Window(0)) + Effect(2, 0, 4) + Ascii("A") + ClearWindows(0x01));
    EXPECT_EQ(decoder.WindowText(), "");
    EXPECT_EQ(decoder.Window(0)->effect.kind, KOVA_CAPTIONS_STILL);
    decoder.SendService(1, DeleteWindows(0x01));
    EXPECT_EQ(decoder.Window(0)->exists, 0);
    EXPECT_EQ(decoder.Window(0)->effect.kind, KOVA_CAPTIONS_STILL);
}
