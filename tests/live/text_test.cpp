// SPDX-License-Identifier: MIT
// Strings with their edges, in every font the display can open, compared with the same passes drawn by
// DirectFB.
#include "fixture.h"

#include <string.h>

using namespace live;

struct Edge_t {
    KovaTextEdgeType_e eEdge;
    std::vector<DFBPoint> edges; // positions of the string in the edge colour, in this order
    DFBPoint text;               // then its position in the text colour
};

static const std::vector<Edge_t> &Edges()
{
    static const std::vector<Edge_t> edges = {
        {KOVA_TEXT_ENONE, {}, {0, 0}},
        {KOVA_TEXT_ERAISED, {{0, -2}}, {2, 0}},
        {KOVA_TEXT_EDEPRESSED, {{0, 1}, {1, 1}}, {0, 0}},
        {KOVA_TEXT_EUNIFORM, {{0, 1}, {2, 1}, {1, 0}, {1, 2}}, {1, 1}},
        {KOVA_TEXT_ELEFTDROPSHADOW, {{-2, 2}}, {0, 0}},
        {KOVA_TEXT_ERIGTHDROPSHADOW, {{2, 2}}, {0, 0}},
    };
    return edges;
}

enum { BACKGROUND = 40, EDGE = 8, TEXT = 13 };

static void DrawPasses(Reference &reference, const Edge_t &edge, const std::string &text, int iX, int iY)
{
    reference.SetColor(EDGE);
    for (const DFBPoint &offset : edge.edges) reference.Text(text, iX + offset.x, iY + offset.y);
    reference.SetColor(TEXT);
    reference.Text(text, iX + edge.text.x, iY + edge.text.y);
}

static void DrawBackground(pKovaITextDisplay_t pDisplay)
{
    KovaTextRect_t rect = {0, 30, PLANE_WIDTH, PLANE_HEIGHT - 60};
    pDisplay->FillRect(pDisplay, 0, &rect, Color(BACKGROUND));
}

// Uses a font with the same description as the one selected in the display.
static void ExpectEdges(pKovaITextDisplay_t pDisplay, const Font &font)
{
    pDisplay->SetTextForeColor(pDisplay, 0, Color(TEXT));
    pDisplay->SetEdgeColor(pDisplay, 0, Color(EDGE));
    for (const Edge_t &edge : Edges()) {
        pDisplay->Show(pDisplay, 0);
        DrawBackground(pDisplay);
        EXPECT_EQ(pDisplay->SetEdgeType(pDisplay, 0, edge.eEdge), 0);
        EXPECT_EQ(DrawText(pDisplay, 0, "Caption, fjord 0123", 20, 70), 0);
        const Picture_t seen = Drawn();

        for (const Edge_t &other : Edges()) {
            Reference reference;
            reference.Fill(0, 30, PLANE_WIDTH, PLANE_HEIGHT - 60, BACKGROUND);
            reference->SetFont(reference.Surface(), font.Interface());
            DrawPasses(reference, other, "Caption, fjord 0123", 20, 70);
            if (other.eEdge == edge.eEdge) {
                EXPECT_TRUE(Same(reference.Pixels(), seen)) << "edge type " << edge.eEdge;
            } else { // the comparison distinguishes every pair of edges
                EXPECT_FALSE(Same(reference.Pixels(), seen)) << edge.eEdge << " and " << other.eEdge;
            }
        }
    }
}

TEST(DrawString, DrawsEachEdgeTypeInItsPasses)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    GivenFont(pDisplay, FONT, 24);
    const Font font(FONT, 24);

    ExpectEdges(pDisplay, font);
}

TEST(DrawString, DrawsEachEdgeTypeInASlantedFont)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    const kova_sint32 siFont = GivenFont(pDisplay, FONT, 24);
    EXPECT_EQ(pDisplay->SetFont(pDisplay, 0, siFont, 30, KOVA_FONTATTR_ITALIC), 0);
    const Font font(FONT, 30, DFFA_STYLE_ITALIC);

    ExpectEdges(pDisplay, font);
}

