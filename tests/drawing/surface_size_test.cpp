// SPDX-License-Identifier: MIT
// DrawPixel copies rows itself, so it must know how large the surface is. The size belongs to the surface:
// neither the plane nor the last call that named a size decides. On the double a surface has real memory with
// a pitch larger than its width, and one byte written outside of it ends the test.
#include "expect.h"

#include <algorithm>

using namespace test;

// The sizes that a row names are those of the plane before, and of the surface that the test expects in the
// end.
struct Size_t {
    kova_uint32 uiWidth, uiHeight;
};
static const Size_t PLANE = {PLANE_WIDTH, PLANE_HEIGHT}, LARGER = {820, 580}, SMALLER = {300, 200},
                    NONE = {0, 0};

// Both directions of every rule: a size too large writes outside, one too small draws too little.
static const Size_t NEW_SIZES[] = {LARGER, SMALLER, {820, 200}, {300, 580}};

static std::string Text(Size_t size)
{
    return std::to_string(size.uiWidth) + "x" + std::to_string(size.uiHeight);
}

static int CountColor(IDirectFBSurface *pSurface, kova_uint8 ucColor)
{
    const std::vector<unsigned char> memory = Memory(pSurface);
    return int(std::count(memory.begin(), memory.end(), ucColor));
}

static kova_sint8 ActiveContext(pKovaITextDisplay_t pDisplay)
{
    const kova_sint8 scActive = RecordOf(pDisplay)->scActiveContextID;
    return scActive < 0 ? kova_sint8(0) : scActive;
}

// Copies 8x4 pixels to the place, with a clip that cuts nothing off; the number of pixels written.
static int Draw(pKovaITextDisplay_t pDisplay, kova_uint32 uiX, kova_uint32 uiY)
{
    static kova_uint8 s_ucColor = 0;
    kova_uint8 aucPixels[8 * 4];

    s_ucColor = kova_uint8(s_ucColor % 255 + 1); // another each time
    memset(aucPixels, s_ucColor, sizeof aucPixels);
    RecordOf(pDisplay)->clip = {0, 0, 9999, 9999};
    ClearTrace();
    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, ActiveContext(pDisplay), aucPixels, uiX, uiY, 8, 4, 8), 0);
    EXPECT_EQ(CountOf(Trace(), ".Lock WRITE\n"), 1);
    EXPECT_EQ(CountOf(Trace(), ".Unlock\n"), 1);
    return CountColor(RecordOf(pDisplay)->pActiveSurface, s_ucColor);
}

// All of a surface of this size can be written, and nothing else.
static void ExpectSize(pKovaITextDisplay_t pDisplay, Size_t size)
{
    SCOPED_TRACE("a surface of " + Text(size));
    ASSERT_NE(RecordOf(pDisplay)->pActiveSurface, nullptr);
    if (size.uiWidth == 0) {
        EXPECT_EQ(Draw(pDisplay, 0, 0), 0);
        return;
    }
    EXPECT_EQ(Draw(pDisplay, size.uiWidth - 3, size.uiHeight - 2), 3 * 2);
    EXPECT_EQ(Draw(pDisplay, size.uiWidth, size.uiHeight - 8), 0);
    EXPECT_EQ(Draw(pDisplay, size.uiWidth - 16, size.uiHeight), 0);
}

static pKovaITextDisplay_t GivenDisplayOn(KovaGraphicLayer_e eLayer)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(eLayer, INDEX_COLORS, 0);
    WatchLock(nullptr);
    return pDisplay;
}

// Context 1, of this plane; it is not active, so no plane is built.
static void GivenSecondContext(pKovaITextDisplay_t pDisplay, Size_t size)
{
    KovaTextContextParam_t param = ContextParam(size.uiWidth, size.uiHeight);
    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &param), 1);
}

// ---- every operation that configures the layer

struct Resize_t {
    const char *pcName;
    void (*pfnPrepare)(pKovaITextDisplay_t pDisplay, Size_t size);
    void (*pfnResize)(pKovaITextDisplay_t pDisplay, Size_t size);
};

