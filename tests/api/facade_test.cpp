// SPDX-License-Identifier: MIT
#include "support.h"

using namespace test;

static const char s_acFacade[] = "Src/kova_textdisp_api";

// ---- creation

struct RefusedRow_t {
    kova_uint32 uiWidth, uiHeight;
    int iLayer;
    const char *pcMessage;
};

static const RefusedRow_t s_refused[] = {
    {0, 480, 1, "Plane Width is 0!"},         {0, 0, 1, "Plane Width is 0!"},
    {0, 0, 3, "Plane Width is 0!"},           {0, 480, -1, "Plane Width is 0!"},
    {720, 0, 0, "Plane Height is 0!"},        {720, 0, 3, "Plane Height is 0!"},
    {720, 480, 3, "Invalid layer!"},          {720, 480, 4, "Invalid layer!"},
    {720, 480, -1, "Invalid layer!"},         {720, 480, -2147483647 - 1, "Invalid layer!"},
    {720, 480, 2147483647, "Invalid layer!"},
};

static KovaTextInitParam_t ParamOf(const RefusedRow_t &row)
{
    KovaTextInitParam_t param = InitParam(KOVA_GRAPHIC_LAYER2);

    param.uiPlaneWidth = row.uiWidth;
    param.uiPlaneHeight = row.uiHeight;
    param.eLayer = KovaGraphicLayer_e(row.iLayer);
    return param;
}

TEST(TextDispCreate, RefusesTheFirstBadParameterAndNamesOnlyThat)
{
    for (const RefusedRow_t &row : s_refused) {
        for (const KovaGraphicType_e eType : {KOVA_GRAPHIC_VGX, KOVA_GRAPHIC_DIRECTFB}) {
            SCOPED_TRACE(std::string(row.pcMessage) + " of layer " + std::to_string(row.iLayer));
            KovaTextInitParam_t param = ParamOf(row);
            ClearTrace();

            EXPECT_EQ(Kova_TextDisp_Create(eType, &param), -1);

            EXPECT_EQ(Trace(), std::string("ERROR Kova_TextDisp_Create: ") + row.pcMessage + "\n");
        }
    }
    EXPECT_EQ(textdisplay_debug, nullptr);
    EXPECT_EQ(CallCount(), 0);
}

TEST(TextDispCreate, ReportsInThreeRecordsOfTheFacadesOwnSource)
{
    KovaTextInitParam_t param = ParamOf(s_refused[0]);

    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);

    const std::vector<Record_t> records = Records();
    const char *const apcFormats[] = {"[File:%s Function:%s Line:%d]:", "Plane Width is 0!", "\n"};
    ASSERT_EQ(records.size(), 3u);
    for (size_t i = 0; i < 3; i++) {
        SCOPED_TRACE(i);
        EXPECT_TRUE(records[i].bDefaultCategory);
        EXPECT_EQ(records[i].iLevel, 1);
        EXPECT_EQ(records[i].file, s_acFacade);
        EXPECT_EQ(records[i].function, "Kova_TextDisp_Create");
        EXPECT_EQ(records[i].iLine, records[0].iLine);
        EXPECT_EQ(records[i].format, apcFormats[i]);
    }
    EXPECT_EQ(records[0].text, "[File:Src/kova_textdisp_api Function:Kova_TextDisp_Create Line:" +
                                   std::to_string(records[0].iLine) + "]:");
    EXPECT_GT(records[0].iLine, 0);
}

TEST(TextDispCreate, ReportsNothingBelowTheThreshold)
{
    KovaTextInitParam_t param = ParamOf(s_refused[0]);
    SetThreshold(0);

    EXPECT_EQ(Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param), -1);

    EXPECT_TRUE(Records().empty());
}

TEST(TextDispCreate, KeepsTheEarlierDisplayWhenItRefuses)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);

    for (const RefusedRow_t &row : s_refused) {
        KovaTextInitParam_t param = ParamOf(row);
        EXPECT_EQ(Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param), -1);
        EXPECT_EQ(gpDisplay, pDisplay);
    }
    Destroy(pDisplay);
}

