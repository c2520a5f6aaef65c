// SPDX-License-Identifier: MIT
#include "support.h"

#include <functional>

using namespace test;

static const char *const ENUMERATED = "  log encoding_callback: id:0x1,encoding:Latin1\n"
                                      "  log encoding_callback: id:0x2,encoding:UTF8\n";

static KovaDFBFont_t &Slot(pKovaITextDisplay_t pDisplay, int iFont)
{
    return RecordOf(pDisplay)->font[iFont];
}

static int Select(pKovaITextDisplay_t pDisplay, kova_sint32 siFont, kova_uint32 uiHeight, int iAttributes = 0)
{
    return pDisplay->SetFont(pDisplay, 0, siFont, uiHeight, KovaTextFontAttr_e(iAttributes));
}

// ---- SetFont

TEST(SetFont, OnlyAttachesAFontThatMatchesTheRequestAndKeepsItsWidth)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 24);
    Slot(pDisplay, 0).ucWidth = 12;
    RecordOf(pDisplay)->scActiveFontID = -1;

    EXPECT_EQ(Select(pDisplay, 0, 24), 0);

    EXPECT_EQ(Trace(), "  enter SetFont FontNumb:0 height:24\n"
                       "  base.SetFont font\n"
                       "exit SetFont\n");
    EXPECT_EQ(RecordText(0), "FontNumb:0 height:24\n");
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, 0);
    EXPECT_EQ(Slot(pDisplay, 0).ucWidth, 12u);
    DestroyUnlocked(pDisplay);
}

TEST(SetFont, SelectsWhileHidden)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER1);
    const std::string surface = NameOf(RecordOf(pDisplay)->pActiveSurface);
    GivenFont(pDisplay, 24);

    EXPECT_EQ(Select(pDisplay, 0, 24), 0);

    EXPECT_EQ(CallsOnly(Trace()), surface + ".SetFont font\n");
    DestroyUnlocked(pDisplay);
}

TEST(SetFont, ReopensTheSlotsFontAtAnotherHeightAndForgetsItsWidth)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 24);
    pDisplay->ScaleFontWidth(pDisplay, 0, 1, 32768);
    EXPECT_EQ(Slot(pDisplay, 0).ucWidth, 12u);
    SetEncodings({{1, "Latin1"}, {9, "UTF8"}});
    ClearTrace();

    EXPECT_EQ(Select(pDisplay, 0, 30), 0);

    EXPECT_EQ(Trace(), "  enter SetFont FontNumb:0 height:30\n"
                       "  font2.Release\n"
                       "  dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT attributes 0 height 30\n"
                       "  font3.EnumEncodings\n"
                       "  log encoding_callback: id:0x1,encoding:Latin1\n"
                       "  log encoding_callback: id:0x9,encoding:UTF8\n"
                       "  base.SetFont font3\n"
                       "exit SetFont\n");
    const KovaDFBFont_t &font = Slot(pDisplay, 0);
    EXPECT_EQ(font.pcFontName, RecordOf(pDisplay)->FontName[0]);
    EXPECT_STREQ(font.pcFontName, "sans.ttf");
    EXPECT_EQ(font.ucHeight, 30u);
    EXPECT_EQ(font.ucWidth, 0u);
    EXPECT_EQ(font.ucUTF8Index, 9);
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, 0);
    DestroyUnlocked(pDisplay);
}

TEST(SetFont, RequestsOnlyItalicAndRemembersAllAttributes)
{
    static const struct {
        int iAttributes;
        const char *pcCall; // null: the font matches the request
    } rows[] = {
        {KOVA_FONTATTR_NONE, nullptr},
        {KOVA_FONTATTR_ITALIC, "attributes 0x100 height 24"},
        {KOVA_FONTATTR_ITALIC, nullptr},
        {KOVA_FONTATTR_MONOCHROME, "attributes 0 height 24"},
        {KOVA_FONTATTR_NONE, "attributes 0 height 24"},
        {63, "attributes 0x100 height 24"},
        {31, "attributes 0 height 24"},
        {31, nullptr},
        {256, "attributes 0 height 24"},
    };
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 24);

    for (const auto &row : rows) {
        SCOPED_TRACE(row.iAttributes);
        ClearTrace();
        EXPECT_EQ(Select(pDisplay, 0, 24, row.iAttributes), 0);
        EXPECT_EQ(TraceOf("dfb."),
                  row.pcCall ? std::string("  dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT ") + row.pcCall + "\n"
                             : "");
        EXPECT_EQ(int(Slot(pDisplay, 0).eAttr), row.iAttributes);
        EXPECT_EQ(Slot(pDisplay, 0).ucHeight, 24u);
    }
    DestroyUnlocked(pDisplay);
}