static const Resize_t SET_PLANE = {
    "SetPlane", [](pKovaITextDisplay_t, Size_t) {},
    [](pKovaITextDisplay_t pDisplay, Size_t size) {
        EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, size.uiWidth, size.uiHeight), 0);
    }};
static const Resize_t ADJUST = {
    "AdjustDisplaySize", [](pKovaITextDisplay_t, Size_t) {},
    [](pKovaITextDisplay_t pDisplay, Size_t size) {
        EXPECT_EQ(pDisplay->AdjustDisplaySize(pDisplay, 0, 0, 0, size.uiWidth, size.uiHeight), 0);
    }};
static const Resize_t CREATE_32_BIT_PLANE = {
    "Create32BitPlane", [](pKovaITextDisplay_t, Size_t) {},
    [](pKovaITextDisplay_t pDisplay, Size_t size) {
        EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, size.uiWidth, size.uiHeight), 0);
    }};
static const Resize_t ACTIVATION = {
    "Activation", [](pKovaITextDisplay_t pDisplay, Size_t size) { GivenSecondContext(pDisplay, size); },
    [](pKovaITextDisplay_t pDisplay, Size_t) { Kova_TextDFBDisp_SetActive(pDisplay, 1, 1); }};
static const Resize_t RENEWED_ACTIVATION = {"ActivationAfterADeactivation",
                                            [](pKovaITextDisplay_t pDisplay, Size_t size) {
                                                GivenSecondContext(pDisplay, size);
                                                Kova_TextDFBDisp_SetActive(pDisplay, 0, 0);
                                            },
                                            ACTIVATION.pfnResize};
static const Resize_t PLANE_32_AFTER_RELEASE = {"Create32BitPlaneAfterRelease",
                                                [](pKovaITextDisplay_t pDisplay, Size_t) {
                                                    RecordOf(pDisplay)->bColor32 = 1;
                                                    EXPECT_EQ(pDisplay->Release32BitPlane(pDisplay), 0);
                                                },
                                                CREATE_32_BIT_PLANE.pfnResize};

static void PrintTo(const Resize_t &resize, std::ostream *pStream)
{
    *pStream << resize.pcName;
}

static std::string NameOfRow(const testing::TestParamInfo<Resize_t> &info)
{
    return info.param.pcName;
}

class LayersSurface : public testing::TestWithParam<Resize_t>
{
};

TEST_P(LayersSurface, IsAsLargeAsTheLastConfiguration)
{
    for (const KovaGraphicLayer_e eLayer : {KOVA_GRAPHIC_LAYER2, KOVA_GRAPHIC_LAYER3}) {
        for (const Size_t size : NEW_SIZES) {
            pKovaITextDisplay_t pDisplay = GivenDisplayOn(eLayer);
            GetParam().pfnPrepare(pDisplay, size);

            GetParam().pfnResize(pDisplay, size);

            ExpectSize(pDisplay, size);
            Destroy(pDisplay);
        }
    }
}

TEST_P(LayersSurface, KeepsTheSizeReadBeforeARefusedConfiguration)
{
    for (const Size_t size : NEW_SIZES) {
        pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER2);
        GetParam().pfnPrepare(pDisplay, size);
        FailNth("Layer.SetConfiguration", 1, DFB_UNSUPPORTED);

        GetParam().pfnResize(pDisplay, size);

        ExpectSize(pDisplay, PLANE);
        Destroy(pDisplay);
    }
}

