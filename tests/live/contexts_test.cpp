// SPDX-License-Identifier: MIT
// Contexts with different planes, activated in turn, and their fonts and palette.
#include "fixture.h"

#include "kova_textdisp_dfb/record.h"

using namespace live;

enum { ROUNDS = 10, TEXT = 13, EDGE = 8 };

static const struct {
    kova_uint32 uiWidth, uiHeight;
} planes[] = {{720, 480}, {1280, 720}, {1920, 1080}, {1, 1}};

static void Activate(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID)
{
    Kova_TextDisp_SetActive(pDisplay, scContextID, 1);
    if (Colors() == PACKED) { // an activation ends 32-bit mode, and entering it closes the fonts
        kova_sint32 siFont = -1;
        ASSERT_EQ(pDisplay->Create32BitPlane(pDisplay, scContextID, 0, 0, planes[scContextID].uiWidth,
                                             planes[scContextID].uiHeight),
                  0);
        ASSERT_EQ(pDisplay->CreateFont(pDisplay, scContextID, FONT, 20, KOVA_FONTATTR_NONE, &siFont), 0);
        ASSERT_EQ(pDisplay->CreateFont(pDisplay, scContextID, OTHER_FONT, 33, KOVA_FONTATTR_NONE, &siFont),
                  0);
        ASSERT_EQ(pDisplay->SetFont(pDisplay, scContextID, siFont, 33, KOVA_FONTATTR_NONE), 0);
    }
    // The window of layer 1 is new and has its own palette; a layer gets the palette again.
    if (Layer() == KOVA_GRAPHIC_LAYER1) LoadPalette(pDisplay, scContextID);
}

static void DrawFrame(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID)
{
    KovaTextRect_t rect = {3, 5, 300, 100};
    EXPECT_EQ(pDisplay->FillRect(pDisplay, scContextID, &rect, Color(40)), 0);
    EXPECT_EQ(pDisplay->DrawLine(pDisplay, scContextID, 0, 0, 700, 400, Color(41)), 0);
    EXPECT_EQ(DrawText(pDisplay, scContextID, "Context", 20, 30), 0);
    KovaTextRect_t corner = {0, 0, 1, 1};
    EXPECT_EQ(pDisplay->FillRect(pDisplay, scContextID, &corner, Color(44)), 0);
}

static void DrawFrame(Reference &reference, const Font &font)
{
    IDirectFBSurface *const pSurface = reference.Surface();
    reference.Fill(3, 5, 300, 100, 40);
    reference.SetColor(41);
    pSurface->DrawLine(pSurface, 0, 0, 700, 400);
    pSurface->SetFont(pSurface, font.Interface());
    reference.SetColor(EDGE);
    reference.Text("Context", 22, 32);
    reference.SetColor(TEXT);
    reference.Text("Context", 20, 30);
    reference.Fill(0, 0, 1, 1, 44);
}

static void ExpectBlank(const Picture_t &picture)
{
    EXPECT_EQ(std::vector<kova_uint8>(picture.data.size()), picture.data);
}

// tests/soak measures whether memory grows with the switches.
TEST(Contexts, DrawRightAfterEachOfManySwitches)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay();
    for (const auto &plane : planes) GivenContext(pDisplay, plane.uiWidth, plane.uiHeight);
    LoadPalette(pDisplay, 0);
    pDisplay->Show(pDisplay, 0);
    Kova_TextDisp_SetActive(pDisplay, 0, 1);
    EXPECT_EQ(GivenFont(pDisplay, FONT, 20), 0);
    EXPECT_EQ(GivenFont(pDisplay, OTHER_FONT, 33), 1);
    pDisplay->SetTextForeColor(pDisplay, 0, Color(TEXT));
    pDisplay->SetEdgeColor(pDisplay, 0, Color(EDGE));
    pDisplay->SetEdgeType(pDisplay, 0, KOVA_TEXT_ERIGTHDROPSHADOW);
    const Font font(OTHER_FONT, 33);
    std::vector<Picture_t> expected;
    for (const auto &plane : planes) {
        Reference reference(plane.uiWidth, plane.uiHeight);
        DrawFrame(reference, font);
        expected.push_back(reference.Pixels());
    }

    for (int iRound = 0; iRound < ROUNDS; iRound++) {
        // Starts with 1: activating the active context only clears the plane.
        for (const int i : {1, 2, 3, 0}) {
            const auto scContextID = kova_sint8(i);
            Activate(pDisplay, scContextID);
            ExpectBlank(Drawn());
            DrawFrame(pDisplay, scContextID);
            ASSERT_TRUE(Same(expected[size_t(i)], Drawn())) << "round " << iRound << " context " << i;
        }
    }
}

