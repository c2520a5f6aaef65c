// SPDX-License-Identifier: MIT
#include "support.h"

#include <sstream>

using namespace test;

using Units_t = std::vector<unsigned short>;

constexpr kova_uint32 TEXT_COLOR = 5, EDGE_COLOR = 6;
constexpr kova_uint32 PACKED_TEXT = 0xFF000080, PACKED_EDGE = 0x01020304;

static const Units_t s_text = {'H', 'i'};

// A shown display with a selected font and colours, and no edge.
static pKovaITextDisplay_t GivenText(KovaGraphicLayer_e eLayer, ColorMode_e eMode = INDEX_COLORS,
                                     int iActive = 0)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(eLayer, eMode, iActive);
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);

    GivenFont(pDisplay);
    pRecord->palette[TEXT_COLOR] = {51, 52, 53, 54};
    pRecord->palette[EDGE_COLOR] = {61, 62, 63, 64};
    pRecord->ucFgColorIndex = eMode == PACKED_COLORS ? PACKED_TEXT : TEXT_COLOR;
    pRecord->ucEdgeColorIndex = eMode == PACKED_COLORS ? PACKED_EDGE : EDGE_COLOR;
    pRecord->eEdge = KOVA_TEXT_ENONE;
    return pDisplay;
}

static int Draw(pKovaITextDisplay_t pDisplay, kova_uint32 uiX = 10, kova_uint32 uiY = 20)
{
    return pDisplay->DrawString(pDisplay, 0, s_text.data(), 4, uiX, uiY, KOVA_TEXT_UNICODE, KOVA_TEXT_LEFT);
}

static std::string SurfaceOf(pKovaITextDisplay_t pDisplay)
{
    return NameOf(RecordOf(pDisplay)->pActiveSurface);
}

// Expands a short form into calls: T and E set the text and edge colour, x,y is a pass at that position.
static std::string Calls(pKovaITextDisplay_t pDisplay, const std::string &words,
                         ColorMode_e eMode = INDEX_COLORS, const std::string &text = "Hi")
{
    static const char *const colors[][2] = {{"SetColorIndex 5", "SetColorIndex 6"},
                                            {"SetColor 51,52,53,54", "SetColor 61,62,63,64"},
                                            {"SetColor 255,0,0,128", "SetColor 1,2,3,4"}};
    std::istringstream stream(words);
    std::string word, calls;

    while (stream >> word) {
        calls += SurfaceOf(pDisplay) + ".";
        if (word == "T" || word == "E") {
            calls += colors[eMode][word == "E"];
        } else {
            calls += "DrawString \"" + text + "\" " + word + " TOPLEFT";
        }
        calls += "\n";
    }
    return calls;
}

static std::string Indented(const std::string &lines)
{
    std::istringstream stream(lines);
    std::string line, all;
    while (std::getline(stream, line)) all += "  " + line + "\n";
    return all;
}

static std::string DirectFlip(pKovaITextDisplay_t pDisplay)
{
    return "layer.GetConfiguration\n" + SurfaceOf(pDisplay) + ".Flip all WAIT|BLIT|ONSYNC\n";
}

struct Edge_t {
    int iEdge;
    const char *pcAt10And20, *pcAt0And0, *pcAt1And1, *pcAtTheEnd; // at the largest unsigned numbers
};

// The text colour is set first for every edge type, so it precedes each of these.
static const Edge_t s_edges[] = {
    {KOVA_TEXT_ENONE, "10,20", "0,0", "1,1", "-1,-1"},
    {KOVA_TEXT_ERAISED, "E 10,18 T 12,20 T", "E 0,-2 T 2,0 T", "E 1,-1 T 3,1 T", "E -1,-3 T 1,-1 T"},
    {KOVA_TEXT_EDEPRESSED, "E 10,21 11,21 T 10,20 T", "E 0,1 1,1 T 0,0 T", "E 1,2 2,2 T 1,1 T",
     "E -1,0 0,0 T -1,-1 T"},
    {KOVA_TEXT_EUNIFORM, "E 10,21 12,21 11,20 11,22 T 11,21 T", "E 0,1 2,1 1,0 1,2 T 1,1 T",
     "E 1,2 3,2 2,1 2,3 T 2,2 T", "E -1,0 1,0 0,-1 0,1 T 0,0 T"},
    {KOVA_TEXT_ELEFTDROPSHADOW, "E 8,22 T 10,20 T", "E -2,2 T 0,0 T", "E -1,3 T 1,1 T", "E -3,1 T -1,-1 T"},
    {KOVA_TEXT_ERIGTHDROPSHADOW, "E 12,22 T 10,20 T", "E 2,2 T 0,0 T", "E 3,3 T 1,1 T", "E 1,1 T -1,-1 T"},
    {KOVA_TEXT_EMAX, "10,20", "0,0", "1,1", "-1,-1"},
};

