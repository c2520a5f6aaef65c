// SPDX-License-Identifier: MIT
// CEA-608: bytes, channels, characters, codes, attributes.
#include "driver.h"

#include <algorithm>

// What paint-on captions show needs no EOC.
static Pairs PaintOn(unsigned row = 15)
{
    return Code(RDC) + Pac(row);
}

// Bytes as they are, parity or not.
static Pairs Wrong(unsigned first, unsigned second)
{
    return {{uint8_t(first), uint8_t(second)}};
}

static std::string Letters(unsigned count)
{
    std::string text;

    for (unsigned i = 0; i < count; i++) text += char(i < 26 ? 'A' + i : 'a' + i - 26);
    return text;
}

/* ---------------------------------------------------------------------------------------------------------- Parity */

TEST(Parity, OfACharacterThatIsWrongShowsASolidBlock)
{
    Requirement("B1");
    Driver decoder;

    // 'A' is c1, 'B' is c2; both without bit 7
    decoder.Send(PaintOn() + Wrong(0xC1, 0x42) + Text("..") + Wrong(0x41, 0xC2) + Text("..") +
                 Wrong(0x41, 0x42));

    EXPECT_EQ(decoder.Displayed(), "15 A█..█B..██");
    EXPECT_EQ(decoder.Counters().parity_errors, 3u);
}

TEST(Parity, OfACharacterWithoutASecondOne)
{
    Requirement("B1");
    Driver decoder;

    decoder.Send(PaintOn() + Wrong(0x41, 0x80) + Text("X"));

    EXPECT_EQ(decoder.Displayed(), "15 █X");
}

TEST(Parity, OfTheSecondByteAfterASpace)
{
    Requirement("B1");
    Driver decoder;

    decoder.Send(PaintOn() + Wrong(0x20, 0x42));

    EXPECT_EQ(decoder.Displayed(), "15  █");
}

TEST(Parity, OfTheSecondByteOfAControlPairLetsTheRepetitionAct)
{
    Requirement("B2");
    Driver decoder;
    decoder.Send(Code(RCL) + Pac(15) + Text("HI"));

    // EOC is 94 2f
    decoder.Send(Wrong(0x94, 0xAF));
    EXPECT_EQ(decoder.Displayed(), "");
    decoder.Send(Raw(0x14, EOC));
    EXPECT_EQ(decoder.Displayed(), "15 HI");

    // and the one that acted has a repetition of its own
    decoder.Send(Raw(0x14, EOC));
    EXPECT_EQ(decoder.Displayed(), "15 HI");
    EXPECT_EQ(decoder.NonDisplayed(), "");
}

TEST(Parity, OfTheSecondByteOfAControlPairLeavesNoBlock)
{
    Requirement("B2");
    Driver decoder;

    decoder.Send(PaintOn() + Text("AB") + Wrong(0x94, 0x21));

    EXPECT_EQ(decoder.Displayed(), "15 AB");
}

TEST(Parity, OfTheFirstByteLeavesABlockAndTheSecondByte)
{
    Requirement("B3");
    Driver decoder;

    // EDM is 94 2c: with 14 the first byte is not known to be control, and the second is a comma
    decoder.Send(PaintOn() + Text("AB") + Wrong(0x14, 0x2C));

    EXPECT_EQ(decoder.Displayed(), "15 AB█,");
}

TEST(Parity, OfTheFirstByteOfADueRepetitionIsIgnored)
{
    Requirement("B3");
    Driver decoder;

    // BS is 94 a1
    decoder.Send(PaintOn() + Text("ABCD") + Raw(0x14, BS) + Wrong(0x14, 0xA1));

    EXPECT_EQ(decoder.Displayed(), "15 ABC");
}

TEST(Parity, OfTheFirstByteAfterAControlCodeWithAnotherSecondByteLeavesABlock)
{
    Requirement("B3");
    Driver decoder;

    decoder.Send(PaintOn() + Text("ABCD") + Raw(0x14, BS) + Wrong(0x14, 0x2C));

    EXPECT_EQ(decoder.Displayed(), "15 ABC█,");
}

TEST(Parity, OfTwoZerosIsNoError)
{
    Requirement("B7");
    Driver decoder;

    decoder.Send(PaintOn() + Text("AB") + Wrong(0, 0) + Wrong(0x80, 0x80) + Text("CD"));

    EXPECT_EQ(decoder.Displayed(), "15 ABCD");
    EXPECT_EQ(decoder.Counters().parity_errors, 0u);
}

/* ------------------------------------------------------------------------------------------------------ Repetition */

TEST(Repetition, IsIgnoredOnceAndActsTheThirdTime)
{
    Requirement("B4");
    const char *const left[] = {"15 ABCDEF", "15 ABCDE", "15 ABCDE", "15 ABCD", "15 ABCD", "15 ABC"};

    for (unsigned count = 0; count < 6; count++) {
        Driver decoder;
        decoder.Send(PaintOn() + Text("ABCDEF") + Times(count, Raw(0x14, BS)));
        EXPECT_EQ(decoder.Displayed(), left[count]) << count;
    }
}

