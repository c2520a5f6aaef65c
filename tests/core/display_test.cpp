// SPDX-License-Identifier: MIT
#include "expect.h"
#include "support.h"

#include <cstring>
#include <malloc.h>

using namespace test;

static pKovaITextDisplay_t Create(KovaTextInitParam_t param)
{
    return Kova_TextDFBDisp_Create(&param);
}

static pKovaITextDisplay_t Create(KovaGraphicLayer_e eLayer, ColorMode_e eMode = INDEX_COLORS)
{
    return Create(InitParam(eLayer, eMode));
}

// ---- the complete creation

static std::string Said(const std::string &text)
{
    return "log Kova_TextDFBDisp_Create: " + text + "\n";
}

static std::string Begin()
{
    return "enter Kova_TextDFBDisp_Create\n"
           "dlopen libdirectfb.so NOW|GLOBAL\n"
           "dlsym DirectFBInit\n"
           "dlsym DirectFBCreate\n"
           "dlsym DirectFBErrorFatal\n" +
           Said("Before DFB Init!") + "DirectFBInit null,null\n" + Said("Before DFB Create!") +
           "DirectFBCreate\n" + Said("Before DFB Get Description!") + "dfb.GetDeviceDescription\n";
}

static std::string Layer(int iLayer, const std::string &format)
{
    return Said("Before DFB Get Layer!") + "dfb.GetDisplayLayer " + std::to_string(iLayer) + "\n" +
           Said("Before DFB Set cooperative level!") + "layer.SetCooperativeLevel EXCLUSIVE\n" +
           Said("Before DFB Get configure!") + "layer.GetConfiguration\n" +
           Said("Set plane to width 720, height 480") +
           "layer.SetConfiguration WIDTH|HEIGHT|PIXELFORMAT|BUFFERMODE|SURFACE_CAPS 720x480 " + format +
           " BACKVIDEO DOUBLE\n" + "layer.GetSurface\n" +
           (format == "LUT8" ? "base.SetDescriptionFlags DESTINATION_LUT8\n" : "") +
           "base.Clear 0,0,0,0\n"
           "base.SetClip 0,0 719,479\n"
           "base.SetBlittingFlags NOFX\n";
}

static std::string Window(const std::string &format)
{
    return "dfb.GetDisplayLayer 0\n"
           "layer.SetCooperativeLevel SHARED\n"
           "layer.GetConfiguration\n"
           "layer.CreateWindow CAPS|WIDTH|HEIGHT|PIXELFORMAT|POSX|POSY|OPTIONS|STACKING 720x480 at 0,0 " +
           format +
           " ALPHACHANNEL|DOUBLEBUFFER|NOFOCUS ALPHACHANNEL|SCALE LOWER\n"
           "window.SetBounds 0,0 1920x1080\n"
           "window.GetSurface\n"
           "base.Clear 0,0,0,0\n"
           "base.Flip all WAIT|BLIT|ONSYNC\n"
           "base.Clear 0,0,0,0\n"
           "window.SetOpacity 255\n"
           "window.RaiseToTop\n"
           "base.SetClip 0,0 719,479\n"
           "base.SetBlittingFlags NOFX\n";
}

static const std::string s_end = "exit Kova_TextDFBDisp_Create\n";

struct CreateRow_t {
    KovaGraphicLayer_e eLayer;
    kova_bool bColor32, bPalette;
    const char *pcFormat;
};

void PrintTo(const CreateRow_t &row, std::ostream *pStream)
{
    *pStream << row.pcFormat;
}

class CreateWhole : public testing::TestWithParam<CreateRow_t>
{
};

