// SPDX-License-Identifier: MIT
// What all operations have in common: logging, reporting failed DirectFB calls, locking.
#include "expect.h"
#include "support.h"

#include <cstdio>
#include <unistd.h>

using namespace test;

static const char s_acBackend[] = "Src/kova_textdisp_dfb";

static std::string Printed(const char *pcFormat, const char *pcFunction, int iLine)
{
    char acText[256];

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    snprintf(acText, sizeof acText, pcFormat, pcFunction, iLine, (unsigned long)pthread_self());
#pragma GCC diagnostic pop
    return acText;
}

static void ExpectRecord(const Record_t &record, int iLevel, const char *pcFunction, const char *pcFormat,
                         const std::string &text)
{
    EXPECT_TRUE(record.bDefaultCategory);
    EXPECT_EQ(record.iLevel, iLevel);
    EXPECT_EQ(record.file, s_acBackend);
    EXPECT_EQ(record.function, pcFunction);
    EXPECT_GT(record.iLine, 0);
    EXPECT_EQ(record.format, pcFormat);
    EXPECT_EQ(record.text, text);
}

// ---- the log

TEST(EntryAndExit, AreOneRecordEachAtLevelLogWithNameLineAndThread)
{
    static const char s_acEnter[] = "TextDisp: %s():%d tpid:0x%lx \n";
    static const char s_acExit[] = "TextDisp: Exit %s():%d tpid:0x%lx \n";
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    pDisplay->Flip(pDisplay, 0);

    const std::vector<Record_t> records = Records();
    ASSERT_EQ(records.size(), 2u);
    ExpectRecord(records[0], 5, "Flip", s_acEnter, Printed(s_acEnter, "Flip", records[0].iLine));
    ExpectRecord(records[1], 5, "Flip", s_acExit, Printed(s_acExit, "Flip", records[1].iLine));
    EXPECT_LT(records[0].iLine, records[1].iLine);
    Destroy(pDisplay);
}

TEST(Error, IsThreeRecordsAtLevelErrorOfOnePlace)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    pDisplay->Flip(pDisplay, 4);

    const std::vector<Record_t> records = Records();
    ASSERT_EQ(records.size(), 4u);
    const std::string line = std::to_string(records[1].iLine);
    ExpectRecord(records[1], 1, "Flip", "[File:%s Function:%s Line:%d]:",
                 "[File:Src/kova_textdisp_dfb Function:Flip Line:" + line + "]:");
    ExpectRecord(records[2], 1, "Flip", "Invalid context ID!", "Invalid context ID!");
    ExpectRecord(records[3], 1, "Flip", "\n", "\n");
    EXPECT_EQ(records[2].iLine, records[1].iLine);
    EXPECT_EQ(records[3].iLine, records[1].iLine);
    EXPECT_GT(records[1].iLine, records[0].iLine);
    Destroy(pDisplay);
}

TEST(Error, WithValuesIsThreeRecordsToo)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);
    RecordOf(pDisplay)->eEdge = KovaTextEdgeType_e(3);
    const unsigned short ausText[] = {'a'};

    pDisplay->DrawString(pDisplay, 0, ausText, 2, 0, 0, KOVA_TEXT_UNICODE, KOVA_TEXT_LEFT);

    std::vector<Record_t> errors;
    for (const Record_t &record : Records()) {
        if (record.iLevel == 1) errors.push_back(record);
    }
    ASSERT_EQ(errors.size(), 3u);
    const std::string line = std::to_string(errors[0].iLine);
    ExpectRecord(errors[0], 1, "DrawString", "[File:%s Function:%s Line:%d]:",
                 "[File:Src/kova_textdisp_dfb Function:DrawString Line:" + line + "]:");
    ExpectRecord(errors[1], 1, "DrawString", "invalid etype:%d\n", "invalid etype:3\n");
    ExpectRecord(errors[2], 1, "DrawString", "\n", "\n");
    Destroy(pDisplay);
}

TEST(SingleErrorRecord, ComesWithoutPlaceAndLineEnd)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(pDisplay->Release32BitPlane(pDisplay), -1);

    const std::vector<Record_t> records = Records();
    ASSERT_EQ(records.size(), 3u);
    ExpectRecord(records[1], 1, "Release32BitPanle", "Not a 32 bit plane, can't release!\n",
                 "Not a 32 bit plane, can't release!\n");
    Destroy(pDisplay);
}