TEST(SetFont, KeepsAFontsNumberAndRowWhereItIsReopened)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 24, "a");
    GivenFont(pDisplay, 24, "b");
    GivenFont(pDisplay, 24, "c");

    EXPECT_EQ(Select(pDisplay, 1, 40), 0);

    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, 1);
    EXPECT_EQ(Slot(pDisplay, 1).pcFontName, RecordOf(pDisplay)->FontName[1]);
    EXPECT_EQ(TraceOf("dfb."), "  dfb.CreateFont b ATTRIBUTES|HEIGHT attributes 0 height 40\n");
    EXPECT_EQ(TraceOf("base."), "  base.SetFont font4\n");
    EXPECT_EQ(Slot(pDisplay, 0).ucHeight, 24u);
    EXPECT_EQ(Slot(pDisplay, 2).ucHeight, 24u);
    DestroyUnlocked(pDisplay);
}

TEST(SetFont, RefusesInOrder)
{
    static const struct {
        int iContext;
        kova_sint32 siFont;
        kova_uint32 uiHeight;
        const char *pcTrace;
    } rows[] = {
        {4, -1, 0, "  ERROR SetFont: Invalid context ID!\n"},
        {-1, 0, 24, "  ERROR SetFont: Invalid context ID!\n"},
        {127, 0, 24, "  ERROR SetFont: Invalid context ID!\n"},
        {0, -1, 0, "  ERROR SetFont: Only can support max 8 fonts!\n"},
        {0, 8, 0, "  ERROR SetFont: Only can support max 8 fonts!\n"},
        {0, 256, 24, "  ERROR SetFont: Only can support max 8 fonts!\n"},
        {0, 0x7FFFFFFF, 24, "  ERROR SetFont: Only can support max 8 fonts!\n"},
        {0, 7, 0, "  ERROR SetFont: Invalid Font id!\n"},
        {0, 1, 24, "  ERROR SetFont: Invalid Font id!\n"},
        {0, 0, 0, "  ERROR SetFont: Height should be bigger than 0!\\n\n"},
        {0, 0, 30,
         "  enter SetFont FontNumb:0 height:30\n"
         "  ERROR SetFont: Inactive context!\n"},
        {3, 0, 0x80000000,
         "  enter SetFont FontNumb:0 height:-2147483648\n"
         "  ERROR SetFont: Inactive context!\n"},
    };
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    GivenFont(pDisplay, 24);

    for (const auto &row : rows) {
        SCOPED_TRACE(row.pcTrace);
        ClearTrace();
        EXPECT_EQ(pDisplay->SetFont(pDisplay, kova_sint8(row.iContext), row.siFont, row.uiHeight,
                                    KOVA_FONTATTR_NONE),
                  -1);
        EXPECT_EQ(Trace(), row.pcTrace);
        EXPECT_FALSE(HoldsLock());
    }
    ClearTrace();
    EXPECT_EQ(pDisplay->SetFont(nullptr, 4, -1, 0, KOVA_FONTATTR_NONE), -1);
    EXPECT_EQ(Trace(), "ERROR SetFont: NULL Pointer!\n");
    EXPECT_EQ(Slot(pDisplay, 0).ucHeight, 24u);
    DestroyUnlocked(pDisplay);
}

TEST(SetFont, LeavesTheSlotEmptyAndTheSelectionAsItWasWhenTheFontCannotBeReopened)
{
    for (const bool bFails : {true, false}) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
        GivenFont(pDisplay, 24, "a");
        GivenFont(pDisplay, 24, "b");
        if (bFails) Fail("Dfb.CreateFont", DFB_FILENOTFOUND);
        if (!bFails) GiveNothing("Dfb.CreateFont");

        EXPECT_EQ(Select(pDisplay, 0, 30), 0);

        EXPECT_EQ(TraceOf("DFB_CHECK"), bFails ? CheckLine(DFB_FILENOTFOUND) : "");
        EXPECT_EQ(TraceOf("base."), "");
        EXPECT_EQ(TraceOf("exit"), "exit SetFont\n");
        EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, 1);
        EXPECT_EQ(Slot(pDisplay, 0).pFont, nullptr);
        EXPECT_EQ(Slot(pDisplay, 0).pcFontName, nullptr);
        EXPECT_EQ(Slot(pDisplay, 0).ucHeight, 0u);
        ClearTrace();
        EXPECT_EQ(Select(pDisplay, 0, 30), -1);
        EXPECT_EQ(Trace(), "  ERROR SetFont: Invalid Font id!\n");
        DestroyUnlocked(pDisplay);
        Reset();
    }
}