// Not the size before: another program may have changed the layer.
TEST_P(LayersSurface, TakesTheSizeThatTheLayerReportsWhenItRefusesAnother)
{
    for (const Size_t reported : NEW_SIZES) {
        pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER2);
        DFBDisplayLayerConfig config = LastConfiguration();
        config.width = int(reported.uiWidth);
        config.height = int(reported.uiHeight);
        GetParam().pfnPrepare(pDisplay, {640, 400});
        EXPECT_EQ(RecordOf(pDisplay)->pLayer
                      ? RecordOf(pDisplay)->pLayer->SetConfiguration(RecordOf(pDisplay)->pLayer, &config)
                      : (SetLayerConfig(config), DFB_OK),
                  DFB_OK);
        FailNth("Layer.SetConfiguration", 1, DFB_UNSUPPORTED);

        GetParam().pfnResize(pDisplay, {640, 400});

        ExpectSize(pDisplay, reported);
        Destroy(pDisplay);
    }
}

TEST_P(LayersSurface, HasNoKnownSizeWhenTheLayerReportsNoneAndRefusesAnother)
{
    for (const Size_t size : NEW_SIZES) {
        pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER2);
        GetParam().pfnPrepare(pDisplay, size);
        FailNth("Layer.GetConfiguration", 1, DFB_FAILURE);
        FailNth("Layer.SetConfiguration", 1, DFB_UNSUPPORTED);

        GetParam().pfnResize(pDisplay, size);

        TurnClock(1000000);
        ExpectSize(pDisplay, NONE);
        EXPECT_EQ(CountOf(Trace(), ".Flip all"), 1) << Trace(); // as ever
        Destroy(pDisplay);
    }
}

TEST_P(LayersSurface, IsAsLargeAsConfiguredEvenIfTheLayerReportedNoSizeBefore)
{
    for (const Size_t size : NEW_SIZES) {
        pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER2);
        GetParam().pfnPrepare(pDisplay, size);
        FailNth("Layer.GetConfiguration", 1, DFB_FAILURE);

        GetParam().pfnResize(pDisplay, size);

        ExpectSize(pDisplay, size);
        Destroy(pDisplay);
    }
}

INSTANTIATE_TEST_SUITE_P(After, LayersSurface,
                         testing::Values(SET_PLANE, ADJUST, CREATE_32_BIT_PLANE, ACTIVATION,
                                         RENEWED_ACTIVATION, PLANE_32_AFTER_RELEASE),
                         NameOfRow);

TEST(LayersSurfaceAtCreation, FollowsTheSameRules)
{
    const struct {
        bool bReportFails, bConfigurationFails;
        Size_t expected;
    } rows[] = {{false, false, PLANE}, {false, true, LARGER}, {true, true, NONE}, {true, false, PLANE}};
    for (const auto &row : rows) {
        Reset();
        DFBDisplayLayerConfig config = {};
        config.flags = DFBDisplayLayerConfigFlags(DLCONF_WIDTH | DLCONF_HEIGHT | DLCONF_BUFFERMODE);
        config.width = int(LARGER.uiWidth);
        config.height = int(LARGER.uiHeight);
        config.pixelformat = DSPF_LUT8;
        config.buffermode = DLBM_BACKVIDEO;
        SetLayerConfig(config);
        if (row.bReportFails) FailNth("Layer.GetConfiguration", 1, DFB_FAILURE);
        if (row.bConfigurationFails) FailNth("Layer.SetConfiguration", 1, DFB_UNSUPPORTED);
        KovaTextInitParam_t param = InitParam(KOVA_GRAPHIC_LAYER2);

        EXPECT_EQ(Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param), 0);

        pKovaITextDisplay_t pDisplay = Kova_TextDisp_GetDisplayByID(0);
        pDisplay->Show(pDisplay, 0);
        ExpectSize(pDisplay, row.expected);
        Destroy(pDisplay);
    }
}

// ---- the window of layer 1

TEST(WindowsSurface, HasThePlaneSizeThatItsWindowWasCreatedWith)
{
    pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER1);
    ExpectSize(pDisplay, PLANE);
    Destroy(pDisplay);
}

class WindowsSurfaceRebuilt : public testing::TestWithParam<Resize_t>
{
};