TEST(Repetition, CountsForEveryControlPair)
{
    Requirement("B4");
    Driver decoder;

    // mid-row, special and extended characters, tab offsets
    decoder.Send(PaintOn() + MidRow(RED) + Twice(0x11, 0x37) + Tab(2) + Text("A") + Twice(0x12, 0x20) +
                 Twice(0x17, 0x21) + Text("B"));

    EXPECT_EQ(decoder.Displayed(), "15 #♪..Á.B");
}

TEST(Repetition, IsNoneIfAnotherControlPairOrTextComesBetween)
{
    Requirement("B5");
    Driver decoder;

    decoder.Send(PaintOn() + Text("ABCD") + Raw(0x14, BS) + Text("X") + Raw(0x14, BS));
    EXPECT_EQ(decoder.Displayed(), "15 ABC");

    // AOF is ignored, but it is another code
    decoder.Send(Text("Y") + Raw(0x14, BS) + Raw(0x14, AOF) + Raw(0x14, BS));
    EXPECT_EQ(decoder.Displayed(), "15 AB");
}

TEST(Repetition, IsFollowedByADifferentCodeThatActs)
{
    Requirement("B5");
    Driver decoder;

    decoder.Send(Raw(0x14, RDC) + Raw(0x14, 0x60) + Text("AB") + Raw(0x14, BS) + Raw(0x14, EDM) + Text("CD"));

    EXPECT_EQ(decoder.Displayed(), "15 .CD");
}

TEST(Repetition, LooksPastNullPairsFor100Milliseconds)
{
    Requirement("B6");

    for (const int64_t gap : {100000, 100001}) {
        Driver decoder;
        decoder.Send(PaintOn() + Text("ABCD"));
        decoder.SendTriplets(ToTriplets(1, Raw(0x14, BS)));
        decoder.Wait(FRAME);
        decoder.SendTriplets(ToTriplets(1, NULL_PAIR));
        decoder.Wait(gap - FRAME);
        decoder.SendTriplets(ToTriplets(1, Raw(0x14, BS)));
        EXPECT_EQ(decoder.Displayed(), gap == 100000 ? "15 ABC" : "15 AB") << gap;
    }
}

TEST(Repetition, LooksPastZerosToo)
{
    Requirement("B6", "B7");
    Driver decoder;

    decoder.Send(PaintOn() + Text("ABCD") + Raw(0x14, BS) + Wrong(0, 0) + Raw(0x14, BS));

    EXPECT_EQ(decoder.Displayed(), "15 ABC");
}

TEST(Repetition, IsNoneAfterHalfASecondOfNothing)
{
    Requirement("B6");
    Driver decoder;

    decoder.Send(PaintOn() + Text("ABCD") + Raw(0x14, BS));
    decoder.Wait(SECOND / 2);
    decoder.Send(Raw(0x14, BS));

    EXPECT_EQ(decoder.Displayed(), "15 AB");
}

TEST(Repetition, IsAMatterOfOneField)
{
    Requirement("B4");
    Driver decoder;
    decoder.Send(1, PaintOn() + Text("ABCD"));
    decoder.Send(2, Code(RDC, 3) + Pac(15, WHITE, false, 3) + Text("EFGH"));

    // 14 21 in field 1, in field 2, and once more in field 1 and in field 2
    for (int i = 0; i < 2; i++) {
        decoder.Send(1, Raw(0x14, BS));
        decoder.Send(2, Raw(0x14, BS));
    }

    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC1), "15 ABC");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC3), "15 EFG");
}

/* ------------------------------------------------------------------------------------------------- Bytes and codes */

TEST(Bytes608, Below10AreIgnoredBeforeACharacter)
{
    Requirement("B8");
    Driver decoder;
    std::string expected = "15 ";

    decoder.Send(PaintOn());
    for (unsigned first = 0; first < 0x10; first++) {
        decoder.Send(Raw(first, 'A' + first));
        expected += char('A' + first);
    }

    EXPECT_EQ(decoder.Displayed(), expected);
}

TEST(Bytes608, WithoutAssignmentAreIgnored)
{
    Requirement("B9");
    Driver decoder(WithEvents());
    decoder.Send(PaintOn() + Text("AB"));
    const std::string before = decoder.Snapshot();
    const struct {
        unsigned first, from, to;
    } ranges[] = {{0x10, 0x30, 0x3F}, {0x10, 0x60, 0x7F}, {0x14, 0x30, 0x3F}, {0x15, 0x30, 0x3F},
                  {0x16, 0x20, 0x3F}, {0x17, 0x20, 0x20}, {0x17, 0x2B, 0x2C}, {0x17, 0x30, 0x3F},
                  {0x14, 0x22, 0x23}, {0x17, 0x24, 0x2A}};

    for (const auto &range : ranges) {
        for (unsigned second = range.from; second <= range.to; second++) {
            decoder.Send(Raw(range.first, second));
            EXPECT_EQ(decoder.Snapshot(), before) << std::hex << range.first << " " << second;
        }
    }
    // and control codes with a second byte that is none
    for (unsigned first = 0x10; first < 0x18; first++) {
        for (unsigned second = 0; second < 0x20; second++) decoder.Send(Raw(first, second));
        EXPECT_EQ(decoder.Snapshot(), before) << std::hex << first;
    }

    decoder.Send(Text("CD"));
    EXPECT_EQ(decoder.Displayed(), "15 ABCD");
}

