// SPDX-License-Identifier: MIT
#include "expect.h"

using namespace test;

static const char *const CREATE = "Kova_TextDFBDisp_CreateContext";
static const char *const ACTIVATE = "Kova_TextDFBDisp_SetActive";

static kova_sint8 CreateContext(pKovaITextDisplay_t pDisplay, kova_uint32 uiWidth = PLANE_WIDTH,
                                kova_uint32 uiHeight = PLANE_HEIGHT)
{
    KovaTextContextParam_t param = ContextParam(uiWidth, uiHeight);
    return Kova_TextDFBDisp_CreateContext(pDisplay, &param);
}

// Returns what it prints on standard output.
static std::string SetActive(pKovaITextDisplay_t pDisplay, int iContext, int iActive)
{
    testing::internal::CaptureStdout();
    Kova_TextDFBDisp_SetActive(pDisplay, kova_sint8(iContext), kova_bool(iActive));
    fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

static std::string Banner(int iContext, int iActive)
{
    return "\n\n\n\n######################## Set context " + std::to_string(iContext) + " to active " +
           std::to_string(iActive) + " ##########################\n\n\n\n";
}

// ---- creation

TEST(CreateContext, StartsTheThreadWithTheFirstContextOnly)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(CreateContext(pDisplay), 0);
    EXPECT_EQ(Trace(),
              "enter Kova_TextDFBDisp_CreateContext\n"
              "  log Kova_TextDFBDisp_CreateContext: Create context 0\n"
              "  pthread_create\n"
              "exit Kova_TextDFBDisp_CreateContext\n"); // the plane has the display's size: no SetPlane
    EXPECT_TRUE(AwaitThreadTrace("enter Flip_last_frame_Thread\n"));
    ClearTrace();
    EXPECT_EQ(CreateContext(pDisplay), 1);
    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_CreateContext\n"
                       "  log Kova_TextDFBDisp_CreateContext: Create context 1\n"
                       "exit Kova_TextDFBDisp_CreateContext\n");

    EXPECT_EQ(RecordOf(pDisplay)->ucContextMask, 3);
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 2u);
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, -1); // a new context is not active
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(CreateContext, KeepsTheCallersGeometry)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextContextParam_t param = {720, 480, 11, 12, 13, 14, 15, 16};
    EXPECT_EQ(CreateContext(pDisplay), 0);

    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &param), 1);

    const KovaDFBContext_t &context = RecordOf(pDisplay)->context[1];
    EXPECT_EQ(context.uiTextWindowWidth, 11u);
    EXPECT_EQ(context.uiTextWindowHeight, 12u);
    EXPECT_EQ(context.uiDisplayWindowX, 13u);
    EXPECT_EQ(context.uiDisplayWindowY, 14u);
    EXPECT_EQ(context.uiDisplayWindowWidth, 15u);
    EXPECT_EQ(context.uiDisplayWindowHeight, 16u);
    EXPECT_EQ(context.uiPlaneWidth, 720u);
    EXPECT_EQ(context.uiPlaneHeight, 480u);
    Destroy(pDisplay);
}

TEST(CreateContext, DeselectsTheFont)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);

    EXPECT_EQ(CreateContext(pDisplay), 1);

    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, -1);
    EXPECT_NE(RecordOf(pDisplay)->font[0].pFont, nullptr); // the font stays open
    Destroy(pDisplay);
}

TEST(CreateContext, RebuildsThePlaneWhenItsSizeIsAnother)
{
    const struct {
        kova_uint32 uiWidth, uiHeight;
    } rows[] = {{1280, 720}, {721, 480}, {720, 479}};
    for (const auto &row : rows) {
        pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
        const std::string size = std::to_string(row.uiWidth) + "x" + std::to_string(row.uiHeight);

        EXPECT_EQ(CreateContext(pDisplay, row.uiWidth, row.uiHeight), 0);

        const std::string trace = Trace();
        EXPECT_EQ(trace.rfind("enter Kova_TextDFBDisp_CreateContext\n"
                              "  enter SetPlane\n",
                              0),
                  0u);
        EXPECT_TRUE(
            Contains(trace, "SetConfiguration WIDTH|HEIGHT|PIXELFORMAT|BUFFERMODE|SURFACE_CAPS " + size));
        EXPECT_TRUE(Contains(trace, "  exit SetPlane\n"
                                    "  log Kova_TextDFBDisp_CreateContext: Create context 0\n"
                                    "  pthread_create\n"
                                    "exit Kova_TextDFBDisp_CreateContext\n"));
        EXPECT_EQ(RecordOf(pDisplay)->uiPlaneWidth, row.uiWidth);
        EXPECT_EQ(RecordOf(pDisplay)->uiPlaneHeight, row.uiHeight);
        EXPECT_TRUE(LockIsFree(pDisplay));
        Destroy(pDisplay);
    }
}