TEST(DrawString, DrawsPlainTextForTheLastEdgeType)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Reference reference;
    GivenFont(pDisplay, FONT, 24);
    const Font font(FONT, 24);
    pDisplay->SetTextForeColor(pDisplay, 0, Color(TEXT));
    pDisplay->SetEdgeColor(pDisplay, 0, Color(EDGE));

    EXPECT_EQ(pDisplay->SetEdgeType(pDisplay, 0, KOVA_TEXT_EMAX), 0);
    EXPECT_EQ(DrawText(pDisplay, 0, "Caption", 20, 70), 0);

    reference->SetFont(reference.Surface(), font.Interface());
    DrawPasses(reference, Edges()[0], "Caption", 20, 70);
    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));
}

// The alignment has no effect.
TEST(DrawString, StartsAtItsPositionWhateverTheAlignment)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    GivenFont(pDisplay, FONT, 24);
    const Font font(FONT, 24);
    const std::vector<unsigned short> wide = Wide("aligned");
    pDisplay->SetTextForeColor(pDisplay, 0, Color(TEXT));
    pDisplay->SetEdgeType(pDisplay, 0, KOVA_TEXT_ENONE);

    for (const auto eFlag : {KOVA_TEXT_LEFT, KOVA_TEXT_CENTER, KOVA_TEXT_RIGHT, KOVA_TEXT_BOTTOMCENTER}) {
        Reference reference;
        pDisplay->Show(pDisplay, 0);
        EXPECT_EQ(pDisplay->DrawString(pDisplay, 0, wide.data(), kova_uint8(wide.size() * 2), 100, 50,
                                       KOVA_TEXT_UNICODE, eFlag),
                  0);
        reference->SetFont(reference.Surface(), font.Interface());
        DrawPasses(reference, Edges()[0], "aligned", 100, 50);
        EXPECT_TRUE(Same(reference.Pixels(), Drawn())) << eFlag;
    }
}

TEST(DrawString, DrawsEdgesThatStartOutsideThePlane)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    GivenFont(pDisplay, FONT, 24);
    const Font font(FONT, 24);
    pDisplay->SetTextForeColor(pDisplay, 0, Color(TEXT));
    pDisplay->SetEdgeColor(pDisplay, 0, Color(EDGE));

    for (const Edge_t &edge : Edges()) {
        Reference reference;
        pDisplay->Show(pDisplay, 0);
        pDisplay->SetEdgeType(pDisplay, 0, edge.eEdge);
        EXPECT_EQ(DrawText(pDisplay, 0, "WWW", 1, 1), 0);
        EXPECT_EQ(DrawText(pDisplay, 0, "WWWWWWWW", PLANE_WIDTH - 60, PLANE_HEIGHT - 12), 0);
        reference->SetFont(reference.Surface(), font.Interface());
        DrawPasses(reference, edge, "WWW", 1, 1);
        DrawPasses(reference, edge, "WWWWWWWW", PLANE_WIDTH - 60, PLANE_HEIGHT - 12);
        EXPECT_TRUE(Same(reference.Pixels(), Drawn())) << edge.eEdge;
    }
}

TEST(DrawString, StaysInsideTheClip)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Reference reference;
    GivenFont(pDisplay, FONT, 40);
    const Font font(FONT, 40);
    KovaTextRect_t rect = {40, 60, 90, 20};
    const DFBRegion region = {40, 60, 129, 79};
    pDisplay->SetTextForeColor(pDisplay, 0, Color(TEXT));
    pDisplay->SetEdgeColor(pDisplay, 0, Color(EDGE));
    pDisplay->SetEdgeType(pDisplay, 0, KOVA_TEXT_EUNIFORM);

    pDisplay->SetClip(pDisplay, 0, &rect);
    EXPECT_EQ(DrawText(pDisplay, 0, "CLIPPED", 20, 50), 0);

    reference->SetClip(reference.Surface(), &region);
    reference->SetFont(reference.Surface(), font.Interface());
    DrawPasses(reference, Edges()[3], "CLIPPED", 20, 50);
    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));
}

