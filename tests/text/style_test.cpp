// SPDX-License-Identifier: MIT
#include "support.h"

#include <functional>

using namespace test;

struct Style_t {
    kova_uint32 uiText, uiEdge;
    int iEdge;
};

static bool operator==(const Style_t &a, const Style_t &b)
{
    return a.uiText == b.uiText && a.uiEdge == b.uiEdge && a.iEdge == b.iEdge;
}

static const Style_t s_before = {1001, 1002, 1003};

static void SetStyle(pKovaITextDisplay_t pDisplay)
{
    RecordOf(pDisplay)->ucFgColorIndex = s_before.uiText;
    RecordOf(pDisplay)->ucEdgeColorIndex = s_before.uiEdge;
    RecordOf(pDisplay)->eEdge = KovaTextEdgeType_e(s_before.iEdge);
}

static Style_t StyleOf(pKovaITextDisplay_t pDisplay)
{
    return {RecordOf(pDisplay)->ucFgColorIndex, RecordOf(pDisplay)->ucEdgeColorIndex,
            int(RecordOf(pDisplay)->eEdge)};
}

static const kova_uint32 VALUES[] = {0, 1, 7, 255, 256, 0x7FFFFFFF, 0x80000000, 0xFF000080, 0xFFFFFFFF};
static const char *const DECIMALS[] = {"0",          "1",           "7",         "255", "256",
                                       "2147483647", "-2147483648", "-16777088", "-1"};

TEST(SetTextForeColor, StoresTheColourUnchangedInEveryMode)
{
    for (const ColorMode_e eMode : {INDEX_COLORS, PALETTE_COLORS, PACKED_COLORS}) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, eMode, ACTIVE_CONTEXT(1));
        SetStyle(pDisplay);
        for (size_t i = 0; i < sizeof VALUES / sizeof *VALUES; i++) {
            ClearTrace();
            EXPECT_EQ(pDisplay->SetTextForeColor(pDisplay, 1, VALUES[i]), 0);
            EXPECT_EQ(Trace(), std::string("enter SetTextForeColor color:") + DECIMALS[i] +
                                   "\nexit SetTextForeColor\n");
            EXPECT_EQ(RecordText(0), std::string("color:") + DECIMALS[i] + "\n");
            EXPECT_TRUE(StyleOf(pDisplay) == (Style_t{VALUES[i], s_before.uiEdge, s_before.iEdge}));
            EXPECT_FALSE(HoldsLock());
        }
        Destroy(pDisplay);
    }
}

TEST(SetEdgeColor, StoresTheColourUnchangedInEveryMode)
{
    for (const ColorMode_e eMode : {INDEX_COLORS, PALETTE_COLORS, PACKED_COLORS}) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, eMode, ACTIVE_CONTEXT(1));
        GivenFont(pDisplay);
        SetStyle(pDisplay);
        for (const kova_uint32 uiValue : VALUES) {
            ClearTrace();
            EXPECT_EQ(pDisplay->SetEdgeColor(pDisplay, 1, uiValue), 0);
            EXPECT_EQ(Trace(), "enter SetEdgeColor\n"
                               "exit SetEdgeColor\n");
            EXPECT_TRUE(StyleOf(pDisplay) == (Style_t{s_before.uiText, uiValue, s_before.iEdge}));
            EXPECT_FALSE(HoldsLock());
        }
        Destroy(pDisplay);
    }
}

TEST(SetEdgeType, StoresEveryValueKnownOrNot)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    SetStyle(pDisplay);

    for (const int iEdge : {1, 2, 4, 8, 16, 32, 64, 0, 3, 65, 128, 0x7FFFFFFF, -1}) {
        ClearTrace();
        EXPECT_EQ(pDisplay->SetEdgeType(pDisplay, 1, KovaTextEdgeType_e(iEdge)), 0);
        EXPECT_EQ(Trace(), "enter SetEdgeType\n"
                           "exit SetEdgeType\n");
        EXPECT_TRUE(StyleOf(pDisplay) == (Style_t{s_before.uiText, s_before.uiEdge, iEdge}));
        EXPECT_FALSE(HoldsLock());
    }
    Destroy(pDisplay);
}