TEST(TextDispCreate, KeepsTheDisplayAndWritesItsType)
{
    for (const KovaGraphicLayer_e eLayer : {KOVA_GRAPHIC_LAYER1, KOVA_GRAPHIC_LAYER2, KOVA_GRAPHIC_LAYER3}) {
        KovaTextInitParam_t param = InitParam(eLayer);

        EXPECT_EQ(Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param), 0);

        ASSERT_NE(gpDisplay, nullptr);
        EXPECT_EQ(gpDisplay->eType, KOVA_GRAPHIC_DIRECTFB);
        EXPECT_EQ(RecordOf(gpDisplay)->eLayer, eLayer);
        for (const Record_t &record : Records()) EXPECT_EQ(record.file, "Src/kova_textdisp_dfb");
        Destroy(gpDisplay);
    }
}

TEST(TextDispCreate, AcceptsTheSmallestPlane)
{
    KovaTextInitParam_t param = InitParam(KOVA_GRAPHIC_LAYER3);
    param.uiPlaneWidth = param.uiPlaneHeight = 1;

    EXPECT_EQ(Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param), 0);

    ASSERT_NE(gpDisplay, nullptr);
    Destroy(gpDisplay);
}

TEST(TextDispCreate, ReturnsZeroForATypeWithoutABackendAndKeepsNoDisplay)
{
    for (const int iType : {0, 2, 3, -1, 0x101}) {
        SCOPED_TRACE(iType);
        KovaTextInitParam_t param = InitParam(KOVA_GRAPHIC_LAYER2);

        EXPECT_EQ(Kova_TextDisp_Create(KovaGraphicType_e(iType), &param), 0);

        EXPECT_EQ(Kova_TextDisp_GetDisplayByID(0), nullptr);
    }
    EXPECT_EQ(CallCount(), 0);
    EXPECT_TRUE(Records().empty());
}

TEST(TextDispCreate, ReturnsZeroWhenTheBackendFailsAndKeepsNoDisplay)
{
    const LeaksAreMeant_t leaks; // the backend does not free its record
    pKovaITextDisplay_t pFirst = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextInitParam_t param = InitParam(KOVA_GRAPHIC_LAYER2);
    FailLoading("no such file");

    EXPECT_EQ(Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param), 0);

    EXPECT_EQ(gpDisplay, nullptr);
    EXPECT_EQ(TraceOf("ERROR"), "");
    gpDisplay = pFirst;
    Destroy(pFirst);
}

TEST(TextDispCreate, OverwritesTheFirstDisplayWithoutDestroyingIt)
{
    pKovaITextDisplay_t pFirst = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    WatchLock(nullptr);
    KovaTextInitParam_t param = InitParam(KOVA_GRAPHIC_LAYER3);

    EXPECT_EQ(Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param), 0);

    EXPECT_NE(gpDisplay, pFirst);
    EXPECT_EQ(TraceOf("enter"), "enter Kova_TextDFBDisp_Create\n");
    EXPECT_EQ(LiveObjectNames(), "base base2 dfb dfb2 layer layer2");
    Kova_TextDisp_Destroy(0);
    EXPECT_EQ(LiveObjectNames(), "base dfb layer");
    Kova_TextDFBDisp_Destroy(pFirst);
    EXPECT_EQ(LiveObjects(), 0);
}

// ---- the debug category

TEST(TextdisplayDebug, IsCreatedOnceByTheFirstCreateThatPassesItsChecks)
{
    static const char s_acMade[] = "kova_debug_category_new \"TextDisplay\" 373 \"textdisplay debug\"\n";
    KovaTextInitParam_t param = InitParam(KOVA_GRAPHIC_LAYER2);
    KovaTextInitParam_t bad = ParamOf(s_refused[6]);

    EXPECT_EQ(textdisplay_debug, nullptr);
    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &bad);
    EXPECT_EQ(textdisplay_debug, nullptr);

    Kova_TextDisp_Create(KOVA_GRAPHIC_VGX, &param); // so does a type without a backend
    KovaDebugCategory *const pCategory = textdisplay_debug;
    EXPECT_NE(pCategory, nullptr);
    EXPECT_EQ(TraceOf("kova_debug_category_new"), s_acMade);

    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);
    EXPECT_EQ(textdisplay_debug, pCategory);
    Kova_TextDisp_Destroy(0);
    EXPECT_EQ(textdisplay_debug, pCategory);
    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);
    EXPECT_EQ(textdisplay_debug, pCategory);
    EXPECT_EQ(TraceOf("kova_debug_category_new"), s_acMade);
    Kova_TextDisp_Destroy(0);
}