// Creates a context with another plane while context 0 is active: its plane is built at its activation, which
// is logged.
static kova_sint8 GivenInactiveContext(pKovaITextDisplay_t pDisplay, kova_uint32 uiWidth,
                                       kova_uint32 uiHeight)
{
    testing::internal::CaptureStderr();
    const kova_sint8 scContextID = GivenContext(pDisplay, uiWidth, uiHeight);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Inactive context!"), std::string::npos);
    return scContextID;
}

// Draws directly after the activation.
TEST(Contexts, DrawOnTheWholeOfALargerPlaneAtOnce)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    const kova_sint8 scLarger = GivenInactiveContext(pDisplay, 1280, 720);
    KovaTextRect_t rect = {0, 0, 1280, 720};
    Reference reference(1280, 720);
    reference.Fill(0, 0, 1280, 720, 33);

    Kova_TextDisp_SetActive(pDisplay, scLarger, 1);
    if (Layer() == KOVA_GRAPHIC_LAYER1) LoadPalette(pDisplay, scLarger);
    if (Colors() == PACKED) pDisplay->Create32BitPlane(pDisplay, scLarger, 0, 0, 1280, 720);
    EXPECT_EQ(pDisplay->FillRect(pDisplay, scLarger, &rect, Color(33)), 0);

    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));
}

TEST(Contexts, RefuseToDrawForAnotherThanTheActiveOne)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    const kova_sint8 scOther = GivenContext(pDisplay);
    KovaTextRect_t rect = {0, 0, 50, 50};
    Reference reference;

    testing::internal::CaptureStderr();
    EXPECT_EQ(pDisplay->FillRect(pDisplay, scOther, &rect, Color(5)), -1);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Inactive context!"), std::string::npos);
    ExpectBlank(Drawn());

    // Any context can draw a line.
    EXPECT_EQ(pDisplay->DrawLine(pDisplay, scOther, 5, 5, 60, 60, Color(6)), 0);
    reference.SetColor(6);
    reference->DrawLine(reference.Surface(), 5, 5, 60, 60);
    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));
}

TEST(Contexts, ReloadThePaletteOnALayer)
{
    if (Layer() == KOVA_GRAPHIC_LAYER1 || Colors() == PACKED)
        GTEST_SKIP() << "not where no palette is loaded";
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    const kova_sint8 scOther = GivenInactiveContext(pDisplay, PLANE_WIDTH, 100);
    Reference reference(PLANE_WIDTH, 100);

    Kova_TextDisp_SetActive(pDisplay, scOther, 1);
    KovaTextRect_t rect = {10, 10, 60, 60};
    EXPECT_EQ(pDisplay->FillRect(pDisplay, scOther, &rect, Color(201)), 0);

    reference.Fill(10, 10, 60, 60, 201);
    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));
    if (Colors() == INDEX) {
        IDirectFBSurface *const pSurface = DisplaySurface();
        IDirectFBPalette *pPalette = nullptr;
        DFBColor color = {};
        ASSERT_EQ(pSurface->GetPalette(pSurface, &pPalette), DFB_OK);
        pPalette->GetEntries(pPalette, &color, 1, 201);
        EXPECT_EQ(color.r, TestPalette()[201].r);
        EXPECT_EQ(color.g, TestPalette()[201].g);
        EXPECT_EQ(color.b, TestPalette()[201].b);
        EXPECT_EQ(color.a, TestPalette()[201].a);
        pPalette->Release(pPalette);
        pSurface->Release(pSurface);
    }
}

static void ExpectTextIn(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID, const Font &font)
{
    Reference reference;
    pDisplay->Show(pDisplay, scContextID);
    pDisplay->SetTextForeColor(pDisplay, scContextID, Color(TEXT));
    pDisplay->SetEdgeType(pDisplay, scContextID, KOVA_TEXT_ENONE);
    EXPECT_EQ(DrawText(pDisplay, scContextID, "Font", 20, 30), 0);
    reference->SetFont(reference.Surface(), font.Interface());
    reference.SetColor(TEXT);
    reference.Text("Font", 20, 30);
    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));
}

// In 32-bit mode fonts are closed with the plane.
TEST(Fonts, AreOpenedAgainAfterAnActivation)
{
    if (Colors() == PACKED) GTEST_SKIP() << "no font outlives a 32-bit plane";
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    const kova_sint8 scOther = GivenContext(pDisplay);
    GivenFont(pDisplay, FONT, 20);
    GivenFont(pDisplay, OTHER_FONT, 33);
    const Font sans(FONT, 20), bold(OTHER_FONT, 33);

    Kova_TextDisp_SetActive(pDisplay, scOther, 1);
    if (Layer() == KOVA_GRAPHIC_LAYER1) LoadPalette(pDisplay, scOther);

    ExpectTextIn(pDisplay, scOther, bold); // the font selected before
    EXPECT_EQ(pDisplay->SetFont(pDisplay, scOther, 0, 20, KOVA_FONTATTR_NONE), 0);
    ExpectTextIn(pDisplay, scOther, sans);
}