TEST_P(WindowsSurfaceRebuilt, HasTheNewPlaneSize)
{
    for (const Size_t size : NEW_SIZES) {
        pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER1);
        GetParam().pfnPrepare(pDisplay, size);

        GetParam().pfnResize(pDisplay, size);

        ExpectSize(pDisplay, size);
        Destroy(pDisplay);
    }
}

INSTANTIATE_TEST_SUITE_P(After, WindowsSurfaceRebuilt,
                         testing::Values(SET_PLANE, ACTIVATION, RENEWED_ACTIVATION), NameOfRow);

TEST(WindowsSurface, KeepsItsSizeWhenTheLayerIsConfiguredForA32BitPlane)
{
    for (const Size_t size : NEW_SIZES) {
        for (const bool bRefused : {false, true}) {
            pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER1);
            if (bRefused) FailNth("Layer.SetConfiguration", 1, DFB_UNSUPPORTED);

            EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, size.uiWidth, size.uiHeight), 0);

            ExpectSize(pDisplay, PLANE);
            Destroy(pDisplay);
        }
    }
}

// Without touching the record: the clip is the whole of the larger plane.
TEST(WindowsSurface, IsNotOverrunByALarger32BitPlane)
{
    pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER1);
    IDirectFBSurface *const pSurface = RecordOf(pDisplay)->pBaseSurface;
    kova_uint8 aucPixels[8 * 4];
    memset(aucPixels, 9, sizeof aucPixels);

    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 820, 580), 0);
    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, aucPixels, 717, 478, 8, 4, 8), 0);

    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, pSurface);
    EXPECT_EQ(CountColor(pSurface, 9), 3 * 2);
    Destroy(pDisplay);
}

TEST(WindowsSurface, GivesWayToTheLayersOwnAfterAdjustDisplaySize)
{
    for (const Size_t size : NEW_SIZES) {
        for (const bool bPlane32 : {false, true}) {
            pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER1);
            if (bPlane32) CREATE_32_BIT_PLANE.pfnResize(pDisplay, {1000, 700});

            EXPECT_EQ(pDisplay->AdjustDisplaySize(pDisplay, 0, 0, 0, size.uiWidth, size.uiHeight), 0);
            ExpectSize(pDisplay, size);

            // The layer's own follows the layer.
            EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 640, 400), 0);
            ExpectSize(pDisplay, {640, 400});
            Destroy(pDisplay);
        }
    }
}

// AdjustDisplaySize leaves the window alone; SetPlane makes another.
TEST(WindowsSurface, ComesBackWithSetPlane)
{
    pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER1);
    EXPECT_EQ(pDisplay->AdjustDisplaySize(pDisplay, 0, 0, 0, 820, 580), 0);
    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 300, 200), 0);
    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 640, 400), 0);

    ExpectSize(pDisplay, SMALLER);
    Destroy(pDisplay);
}

TEST(WindowsSurface, GivesWayToTheLayersOwnInA32BitPlaneWithoutABaseSurface)
{
    for (const Size_t size : NEW_SIZES) {
        const LeaksAreMeant_t leaks; // the window stays behind
        pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER1);
        EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1000, 700), 0);
        EXPECT_EQ(pDisplay->Release32BitPlane(pDisplay), 0);

        EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, size.uiWidth, size.uiHeight), 0);

        ExpectSize(pDisplay, size);
        Destroy(pDisplay);
    }
}

// Release32BitPlane leaves the window. When the next one cannot be created, the old one gives the surface.
TEST(WindowsSurface, HasTheOldWindowsSizeWhenNoNewWindowCanBeCreated)
{
    for (const Size_t size : NEW_SIZES) {
        pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER1);
        GivenSecondContext(pDisplay, size);
        RecordOf(pDisplay)->bColor32 = 1;
        EXPECT_EQ(pDisplay->Release32BitPlane(pDisplay), 0);
        FailNth("Layer.CreateWindow", 1, DFB_NOVIDEOMEMORY);

        Kova_TextDFBDisp_SetActive(pDisplay, 1, 1);

        EXPECT_EQ(RecordOf(pDisplay)->uiPlaneWidth, size.uiWidth);
        ExpectSize(pDisplay, PLANE);
        Destroy(pDisplay);
    }
}

