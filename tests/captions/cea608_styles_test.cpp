// SPDX-License-Identifier: MIT
// CEA-608: roll-up, pop-on and paint-on captions, Text, loss of data, extended data.
#include "driver.h"

static const unsigned CC1 = KOVA_CAPTIONS_CC1, T1 = KOVA_CAPTIONS_T1;

static std::string Letters(unsigned count)
{
    std::string text;

    for (unsigned i = 0; i < count; i++) text += char(i < 26 ? 'A' + i : 'a' + i - 26);
    return text;
}

/* --------------------------------------------------------------------------------------------------------- Roll-up */

TEST(RollUp, BeginsInRow15AndColumn1)
{
    Requirement("B30");

    for (const Misc code : {RU2, RU3, RU4}) {
        Driver decoder;
        decoder.Send(Code(code) + Text("A"));
        EXPECT_EQ(decoder.Displayed(), "15 A");
        EXPECT_EQ(decoder.Cursor(), "15,2");
        EXPECT_EQ(decoder.Mode(), unsigned(KOVA_CAPTIONS_ROLL_UP));
        EXPECT_EQ(decoder.Channel(CC1)->depth, code - RU2 + 2);
        EXPECT_EQ(decoder.Channel(CC1)->base_row, 14);
    }
}

TEST(RollUp, ErasesBothMemoriesOfAnotherStyle)
{
    Requirement("B30", "B41");

    for (const Misc style : {RCL, RDC}) {
        Driver decoder;
        decoder.Send(Code(RCL) + Pac(3) + Text("SHOWN") + Code(EOC) + Pac(7) + Text("LOADED") + Code(style) +
                     Pac(5) + Tab(3));
        decoder.Send(Code(RU3));
        EXPECT_EQ(decoder.Displayed(), "");
        EXPECT_EQ(decoder.NonDisplayed(), "");
        decoder.Send(Text("A"));
        EXPECT_EQ(decoder.Displayed(), "15 A");
    }
}

TEST(RollUp, KeepsTextAndCursorAtItsOwnCode)
{
    Requirement("B31");
    Driver decoder;

    decoder.Send(Code(RU3) + PacIndent(10, 4) + Text("AB") + Code(CR) + Text("CD"));
    decoder.Send(Code(RU3) + Text("EF"));

    EXPECT_EQ(decoder.Displayed(), "9 ....AB|10 CDEF");
}

TEST(RollUp, LosesTheTopRowsWhenItGetsFewer)
{
    Requirement("B31");
    Driver decoder;

    decoder.Send(Code(RU4) + Text("A") + Code(CR) + Text("B") + Code(CR) + Text("C") + Code(CR) + Text("D"));
    EXPECT_EQ(decoder.Displayed(), "12 A|13 B|14 C|15 D");
    decoder.Send(Code(RU2));
    EXPECT_EQ(decoder.Displayed(), "14 C|15 D");
    decoder.Send(Code(RU4) + Text("E"));

    // the rows that are added are empty
    EXPECT_EQ(decoder.Displayed(), "14 C|15 DE");
    decoder.Send(Code(CR));
    EXPECT_EQ(decoder.Displayed(), "13 C|14 DE");
}

TEST(RollUp, MovesAsAWholeToAPreamblesRow)
{
    Requirement("B32");
    Driver decoder;

    decoder.Send(Code(RU2) + Text("A") + Code(CR) + Text("B") + PacIndent(10, 4));
    EXPECT_EQ(decoder.Displayed(), "9 A|10 B");
    EXPECT_EQ(decoder.Channel(CC1)->base_row, 9);
    decoder.Send(Text("C"));
    EXPECT_EQ(decoder.Displayed(), "9 A|10 B...C");
    decoder.Send(Pac(12));

    EXPECT_EQ(decoder.Displayed(), "11 A|12 B...C");
}

TEST(RollUp, MovesOntoItselfWithoutLoss)
{
    Requirement("B32");
    Driver decoder;
    const char *const down = "11 A|12 B|13 C|14 D";
    const char *const up = "9 A|10 B|11 C|12 D";

    decoder.Send(Code(RU4) + Text("A") + Code(CR) + Text("B") + Code(CR) + Text("C") + Code(CR) + Text("D"));
    decoder.Send(Pac(14));
    EXPECT_EQ(decoder.Displayed(), down);
    decoder.Send(Pac(12));
    EXPECT_EQ(decoder.Displayed(), up);
    decoder.Send(Pac(14));
    EXPECT_EQ(decoder.Displayed(), down);
}

TEST(RollUp, FitsBelowTheTopOfTheScreen)
{
    Requirement("B33");

    for (unsigned depth = 2; depth <= 4; depth++) {
        for (unsigned row = 1; row <= 5; row++) {
            Driver decoder;
            decoder.Send(Code(Misc(RU2 + depth - 2)) + Pac(row) + Text("A"));
            EXPECT_EQ(decoder.Displayed(), std::to_string(row < depth ? depth : row) + " A")
                << depth << " " << row;
        }
    }
}