TEST(Bytes608, AreIgnoredBeforeAModeCode)
{
    Requirement("B9");
    Driver decoder;

    decoder.Send(Pac(15) + Text("AB") + MidRow(RED) + Text("CD") + Code(CR) + Code(BS) + Code(FON));

    EXPECT_EQ(decoder.Displayed(), "");
    EXPECT_EQ(decoder.NonDisplayed(), "");
    EXPECT_EQ(decoder.Mode(), unsigned(KOVA_CAPTIONS_NO_MODE));
}

TEST(Bytes608, ArePushedAsPairsToo)
{
    Driver decoder;
    const uint8_t pairs[][2] = {{0x94, 0x20}, {0x94, 0xE0}, {0xC8, 0x49}, {0x94, 0x2F}};

    for (const auto &pair : pairs) EXPECT_EQ(Kova_Captions_PushPair(*decoder, 0, 1, pair[0], pair[1]), 0);
    EXPECT_EQ(Kova_Captions_PushPair(*decoder, 0, 0, 0x94, 0x20), -1);
    EXPECT_EQ(Kova_Captions_PushPair(*decoder, 0, 3, 0x94, 0x20), -1);
    for (const auto &pair : pairs) EXPECT_EQ(Kova_Captions_PushPair(*decoder, 0, 2, pair[0], pair[1]), 0);

    EXPECT_EQ(decoder.Displayed(), "15 HI");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC3), "15 HI");
}

/* -------------------------------------------------------------------------------------------------------- Channels */

TEST(Channels, OneAndTwoShareAField)
{
    Requirement("B10", "A5");
    Driver decoder;

    decoder.Send(Code(RDC, 1) + Pac(15, WHITE, false, 1) + Text("ONE") + Code(RDC, 2) +
                 Pac(1, WHITE, false, 2) + Text("TWO") + Code(RDC, 1) + Text("1") + Code(RDC, 2) + Text("2"));

    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC1), "15 ONE1");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC2), "1 TWO2");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC3), "");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC4), "");
}

TEST(Channels, AreChosenByEveryControlCode)
{
    Requirement("B10");
    Driver decoder;
    decoder.Send(Code(RDC, 1) + Pac(15, WHITE, false, 1) + Text("A") + Code(RDC, 2) +
                 Pac(15, WHITE, false, 2) + Text("B"));

    // a preamble, a mid-row code and a special character of the other data channel
    decoder.Send(Pac(3, WHITE, false, 1) + Text("C"));
    decoder.Send(MidRow(GREEN, false, 2) + Text("D"));
    decoder.Send(Twice(0x11, 0x37, 1) + Text("E"));

    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC1), "3 C♪E|15 A");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC2), "15 B#D");
}

TEST(Channels, ThreeAndFourComeFromField2ByEitherCode)
{
    Requirement("B11");

    for (const unsigned misc : {0x14u, 0x15u}) {
        Driver decoder;
        decoder.Send(2, Once(misc, RDC, 3) + Pac(15, WHITE, false, 3) + Text("THREE"));
        decoder.Send(2, Once(misc, RDC, 4) + Pac(15, WHITE, false, 4) + Text("FOUR"));
        EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC1), "");
        EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC2), "");
        EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC3), "15 THREE") << misc;
        EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC4), "15 FOUR") << misc;
    }
}

TEST(Channels, OfField1MayComeByTheCodesOfField2)
{
    Requirement("B11");
    Driver decoder;

    decoder.Send(1, Once(0x15, RDC) + Pac(15) + Text("ONE"));

    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC1), "15 ONE");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC3), "");
}

TEST(Channels, OfTextFollowTextRestartAndResumeTextDisplay)
{
    Requirement("B11");
    Driver decoder;

    decoder.Send(1, Code(TR, 1) + Text("T1") + Code(RTD, 2) + Text("T2"));
    decoder.Send(2, Code(RTD, 3) + Text("T3") + Code(TR, 4) + Text("T4"));

    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_T1), "1 T1");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_T2), "1 T2");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_T3), "1 T3");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_T4), "1 T4");
    for (unsigned source = KOVA_CAPTIONS_CC1; source <= KOVA_CAPTIONS_CC4; source++) {
        EXPECT_EQ(decoder.Displayed(source), "");
    }
}

TEST(Channels, HaveTheirCaptionsErasedWhileTextIsReceived)
{
    Requirement("B12");
    Driver decoder;
    decoder.Send(PaintOn() + Text("SHOWN") + Code(RCL) + Pac(10) + Text("LOADED") + Code(TR) + Text("AB"));

    decoder.Send(Code(EDM) + Text("CD"));
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC1), "");
    EXPECT_EQ(decoder.NonDisplayed(KOVA_CAPTIONS_CC1), "10 LOADED");
    decoder.Send(Code(ENM) + Text("EF"));
    EXPECT_EQ(decoder.NonDisplayed(KOVA_CAPTIONS_CC1), "");

    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_T1), "1 ABCDEF");
}