TEST_P(CreateWhole, TakesTheseStepsInThisOrder)
{
    const CreateRow_t &row = GetParam();
    KovaTextInitParam_t param = InitParam(row.eLayer);
    param.bColor32Bit = row.bColor32;
    param.bTextDisp_Palette = row.bPalette;

    pKovaITextDisplay_t pDisplay = Create(param);

    ASSERT_NE(pDisplay, nullptr);
    EXPECT_EQ(Trace(), Begin() +
                           (row.eLayer == KOVA_GRAPHIC_LAYER1 ? Window(row.pcFormat)
                                                              : Layer(int(row.eLayer), row.pcFormat)) +
                           s_end);
    EXPECT_EQ(RecordOf(pDisplay)->bColor32, row.bColor32);
    EXPECT_EQ(RecordOf(pDisplay)->bTextDisp_Palette, row.bPalette);
    Kova_TextDFBDisp_Destroy(pDisplay);
    EXPECT_EQ(LiveObjects(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    LayersAndColors, CreateWhole,
    testing::Values(
        CreateRow_t{KOVA_GRAPHIC_LAYER1, 0, 0, "LUT8"}, CreateRow_t{KOVA_GRAPHIC_LAYER1, 0, 1, "ARGB"},
        CreateRow_t{KOVA_GRAPHIC_LAYER1, 1, 0, "LUT8"}, // independent of the colours
        CreateRow_t{KOVA_GRAPHIC_LAYER1, 1, 1, "ARGB"}, CreateRow_t{KOVA_GRAPHIC_LAYER2, 0, 0, "LUT8"},
        CreateRow_t{KOVA_GRAPHIC_LAYER2, 0, 1, "ARGB"}, CreateRow_t{KOVA_GRAPHIC_LAYER2, 0, 255, "ARGB"},
        CreateRow_t{KOVA_GRAPHIC_LAYER2, 1, 0, "ARGB"}, CreateRow_t{KOVA_GRAPHIC_LAYER2, 2, 0, "ARGB"},
        CreateRow_t{KOVA_GRAPHIC_LAYER2, 1, 1, "ARGB"}, CreateRow_t{KOVA_GRAPHIC_LAYER3, 0, 0, "LUT8"},
        CreateRow_t{KOVA_GRAPHIC_LAYER3, 0, 1, "ARGB"}, CreateRow_t{KOVA_GRAPHIC_LAYER3, 1, 0, "ARGB"}),
    [](const auto &row) {
        return "Layer" + std::to_string(row.param.eLayer + 1) + "Color" + std::to_string(row.param.bColor32) +
               "Palette" + std::to_string(row.param.bPalette);
    });

TEST(Create, ReadsNeitherDoubleBufferNorFlipNorTheStart)
{
    KovaTextInitParam_t param = InitParam(KOVA_GRAPHIC_LAYER2);
    param.bDoubleBuffer = 1;
    param.bFlip = 0;
    param.uiStartX = 11;
    param.uiStartY = 22;

    pKovaITextDisplay_t pDisplay = Create(param);

    EXPECT_EQ(Trace(), Begin() + Layer(1, "LUT8") + s_end);
    EXPECT_EQ(RecordOf(pDisplay)->bDoubleBuffer, 0);
    EXPECT_EQ(RecordOf(pDisplay)->bFlip, 1);
    EXPECT_EQ(RecordOf(pDisplay)->pBackupSurface, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->pCharSurface, nullptr);
    Kova_TextDFBDisp_Destroy(pDisplay);
}

TEST(Create, DescribesThePlaneOfTheSizeAskedFor)
{
    KovaTextInitParam_t param = InitParam(KOVA_GRAPHIC_LAYER3);
    param.uiPlaneWidth = 1;
    param.uiPlaneHeight = 2160;

    pKovaITextDisplay_t pDisplay = Create(param);

    EXPECT_EQ(TraceOf("log Kova_TextDFBDisp_Create: Set plane"), Said("Set plane to width 1, height 2160"));
    EXPECT_EQ(TraceOf("layer.SetConfiguration"),
              "layer.SetConfiguration WIDTH|HEIGHT|PIXELFORMAT|BUFFERMODE|SURFACE_"
              "CAPS 1x2160 LUT8 BACKVIDEO DOUBLE\n");
    EXPECT_EQ(TraceOf("base.SetClip"), "base.SetClip 0,0 0,2159\n");
    Kova_TextDFBDisp_Destroy(pDisplay);
}

TEST(Create, LeavesTheRecordLikeThis)
{
    for (const KovaGraphicLayer_e eLayer : {KOVA_GRAPHIC_LAYER1, KOVA_GRAPHIC_LAYER2, KOVA_GRAPHIC_LAYER3}) {
        SCOPED_TRACE(eLayer);
        pKovaITextDisplay_t pDisplay = Create(eLayer);
        const KovaDFBDisplay_t r = *RecordOf(pDisplay);

        EXPECT_EQ(r.sInterface.eType, 0); // the facade sets it
        EXPECT_EQ(r.iPid, 0);
        EXPECT_EQ(r.bUseTextWindow, 0);
        EXPECT_EQ(r.bShow, 0);
        EXPECT_EQ(r.eLayer, eLayer);
        EXPECT_EQ(r.ucContextMask, 0);
        EXPECT_EQ(r.scActiveContextID, -1);
        EXPECT_EQ(r.scActiveFontID, -1);
        EXPECT_EQ(r.uiPlaneWidth, PLANE_WIDTH);
        EXPECT_EQ(r.uiPlaneHeight, PLANE_HEIGHT);
        EXPECT_EQ(r.pWindow == nullptr, eLayer != KOVA_GRAPHIC_LAYER1);
        EXPECT_NE(r.pDfb, nullptr);
        EXPECT_NE(r.pLayer, nullptr);
        EXPECT_EQ(NameOf(r.pBaseSurface).rfind("base", 0), 0u);
        EXPECT_EQ(r.pActiveSurface, r.pBaseSurface);
        EXPECT_EQ(r.clip.x1, 0);
        EXPECT_EQ(r.clip.y1, 0);
        EXPECT_EQ(r.clip.x2, int(PLANE_WIDTH) - 1);
        EXPECT_EQ(r.clip.y2, int(PLANE_HEIGHT) - 1);
        EXPECT_EQ(r.eEdge, 0);
        EXPECT_EQ(r.ucEdgeColorIndex, 0u);
        EXPECT_EQ(r.ucFgColorIndex, 0u);
        EXPECT_EQ(r.bFlip, 1);
        EXPECT_EQ(r.flip_thread_ref, 0u);
        EXPECT_EQ(r.flip_thread_stop, 0);
        EXPECT_EQ(r.blast_frame_changed, 0);
        EXPECT_EQ(r.has_flipping_req, 0);
        for (const KovaTextColor_t &color : r.palette) EXPECT_EQ(color.r | color.g | color.b | color.a, 0);
        for (const KovaDFBFont_t &font : r.font) EXPECT_TRUE(!font.pFont && !font.pcFontName);
        for (const auto &row : r.FontName) EXPECT_EQ(row[0], 0);
        for (const KovaDFBContext_t &context : r.context) EXPECT_EQ(context.uiPlaneWidth, 0u);
        EXPECT_TRUE(LockIsFree(pDisplay));
        EXPECT_EQ(Kova_TextDFBDisp_GetDFB(), r.pDfb);
        EXPECT_EQ(Kova_TextDFBDisp_GetLayer(), eLayer == KOVA_GRAPHIC_LAYER1 ? nullptr : r.pLayer);
        Kova_TextDFBDisp_Destroy(pDisplay);
    }
}

TEST(Create, FillsAllSlotsOfTheTableInTheirOrder)
{
    pKovaITextDisplay_t pDisplay = Create(KOVA_GRAPHIC_LAYER2);
    const auto *const pucTable = reinterpret_cast<const unsigned char *>(pDisplay);
    const size_t uiFirst = offsetof(KovaITextDisplay_t, Show);
    void *apSlots[34];

    static_assert(sizeof(KovaITextDisplay_t) == offsetof(KovaITextDisplay_t, Show) + sizeof apSlots,
                  "34 slots");
    memcpy(apSlots, pucTable + uiFirst, sizeof apSlots);
    for (int i = 0; i < 34; i++) {
        EXPECT_NE(apSlots[i], nullptr) << i + 1;
        for (int j = 0; j < i; j++) EXPECT_NE(apSlots[i], apSlots[j]) << i + 1 << " " << j + 1;
    }
    Kova_TextDFBDisp_Destroy(pDisplay);
}

// ---- creation with failures

enum Gives_e { FAILS, NOTHING };

struct FailureRow_t {
    const char *pcMethod;
    Gives_e eGives;
    int iNth;
    bool bDisplay; // whether a display results
    std::string trace;
};

static std::string NameOfRow(const testing::TestParamInfo<FailureRow_t> &row)
{
    std::string name = row.param.pcMethod;

    if (const size_t at = name.find('.'); at != std::string::npos) name.erase(at, 1);
    if (row.param.iNth > 1) name += std::to_string(row.param.iNth);
    return name + (row.param.eGives == FAILS ? "Fails" : "GivesNothing");
}

void PrintTo(const FailureRow_t &row, std::ostream *pStream)
{
    *pStream << row.pcMethod;
}

static const DFBResult FAILURE = DFB_LIMITEXCEEDED;

static void ExpectTrace(KovaGraphicLayer_e eLayer, const FailureRow_t &row)
{
    const LeaksAreMeant_t leaks;
    if (row.eGives == NOTHING) {
        GiveNothing(row.pcMethod);
    } else {
        FailNth(row.pcMethod, row.iNth, FAILURE);
    }

    pKovaITextDisplay_t pDisplay = Create(eLayer);

    EXPECT_EQ(Trace(), row.trace);
    EXPECT_EQ(pDisplay != nullptr, row.bDisplay);
    if (pDisplay) Kova_TextDFBDisp_Destroy(pDisplay);
}

// The trace with text added after a line, and the trace up to a line.
static size_t AfterLine(const std::string &trace, const std::string &line)
{
    const size_t at = ("\n" + trace).find("\n" + line + "\n");

    EXPECT_NE(at, std::string::npos) << line;
    return at + line.size() + 1;
}

static std::string With(std::string trace, const std::string &line, const std::string &added)
{
    return trace.insert(AfterLine(trace, line), added);
}

static std::string Until(const std::string &trace, const std::string &line)
{
    return trace.substr(0, AfterLine(trace, line));
}

static std::string Whole2()
{
    return Begin() + Layer(1, "LUT8") + s_end;
}

static std::string Whole1()
{
    return Begin() + Window("LUT8") + s_end;
}

// Each failure runs in a separate process, because object names are numbered.
class LayerFailure : public testing::TestWithParam<FailureRow_t>
{
};

TEST_P(LayerFailure, IsPrintedAndCreationContinuesOrEndsHere)
{
    ExpectTrace(KOVA_GRAPHIC_LAYER2, GetParam());
}

class WindowFailure : public testing::TestWithParam<FailureRow_t>
{
};

TEST_P(WindowFailure, IsPrintedAndThereIsADisplayAnyway)
{
    ExpectTrace(KOVA_GRAPHIC_LAYER1, GetParam());
}

static FailureRow_t GoesOn(const std::string &whole, const char *pcMethod, const char *pcLine, int iNth = 1)
{
    return {pcMethod, FAILS, iNth, true, With(whole, pcLine, CheckLine(FAILURE))};
}

// The second Clear of the window's surface, separate from the first.
static std::string SecondClearFails()
{
    std::string trace = Whole1();
    const std::string line = "base.Flip all WAIT|BLIT|ONSYNC\nbase.Clear 0,0,0,0\n";
    return trace.insert(trace.find(line) + line.size(), CheckLine(FAILURE));
}

static std::string NoMainInterface(bool bPrinted)
{
    return Until(Begin(), "DirectFBCreate") + (bPrinted ? CheckLine(FAILURE) : "") +
           Said("Before DFB Get Description!") + CheckLine(DFB_DESTROYED);
}

static const std::string s_noLayer = "error Kova_TextDFBDisp_Create: GetDisplayLayer(layer:1) failed.\n";
static const std::string s_noSurface = "ERROR Kova_TextDFBDisp_Create: Fail to get surface from layer!\n";
static const char s_acConfiguration[] =
    "layer.SetConfiguration WIDTH|HEIGHT|PIXELFORMAT|BUFFERMODE|SURFACE_CAPS 720x480 LUT8 BACKVIDEO DOUBLE";
static const char s_acWindow[] =
    "layer.CreateWindow CAPS|WIDTH|HEIGHT|PIXELFORMAT|POSX|POSY|OPTIONS|STACKING "
    "720x480 at 0,0 LUT8 ALPHACHANNEL|DOUBLEBUFFER|NOFOCUS ALPHACHANNEL|SCALE LOWER";

static std::string ConfigurationUnknown()
{
    std::string trace = With(Whole1(), "layer.GetConfiguration", CheckLine(FAILURE));
    const std::string bounds = "window.SetBounds 0,0 1920x1080";
    return trace.replace(trace.find(bounds), bounds.size(), "window.SetBounds 0,0 0x0");
}

INSTANTIATE_TEST_SUITE_P(
    Create, LayerFailure,
    testing::Values(GoesOn(Whole2(), "DirectFBInit", "DirectFBInit null,null"),
                    GoesOn(Whole2(), "Dfb.GetDeviceDescription", "dfb.GetDeviceDescription"),
                    GoesOn(Whole2(), "Layer.SetCooperativeLevel", "layer.SetCooperativeLevel EXCLUSIVE"),
                    GoesOn(Whole2(), "Layer.GetConfiguration", "layer.GetConfiguration"),
                    GoesOn(Whole2(), "Layer.SetConfiguration", s_acConfiguration),
                    GoesOn(Whole2(), "Surface.SetDescriptionFlags",
                           "base.SetDescriptionFlags DESTINATION_LUT8"),
                    GoesOn(Whole2(), "Surface.Clear", "base.Clear 0,0,0,0"),
                    GoesOn(Whole2(), "Surface.SetClip", "base.SetClip 0,0 719,479"),
                    GoesOn(Whole2(), "Surface.SetBlittingFlags", "base.SetBlittingFlags NOFX"),
                    FailureRow_t{"DirectFBCreate", FAILS, 1, false,
                                 NoMainInterface(true) + Said("Before DFB Get Layer!") + s_noLayer + s_end},
                    FailureRow_t{"DirectFBCreate", NOTHING, 1, false,
                                 NoMainInterface(false) + Said("Before DFB Get Layer!") + s_noLayer + s_end},
                    FailureRow_t{"Dfb.GetDisplayLayer", FAILS, 1, false,
                                 Until(Whole2(), "dfb.GetDisplayLayer 1") + s_noLayer + s_end},
                    FailureRow_t{"Dfb.GetDisplayLayer", NOTHING, 1, false,
                                 Until(Whole2(), "dfb.GetDisplayLayer 1") + s_noLayer + s_end},
                    FailureRow_t{"Layer.GetSurface", FAILS, 1, false,
                                 Until(Whole2(), "layer.GetSurface") + CheckLine(FAILURE) + s_noSurface},
                    FailureRow_t{"Layer.GetSurface", NOTHING, 1, false,
                                 Until(Whole2(), "layer.GetSurface") + s_noSurface}),
    NameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Create, WindowFailure,
    testing::Values(GoesOn(Whole1(), "DirectFBInit", "DirectFBInit null,null"),
                    GoesOn(Whole1(), "Dfb.GetDeviceDescription", "dfb.GetDeviceDescription"),
                    FailureRow_t{"DirectFBCreate", FAILS, 1, true,
                                 NoMainInterface(true) + "ERROR CreateOSD1Window: NULL Pointer!\n" + s_end},
                    FailureRow_t{"DirectFBCreate", NOTHING, 1, true,
                                 NoMainInterface(false) + "ERROR CreateOSD1Window: NULL Pointer!\n" + s_end},
                    FailureRow_t{"Dfb.GetDisplayLayer", FAILS, 1, true,
                                 Until(Whole1(), "dfb.GetDisplayLayer 0") +
                                     "ERROR CreateOSD1Window: pLayer is NULL!\n" + s_end},
                    FailureRow_t{"Dfb.GetDisplayLayer", NOTHING, 1, true,
                                 Until(Whole1(), "dfb.GetDisplayLayer 0") +
                                     "ERROR CreateOSD1Window: pLayer is NULL!\n" + s_end},
                    FailureRow_t{"Layer.SetCooperativeLevel", FAILS, 1, true,
                                 With(Whole1(), "layer.SetCooperativeLevel SHARED", "DFB_CHECK_BRIEF\n")},
                    FailureRow_t{"Layer.GetConfiguration", FAILS, 1, true, ConfigurationUnknown()},
                    FailureRow_t{"Layer.CreateWindow", FAILS, 1, true,
                                 Until(Whole1(), s_acWindow) + CheckLine(FAILURE) +
                                     "ERROR CreateOSD1Window: Fail to create window from layer!\n" + s_end},
                    FailureRow_t{"Layer.CreateWindow", NOTHING, 1, true,
                                 Until(Whole1(), s_acWindow) +
                                     "ERROR CreateOSD1Window: Fail to create window from layer!\n" + s_end},
                    GoesOn(Whole1(), "Window.SetBounds", "window.SetBounds 0,0 1920x1080"),
                    FailureRow_t{"Window.GetSurface", FAILS, 1, true,
                                 Until(Whole1(), "window.GetSurface") + CheckLine(FAILURE) +
                                     "ERROR CreateOSD1Window: Fail to get surface from window!\n" + s_end},
                    FailureRow_t{"Window.GetSurface", NOTHING, 1, true,
                                 Until(Whole1(), "window.GetSurface") +
                                     "ERROR CreateOSD1Window: Fail to get surface from window!\n" + s_end},
                    GoesOn(Whole1(), "Surface.Clear", "base.Clear 0,0,0,0"),
                    FailureRow_t{"Surface.Clear", FAILS, 2, true, SecondClearFails()},
                    GoesOn(Whole1(), "Surface.Flip", "base.Flip all WAIT|BLIT|ONSYNC"),
                    GoesOn(Whole1(), "Window.SetOpacity", "window.SetOpacity 255"),
                    GoesOn(Whole1(), "Window.RaiseToTop", "window.RaiseToTop"),
                    GoesOn(Whole1(), "Surface.SetClip", "base.SetClip 0,0 719,479"),
                    GoesOn(Whole1(), "Surface.SetBlittingFlags", "base.SetBlittingFlags NOFX")),
    NameOfRow);

TEST(Create, ReportsOnlyThatThereIsNoMemory)
{
    FailAllocation();

    EXPECT_EQ(Create(KOVA_GRAPHIC_LAYER2), nullptr);

    EXPECT_EQ(Trace(), "ERROR Kova_TextDFBDisp_Create: Malloc Fail!\n");
}

TEST(Create, KeepsWhatItAcquiredWhenItFindsNoLayer)
{
    const LeaksAreMeant_t leaks;
    Fail("Dfb.GetDisplayLayer", FAILURE);

    EXPECT_EQ(Create(KOVA_GRAPHIC_LAYER2), nullptr);

    EXPECT_EQ(LiveObjectNames(), "dfb");
    EXPECT_EQ(TraceOf("dlclose"), "");
}

TEST(Create, KeepsWhatItAcquiredWhenItFindsNoSurface)
{
    const LeaksAreMeant_t leaks;
    Fail("Layer.GetSurface", FAILURE);

    EXPECT_EQ(Create(KOVA_GRAPHIC_LAYER2), nullptr);

    EXPECT_EQ(LiveObjectNames(), "dfb layer");
    EXPECT_EQ(TraceOf("dlclose"), "");
}

TEST(Create, KeepsTheRecordWhenItFails)
{
    for (const char *pcMethod : {"Dfb.GetDisplayLayer", "Layer.GetSurface"}) {
        SCOPED_TRACE(pcMethod);
        const LeaksAreMeant_t leaks;
        const int iTimes = 50;
        Reset();
        Fail(pcMethod, FAILURE);
        for (int i = 0; i < 5; i++) Create(KOVA_GRAPHIC_LAYER2), ClearTrace();
        const size_t uiBefore = mallinfo2().uordblks;
        if (uiBefore == 0) GTEST_SKIP() << "a sanitizer owns the heap";
        for (int i = 0; i < iTimes; i++) Create(KOVA_GRAPHIC_LAYER2), ClearTrace();
        EXPECT_GE(mallinfo2().uordblks - uiBefore, iTimes * sizeof(KovaDFBDisplay_t));
    }
}

TEST(Create, ReportsTheLayersOfTheDisplayCreatedLast)
{
    const LeaksAreMeant_t leaks;
    EXPECT_EQ(Kova_TextDFBDisp_GetLayer(), nullptr);
    EXPECT_EQ(Kova_TextDFBDisp_GetDFB(), nullptr);
    pKovaITextDisplay_t pFirst = Create(KOVA_GRAPHIC_LAYER2);
    IDirectFBDisplayLayer *const pLayer = RecordOf(pFirst)->pLayer;
    IDirectFB *const pDfb = RecordOf(pFirst)->pDfb;

    FailNth("Layer.GetSurface", 1, FAILURE);
    EXPECT_EQ(Create(KOVA_GRAPHIC_LAYER3), nullptr);
    EXPECT_EQ(Kova_TextDFBDisp_GetLayer(), pLayer);
    EXPECT_EQ(Kova_TextDFBDisp_GetDFB(), pDfb);

    pKovaITextDisplay_t pSecond = Create(KOVA_GRAPHIC_LAYER3);
    EXPECT_EQ(Kova_TextDFBDisp_GetLayer(), RecordOf(pSecond)->pLayer);
    EXPECT_EQ(Kova_TextDFBDisp_GetDFB(), RecordOf(pSecond)->pDfb);

    pKovaITextDisplay_t pWindow = Create(KOVA_GRAPHIC_LAYER1);
    EXPECT_EQ(Kova_TextDFBDisp_GetLayer(), nullptr);
    EXPECT_EQ(Kova_TextDFBDisp_GetDFB(), RecordOf(pWindow)->pDfb);

    for (pKovaITextDisplay_t pDisplay : {pFirst, pSecond, pWindow}) Kova_TextDFBDisp_Destroy(pDisplay);
}

TEST(Create, WaitsForALayerThatIsTemporarilyUnavailable)
{
    TemporarilyUnavailable(3);

    pKovaITextDisplay_t pDisplay = Create(KOVA_GRAPHIC_LAYER2);

    ASSERT_NE(pDisplay, nullptr);
    std::string waiting;
    for (int i = 0; i < 3; i++) {
        waiting += "error Kova_TextDFBDisp_Create: #################### DFB_TEMPUNAVAIL " +
                   std::to_string(i) +
                   " #######################\n"
                   "usleep 50000\n"
                   "dfb.GetDisplayLayer 1\n";
    }
    EXPECT_EQ(Trace(), With(Whole2(), "dfb.GetDisplayLayer 1", waiting));
    for (const Record_t &record : Records()) {
        if (record.iLevel == 1) {
            EXPECT_EQ(record.format, "#################### DFB_TEMPUNAVAIL %d #######################\n");
        }
    }
    Kova_TextDFBDisp_Destroy(pDisplay);
}

TEST(Create, StopsWaitingForALayerThatFailsInTheEnd)
{
    const LeaksAreMeant_t leaks;
    TemporarilyUnavailable(1);
    Fail("Dfb.GetDisplayLayer", FAILURE);

    EXPECT_EQ(Create(KOVA_GRAPHIC_LAYER3), nullptr);

    EXPECT_EQ(Trace(), Begin() + Said("Before DFB Get Layer!") +
                           "dfb.GetDisplayLayer 2\n"
                           "error Kova_TextDFBDisp_Create: #################### DFB_TEMPUNAVAIL 0 "
                           "#######################\n"
                           "usleep 50000\n"
                           "dfb.GetDisplayLayer 2\n"
                           "error Kova_TextDFBDisp_Create: GetDisplayLayer(layer:2) failed.\n" +
                           s_end);
}

// ---- destruction

static std::string DestroySaid(const std::string &text)
{
    return "log Kova_TextDFBDisp_Destroy: " + text + "\n";
}

static const std::string s_destroyed = DestroySaid("Free dfb!") + "dfb.Release\n" +
                                       DestroySaid("Free mutex!") + "dlclose\n" +
                                       DestroySaid("Free pDFBDisplay!") + "exit Kova_TextDFBDisp_Destroy\n";

TEST(DestroyDisplay, ReleasesALayersDisplayInThisOrder)
{
    for (const ColorMode_e eMode : {INDEX_COLORS, PALETTE_COLORS, PACKED_COLORS}) {
        pKovaITextDisplay_t pDisplay = Create(KOVA_GRAPHIC_LAYER2, eMode);
        const std::string name = NameOf(RecordOf(pDisplay)->pBaseSurface);
        const std::string number = name.substr(strlen("base"));
        ClearTrace();

        Kova_TextDFBDisp_Destroy(pDisplay);

        std::string expected = "enter Kova_TextDFBDisp_Destroy\n" + DestroySaid("Free surface!") + name +
                               ".Release\n" + DestroySaid("Free layer!") + "layer" + number + ".Release\n" +
                               s_destroyed;
        expected.replace(expected.find("dfb.Release"), 3, "dfb" + number);
        EXPECT_EQ(Trace(), expected);
        EXPECT_EQ(LiveObjects(), 0);
    }
}

TEST(DestroyDisplay, ReleasesAWindowsDisplayInThisOrder)
{
    pKovaITextDisplay_t pDisplay = Create(KOVA_GRAPHIC_LAYER1);
    ClearTrace();

    Kova_TextDFBDisp_Destroy(pDisplay);

    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_Destroy\n"
                       "base.Release\n"
                       "window.Release\n"
                       "layer.Release\n" +
                           s_destroyed);
    EXPECT_EQ(LiveObjects(), 0);
}

TEST(DestroyDisplay, OfNoDisplayOnlyTracesEntryAndExit)
{
    Kova_TextDFBDisp_Destroy(nullptr);

    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_Destroy\nexit Kova_TextDFBDisp_Destroy\n");
}

TEST(DestroyDisplay, ReleasesEveryFontFirstAndNamesItsSlot)
{
    pKovaITextDisplay_t pDisplay = Create(KOVA_GRAPHIC_LAYER2);
    const std::string longName(100, 'x'); // its font has no name
    kova_sint32 siFont;
    for (const char *pcName : {"a", "b", longName.c_str(), "d"}) {
        pDisplay->CreateFont(pDisplay, 0, pcName, 10, KOVA_FONTATTR_NONE, &siFont);
    }
    GiveNothing("Dfb.CreateFont"); // opening slot 1 again at another height fails: it is now empty
    pDisplay->CreateFont(pDisplay, 0, "b", 20, KOVA_FONTATTR_NONE, &siFont);
    ASSERT_EQ(LiveObjectNames(), "base dfb font font3 font4 layer");
    ClearTrace();

    Kova_TextDFBDisp_Destroy(pDisplay);

    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_Destroy\n" + DestroySaid("Free font 0x0!") + "font.Release\n" +
                           DestroySaid("Free font 0x2!") + "font3.Release\n" + DestroySaid("Free font 0x3!") +
                           "font4.Release\n" + DestroySaid("Free surface!") + "base.Release\n" +
                           DestroySaid("Free layer!") + "layer.Release\n" + s_destroyed);
    EXPECT_EQ(LiveObjects(), 0);
}