TEST(DrawString, DrawsSixteenBitAndUTF8TextAndNoASCII)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    GivenFont(pDisplay, FONT, 28);
    const Font font(FONT, 28);
    // A, e acute, euro sign, omega.
    const unsigned short ausWide[] = {0x41, 0xE9, 0x20AC, 0x3A9};
    const std::string utf8 = "A\xC3\xA9\xE2\x82\xAC\xCE\xA9";
    Reference reference;
    pDisplay->SetTextForeColor(pDisplay, 0, Color(TEXT));
    pDisplay->SetEdgeType(pDisplay, 0, KOVA_TEXT_ENONE);
    reference->SetFont(reference.Surface(), font.Interface());
    DrawPasses(reference, Edges()[0], utf8, 30, 30);

    pDisplay->DrawString(pDisplay, 0, ausWide, 8, 30, 30, KOVA_TEXT_UNICODE, KOVA_TEXT_TOPLEFT);
    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));

    pDisplay->Show(pDisplay, 0);
    unsigned short ausBytes[16] = {};
    memcpy(ausBytes, utf8.data(), utf8.size());
    pDisplay->DrawString(pDisplay, 0, ausBytes, kova_uint8(utf8.size()), 30, 30, KOVA_TEXT_UTF8,
                         KOVA_TEXT_TOPLEFT);
    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));

    pDisplay->Show(pDisplay, 0);
    EXPECT_EQ(pDisplay->DrawString(pDisplay, 0, ausBytes, kova_uint8(utf8.size()), 30, 30, KOVA_TEXT_ASCII,
                                   KOVA_TEXT_TOPLEFT),
              0);
    for (kova_uint8 uc : Drawn().data) ASSERT_EQ(uc, 0);
}

TEST(DrawString, IgnoresTheOddByteOfASixteenBitText)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    GivenFont(pDisplay, FONT, 28);
    const Font font(FONT, 28);
    Reference reference;
    const std::vector<unsigned short> wide = Wide("abcd");
    pDisplay->SetTextForeColor(pDisplay, 0, Color(TEXT));
    pDisplay->SetEdgeType(pDisplay, 0, KOVA_TEXT_ENONE);

    pDisplay->DrawString(pDisplay, 0, wide.data(), 7, 30, 30, KOVA_TEXT_UNICODE, KOVA_TEXT_TOPLEFT);

    reference->SetFont(reference.Surface(), font.Interface());
    DrawPasses(reference, Edges()[0], "abc", 30, 30);
    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));
}