TEST(RollUp, FitsBelowTheTopOfTheScreenWhenItGetsMoreRows)
{
    Requirement("B33");
    Driver decoder;

    decoder.Send(Code(RU2) + Pac(2) + Text("A") + Code(RU4));
    EXPECT_EQ(decoder.Channel(CC1)->base_row, 3);
    EXPECT_EQ(decoder.Displayed(), "4 A");
}

TEST(RollUp, RollsAtACarriageReturn)
{
    Requirement("B34");
    Driver decoder;

    decoder.Send(Code(RU2) + PacIndent(15, 8) + Text("A") + Code(CR) + Text("B"));
    EXPECT_EQ(decoder.Displayed(), "14 ........A|15 B");
    decoder.Send(Code(CR));
    EXPECT_EQ(decoder.Displayed(), "14 B");
    EXPECT_EQ(decoder.Cursor(), "15,1");
    decoder.Send(Code(CR));

    EXPECT_EQ(decoder.Displayed(), "");
}

TEST(RollUp, AppearsCharacterByCharacter)
{
    Requirement("B34");
    Driver decoder;

    decoder.Send(Code(RU2) + Text("AB"));
    EXPECT_EQ(decoder.Displayed(), "15 AB");
    decoder.Send(Text("C"));
    EXPECT_EQ(decoder.Displayed(), "15 ABC");
}

TEST(RollUp, RollsInNoMoreThan433Milliseconds)
{
    Requirement("B35");
    Driver decoder;
    decoder.Send(Code(RU2) + Text("A"));

    const int64_t start = decoder.Now();
    decoder.Send(Code(CR));

    const KovaCaptionsMotion roll = decoder.Channel(CC1)->roll;
    EXPECT_EQ(roll.kind, KOVA_CAPTIONS_SCROLL);
    EXPECT_EQ(roll.start, start);
    EXPECT_GE(roll.duration, 200000);
    EXPECT_LE(roll.duration, 433000);
    // the text has rolled already; drawing catches up
    EXPECT_EQ(decoder.Displayed(), "14 A");
    // the next step comes after the latest time, which is the repetition's
    const int64_t latest = start + FRAME;
    const int64_t step = Kova_Captions_NextChange(*decoder, KOVA_CAPTIONS_CC1, KOVA_CAPTIONS_CHANGE_MOTION);
    EXPECT_GT(step, latest);
    EXPECT_LE(step, latest + KOVA_CAPTIONS_STEP);
    decoder.Wait(start + 433000 - decoder.Now());
    EXPECT_EQ(decoder.Channel(CC1)->roll.kind, KOVA_CAPTIONS_STILL);
}

TEST(RollUp, RollsNothingVisibleOnAnEmptyDisplay)
{
    Requirement("B35");
    Driver decoder;

    decoder.Send(Code(RU3) + Code(CR));

    EXPECT_EQ(decoder.Channel(CC1)->roll.kind, KOVA_CAPTIONS_STILL);
}

TEST(RollUp, EndsARollAtTheNextCarriageReturn)
{
    Requirement("B35");
    Driver decoder;
    decoder.Send(Code(RU3) + Text("A") + Code(CR) + Text("B"));

    const int64_t second = decoder.Now();
    decoder.Send(Code(CR));

    EXPECT_EQ(decoder.Channel(CC1)->roll.start, second);
    EXPECT_EQ(decoder.Displayed(), "13 A|14 B");
}

TEST(RollUp, StaysOnDisplayForOtherStyles)
{
    Requirement("B36");

    for (const Misc code : {RCL, RDC}) {
        Driver decoder;
        decoder.Send(Code(RU2) + Text("A") + Code(CR) + Text("B") + Code(code));
        EXPECT_EQ(decoder.Displayed(), "14 A|15 B");
        decoder.Send(Code(EDM));
        EXPECT_EQ(decoder.Displayed(), "");
    }
}

TEST(RollUp, IsErasedAtOnce)
{
    Requirement("B36");
    Driver decoder;

    decoder.Send(Code(RU2) + Text("A") + Code(CR) + Text("B") + Raw(0x14, EDM));
    EXPECT_EQ(decoder.Displayed(), "");
    // cursor and style stay
    decoder.Send(Text("C"));
    EXPECT_EQ(decoder.Displayed(), "15 .C");
}

TEST(RollUp, GoesToNonDisplayedMemoryAtEndOfCaption)
{
    Requirement("B36", "B37");
    Driver decoder;

    decoder.Send(Code(RU2) + Pac(10) + Text("A") + Code(CR) + Text("B") + Code(EOC));

    EXPECT_EQ(decoder.Displayed(), "");
    EXPECT_EQ(decoder.NonDisplayed(), "9 A|10 B");
    EXPECT_EQ(decoder.Mode(), unsigned(KOVA_CAPTIONS_POP_ON));
}

/* ---------------------------------------------------------------------------------------------------------- Pop-on */

TEST(PopOn, StaysUnseenUntilEndOfCaption)
{
    Requirement("B37");
    Driver decoder;

    decoder.Send(Code(RCL) + Code(ENM) + Pac(14) + Text("FIRST") + Pac(15) + Text("ROWS"));
    EXPECT_EQ(decoder.Displayed(), "");
    EXPECT_EQ(decoder.NonDisplayed(), "14 FIRST|15 ROWS");

    decoder.Send(Raw(0x14, EOC));
    EXPECT_EQ(decoder.Displayed(), "14 FIRST|15 ROWS");
    EXPECT_EQ(decoder.NonDisplayed(), "");
}

