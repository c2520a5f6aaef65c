// SPDX-License-Identifier: MIT
#include "support.h"

#include <cstring>

using namespace test;

static const char *const ENUMERATED = "  log encoding_callback: id:0x1,encoding:Latin1\n"
                                      "  log encoding_callback: id:0x2,encoding:UTF8\n";

static int Create(pKovaITextDisplay_t pDisplay, const char *pcName, kova_uint32 uiHeight,
                  kova_sint32 *psiFont, int iAttributes = KOVA_FONTATTR_NONE)
{
    return pDisplay->CreateFont(pDisplay, 0, pcName, uiHeight, KovaTextFontAttr_e(iAttributes), psiFont);
}

// Creates a font with this name and height; returns its number, or -5 if there is none.
static int Given(pKovaITextDisplay_t pDisplay, const std::string &name, kova_uint32 uiHeight = 24)
{
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, name.c_str(), uiHeight, &siFont), 0);
    ClearTrace();
    return siFont;
}

// Empties a slot but keeps its name row, like a font that cannot be opened at another height.
static void Empty(pKovaITextDisplay_t pDisplay, kova_sint32 siFont)
{
    FailNth("Dfb.CreateFont", 1, DFB_FILENOTFOUND);
    EXPECT_EQ(pDisplay->SetFont(pDisplay, 0, siFont, 999, KOVA_FONTATTR_NONE), 0);
    EXPECT_EQ(RecordOf(pDisplay)->font[siFont].pFont, nullptr);
    ClearTrace();
}