static const int s_unknownEdges[] = {0, 3, 6, 63, 65, 128, 0x7FFFFFFF, -1};

// ---- the passes

TEST(DrawString, DrawsEachEdgeInItsPassesUnderTheLockInEveryMode)
{
    for (const ColorMode_e eMode : {INDEX_COLORS, PALETTE_COLORS, PACKED_COLORS}) {
        pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2, eMode);
        const std::string layer = NameOf(RecordOf(pDisplay)->pActiveSurface).substr(4); // number 1, 2 or 3
        for (const Edge_t &edge : s_edges) {
            SCOPED_TRACE(std::to_string(eMode) + " " + std::to_string(edge.iEdge));
            RecordOf(pDisplay)->eEdge = KovaTextEdgeType_e(edge.iEdge);
            TurnClock(1000000);
            ClearTrace();

            EXPECT_EQ(Draw(pDisplay), 0);

            EXPECT_EQ(Trace(), "enter DrawString string len:4 eEncoding:1, eFlag:0\n" +
                                   Indented("font" + layer + ".SetEncoding 2\n" +
                                            Calls(pDisplay, std::string("T ") + edge.pcAt10And20, eMode) +
                                            "layer" + layer + ".GetConfiguration\n" + SurfaceOf(pDisplay) +
                                            ".Flip all WAIT|BLIT|ONSYNC\n") +
                                   "exit DrawString\n");
        }
        DestroyUnlocked(pDisplay);
    }
}

TEST(DrawString, WrapsOffsetsAtTheEndsOfTheUnsignedNumbers)
{
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2);

    for (const Edge_t &edge : s_edges) {
        SCOPED_TRACE(edge.iEdge);
        RecordOf(pDisplay)->eEdge = KovaTextEdgeType_e(edge.iEdge);
        const std::pair<kova_uint32, const char *> places[] = {
            {0, edge.pcAt0And0}, {1, edge.pcAt1And1}, {0xFFFFFFFF, edge.pcAtTheEnd}};
        for (const auto &place : places) {
            TurnClock(1000000);
            ClearTrace();
            EXPECT_EQ(Draw(pDisplay, place.first, place.first), 0);
            EXPECT_EQ(CallsOnly(Trace()), "font.SetEncoding 2\n" +
                                              Calls(pDisplay, std::string("T ") + place.second) +
                                              DirectFlip(pDisplay));
        }
    }
    DestroyUnlocked(pDisplay);
}

TEST(DrawString, KeepsXAndYApart)
{
    static const struct {
        int iEdge;
        const char *pcPasses;
    } rows[] = {
        {KOVA_TEXT_ENONE, "T 0,2147483647"},
        {KOVA_TEXT_ERAISED, "T E 0,2147483645 T 2,2147483647 T"},
        {KOVA_TEXT_EDEPRESSED, "T E 0,-2147483648 1,-2147483648 T 0,2147483647 T"},
        {KOVA_TEXT_ELEFTDROPSHADOW, "T E -2,-2147483647 T 0,2147483647 T"},
    };
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2);

    for (const auto &row : rows) {
        RecordOf(pDisplay)->eEdge = KovaTextEdgeType_e(row.iEdge);
        TurnClock(1000000);
        ClearTrace();
        EXPECT_EQ(Draw(pDisplay, 0, 0x7FFFFFFF), 0);
        EXPECT_EQ(CallsOnly(Trace()),
                  "font.SetEncoding 2\n" + Calls(pDisplay, row.pcPasses) + DirectFlip(pDisplay));
    }
    DestroyUnlocked(pDisplay);
}