TEST(CreateContext, SucceedsAlthoughThePlaneIsRefused)
{
    const std::string banner = "log SetPlane: \\n\\n########################### Enter SetPlane! "
                               "width:1280,height:720 ##################################\\n\n";
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(CreateContext(pDisplay, 1280, 720), 1); // while context 0 is active
    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_CreateContext\n"
                       "  enter SetPlane\n  " +
                           banner +
                           "  ERROR SetPlane: Inactive context!\n"
                           "  log Kova_TextDFBDisp_CreateContext: Create context 1\n"
                           "exit Kova_TextDFBDisp_CreateContext\n");
    EXPECT_EQ(RecordOf(pDisplay)->uiPlaneWidth, 1280u); // stored anyway
    EXPECT_EQ(RecordOf(pDisplay)->uiPlaneHeight, 720u);
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 2u);

    SetActive(pDisplay, 0, 0); // now without a layer
    ClearTrace();
    EXPECT_EQ(CreateContext(pDisplay), 2);
    EXPECT_TRUE(Contains(Trace(), "  ERROR SetPlane: pLayer is NULL!\n"
                                  "  log Kova_TextDFBDisp_CreateContext: Create context 2\n"));
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(CreateContext, TakesTheLowestIdentifierThatIsFree)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    for (int i = 0; i < 4; i++) EXPECT_EQ(CreateContext(pDisplay), i);
    Kova_TextDFBDisp_DestroyContext(pDisplay, 2);
    Kova_TextDFBDisp_DestroyContext(pDisplay, 1);

    EXPECT_EQ(CreateContext(pDisplay), 1);
    EXPECT_EQ(CreateContext(pDisplay), 2);
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 4u);
    Destroy(pDisplay);
}

TEST(CreateContext, RefusesAFifthContextAndKeepsTheLock)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    for (int i = 0; i < 4; i++) EXPECT_EQ(CreateContext(pDisplay), i);
    EXPECT_TRUE(LockIsFree(pDisplay));
    ClearTrace();

    EXPECT_EQ(CreateContext(pDisplay, 1280, 720), -1);

    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_CreateContext\n"
                       "  ERROR Kova_TextDFBDisp_CreateContext: Can't support so much context!\n");
    EXPECT_TRUE(HoldsLock());
    EXPECT_FALSE(LockIsFree(pDisplay)); // no other thread gets in
    EXPECT_EQ(RecordOf(pDisplay)->ucContextMask, 0x0F);
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 4u);
    EXPECT_EQ(RecordOf(pDisplay)->uiPlaneWidth, PLANE_WIDTH);
    pthread_mutex_unlock(&RecordOf(pDisplay)->display_mutex);
    EXPECT_TRUE(LockIsFree(pDisplay)); // it was locked once
    Destroy(pDisplay);
}

TEST(CreateContext, RefusesNullArguments)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    const std::string refused = std::string("enter ") + CREATE + "\nERROR " + CREATE + ": NULL Pointer!\n";
    KovaTextContextParam_t param = ContextParam();

    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(nullptr, &param), -1);
    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, nullptr), -1);
    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(nullptr, nullptr), -1);

    EXPECT_EQ(Trace(), refused + refused + refused);
    EXPECT_EQ(RecordOf(pDisplay)->ucContextMask, 0);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(CreateContext, KeepsAContextWhoseThreadDoesNotStart)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    FailThreadStart(11);

    EXPECT_EQ(CreateContext(pDisplay), -1);

    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_CreateContext\n"
                       "  log Kova_TextDFBDisp_CreateContext: Create context 0\n"
                       "  pthread_create\n"
                       "  error Kova_TextDFBDisp_CreateContext: pthread_create() failed. return:11\n"
                       "exit Kova_TextDFBDisp_CreateContext\n");
    EXPECT_EQ(RecordOf(pDisplay)->ucContextMask, 1);
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 0u);
    EXPECT_TRUE(LockIsFree(pDisplay));

    FailThreadStart(0);
    EXPECT_EQ(CreateContext(pDisplay), 1); // tries again
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 1u);
    Kova_TextDFBDisp_DestroyContext(pDisplay, 1);
    ClearTrace();
    Kova_TextDFBDisp_DestroyContext(pDisplay, 0); // this context held no reference
    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_DestroyContext\nexit Kova_TextDFBDisp_DestroyContext\n");
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 0u);
    EXPECT_EQ(RecordOf(pDisplay)->ucContextMask, 0);
    Destroy(pDisplay);
}

// ---- activation

// The calls of an activation of layer 2, all under the lock. The layer exists or is obtained before.
static std::string Configured(const std::string &layer, const std::string &format, const std::string &size)
{
    return "  " + layer + ".SetCooperativeLevel EXCLUSIVE\n  " + layer + ".GetConfiguration\n  " + layer +
           ".SetConfiguration WIDTH|HEIGHT|PIXELFORMAT|BUFFERMODE|SURFACE_CAPS " + size + " " + format +
           " BACKVIDEO DOUBLE\n";
}