TEST(DestroyDisplay, ReleasesABackupSurfaceOfALayerButNotOfTheWindow)
{
    pKovaITextDisplay_t pDisplay = Create(KOVA_GRAPHIC_LAYER3);
    GivenBackupSurface(pDisplay);
    RecordOf(pDisplay)->pActiveSurface =
        RecordOf(pDisplay)->pBackupSurface; // borrowed, and must not be released twice
    ClearTrace();
    Kova_TextDFBDisp_Destroy(pDisplay);
    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_Destroy\n" + DestroySaid("Free surface!") +
                           "base.Release\n"
                           "backup.Release\n" +
                           DestroySaid("Free layer!") + "layer.Release\n" + s_destroyed);

    pDisplay = Create(KOVA_GRAPHIC_LAYER1);
    IDirectFBSurface *const pBackup = GivenBackupSurface(pDisplay);
    Kova_TextDFBDisp_Destroy(pDisplay);
    EXPECT_EQ(LiveObjectNames(), NameOf(pBackup));
    pBackup->Release(pBackup);
}

TEST(DestroyDisplay, LeavesTheCharacterSurfaceAlone)
{
    pKovaITextDisplay_t pDisplay = Create(KOVA_GRAPHIC_LAYER2);
    IDirectFBSurface *const pChar = MakeSurface("char", 8, 8, DSPF_LUT8);
    RecordOf(pDisplay)->pCharSurface = pChar;

    Kova_TextDFBDisp_Destroy(pDisplay);

    EXPECT_EQ(LiveObjectNames(), "char");
    pChar->Release(pChar);
}

