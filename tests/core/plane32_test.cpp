// SPDX-License-Identifier: MIT
#include "expect.h"

using namespace test;

static std::string Configured(const std::string &layer, const std::string &size)
{
    return "  " + layer + ".SetCooperativeLevel EXCLUSIVE\n  " + layer + ".GetConfiguration\n  " + layer +
           ".SetConfiguration WIDTH|HEIGHT|PIXELFORMAT " + size + " ARGB\n";
}

// The clip of the new plane, and clearing it in 32-bit colours.
static std::string MadeReady(const std::string &surface)
{
    return "  " + surface + ".SetClip 0,0 1279,719\n  " + surface + ".SetBlittingFlags NOFX\n";
}

static std::string Created(const std::string &body)
{
    return "enter Create32BitPlane\n" + body + "exit Create32BitPlane\n";
}

static std::string Released(const std::string &body)
{
    return "enter Release32BitPanle\n" + body + "exit Release32BitPanle\n";
}

TEST(Create32BitPlane, KeepsTheExistingSurface)
{
    for (const bool bShown : {true, false}) {
        pKovaITextDisplay_t pDisplay =
            bShown ? GivenShownDisplay(KOVA_GRAPHIC_LAYER2) : GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
        const std::string surface = NameOf(RecordOf(pDisplay)->pBaseSurface);
        const std::string layer = "layer" + surface.substr(strlen("base"));

        EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 11, 22, 1280, 720), 0);

        EXPECT_EQ(Trace(), Created(Configured(layer, "1280x720") + MadeReady(surface) +
                                   Wiped(surface, PACKED_COLORS, "1280x720")));
        const KovaDFBDisplay_t &record = *RecordOf(pDisplay);
        EXPECT_EQ(record.bColor32, 1);
        EXPECT_EQ(record.scActiveContextID, 0);
        EXPECT_EQ(record.uiPlaneWidth, 1280u);
        EXPECT_EQ(record.uiPlaneHeight, 720u);
        EXPECT_EQ(record.context[0].uiPlaneWidth, PLANE_WIDTH); // the context keeps its size
        EXPECT_EQ(record.context[0].uiPlaneHeight, PLANE_HEIGHT);
        EXPECT_EQ(record.clip.x1, 0);
        EXPECT_EQ(record.clip.y1, 0);
        EXPECT_EQ(record.clip.x2, 1279);
        EXPECT_EQ(record.clip.y2, 719);
        EXPECT_EQ(record.pActiveSurface, record.pBaseSurface);
        EXPECT_EQ(record.bShow, bShown);
        EXPECT_TRUE(LockIsFree(pDisplay));
        Destroy(pDisplay);
    }
}

TEST(Create32BitPlane, KeepsTheExistingSurfaceThoughNoneIsDrawnInto)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    IDirectFBSurface *const pBase = RecordOf(pDisplay)->pBaseSurface;
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0); // it does not exist
    ClearTrace();

    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 720, 480), 0);

    EXPECT_EQ(TraceOf("layer.GetSurface"), "");
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, pBase);
    Destroy(pDisplay);
}

TEST(Create32BitPlane, DropsAllFonts)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    kova_sint32 siFont = -1;
    EXPECT_EQ(pDisplay->CreateFont(pDisplay, 0, "serif.ttf", 30, KOVA_FONTATTR_NONE, &siFont), 0);
    GivenFont(pDisplay);

    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    EXPECT_EQ(Trace(), Created(Configured("layer", "1280x720") + MadeReady("base") +
                               "  font.Release\n"
                               "  font2.Release\n" + // and no font is opened again
                               Wiped("base", PACKED_COLORS, "1280x720")));
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, -1);
    for (const KovaDFBFont_t &font : RecordOf(pDisplay)->font) {
        EXPECT_EQ(font.pFont, nullptr);
        EXPECT_EQ(font.pcFontName, nullptr);
        EXPECT_EQ(font.ucHeight, 0u);
    }
    EXPECT_STREQ(RecordOf(pDisplay)->FontName[1], "sans.ttf");
    Destroy(pDisplay);
}

TEST(Create32BitPlane, MakesAnyContextTheActiveOne)
{
    for (const int iContext : {3, 0, 4, -1, 100}) { // even an invalid one
        pKovaITextDisplay_t pDisplay =
            GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));

        EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, kova_sint8(iContext), 0, 0, 1280, 720), 0);

        EXPECT_FALSE(Contains(Trace(), "ERROR"));
        EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, iContext);
        Destroy(pDisplay);
    }
}