TEST(DrawString, ReportsAnUnknownEdgeDrawsNothingAndFlips)
{
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2);

    for (const int iEdge : s_unknownEdges) {
        RecordOf(pDisplay)->eEdge = KovaTextEdgeType_e(iEdge);
        TurnClock(1000000);
        ClearTrace();
        EXPECT_EQ(Draw(pDisplay), 0);
        EXPECT_EQ(Trace(), "enter DrawString string len:4 eEncoding:1, eFlag:0\n"
                           "  font.SetEncoding 2\n"
                           "  base.SetColorIndex 5\n"
                           "  ERROR DrawString: invalid etype:" +
                               std::to_string(iEdge) +
                               "\\n\n"
                               "  layer.GetConfiguration\n"
                               "  base.Flip all WAIT|BLIT|ONSYNC\n"
                               "exit DrawString\n");
    }
    DestroyUnlocked(pDisplay);
}

TEST(DrawString, UsesTheStyleOfItsOperations)
{
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2);
    pDisplay->SetTextForeColor(pDisplay, 0, 300);
    pDisplay->SetEdgeColor(pDisplay, 0, 0xFFFFFFFF);
    pDisplay->SetEdgeType(pDisplay, 0, KOVA_TEXT_ERIGTHDROPSHADOW);
    ClearTrace();

    EXPECT_EQ(Draw(pDisplay), 0);

    EXPECT_EQ(TraceOf("base.SetColorIndex"), "  base.SetColorIndex 300\n"
                                             "  base.SetColorIndex 4294967295\n"
                                             "  base.SetColorIndex 300\n"
                                             "  base.SetColorIndex 300\n");
    DestroyUnlocked(pDisplay);
}

TEST(DrawString, TreatsColoursPastThePaletteAsTransparentAndPackedOnesFirst)
{
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2, PALETTE_COLORS);
    RecordOf(pDisplay)->eEdge = KOVA_TEXT_ERAISED;
    RecordOf(pDisplay)->ucFgColorIndex = 256;
    RecordOf(pDisplay)->ucEdgeColorIndex = 0x10006;

    EXPECT_EQ(Draw(pDisplay), 0);
    EXPECT_EQ(TraceOf("base.SetColor"), "  base.SetColor 0,0,0,0\n"
                                        "  base.SetColor 0,0,0,0\n"
                                        "  base.SetColor 0,0,0,0\n"
                                        "  base.SetColor 0,0,0,0\n");

    RecordOf(pDisplay)->bColor32 = 1;
    ClearTrace();
    EXPECT_EQ(Draw(pDisplay), 0);
    EXPECT_EQ(TraceOf("base.SetColor"), "  base.SetColor 0,0,1,0\n"
                                        "  base.SetColor 0,1,0,6\n"
                                        "  base.SetColor 0,0,1,0\n"
                                        "  base.SetColor 0,0,1,0\n");
    DestroyUnlocked(pDisplay);
}

TEST(DrawString, DrawsInTheActiveFontAndItsEncoding)
{
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2);
    SetEncodings({{9, "UTF8"}});
    GivenFont(pDisplay, 24, "other");

    EXPECT_EQ(Draw(pDisplay), 0);
    EXPECT_EQ(TraceOf("font"), "  font2.SetEncoding 9\n");

    RecordOf(pDisplay)->scActiveFontID = 0;
    ClearTrace();
    EXPECT_EQ(Draw(pDisplay), 0);
    EXPECT_EQ(TraceOf("font"), "  font.SetEncoding 2\n");
    DestroyUnlocked(pDisplay);
}

// ---- strings and arguments

TEST(DrawString, TracesTheAlignmentAndDrawsTopLeft)
{
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2);

    for (const int iFlag : {0, 1, 2, 4, 5, 6, 8, 9, 10, 255, -1}) {
        ClearTrace();
        EXPECT_EQ(pDisplay->DrawString(pDisplay, 0, s_text.data(), 4, 10, 20, KOVA_TEXT_UNICODE,
                                       KovaTextAlignFlag_e(iFlag)),
                  0);
        EXPECT_EQ(TraceOf("enter"),
                  "enter DrawString string len:4 eEncoding:1, eFlag:" + std::to_string(iFlag) + "\n");
        EXPECT_EQ(RecordText(0), "string len:4 eEncoding:1, eFlag:" + std::to_string(iFlag) + "\n");
        EXPECT_EQ(TraceOf("base.DrawString"), "  base.DrawString \"Hi\" 10,20 TOPLEFT\n");
    }
    DestroyUnlocked(pDisplay);
}

