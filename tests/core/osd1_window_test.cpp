// SPDX-License-Identifier: MIT
// The window is tested through creation, activation, deactivation and the plane; display_test.cpp tests the
// steps and failures of its creation.
#include "expect.h"
#include "support.h"

using namespace test;

static std::string Activate(pKovaITextDisplay_t pDisplay, kova_bool bActive = 1)
{
    testing::internal::CaptureStdout();
    ClearTrace();
    Kova_TextDisp_SetActive(pDisplay, 0, bActive);
    return testing::internal::GetCapturedStdout();
}

// A display on layer 1 with a context that is not active yet.
static pKovaITextDisplay_t GivenWindow(ColorMode_e eMode = INDEX_COLORS)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER1, eMode);
    KovaTextContextParam_t param = ContextParam();

    EXPECT_EQ(Kova_TextDisp_CreateContext(pDisplay, &param), 0);
    EXPECT_TRUE(AwaitThreadTrace("enter Flip_last_frame_Thread"));
    ClearTrace();
    return pDisplay;
}

static std::string Made(const std::string &number, const std::string &size,
                        const std::string &format = "LUT8")
{
    const std::string base = "  base" + number, window = "  window" + number, layer = "  layer" + number;
    const size_t x = size.find('x');
    const std::string corner = std::to_string(std::stoi(size.substr(0, x)) - 1) + "," +
                               std::to_string(std::stoi(size.substr(x + 1)) - 1);

    return "  dfb.GetDisplayLayer 0\n" + layer + ".SetCooperativeLevel SHARED\n" + layer +
           ".GetConfiguration\n" + layer +
           ".CreateWindow CAPS|WIDTH|HEIGHT|PIXELFORMAT|POSX|POSY|OPTIONS|STACKING " + size + " at 0,0 " +
           format + " ALPHACHANNEL|DOUBLEBUFFER|NOFOCUS ALPHACHANNEL|SCALE LOWER\n" + window +
           ".SetBounds 0,0 1920x1080\n" + window + ".GetSurface\n" + base + ".Clear 0,0,0,0\n" + base +
           ".Flip all WAIT|BLIT|ONSYNC\n" + base + ".Clear 0,0,0,0\n" + window + ".SetOpacity 255\n" +
           window + ".RaiseToTop\n" + base + ".SetClip 0,0 " + corner + "\n" + base +
           ".SetBlittingFlags NOFX\n";
}

static const std::string s_released = "  base.Release\n  window.Release\n  layer.Release\n";

TEST(CreateOSD1Window, ReleasesSurfaceWindowAndLayerBeforeItRecreatesThem)
{
    pKovaITextDisplay_t pDisplay = GivenWindow();

    const std::string output = Activate(pDisplay);

    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_SetActive\n" + s_released + Made("2", "720x480") +
                           "  base2.GetPalette\n"
                           "  log SetPaletteInternal: colors[0].a:0\n"
                           "  palette.SetEntries 1 at 0: 0,0,0,0\n"
                           "  palette.Release\n"
                           "  base2.SetColorIndex 0\n"
                           "  base2.FillRectangle 0,0 720x480\n"
                           "exit Kova_TextDFBDisp_SetActive\n");
    EXPECT_EQ(output, "");
    EXPECT_EQ(LiveObjectNames(), "base2 dfb layer2 window2");
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, RecordOf(pDisplay)->pBaseSurface);
    EXPECT_EQ(NameOf(RecordOf(pDisplay)->pBaseSurface), "base2");
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, 0);
    Destroy(pDisplay);
}

TEST(CreateOSD1Window, ScalesAPlaneOfAnySizeOverTheWholeLayer)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER1);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 2, 7, 8, 100, 50), 0);

    EXPECT_EQ(CallsOnly(Trace()).rfind(CallsOnly(s_released + Made("2", "100x50")), 0), 0u) << Trace();
    const DFBRegion clip = ClipOf(RecordOf(pDisplay)->pBaseSurface);
    EXPECT_EQ(clip.x1, 0);
    EXPECT_EQ(clip.y1, 0);
    EXPECT_EQ(clip.x2, 99);
    EXPECT_EQ(clip.y2, 49);
    EXPECT_EQ(RecordOf(pDisplay)->clip.x2, 99);
    EXPECT_EQ(RecordOf(pDisplay)->clip.y2, 49);
    Destroy(pDisplay);
}