TEST(CreateFont, OpensAFontIntoTheLowestSlotWhileHidden)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->font[0].ucWidth = 9; // of a free slot, so it is ignored
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, "sans.ttf", 24, &siFont, KOVA_FONTATTR_MONOCHROME), 0);

    EXPECT_EQ(Trace(), std::string("enter CreateFont height:24 sans.ttf\n"
                                   "  dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT attributes 0x4 height 24\n"
                                   "  font.EnumEncodings\n") +
                           ENUMERATED + "exit CreateFont\n");
    EXPECT_EQ(RecordText(0), "height:24 sans.ttf\n");
    EXPECT_EQ(RecordText(1), "id:0x1,encoding:Latin1\n");
    EXPECT_EQ(siFont, 0);
    const KovaDFBFont_t &font = RecordOf(pDisplay)->font[0];
    EXPECT_EQ(font.pcFontName, RecordOf(pDisplay)->FontName[0]);
    EXPECT_STREQ(font.pcFontName, "sans.ttf");
    EXPECT_EQ(font.eAttr, KOVA_FONTATTR_MONOCHROME);
    EXPECT_NE(font.pFont, nullptr);
    EXPECT_EQ(font.ucHeight, 24u);
    EXPECT_EQ(font.ucWidth, 0u);
    EXPECT_EQ(font.ucUTF8Index, 2);
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, -1); // a new font is not selected
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, OpensAFontForTheActiveContextOfAShownDisplay)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER1, PALETTE_COLORS, ACTIVE_CONTEXT(2));
    kova_sint32 siFont = -5;

    EXPECT_EQ(pDisplay->CreateFont(pDisplay, 2, "sans.ttf", 24, KOVA_FONTATTR_NONE, &siFont), 0);

    EXPECT_EQ(siFont, 0);
    EXPECT_EQ(TraceOf("dfb."), "  dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT attributes 0 height 24\n");
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, RefusesANullDisplayAndABadContextBeforeItsEntryTrace)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    kova_sint32 siFont = -5;

    EXPECT_EQ(pDisplay->CreateFont(nullptr, 4, nullptr, 24, KOVA_FONTATTR_NONE, nullptr), -1);
    for (const int iContext : {4, 127, -128, -1}) {
        EXPECT_EQ(
            pDisplay->CreateFont(pDisplay, kova_sint8(iContext), nullptr, 24, KOVA_FONTATTR_NONE, &siFont),
            -1);
    }

    EXPECT_EQ(Trace(), "ERROR CreateFont: NULL Pointer!\n"
                       "ERROR CreateFont: Invalid context ID!\n"
                       "ERROR CreateFont: Invalid context ID!\n"
                       "ERROR CreateFont: Invalid context ID!\n"
                       "ERROR CreateFont: Invalid context ID!\n");
    EXPECT_EQ(siFont, -5);
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, RefusesAnInactiveContextBeforeItsArguments)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    kova_sint32 siFont = -5;

    EXPECT_EQ(pDisplay->CreateFont(pDisplay, 0, nullptr, 24, KOVA_FONTATTR_NONE, nullptr), -1);
    EXPECT_EQ(pDisplay->CreateFont(pDisplay, 3, "sans.ttf", 24, KOVA_FONTATTR_NONE, &siFont), -1);

    EXPECT_EQ(Trace(), "enter CreateFont height:24 (null)\n"
                       "  ERROR CreateFont: Inactive context!\n"
                       "enter CreateFont height:24 sans.ttf\n"
                       "  ERROR CreateFont: Inactive context!\n");
    EXPECT_EQ(siFont, -5);
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, ReportsNullArgumentsAndSucceeds)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, nullptr, 24, &siFont), 0);
    EXPECT_EQ(Create(pDisplay, "sans.ttf", 24, nullptr), 0);
    EXPECT_EQ(Create(pDisplay, nullptr, 24, nullptr), 0);

    EXPECT_EQ(Trace(), "enter CreateFont height:24 (null)\n"
                       "  ERROR CreateFontInternal: NULL Pointer!\n"
                       "exit CreateFont\n"
                       "enter CreateFont height:24 sans.ttf\n"
                       "  ERROR CreateFontInternal: NULL Pointer!\n"
                       "exit CreateFont\n"
                       "enter CreateFont height:24 (null)\n"
                       "  ERROR CreateFontInternal: NULL Pointer!\n"
                       "exit CreateFont\n");
    EXPECT_EQ(siFont, -5);
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, PassesHeightAndAttributesOnByNumber)
{
    static const struct {
        kova_uint32 uiHeight;
        int iAttributes;
        const char *pcEntry, *pcCall;
    } rows[] = {
        {10, 0, "height:10", "attributes 0 height 10"},
        {11, 1, "height:11", "attributes 0x1 height 11"},
        {12, 2, "height:12", "attributes 0x2 height 12"},
        {13, 4, "height:13", "attributes 0x4 height 13"},
        {14, 8, "height:14", "attributes 0x8 height 14"},
        {15, 16, "height:15", "attributes 0x10 height 15"},
        {16, 32, "height:16", "attributes 0x20 height 16"}, // italic is not converted here
        {17, 63, "height:17", "attributes 0x3f height 17"},
        {0, 0, "height:0", "attributes 0 height 0"},
        {300, 256, "height:300", "attributes 0x100 height 300"},
        {0x80000000, 0, "height:-2147483648", "attributes 0 height -2147483648"},
    };
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);

    for (const auto &row : rows) {
        SCOPED_TRACE(row.pcEntry);
        kova_sint32 siFont = -5;
        ClearTrace();
        EXPECT_EQ(Create(pDisplay, "a", row.uiHeight, &siFont, row.iAttributes), 0);
        EXPECT_EQ(TraceOf("enter"), std::string("enter CreateFont ") + row.pcEntry + " a\n");
        EXPECT_EQ(TraceOf("dfb."), std::string("  dfb.CreateFont a ATTRIBUTES|HEIGHT ") + row.pcCall + "\n");
        EXPECT_EQ(siFont, 0);
        EXPECT_EQ(int(RecordOf(pDisplay)->font[0].eAttr), row.iAttributes);
        EXPECT_EQ(RecordOf(pDisplay)->font[0].ucHeight, row.uiHeight);
    }
    DestroyUnlocked(pDisplay);
}

// ---- a font requested again