TEST(Channels, AreNotChosenByErasing)
{
    Requirement("B12");
    Driver decoder;
    decoder.Send(Code(RDC, 2) + Text("TWO") + Code(RDC, 1) + Pac(15) + Text("AB"));

    decoder.Send(Code(EDM, 2) + Text("CD") + Code(ENM, 2) + Text("EF"));

    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC1), "15 ABCDEF");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC2), "");
}

TEST(Channels, LeaveTextByTheModeCodesOfTheirDataChannel)
{
    Requirement("B12", "B47");

    for (const Misc code : {RDC, RU2}) {
        Driver decoder;
        decoder.Send(Code(TR) + Text("AB") + Code(code) + Text("CD"));
        EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_T1), "1 AB");
        EXPECT_NE(decoder.Displayed(KOVA_CAPTIONS_CC1).find("CD"), std::string::npos);
    }
    for (const Misc code : {RCL, EOC}) {
        Driver decoder;
        decoder.Send(Code(TR) + Text("AB") + Code(code) + Text("CD"));
        EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_T1), "1 AB");
        EXPECT_NE(decoder.NonDisplayed(KOVA_CAPTIONS_CC1).find("CD"), std::string::npos);
    }
}

TEST(Channels, LeaveTheTextOfAnotherDataChannelSelected)
{
    Requirement("B12", "A5");
    Driver decoder;

    decoder.Send(Code(TR, 1) + Text("AB") + Code(RDC, 2) + Text("TWO") + Pac(5, WHITE, false, 1) +
                 Text("CD"));

    // a preamble in Text goes to column 1 of its row
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_T1), "1 CD");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC1), "");
}

/* ------------------------------------------------------------------------------------------------------ Characters */

static std::vector<std::string> SplitWords(const std::string &words)
{
    std::vector<std::string> all;

    for (size_t start = 0; start < words.size();) {
        const size_t end = std::min(words.find(' ', start), words.size());
        all.push_back(words.substr(start, end - start));
        start = end + 1;
    }
    return all;
}

TEST(Characters608, OfTheBasicSetAreAsTabled)
{
    Requirement("B13");

    for (unsigned code = 0x20; code < 0x80; code++) {
        std::string expected = {char(code)};
        switch (code) {
        case 0x27:
            expected = "’";
            break;
        case 0x2A:
            expected = "á";
            break;
        case 0x5C:
            expected = "é";
            break;
        case 0x5E:
            expected = "í";
            break;
        case 0x5F:
            expected = "ó";
            break;
        case 0x60:
            expected = "ú";
            break;
        case 0x7B:
            expected = "ç";
            break;
        case 0x7C:
            expected = "÷";
            break;
        case 0x7D:
            expected = "Ñ";
            break;
        case 0x7E:
            expected = "ñ";
            break;
        case 0x7F:
            expected = "█";
            break;
        }
        Driver decoder;
        decoder.Send(PaintOn() + Raw(code, code));
        EXPECT_EQ(decoder.Displayed(), "15 " + expected + expected) << std::hex << code;
    }
}

TEST(Characters608, OfTheSpecialSetAreAsTabled)
{
    Requirement("B14");
    const auto expected = SplitWords("® ° ½ ¿ ™ ¢ £ ♪ à ~ è â ê î ô û");
    ASSERT_EQ(expected.size(), 16u);

    for (const unsigned channel : {1u, 2u}) {
        for (unsigned i = 0; i < 16; i++) {
            Driver decoder;
            decoder.Send(Code(RDC, channel) + Pac(15, WHITE, false, channel) + Text("A") +
                         Twice(0x11, 0x30 + i, channel) + Text("B"));
            EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC1 + channel - 1), "15 A" + expected[i] + "B") << i;
        }
    }
}

static void ExpectExtended(unsigned first, const std::string &words)
{
    const auto expected = SplitWords(words);

    ASSERT_EQ(expected.size(), 32u);
    for (const unsigned channel : {1u, 2u}) {
        for (unsigned i = 0; i < 32; i++) {
            Driver decoder;
            decoder.Send(Code(RDC, channel) + Pac(15, WHITE, false, channel) + Text("Ax") +
                         Twice(first, 0x20 + i, channel) + Text("B"));
            EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC1 + channel - 1), "15 A" + expected[i] + "B") << i;
        }
    }
}

TEST(Characters608, OfTheExtendedSpanishAndFrenchSetAreAsTabled)
{
    Requirement("B15", "B16");

    ExpectExtended(0x12, "Á É Ó Ú Ü ü ‘ ¡ * ' — © ℠ • “ ” À Â Ç È Ê Ë ë Î Ï ï Ô Ù ù Û « »");
}

TEST(Characters608, OfTheExtendedPortugueseGermanAndDanishSetAreAsTabled)
{
    Requirement("B15", "B16");

    ExpectExtended(0x13, "Ã ã Í Ì ì Ò ò Õ õ { } \\ ^ _ | ~ Ä ä Ö ö ß ¥ ¤ │ Å å Ø ø ┌ ┐ └ ┘");
}