static std::string PaletteLoaded(const std::string &surface)
{
    return "  " + surface + ".SetDescriptionFlags DESTINATION_LUT8\n  " + surface +
           ".GetPalette\n"
           "  palette.SetEntries 256 at 0: 0,0,0,0 0,0,0,0 0,0,0,0 0,0,0,0 ...\n"
           "  palette.Release\n";
}

static std::string ClipSet(const std::string &surface, int iWidth, int iHeight)
{
    return "  " + surface + ".SetClip 0,0 " + std::to_string(iWidth - 1) + "," + std::to_string(iHeight - 1) +
           "\n  " + surface + ".SetBlittingFlags NOFX\n";
}

static std::string Entered(const std::string &body)
{
    return std::string("enter ") + ACTIVATE + "\n" + body + "exit " + ACTIVATE + "\n";
}

TEST(SetActive, ConfiguresTheLayerForTheFirstContext)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(CreateContext(pDisplay), 0);
    ClearTrace();

    EXPECT_EQ(SetActive(pDisplay, 0, 1), Banner(0, 1));

    EXPECT_EQ(Tidy(Trace()), Entered(Configured("layer", "LUT8", "720x480") + PaletteLoaded("base") +
                                     ClipSet("base", 720, 480) + Wiped("base", INDEX_COLORS, "720x480")));
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, 0);
    EXPECT_EQ(RecordOf(pDisplay)->bShow, 0);
    EXPECT_EQ(NameOf(RecordOf(pDisplay)->pActiveSurface), "base");
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(SetActive, ConfiguresForTrueColoursWithoutAPaletteInThePaletteCopyMode)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER3, PALETTE_COLORS);
    EXPECT_EQ(CreateContext(pDisplay), 0);
    ClearTrace();

    SetActive(pDisplay, 0, 1);

    EXPECT_EQ(Tidy(Trace()), Entered(Configured("layer", "ARGB", "720x480") + ClipSet("base", 720, 480) +
                                     Wiped("base", PALETTE_COLORS, "720x480")));
    Destroy(pDisplay);
}

TEST(SetActive, EndsThe32BitMode)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2, PACKED_COLORS);
    EXPECT_EQ(CreateContext(pDisplay), 0);
    ClearTrace();

    SetActive(pDisplay, 0, 1);

    // The layer becomes indexed; the surface from the creation is kept and has no palette.
    const std::string check = "  " + CheckLine(DFB_UNSUPPORTED);
    EXPECT_EQ(Tidy(Trace()), Entered(Configured("layer", "LUT8", "720x480") +
                                     "  base.SetDescriptionFlags DESTINATION_LUT8\n"
                                     "  base.GetPalette\n" +
                                     check + ClipSet("base", 720, 480) + "  base.GetPalette\n" + check +
                                     "  base.SetColorIndex 0\n"
                                     "  base.FillRectangle 0,0 720x480\n"));
    EXPECT_EQ(RecordOf(pDisplay)->bColor32, 0);
    Destroy(pDisplay);
}

TEST(SetActive, LoadsTheWholePaletteOfTheRecord)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextColor_t color = {1, 2, 3, 4};
    EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, &color, 1, 255), 0);
    SetActive(pDisplay, 0, 0);

    SetActive(pDisplay, 0, 1);

    const DFBColor last = PaletteOf(RecordOf(pDisplay)->pBaseSurface)[255];
    EXPECT_EQ(last.r, 1);
    EXPECT_EQ(last.g, 2);
    EXPECT_EQ(last.b, 3);
    EXPECT_EQ(last.a, 4);
    Destroy(pDisplay);
}

TEST(SetActive, TakesThePlaneOfTheContext)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(CreateContext(pDisplay, 1280, 720), 1);
    ClearTrace();

    EXPECT_EQ(SetActive(pDisplay, 1, 1), Banner(1, 1));

    EXPECT_EQ(Tidy(Trace()), Entered(Configured("layer", "LUT8", "1280x720") + PaletteLoaded("base") +
                                     ClipSet("base", 1280, 720) + Wiped("base", INDEX_COLORS, "1280x720")));
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, 1);
    EXPECT_EQ(RecordOf(pDisplay)->uiPlaneWidth, 1280u);
    EXPECT_EQ(RecordOf(pDisplay)->uiPlaneHeight, 720u);
    EXPECT_EQ(RecordOf(pDisplay)->clip.x2, 1279);
    EXPECT_EQ(RecordOf(pDisplay)->clip.y2, 719);
    EXPECT_EQ(RecordOf(pDisplay)->bShow, 1); // unchanged

    SetActive(pDisplay, 0, 1); // its plane is not the current one
    EXPECT_EQ(RecordOf(pDisplay)->uiPlaneWidth, 720u);
    EXPECT_EQ(RecordOf(pDisplay)->uiPlaneHeight, 480u);
    EXPECT_EQ(RecordOf(pDisplay)->clip.x2, 719);
    EXPECT_EQ(RecordOf(pDisplay)->clip.y2, 479);
    Destroy(pDisplay);
}