TEST(CreateFont, ReturnsTheFontOpenAtTheSameHeightAndForgetsItsScaling)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    Given(pDisplay, "other.ttf");
    EXPECT_EQ(Given(pDisplay, "sans.ttf"), 1);
    IDirectFBFont *const pFont = RecordOf(pDisplay)->font[1].pFont;
    RecordOf(pDisplay)->font[1].ucWidth = 12;
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, "sans.ttf", 24, &siFont, KOVA_FONTATTR_ITALIC), 0);

    EXPECT_EQ(Trace(), "enter CreateFont height:24 sans.ttf\n"
                       "exit CreateFont\n");
    EXPECT_EQ(siFont, 1);
    EXPECT_EQ(RecordOf(pDisplay)->font[1].pFont, pFont);
    EXPECT_EQ(RecordOf(pDisplay)->font[1].ucWidth, 0u);
    EXPECT_EQ(RecordOf(pDisplay)->font[1].eAttr, KOVA_FONTATTR_NONE);
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, ReleasesTheFontAtAnotherHeightFirst)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    Given(pDisplay, "sans.ttf", 24);
    RecordOf(pDisplay)->font[0].ucWidth = 12;
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, "sans.ttf", 30, &siFont), 0);

    EXPECT_EQ(Trace(), std::string("enter CreateFont height:30 sans.ttf\n"
                                   "  font.Release\n"
                                   "  dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT attributes 0 height 30\n"
                                   "  font2.EnumEncodings\n") +
                           ENUMERATED + "exit CreateFont\n");
    EXPECT_EQ(siFont, 0);
    EXPECT_EQ(RecordOf(pDisplay)->font[0].ucHeight, 30u);
    EXPECT_EQ(RecordOf(pDisplay)->font[0].ucWidth, 0u);
    EXPECT_EQ(RecordOf(pDisplay)->font[0].pcFontName, RecordOf(pDisplay)->FontName[0]);
    EXPECT_EQ(RecordOf(pDisplay)->FontName[1][0], 0);
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, MovesAFontAtAnotherHeightToTheLowestFreeSlotAndKeepsItsRow)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    Given(pDisplay, "a");
    Given(pDisplay, "b");
    Empty(pDisplay, 0);
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, "b", 30, &siFont), 0);

    EXPECT_EQ(siFont, 0);
    EXPECT_EQ(TraceOf("font2."), "  font2.Release\n");
    EXPECT_EQ(RecordOf(pDisplay)->font[0].pcFontName, RecordOf(pDisplay)->FontName[1]);
    EXPECT_STREQ(RecordOf(pDisplay)->FontName[0], "a"); // a row is kept after its font
    const KovaDFBFont_t empty = {};
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): not a byte may change
    EXPECT_EQ(memcmp(&RecordOf(pDisplay)->font[1], &empty, sizeof empty), 0);
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, ChecksOnlyTheFirstSlotOfTheName)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    Given(pDisplay, "a", 24);
    Given(pDisplay, "b", 30);
    RecordOf(pDisplay)->font[1].pcFontName = RecordOf(pDisplay)->font[0].pcFontName;
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, "a", 30, &siFont), 0);

    EXPECT_EQ(siFont, 0);
    EXPECT_EQ(TraceOf("font"), "  font.Release\n"
                               "  font3.EnumEncodings\n");
    EXPECT_NE(RecordOf(pDisplay)->font[1].pFont, nullptr);
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, SkipsASlotThatLostItsFontWithoutReleasingIt)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    strcpy(RecordOf(pDisplay)->FontName[4], "a");
    RecordOf(pDisplay)->font[4].pcFontName = RecordOf(pDisplay)->FontName[4];
    RecordOf(pDisplay)->font[4].ucHeight = 10;
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, "a", 24, &siFont), 0);

    EXPECT_EQ(TraceOf("font"), "  font.EnumEncodings\n");
    EXPECT_EQ(TraceOf("DFB_CHECK"), "");
    EXPECT_EQ(siFont, 0);
    EXPECT_EQ(RecordOf(pDisplay)->font[4].pcFontName, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->font[0].pcFontName, RecordOf(pDisplay)->FontName[4]);
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, TakesTheNameFromItsOwnTable)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    Given(pDisplay, "sans.ttf", 24);
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, RecordOf(pDisplay)->font[0].pcFontName, 30, &siFont), 0);

    EXPECT_EQ(siFont, 0);
    EXPECT_STREQ(RecordOf(pDisplay)->FontName[0], "sans.ttf");
    EXPECT_EQ(TraceOf("dfb."), "  dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT attributes 0 height 30\n");
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, PrintsAReleaseThatFailsAndContinues)
{
    const LeaksAreMeant_t leaks; // the font whose release fails
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    Given(pDisplay, "sans.ttf", 24);
    FailNth("Font.Release", 1, DFB_BUSY);
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, "sans.ttf", 30, &siFont), 0);

    EXPECT_EQ(CallsOnly(Trace()),
              "font.Release\n" + CheckLine(DFB_BUSY) +
                  "dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT attributes 0 height 30\nfont2.EnumEncodings\n");
    EXPECT_EQ(siFont, 0);
    Destroy(pDisplay, "font");
}