TEST(PopOn, SwapsMemoriesWithoutErasing)
{
    Requirement("B37");
    Driver decoder;

    decoder.Send(Code(RCL) + Pac(15) + Text("ONE") + Code(EOC) + Code(RCL) + Pac(14) + Text("TWO") +
                 Code(EOC));
    EXPECT_EQ(decoder.Displayed(), "14 TWO");
    EXPECT_EQ(decoder.NonDisplayed(), "15 ONE");
    decoder.Send(Text("..") + Code(EOC));

    EXPECT_EQ(decoder.NonDisplayed(), "14 TWO");
    EXPECT_NE(decoder.Displayed().find("15 ONE"), std::string::npos);
}

TEST(PopOn, AppearsAtTheTimeOfEndOfCaption)
{
    Requirement("B37");
    Driver decoder;
    KovaCaptionsStatus status;
    decoder.Send(Code(RCL) + Pac(15) + Text("ONE"));
    decoder.Wait(3 * SECOND);

    const int64_t time = decoder.Now();
    decoder.Send(Code(EOC));

    ASSERT_EQ(Kova_Captions_GetStatus(*decoder, KOVA_CAPTIONS_CC1, &status), 0);
    EXPECT_EQ(status.visible_since, time);
}

TEST(PopOn, IsTheStyleAfterEndOfCaption)
{
    Requirement("B38");

    for (const Pairs &before : {Pairs{}, Code(RDC), Code(RU2)}) {
        Driver decoder;
        decoder.Send(before + Code(EOC) + Pac(15) + Text("AB"));
        EXPECT_EQ(decoder.Displayed(), "");
        EXPECT_EQ(decoder.NonDisplayed(), "15 AB");
        EXPECT_EQ(decoder.Mode(), unsigned(KOVA_CAPTIONS_POP_ON));
    }
}

TEST(PopOn, GoesOnAtTheSameCursorAfterEndOfCaption)
{
    Requirement("B37", "B38");
    Driver decoder;

    decoder.Send(Code(RCL) + PacIndent(6, 4) + Text("AB") + Code(EOC) + Text("CD"));

    EXPECT_EQ(decoder.Displayed(), "6 ....AB");
    EXPECT_EQ(decoder.NonDisplayed(), "6 ......CD");
}

TEST(PopOn, AndPaintOnBeginWhereTheCursorIs)
{
    Requirement("B36", "B42");
    Driver decoder;

    decoder.Send(Code(RU2) + PacIndent(9, 8) + Text("AB") + Code(RCL) + Text("CD") + Code(RDC) + Text("EF"));

    EXPECT_EQ(decoder.Displayed(), "9 ........AB..EF");
    EXPECT_EQ(decoder.NonDisplayed(), "9 ..........CD");
}

TEST(PopOn, ShowsFourFullRowsAnywhere)
{
    Requirement("B39");
    const std::string full = Letters(32);

    for (unsigned first = 1; first <= 12; first++) {
        Pairs rows;
        std::string expected;
        for (unsigned row = first; row < first + 4; row++) {
            rows = rows + Pac(row) + Text(full);
            expected += (row == first ? "" : "|") + std::to_string(row) + " " + full;
        }
        Driver popOn, paintOn;
        popOn.Send(Code(RCL) + rows + Code(EOC));
        EXPECT_EQ(popOn.Displayed(), expected);
        paintOn.Send(Code(RDC) + rows);
        EXPECT_EQ(paintOn.Displayed(), expected);
    }
}

TEST(PopOn, ShowsAllFifteenRows)
{
    Requirement("B39");
    Driver decoder;
    std::string expected;

    decoder.Send(Code(RCL));
    for (unsigned row = 15; row >= 1; row--) decoder.Send(Pac(row) + Text(Letters(32)));
    decoder.Send(Code(EOC));

    for (unsigned row = 1; row <= 15; row++)
        expected += (row == 1 ? "" : "|") + std::to_string(row) + " " + Letters(32);
    EXPECT_EQ(decoder.Displayed(), expected);
}

TEST(PopOn, IgnoresCarriageReturns)
{
    Requirement("B40");
    Driver decoder;

    decoder.Send(Code(RCL) + Pac(10) + Text("AB") + Code(CR) + Text("CD") + Code(EOC));

    EXPECT_EQ(decoder.Displayed(), "10 ABCD");
}

TEST(PaintOn, IgnoresCarriageReturns)
{
    Requirement("B40");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(10) + Text("AB") + Code(CR) + Text("CD"));

    EXPECT_EQ(decoder.Displayed(), "10 ABCD");
}

TEST(PopOn, IsErasedWhileItIsLoaded)
{
    Requirement("B41");
    Driver decoder;
    decoder.Send(Code(RCL) + Pac(15) + Text("SHOWN") + Code(EOC));

    decoder.Send(Code(RCL) + Pac(10) + Text("LOADED") + Code(ENM));
    EXPECT_EQ(decoder.NonDisplayed(), "");
    EXPECT_EQ(decoder.Displayed(), "15 SHOWN");
    decoder.Send(Text("AB"));

    // the cursor stays
    EXPECT_EQ(decoder.NonDisplayed(), "10 ......AB");
}