TEST(SetFont, DoesNotReportAReleaseThatFails)
{
    const LeaksAreMeant_t leaks; // the font whose release fails
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 24);
    FailNth("Font.Release", 1, DFB_BUSY);

    EXPECT_EQ(Select(pDisplay, 0, 30), 0);

    EXPECT_EQ(CallsOnly(Trace()), "font.Release\n"
                                  "dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT attributes 0 height 30\n"
                                  "font2.EnumEncodings\n"
                                  "base.SetFont font2\n");
    EXPECT_EQ(StandardError(), "");
    Destroy(pDisplay, "font");
}

TEST(SetFont, PrintsOtherFailuresAndSelects)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 24, "a");
    GivenFont(pDisplay, 24, "b");
    Fail("Font.EnumEncodings", DFB_UNSUPPORTED);
    Fail("Surface.SetFont", DFB_INVARG);

    EXPECT_EQ(Select(pDisplay, 0, 30), 0);

    EXPECT_EQ(CallsOnly(Trace()), "font.Release\n"
                                  "dfb.CreateFont a ATTRIBUTES|HEIGHT attributes 0 height 30\n"
                                  "font3.EnumEncodings\n" +
                                      CheckLine(DFB_UNSUPPORTED) + "base.SetFont font3\n" +
                                      CheckLine(DFB_INVARG));
    EXPECT_EQ(TraceOf("exit"), "exit SetFont\n");
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, 0);
    DestroyUnlocked(pDisplay);
}

TEST(SetFont, SelectsThoughThereIsNoSurface)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 24, "a");
    GivenFont(pDisplay, 24, "b");
    RecordOf(pDisplay)->pActiveSurface = nullptr;

    EXPECT_EQ(Select(pDisplay, 0, 24), 0);

    EXPECT_EQ(CallsOnly(Trace()), CheckLine(DFB_DESTROYED));
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, 0);
    DestroyUnlocked(pDisplay);
}

// ---- GetFontHeight

TEST(GetFontHeight, ReturnsDirectFBsHeightOfTheActiveFont)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 24, "a");
    GivenFont(pDisplay, 24, "b");
    SetFontMetrics(31, 0, 0, 0);
    kova_sint32 siHeight = -77;

    EXPECT_EQ(pDisplay->GetFontHeight(pDisplay, 0, &siHeight), 0);

    EXPECT_EQ(Trace(), "enter GetFontHeight input pHeight:-77\n"
                       "  font2.GetHeight\n"
                       "enter GetFontHeight return height:31\n"
                       "exit GetFontHeight\n");
    EXPECT_EQ(RecordText(0), "input pHeight:-77\n");
    EXPECT_EQ(RecordText(1), "return height:31\n");
    EXPECT_EQ(siHeight, 31);
    DestroyUnlocked(pDisplay);
}

// The faults of the rows below, in the order in which they are checked.
enum Wrong_e {
    RIGHT,
    NULL_DISPLAY,
    BAD_CONTEXT,
    NULL_FIRST,
    NULL_SECOND,
    NO_FONT,
    BAD_FONT,
    EMPTY_SLOT,
    HIDDEN,
    INACTIVE
};

// Creates this fault and, where possible, all faults that are checked later.
static kova_sint8 Break(pKovaITextDisplay_t pDisplay, Wrong_e eWrong)
{
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);

    pRecord->scActiveFontID = kova_sint8(eWrong <= NO_FONT && eWrong != RIGHT ? -1
                                         : eWrong == BAD_FONT                 ? 8
                                                                              : 0);
    if (eWrong != RIGHT && eWrong <= EMPTY_SLOT) pRecord->font[0].pFont = nullptr;
    pRecord->bShow = eWrong == RIGHT || eWrong == INACTIVE;
    return kova_sint8(eWrong == RIGHT ? 1 : eWrong <= BAD_CONTEXT ? -56 : 0);
}