TEST(TraceRecord, IsOneRecordAtLevelLog)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextRect_t rect = {16, 32, 255, 1};

    pDisplay->SetClip(pDisplay, 0, &rect);

    const std::vector<Record_t> records = Records();
    ASSERT_EQ(records.size(), 3u);
    ExpectRecord(records[1], 5, "SetClip", "Set Clip Area: x:0x%x,y:0x%x,width:0x%x,height:0x%x\n",
                 "Set Clip Area: x:0x10,y:0x20,width:0xff,height:0x1\n");
    Destroy(pDisplay);
}

TEST(Threshold, LetsARecordThroughFromItsOwnLevelOn)
{
    static const char s_acErrors[] = "ERROR Flip: Invalid context ID!\n"
                                     "error Release32BitPanle: Not a 32 bit plane, can't release!\n";
    static const char s_acAll[] = "enter Flip\n"
                                  "ERROR Flip: Invalid context ID!\n"
                                  "enter Release32BitPanle\n"
                                  "error Release32BitPanle: Not a 32 bit plane, can't release!\n"
                                  "exit Release32BitPanle\n"
                                  "enter SetDrawingFlags\n"
                                  "  log SetDrawingFlags: Set Drawing Flag to 0x0\n"
                                  "  base.SetDrawingFlags NOFX\n"
                                  "exit SetDrawingFlags\n"
                                  "enter SetFlip Flip:false\n"
                                  "exit SetFlip\n";
    static const struct {
        int iThreshold;
        const char *pcLog;
    } rows[] = {{-1, ""},        {0, ""},         {1, s_acErrors}, {2, s_acErrors},
                {3, s_acErrors}, {4, s_acErrors}, {5, s_acAll},    {6, s_acAll}};
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    for (const auto &row : rows) {
        SCOPED_TRACE(row.iThreshold);
        SetThreshold(row.iThreshold);
        ClearTrace();
        pDisplay->Flip(pDisplay, 4);
        pDisplay->Release32BitPlane(pDisplay);
        pDisplay->SetDrawingFlags(pDisplay, 0, KOVA_DSDRAW_NOFX);
        pDisplay->SetFlip(pDisplay, 0);
        EXPECT_EQ(Trace(),
                  row.pcLog == s_acAll ? s_acAll : std::string(row.pcLog) + "  base.SetDrawingFlags NOFX\n");
        EXPECT_EQ(Records().size(), row.pcLog == s_acAll ? 12u : *row.pcLog ? 4u : 0u);
    }
    Destroy(pDisplay);
}

TEST(Threshold, AtZeroSilencesEverythingButTheChecks)
{
    SetThreshold(0);
    Fail("Surface.Clear", DFB_UNSUPPORTED);
    KovaTextInitParam_t param = InitParam(KOVA_GRAPHIC_LAYER2);

    pKovaITextDisplay_t pDisplay = Kova_TextDFBDisp_Create(&param);
    pDisplay->Show(pDisplay, 0);
    pDisplay->Show(pDisplay, 9);
    Kova_TextDFBDisp_Destroy(pDisplay);

    EXPECT_TRUE(Records().empty());
    EXPECT_EQ(CountOf(StandardError(), "TextDisp: [thread:"), 1);
}

// ---- the checks

TEST(DfbCheck, PrintsProcessSourceLineAndResult)
{
    for (const DFBResult eResult :
         {DFB_INVARG, DFB_FAILURE, DFB_UNSUPPORTED, DFB_DESTROYED, DFBResult(0x1234)}) {
        SCOPED_TRACE(eResult);
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
        Fail("Surface.SetBlittingFlags", eResult);

        EXPECT_EQ(pDisplay->SetBlittingFlags(pDisplay, 0, KOVA_DSBLIT_NOFX), 0);

        const std::string error = StandardError();
        const std::vector<Record_t> records = Records();
        int iLine = 0;
        ASSERT_EQ(sscanf(error.c_str(), "TextDisp: [thread:%*d]:Src/kova_textdisp_dfb <%d>", &iLine), 1);
        char acExpected[128];
        snprintf(acExpected, sizeof acExpected,
                 "TextDisp: [thread:%d]:Src/kova_textdisp_dfb <%d>: err %#x \n\t", getpid(), iLine,
                 unsigned(eResult));
        EXPECT_EQ(error, acExpected);
        EXPECT_GT(iLine, records.front().iLine); // the line of the call, between entry and exit
        EXPECT_LT(iLine, records.back().iLine);
        Reset();
        Destroy(pDisplay);
    }
}