TEST(PopOn, IsErasedWhileItIsLoadedByRollUp)
{
    Requirement("B41");
    Driver decoder;

    decoder.Send(Code(RCL) + Pac(10) + Text("LOADED") + Code(RU2));

    EXPECT_EQ(decoder.NonDisplayed(), "");
}

TEST(PopOn, KeepsWhatIsLoadedAtItsOwnCode)
{
    Requirement("B37", "B47");
    Driver decoder;

    decoder.Send(Code(RCL) + Pac(10) + Text("AB") + Code(RCL) + Text("CD"));

    EXPECT_EQ(decoder.NonDisplayed(), "10 ABCD");
}

/* -------------------------------------------------------------------------------------------------------- Paint-on */

TEST(PaintOn, ShowsTextAsItComes)
{
    Requirement("B42");
    Driver decoder;
    decoder.Send(Code(RCL) + Pac(15) + Text("SHOWN") + Code(EOC));

    decoder.Send(Code(RDC));
    EXPECT_EQ(decoder.Displayed(), "15 SHOWN");
    decoder.Send(Pac(15) + Text("XY"));
    EXPECT_EQ(decoder.Displayed(), "15 XYOWN");
    EXPECT_EQ(decoder.NonDisplayed(), "");
}

TEST(PaintOn, IsKeptInNonDisplayedMemoryAtEndOfCaption)
{
    Requirement("B42");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(4) + Text("PAINTED") + Code(EOC));
    EXPECT_EQ(decoder.Displayed(), "");
    EXPECT_EQ(decoder.NonDisplayed(), "4 PAINTED");
    decoder.Send(NULL_PAIR + NULL_PAIR + NULL_PAIR + Code(EOC));

    EXPECT_EQ(decoder.Displayed(), "4 PAINTED");
}

/* --------------------------------------------------------------------------------------------------------- Editing */

TEST(Backspace, ErasesTheCellOnTheLeft)
{
    Requirement("B43");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(15) + Text("ABC") + Code(BS));
    EXPECT_EQ(decoder.Displayed(), "15 AB");
    EXPECT_EQ(decoder.Cursor(), "15,3");
    decoder.Send(Pac(15) + Tab(1) + Code(BS));

    EXPECT_EQ(decoder.Displayed(), "15 .B");
    EXPECT_EQ(decoder.Cursor(), "15,1");
}

TEST(Backspace, ErasesAnAttributeCode)
{
    Requirement("B43");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(15) + Text("A") + MidRow(RED) + Code(BS));
    EXPECT_EQ(decoder.Displayed(), "15 A");
    decoder.Send(Code(FON) + Text("B") + Pac(15) + Tab(2) + Code(BS));

    EXPECT_EQ(decoder.Displayed(), "15 A.B");
    EXPECT_EQ(decoder.Channel(CC1)->displayed[14][2].flash, 0);
}

TEST(Backspace, DoesNothingInColumn1)
{
    Requirement("B43");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(15) + Text("AB") + Pac(15) + Code(BS) + Text("x"));

    EXPECT_EQ(decoder.Displayed(), "15 xB");
}

TEST(Backspace, ErasesColumn31FromColumn32)
{
    Requirement("B44");
    Driver decoder;

    // column 32 is filled, and the cursor still there
    decoder.Send(Code(RDC) + Pac(15) + Text(Letters(32)) + Code(BS));
    EXPECT_EQ(decoder.Displayed(), "15 " + Letters(30) + ".f");
    EXPECT_EQ(decoder.Cursor(), "15,31");

    // column 32 is empty
    decoder.Send(Code(EDM) + Pac(14) + Text(Letters(31)) + Code(BS));
    EXPECT_EQ(decoder.Displayed(), "14 " + Letters(30));
}

TEST(DeleteToEndOfRow, ErasesFromTheCursorOn)
{
    Requirement("B45");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(14) + Text("KEPT") + Pac(15) + Text(Letters(32)) + PacIndent(15, 4) +
                 Code(DER));
    EXPECT_EQ(decoder.Displayed(), "14 KEPT|15 ABCD");
    EXPECT_EQ(decoder.Cursor(), "15,5");
    decoder.Send(Pac(15) + NULL_PAIR + Code(DER));

    EXPECT_EQ(decoder.Displayed(), "14 KEPT");
}

TEST(DeleteToEndOfRow, ErasesColumn32)
{
    Requirement("B45");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(15) + Text(Letters(32)) + Code(DER));

    EXPECT_EQ(decoder.Displayed(), "15 " + Letters(31));
}

TEST(Column32, IsReplacedByEachFurtherCharacter)
{
    Requirement("B46");

    for (const Misc style : {RDC, RU2, TR}) {
        Driver decoder;
        const unsigned source = style == TR ? T1 : CC1;
        decoder.Send(Code(style) + Pac(style == RU2 ? 15 : 1) + Text(Letters(32) + "XYZ"));
        EXPECT_EQ(decoder.Displayed(source), std::string(style == RU2 ? "15 " : "1 ") + Letters(31) + "Z");
    }
}