static void Mend(pKovaITextDisplay_t pDisplay, IDirectFBFont *pFont)
{
    RecordOf(pDisplay)->scActiveFontID = 0;
    RecordOf(pDisplay)->font[0].pFont = pFont;
    RecordOf(pDisplay)->bShow = 1;
    ClearTrace();
}

struct Refusal_t {
    Wrong_e eWrong;
    int iResult;
    const char *pcTrace;
};

using Asked_t = std::function<int(pKovaITextDisplay_t pTable, Wrong_e eWrong, kova_sint8 scContext)>;

template <size_t COUNT> static void ExpectRefusals(const Refusal_t (&refusals)[COUNT], const Asked_t &ask)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    GivenFont(pDisplay, 24);
    IDirectFBFont *const pFont = Slot(pDisplay, 0).pFont;

    for (const Refusal_t &refusal : refusals) {
        SCOPED_TRACE(refusal.eWrong);
        const kova_sint8 scContext = Break(pDisplay, refusal.eWrong);
        EXPECT_EQ(ask(pDisplay, refusal.eWrong, scContext), refusal.iResult);
        EXPECT_EQ(Trace(), refusal.pcTrace);
        EXPECT_FALSE(HoldsLock());
        Mend(pDisplay, pFont);
    }
    DestroyUnlocked(pDisplay);
}

TEST(GetFontHeight, RefusesInOrderAndAlwaysStoresAHeight)
{
    static const Refusal_t refusals[] = {
        {NULL_DISPLAY, -1, "enter GetFontHeight input pHeight:77\nERROR GetFontHeight: NULL Pointer!\n"},
        {BAD_CONTEXT, -1,
         "enter GetFontHeight input pHeight:77\n  ERROR GetFontHeight: Invalid context ID!\n"},
        {NO_FONT, -1,
         "enter GetFontHeight input pHeight:77\n  ERROR GetFontHeight: Only can support max 8 fonts!\n"},
        {BAD_FONT, -1,
         "enter GetFontHeight input pHeight:77\n  ERROR GetFontHeight: Only can support max 8 fonts!\n"},
        {EMPTY_SLOT, -1, "enter GetFontHeight input pHeight:77\n  ERROR GetFontHeight: NULL POINTER!\n"},
        {HIDDEN, 0,
         "enter GetFontHeight input pHeight:77\nenter GetFontHeight return height:0\nexit GetFontHeight\n"},
        {INACTIVE, -1, "enter GetFontHeight input pHeight:77\n  ERROR GetFontHeight: Inactive context!\n"},
    };

    ExpectRefusals(refusals, [](pKovaITextDisplay_t pTable, Wrong_e eWrong, kova_sint8 scContext) {
        kova_sint32 siHeight = 77;
        const int iResult =
            pTable->GetFontHeight(eWrong == NULL_DISPLAY ? nullptr : pTable, scContext, &siHeight);
        EXPECT_EQ(siHeight, 0);
        return iResult;
    });
}

TEST(GetFontHeight, ReturnsNothingWhileHiddenToTheActiveContextToo)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 24);
    kova_sint32 siHeight = 5;

    EXPECT_EQ(pDisplay->GetFontHeight(pDisplay, 0, &siHeight), 0);

    EXPECT_EQ(Trace(), "enter GetFontHeight input pHeight:5\n"
                       "enter GetFontHeight return height:0\n"
                       "exit GetFontHeight\n");
    EXPECT_EQ(siHeight, 0);
    DestroyUnlocked(pDisplay);
}

TEST(GetFontHeight, PrintsAFailureAndReturnsZero)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 24);
    Fail("Font.GetHeight", DFB_FAILURE);
    kova_sint32 siHeight = 5;

    EXPECT_EQ(pDisplay->GetFontHeight(pDisplay, 0, &siHeight), 0);

    EXPECT_EQ(TraceOf("DFB_CHECK"), CheckLine(DFB_FAILURE));
    EXPECT_EQ(TraceOf("enter GetFontHeight return"), "enter GetFontHeight return height:0\n");
    EXPECT_EQ(TraceOf("exit"), "exit GetFontHeight\n");
    EXPECT_EQ(siHeight, 0);
    DestroyUnlocked(pDisplay);
}

