// SPDX-License-Identifier: MIT
// The library built against the published header, which has no OSD extensions.
#include "expect.h"

using namespace test;

TEST(PublishedPlatform, GetsNoFlagsForAnIndexedPlane)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    EXPECT_TRUE(Contains(Trace(), "1280x720 LUT8 BACKVIDEO DOUBLE\n"
                                  "  layer.GetSurface\n"
                                  "  base3.GetPalette\n")); // no call in between, no report
    EXPECT_EQ(StandardError(), "");
    Destroy(pDisplay);
}

// The calls of an activation or a 32-bit plane for a kept surface: between the configuration and the clip.
static std::string BetweenConfigurationAndClip()
{
    const std::string trace = CallsOnly(Trace());
    const size_t begin = trace.find('\n', trace.find("layer.SetConfiguration")) + 1;
    return trace.substr(begin, trace.find("SetClip") - begin);
}

static void GivenOtherContext(pKovaITextDisplay_t pDisplay)
{
    KovaTextContextParam_t param = ContextParam(1280, 720);
    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &param), 1);
    ClearTrace();
}

TEST(PublishedPlatform, TakesTheKeptSurfaceAgainDirectlyAfterAnActivationConfiguredTheLayer)
{
    for (const KovaGraphicLayer_e eLayer : {KOVA_GRAPHIC_LAYER2, KOVA_GRAPHIC_LAYER3}) {
        Reset();
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(eLayer);
        GivenOtherContext(pDisplay);
        const std::string kept = NameOf(RecordOf(pDisplay)->pBaseSurface);

        Kova_TextDFBDisp_SetActive(pDisplay, 1, 1);

        const std::string taken = NameOf(RecordOf(pDisplay)->pBaseSurface);
        EXPECT_NE(taken, kept);
        EXPECT_EQ(
            BetweenConfigurationAndClip().find("layer.GetSurface\n" + kept + ".Release\n" + taken + "."), 0u)
            << BetweenConfigurationAndClip();
        EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, RecordOf(pDisplay)->pBaseSurface);
        Destroy(pDisplay);
    }
}

TEST(PublishedPlatform, TakesTheKeptSurfaceAgainForA32BitPlane)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    const std::string kept = NameOf(RecordOf(pDisplay)->pBaseSurface);

    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    const std::string taken = NameOf(RecordOf(pDisplay)->pBaseSurface);
    EXPECT_NE(taken, kept);
    EXPECT_EQ(BetweenConfigurationAndClip(), "layer.GetSurface\n" + kept + ".Release\n" + taken + ".");
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, RecordOf(pDisplay)->pBaseSurface);
    Destroy(pDisplay);
}

TEST(PublishedPlatform, TakesASurfaceOnceWhenNoneWasKept)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenOtherContext(pDisplay);
    Kova_TextDFBDisp_SetActive(pDisplay, 0, 0);
    ClearTrace();
    Kova_TextDFBDisp_SetActive(pDisplay, 1, 1);
    EXPECT_EQ(CountOf(Trace(), ".GetSurface\n"), 1);

    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);
    EXPECT_EQ(pDisplay->Release32BitPlane(pDisplay), 0);
    ClearTrace();
    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);
    EXPECT_EQ(CountOf(Trace(), ".GetSurface\n"), 1);
    Destroy(pDisplay);
}

TEST(PublishedPlatform, LeavesTheSurfaceOfAWindowAlone)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER1);
    IDirectFBSurface *const pSurface = RecordOf(pDisplay)->pBaseSurface;
    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);
    EXPECT_EQ(CountOf(Trace(), ".GetSurface\n"), 0);
    EXPECT_EQ(RecordOf(pDisplay)->pBaseSurface, pSurface);

    // After AdjustDisplaySize it is the layer's own.
    EXPECT_EQ(pDisplay->AdjustDisplaySize(pDisplay, 0, 0, 0, 640, 360), 0);
    ClearTrace();
    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);
    EXPECT_EQ(CountOf(Trace(), ".GetSurface\n"), 1);
    Destroy(pDisplay);
}