TEST(Fonts, DrawAsTheyAreOpenedAndReopened)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    const kova_sint32 siSans = GivenFont(pDisplay, FONT, 20);
    const kova_sint32 siBold = GivenFont(pDisplay, OTHER_FONT, 26, KOVA_FONTATTR_MONOCHROME);
    EXPECT_EQ(siSans, 0);
    EXPECT_EQ(siBold, 1);
    const Font sans20(FONT, 20), bold26(OTHER_FONT, 26, DFFA_MONOCHROME), bold26Smooth(OTHER_FONT, 26),
        sans34(FONT, 34), slanted34(FONT, 34, DFFA_STYLE_ITALIC);
    pDisplay->SetTextForeColor(pDisplay, 0, Color(TEXT));
    pDisplay->SetEdgeType(pDisplay, 0, KOVA_TEXT_ENONE);

    const struct {
        kova_sint32 siFont;
        kova_uint32 ucHeight;
        KovaTextFontAttr_e eAttr;
        const Font &font;
        const char *pcWhat;
    } cases[] = {
        {siBold, 26, KOVA_FONTATTR_MONOCHROME, bold26, "as created, attributes passed on"},
        {siSans, 20, KOVA_FONTATTR_NONE, sans20, "as created"},
        {siBold, 26, KOVA_FONTATTR_NONE, bold26Smooth, "opened again with other attributes"},
        {siBold, 26, KOVA_FONTATTR_MONOCHROME, bold26Smooth,
         "opened again, all attributes but italic dropped"},
        {siSans, 34, KOVA_FONTATTR_NONE, sans34, "opened again at another height"},
        {siSans, 34, KOVA_FONTATTR_ITALIC, slanted34, "opened again slanted"},
    };
    std::vector<Picture_t> pictures;
    for (const auto &c : cases) {
        Reference reference;
        pDisplay->Show(pDisplay, 0);
        EXPECT_EQ(pDisplay->SetFont(pDisplay, 0, c.siFont, c.ucHeight, c.eAttr), 0);
        EXPECT_EQ(DrawText(pDisplay, 0, "Handgloves", 10, 40), 0);
        reference->SetFont(reference.Surface(), c.font.Interface());
        DrawPasses(reference, Edges()[0], "Handgloves", 10, 40);
        EXPECT_TRUE(Same(reference.Pixels(), Drawn())) << c.pcWhat;
        pictures.push_back(reference.Pixels());
    }
    // Text with and without anti-aliasing differs. Slanted and upright text does not: published DirectFB
    // accepts the attribute, but does not slant a file without a slanted face.
    EXPECT_FALSE(Same(pictures[0], pictures[2]));
}

TEST(ScaleFontWidth, DrawsWithTheWidthOfTheFactor)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    const kova_sint32 siFont = GivenFont(pDisplay, FONT, 24);
    const Font half(FONT, 24, 0, 12), twice(FONT, 24, 0, 48), plain(FONT, 24);
    pDisplay->SetTextForeColor(pDisplay, 0, Color(TEXT));
    pDisplay->SetEdgeType(pDisplay, 0, KOVA_TEXT_ENONE);

    const auto expect = [&](const Font &font) {
        Reference reference;
        kova_uint32 uiWidth = 0;
        int iWidth = 0;
        const std::vector<unsigned short> wide = Wide("Width");
        pDisplay->Show(pDisplay, 0);
        EXPECT_EQ(DrawText(pDisplay, 0, "Width", 10, 40), 0);
        reference->SetFont(reference.Surface(), font.Interface());
        DrawPasses(reference, Edges()[0], "Width", 10, 40);
        EXPECT_TRUE(Same(reference.Pixels(), Drawn()));
        EXPECT_EQ(pDisplay->GetStringWidth(pDisplay, 0, wide.data(), 10, KOVA_TEXT_UNICODE, &uiWidth), 0);
        font->GetStringWidth(font.Interface(), "Width", 5, &iWidth);
        EXPECT_EQ(int(uiWidth), iWidth);
        return iWidth;
    };
    EXPECT_EQ(pDisplay->ScaleFontWidth(pDisplay, 0, 1, 32768), 0);
    const int iHalf = expect(half);
    EXPECT_EQ(pDisplay->ScaleFontWidth(pDisplay, 0, 0, 2 * 65536), 0); // scales although enable is false
    const int iTwice = expect(twice);
    EXPECT_LT(iHalf * 3, iTwice);
    EXPECT_EQ(pDisplay->SetFont(pDisplay, 0, siFont, 24, KOVA_FONTATTR_NONE), 0); // keeps the width
    EXPECT_EQ(expect(twice), iTwice);
    EXPECT_EQ(pDisplay->SetFont(pDisplay, 0, siFont, 25, KOVA_FONTATTR_NONE), 0);
    EXPECT_EQ(pDisplay->SetFont(pDisplay, 0, siFont, 24, KOVA_FONTATTR_NONE), 0); // resets it
    EXPECT_LT(expect(plain), iTwice);
}