TEST(DrawString, DrawsTheStringInItsEncoding)
{
    alignas(unsigned short) static const char acText[] = "H\0\xE9\0z";
    static const struct {
        int iEncoding;
        kova_uint8 ucBytes;
        bool bNull;
        const char *pcText, *pcError;
    } rows[] = {
        {KOVA_TEXT_UNICODE, 4, false, "H<C3><A9>", ""},
        {KOVA_TEXT_UNICODE, 5, false, "H<C3><A9>", ""},
        {KOVA_TEXT_UNICODE, 1, false, "", ""},
        {KOVA_TEXT_UNICODE, 0, false, "", ""},
        {KOVA_TEXT_UTF8, 3, false, "H<00><E9>", ""},
        {KOVA_TEXT_UTF8, 0, false, "", ""},
        {KOVA_TEXT_ASCII, 4, false, "", ""},
        {3, 4, false, "", ""},
        {-1, 4, false, "", ""},
        {KOVA_TEXT_UNICODE, 4, true, "", "ERROR ConvertUnicode2UTF8: NULL Pointer!\n"},
        {KOVA_TEXT_UNICODE, 0, true, "", "ERROR ConvertUnicode2UTF8: NULL Pointer!\n"},
        {KOVA_TEXT_UTF8, 4, true, "", ""},
        {KOVA_TEXT_ASCII, 4, true, "", ""},
    };
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->eEdge = KOVA_TEXT_EDEPRESSED;

    for (const auto &row : rows) {
        SCOPED_TRACE(std::to_string(row.iEncoding) + " " + std::to_string(row.ucBytes));
        TurnClock(1000000);
        ClearTrace();
        const void *const pText = row.bNull ? nullptr : acText;
        EXPECT_EQ(pDisplay->DrawString(pDisplay, 0, static_cast<const unsigned short *>(pText), row.ucBytes,
                                       10, 20, KovaTextEncoding_e(row.iEncoding), KOVA_TEXT_LEFT),
                  0);
        EXPECT_EQ(Trace(),
                  "enter DrawString string len:" + std::to_string(row.ucBytes) +
                      " eEncoding:" + std::to_string(row.iEncoding) + ", eFlag:0\n" +
                      Indented(row.pcError + std::string("font.SetEncoding 2\n") +
                               Calls(pDisplay, "T E 10,21 11,21 T 10,20 T", INDEX_COLORS, row.pcText) +
                               DirectFlip(pDisplay)) +
                      "exit DrawString\n");
    }
    DestroyUnlocked(pDisplay);
}

TEST(DrawString, DrawsAll255BytesOfUTF8)
{
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2);
    const Units_t text(128, 'u' << 8 | 'u');

    EXPECT_EQ(pDisplay->DrawString(pDisplay, 0, text.data(), 255, 1, 2, KOVA_TEXT_UTF8, KOVA_TEXT_LEFT), 0);

    EXPECT_EQ(TraceOf("base.DrawString"),
              "  base.DrawString \"" + std::string(255, 'u') + "\" 1,2 TOPLEFT\n");
    DestroyUnlocked(pDisplay);
}

// ---- the flip

TEST(DrawString, FlipsTheWindowWithoutAskingItsLayer)
{
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER1);
    pDisplay->SetFlip(pDisplay, 0); // the window ignores it
    ClearTrace();

    EXPECT_EQ(Draw(pDisplay), 0);

    EXPECT_EQ(CallsOnly(Trace()), "font.SetEncoding 2\n" + Calls(pDisplay, "T 10,20") + SurfaceOf(pDisplay) +
                                      ".Flip all WAIT|BLIT|ONSYNC\n");
    DestroyUnlocked(pDisplay);
}

TEST(DrawString, DefersTheFlipToTheThreadWhenTheLastIsTooRecent)
{
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(Draw(pDisplay), 0);
    TurnClock(15999);
    ClearTrace();

    EXPECT_EQ(Draw(pDisplay), 0);

    EXPECT_EQ(Trace(), "enter DrawString string len:4 eEncoding:1, eFlag:0\n" +
                           Indented("font.SetEncoding 2\n" + Calls(pDisplay, "T 10,20") + "base.GetClip\n") +
                           "exit DrawString\n");
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    EXPECT_TRUE(AwaitSleeper());
    LetSleeperGo();
    EXPECT_TRUE(AwaitThreadTrace("base.Flip all WAIT|BLIT|ONSYNC"));
    DestroyUnlocked(pDisplay);
}

