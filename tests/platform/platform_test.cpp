// SPDX-License-Identifier: MIT
// The library built against the published header, which lacks the OSD extensions.
#include "expect.h"

using namespace test;

TEST(PublishedPlatform, IsNotToldOfAnIndexedPlane)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    EXPECT_TRUE(Contains(Trace(), "1280x720 LUT8 BACKVIDEO DOUBLE\n"
                                  "  layer.GetSurface\n"
                                  "  base2.GetPalette\n")); // nothing called in between, nothing reported
    EXPECT_EQ(StandardError(), "");
    Destroy(pDisplay);
}

// As the published DirectFB does it by nature: the layer shows a part of its surface in a part of the screen.
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

        EXPECT_EQ(CountOf(Trace(), "Rectangle"), 2);                 // both are tried
        EXPECT_EQ(TraceOf("DFB_CHECK"), CheckLine(DFB_UNSUPPORTED)); // and the first failure is told
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

// The value that slants elsewhere means something else here.
TEST(PublishedPlatform, SlantsGlyphsByItsOwnAttribute)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);

    EXPECT_EQ(pDisplay->SetFont(pDisplay, 0, 0, 24, KOVA_FONTATTR_ITALIC), 0);

    EXPECT_TRUE(Contains(Trace(), "dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT attributes 0x200 height 24\n"));
    Destroy(pDisplay);
}