// ---- ScaleFontWidth

TEST(ScaleFontWidth, ReopensTheActiveFontInItsWidth)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 10, "other");
    GivenFont(pDisplay, 24);

    EXPECT_EQ(pDisplay->ScaleFontWidth(pDisplay, 0, 1, 32768), 0);

    EXPECT_EQ(Trace(), std::string("  enter ScaleFontWidth\n"
                                   "  font2.Release\n"
                                   "  dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT|WIDTH attributes 0 height 24 "
                                   "width 12\n"
                                   "  font3.EnumEncodings\n") +
                           ENUMERATED +
                           "  base.SetFont font3\n"
                           "exit ScaleFontWidth\n");
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, 1);
    EXPECT_EQ(Slot(pDisplay, 1).pcFontName, RecordOf(pDisplay)->FontName[1]);
    EXPECT_EQ(Slot(pDisplay, 1).ucWidth, 12u);
    EXPECT_EQ(Slot(pDisplay, 1).ucHeight, 24u);
    EXPECT_EQ(Slot(pDisplay, 1).ucUTF8Index, 2);
    EXPECT_EQ(Slot(pDisplay, 0).ucWidth, 0u);
    DestroyUnlocked(pDisplay);
}

TEST(ScaleFontWidth, ReadsTheFactorAs16Point16OfTheHeightsLowByte)
{
    static const struct {
        kova_uint32 uiHeight, uiFactor;
        int iHeight, iWidth; // 0: no effect
    } rows[] = {
        {24, 65536, 24, 24},         {24, 32768, 24, 12},
        {24, 98304, 24, 36},         {24, 2730, 24, 0}, // 0.9998 of a pixel
        {24, 2731, 24, 1},           {24, 0, 24, 0},
        {24, 0xFFFFFFFF, 24, 65535}, // the product wraps at 32 bits
        {24, 0x10000000, 24, 32768}, {255, 65536, 255, 255},
        {256, 65536, 0, 0},          {300, 65536, 44, 44},
        {300, 32768, 44, 22},        {513, 131072, 1, 2},
    };

    for (const auto &row : rows) {
        SCOPED_TRACE(std::to_string(row.uiHeight) + " by " + std::to_string(row.uiFactor));
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
        GivenFont(pDisplay, row.uiHeight);

        EXPECT_EQ(pDisplay->ScaleFontWidth(pDisplay, 0, 1, row.uiFactor), 0);

        if (row.iWidth == 0) {
            EXPECT_EQ(Trace(), "  enter ScaleFontWidth\n"
                               "exit ScaleFontWidth\n");
            EXPECT_EQ(Slot(pDisplay, 0).ucHeight, row.uiHeight);
        } else {
            const std::string call = TraceOf("dfb");
            EXPECT_EQ(call.substr(call.find('.')),
                      ".CreateFont sans.ttf ATTRIBUTES|HEIGHT|WIDTH attributes 0 height " +
                          std::to_string(row.iHeight) + " width " + std::to_string(row.iWidth) + "\n");
            EXPECT_EQ(Slot(pDisplay, 0).ucHeight, kova_uint32(row.iHeight));
        }
        EXPECT_EQ(Slot(pDisplay, 0).ucWidth, kova_uint32(row.iWidth));
        DestroyUnlocked(pDisplay);
    }
}

TEST(ScaleFontWidth, ScalesWhateverItsArgumentSaysAndNotTwice)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 24);

    EXPECT_EQ(pDisplay->ScaleFontWidth(pDisplay, 0, 0, 32768), 0);
    EXPECT_EQ(Slot(pDisplay, 0).ucWidth, 12u);

    ClearTrace();
    EXPECT_EQ(pDisplay->ScaleFontWidth(pDisplay, 0, 1, 32768), 0);
    EXPECT_EQ(pDisplay->ScaleFontWidth(pDisplay, 0, 0, 33000), 0); // also 12 pixels
    EXPECT_EQ(Trace(), "  enter ScaleFontWidth\n"
                       "exit ScaleFontWidth\n"
                       "  enter ScaleFontWidth\n"
                       "exit ScaleFontWidth\n");

    ClearTrace();
    EXPECT_EQ(pDisplay->ScaleFontWidth(pDisplay, 0, 0, 0), 0); // back to the unscaled width
    EXPECT_EQ(TraceOf("dfb."),
              "  dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT|WIDTH attributes 0 height 24 width 0\n");
    EXPECT_EQ(Slot(pDisplay, 0).ucWidth, 0u);
    DestroyUnlocked(pDisplay);
}