TEST(ExtendedCharacters, ThatAreBoxCornersHaveNoUnderlineOrItalics)
{
    Requirement("B15");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(15, ITALICS, true) + Text("A"));
    for (const unsigned corner : {0x3Cu, 0x3Du, 0x3Eu, 0x3Fu}) decoder.Send(Text("x") + Twice(0x13, corner));
    decoder.Send(Text("B"));

    EXPECT_EQ(decoder.Displayed(), "15 A┌┐└┘B");
    EXPECT_EQ(decoder.Look(15, 1), "white italics underline on black");
    for (unsigned column = 2; column <= 5; column++) EXPECT_EQ(decoder.Look(15, column), "white on black");
    EXPECT_EQ(decoder.Look(15, 6), "white italics underline on black");
}

TEST(ExtendedCharacters, ReplaceTheCharacterBefore)
{
    Requirement("B16");
    Driver decoder;

    decoder.Send(PaintOn() + Text("CA") + Twice(0x12, 0x20) + Text("D"));

    EXPECT_EQ(decoder.Displayed(), "15 CÁD");
}

TEST(ExtendedCharacters, ReplaceTheCharacterBeforeInTextToo)
{
    Requirement("B16");
    Driver decoder;

    decoder.Send(Code(TR) + Text("CA") + Twice(0x12, 0x20) + Text("D"));

    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_T1), "1 CÁD");
}

TEST(ExtendedCharacters, TakeColumn1IfNothingIsBeforeThem)
{
    Requirement("B16");
    Driver decoder;
    decoder.Send(PaintOn() + Text("ABC"));

    decoder.Send(Pac(15) + Twice(0x12, 0x20));

    EXPECT_EQ(decoder.Displayed(), "15 ÁBC");
    EXPECT_EQ(decoder.Cursor(), "15,2");
}

TEST(ExtendedCharacters, ReplaceAnAttributeCodeBefore)
{
    Requirement("B16");
    Driver decoder;

    decoder.Send(PaintOn() + Text("A") + MidRow(RED) + Twice(0x12, 0x20) + Text("B"));

    EXPECT_EQ(decoder.Displayed(), "15 AÁB");
    EXPECT_EQ(decoder.Look(15, 3), "white on black");
}

TEST(ExtendedCharacters, ReplaceColumn32OnceItIsFilled)
{
    Requirement("B17");
    Driver decoder;

    decoder.Send(PaintOn() + Text(Letters(32)) + Twice(0x12, 0x20));
    EXPECT_EQ(decoder.Displayed(), "15 " + Letters(31) + "Á");

    decoder.Send(Twice(0x12, 0x21));
    EXPECT_EQ(decoder.Displayed(), "15 " + Letters(31) + "É");
}

TEST(ExtendedCharacters, ReplaceColumn31IfTheCursorOnlyReachedColumn32)
{
    Requirement("B16", "B17");
    Driver decoder;

    decoder.Send(PaintOn() + Text(Letters(31)) + Twice(0x12, 0x20));

    EXPECT_EQ(decoder.Displayed(), "15 " + Letters(30) + "Á");
    EXPECT_EQ(decoder.Cursor(), "15,32");
}

TEST(TransparentSpace, ErasesItsCellAndAdvances)
{
    Requirement("B18");
    Driver decoder;
    decoder.Send(PaintOn() + Text("ABCD"));

    decoder.Send(Pac(15) + Tab(1) + Twice(0x11, 0x39) + Text("X"));

    EXPECT_EQ(decoder.Displayed(), "15 A~XD");
    EXPECT_EQ(decoder.Look(15, 2), "~");
}

TEST(TransparentSpace, ChangesNoAttribute)
{
    Requirement("B18");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(15, GREEN) + Text("A") + Twice(0x11, 0x39) + Twice(0x11, 0x39));
    // right of a transparent space the preamble holds: it is no displayable character
    decoder.Send(Text("B"));

    EXPECT_EQ(decoder.Displayed(), "15 A~~B");
    EXPECT_EQ(decoder.Look(15, 4), "green on black");
}

/* --------------------------------------------------------------------------------------- Preambles and tab offsets */

TEST(Preamble, SetsRowColumnAndLookAsTabled)
{
    Requirement("B19", "B21");
    // by hand: first byte, and the first of its 32 second bytes, of rows 1 to 15
    const unsigned codes[15][2] = {{0x11, 0x40}, {0x11, 0x60}, {0x12, 0x40}, {0x12, 0x60}, {0x15, 0x40},
                                   {0x15, 0x60}, {0x16, 0x40}, {0x16, 0x60}, {0x17, 0x40}, {0x17, 0x60},
                                   {0x10, 0x40}, {0x13, 0x40}, {0x13, 0x60}, {0x14, 0x40}, {0x14, 0x60}};
    const char *const looks[] = {"white", "green",  "blue",    "cyan",
                                 "red",   "yellow", "magenta", "white italics"};

    for (unsigned row = 1; row <= 15; row++) {
        for (unsigned low = 0; low < 0x20; low++) {
            Driver decoder;
            // from a place that differs in row and column
            decoder.Send(Code(RDC) + Pac(row == 7 ? 8 : 7) + Tab(3) +
                         Raw(codes[row - 1][0], codes[row - 1][1] + low) + Text("X"));
            const unsigned indent = low < 0x10 ? 0 : (low - 0x10) / 2 * 4;
            const std::string look =
                std::string(low < 0x10 ? looks[low / 2] : "white") + (low % 2 ? " underline" : "");
            EXPECT_EQ(decoder.Displayed(), std::to_string(row) + " " + std::string(indent, '.') + "X")
                << row << " " << low;
            EXPECT_EQ(decoder.Look(row, indent + 1), look + " on black") << row << " " << low;
        }
    }
}