TEST(SetActive, KeepsTheExistingSurfaceThoughNoneIsDrawnInto)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(CreateContext(pDisplay), 1);
    IDirectFBSurface *const pBase = RecordOf(pDisplay)->pBaseSurface;
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0); // it does not exist
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, nullptr);
    ClearTrace();

    SetActive(pDisplay, 1, 1);

    EXPECT_EQ(TraceOf("layer.GetSurface"), "");
    EXPECT_EQ(RecordOf(pDisplay)->pBaseSurface, pBase);
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, pBase);
    Destroy(pDisplay);
}

TEST(SetActive, ReleasesTheExistingSurfaceThoughNoneIsDrawnInto)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0); // it does not exist
    ClearTrace();

    SetActive(pDisplay, 0, 0);

    EXPECT_EQ(TraceOf("base.Release"), "  base.Release\n");
    EXPECT_EQ(RecordOf(pDisplay)->pBaseSurface, nullptr);
    Destroy(pDisplay);
}

TEST(SetActive, ObtainsTheLayerAndItsSurfaceAgainAfterADeactivation)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER3);
    SetActive(pDisplay, 0, 0);
    ClearTrace();
    TemporarilyUnavailable(3);
    const auto unavailable = [](int iRetry) {
        return std::string("  dfb.GetDisplayLayer 2\n  error ") + ACTIVATE +
               ": #################### DFB_TEMPUNAVAIL " + std::to_string(iRetry) +
               " #######################\n  usleep 50000\n";
    };

    EXPECT_EQ(SetActive(pDisplay, 0, 1), Banner(0, 1));

    const std::string configured = Configured("layer2", "LUT8", "720x480");
    EXPECT_EQ(Tidy(Trace()),
              Entered(unavailable(0) + unavailable(1) + unavailable(2) + "  dfb.GetDisplayLayer 2\n" +
                      configured + "  layer2.GetSurface\n" + PaletteLoaded("base2") +
                      ClipSet("base2", 720, 480) + Wiped("base2", INDEX_COLORS, "720x480")));
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, 0);
    Destroy(pDisplay);
}

TEST(SetActive, ReportsALayerThatIsNotObtained)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    SetActive(pDisplay, 0, 0);
    RecordOf(pDisplay)->scActiveContextID = -1;
    ClearTrace();
    FailNth("Dfb.GetDisplayLayer", 1, DFB_IDNOTFOUND);

    EXPECT_EQ(SetActive(pDisplay, 0, 1), Banner(0, 1));

    EXPECT_EQ(Trace(), Entered(std::string("  dfb.GetDisplayLayer 1\n  error ") + ACTIVATE +
                               ": GetDisplayLayer result = " + std::to_string(int(DFB_IDNOTFOUND)) + "\n"));
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, -2);
    EXPECT_EQ(StandardError(), "");
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(SetActive, ReportsALayerThatIsNull)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    SetActive(pDisplay, 0, 0);
    RecordOf(pDisplay)->scActiveContextID = -1;
    ClearTrace();
    GiveNothing("Dfb.GetDisplayLayer");

    SetActive(pDisplay, 0, 1);

    EXPECT_EQ(Trace(), Entered(std::string("  dfb.GetDisplayLayer 1\n  error ") + ACTIVATE +
                               ": Display layer = NULL after GetDisplayLayer\n"));
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, -2);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(SetActive, ContinuesWhenACallFails)
{
    const struct {
        const char *pcMethod, *pcCall;
        bool bBrief;
    } rows[] = {
        {"Layer.SetCooperativeLevel", "SetCooperativeLevel", true},
        {"Layer.GetConfiguration", "GetConfiguration", true},
        {"Layer.SetConfiguration", "SetConfiguration", true},
        {"Surface.SetDescriptionFlags", "SetDescriptionFlags", false},
        {"Palette.SetEntries", "SetEntries", false},
        {"Surface.SetClip", "SetClip", false},
        {"Surface.SetBlittingFlags", "SetBlittingFlags", false},
        {"Surface.SetColorIndex", "SetColorIndex", false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.pcMethod);
        pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
        EXPECT_EQ(CreateContext(pDisplay), 0);
        const std::string surface = NameOf(RecordOf(pDisplay)->pBaseSurface);
        const std::string layer = "layer" + surface.substr(strlen("base"));
        ClearTrace();
        FailNth(row.pcMethod, 1, DFB_FAILURE);

        SetActive(pDisplay, 0, 1);

        const std::string whole =
            Entered(Configured(layer, "LUT8", "720x480") + PaletteLoaded(surface) +
                    ClipSet(surface, 720, 480) + Wiped(surface, INDEX_COLORS, "720x480"));
        EXPECT_EQ(Tidy(Trace()),
                  PutAfter(whole, std::string(".") + row.pcCall,
                           "  " + (row.bBrief ? "DFB_CHECK_BRIEF\n" : CheckLine(DFB_FAILURE))));
        EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, 0);
        Destroy(pDisplay);
    }
}