TEST(TextStyle, IsSetForEveryContextWhileNoneIsActive)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, NO_CONTEXT);
    GivenFont(pDisplay);

    for (const int iContext : {0, 1, 2, 3}) {
        const auto scContext = kova_sint8(iContext);
        const auto uiValue = kova_uint32(iContext + 10);
        EXPECT_EQ(pDisplay->SetTextForeColor(pDisplay, scContext, uiValue), 0);
        EXPECT_EQ(pDisplay->SetEdgeColor(pDisplay, scContext, uiValue), 0);
        EXPECT_EQ(pDisplay->SetEdgeType(pDisplay, scContext, KovaTextEdgeType_e(uiValue)), 0);
        EXPECT_TRUE(StyleOf(pDisplay) == (Style_t{uiValue, uiValue, int(uiValue)}));
    }
    Destroy(pDisplay);
}

// ---- refusals

enum Wrong_e { NULL_DISPLAY, BAD_CONTEXT, NO_FONT, BAD_FONT, EMPTY_SLOT, HIDDEN, INACTIVE, DEACTIVATED };

struct Refusal_t {
    Wrong_e eWrong;
    int iResult;
    const char *pcTrace;
};

using Setter_t = std::function<int(pKovaITextDisplay_t pTable, pKovaITextDisplay_t pThiz, kova_sint8)>;

// Each row creates the named fault and, where possible, all faults that are checked later.
template <size_t COUNT> static void ExpectRefusals(const Refusal_t (&refusals)[COUNT], const Setter_t &set)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    GivenFont(pDisplay);
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    IDirectFBFont *const pFont = pRecord->font[0].pFont;
    SetStyle(pDisplay);

    for (const Refusal_t &refusal : refusals) {
        SCOPED_TRACE(refusal.eWrong);
        pRecord->scActiveFontID = kova_sint8(refusal.eWrong <= NO_FONT    ? -1
                                             : refusal.eWrong == BAD_FONT ? 8
                                                                          : 0);
        if (refusal.eWrong <= EMPTY_SLOT) pRecord->font[0].pFont = nullptr;
        pRecord->bShow = refusal.eWrong > HIDDEN;
        if (refusal.eWrong == DEACTIVATED) pRecord->scActiveContextID = -2;

        EXPECT_EQ(set(pDisplay, refusal.eWrong == NULL_DISPLAY ? nullptr : pDisplay,
                      kova_sint8(refusal.eWrong <= BAD_CONTEXT ? 4 : 0)),
                  refusal.iResult);

        EXPECT_EQ(Trace(), refusal.pcTrace);
        EXPECT_TRUE(StyleOf(pDisplay) == s_before);
        EXPECT_FALSE(HoldsLock());
        pRecord->scActiveFontID = 0;
        pRecord->font[0].pFont = pFont;
        pRecord->bShow = 1;
        pRecord->scActiveContextID = 1;
        ClearTrace();
    }
    Destroy(pDisplay);
}

TEST(SetTextForeColor, RefusesInOrderAndIsIgnoredWhileHidden)
{
    static const Refusal_t refusals[] = {
        {NULL_DISPLAY, -1, "enter SetTextForeColor color:5\nERROR SetTextForeColor: NULL Pointer!\n"},
        {BAD_CONTEXT, -1, "enter SetTextForeColor color:5\nERROR SetTextForeColor: Invalid context ID!\n"},
        {HIDDEN, 0, "enter SetTextForeColor color:5\nexit SetTextForeColor\n"},
        {INACTIVE, -1, "enter SetTextForeColor color:5\n  ERROR SetTextForeColor: Inactive context!\n"},
        {DEACTIVATED, -1, "enter SetTextForeColor color:5\n  ERROR SetTextForeColor: Inactive context!\n"},
    };

    ExpectRefusals(refusals, [](auto pTable, auto pThiz, kova_sint8 scContext) {
        return pTable->SetTextForeColor(pThiz, scContext, 5);
    });
}