TEST(CreateOSD1Window, RemembersHowLargeItsSurfaceIs)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER1);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 1280, 700), 0);

    EXPECT_EQ(RecordOf(pDisplay)->sWindowSurfaceSize.uiWidth, 1280u);
    EXPECT_EQ(RecordOf(pDisplay)->sWindowSurfaceSize.uiHeight, 700u);
    Destroy(pDisplay);
}

TEST(CreateOSD1Window, DescribesNothingThatItsFlagsDoNotName)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER1, PALETTE_COLORS);

    const DFBWindowDescription desc = LastWindow();
    EXPECT_EQ(desc.pixelformat, DSPF_ARGB);
    EXPECT_EQ(int(desc.surface_caps), 0);
    EXPECT_EQ(desc.parent_id, 0u);
    EXPECT_EQ(desc.resource_id, 0u);
    EXPECT_EQ(desc.toplevel_id, 0u);
    Destroy(pDisplay);
}

TEST(CreateOSD1Window, WaitsForThePrimaryLayer)
{
    TemporarilyUnavailable(2);

    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER1);
    EXPECT_NE(RecordOf(pDisplay)->pActiveSurface, nullptr);
    TemporarilyUnavailable(2); // counted from 0 again
    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 100, 50), 0);

    EXPECT_EQ(TraceOf("error") + TraceOf("usleep") + TraceOf("dfb.GetDisplayLayer"),
              "  error CreateOSD1Window: #################### DFB_TEMPUNAVAIL 0 #######################\n"
              "  error CreateOSD1Window: #################### DFB_TEMPUNAVAIL 1 #######################\n"
              "  usleep 50000\n"
              "  usleep 50000\n"
              "  dfb.GetDisplayLayer 0\n"
              "  dfb.GetDisplayLayer 0\n"
              "  dfb.GetDisplayLayer 0\n");
    Destroy(pDisplay);
}

TEST(CreateOSD1Window, ReportsAMissingLayerButNotWhyItIsMissing)
{
    pKovaITextDisplay_t pDisplay = GivenWindow();
    Fail("Dfb.GetDisplayLayer", DFB_ACCESSDENIED);

    Activate(pDisplay);

    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_SetActive\n" + s_released +
                           "  dfb.GetDisplayLayer 0\n"
                           "  ERROR CreateOSD1Window: pLayer is NULL!\n"
                           "  error Kova_TextDFBDisp_SetActive: Fail to create OSD1 Window!\n"
                           "exit Kova_TextDFBDisp_SetActive\n");
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, -1); // unchanged
    EXPECT_EQ(RecordOf(pDisplay)->pLayer, nullptr);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(CreateOSD1Window, NeedsTheMainInterface)
{
    pKovaITextDisplay_t pDisplay = GivenWindow();
    IDirectFB *const pDfb = RecordOf(pDisplay)->pDfb;
    RecordOf(pDisplay)->pDfb = nullptr;

    Activate(pDisplay);

    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_SetActive\n"
                       "  ERROR CreateOSD1Window: NULL Pointer!\n"
                       "  error Kova_TextDFBDisp_SetActive: Fail to create OSD1 Window!\n"
                       "exit Kova_TextDFBDisp_SetActive\n");
    EXPECT_EQ(LiveObjectNames(), "base dfb layer window"); // checked before anything is released
    RecordOf(pDisplay)->pDfb = pDfb;
    Destroy(pDisplay);
}