TEST(Column32, IsReplacedByAttributeCodesToo)
{
    Requirement("B46", "B22");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(15) + Text(Letters(32)) + MidRow(RED));

    EXPECT_EQ(decoder.Displayed(), "15 " + Letters(31) + "#");
}

TEST(Column32, IsLeftByAPreamble)
{
    Requirement("B46");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(15) + Text(Letters(32) + "X") + Pac(15) + Text("y"));

    EXPECT_EQ(decoder.Displayed(), "15 y" + Letters(31).substr(1) + "X");
}

/* ---------------------------------------------------------------------------------------------------- Interruption */

TEST(Interruption, LeavesTheCursorOfEveryStyle)
{
    Requirement("B47", "A5");
    const struct {
        Misc style;
        const char *expected;
    } cases[] = {{RU3, "7 ABCD"}, {RDC, "7 ABCD"}, {RCL, ""}};

    for (const auto &each : cases) {
        Driver decoder;
        decoder.Send(Code(each.style) + Pac(7) + Text("AB"));
        decoder.Send(Code(TR) + Text("TEXT") + Code(RDC, 2) + Pac(2, RED, true, 2) + Text("OTHER"));
        decoder.Send(2, Code(RU4, 3) + Text("THIRD") + Code(CR, 3));
        decoder.Send(Code(each.style) + Text("CD"));
        EXPECT_EQ(decoder.Displayed(), each.expected);
        EXPECT_EQ(decoder.NonDisplayed(), each.style == RCL ? "7 ABCD" : "");
        EXPECT_EQ(decoder.Displayed(T1), "1 TEXT");
    }
}

TEST(Interruption, LeavesTheAttributesOfAChannel)
{
    Requirement("A5", "B47");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(7, GREEN, true));
    decoder.Send(Code(RDC, 2) + Pac(2, RED, false, 2) + Text("OTHER"));
    decoder.Send(Code(RDC) + Text("AB"));

    EXPECT_EQ(decoder.Look(7, 1), "green underline on black");
}

/* ------------------------------------------------------------------------------------------------------------ Text */

TEST(TextMode, IsClearedAndBeginsAtTheTopByTextRestart)
{
    Requirement("B49");
    Driver decoder;

    decoder.Send(Code(TR) + Text("AB") + Code(CR) + Text("CD"));
    EXPECT_EQ(decoder.Displayed(T1), "1 AB|2 CD");
    EXPECT_EQ(decoder.NonDisplayed(T1), "") << "Text has one memory";
    decoder.Send(Code(TR));
    EXPECT_EQ(decoder.Displayed(T1), "");
    EXPECT_EQ(decoder.Cursor(T1), "1,1");
}

TEST(TextMode, GoesOnByResumeTextDisplay)
{
    Requirement("B49");
    Driver decoder;

    decoder.Send(Code(TR) + Text("AB") + Code(RDC) + Pac(15) + Text("xx") + Code(RTD) + Text("CD"));

    EXPECT_EQ(decoder.Displayed(T1), "1 ABCD");
    EXPECT_EQ(decoder.Displayed(CC1), "15 xx");
}

TEST(TextMode, RollsUpFromTheLastRow)
{
    Requirement("B49");
    Driver decoder;
    std::string expected;

    decoder.Send(Code(TR));
    for (char letter = 'A'; letter < 'A' + 15; letter++)
        decoder.Send(Text({letter}) + (letter < 'A' + 14 ? Code(CR) : Pairs{}));
    for (unsigned row = 1; row <= 15; row++)
        expected += (row > 1 ? "|" : "") + std::to_string(row) + " " + char('A' + row - 1);
    EXPECT_EQ(decoder.Displayed(T1), expected);
    EXPECT_EQ(decoder.Cursor(T1), "15,2");

    const int64_t time = decoder.Now();
    decoder.Send(Code(CR));
    expected.clear();
    for (unsigned row = 1; row <= 14; row++)
        expected += (row > 1 ? "|" : "") + std::to_string(row) + " " + char('A' + row);
    EXPECT_EQ(decoder.Displayed(T1), expected);
    EXPECT_EQ(decoder.Cursor(T1), "15,1");
    EXPECT_EQ(decoder.Channel(T1)->roll.kind, KOVA_CAPTIONS_SCROLL);
    EXPECT_EQ(decoder.Channel(T1)->roll.start, time);
    EXPECT_LE(decoder.Channel(T1)->roll.duration, 433000);
}

TEST(TextMode, IgnoresAPreamblesRow)
{
    Requirement("B49");
    Driver decoder;

    decoder.Send(Code(TR) + Text("AB") + Code(CR) + PacIndent(9, 4, true) + Text("CD"));

    EXPECT_EQ(decoder.Displayed(T1), "1 AB|2 ....CD");
    EXPECT_EQ(decoder.Look(2, 5, T1), "white underline on black");
}

TEST(TextMode, IsEditedAsCaptionsAre)
{
    Requirement("B49", "B43", "B45");
    Driver decoder;

    decoder.Send(Code(TR) + Text("ABCDEF") + Code(BS) + Tab(2) + Text("G") + Pac(1) + Tab(3) + Code(DER));

    EXPECT_EQ(decoder.Displayed(T1), "1 ABC");
}