TEST(WindowsSurface, HasTheNewWindowsSizeWhenTheOldOneIsStillThere)
{
    for (const Size_t size : NEW_SIZES) {
        const LeaksAreMeant_t leaks; // the old window stays behind
        Reset();
        pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER1);
        GivenSecondContext(pDisplay, size);
        RecordOf(pDisplay)->bColor32 = 1;
        EXPECT_EQ(pDisplay->Release32BitPlane(pDisplay), 0);

        Kova_TextDFBDisp_SetActive(pDisplay, 1, 1);

        ExpectSize(pDisplay, size);
        Destroy(pDisplay, "window2"); // the second: activation made the first anew
    }
}

// The window is new and gives nothing, so the surface of the old one is drawn on still.
TEST(WindowsSurface, KeepsItsSizeWhenANewWindowGivesNoSurface)
{
    for (const Size_t size : NEW_SIZES) {
        const LeaksAreMeant_t leaks;
        Reset();
        pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER1);
        GivenSecondContext(pDisplay, size);
        RecordOf(pDisplay)->pLayer = nullptr; // so that nothing is released first
        FailNth("Window.GetSurface", 1, DFB_FAILURE);

        Kova_TextDFBDisp_SetActive(pDisplay, 1, 1);

        ExpectSize(pDisplay, PLANE);
        Destroy(pDisplay, "layer2 window2");
    }
}

// ---- the backup surface

static void GivenBackupInUse(pKovaITextDisplay_t pDisplay)
{
    GivenBackupSurface(pDisplay);
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);
}

TEST(BackupSurface, KeepsThePlaneSizeOfTheMomentItBecameTheTarget)
{
    for (const Size_t size : NEW_SIZES) {
        pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER2);
        GivenBackupInUse(pDisplay);
        ExpectSize(pDisplay, PLANE);

        EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, size.uiWidth, size.uiHeight), 0);

        EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, RecordOf(pDisplay)->pBackupSurface);
        ExpectSize(pDisplay, PLANE);

        // The base surface has its own size, and coming back changes neither.
        EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 0), 0);
        ExpectSize(pDisplay, size);
        EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);
        ExpectSize(pDisplay, PLANE);
        Destroy(pDisplay);
    }
}

// Without touching the record.
TEST(BackupSurface, IsNotOverrunByALargerPlane)
{
    pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER2);
    GivenBackupInUse(pDisplay);
    kova_uint8 aucPixels[8 * 4];
    memset(aucPixels, 9, sizeof aucPixels);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 820, 580), 0);
    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, aucPixels, 717, 478, 8, 4, 8), 0);

    EXPECT_EQ(CountColor(RecordOf(pDisplay)->pBackupSurface, 9), 3 * 2);
    Destroy(pDisplay);
}

TEST(BackupSurface, KeepsThePlaneSizeOfTheFirstCopyFromIt)
{
    for (const Size_t size : NEW_SIZES) {
        pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER2);
        KovaTextRect_t rect = {0, 0, 8, 8};
        GivenFont(pDisplay);
        GivenBackupSurface(pDisplay);
        EXPECT_EQ(pDisplay->BlitBackupSurface(pDisplay, 0, &rect, 0, 0), 0);

        EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, size.uiWidth, size.uiHeight), 0);
        EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);

        ExpectSize(pDisplay, PLANE);
        Destroy(pDisplay);
    }
}

