// SPDX-License-Identifier: MIT
// Obtaining a layer again, and the values that its configuration keeps. display_test.cpp tests both for
// creation.
#include "expect.h"
#include "support.h"

#include <regex>

using namespace test;

// The objects of the second display in a process have numbers in their names.
static std::string Unnumbered(const std::string &trace)
{
    static const std::regex s_name("(dfb|layer|base|palette)[0-9]+");
    return std::regex_replace(trace, s_name, "$1");
}

static std::string Waited(const std::string &operation, int iTimes, const std::string &layer)
{
    std::string trace = "  dfb.GetDisplayLayer " + layer + "\n";

    for (int i = 0; i < iTimes; i++) {
        trace += "  error " + operation + ": #################### DFB_TEMPUNAVAIL " + std::to_string(i) +
                 " #######################\n"
                 "  usleep 50000\n"
                 "  dfb.GetDisplayLayer " +
                 layer + "\n";
    }
    return trace;
}

// The two operations that obtain a released layer, and how each begins.
struct Regainer_t {
    const char *pcName;
    void (*regain)(pKovaITextDisplay_t pDisplay);
};

static void SetActive(pKovaITextDisplay_t pDisplay)
{
    testing::internal::CaptureStdout();
    Kova_TextDisp_SetActive(pDisplay, 0, 1);
    testing::internal::GetCapturedStdout();
}

static void CreatePlane(pKovaITextDisplay_t pDisplay)
{
    const int iResult = pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 720, 480);
    EXPECT_EQ(iResult, RecordOf(pDisplay)->pLayer ? 0 : -1);
}

static const Regainer_t s_regainers[] = {{"Kova_TextDFBDisp_SetActive", SetActive},
                                         {"Create32BitPlane", CreatePlane}};

static pKovaITextDisplay_t GivenNoLayer(KovaGraphicLayer_e eLayer)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(eLayer);

    testing::internal::CaptureStdout();
    Kova_TextDisp_SetActive(pDisplay, 0, 0);
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(RecordOf(pDisplay)->pLayer, nullptr);
    RecordOf(pDisplay)->scActiveContextID = -1;
    ClearTrace();
    return pDisplay;
}

TEST(RegainLayer, WaitsWhileTheLayerIsTemporarilyUnavailable)
{
    for (const Regainer_t &regainer : s_regainers) {
        for (const int iTimes : {0, 1, 3}) {
            SCOPED_TRACE(std::string(regainer.pcName) + " " + std::to_string(iTimes));
            const bool bSecond = iTimes == 1;
            Reset();
            pKovaITextDisplay_t pDisplay = GivenNoLayer(bSecond ? KOVA_GRAPHIC_LAYER2 : KOVA_GRAPHIC_LAYER3);
            TemporarilyUnavailable(iTimes);
            const struct timeval before = Now();

            regainer.regain(pDisplay);

            const std::string name = regainer.pcName;
            const std::string expected = "enter " + name + "\n" + Waited(name, iTimes, bSecond ? "1" : "2") +
                                         "  layer.SetCooperativeLevel EXCLUSIVE\n";
            EXPECT_EQ(Unnumbered(Trace()).substr(0, expected.size()), expected);
            EXPECT_EQ((Now().tv_sec - before.tv_sec) * 1000000 + Now().tv_usec - before.tv_usec,
                      iTimes * 50000);
            EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, 0);
            EXPECT_NE(RecordOf(pDisplay)->pActiveSurface, nullptr);
            Destroy(pDisplay);
        }
    }
}

TEST(RegainLayer, ReportsTheResultAndLeavesNoContextActive)
{
    for (const Regainer_t &regainer : s_regainers) {
        SCOPED_TRACE(regainer.pcName);
        const std::string name = regainer.pcName;
        Reset();
        pKovaITextDisplay_t pDisplay = GivenNoLayer(KOVA_GRAPHIC_LAYER2);
        TemporarilyUnavailable(1);
        Fail("Dfb.GetDisplayLayer", DFB_ACCESSDENIED);

        regainer.regain(pDisplay);

        const std::string expected = "enter " + name + "\n" + Waited(name, 1, "1") + "  error " + name +
                                     ": GetDisplayLayer result = " + std::to_string(int(DFB_ACCESSDENIED)) +
                                     "\nexit " + name + "\n";
        EXPECT_EQ(Unnumbered(Trace()), expected);
        EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, -2);
        EXPECT_EQ(RecordOf(pDisplay)->pLayer, nullptr);
        EXPECT_TRUE(LockIsFree(pDisplay));
        Destroy(pDisplay);
    }
}