TEST(CreateOSD1Window, CountsAsMadeWithoutItsWindowOrItsSurface)
{
    static const struct {
        const char *pcMethod, *pcError;
        bool bWindow;
    } rows[] = {
        {"Layer.CreateWindow", "Fail to create window from layer!", false},
        {"Window.GetSurface", "Fail to get surface from window!", true},
    };

    for (const auto &row : rows) {
        for (const bool bFails : {true, false}) {
            SCOPED_TRACE(row.pcMethod);
            Reset();
            pKovaITextDisplay_t pDisplay = GivenWindow();
            bFails ? Fail(row.pcMethod, DFB_FAILURE) : GiveNothing(row.pcMethod);

            Activate(pDisplay);

            EXPECT_EQ(TraceOf("ERROR"), std::string("  ERROR CreateOSD1Window: ") + row.pcError + "\n");
            EXPECT_EQ(TraceOf("error"), "");
            EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, 0);
            EXPECT_EQ(RecordOf(pDisplay)->pWindow != nullptr, row.bWindow);
            EXPECT_EQ(RecordOf(pDisplay)->pBaseSurface, nullptr);
            EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, nullptr);
            EXPECT_FALSE(Contains(Trace(), "SetOpacity"));
            EXPECT_EQ(Contains(Trace(), "SetBounds"), row.bWindow);
            Destroy(pDisplay);
        }
    }
}

TEST(ReleaseOSD1Window, TakesSurfaceWindowAndLayerDownInThisOrder)
{
    pKovaITextDisplay_t pDisplay = GivenWindow();

    const std::string output = Activate(pDisplay, 0);

    EXPECT_EQ(Trace(),
              "enter Kova_TextDFBDisp_SetActive\n" + s_released + "exit Kova_TextDFBDisp_SetActive\n");
    EXPECT_TRUE(Contains(output, "Set context 0 to active 0"));
    EXPECT_EQ(RecordOf(pDisplay)->pBaseSurface, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->pWindow, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->pLayer, nullptr);
    EXPECT_EQ(LiveObjectNames(), "dfb");
    Destroy(pDisplay);
}

TEST(ReleaseOSD1Window, ChangesNothingWhereThereIsNoWindow)
{
    pKovaITextDisplay_t pDisplay = GivenWindow();
    Activate(pDisplay, 0);

    Activate(pDisplay, 0);
    EXPECT_EQ(CallsOnly(Trace()), "");

    Activate(pDisplay, 1); // and the next one is created without releasing anything
    EXPECT_EQ(Trace().find("Release"), Trace().find("palette.Release") + 8);
    EXPECT_NE(RecordOf(pDisplay)->pActiveSurface, nullptr);
    Destroy(pDisplay);
}

TEST(ReleaseOSD1Window, ForgetsTheBackupSurfaceAsTheTargetOfDrawing)
{
    pKovaITextDisplay_t pDisplay = GivenWindow();
    IDirectFBSurface *const pBackup = GivenBackupSurface(pDisplay);
    RecordOf(pDisplay)->pActiveSurface = pBackup;

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 100, 50), 0);

    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, nullptr);
    EXPECT_NE(RecordOf(pDisplay)->pBaseSurface, nullptr);
    pBackup->Release(pBackup);
    Destroy(pDisplay);
}

TEST(ReleaseOSD1Window, PrintsFailuresAndForgetsWhatItCouldNotRelease)
{
    const LeaksAreMeant_t leaks;
    pKovaITextDisplay_t pDisplay = GivenWindow();
    for (const char *pcKind : {"Surface", "Window", "Layer"})
        Fail(std::string(pcKind) + ".Release", DFB_BUSY);

    Activate(pDisplay, 0);

    EXPECT_EQ(CallsOnly(Trace()), "base.Release\n" + CheckLine(DFB_BUSY) + "window.Release\n" +
                                      CheckLine(DFB_BUSY) + "layer.Release\n" + CheckLine(DFB_BUSY));
    EXPECT_EQ(RecordOf(pDisplay)->pBaseSurface, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->pWindow, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->pLayer, nullptr);
    Destroy(pDisplay, "base layer window");
}