TEST(ScaleFontWidth, RequestsOnlyItalicAndKeepsTheSlotsAttributes)
{
    static const struct {
        int iAttributes;
        const char *pcAttributes;
    } rows[] = {{0, "0"}, {31, "0"}, {32, "0x100"}, {33, "0x100"}};

    for (const auto &row : rows) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
        GivenFont(pDisplay, 24);
        Select(pDisplay, 0, 24, row.iAttributes);
        ClearTrace();
        EXPECT_EQ(pDisplay->ScaleFontWidth(pDisplay, 0, 1, 65536), 0);
        const std::string call = TraceOf("dfb");
        EXPECT_EQ(call.substr(call.find('.')),
                  std::string(".CreateFont sans.ttf ATTRIBUTES|HEIGHT|WIDTH attributes ") + row.pcAttributes +
                      " height 24 width 24\n");
        EXPECT_EQ(int(Slot(pDisplay, 0).eAttr), row.iAttributes);
        DestroyUnlocked(pDisplay);
    }
}

TEST(ScaleFontWidth, RefusesInOrder)
{
    static const Refusal_t refusals[] = {
        {NULL_DISPLAY, -1, "ERROR ScaleFontWidth: NULL Pointer!\n"},
        {BAD_CONTEXT, -1, "  ERROR ScaleFontWidth: Invalid context ID!\n"},
        {NO_FONT, -1, "  ERROR ScaleFontWidth: Only can support max 8 fonts!\n"},
        {BAD_FONT, -1, "  ERROR ScaleFontWidth: Only can support max 8 fonts!\n"},
        {EMPTY_SLOT, -1, "  ERROR ScaleFontWidth: Invalid Font id!\n"},
        {HIDDEN, 0, "  enter ScaleFontWidth\nexit ScaleFontWidth\n"},
        {INACTIVE, -1, "  enter ScaleFontWidth\n  ERROR ScaleFontWidth: Inactive context!\n"},
    };

    ExpectRefusals(refusals, [](pKovaITextDisplay_t pTable, Wrong_e eWrong, kova_sint8 scContext) {
        return pTable->ScaleFontWidth(eWrong == NULL_DISPLAY ? nullptr : pTable, scContext, 1, 65536);
    });
}

TEST(ScaleFontWidth, LeavesTheSlotEmptyWhenTheFontCannotBeReopened)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 24);
    Fail("Dfb.CreateFont", DFB_FILENOTFOUND);

    EXPECT_EQ(pDisplay->ScaleFontWidth(pDisplay, 0, 1, 65536), 0);

    EXPECT_EQ(CallsOnly(Trace()),
              "font.Release\n"
              "dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT|WIDTH attributes 0 height 24 width 24\n" +
                  CheckLine(DFB_FILENOTFOUND));
    EXPECT_EQ(TraceOf("exit"), "exit ScaleFontWidth\n");
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, 0);
    EXPECT_EQ(Slot(pDisplay, 0).pFont, nullptr);
    ClearTrace();
    EXPECT_EQ(pDisplay->ScaleFontWidth(pDisplay, 0, 1, 65536), -1);
    EXPECT_EQ(Trace(), "  ERROR ScaleFontWidth: Invalid Font id!\n");
    DestroyUnlocked(pDisplay);
}

TEST(ScaleFontWidth, PrintsEveryFailureAndContinues)
{
    const LeaksAreMeant_t leaks; // the font whose release fails
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 24);
    FailNth("Font.Release", 1, DFB_BUSY);
    Fail("Font.EnumEncodings", DFB_UNSUPPORTED);
    Fail("Surface.SetFont", DFB_INVARG);

    EXPECT_EQ(pDisplay->ScaleFontWidth(pDisplay, 0, 1, 65536), 0);

    EXPECT_EQ(CallsOnly(Trace()),
              "font.Release\n" + CheckLine(DFB_BUSY) +
                  "dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT|WIDTH attributes 0 height 24 width 24\n"
                  "font2.EnumEncodings\n" +
                  CheckLine(DFB_UNSUPPORTED) + "base.SetFont font2\n" + CheckLine(DFB_INVARG));
    EXPECT_EQ(Slot(pDisplay, 0).ucWidth, 24u);
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, 0);
    EXPECT_FALSE(HoldsLock());
    Destroy(pDisplay, "font");
}