TEST(SetEdgeType, RefusesInOrderAndIsIgnoredWhileHidden)
{
    static const Refusal_t refusals[] = {
        {NULL_DISPLAY, -1, "enter SetEdgeType\nERROR SetEdgeType: NULL Pointer!\n"},
        {BAD_CONTEXT, -1, "enter SetEdgeType\nERROR SetEdgeType: Invalid context ID!\n"},
        {HIDDEN, 0, "enter SetEdgeType\nexit SetEdgeType\n"},
        {INACTIVE, -1, "enter SetEdgeType\n  ERROR SetEdgeType: Inactive context!\n"},
        {DEACTIVATED, -1, "enter SetEdgeType\n  ERROR SetEdgeType: Inactive context!\n"},
    };

    ExpectRefusals(refusals, [](auto pTable, auto pThiz, kova_sint8 scContext) {
        return pTable->SetEdgeType(pThiz, scContext, KOVA_TEXT_EUNIFORM);
    });
}

TEST(SetEdgeColor, RefusesInOrderUnderTheLockAndIsIgnoredWhileHidden)
{
    static const Refusal_t refusals[] = {
        {NULL_DISPLAY, -1, "enter SetEdgeColor\nERROR SetEdgeColor: NULL Pointer!\n"},
        {BAD_CONTEXT, -1, "enter SetEdgeColor\n  ERROR SetEdgeColor: Invalid context ID!\n"},
        {NO_FONT, -1, "enter SetEdgeColor\n  ERROR SetEdgeColor: Only can support max 8 fonts!\n"},
        {BAD_FONT, -1, "enter SetEdgeColor\n  ERROR SetEdgeColor: Only can support max 8 fonts!\n"},
        {EMPTY_SLOT, -1, "enter SetEdgeColor\n  ERROR SetEdgeColor: NULL POINTER!\n"},
        {HIDDEN, 0, "enter SetEdgeColor\n"}, // no exit trace
        {INACTIVE, -1, "enter SetEdgeColor\n  ERROR SetEdgeColor: Inactive context!\n"},
        {DEACTIVATED, -1, "enter SetEdgeColor\n  ERROR SetEdgeColor: Inactive context!\n"},
    };

    ExpectRefusals(refusals, [](auto pTable, auto pThiz, kova_sint8 scContext) {
        return pTable->SetEdgeColor(pThiz, scContext, 5);
    });
}

TEST(SetEdgeColor, NeedsASelectedFontUnlikeTheOthers)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    kova_sint32 siFont = -1;
    pDisplay->CreateFont(pDisplay, 0, "sans.ttf", 24, KOVA_FONTATTR_NONE, &siFont); // created, not selected
    SetStyle(pDisplay);
    ClearTrace();

    EXPECT_EQ(pDisplay->SetEdgeColor(pDisplay, 0, 5), -1);
    EXPECT_EQ(TraceOf("ERROR"), "  ERROR SetEdgeColor: Only can support max 8 fonts!\n");
    EXPECT_EQ(pDisplay->SetTextForeColor(pDisplay, 0, 6), 0);
    EXPECT_EQ(pDisplay->SetEdgeType(pDisplay, 0, KOVA_TEXT_ERAISED), 0);
    EXPECT_TRUE(StyleOf(pDisplay) == (Style_t{6, s_before.uiEdge, KOVA_TEXT_ERAISED}));

    EXPECT_EQ(pDisplay->SetFont(pDisplay, 0, siFont, 24, KOVA_FONTATTR_NONE), 0);
    EXPECT_EQ(pDisplay->SetEdgeColor(pDisplay, 0, 5), 0);
    EXPECT_EQ(RecordOf(pDisplay)->ucEdgeColorIndex, 5u);
    Destroy(pDisplay);
}

TEST(TextStyle, ChecksTheContextAsAnUnsignedByte)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, NO_CONTEXT);
    GivenFont(pDisplay);

    for (const int iContext : {-128, -56, -1, 4, 127}) {
        ClearTrace();
        EXPECT_EQ(pDisplay->SetTextForeColor(pDisplay, kova_sint8(iContext), 1), -1);
        EXPECT_EQ(pDisplay->SetEdgeColor(pDisplay, kova_sint8(iContext), 1), -1);
        EXPECT_EQ(pDisplay->SetEdgeType(pDisplay, kova_sint8(iContext), KOVA_TEXT_ENONE), -1);
        EXPECT_EQ(TraceOf("ERROR"), "ERROR SetTextForeColor: Invalid context ID!\n"
                                    "  ERROR SetEdgeColor: Invalid context ID!\n"
                                    "ERROR SetEdgeType: Invalid context ID!\n");
    }
    Destroy(pDisplay);
}