TEST(SetActive, EndsWithoutASurfaceWhenTheLayerReturnsNone)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    SetActive(pDisplay, 0, 0);
    ClearTrace();
    FailNth("Layer.GetSurface", 1, DFB_FAILURE);

    SetActive(pDisplay, 0, 1);

    const std::string check = CheckLine(DFB_DESTROYED);
    EXPECT_EQ(Tidy(Trace()),
              Entered("  dfb.GetDisplayLayer 1\n" + Configured("layer2", "LUT8", "720x480") +
                      "  layer2.GetSurface\n"
                      "  DFB_CHECK_BRIEF\n"
                      "  " +
                      check + "  " + check +          // SetDescriptionFlags, GetPalette
                      "  " + check + "  " + check +   // SetClip, SetBlittingFlags
                      "  " + check + check + check)); // GetPalette, SetColorIndex, FillRectangle
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, 0);
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, nullptr);
    Destroy(pDisplay);
}

TEST(SetActive, CreatesTheFontsAgainAndSelectsTheSelectedOne)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    kova_sint32 siOther = -1;
    EXPECT_EQ(pDisplay->CreateFont(pDisplay, 1, "serif.ttf", 30, KOVA_FONTATTR_ITALIC, &siOther), 0);
    GivenFont(pDisplay, 24, "sans.ttf");
    ASSERT_EQ(RecordOf(pDisplay)->scActiveFontID, 1);

    SetActive(pDisplay, 0, 1);

    // Opened with numerically passed attributes; for the selection height and attributes then match.
    EXPECT_EQ(Tidy(Trace()),
              Entered(Configured("layer", "LUT8", "720x480") + PaletteLoaded("base") +
                      ClipSet("base", 720, 480) +
                      "  font.Release\n"
                      "  font2.Release\n"
                      "  dfb.CreateFont serif.ttf ATTRIBUTES|HEIGHT attributes 0x20 height 30\n"
                      "  font3.EnumEncodings\n"
                      "  dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT attributes 0 height 24\n"
                      "  font4.EnumEncodings\n"
                      "  base.SetFont font4\n" +
                      Wiped("base", INDEX_COLORS, "720x480")));
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, 1);
    Destroy(pDisplay);
}

TEST(SetActive, SelectsNoFontWhenNoneWasSelected)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    kova_sint32 siFont = -1;
    EXPECT_EQ(pDisplay->CreateFont(pDisplay, 1, "serif.ttf", 30, KOVA_FONTATTR_NONE, &siFont), 0);
    ClearTrace();

    SetActive(pDisplay, 0, 1);

    EXPECT_TRUE(Contains(Trace(), "font2.EnumEncodings\n"));
    EXPECT_FALSE(Contains(Trace(), "SetFont"));
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, -1);
    Destroy(pDisplay);
}

TEST(SetActive, OnlyShowsOrHidesAgainTheContextThatIsActive)
{
    for (const ColorMode_e eMode : {INDEX_COLORS, PALETTE_COLORS}) {
        for (const bool bShown : {false, true}) {
            pKovaITextDisplay_t pDisplay = bShown ? GivenShownDisplay(KOVA_GRAPHIC_LAYER2, eMode)
                                                  : GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2, eMode);
            GivenFont(pDisplay);
            RecordOf(pDisplay)->blast_frame_changed = 0;

            EXPECT_EQ(SetActive(pDisplay, 0, 1), ""); // no banner

            EXPECT_EQ(Tidy(Trace()),
                      Entered(Wiped(NameOf(RecordOf(pDisplay)->pActiveSurface), eMode, "720x480")));
            EXPECT_EQ(RecordOf(pDisplay)->bShow, bShown);
            EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
            EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, 0);
            Destroy(pDisplay);
        }
    }
}