// ---- GetUnderlineInfo

TEST(GetUnderlineInfo, ReturnsTheUnderlineOfTheActiveFontWhicheverIsNamed)
{
    static const struct {
        kova_sint32 siFont;
        kova_uint32 uiHeight, uiAttributes;
    } rows[] = {{0, 24, 0}, {1, 30, 32}, {-1, 0, 0xFFFFFFFF}, {99, 0x80000000, 7}};
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 24, "a");
    GivenFont(pDisplay, 24, "b");
    SetFontMetrics(0, -4, 3, 0);

    for (const auto &row : rows) {
        kova_sint32 siPosition = 77, siThickness = 77;
        ClearTrace();
        EXPECT_EQ(pDisplay->GetUnderlineInfo(pDisplay, 0, row.siFont, row.uiHeight, row.uiAttributes,
                                             &siPosition, &siThickness),
                  0);
        EXPECT_EQ(Trace(), "enter GetUnderlineInfo\n"
                           "  font2.GetUnderline\n"
                           "exit GetUnderlineInfo\n");
        EXPECT_EQ(siPosition, -4);
        EXPECT_EQ(siThickness, 3);
    }
    DestroyUnlocked(pDisplay);
}

TEST(GetUnderlineInfo, RefusesInOrderAndLeavesTheOutputsAlone)
{
    static const Refusal_t refusals[] = {
        {NULL_DISPLAY, -1, "enter GetUnderlineInfo\nERROR GetUnderlineInfo: NULL Pointer!\n"},
        {BAD_CONTEXT, -1, "enter GetUnderlineInfo\n  ERROR GetUnderlineInfo: Invalid context ID!\n"},
        {NULL_FIRST, -1, "enter GetUnderlineInfo\n  ERROR GetUnderlineInfo: NULL Pointer!\n"},
        {NULL_SECOND, -1, "enter GetUnderlineInfo\n  ERROR GetUnderlineInfo: NULL Pointer!\n"},
        {NO_FONT, -1, "enter GetUnderlineInfo\n  ERROR GetUnderlineInfo: Only can support max 8 fonts!\n"},
        {BAD_FONT, -1, "enter GetUnderlineInfo\n  ERROR GetUnderlineInfo: Only can support max 8 fonts!\n"},
        {EMPTY_SLOT, -1, "enter GetUnderlineInfo\n  ERROR GetUnderlineInfo: NULL POINTER!\n"},
        {HIDDEN, 0, "enter GetUnderlineInfo\n"}, // no exit trace
        {INACTIVE, -1, "enter GetUnderlineInfo\n  ERROR GetUnderlineInfo: Inactive context!\n"},
    };

    ExpectRefusals(refusals, [](pKovaITextDisplay_t pTable, Wrong_e eWrong, kova_sint8 scContext) {
        kova_sint32 siPosition = 77, siThickness = 78;
        const int iResult =
            pTable->GetUnderlineInfo(eWrong == NULL_DISPLAY ? nullptr : pTable, scContext, 0, 24, 0,
                                     eWrong == NULL_FIRST || eWrong == BAD_CONTEXT ? nullptr : &siPosition,
                                     eWrong == NULL_SECOND || eWrong == BAD_CONTEXT ? nullptr : &siThickness);
        EXPECT_EQ(siPosition, 77);
        EXPECT_EQ(siThickness, 78);
        return iResult;
    });
}

TEST(GetUnderlineInfo, PrintsAFailureAndSucceeds)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay, 24);
    Fail("Font.GetUnderline", DFB_UNSUPPORTED);
    kova_sint32 siPosition = 77, siThickness = 78;

    EXPECT_EQ(pDisplay->GetUnderlineInfo(pDisplay, 0, 0, 24, 0, &siPosition, &siThickness), 0);

    EXPECT_EQ(CallsOnly(Trace()), "font.GetUnderline\n" + CheckLine(DFB_UNSUPPORTED));
    EXPECT_EQ(TraceOf("exit"), "exit GetUnderlineInfo\n");
    EXPECT_EQ(siPosition, 77);
    EXPECT_EQ(siThickness, 78);
    DestroyUnlocked(pDisplay);
}