TEST(Preamble, WithoutARowIsIgnored)
{
    Requirement("B19");

    for (unsigned second = 0x60; second < 0x80; second++) {
        Driver decoder;
        decoder.Send(Code(RDC) + Pac(7, GREEN) + Tab(2) + Raw(0x10, second) + Text("X"));
        EXPECT_EQ(decoder.Displayed(), "7 ..X") << second;
        EXPECT_EQ(decoder.Look(7, 3), "green on black") << second;
    }
}

TEST(Preamble, LeavesTheCellsItSkips)
{
    Requirement("B20");
    Driver decoder;
    decoder.Send(PaintOn() + Text("ABCDEFGH"));

    decoder.Send(PacIndent(15, 4) + Text("x") + Pac(15) + Text("y"));

    EXPECT_EQ(decoder.Displayed(), "15 yBCDxFGH");
}

TEST(Preamble, OfAColorGoesToColumn1)
{
    Requirement("B21");
    Driver decoder;

    decoder.Send(PaintOn() + PacIndent(15, 12) + Text("AB") + Pac(15, GREEN) + Text("C"));

    EXPECT_EQ(decoder.Displayed(), "15 C...........AB");
}

TEST(Preamble, OfAColorGoesToColumn1InTextAsWell)
{
    Requirement("B21", "B49");
    Driver decoder;

    decoder.Send(Code(TR) + Text("ABCD") + Pac(9, GREEN) + Text("x"));

    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_T1), "1 xBCD");
    EXPECT_EQ(decoder.Look(1, 1, KOVA_CAPTIONS_T1), "green on black");
}

TEST(TabOffset, LeavesTheCellsItSkips)
{
    Requirement("B20");

    for (unsigned columns = 1; columns <= 3; columns++) {
        Driver decoder;
        std::string expected = "ABCDEFGH";
        expected[columns] = 'x';
        decoder.Send(PaintOn() + Text("ABCDEFGH") + Pac(15) + Tab(columns) + Text("x"));
        EXPECT_EQ(decoder.Displayed(), "15 " + expected);
    }
}

TEST(TabOffset, EndsAtColumn32)
{
    Requirement("B20");
    Driver decoder;

    decoder.Send(PaintOn() + PacIndent(15, 28) + Tab(2) + Tab(3));
    EXPECT_EQ(decoder.Cursor(), "15,32");
}

/* ------------------------------------------------------------------------------------------------------ Attributes */

TEST(MidRow, TakesACellAndSetsAColor)
{
    Requirement("B22");
    const char *const looks[] = {"white", "green", "blue", "cyan", "red", "yellow", "magenta"};

    for (unsigned color = WHITE; color <= MAGENTA; color++) {
        for (const bool underline : {false, true}) {
            Driver decoder;
            decoder.Send(PaintOn() + Text("A") + MidRow(Color608(color), underline) + Text("B"));
            EXPECT_EQ(decoder.Displayed(), "15 A#B");
            EXPECT_EQ(decoder.Look(15, 3),
                      std::string(looks[color]) + (underline ? " underline" : "") + " on black");
        }
    }
}

TEST(MidRow, OfItalicsKeepsTheColor)
{
    Requirement("B22");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(15, GREEN) + Text("A") + MidRow(ITALICS) + Text("B") +
                 MidRow(ITALICS, true) + Text("C"));

    EXPECT_EQ(decoder.Look(15, 1), "green on black");
    EXPECT_EQ(decoder.Look(15, 3), "green italics on black");
    EXPECT_EQ(decoder.Look(15, 5), "green italics underline on black");
}

TEST(MidRow, OfAColorEndsItalicsAndFlash)
{
    Requirement("B22");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(15, ITALICS) + Text("A") + Code(FON) + Text("B") + MidRow(RED) + Text("C"));

    EXPECT_EQ(decoder.Look(15, 1), "white italics on black");
    EXPECT_EQ(decoder.Look(15, 3), "white italics flash on black");
    EXPECT_EQ(decoder.Look(15, 5), "red on black");
}

TEST(MidRow, OfItalicsEndsFlash)
{
    Requirement("B22");
    Driver decoder;

    decoder.Send(PaintOn() + Code(FON) + Text("A") + MidRow(ITALICS) + Text("B"));

    EXPECT_EQ(decoder.Look(15, 2), "white flash on black");
    EXPECT_EQ(decoder.Look(15, 4), "white italics on black");
}

