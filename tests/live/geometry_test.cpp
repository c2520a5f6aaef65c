// SPDX-License-Identifier: MIT
// Planes of other sizes, the 32-bit plane, and scaling of the plane.
#include "fixture.h"

using namespace live;

enum { TEXT = 13 };

static void ExpectFrame(pKovaITextDisplay_t pDisplay, kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    Reference reference(uiWidth, uiHeight);
    KovaTextRect_t rect = {5, 6, uiWidth, uiHeight};
    EXPECT_EQ(pDisplay->FillRect(pDisplay, 0, &rect, Color(17)), 0);
    reference.Fill(5, 6, int(uiWidth), int(uiHeight), 17);
    EXPECT_EQ(pDisplay->DrawLine(pDisplay, 0, 0, 0, 2000, 1000, Color(18)), 0);
    reference.SetColor(18);
    reference->DrawLine(reference.Surface(), 0, 0, 2000, 1000);
    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));
}

TEST(SetPlane, CreatesAPlaneOfTheRequestedSize)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    const kova_uint32 auiSizes[][2] = {{640, 360}, {1920, 1080}, {17, 9}, {1, 1}, {720, 480}};

    for (const auto &size : auiSizes) {
        EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 30, 40, size[0], size[1]), 0);
        if (Layer() == KOVA_GRAPHIC_LAYER1) LoadPalette(pDisplay, 0);
        pDisplay->Show(pDisplay, 0);
        ExpectFrame(pDisplay, size[0], size[1]);
    }
}

TEST(SetPlane, OpensTheFontsAgainAndKeepsTheSelection)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    EXPECT_EQ(GivenFont(pDisplay, FONT, 20), 0);
    EXPECT_EQ(GivenFont(pDisplay, OTHER_FONT, 30), 1);
    const Font bold(OTHER_FONT, 30);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 500, 100), 0);
    if (Layer() == KOVA_GRAPHIC_LAYER1) LoadPalette(pDisplay, 0);
    pDisplay->Show(pDisplay, 0);
    pDisplay->SetTextForeColor(pDisplay, 0, Color(TEXT));
    pDisplay->SetEdgeType(pDisplay, 0, KOVA_TEXT_ENONE);
    EXPECT_EQ(DrawText(pDisplay, 0, "Plane", 20, 30), 0);

    Reference reference(500, 100);
    reference->SetFont(reference.Surface(), bold.Interface());
    reference.SetColor(TEXT);
    reference.Text("Plane", 20, 30);
    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));
}

TEST(AdjustDisplaySize, ResizesTheLayerToTheRequestedSize)
{
    if (Layer() == KOVA_GRAPHIC_LAYER1) GTEST_SKIP() << "would resize the primary layer under the window";
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();

    EXPECT_EQ(pDisplay->AdjustDisplaySize(pDisplay, 0, 0, 0, 800, 450), 0);
    LoadPalette(pDisplay, 0);
    pDisplay->Show(pDisplay, 0);
    ExpectFrame(pDisplay, 800, 450);
}

TEST(Create32BitPlane, DrawsPackedColorsAndReleasesEverything)
{
    if (Colors() != PACKED) GTEST_SKIP() << "for the packed colours";
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Picture_t seen;
    KovaTextRect_t rect = {10, 10, 5, 5};

    EXPECT_EQ(pDisplay->FillRect(pDisplay, 0, &rect, 0x11223344), 0);
    EXPECT_EQ(Drawn().Pixel(12, 12), 0x44112233u); // red, green, blue, alpha become ARGB

    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 400, 300), 0);
    ExpectFrame(pDisplay, 400, 300);

    EXPECT_EQ(pDisplay->Release32BitPlane(pDisplay), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(pDisplay->FillRect(pDisplay, 0, &rect, 0x11223344), -1);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Inactive context!"), std::string::npos);
    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 200, 100), 0);
    EXPECT_EQ(pDisplay->FillRect(pDisplay, 0, &rect, 0x11223344), 0);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
}

// The colour mode of the creation applies until a context is activated.
TEST(Display, CreatedInThirtyTwoBitsDrawsPackedColors)
{
    if (Colors() != PACKED) GTEST_SKIP() << "for the packed colours";
    KovaTextInitParam_t param = {};
    param.eLayer = Layer();
    param.uiPlaneWidth = PLANE_WIDTH;
    param.uiPlaneHeight = PLANE_HEIGHT;
    param.bColor32Bit = 1;
    ASSERT_EQ(Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param), 0);
    pKovaITextDisplay_t pDisplay = Kova_TextDisp_GetDisplayByID(0);
    ASSERT_NE(pDisplay, nullptr);

    pDisplay->Show(pDisplay, 2); // no active context yet: every identifier is accepted
    ExpectFrame(pDisplay, PLANE_WIDTH, PLANE_HEIGHT);
}

// Published DirectFB has no such call: the layer's rectangles replace it, or the failure is reported.
TEST(SetSurfaceOsdScaleInfo, IsNeverSkippedSilently)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Surface_OsdScaleInfo info = {100, 50, 640, 360, 0, 0, 10, 20, 160, 100};

    testing::internal::CaptureStderr();
    pDisplay->SetSurface_OsdScaleInfo(pDisplay, &info);
    const std::string reported = testing::internal::GetCapturedStderr();
    EXPECT_NE(reported.find("TextDisp: [thread:"), std::string::npos) << reported;
    EXPECT_NE(reported.find("err 0x"), std::string::npos) << reported;

    // Drawing works in any case.
    ExpectFrame(pDisplay, PLANE_WIDTH, PLANE_HEIGHT);
}