TEST(PublishedPlatform, KeepsTheOldSurfaceWhenTheLayerReturnsNoNewOne)
{
    for (const bool bFails : {true, false}) {
        for (const bool bPlane32 : {true, false}) {
            Reset();
            pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
            GivenOtherContext(pDisplay);
            IDirectFBSurface *const pSurface = RecordOf(pDisplay)->pBaseSurface;
            if (bFails) {
                FailNth("Layer.GetSurface", 1, DFB_NOVIDEOMEMORY);
            } else {
                GiveNothing("Layer.GetSurface");
            }

            if (bPlane32) {
                EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 1, 0, 0, 1280, 720), 0);
            } else {
                Kova_TextDFBDisp_SetActive(pDisplay, 1, 1);
            }

            EXPECT_EQ(CountOf(Trace(), ".GetSurface\n"), 1);
            EXPECT_EQ(CountOf(Trace(), "DFB_CHECK_BRIEF\n"), bFails ? 1 : 0);
            EXPECT_EQ(CountOf(Trace(), NameOf(pSurface) + ".Release\n"), 0);
            EXPECT_EQ(RecordOf(pDisplay)->pBaseSurface, pSurface);
            EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, pSurface);
            Destroy(pDisplay);
        }
    }
}

TEST(PublishedPlatform, ReportsThatTheOldSurfaceCouldNotBeReleased)
{
    const LeaksAreMeant_t leaks;
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    const std::string kept = NameOf(RecordOf(pDisplay)->pBaseSurface);
    FailNth("Surface.Release", 1, DFB_BUSY);

    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    EXPECT_TRUE(Contains(CallsOnly(Trace()), kept + ".Release\nDFB_CHECK_BRIEF\n"));
    EXPECT_NE(NameOf(RecordOf(pDisplay)->pBaseSurface), kept);
    Destroy(pDisplay, kept);
}

// In published DirectFB a layer shows a part of its surface in a part of the screen.
TEST(PublishedPlatform, ScalesThePlaneByTheLayersRectangles)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Surface_OsdScaleInfo info = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};

    pDisplay->SetSurface_OsdScaleInfo(pDisplay, &info);

    EXPECT_EQ(Trace(), "enter SetSurface_OsdScaleInfo Plane:(1x2)(3x4) Crop:(7x8)(9x10)\n"
                       "layer.SetSourceRectangle 7,8 9x10\n"
                       "layer.SetScreenRectangle 1,2 3x4\n"
                       "exit SetSurface_OsdScaleInfo\n");
    Destroy(pDisplay);
}

TEST(PublishedPlatform, NeverFailsToScaleSilently)
{
    const struct {
        bool bSource, bScreen;
    } rows[] = {{true, false}, {false, true}, {true, true}};
    for (const auto &row : rows) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
        Surface_OsdScaleInfo info = {};
        if (row.bSource) FailNth("Layer.SetSourceRectangle", 1, DFB_UNSUPPORTED);
        if (row.bScreen) FailNth("Layer.SetScreenRectangle", 1, row.bSource ? DFB_BUSY : DFB_UNSUPPORTED);

        pDisplay->SetSurface_OsdScaleInfo(pDisplay, &info);

        EXPECT_EQ(CountOf(Trace(), "Rectangle"), 2);                 // both calls are made
        EXPECT_EQ(TraceOf("DFB_CHECK"), CheckLine(DFB_UNSUPPORTED)); // and the first failure is reported
        Destroy(pDisplay);
    }
}

TEST(PublishedPlatform, CannotScaleWithoutALayer)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Surface_OsdScaleInfo info = {};
    IDirectFBDisplayLayer *const pLayer = RecordOf(pDisplay)->pLayer;
    RecordOf(pDisplay)->pLayer = nullptr;

    pDisplay->SetSurface_OsdScaleInfo(pDisplay, &info);

    EXPECT_EQ(TraceOf("DFB_CHECK"), CheckLine(DFB_DESTROYED));
    RecordOf(pDisplay)->pLayer = pLayer;
    Destroy(pDisplay);
}

// The value of the platform's slanted style means something else here.
TEST(PublishedPlatform, SlantsGlyphsByItsOwnAttribute)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);

    EXPECT_EQ(pDisplay->SetFont(pDisplay, 0, 0, 24, KOVA_FONTATTR_ITALIC), 0);

    EXPECT_TRUE(Contains(Trace(), "dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT attributes 0x200 height 24\n"));
    Destroy(pDisplay);
}