TEST(MidRow, IsNotUnderlinedItself)
{
    Requirement("B22");
    Driver decoder;

    decoder.Send(PaintOn() + MidRow(RED, true) + Text("A B"));

    const auto channel = decoder.Channel(KOVA_CAPTIONS_CC1);
    EXPECT_EQ(channel->displayed[14][0].underline, 0);
    EXPECT_EQ(channel->displayed[14][0].character, 0x20);
    EXPECT_EQ(channel->displayed[14][1].underline, 1);
    // nor is a space
    EXPECT_EQ(channel->displayed[14][2].underline, 0);
    EXPECT_EQ(channel->displayed[14][3].underline, 1);
}

TEST(FlashOn, TakesACellAndKeepsTheRest)
{
    Requirement("B23");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(15, RED) + MidRow(ITALICS, true) + Code(FON) + Text("A"));

    EXPECT_EQ(decoder.Displayed(), "15 ##A");
    EXPECT_EQ(decoder.Look(15, 3), "red italics underline flash on black");
}

TEST(FlashOn, LetsTextFlashAtLeastOnceASecond)
{
    Requirement("B23");
    Driver decoder;
    KovaCaptionsStatus status;
    EXPECT_LE(2 * KOVA_CAPTIONS_FLASH_HALF, SECOND);

    decoder.Send(PaintOn() + Text("A"));
    ASSERT_EQ(Kova_Captions_GetStatus(*decoder, KOVA_CAPTIONS_CC1, &status), 0);
    EXPECT_EQ(status.flash_since, KOVA_CAPTIONS_NO_TIME);
    EXPECT_EQ(Kova_Captions_NextChange(*decoder, KOVA_CAPTIONS_CC1, KOVA_CAPTIONS_CHANGE_FLASH),
              KOVA_CAPTIONS_NEVER);

    decoder.Send(Code(FON));
    const int64_t start = decoder.Now();
    decoder.Send(Text("B"));
    ASSERT_EQ(Kova_Captions_GetStatus(*decoder, KOVA_CAPTIONS_CC1, &status), 0);
    // the code's own cell may count as flashing
    EXPECT_GE(status.flash_since, start - 2 * FRAME);
    EXPECT_LE(status.flash_since, start);
    EXPECT_EQ(Kova_Captions_NextChange(*decoder, KOVA_CAPTIONS_CC1, KOVA_CAPTIONS_CHANGE_FLASH),
              status.flash_since + KOVA_CAPTIONS_FLASH_HALF);
}

TEST(Background, TakesTheSpaceBeforeItAndLastsToTheEndOfTheRow)
{
    Requirement("B25");
    const char *const colors[] = {"white", "green", "blue", "cyan", "red", "yellow", "magenta", "black"};

    for (unsigned i = 0; i < 16; i++) {
        Driver decoder;
        decoder.Send(PaintOn() + Text("A ") + Twice(0x10, 0x20 + i) + Text("B") + MidRow(RED) + Text("C") +
                     Pac(14) + Text("D"));
        const std::string background = std::string(" on ") + colors[i / 2] + (i % 2 ? " translucent" : "");
        EXPECT_EQ(decoder.Displayed(), "14 D|15 A#B#C") << i;
        EXPECT_EQ(decoder.Look(15, 1), "white on black") << i;
        EXPECT_EQ(decoder.Look(15, 2), "white" + background) << i;
        EXPECT_EQ(decoder.Look(15, 3), "white" + background) << i;
        EXPECT_EQ(decoder.Look(15, 5), "red" + background) << i;
        EXPECT_EQ(decoder.Look(14, 1), "white on black") << i;
    }
}

TEST(Background, TakesColumn1IfNothingIsBeforeIt)
{
    Requirement("B25");
    Driver decoder;

    decoder.Send(PaintOn() + Twice(0x10, 0x24) + Text("B"));

    EXPECT_EQ(decoder.Displayed(), "15 #B");
    EXPECT_EQ(decoder.Look(15, 1), "white on blue");
    EXPECT_EQ(decoder.Look(15, 2), "white on blue");
}

TEST(Background, OutlivesAPreambleInItsRow)
{
    Requirement("B25");
    Driver decoder;

    decoder.Send(PaintOn() + Text(" ") + Twice(0x10, 0x24) + Text("A") + Pac(15, GREEN) + Tab(3) + Text("B"));

    // the cell left of B is empty, so the preamble's colour holds, and the background too
    EXPECT_EQ(decoder.Displayed(), "15 #A.B");
    EXPECT_EQ(decoder.Look(15, 4), "green on blue");
}

TEST(Background, MayBeTransparent)
{
    Requirement("B26");
    Driver decoder;

    decoder.Send(PaintOn() + Text("A ") + Twice(0x17, 0x2D) + Text("B"));

    EXPECT_EQ(decoder.Displayed(), "15 A#B");
    EXPECT_EQ(decoder.Channel(KOVA_CAPTIONS_CC1)->displayed[14][2].background_opacity,
              KOVA_CAPTIONS_TRANSPARENT);
    EXPECT_EQ(decoder.Channel(KOVA_CAPTIONS_CC1)->displayed[14][0].background_opacity, KOVA_CAPTIONS_SOLID);
}