/* ---------------------------------------------------------------------------------------------------- Loss of data */

static Pairs Invalid(unsigned count)
{
    // the null pair without its parity
    return Times(count, {{0x00, 0x80}});
}

static void LoadAndShow(Driver &decoder)
{
    decoder.Send(Code(RCL) + Pac(15) + Text("SHOWN") + Code(EOC) + Code(RCL) + Pac(1) + Text("LOADED") +
                 Pac(8));
}

TEST(InvalidData, Of45PairsResetsTheFieldsCaptions)
{
    Requirement("B50");
    Driver decoder;
    decoder.Send(2, Code(RDC, 3) + Pac(15, WHITE, false, 3) + Text("THREE"));
    decoder.Send(Code(RDC, 2) + Pac(15, WHITE, false, 2) + Text("TWO"));
    LoadAndShow(decoder);

    decoder.Send(Invalid(44));
    EXPECT_EQ(decoder.Displayed(), "15 SHOWN");
    EXPECT_EQ(decoder.NonDisplayed().substr(0, 8), "1 LOADED");
    decoder.Send(Invalid(1));
    EXPECT_EQ(decoder.Displayed(), "");
    EXPECT_EQ(decoder.NonDisplayed(), "");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC2), "");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC3), "15 THREE");

    decoder.Send(Code(RCL) + Pac(15) + Text("AGAIN") + Code(EOC));
    EXPECT_EQ(decoder.Displayed(), "15 AGAIN");
}

TEST(InvalidData, IsCountedAnewAfterAGoodPair)
{
    Requirement("B50");
    Driver decoder;
    LoadAndShow(decoder);

    decoder.Send(Invalid(44) + NULL_PAIR + Invalid(44));

    EXPECT_EQ(decoder.Displayed(), "15 SHOWN");
}

TEST(InvalidData, DoesNotCountZeros)
{
    Requirement("B50", "B7");
    Driver decoder;
    LoadAndShow(decoder);

    decoder.Send(Times(100, {{0x00, 0x00}}));
    EXPECT_EQ(decoder.Displayed(), "15 SHOWN");
}

TEST(Silence, Of16SecondsErasesDisplayedMemoryOnly)
{
    Requirement("B51");
    Driver decoder;
    decoder.Send(Code(TR) + Text("TEXT"));
    LoadAndShow(decoder);
    const int64_t last = decoder.Now() - FRAME;

    decoder.Wait(last + 16 * SECOND - 1 - decoder.Now());
    EXPECT_EQ(decoder.Displayed(), "15 SHOWN");
    decoder.Wait(2);
    EXPECT_EQ(decoder.Displayed(), "");
    EXPECT_EQ(decoder.NonDisplayed(), "1 LOADED");
    EXPECT_EQ(decoder.Displayed(T1), "1 TEXT");

    decoder.Send(Code(EOC));
    EXPECT_EQ(decoder.Displayed(), "1 LOADED");
}

TEST(Silence, IsNotBrokenByNullPairsOrOtherChannels)
{
    Requirement("B51");
    Driver decoder;
    LoadAndShow(decoder);

    for (int second = 0; second < 17; second++) {
        decoder.Send(NULL_PAIR + Code(RDC, 2) + Text("AB"));
        decoder.Wait(SECOND);
    }

    EXPECT_EQ(decoder.Displayed(CC1), "");
    EXPECT_NE(decoder.Displayed(KOVA_CAPTIONS_CC2), "");
}

TEST(Silence, IsBrokenByAnyDataOfTheChannel)
{
    Requirement("B51");
    Driver decoder;
    LoadAndShow(decoder);

    decoder.Wait(15 * SECOND);
    decoder.Send(Text("AB"));
    decoder.Wait(15 * SECOND);
    EXPECT_EQ(decoder.Displayed(), "15 SHOWN");
    decoder.Send(Code(RCL));
    decoder.Wait(15 * SECOND);
    EXPECT_EQ(decoder.Displayed(), "15 SHOWN");
    decoder.Wait(2 * SECOND);
    EXPECT_EQ(decoder.Displayed(), "");
}

TEST(Silence, MayLastAsTheCallerSays)
{
    Requirement("B51");
    KovaCaptionsOptions options;
    Kova_Captions_GetDefaults(&options);
    EXPECT_EQ(options.channel_timeout, 16 * SECOND);
    options.channel_timeout = 0;
    Driver never(options);
    options.channel_timeout = 20 * SECOND;
    Driver longer(options);

    LoadAndShow(never);
    LoadAndShow(longer);
    never.Wait(10000 * SECOND);
    longer.Wait(19 * SECOND);
    EXPECT_EQ(never.Displayed(), "15 SHOWN");
    EXPECT_EQ(longer.Displayed(), "15 SHOWN");
    longer.Wait(SECOND);
    EXPECT_EQ(longer.Displayed(), "");
}

/* --------------------------------------------------------------------------------------------------- Extended data */

static KovaCaptionsProgram Program(const Driver &decoder)
{
    KovaCaptionsProgram program = {};

    EXPECT_EQ(Kova_Captions_GetProgram(*decoder, &program), 0);
    return program;
}