TEST(DfbCheck, GivesEachCallItsOwnLine)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextRect_t rect = {0, 0, 1, 1};
    Fail("Surface.SetColorIndex", DFB_INVARG);
    Fail("Surface.FillRectangle", DFB_INVARG);

    pDisplay->FillRect(pDisplay, 0, &rect, 1);

    const std::string error = StandardError();
    const size_t second = error.find("TextDisp:", 1);
    ASSERT_NE(second, std::string::npos);
    EXPECT_NE(error.substr(0, second), error.substr(second));
    Destroy(pDisplay);
}

TEST(DfbCheck, PrintsNothingForACallThatSucceeds)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);

    pDisplay->Show(pDisplay, 0);
    Destroy(pDisplay);

    EXPECT_EQ(StandardError(), "");
}

TEST(DfbCheckBrief, PrintsProcessSourceAndLineOnly)
{
    Fail("Layer.SetCooperativeLevel", DFB_ACCESSDENIED);
    KovaTextInitParam_t param = InitParam(KOVA_GRAPHIC_LAYER1);

    pKovaITextDisplay_t pDisplay = Kova_TextDFBDisp_Create(&param);

    const std::string error = StandardError();
    int iLine = 0;
    ASSERT_EQ(sscanf(error.c_str(), "TextDisp: [thread:%*d]:Src/kova_textdisp_dfb <%d>", &iLine), 1);
    char acExpected[128];
    snprintf(acExpected, sizeof acExpected, "TextDisp: [thread:%d]:Src/kova_textdisp_dfb <%d>:\n\t", getpid(),
             iLine);
    EXPECT_EQ(error, acExpected);
    EXPECT_GT(iLine, 0);
    Kova_TextDFBDisp_Destroy(pDisplay);
}

TEST(DfbCheck, NeverEndsTheProgram)
{
    for (int iCall = 1; iCall <= 24; iCall++) {
        const LeaksAreMeant_t leaks;
        Reset();
        FailCall(iCall, DFB_FAILURE);
        KovaTextInitParam_t param = InitParam(iCall % 2 ? KOVA_GRAPHIC_LAYER1 : KOVA_GRAPHIC_LAYER2);
        pKovaITextDisplay_t pDisplay = Kova_TextDFBDisp_Create(&param);
        if (pDisplay) pDisplay->Show(pDisplay, 0);
        if (pDisplay) Kova_TextDFBDisp_Destroy(pDisplay);
        EXPECT_EQ(TraceOf("DirectFBErrorFatal"), "");
    }
}

// ---- the record and its lock

TEST(Record, BeginsWithTheInterface)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(static_cast<void *>(&RecordOf(pDisplay)->sInterface), static_cast<void *>(pDisplay));
    EXPECT_EQ(offsetof(KovaDFBDisplay_t, sInterface), 0u);
    Destroy(pDisplay);
}

TEST(DisplayMutex, IsRecursive)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    pthread_mutex_t *const pMutex = &RecordOf(pDisplay)->display_mutex;

    ASSERT_EQ(pthread_mutex_trylock(pMutex), 0);
    ASSERT_EQ(pthread_mutex_trylock(pMutex), 0);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0); // locks a third time
    EXPECT_EQ(pthread_mutex_unlock(pMutex), 0);
    EXPECT_FALSE(LockIsFree(pDisplay));
    EXPECT_EQ(pthread_mutex_unlock(pMutex), 0);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(ColorMode, IsThirtyTwoBitBeforePaletteCopyBeforeIndex)
{
    static const struct {
        kova_bool bColor32, bPalette;
        const char *pcCall;
    } rows[] = {{0, 0, "SetColorIndex 258"}, {0, 1, "SetColor 0,0,0,0"}, // past the end of the palette
                {0, 2, "SetColor 0,0,0,0"},  {1, 0, "SetColor 0,0,1,2"},
                {1, 1, "SetColor 0,0,1,2"},  {128, 1, "SetColor 0,0,1,2"}};
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextRect_t rect = {0, 0, 1, 1};

    for (const auto &row : rows) {
        RecordOf(pDisplay)->bColor32 = row.bColor32;
        RecordOf(pDisplay)->bTextDisp_Palette = row.bPalette;
        ClearTrace();
        EXPECT_EQ(pDisplay->FillRect(pDisplay, 0, &rect, 258), 0);
        EXPECT_EQ(TraceOf("base.SetColor"), std::string("  base.") + row.pcCall + "\n");
    }
    Destroy(pDisplay);
}