// The calls of an activation of layer 1: the window is released and created again.
static std::string WindowMade(int iNumber, const std::string &format, const std::string &size, int iRight,
                              int iBottom)
{
    const std::string was = iNumber == 2 ? "" : std::to_string(iNumber - 1), is = std::to_string(iNumber);
    const std::string base = "  base" + is, window = "  window" + is, layer = "  layer" + is;

    return "  base" + was + ".Release\n  window" + was + ".Release\n  layer" + was +
           ".Release\n"
           "  dfb.GetDisplayLayer 0\n" +
           layer + ".SetCooperativeLevel SHARED\n" + layer + ".GetConfiguration\n" + layer +
           ".CreateWindow CAPS|WIDTH|HEIGHT|PIXELFORMAT|POSX|POSY|OPTIONS|STACKING " + size + " at 0,0 " +
           format + " ALPHACHANNEL|DOUBLEBUFFER|NOFOCUS ALPHACHANNEL|SCALE LOWER\n" + window +
           ".SetBounds 0,0 1920x1080\n" + window + ".GetSurface\n" + base + ".Clear 0,0,0,0\n" + base +
           ".Flip all WAIT|BLIT|ONSYNC\n" + base + ".Clear 0,0,0,0\n" + window + ".SetOpacity 255\n" +
           window + ".RaiseToTop\n" + base + ".SetClip 0,0 " + std::to_string(iRight) + "," +
           std::to_string(iBottom) + "\n" + base + ".SetBlittingFlags NOFX\n";
}

TEST(SetActive, RecreatesTheWindowOfTheFirstLayer)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER1); // this has created it twice
    GivenFont(pDisplay);
    EXPECT_EQ(CreateContext(pDisplay), 1);
    RecordOf(pDisplay)->scActiveFontID = 0;
    RecordOf(pDisplay)->context[1].uiPlaneWidth = 1280;
    RecordOf(pDisplay)->context[1].uiPlaneHeight = 720;
    ClearTrace();

    EXPECT_EQ(SetActive(pDisplay, 1, 1), ""); // no banner on this layer

    EXPECT_EQ(Tidy(Trace()), Entered(WindowMade(3, "LUT8", "1280x720", 1279, 719) +
                                     "  font.Release\n"
                                     "  dfb.CreateFont sans.ttf ATTRIBUTES|HEIGHT attributes 0 height 24\n"
                                     "  font2.EnumEncodings\n"
                                     "  base3.SetFont font2\n" +
                                     Wiped("base3", INDEX_COLORS, "1280x720")));
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, 1);
    EXPECT_EQ(RecordOf(pDisplay)->uiPlaneWidth, 1280u);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(SetActive, LeavesTheActiveContextWhenTheWindowFails)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER1);
    EXPECT_EQ(CreateContext(pDisplay), 1);
    RecordOf(pDisplay)->context[1].uiPlaneWidth = 1280;
    GivenFont(pDisplay);
    FailNth("Dfb.GetDisplayLayer", 1, DFB_FAILURE);

    EXPECT_EQ(SetActive(pDisplay, 1, 1), "");

    EXPECT_EQ(Trace(), Entered(std::string("  base2.Release\n"
                                           "  window2.Release\n"
                                           "  layer2.Release\n"
                                           "  dfb.GetDisplayLayer 0\n"
                                           "  ERROR CreateOSD1Window: pLayer is NULL!\n  error ") +
                               ACTIVATE + ": Fail to create OSD1 Window!\n"));
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, 0);
    EXPECT_EQ(RecordOf(pDisplay)->uiPlaneWidth, 1280u); // stored before the failure
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, 0);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(SetActive, CountsTheContextAsActiveWithoutAWindow)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER1, INDEX_COLORS, NO_CONTEXT);
    EXPECT_EQ(CreateContext(pDisplay), 0);
    FailNth("Layer.CreateWindow", 1, DFB_FAILURE);

    SetActive(pDisplay, 0, 1);

    EXPECT_TRUE(Contains(Trace(), "  ERROR CreateOSD1Window: Fail to create window from layer!\n"));
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, 0);
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, nullptr);
    Destroy(pDisplay);
}

TEST(SetActive, RefusesPlanesThatAreTooLargeOrEmpty)
{
    const struct {
        kova_uint32 uiWidth, uiHeight;
        const char *pcError; // null if accepted
    } rows[] = {
        {1920, 1080, nullptr},
        {1, 1, nullptr},
        {1921, 1080, "Invalid plane width!"},
        {0, 1080, "Invalid plane width!"},
        {0xFFFFFFFF, 1080, "Invalid plane width!"},
        {1920, 1081, "Invalid plane height!"},
        {1920, 0, "Invalid plane height!"},
        {1920, 0x80000000, "Invalid plane height!"},
        {1921, 1081, "Invalid plane width!"},
        {0, 0, "Invalid plane width!"},
    };
    for (const int iActive : {1, 0}) { // a deactivation is refused too
        for (const auto &row : rows) {
            SCOPED_TRACE(testing::Message() << row.uiWidth << "x" << row.uiHeight << " to " << iActive);
            pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
            RecordOf(pDisplay)->context[0].uiPlaneWidth = row.uiWidth;
            RecordOf(pDisplay)->context[0].uiPlaneHeight = row.uiHeight;
            RecordOf(pDisplay)->bColor32 = 1;

            SetActive(pDisplay, 0, iActive);

            if (row.pcError) {
                EXPECT_EQ(Trace(), std::string("enter ") + ACTIVATE + "\nERROR " + ACTIVATE + ": " +
                                       row.pcError + "\n");
                EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, 0);
            } else {
                EXPECT_FALSE(Contains(Trace(), "ERROR"));
                EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, iActive ? 0 : -2);
            }
            EXPECT_EQ(RecordOf(pDisplay)->bColor32, 0); // in both cases
            EXPECT_TRUE(LockIsFree(pDisplay));
            Destroy(pDisplay);
        }
    }
}