TEST(TextdisplayDebug, IsCreatedBeforeTheBackendIsCalled)
{
    KovaTextInitParam_t param = InitParam(KOVA_GRAPHIC_LAYER2);

    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);

    EXPECT_EQ(Trace().rfind("kova_debug_category_new \"TextDisplay\" 373 \"textdisplay debug\"\n"
                            "enter Kova_TextDFBDisp_Create\n",
                            0),
              0u);
    Kova_TextDisp_Destroy(0);
}

TEST(TextdisplayDebug, IsNotTheCategoryOfTheRecords)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    pDisplay->Flip(pDisplay, 0);
    pDisplay->Flip(pDisplay, 7);
    Destroy(pDisplay);
    Kova_TextDisp_Destroy(0);

    EXPECT_GT(Records().size(), 6u);
    for (const Record_t &record : Records()) EXPECT_TRUE(record.bDefaultCategory) << record.text;
}

// ---- queries

TEST(TextDispGetDisplayByID, ReturnsTheDisplayForEveryIdentifier)
{
    EXPECT_EQ(Kova_TextDisp_GetDisplayByID(0), nullptr);
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);

    for (const int iID : {0, 1, 3, 4, 5, 127, -1, -128}) {
        EXPECT_EQ(Kova_TextDisp_GetDisplayByID(kova_sint8(iID)), pDisplay) << iID;
    }

    EXPECT_EQ(Trace(), "");
    Destroy(pDisplay);
}

TEST(TextDispGetLayer, ReturnsWhatTheBackendRecordedAndKeepsItAfterDestruction)
{
    EXPECT_EQ(Kova_TextDisp_GetLayer(), nullptr);
    EXPECT_EQ(Kova_TextDisp_GetDFB(), nullptr);
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    void *const pLayer = RecordOf(pDisplay)->pLayer;
    void *const pDfb = RecordOf(pDisplay)->pDfb;

    EXPECT_EQ(Kova_TextDisp_GetLayer(), pLayer);
    EXPECT_EQ(Kova_TextDisp_GetLayer(), Kova_TextDFBDisp_GetLayer());
    EXPECT_EQ(Kova_TextDisp_GetDFB(), pDfb);
    EXPECT_EQ(Kova_TextDisp_GetDFB(), Kova_TextDFBDisp_GetDFB());
    EXPECT_NE(pLayer, pDfb);
    EXPECT_EQ(Trace(), "");

    Destroy(pDisplay);
    EXPECT_EQ(Kova_TextDisp_GetLayer(), pLayer);
    EXPECT_EQ(Kova_TextDisp_GetDFB(), pDfb);
}

// ---- contexts

TEST(TextDispCreateContext, ReturnsTheBackendsIdentifiersAndItsRefusals)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextContextParam_t param = {PLANE_WIDTH, PLANE_HEIGHT, 3, 4, 5, 6, 7, 8};

    EXPECT_EQ(Kova_TextDisp_CreateContext(pDisplay, nullptr), -1);
    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_CreateContext\n"
                       "ERROR Kova_TextDFBDisp_CreateContext: NULL Pointer!\n");
    for (int i = 0; i < 4; i++) EXPECT_EQ(Kova_TextDisp_CreateContext(pDisplay, &param), i);

    EXPECT_EQ(RecordOf(pDisplay)->ucContextMask, 0x0F);
    EXPECT_EQ(RecordOf(pDisplay)->context[3].uiTextWindowWidth, 3u);
    EXPECT_EQ(RecordOf(pDisplay)->context[3].uiDisplayWindowHeight, 8u);
    Destroy(pDisplay);
}