TEST(BlackForeground, EndsItalicsAndFlash)
{
    Requirement("B26");

    for (const bool underline : {false, true}) {
        Driver decoder;
        decoder.Send(Code(RDC) + Pac(15, ITALICS) + Code(FON) + Text("A ") +
                     Twice(0x17, underline ? 0x2F : 0x2E) + Text("B"));
        EXPECT_EQ(decoder.Displayed(), "15 #A#B");
        EXPECT_EQ(decoder.Look(15, 2), "white italics flash on black");
        EXPECT_EQ(decoder.Look(15, 4), underline ? "black underline on black" : "black on black");
    }
}

TEST(BlackForeground, KeepsTheBackground)
{
    Requirement("B26");
    Driver decoder;

    decoder.Send(PaintOn() + Text(" ") + Twice(0x10, 0x2A) + Text(" ") + Twice(0x17, 0x2E) + Text("B"));

    EXPECT_EQ(decoder.Displayed(), "15 ##B");
    EXPECT_EQ(decoder.Look(15, 3), "black on yellow");
}

TEST(Attributes, OfTheCharacterOnTheLeftHoldNotThePreambles)
{
    Requirement("B27");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(15, RED) + Text("AB") + Pac(15, GREEN, true) + Tab(2) + Text("C"));

    EXPECT_EQ(decoder.Displayed(), "15 ABC");
    EXPECT_EQ(decoder.Look(15, 3), "red on black");
}

TEST(Attributes, OfThePreambleHoldRightOfAnEmptyCell)
{
    Requirement("B27");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(15, RED) + Text("AB") + Pac(15, GREEN, true) + Tab(3) + Text("C"));

    EXPECT_EQ(decoder.Displayed(), "15 AB.C");
    EXPECT_EQ(decoder.Look(15, 4), "green underline on black");
}

TEST(Attributes, ChangeWithAMidRowCodeThatIsOverwritten)
{
    Requirement("B28");
    Driver decoder;

    decoder.Send(PaintOn() + Text("A") + MidRow(RED) + Text("BC"));
    EXPECT_EQ(decoder.Look(15, 4), "red on black");
    decoder.Send(Pac(15) + Tab(1) + Text("x"));

    EXPECT_EQ(decoder.Displayed(), "15 AxBC");
    EXPECT_EQ(decoder.Look(15, 2), "white on black");
    EXPECT_EQ(decoder.Look(15, 3), "white on black");
    EXPECT_EQ(decoder.Look(15, 4), "white on black");
}

TEST(Attributes, ChangeWithAMidRowCodeThatIsErased)
{
    Requirement("B28", "B43");
    Driver decoder;

    decoder.Send(PaintOn() + Text("A") + MidRow(RED) + Code(BS) + Text("B"));

    EXPECT_EQ(decoder.Displayed(), "15 AB");
    EXPECT_EQ(decoder.Look(15, 2), "white on black");
}

TEST(Attributes, ChangeWithAPreambleThatIsReplaced)
{
    Requirement("B28");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(15, GREEN) + Text("AB"));
    EXPECT_EQ(decoder.Look(15, 2), "green on black");
    decoder.Send(Pac(15, RED) + Text("x"));

    EXPECT_EQ(decoder.Displayed(), "15 xB");
    EXPECT_EQ(decoder.Look(15, 1), "red on black");
    EXPECT_EQ(decoder.Look(15, 2), "red on black");
}

TEST(Attributes, ChangeWithAMidRowCodePutInFrontOfText)
{
    Requirement("B28");
    Driver decoder;

    decoder.Send(PaintOn() + Text("A BC") + Pac(15) + Tab(1) + MidRow(CYAN));

    EXPECT_EQ(decoder.Displayed(), "15 A#BC");
    EXPECT_EQ(decoder.Look(15, 1), "white on black");
    EXPECT_EQ(decoder.Look(15, 3), "cyan on black");
    EXPECT_EQ(decoder.Look(15, 4), "cyan on black");
}

TEST(Attributes, AreWhiteAndPlainOnBlackWithoutAPreamble)
{
    Requirement("B29");
    Driver decoder;

    decoder.Send(Code(RU3) + Text("A") + Code(CR) + Pac(15, GREEN, true) + Text("B") + Code(CR) + Text("C"));

    EXPECT_EQ(decoder.Displayed(), "13 A|14 B|15 C");
    EXPECT_EQ(decoder.Look(13, 1), "white on black");
    EXPECT_EQ(decoder.Look(14, 1), "green underline on black");
    EXPECT_EQ(decoder.Look(15, 1), "white on black");
}

TEST(Attributes, AfterDeletionAreThoseOfTheFirstDeletedCharacter)
{
    Requirement("B45", "B27");
    Driver decoder;

    decoder.Send(Code(RDC) + Pac(15, RED) + Text("ABC") + Pac(15, GREEN) + Tab(1) + Code(DER) + Text("x"));

    EXPECT_EQ(decoder.Displayed(), "15 Ax");
    EXPECT_EQ(decoder.Look(15, 2), "red on black");
}