TEST(SetActive, RefusesAnUnknownDisplayOrContextWithoutATrace)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->bColor32 = 1;
    const std::string null = std::string("ERROR ") + ACTIVATE + ": NULL Pointer!\n";
    const std::string invalid = std::string("ERROR ") + ACTIVATE + ": Invalid context ID!\n";

    Kova_TextDFBDisp_SetActive(nullptr, 4, 1);
    for (const int iContext : {4, 127, -128, -1}) EXPECT_EQ(SetActive(pDisplay, iContext, 1), "");

    EXPECT_EQ(Trace(), null + invalid + invalid + invalid + invalid);
    EXPECT_EQ(RecordOf(pDisplay)->bColor32, 1);
    Destroy(pDisplay);
}

// ---- deactivation

TEST(SetActive, ReleasesEverythingWhenDeactivated)
{
    for (const int iActive : {0, 2, 255}) { // any value except 1
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
        GivenFont(pDisplay);
        const std::string surface = NameOf(RecordOf(pDisplay)->pBaseSurface);
        const std::string number = surface.substr(strlen("base"));

        EXPECT_EQ(SetActive(pDisplay, 0, iActive), Banner(0, iActive));

        EXPECT_EQ(Trace(), Entered("  base" + number + ".Release\n  layer" + number + ".Release\n  font" +
                                   number + ".Release\n"));
        const KovaDFBDisplay_t &record = *RecordOf(pDisplay);
        EXPECT_EQ(record.pBaseSurface, nullptr);
        EXPECT_EQ(record.pLayer, nullptr);
        EXPECT_EQ(record.pActiveSurface, nullptr);
        EXPECT_EQ(record.scActiveContextID, -2);
        EXPECT_EQ(record.scActiveFontID, -1);
        EXPECT_EQ(record.font[0].pFont, nullptr);
        EXPECT_EQ(record.font[0].pcFontName, nullptr);
        EXPECT_EQ(record.font[0].ucHeight, 0u);
        EXPECT_STREQ(record.FontName[0], "sans.ttf"); // kept
        EXPECT_EQ(record.bShow, 1);
        EXPECT_EQ(record.ucContextMask, 1);
        EXPECT_TRUE(LockIsFree(pDisplay));
        ClearTrace();
        SetActive(pDisplay, 0, 0); // nothing is left to release
        EXPECT_EQ(Trace(), Entered(""));
        Destroy(pDisplay);
    }
}

TEST(SetActive, TakesDownWhatAnotherContextUses)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));

    EXPECT_EQ(SetActive(pDisplay, 0, 0), Banner(0, 0));

    EXPECT_EQ(Trace(), Entered("  base.Release\n  layer.Release\n"));
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, -2);
    Destroy(pDisplay);
}

TEST(SetActive, TakesTheWindowDown)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER1);
    GivenFont(pDisplay);

    EXPECT_EQ(SetActive(pDisplay, 0, 0), Banner(0, 0));

    EXPECT_EQ(Trace(), Entered("  base2.Release\n"
                               "  window2.Release\n"
                               "  layer2.Release\n"
                               "  font.Release\n"));
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, -2);
    EXPECT_EQ(RecordOf(pDisplay)->pWindow, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, -1);
    Destroy(pDisplay);
}

TEST(SetActive, ReportsWhatCannotBeReleasedAndForgetsIt)
{
    const LeaksAreMeant_t leaks;
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);
    FailNth("Surface.Release", 1, DFB_FAILURE);
    FailNth("Layer.Release", 1, DFB_FAILURE);
    FailNth("Font.Release", 1, DFB_IO);

    SetActive(pDisplay, 0, 0);

    EXPECT_EQ(Trace(), Entered("  base.Release\n"
                               "  DFB_CHECK_BRIEF\n"
                               "  layer.Release\n"
                               "  DFB_CHECK_BRIEF\n"
                               "  font.Release\n" +
                               CheckLine(DFB_IO)));
    EXPECT_EQ(RecordOf(pDisplay)->pBaseSurface, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->pLayer, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->font[0].pFont, nullptr);
    Destroy(pDisplay, "base font layer");
}

// ---- destruction