TEST(DestroyDisplay, SkipsMissingObjects)
{
    pKovaITextDisplay_t pDisplay = Create(KOVA_GRAPHIC_LAYER2);
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    pRecord->pBaseSurface->Release(pRecord->pBaseSurface);
    pRecord->pLayer->Release(pRecord->pLayer);
    pRecord->pDfb->Release(pRecord->pDfb);
    pRecord->pBaseSurface = nullptr;
    pRecord->pLayer = nullptr;
    pRecord->pDfb = nullptr;
    ClearTrace();

    Kova_TextDFBDisp_Destroy(pDisplay);

    EXPECT_EQ(Trace(), "enter Kova_TextDFBDisp_Destroy\n" + DestroySaid("Free surface!") +
                           DestroySaid("Free mutex!") + "dlclose\n" + DestroySaid("Free pDFBDisplay!") +
                           "exit Kova_TextDFBDisp_Destroy\n");
}

TEST(DestroyDisplay, PrintsFailuresAndContinues)
{
    const LeaksAreMeant_t leaks; // objects that cannot be released leak
    pKovaITextDisplay_t pDisplay = Create(KOVA_GRAPHIC_LAYER2);
    kova_sint32 siFont;
    pDisplay->CreateFont(pDisplay, 0, "a", 10, KOVA_FONTATTR_NONE, &siFont);
    GivenBackupSurface(pDisplay);
    for (const char *pcKind : {"Font", "Surface", "Layer", "Dfb"}) {
        Fail(std::string(pcKind) + ".Release", FAILURE);
    }
    ClearTrace();

    Kova_TextDFBDisp_Destroy(pDisplay);

    const std::string check = CheckLine(FAILURE);
    EXPECT_EQ(CallsOnly(Trace()), "font.Release\n" + check + "base.Release\n" + check + "backup.Release\n" +
                                      check + "layer.Release\n" + check + "dfb.Release\n" + check +
                                      "dlclose\n");
    EXPECT_EQ(TraceOf("exit"), "exit Kova_TextDFBDisp_Destroy\n");
}