// ---- a full table, and fonts that cannot be opened

TEST(CreateFont, OpensEightFontsAndNoNinth)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    for (int i = 0; i < 8; i++) EXPECT_EQ(Given(pDisplay, std::string(1, char('a' + i))), i);
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, "i", 24, &siFont), 0);

    EXPECT_EQ(Trace(), "enter CreateFont height:24 i\n"
                       "  ERROR CreateFontInternal: Can only support max 8 fonts!\n"
                       "exit CreateFont\n");
    EXPECT_EQ(siFont, -5);
    EXPECT_EQ(Given(pDisplay, "h", 24), 7);
    EXPECT_EQ(Given(pDisplay, "d", 30), 3);
    for (int i = 0; i < 8; i++) {
        EXPECT_STREQ(RecordOf(pDisplay)->FontName[i], std::string(1, char('a' + i)).c_str());
    }
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, ReportsAFontThatCannotBeOpenedLikeAFullTable)
{
    enum How_e { FAILS, GIVES_NOTHING, NO_DFB };
    static const struct {
        How_e eHow;
        std::string steps;
    } rows[] = {
        {FAILS, "dfb.CreateFont a ATTRIBUTES|HEIGHT attributes 0 height 24\n" + CheckLine(DFB_FILENOTFOUND)},
        {GIVES_NOTHING, "dfb.CreateFont a ATTRIBUTES|HEIGHT attributes 0 height 24\n"},
        {NO_DFB, CheckLine(DFB_DESTROYED)},
    };
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    IDirectFB *const pDfb = RecordOf(pDisplay)->pDfb;

    for (const auto &row : rows) {
        SCOPED_TRACE(row.eHow);
        Reset();
        if (row.eHow == FAILS) Fail("Dfb.CreateFont", DFB_FILENOTFOUND);
        if (row.eHow == GIVES_NOTHING) GiveNothing("Dfb.CreateFont");
        if (row.eHow == NO_DFB) RecordOf(pDisplay)->pDfb = nullptr;
        kova_sint32 siFont = -5;

        EXPECT_EQ(Create(pDisplay, "a", 24, &siFont), 0);

        EXPECT_EQ(CallsOnly(Trace()),
                  row.steps + "ERROR CreateFontInternal: Can only support max 8 fonts!\n");
        EXPECT_EQ(TraceOf("exit"), "exit CreateFont\n");
        EXPECT_EQ(siFont, -5);
        EXPECT_EQ(RecordOf(pDisplay)->font[0].pFont, nullptr);
        EXPECT_EQ(RecordOf(pDisplay)->font[0].pcFontName, nullptr);
        EXPECT_EQ(RecordOf(pDisplay)->FontName[0][0], 0);
        RecordOf(pDisplay)->pDfb = pDfb;
    }

    Reset();
    EXPECT_EQ(Given(pDisplay, "a"), 0);
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, LosesTheOldFontWhenTheNewHeightCannotBeOpened)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    Given(pDisplay, "a", 24);
    FailNth("Dfb.CreateFont", 1, DFB_FILENOTFOUND);
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, "a", 30, &siFont), 0);

    EXPECT_EQ(siFont, -5);
    EXPECT_EQ(RecordOf(pDisplay)->font[0].pFont, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->font[0].pcFontName, nullptr);
    EXPECT_STREQ(RecordOf(pDisplay)->FontName[0], "a");
    DestroyUnlocked(pDisplay);
}