TEST(Create32BitPlane, ObtainsTheLayerAndItsSurfaceWhereThereIsNone)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER3);
    testing::internal::CaptureStdout();
    Kova_TextDFBDisp_SetActive(pDisplay, 0, 0);
    testing::internal::GetCapturedStdout();
    ClearTrace();
    TemporarilyUnavailable(3);
    std::string retries;
    for (int i = 0; i < 3; i++) {
        retries += "  dfb.GetDisplayLayer 2\n"
                   "  error Create32BitPlane: #################### DFB_TEMPUNAVAIL " +
                   std::to_string(i) +
                   " #######################\n"
                   "  usleep 50000\n"; // with the lock held
    }

    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    EXPECT_EQ(Trace(), Created(retries + "  dfb.GetDisplayLayer 2\n" + Configured("layer2", "1280x720") +
                               "  layer2.GetSurface\n" + MadeReady("base2") +
                               Wiped("base2", PACKED_COLORS, "1280x720")));
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, 0);
    Destroy(pDisplay);
}

TEST(Create32BitPlane, FailsWhenTheLayerIsNotObtained)
{
    for (const bool bNothing : {false, true}) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
        testing::internal::CaptureStdout();
        Kova_TextDFBDisp_SetActive(pDisplay, 0, 0);
        testing::internal::GetCapturedStdout();
        RecordOf(pDisplay)->scActiveContextID = 0;
        ClearTrace();
        if (bNothing) {
            GiveNothing("Dfb.GetDisplayLayer");
        } else {
            FailNth("Dfb.GetDisplayLayer", 1, DFB_BUSY);
        }

        EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), -1);

        EXPECT_TRUE(Contains(
            Trace(), bNothing ? "  error Create32BitPlane: Display layer = NULL after GetDisplayLayer\n"
                              : "  error Create32BitPlane: GetDisplayLayer result = " +
                                    std::to_string(int(DFB_BUSY)) + "\n"))
            << Trace();
        EXPECT_EQ(CountOf(Trace(), "\n"), 4) << Trace();
        EXPECT_TRUE(Contains(Trace(), "\nexit Create32BitPlane\n"));
        EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, -2);
        EXPECT_EQ(RecordOf(pDisplay)->bColor32, 1); // set already
        EXPECT_TRUE(LockIsFree(pDisplay));
        Destroy(pDisplay);
    }
}

TEST(Create32BitPlane, ContinuesWhenACallFails)
{
    const struct {
        const char *pcMethod;
        bool bBrief;
    } rows[] = {
        {"Layer.SetCooperativeLevel", true}, {"Layer.GetConfiguration", true},
        {"Layer.SetConfiguration", true},    {"Surface.SetClip", false},
        {"Surface.SetBlittingFlags", false}, {"Surface.SetColor", false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.pcMethod);
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
        const std::string surface = NameOf(RecordOf(pDisplay)->pBaseSurface);
        const std::string layer = "layer" + surface.substr(strlen("base"));
        FailNth(row.pcMethod, 1, DFB_FAILURE);

        EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

        EXPECT_EQ(Trace(), PutAfter(Created(Configured(layer, "1280x720") + MadeReady(surface) +
                                            Wiped(surface, PACKED_COLORS, "1280x720")),
                                    strchr(row.pcMethod, '.'),
                                    "  " + (row.bBrief ? "DFB_CHECK_BRIEF\n" : CheckLine(DFB_FAILURE))));
        EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, 0);
        Destroy(pDisplay);
    }
}

TEST(Create32BitPlane, ReportsAFontThatCannotBeReleasedAndForgetsIt)
{
    const LeaksAreMeant_t leaks;
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);
    FailNth("Font.Release", 1, DFB_FAILURE);

    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    EXPECT_TRUE(
        Contains(Trace(), "  font.Release\n  " + CheckLine(DFB_FAILURE) + "  base.SetColor 0,0,0,0\n"));
    EXPECT_EQ(RecordOf(pDisplay)->font[0].pFont, nullptr);
    Destroy(pDisplay, "font");
}

TEST(Create32BitPlane, EndsWithoutASurfaceWhenTheLayerReturnsNone)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    testing::internal::CaptureStdout();
    Kova_TextDFBDisp_SetActive(pDisplay, 0, 0);
    testing::internal::GetCapturedStdout();
    ClearTrace();
    FailNth("Layer.GetSurface", 1, DFB_FAILURE);

    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    const std::string check = CheckLine(DFB_DESTROYED); // clip, blitting flags, colour and rectangle
    EXPECT_EQ(Trace(), Created("  dfb.GetDisplayLayer 1\n" + Configured("layer2", "1280x720") +
                               "  layer2.GetSurface\nDFB_CHECK_BRIEF\n" + check + check + check + check));
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, nullptr);
    Destroy(pDisplay);
}