TEST(Fonts, LoseAScaledWidthInAnActivation)
{
    if (Colors() == PACKED) GTEST_SKIP() << "no font outlives a 32-bit plane";
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    const kova_sint8 scOther = GivenContext(pDisplay);
    GivenFont(pDisplay, FONT, 20);
    const Font wide(FONT, 20, 0, 40), plain(FONT, 20);
    EXPECT_EQ(pDisplay->ScaleFontWidth(pDisplay, 0, 1, 2 * 65536), 0);
    ExpectTextIn(pDisplay, 0, wide);

    Kova_TextDisp_SetActive(pDisplay, scOther, 1);
    if (Layer() == KOVA_GRAPHIC_LAYER1) LoadPalette(pDisplay, scOther);

    ExpectTextIn(pDisplay, scOther, plain);
}

// A font whose name is too long keeps its slot but has no name. An activation does not open it again, and the
// fonts behind it move down. The selected number then has no font: DirectFB refuses to open one without a
// name, no font is selected, and text is refused until one is.
TEST(Fonts, MoveDownToReplaceANamelessOne)
{
    if (Colors() == PACKED) GTEST_SKIP() << "no font outlives a 32-bit plane";
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    const kova_sint8 scOther = GivenContext(pDisplay);
    std::string longName = "/usr/share/fonts/truetype/dejavu/";
    while (longName.size() < 110) longName += "./";
    longName += "DejaVuSansMono.ttf";
    kova_sint32 siFont = 77;
    EXPECT_EQ(GivenFont(pDisplay, FONT, 20), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(pDisplay->CreateFont(pDisplay, 0, longName.c_str(), 25, KOVA_FONTATTR_NONE, &siFont), 0);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("font name too long"), std::string::npos);
    EXPECT_EQ(siFont, 77);
    EXPECT_EQ(GivenFont(pDisplay, OTHER_FONT, 33), 2);
    const Font bold(OTHER_FONT, 33);
    // The display loses this font with the activation, so the test releases it.
    IDirectFBFont *const pNameless = reinterpret_cast<const KovaDFBDisplay_t *>(pDisplay)->font[1].pFont;
    ASSERT_NE(pNameless, nullptr);

    testing::internal::CaptureStderr();
    Kova_TextDisp_SetActive(pDisplay, scOther, 1);
    const std::string reported = testing::internal::GetCapturedStderr();
    EXPECT_NE(reported.find("TextDisp: [thread:"), std::string::npos) << reported;
    if (Layer() == KOVA_GRAPHIC_LAYER1) LoadPalette(pDisplay, scOther);

    testing::internal::CaptureStderr();
    EXPECT_EQ(DrawText(pDisplay, scOther, "Font", 20, 30), -1);
    EXPECT_EQ(pDisplay->SetFont(pDisplay, scOther, 2, 33, KOVA_FONTATTR_NONE), -1);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Invalid Font id!"), std::string::npos);
    EXPECT_EQ(pDisplay->SetFont(pDisplay, scOther, 1, 33, KOVA_FONTATTR_NONE), 0);
    ExpectTextIn(pDisplay, scOther, bold);
    EXPECT_EQ(pNameless->Release(pNameless), DFB_OK);
}

TEST(Contexts, DrawAgainAfterADeactivation)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    GivenFont(pDisplay, FONT, 20);
    KovaTextRect_t rect = {10, 10, 60, 60};

    Kova_TextDisp_SetActive(pDisplay, 0, 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(pDisplay->FillRect(pDisplay, 0, &rect, Color(5)), -1);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Inactive context!"), std::string::npos);

    Kova_TextDisp_SetActive(pDisplay, 0, 1);
    if (Colors() == PACKED) { // the activation ended 32-bit mode
        EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, PLANE_WIDTH, PLANE_HEIGHT), 0);
    }
    kova_sint32 siFont = -1;
    EXPECT_EQ(pDisplay->CreateFont(pDisplay, 0, FONT, 20, KOVA_FONTATTR_NONE, &siFont), 0);
    EXPECT_EQ(siFont, 0); // the deactivation released the fonts
    EXPECT_EQ(pDisplay->SetFont(pDisplay, 0, 0, 20, KOVA_FONTATTR_NONE), 0);
    // The layer is gone, so on a layer only results and reports can be checked.
    EXPECT_EQ(pDisplay->FillRect(pDisplay, 0, &rect, Color(5)), 0);
    pDisplay->SetEdgeType(pDisplay, 0, KOVA_TEXT_ENONE);
    EXPECT_EQ(DrawText(pDisplay, 0, "again", 10, 10), 0);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
}