// ---- names

TEST(CreateFont, AcceptsNamesOfUpTo99Characters)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    const std::string longest(99, 'n');

    EXPECT_EQ(Given(pDisplay, longest), 0);

    EXPECT_STREQ(RecordOf(pDisplay)->font[0].pcFontName, longest.c_str());
    EXPECT_EQ(RecordOf(pDisplay)->FontName[1][0], 0);
    EXPECT_EQ(Given(pDisplay, longest), 0);
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, LeavesAFontOfALongerNameInItsSlotWithoutAName)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    const std::string name(100, 'n');
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, name.c_str(), 24, &siFont), 0);

    EXPECT_EQ(Trace(), "enter CreateFont height:24 " + name + "\n  dfb.CreateFont " + name +
                           " ATTRIBUTES|HEIGHT attributes 0 height 24\n"
                           "  error CreateFontInternal: \\n font name too long. We support at most 99 "
                           "characters \n"
                           "exit CreateFont\n");
    ASSERT_EQ(Records().size(), 3u); // the error is a single record
    EXPECT_EQ(Records()[1].iLevel, 1);
    EXPECT_EQ(Records()[1].format, "\n font name too long. We support at most %d characters \n");
    EXPECT_EQ(siFont, -5);
    EXPECT_NE(RecordOf(pDisplay)->font[0].pFont, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->font[0].pcFontName, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->FontName[0][0], 0);
    EXPECT_EQ(Given(pDisplay, "a"), 1); // the slot is in use
    EXPECT_EQ(Given(pDisplay, name), -5);
    EXPECT_NE(RecordOf(pDisplay)->font[2].pFont, nullptr); // and each further attempt uses one more
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, PrefersTheSlotsOwnRowThenAnEqualRowThenTheFirstFreeOne)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    auto &rows = RecordOf(pDisplay)->FontName;
    const auto rowOf = [&](int iFont) {
        const char *const pcName = RecordOf(pDisplay)->font[iFont].pcFontName;
        for (int i = 0; i < 8; i++) {
            if (pcName == rows[i]) return i;
        }
        return -1;
    };
    strcpy(rows[5], "late");
    strcpy(rows[1], "twice");
    strcpy(rows[2], "twice");

    // An equal row is preferred to a free one before it.
    EXPECT_EQ(Given(pDisplay, "late"), 0);
    EXPECT_EQ(rowOf(0), 5);
    EXPECT_EQ(rows[0][0], 0);
    // The slot's own row has another name: the first free one is used.
    EXPECT_EQ(Given(pDisplay, "new"), 1);
    EXPECT_EQ(rowOf(1), 0);
    // The slot's own row is preferred to an equal one before it.
    EXPECT_EQ(Given(pDisplay, "twice"), 2);
    EXPECT_EQ(rowOf(2), 2);
    // Of two other equal rows the first is used.
    Empty(pDisplay, 2);
    strcpy(rows[2], "other");
    strcpy(rows[4], "twice");
    EXPECT_EQ(Given(pDisplay, "twice"), 2);
    EXPECT_EQ(rowOf(2), 1);
    // Of the free rows the first is used, not the slot's own.
    rows[1][0] = 0;
    EXPECT_EQ(Given(pDisplay, "newer"), 3);
    EXPECT_EQ(rowOf(3), 1);
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, LeavesTheFontWithoutANameWhenNoRowIsFree)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    for (int i = 0; i < 8; i++) Given(pDisplay, std::string(1, char('a' + i)));
    Empty(pDisplay, 2);
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, "i", 24, &siFont), 0);

    EXPECT_EQ(Trace(), "enter CreateFont height:24 i\n"
                       "  dfb.CreateFont i ATTRIBUTES|HEIGHT attributes 0 height 24\n"
                       "  ERROR CreateFontInternal: Can only support max 8 fonts!\n"
                       "exit CreateFont\n");
    EXPECT_EQ(siFont, -5);
    EXPECT_NE(RecordOf(pDisplay)->font[2].pFont, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->font[2].pcFontName, nullptr);
    EXPECT_STREQ(RecordOf(pDisplay)->FontName[2], "c");
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, FindsARowAgainByItsNameWhenAllAreTaken)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    for (int i = 0; i < 8; i++) Given(pDisplay, std::string(1, char('a' + i)));
    Empty(pDisplay, 2);
    Empty(pDisplay, 6);

    EXPECT_EQ(Given(pDisplay, "g"), 2);

    EXPECT_EQ(RecordOf(pDisplay)->font[2].pcFontName, RecordOf(pDisplay)->FontName[6]);
    DestroyUnlocked(pDisplay);
}