TEST(DrawString, FlipsDirectlyAgainAfterAFrame)
{
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(Draw(pDisplay), 0);
    TurnClock(16000);
    ClearTrace();

    EXPECT_EQ(Draw(pDisplay), 0);

    EXPECT_EQ(CallsOnly(Trace()), "font.SetEncoding 2\n" + Calls(pDisplay, "T 10,20") + DirectFlip(pDisplay));
    DestroyUnlocked(pDisplay);
}

TEST(DrawString, DefersTheFlipAfterAnUnknownEdgeToo)
{
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(Draw(pDisplay), 0);
    RecordOf(pDisplay)->eEdge = KovaTextEdgeType_e(3);
    ClearTrace();

    EXPECT_EQ(Draw(pDisplay), 0);

    EXPECT_EQ(CallsOnly(Trace()), "font.SetEncoding 2\n"
                                  "base.SetColorIndex 5\n"
                                  "ERROR DrawString: invalid etype:3\\n\n"
                                  "base.GetClip\n");
    DestroyUnlocked(pDisplay);
}

TEST(DrawString, LeavesTheChangedMarkToTheFlip)
{
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2);
    pDisplay->SetFlip(pDisplay, 0);
    RecordOf(pDisplay)->blast_frame_changed = 0;
    ClearTrace();

    EXPECT_EQ(Draw(pDisplay), 0);

    EXPECT_EQ(CallsOnly(Trace()),
              "font.SetEncoding 2\n" + Calls(pDisplay, "T 10,20") + "layer.GetConfiguration\n");
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    DestroyUnlocked(pDisplay);
}

// ---- failures

TEST(DrawString, PrintsEachFailedCallAndContinues)
{
    for (const Edge_t &edge : s_edges) {
        for (const ColorMode_e eMode : {INDEX_COLORS, PACKED_COLORS}) {
            SCOPED_TRACE(edge.iEdge);
            pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2, eMode);
            RecordOf(pDisplay)->eEdge = KovaTextEdgeType_e(edge.iEdge);
            ClearTrace();
            EXPECT_EQ(Draw(pDisplay), 0);
            std::istringstream lines(CallsOnly(Trace()));
            std::vector<std::string> calls;
            for (std::string line; std::getline(lines, line);) calls.push_back(line + "\n");

            for (size_t uiFailing = 0; uiFailing < calls.size(); uiFailing++) {
                // If GetConfiguration fails there is no flip, because the buffer mode is unknown.
                const bool bConfiguration = calls[uiFailing].find("GetConfiguration") != std::string::npos;
                TurnClock(1000000);
                ClearTrace();
                FailCall(CallCount() + int(uiFailing) + 1, DFB_BUFFEREMPTY);
                EXPECT_EQ(Draw(pDisplay), 0);
                std::string expected;
                for (size_t i = 0; i < calls.size(); i++) {
                    if (i == uiFailing + 1 && bConfiguration) break;
                    expected += calls[i] + (i == uiFailing ? CheckLine(DFB_BUFFEREMPTY) : "");
                }
                EXPECT_EQ(CallsOnly(Trace()), expected);
                EXPECT_EQ(TraceOf("exit"), "exit DrawString\n");
                EXPECT_FALSE(HoldsLock());
            }
            DestroyUnlocked(pDisplay);
            Reset();
        }
    }
}