TEST(Metrics, AreThoseOfDirectFBsFont)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    GivenFont(pDisplay, FONT, 32);
    const Font font(FONT, 32);
    kova_sint32 siHeight = -1, siPosition = -1, siThickness = -1;
    int iHeight = 0, iPosition = 0, iThickness = 0;

    EXPECT_EQ(pDisplay->GetFontHeight(pDisplay, 0, &siHeight), 0);
    font->GetHeight(font.Interface(), &iHeight);
    EXPECT_EQ(siHeight, iHeight);
    EXPECT_EQ(pDisplay->GetUnderlineInfo(pDisplay, 0, 5, 99, 3, &siPosition, &siThickness), 0);
    font->GetUnderline(font.Interface(), &iPosition, &iThickness);
    EXPECT_EQ(siPosition, iPosition);
    EXPECT_EQ(siThickness, iThickness); // published DirectFB returns 0 and 0 for every font
    EXPECT_GT(iHeight, 32);
}

TEST(CreateFont, LeavesTheNumberUnwrittenWhenTheFileIsNotThere)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    kova_sint32 siFont = 77;

    testing::internal::CaptureStderr();
    EXPECT_EQ(pDisplay->CreateFont(pDisplay, 0, "/no/such/font.ttf", 20, KOVA_FONTATTR_NONE, &siFont), 0);
    const std::string reported = testing::internal::GetCapturedStderr();

    EXPECT_EQ(siFont, 77);
    EXPECT_NE(reported.find("TextDisp: [thread:"), std::string::npos) << reported; // DirectFB's refusal
    EXPECT_NE(reported.find("Can only support max 8 fonts!"), std::string::npos) << reported;
}

TEST(CreateFont, OpensEightFontsAndRefusesTheNinth)
{
    static const char *const apcNames[] = {
        "DejaVuSans.ttf",       "DejaVuSans-Bold.ttf",     "DejaVuSansMono.ttf", "DejaVuSerif.ttf",
        "DejaVuSerif-Bold.ttf", "DejaVuSansMono-Bold.ttf", "./DejaVuSans.ttf",   "./DejaVuSansMono.ttf",
    };
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    const std::string folder = "/usr/share/fonts/truetype/dejavu/";
    pDisplay->SetTextForeColor(pDisplay, 0, Color(TEXT));
    pDisplay->SetEdgeType(pDisplay, 0, KOVA_TEXT_ENONE);

    for (int i = 0; i < 8; i++) {
        EXPECT_EQ(GivenFont(pDisplay, (folder + apcNames[i]).c_str(), kova_uint32(16 + i)), i);
    }
    kova_sint32 siFont = 77;
    testing::internal::CaptureStderr();
    EXPECT_EQ(pDisplay->CreateFont(pDisplay, 0, (folder + "././DejaVuSans.ttf").c_str(), 20,
                                   KOVA_FONTATTR_NONE, &siFont),
              0);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Can only support max 8 fonts!"),
              std::string::npos);
    EXPECT_EQ(siFont, 77);

    for (int i = 0; i < 8; i++) {
        Reference reference;
        const Font font((folder + apcNames[i]).c_str(), 16 + i);
        pDisplay->Show(pDisplay, 0);
        EXPECT_EQ(pDisplay->SetFont(pDisplay, 0, i, kova_uint32(16 + i), KOVA_FONTATTR_NONE), 0);
        EXPECT_EQ(DrawText(pDisplay, 0, "Eight fonts", 10, 40), 0);
        reference->SetFont(reference.Surface(), font.Interface());
        DrawPasses(reference, Edges()[0], "Eight fonts", 10, 40);
        EXPECT_TRUE(Same(reference.Pixels(), Drawn())) << apcNames[i];
    }
}