TEST(RegainLayer, ReportsALayerThatIsNullAfterAll)
{
    for (const Regainer_t &regainer : s_regainers) {
        SCOPED_TRACE(regainer.pcName);
        const std::string name = regainer.pcName;
        Reset();
        pKovaITextDisplay_t pDisplay = GivenNoLayer(KOVA_GRAPHIC_LAYER2);
        GiveNothing("Dfb.GetDisplayLayer");

        regainer.regain(pDisplay);

        EXPECT_EQ(TraceOf("error"), "  error " + name + ": Display layer = NULL after GetDisplayLayer\n");
        EXPECT_EQ(TraceOf("exit"), "exit " + name + "\n");
        EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, -2);
        EXPECT_TRUE(LockIsFree(pDisplay));
        Destroy(pDisplay);
    }
}

TEST(RegainLayer, FailsWithoutTheMainInterfaceAsADestroyedOneWould)
{
    for (const Regainer_t &regainer : s_regainers) {
        SCOPED_TRACE(regainer.pcName);
        Reset();
        pKovaITextDisplay_t pDisplay = GivenNoLayer(KOVA_GRAPHIC_LAYER2);
        IDirectFB *const pDfb = RecordOf(pDisplay)->pDfb;
        RecordOf(pDisplay)->pDfb = nullptr;

        regainer.regain(pDisplay);

        EXPECT_EQ(TraceOf("error"), std::string("  error ") + regainer.pcName +
                                        ": GetDisplayLayer result = " + std::to_string(int(DFB_DESTROYED)) +
                                        "\n");
        EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, -2);
        RecordOf(pDisplay)->pDfb = pDfb;
        Destroy(pDisplay);
    }
}

TEST(RegainLayer, LeavesAnExistingLayerAlone)
{
    for (const Regainer_t &regainer : s_regainers) {
        pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
        RecordOf(pDisplay)->scActiveContextID = -1;

        regainer.regain(pDisplay);

        EXPECT_FALSE(Contains(Trace(), "GetDisplayLayer"));
        Destroy(pDisplay);
    }
}

TEST(DescribePlane, KeepsTheOtherValuesThatTheLayerReported)
{
    DFBDisplayLayerConfig config = {};
    config.flags = DFBDisplayLayerConfigFlags(DLCONF_OPTIONS | DLCONF_SOURCE | DLCONF_WIDTH);
    config.width = 11;
    config.height = 22;
    config.pixelformat = DSPF_RGB16;
    config.buffermode = DLBM_TRIPLE;
    config.surface_caps = DSCAPS_VIDEOONLY;
    config.options = DLOP_ALPHACHANNEL;
    config.source = 5;
    SetLayerConfig(config);

    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2, PALETTE_COLORS);

    const DFBDisplayLayerConfig made = LastConfiguration();
    EXPECT_EQ(int(made.flags),
              DLCONF_WIDTH | DLCONF_HEIGHT | DLCONF_PIXELFORMAT | DLCONF_BUFFERMODE | DLCONF_SURFACE_CAPS);
    EXPECT_EQ(made.width, 720);
    EXPECT_EQ(made.height, 480);
    EXPECT_EQ(made.pixelformat, DSPF_ARGB);
    EXPECT_EQ(made.buffermode, DLBM_BACKVIDEO);
    EXPECT_EQ(made.surface_caps, DSCAPS_DOUBLE);
    EXPECT_EQ(made.options, DLOP_ALPHACHANNEL);
    EXPECT_EQ(int(made.source), 5);
    Destroy(pDisplay);
}

TEST(DescribePlane, StartsFromZeroWhereTheLayerReportsNothing)
{
    Fail("Layer.GetConfiguration", DFB_FAILURE);

    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(int(LastConfiguration().options), 0);
    EXPECT_EQ(int(LastConfiguration().source), 0);
    EXPECT_EQ(LastConfiguration().width, 720);
    Destroy(pDisplay);
}

TEST(Configure, RemembersHowLargeTheSurfaceIs)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(RecordOf(pDisplay)->sLayerSize.uiWidth, 720u);
    EXPECT_EQ(RecordOf(pDisplay)->sLayerSize.uiHeight, 480u);
    Destroy(pDisplay);

    Reset(); // the layer is 1920 by 1080 again and keeps that size
    Fail("Layer.SetConfiguration", DFB_UNSUPPORTED);
    pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(RecordOf(pDisplay)->sLayerSize.uiWidth, 1920u);
    EXPECT_EQ(RecordOf(pDisplay)->sLayerSize.uiHeight, 1080u);
    EXPECT_EQ(RecordOf(pDisplay)->uiPlaneWidth, 720u);
    Destroy(pDisplay);
}

TEST(ResetClip, MakesTheWholePlaneTheClip)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextRect_t rect = {10, 20, 30, 40};
    EXPECT_EQ(pDisplay->SetClip(pDisplay, 0, &rect), 0);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 640, 360), 0);

    for (const DFBRegion &clip : {RecordOf(pDisplay)->clip, ClipOf(RecordOf(pDisplay)->pBaseSurface)}) {
        EXPECT_EQ(clip.x1, 0);
        EXPECT_EQ(clip.y1, 0);
        EXPECT_EQ(clip.x2, 639);
        EXPECT_EQ(clip.y2, 359);
    }
    Destroy(pDisplay);
}