TEST(DrawString, RefusesInOrder)
{
    // Each row creates the named fault and, where possible, all faults that are checked later.
    enum Wrong_e {
        NULL_DISPLAY,
        BAD_CONTEXT,
        HIDDEN,
        NO_SURFACE,
        NO_FONT,
        BAD_FONT,
        EMPTY_SLOT,
        NULL_TEXT,
        INACTIVE,
        DEACTIVATED
    };
    static const struct {
        Wrong_e eWrong;
        int iResult;
        const char *pcTrace;
    } rows[] = {
        {NULL_DISPLAY, -1, "ERROR DrawString: NULL Pointer!\n"},
        {BAD_CONTEXT, -1, "  ERROR DrawString: Invalid context ID!\n"},
        {HIDDEN, 0, "exit DrawString\n"},
        {NO_SURFACE, -1, "  ERROR DrawString: NULL Pointer!\n"},
        {NO_FONT, -1, "  ERROR DrawString: Only can support max 8 fonts!\n"},
        {BAD_FONT, -1, "  ERROR DrawString: Only can support max 8 fonts!\n"},
        {EMPTY_SLOT, -1, "  ERROR DrawString: NULL POINTER!\n"},
        {NULL_TEXT, -1,
         "  ERROR ConvertUnicode2UTF8: NULL Pointer!\n  ERROR DrawString: Inactive context!\n"},
        {INACTIVE, -1, "  ERROR DrawString: Inactive context!\n"},
        {DEACTIVATED, -1, "  ERROR DrawString: Inactive context!\n"},
    };
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    IDirectFBFont *const pFont = pRecord->font[0].pFont;

    for (const auto &row : rows) {
        SCOPED_TRACE(row.eWrong);
        pRecord->bShow = row.eWrong > HIDDEN;
        if (row.eWrong <= NO_SURFACE) pRecord->pActiveSurface = nullptr;
        pRecord->scActiveFontID = kova_sint8(row.eWrong <= NO_FONT ? -1 : row.eWrong == BAD_FONT ? 8 : 0);
        if (row.eWrong <= EMPTY_SLOT) pRecord->font[0].pFont = nullptr;
        if (row.eWrong == DEACTIVATED) pRecord->scActiveContextID = -2;
        EXPECT_EQ(pDisplay->DrawString(row.eWrong == NULL_DISPLAY ? nullptr : pDisplay,
                                       kova_sint8(row.eWrong <= BAD_CONTEXT ? -56 : 0),
                                       row.eWrong <= NULL_TEXT ? nullptr : s_text.data(), 4, 10, 20,
                                       KOVA_TEXT_UNICODE, KOVA_TEXT_CENTER),
                  row.iResult);
        EXPECT_EQ(Trace(), std::string("enter DrawString string len:4 eEncoding:1, eFlag:1\n") + row.pcTrace);
        EXPECT_FALSE(HoldsLock());
        pRecord->bShow = 1;
        pRecord->pActiveSurface = pRecord->pBaseSurface;
        pRecord->scActiveFontID = 0;
        pRecord->font[0].pFont = pFont;
        pRecord->scActiveContextID = 1;
        ClearTrace();
    }
    DestroyUnlocked(pDisplay);
}

TEST(DrawString, AcceptsEveryContextWhileNoneIsActiveAndNoneBeyond)
{
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, NO_CONTEXT);

    for (const int iContext : {0, 1, 2, 3, 4, 127, -1}) {
        ClearTrace();
        const int iResult = pDisplay->DrawString(pDisplay, kova_sint8(iContext), s_text.data(), 4, 1, 2,
                                                 KOVA_TEXT_UNICODE, KOVA_TEXT_LEFT);
        const bool bServed = iContext >= 0 && iContext <= 3;
        EXPECT_EQ(iResult, bServed ? 0 : -1);
        EXPECT_EQ(TraceOf("base.DrawString"), bServed ? "  base.DrawString \"Hi\" 1,2 TOPLEFT\n" : "");
    }
    DestroyUnlocked(pDisplay);
}

TEST(DrawString, DrawsNothingForTheActiveContextWhileHidden)
{
    pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->bShow = 0;

    EXPECT_EQ(Draw(pDisplay), 0);

    EXPECT_EQ(Trace(), "enter DrawString string len:4 eEncoding:1, eFlag:0\n"
                       "exit DrawString\n");
    DestroyUnlocked(pDisplay);
}

TEST(DrawString, DrawsEdgesOnTheBackupSurfaceInUseThoughTheLayerReturnedNone)
{
    for (const KovaTextEdgeType_e eEdge : {KOVA_TEXT_ERAISED, KOVA_TEXT_EUNIFORM}) {
        pKovaITextDisplay_t pDisplay = GivenText(KOVA_GRAPHIC_LAYER2);
        IDirectFBSurface *const pBackup = GivenBackupSurface(pDisplay);
        EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);
        FailNth("Layer.GetSurface", 1, DFB_FAILURE);
        EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, PLANE_WIDTH, PLANE_HEIGHT), 0);
        EXPECT_EQ(RecordOf(pDisplay)->pBaseSurface, nullptr);
        EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, pBackup);
        RecordOf(pDisplay)->eEdge = eEdge;
        ClearTrace();

        EXPECT_EQ(Draw(pDisplay), 0);

        EXPECT_NE(TraceOf(NameOf(pBackup) + ".DrawString"), "");
        EXPECT_EQ(TraceOf("ERROR"), "");
        Destroy(pDisplay);
    }
}