TEST(DestroyContext, StopsTheThreadWithTheLastContextOnly)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(CreateContext(pDisplay), 0);
    EXPECT_EQ(CreateContext(pDisplay), 1);
    EXPECT_TRUE(AwaitThreadTrace("enter Flip_last_frame_Thread\n"));
    ClearTrace();

    Kova_TextDFBDisp_DestroyContext(pDisplay, 0);
    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_DestroyContext\nexit Kova_TextDFBDisp_DestroyContext\n");
    EXPECT_EQ(ThreadTrace(), "");
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 1u);
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_stop, 0);
    EXPECT_EQ(RecordOf(pDisplay)->ucContextMask, 2);

    ClearTrace();
    BeforeThreadCall([&](const char *pcCall, const void *pObject) {
        if (pObject == &RecordOf(pDisplay)->flip_thread_cond && strcmp(pcCall, "pthread_cond_wait") != 0)
            Note(pcCall);
    });
    Kova_TextDFBDisp_DestroyContext(pDisplay, 1);
    BeforeThreadCall(nullptr);
    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_DestroyContext\n"
                       "  pthread_cond_signal\n" // requested with the lock held, joined without it
                       "pthread_join\n"
                       "exit Kova_TextDFBDisp_DestroyContext\n");
    EXPECT_EQ(ThreadTrace(), "exit Flip_last_frame_Thread\n");
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 0u);
    EXPECT_EQ(RecordOf(pDisplay)->ucContextMask, 0);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(DestroyContext, HoldsTheThreadUntilItHasEnded)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    kova_uint32 uiHolders = 0;
    BeforeThreadCall([&](const char *pcCall, const void *) {
        // A context created by another thread now would start a second flip thread next to the ending one.
        if (strcmp(pcCall, "pthread_join") == 0) uiHolders = RecordOf(pDisplay)->flip_thread_ref;
    });

    Kova_TextDFBDisp_DestroyContext(pDisplay, 0);

    BeforeThreadCall(nullptr);
    EXPECT_EQ(uiHolders, 1u);
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 0u);
    Destroy(pDisplay);
}

TEST(DestroyContext, ForgetsTheGeometryOfThatContextOnly)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    const KovaDFBContext_t none = {};
    const KovaDFBContext_t other = RecordOf(pDisplay)->context[0];

    Kova_TextDFBDisp_DestroyContext(pDisplay, 1);

    EXPECT_EQ(memcmp(&RecordOf(pDisplay)->context[1], &none, sizeof none), 0);
    EXPECT_EQ(memcmp(&RecordOf(pDisplay)->context[0], &other, sizeof other), 0);
    EXPECT_NE(memcmp(&other, &none, sizeof none), 0);
    Destroy(pDisplay);
}

TEST(DestroyContext, LeavesTheDisplayDrawingWithTheActiveOne)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);

    Kova_TextDFBDisp_DestroyContext(pDisplay, 0);

    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, 0);
    EXPECT_EQ(NameOf(RecordOf(pDisplay)->pActiveSurface), "base");
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, 0);
    EXPECT_NE(RecordOf(pDisplay)->font[0].pFont, nullptr);
    EXPECT_EQ(pDisplay->DrawLine(pDisplay, 0, 1, 2, 3, 4, 5), 0);
    EXPECT_TRUE(Contains(Trace(), "base.DrawLine 1,2 3,4\n"));
    Destroy(pDisplay);
}

TEST(DestroyContext, RefusesAContextThatDoesNotExistAndKeepsTheLock)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(CreateContext(pDisplay), 0);
    EXPECT_TRUE(AwaitThreadTrace("enter Flip_last_frame_Thread\n"));
    ClearTrace();

    Kova_TextDFBDisp_DestroyContext(pDisplay, 3);

    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_DestroyContext\n"
                       "  ERROR Kova_TextDFBDisp_DestroyContext: Can't destroy this context!\n");
    EXPECT_TRUE(HoldsLock());
    EXPECT_FALSE(LockIsFree(pDisplay));
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 1u);
    EXPECT_EQ(RecordOf(pDisplay)->ucContextMask, 1);
    pthread_mutex_unlock(&RecordOf(pDisplay)->display_mutex);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(DestroyContext, RefusesAnUnknownDisplayOrContext)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    const std::string enter =
        "enter Kova_TextDFBDisp_DestroyContext\nERROR Kova_TextDFBDisp_DestroyContext: ";

    Kova_TextDFBDisp_DestroyContext(nullptr, 4);
    for (const int iContext : {4, 127, -128, -1})
        Kova_TextDFBDisp_DestroyContext(pDisplay, kova_sint8(iContext));

    const std::string invalid = enter + "Invalid context ID!\n";
    EXPECT_EQ(Trace(), enter + "NULL Pointer!\n" + invalid + invalid + invalid + invalid);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}