TEST(DestroyDisplay, PrintsFailuresOfTheWindowToo)
{
    const LeaksAreMeant_t leaks;
    pKovaITextDisplay_t pDisplay = Create(KOVA_GRAPHIC_LAYER1);
    for (const char *pcKind : {"Surface", "Window", "Layer"}) Fail(std::string(pcKind) + ".Release", FAILURE);
    ClearTrace();

    Kova_TextDFBDisp_Destroy(pDisplay);

    const std::string check = CheckLine(FAILURE);
    EXPECT_EQ(CallsOnly(Trace()), "base.Release\n" + check + "window.Release\n" + check + "layer.Release\n" +
                                      check + "dfb.Release\ndlclose\n");
}

TEST(DestroyDisplay, DoesNotStopTheFlipThread)
{
    // The record must outlive its thread, so there is no real thread.
    pKovaITextDisplay_t pDisplay = Create(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->flip_thread_ref = 1;
    ClearTrace();

    Kova_TextDFBDisp_Destroy(pDisplay);

    EXPECT_EQ(TraceOf("pthread_join"), "");
    EXPECT_EQ(LiveObjects(), 0);
}

TEST(DestroyDisplay, KeepsTheLayerAndTheMainInterfaceOnRecord)
{
    pKovaITextDisplay_t pDisplay = Create(KOVA_GRAPHIC_LAYER2);
    IDirectFBDisplayLayer *const pLayer = RecordOf(pDisplay)->pLayer;
    IDirectFB *const pDfb = RecordOf(pDisplay)->pDfb;

    Kova_TextDFBDisp_Destroy(pDisplay);

    EXPECT_EQ(Kova_TextDFBDisp_GetLayer(), pLayer);
    EXPECT_EQ(Kova_TextDFBDisp_GetDFB(), pDfb);
}

TEST(DestroyDisplay, FreesTheRecord)
{
    for (int i = 0; i < 5; i++) Kova_TextDFBDisp_Destroy(Create(KOVA_GRAPHIC_LAYER2)), ClearTrace();
    const size_t uiBefore = mallinfo2().uordblks;
    for (int i = 0; i < 50; i++) Kova_TextDFBDisp_Destroy(Create(KOVA_GRAPHIC_LAYER2)), ClearTrace();
    EXPECT_LT(mallinfo2().uordblks, uiBefore + 25 * sizeof(KovaDFBDisplay_t));
}