TEST(TextDispSetActive, PassesAllThreeArgumentsToTheBackend)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    static const struct {
        int iContext;
        kova_bool bActive;
        const char *pcBanner;
        int iThen;
    } rows[] = {
        {0, 1, "Set context 0 to active 1 ", 0},  {1, 1, "Set context 1 to active 1 ", 1},
        {0, 0, "Set context 0 to active 0 ", -2}, {1, 1, "Set context 1 to active 1 ", 1},
        {1, 2, "Set context 1 to active 2 ", -2}, {1, 255, "Set context 1 to active 255 ", -2},
    };

    for (const auto &row : rows) {
        SCOPED_TRACE(row.pcBanner);
        testing::internal::CaptureStdout();
        Kova_TextDisp_SetActive(pDisplay, kova_sint8(row.iContext), row.bActive);
        EXPECT_NE(testing::internal::GetCapturedStdout().find(row.pcBanner), std::string::npos);
        EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, row.iThen);
    }

    ClearTrace();
    Kova_TextDisp_SetActive(pDisplay, 4, 1);
    EXPECT_EQ(Trace(), "ERROR Kova_TextDFBDisp_SetActive: Invalid context ID!\n");
    Destroy(pDisplay);
}

TEST(TextDispDestroyContext, ReturnsZeroEvenForAContextThatTheBackendRefuses)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(Kova_TextDisp_DestroyContext(pDisplay, 4), 0);
    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_DestroyContext\n"
                       "ERROR Kova_TextDFBDisp_DestroyContext: Invalid context ID!\n");
    EXPECT_EQ(RecordOf(pDisplay)->ucContextMask, 1);
    EXPECT_EQ(Kova_TextDisp_DestroyContext(pDisplay, 0), 0);
    EXPECT_EQ(RecordOf(pDisplay)->ucContextMask, 0);
    ClearTrace();
    EXPECT_EQ(Kova_TextDisp_DestroyContext(pDisplay, 0), 0); // keeps the lock
    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_DestroyContext\n"
                       "  ERROR Kova_TextDFBDisp_DestroyContext: Can't destroy this context!\n");
    pthread_mutex_unlock(&RecordOf(pDisplay)->display_mutex);
    Destroy(pDisplay);
}

TEST(Facade, DoesNothingForADisplayOfAnotherType)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextContextParam_t param = ContextParam();
    WatchLock(nullptr);

    for (const int iType : {0, 2, -1}) {
        pDisplay->eType = KovaGraphicType_e(iType);
        EXPECT_EQ(Kova_TextDisp_CreateContext(pDisplay, &param), -1);
        EXPECT_EQ(Kova_TextDisp_CreateContext(pDisplay, nullptr), -1);
        Kova_TextDisp_SetActive(pDisplay, 0, 1);
        Kova_TextDisp_SetActive(pDisplay, 9, 0);
        EXPECT_EQ(Kova_TextDisp_DestroyContext(pDisplay, 0), 0);
        EXPECT_EQ(Kova_TextDisp_DestroyContext(pDisplay, 9), 0);
        gpDisplay = pDisplay;
        Kova_TextDisp_Destroy(0);
        EXPECT_EQ(gpDisplay, nullptr);
    }

    EXPECT_EQ(Trace(), "");
    EXPECT_EQ(LiveObjectNames(), "base dfb layer");
    Kova_TextDFBDisp_Destroy(pDisplay);
    EXPECT_EQ(LiveObjects(), 0);
}

// ---- destruction

TEST(TextDispDestroy, ReportsThatThereIsNoDisplay)
{
    for (const int iID : {0, 5, -1}) {
        ClearTrace();
        Kova_TextDisp_Destroy(kova_sint8(iID));
        EXPECT_EQ(Trace(), "ERROR Kova_TextDisp_Destroy: NULL Pointer!\n");
        ASSERT_EQ(Records().size(), 3u);
        for (const Record_t &record : Records()) EXPECT_EQ(record.file, s_acFacade);
    }
}

TEST(TextDispDestroy, DestroysTheDisplayWhateverTheIdentifier)
{
    for (const int iID : {0, 3, 77, -1}) {
        SCOPED_TRACE(iID);
        GivenDisplay(KOVA_GRAPHIC_LAYER3);
        WatchLock(nullptr);

        Kova_TextDisp_Destroy(kova_sint8(iID));

        EXPECT_EQ(Kova_TextDisp_GetDisplayByID(kova_sint8(iID)), nullptr);
        EXPECT_EQ(TraceOf("enter") + TraceOf("exit"),
                  "enter Kova_TextDFBDisp_Destroy\nexit Kova_TextDFBDisp_Destroy\n");
        EXPECT_EQ(LiveObjects(), 0) << LiveObjectNames();
    }
}