// ---- encodings

TEST(CreateFont, PrintsAnEnumerationThatFailsAndSucceeds)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    Fail("Font.EnumEncodings", DFB_UNSUPPORTED);
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, "a", 24, &siFont), 0);

    EXPECT_EQ(CallsOnly(Trace()), "dfb.CreateFont a ATTRIBUTES|HEIGHT attributes 0 height 24\n"
                                  "font.EnumEncodings\n" +
                                      CheckLine(DFB_UNSUPPORTED));
    EXPECT_EQ(siFont, 0);
    EXPECT_STREQ(RecordOf(pDisplay)->font[0].pcFontName, "a");
    EXPECT_EQ(RecordOf(pDisplay)->font[0].ucUTF8Index, 0);
    EXPECT_EQ(RecordOf(pDisplay)->font[0].encoding[0].cEncoding, nullptr);
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, KeepsTheUTF8EncodingOnlyWhenItComesLast)
{
    static const struct {
        std::vector<std::pair<unsigned, const char *>> encodings;
        int iUTF8;
    } rows[] = {
        {{}, 0},
        {{{5, "UTF8"}}, 5},
        {{{0, "UTF8"}, {1, "Latin1"}}, 0},
        {{{7, "UTF8"}, {1, "Latin1"}}, 0},
        {{{1, "Latin1"}, {7, "UTF8"}}, 7},
        {{{3, "UTF8"}, {4, "UTF8"}}, 4},
        {{{1, "Latin1"}, {7, "UTF-8"}}, 0},
        {{{7, "utf8"}}, 0},
        {{{7, "UTF8 "}}, 0},
        {{{7, "UTF"}}, 0},
        {{{0x1FE, "UTF8"}}, 0xFE}, // the low eight bits
        {{{0x300, "UTF8"}}, 0},
    };
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    kova_uint32 uiHeight = 10;

    for (const auto &row : rows) {
        SetEncodings(row.encodings);
        EXPECT_EQ(Given(pDisplay, "a", uiHeight++), 0);
        const KovaDFBFont_t &font = RecordOf(pDisplay)->font[0];
        EXPECT_EQ(font.ucUTF8Index, row.iUTF8) << uiHeight;
        for (size_t i = 0; i < 8; i++) {
            const bool bGiven = i < row.encodings.size();
            EXPECT_EQ(font.encoding[i].id, bGiven ? row.encodings[i].first : 0);
            EXPECT_EQ(font.encoding[i].cEncoding, bGiven ? row.encodings[i].second : nullptr); // the pointer
        }
    }
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, StoresEightEncodingsAndEndsTheEnumerationAtTheNinth)
{
    static const char *const names[] = {"E0", "E1", "E2", "E3", "E4", "E5", "E6", "E7", "E8", "E9"};
    for (const size_t uiCount : {8u, 9u, 10u}) {
        for (const size_t uiUTF8 : {3u, 7u, 8u}) { // the position of UTF8
            SCOPED_TRACE(uiCount * 100 + uiUTF8);
            std::vector<std::pair<unsigned, const char *>> encodings;
            std::string trace;
            for (unsigned i = 0; i < uiCount; i++) {
                encodings.emplace_back(i + 16, i == uiUTF8 ? "UTF8" : names[i]);
                char acLine[80];
                snprintf(acLine, sizeof acLine, "  log encoding_callback: id:0x%x,encoding:%s\n", i + 16,
                         encodings.back().second);
                if (i < 9) trace += acLine;
            }
            if (uiCount > 8) {
                trace += "  ERROR encoding_callback: Only can support max 16 encoding!\n"
                         "  enumeration cancelled\n";
            }
            pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
            SetEncodings(encodings);
            kova_sint32 siFont = -5;

            EXPECT_EQ(Create(pDisplay, "a", 24, &siFont), 0);

            const std::string all = Trace();
            const size_t start = all.find("EnumEncodings\n") + strlen("EnumEncodings\n");
            EXPECT_EQ(all.substr(start), trace + "exit CreateFont\n");
            EXPECT_EQ(siFont, 0);
            for (size_t i = 0; i < 8; i++) {
                EXPECT_EQ(RecordOf(pDisplay)->font[0].encoding[i].id, encodings[i].first);
                EXPECT_EQ(RecordOf(pDisplay)->font[0].encoding[i].cEncoding, encodings[i].second);
            }
            // The eighth is the last one stored.
            EXPECT_EQ(RecordOf(pDisplay)->font[0].ucUTF8Index, uiUTF8 == 7 ? 23 : 0);
            EXPECT_EQ(RecordOf(pDisplay)->font[1].pFont, nullptr);
            DestroyUnlocked(pDisplay);
        }
    }
}