TEST(Create32BitPlane, RefusesANullDisplayWithoutAnErrorMessage)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(pDisplay->Create32BitPlane(nullptr, 0, 0, 0, 1280, 720), -1);

    EXPECT_EQ(Trace(), Created(""));
    Destroy(pDisplay);
}

TEST(Release32BitPlane, ReleasesEverythingAndStaysInTheMode)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    IDirectFBSurface *const pBackup = GivenBackupSurface(pDisplay);
    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);
    GivenFont(pDisplay);

    EXPECT_EQ(pDisplay->Release32BitPlane(pDisplay), 0);

    EXPECT_EQ(Trace(), Released("  base.Release\n"
                                "  layer.Release\n"
                                "  font.Release\n"));
    const KovaDFBDisplay_t &record = *RecordOf(pDisplay);
    EXPECT_EQ(record.pLayer, nullptr);
    EXPECT_EQ(record.pBaseSurface, nullptr);
    EXPECT_EQ(record.pActiveSurface, nullptr);
    EXPECT_EQ(record.pBackupSurface, pBackup); // not released here
    EXPECT_EQ(record.scActiveContextID, -2);
    EXPECT_EQ(record.scActiveFontID, -1);
    EXPECT_EQ(record.font[0].pFont, nullptr);
    EXPECT_EQ(record.font[0].pcFontName, nullptr);
    EXPECT_EQ(record.bColor32, 1);
    EXPECT_TRUE(LockIsFree(pDisplay));
    ClearTrace();
    EXPECT_EQ(pDisplay->Release32BitPlane(pDisplay), 0); // again: nothing is left to release
    EXPECT_EQ(Trace(), Released(""));
    Destroy(pDisplay);
}

TEST(Release32BitPlane, CanBeFollowedByAPlaneThatWorks)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);
    EXPECT_EQ(pDisplay->Release32BitPlane(pDisplay), 0);
    ClearTrace();
    EXPECT_EQ(pDisplay->DrawLine(pDisplay, 0, 1, 2, 3, 4, 5), 0); // draws nothing
    EXPECT_EQ(CallsOnly(Trace()).find(".DrawLine"), std::string::npos);

    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    ClearTrace();
    EXPECT_EQ(pDisplay->DrawLine(pDisplay, 0, 1, 2, 3, 4, 5), 0);
    EXPECT_TRUE(Contains(Trace(), "base2.DrawLine 1,2 3,4\n"));
    Destroy(pDisplay);
}

TEST(Release32BitPlane, ReportsWhatCannotBeReleasedAndForgetsIt)
{
    const LeaksAreMeant_t leaks;
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);
    GivenFont(pDisplay);
    FailNth("Surface.Release", 1, DFB_FAILURE);
    FailNth("Layer.Release", 1, DFB_FAILURE);
    FailNth("Font.Release", 1, DFB_FAILURE);

    EXPECT_EQ(pDisplay->Release32BitPlane(pDisplay), 0);

    EXPECT_EQ(Trace(), Released("  base.Release\n  DFB_CHECK_BRIEF\n"
                                "  layer.Release\n  DFB_CHECK_BRIEF\n"
                                "  font.Release\n" +
                                CheckLine(DFB_FAILURE)));
    EXPECT_EQ(RecordOf(pDisplay)->pLayer, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->pBaseSurface, nullptr);
    Destroy(pDisplay, "base font layer");
}

TEST(Release32BitPlane, RefusesADisplayInAnotherMode)
{
    for (const ColorMode_e eMode : {INDEX_COLORS, PALETTE_COLORS}) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, eMode);

        EXPECT_EQ(pDisplay->Release32BitPlane(pDisplay), -1);

        EXPECT_EQ(Trace(), Released("error Release32BitPanle: Not a 32 bit plane, can't release!\n"));
        EXPECT_NE(RecordOf(pDisplay)->pLayer, nullptr);
        EXPECT_TRUE(LockIsFree(pDisplay));
        Destroy(pDisplay);
    }
}

TEST(Release32BitPlane, ReportsANullDisplayOnStandardOutput)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    testing::internal::CaptureStdout();
    EXPECT_EQ(pDisplay->Release32BitPlane(nullptr), -1);
    fflush(stdout);

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "keldrun: error \n");
    EXPECT_EQ(Trace(), Released(""));
    Destroy(pDisplay);
}