TEST(ExtendedData, NamesTheProgramme)
{
    Requirement("B52");
    Driver decoder;

    // 01 03 "Star Trek" 0f 1d, parity included
    decoder.Send(
        2,
        {{0x01, 0x83}, {0xD3, 0xF4}, {0x61, 0xF2}, {0x20, 0x54}, {0xF2, 0xE5}, {0x6B, 0x80}, {0x8F, 0x9D}});

    EXPECT_STREQ(Program(decoder).name, "Star Trek");
}

TEST(ExtendedData, NamesTheProgrammeInTheBasicSet)
{
    Requirement("B52");
    Driver decoder;

    decoder.Send(2, Xds(1, 3, "Caf\x5c *"));

    EXPECT_STREQ(Program(decoder).name, "Café á");
}

TEST(ExtendedData, NeedsItsChecksum)
{
    Requirement("B52");
    Driver decoder;
    Pairs packet = Xds(1, 3, "WRONG!");
    packet.back().second = WithParity(packet.back().second + 1u);

    decoder.Send(2, packet);

    EXPECT_STREQ(Program(decoder).name, "");
    EXPECT_EQ(Program(decoder).revision, Program(Driver()).revision);
    EXPECT_EQ(decoder.Counters().xds_errors, 1u);
}

TEST(ExtendedData, IsDroppedAtAParityError)
{
    Requirement("B52");
    // between two pairs of the packet, in its first byte, in its second, in both, and where a packet may start
    const Pair damaged[] = {{0x20, 0x80}, {0x80, 0x41}, {0x41, 0x41}, {0x83, 0x83}};

    for (const Pair &pair : damaged) {
        Driver decoder;
        decoder.Send(2, Raw(1, 3) + Text("NAME") + Pairs{pair} + Raw(0x0F, XdsChecksum(1, 3, "NAME")));
        EXPECT_STREQ(Program(decoder).name, "") << int(pair.first);
        decoder.Send(2, Xds(1, 3, "NAME"));
        EXPECT_STREQ(Program(decoder).name, "NAME");
    }
}

TEST(ExtendedData, IsReportedOnlyWhenItDiffers)
{
    Requirement("B52");
    Driver decoder(WithEvents());

    decoder.Send(2, Xds(1, 3, "NEWS"));
    const uint32_t revision = Program(decoder).revision;
    decoder.Events();
    decoder.Send(2, Xds(1, 3, "NEWS"));
    EXPECT_EQ(Program(decoder).revision, revision);
    EXPECT_EQ(decoder.Events(), "");
    decoder.Send(2, Xds(1, 3, "WEATHER"));

    EXPECT_NE(Program(decoder).revision, revision);
    EXPECT_STREQ(Program(decoder).name, "WEATHER");
}

TEST(ExtendedData, GoesOnAfterCaptions)
{
    Requirement("B52", "B11");
    Driver decoder;

    decoder.Send(2, Code(RDC, 3) + Pac(15, WHITE, false, 3) + Text("AB"));
    decoder.Send(2, Raw(1, 3) + Text("PART"));
    decoder.Send(2, Code(RDC, 3) + Text("CD"));
    decoder.Send(2, Raw(2, 3) + Text(" TWO") + Raw(0x0F, XdsChecksum(1, 3, "PART TWO")));

    EXPECT_STREQ(Program(decoder).name, "PART TWO");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC3), "15 ABCD");
}

TEST(ExtendedData, EndsTheFlowOfCharactersUntilAControlCode)
{
    Requirement("B52", "B11");
    Driver decoder;

    decoder.Send(2, Code(RDC, 3) + Pac(15, WHITE, false, 3) + Text("AB") + Xds(1, 3, "NAME") + Text("xx"));
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC3), "15 AB");
    decoder.Send(2, Code(RDC, 3) + Text("CD"));

    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC3), "15 ABCD");
}

TEST(ExtendedData, OfTwoClassesInterleaves)
{
    Requirement("B52");
    Driver decoder;

    decoder.Send(2, Raw(1, 3) + Text("NAME") + Raw(5, 1) + Text("NETW") + Raw(2, 3) + Text("ONE!") +
                        Raw(0x0F, XdsChecksum(1, 3, "NAMEONE!")) + Raw(6, 1) + Text("ORK") +
                        Raw(0x0F, XdsChecksum(5, 1, "NETWORK")));

    EXPECT_STREQ(Program(decoder).name, "NAMEONE!");
    EXPECT_STREQ(Program(decoder).network, "NETWORK");
}

TEST(ExtendedData, HoldsUpTo32Characters)
{
    Requirement("B52");
    Driver decoder;

    decoder.Send(2, Xds(1, 3, Letters(32)));
    EXPECT_STREQ(Program(decoder).name, Letters(32).c_str());
    decoder.Send(2, Xds(1, 3, Letters(34)));

    EXPECT_STREQ(Program(decoder).name, Letters(32).c_str());
}