TEST(CreateFont, EndsTheEnumerationAtAnEncodingWithoutAName)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    SetEncodings({{6, "UTF8"}, {9, nullptr}, {1, "Latin1"}});
    kova_sint32 siFont = -5;

    EXPECT_EQ(Create(pDisplay, "a", 24, &siFont), 0);

    EXPECT_EQ(Trace(), "enter CreateFont height:24 a\n"
                       "  dfb.CreateFont a ATTRIBUTES|HEIGHT attributes 0 height 24\n"
                       "  font.EnumEncodings\n"
                       "  log encoding_callback: id:0x6,encoding:UTF8\n"
                       "  ERROR encoding_callback: NULL POINTER!\n"
                       "  enumeration cancelled\n"
                       "exit CreateFont\n");
    EXPECT_EQ(siFont, 0);
    EXPECT_EQ(RecordOf(pDisplay)->font[0].ucUTF8Index, 6);
    EXPECT_EQ(RecordOf(pDisplay)->font[0].encoding[1].id, 0u);
    DestroyUnlocked(pDisplay);
}

TEST(CreateFont, EndsTheEnumerationWithoutAContext)
{
    for (const char *pcName : {static_cast<const char *>("UTF8"), static_cast<const char *>(nullptr)}) {
        pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
        SetEncodings({{6, pcName}, {1, "Latin1"}});
        EnumerateWithoutContext();
        kova_sint32 siFont = -5;

        EXPECT_EQ(Create(pDisplay, "a", 24, &siFont), 0);

        const std::string all = Trace();
        EXPECT_EQ(all.substr(all.find("EnumEncodings\n")), "EnumEncodings\n"
                                                           "  ERROR encoding_callback: NULL POINTER!\n"
                                                           "  enumeration cancelled\n"
                                                           "exit CreateFont\n");
        EXPECT_EQ(siFont, 0);
        EXPECT_EQ(RecordOf(pDisplay)->font[0].ucUTF8Index, 0);
        EXPECT_EQ(RecordOf(pDisplay)->font[0].encoding[0].cEncoding, nullptr);
        DestroyUnlocked(pDisplay);
        Reset();
    }
}