// What is refused or hidden copies nothing and makes nothing the target.
TEST(BackupSurface, IsNotMeasuredByACallThatDoesNotUseIt)
{
    pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER2);
    KovaTextRect_t rect = {0, 0, 8, 8};
    GivenFont(pDisplay);
    IDirectFBSurface *const pBackup = MakeSurface("backup", 820, 580, DSPF_LUT8);
    RecordOf(pDisplay)->pBackupSurface = pBackup;
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 1, 1), -1);
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 0), 0);
    EXPECT_EQ(pDisplay->BlitBackupSurface(pDisplay, 1, &rect, 0, 0), -1);
    pDisplay->Hide(pDisplay, 0);
    EXPECT_EQ(pDisplay->BlitBackupSurface(pDisplay, 0, &rect, 0, 0), 0);
    pDisplay->Show(pDisplay, 0);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 820, 580), 0);
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);

    ExpectSize(pDisplay, LARGER);
    Destroy(pDisplay);
}

TEST(BackupSurface, IsMeasuredAgainWhenAnotherTakesItsPlace)
{
    for (const Size_t size : NEW_SIZES) {
        pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER2);
        GivenBackupInUse(pDisplay);
        IDirectFBSurface *const pFirst = RecordOf(pDisplay)->pBackupSurface;
        EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 0), 0);
        EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, size.uiWidth, size.uiHeight), 0);

        GivenBackupInUse(pDisplay);

        ExpectSize(pDisplay, size);
        pFirst->Release(pFirst);
        Destroy(pDisplay);
    }
}

TEST(BackupSurface, KeepsItsSizeOnLayer1Too)
{
    for (const Size_t size : NEW_SIZES) {
        const LeaksAreMeant_t leaks; // a layer 1 display does not release it
        Reset();
        pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER1);
        GivenBackupInUse(pDisplay);

        EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, size.uiWidth, size.uiHeight), 0);
        EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);

        ExpectSize(pDisplay, PLANE);
        Destroy(pDisplay, "backup");
    }
}

// ---- calls that move the plane size and no surface

TEST(SurfaceSize, IsNotChangedByTheCreationOfAContext)
{
    for (const KovaGraphicLayer_e eLayer : {KOVA_GRAPHIC_LAYER1, KOVA_GRAPHIC_LAYER2}) {
        for (const Size_t size : NEW_SIZES) {
            pKovaITextDisplay_t pDisplay = GivenDisplayOn(eLayer);

            GivenSecondContext(pDisplay, size);

            EXPECT_EQ(RecordOf(pDisplay)->uiPlaneWidth, size.uiWidth);
            ExpectSize(pDisplay, PLANE);
            Destroy(pDisplay);
        }
    }
}

TEST(SurfaceSize, IsNotChangedByARefusedSetPlaneOrAdjustDisplaySize)
{
    for (const KovaGraphicLayer_e eLayer : {KOVA_GRAPHIC_LAYER1, KOVA_GRAPHIC_LAYER2}) {
        for (const Size_t size : NEW_SIZES) {
            for (const bool bLayerGone : {false, true}) {
                pKovaITextDisplay_t pDisplay = GivenDisplayOn(eLayer);
                RecordOf(pDisplay)->scActiveContextID = bLayerGone ? kova_sint8(-2) : kova_sint8(0);
                const kova_sint8 scOther = bLayerGone ? 0 : 1;

                EXPECT_EQ(pDisplay->SetPlane(pDisplay, scOther, 0, 0, size.uiWidth, size.uiHeight), -1);
                EXPECT_EQ(pDisplay->AdjustDisplaySize(pDisplay, scOther, 0, 0, size.uiWidth, size.uiHeight),
                          -1);

                RecordOf(pDisplay)->scActiveContextID = 0;
                ExpectSize(pDisplay, PLANE);
                Destroy(pDisplay);
            }
        }
    }
}

TEST(SurfaceSize, OfTheBackupSurfaceIsNotChangedByTheCreationOfAContext)
{
    for (const Size_t size : NEW_SIZES) {
        pKovaITextDisplay_t pDisplay = GivenDisplayOn(KOVA_GRAPHIC_LAYER2);
        GivenBackupInUse(pDisplay);

        GivenSecondContext(pDisplay, size);

        ExpectSize(pDisplay, PLANE);
        Destroy(pDisplay);
    }
}