TEST(ExtendedData, RatesTheProgramme)
{
    Requirement("B52");
    const struct {
        const char *bytes;
        unsigned system, rating, violence, sexual, language, dialog;
    } cases[] = {
        // 1 D a1 a0 r2 r1 r0, 1 V S L g2 g1 g0
        {"\x43\x40", KOVA_CAPTIONS_RATING_MPA, 3, 0, 0, 0, 0},
        {"\x47\x40", KOVA_CAPTIONS_RATING_MPA, 7, 0, 0, 0, 0},
        {"\x68\x6D", KOVA_CAPTIONS_RATING_US_TV, 5, 1, 0, 1, 1},
        {"\x48\x56", KOVA_CAPTIONS_RATING_US_TV, 6, 0, 1, 0, 0},
        {"\x48\x62", KOVA_CAPTIONS_RATING_US_TV, 2, 1, 0, 0, 0},
        {"\x58\x44", KOVA_CAPTIONS_RATING_CANADIAN_ENGLISH, 4, 0, 0, 0, 0},
        {"\x78\x43", KOVA_CAPTIONS_RATING_CANADIAN_FRENCH, 3, 0, 0, 0, 0},
    };

    for (const auto &each : cases) {
        Driver decoder;
        decoder.Send(2, Xds(1, 5, each.bytes));
        const KovaCaptionsProgram program = Program(decoder);
        EXPECT_EQ(program.rating_system, each.system) << each.bytes;
        EXPECT_EQ(program.rating, each.rating) << each.bytes;
        EXPECT_EQ(program.violence, each.violence) << each.bytes;
        EXPECT_EQ(program.sexual_situations, each.sexual) << each.bytes;
        EXPECT_EQ(program.language, each.language) << each.bytes;
        EXPECT_EQ(program.dialog, each.dialog) << each.bytes;
    }
}

TEST(ExtendedData, ChangesNothingWhenTheRatingIsSentAgain)
{
    Requirement("B52");
    Driver decoder;

    decoder.Send(2, Xds(1, 5, "\x68\x6D"));
    const uint32_t revision = Program(decoder).revision;
    decoder.Send(2, Xds(1, 5, "\x68\x6D"));

    EXPECT_EQ(Program(decoder).revision, revision);
}

// a0, a1 and a3 set: reserved. No flag of the rating before may stay.
TEST(ExtendedData, RatesNothingByAReservedSystem)
{
    Requirement("B52");
    Driver decoder;

    decoder.Send(2, Xds(1, 5, "\x68\x6D"));
    decoder.Send(2, Xds(1, 5, "\x58\x4C"));

    const KovaCaptionsProgram program = Program(decoder);
    EXPECT_EQ(program.rating_system, KOVA_CAPTIONS_RATING_NONE);
    EXPECT_EQ(program.rating, 0);
    EXPECT_EQ(program.violence, 0);
    EXPECT_EQ(program.dialog, 0);
}

// The last character of the set, U+2588, takes three bytes.
TEST(ExtendedData, GivesTheSolidBlockOfANameAsUtf8)
{
    Requirement("B52");
    Driver decoder;

    decoder.Send(2, Xds(1, 3, "A\x7F"));

    EXPECT_STREQ(Program(decoder).name, "A\xE2\x96\x88");
}

TEST(ExtendedData, ChangesNothingWhenTheStartIsSentAgainOrIsImpossible)
{
    Requirement("B52");
    Driver decoder;

    decoder.Send(2, Xds(1, 1, "\x7B\x57\x5F\x4C"));
    const uint32_t revision = Program(decoder).revision;
    decoder.Send(2, Xds(1, 1, "\x7B\x57\x5F\x4C"));
    // Minute 60, then day 0, then month 13, then no date.
    decoder.Send(2, Xds(1, 1, "\x7C\x57\x5F\x4C"));
    decoder.Send(2, Xds(1, 1, "\x7B\x57\x40\x4C"));
    decoder.Send(2, Xds(1, 1, "\x7B\x57\x5F\x4D"));
    decoder.Send(2, Xds(1, 1, "\x7B\x57"));

    EXPECT_EQ(Program(decoder).revision, revision);
    EXPECT_EQ(Program(decoder).start_minute, 59);
}

TEST(ExtendedData, TellsWhenTheProgrammeStarts)
{
    Requirement("B52");
    Driver decoder;

    // minute 59, hour 23, day 31, month 12, each with bit 6 set
    decoder.Send(2, Xds(1, 1, "\x7B\x57\x5F\x4C"));

    const KovaCaptionsProgram program = Program(decoder);
    EXPECT_EQ(program.start_minute, 59);
    EXPECT_EQ(program.start_hour, 23);
    EXPECT_EQ(program.start_day, 31);
    EXPECT_EQ(program.start_month, 12);
}

TEST(ExtendedData, OfField1IsNone)
{
    Requirement("B52", "B8");
    Driver decoder;

    decoder.Send(1, Xds(1, 3, "NAME"));

    EXPECT_STREQ(Program(decoder).name, "");
}

TEST(ExtendedData, KeepsRepetitionsApart)
{
    Requirement("B52");
    Driver decoder;

    // equal pairs of data are no repetition
    decoder.Send(2, Xds(1, 3, "ABABAB"));

    EXPECT_STREQ(Program(decoder).name, "ABABAB");
}
