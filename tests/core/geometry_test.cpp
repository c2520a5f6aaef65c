// SPDX-License-Identifier: MIT
#include "expect.h"

using namespace test;

// The trace before the first check, without the lock.
static std::string Begun(const std::string &function, kova_sint32 siWidth, kova_sint32 siHeight)
{
    return "enter " + function + "\nlog " + function + ": \\n\\n########################### Enter " +
           function + "! width:" + std::to_string(siWidth) + ",height:" + std::to_string(siHeight) +
           " ##################################\\n\n";
}

static std::string PlaneMade(const std::string &format, const std::string &size)
{
    return "  base.Release\n"
           "  layer.GetConfiguration\n"
           "  layer.SetConfiguration WIDTH|HEIGHT|PIXELFORMAT|BUFFERMODE|SURFACE_CAPS " +
           size + " " + format +
           " BACKVIDEO DOUBLE\n"
           "  layer.GetSurface\n";
}

static const char *const PALETTE_LOADED =
    "  base2.SetDescriptionFlags DESTINATION_LUT8\n"
    "  base2.GetPalette\n"
    "  palette.SetEntries 256 at 0: 0,0,0,0 0,0,0,0 0,0,0,0 0,0,0,0 ...\n"
    "  palette.Release\n";
static const char *const CLIP_SET = "  base2.SetClip 0,0 1279,719\n"
                                    "  base2.SetBlittingFlags NOFX\n";

static std::string IndexedPlane()
{
    return Begun("SetPlane", 1280, 720) + PlaneMade("LUT8", "1280x720") + PALETTE_LOADED + CLIP_SET +
           Wiped("base2", INDEX_COLORS, "1280x720") + "exit SetPlane\n";
}

TEST(SetPlane, RebuildsThePlaneOfAnIndexedLayer)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 11, 22, 1280, 720), 0); // the position is ignored

    EXPECT_EQ(Tidy(Trace()), IndexedPlane());
    const KovaDFBDisplay_t &record = *RecordOf(pDisplay);
    EXPECT_EQ(record.uiPlaneWidth, 1280u);
    EXPECT_EQ(record.uiPlaneHeight, 720u);
    EXPECT_EQ(record.context[0].uiPlaneWidth, 1280u);
    EXPECT_EQ(record.context[0].uiPlaneHeight, 720u);
    EXPECT_EQ(record.clip.x1, 0);
    EXPECT_EQ(record.clip.y1, 0);
    EXPECT_EQ(record.clip.x2, 1279);
    EXPECT_EQ(record.clip.y2, 719);
    EXPECT_EQ(record.pActiveSurface, record.pBaseSurface);
    EXPECT_EQ(record.bShow, 1);
    EXPECT_EQ(record.scActiveContextID, 0);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(SetPlane, LeavesAHiddenDisplayHidden)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    EXPECT_EQ(Tidy(Trace()), IndexedPlane()); // cleared as well
    EXPECT_EQ(RecordOf(pDisplay)->bShow, 0);
    Destroy(pDisplay);
}

TEST(SetPlane, RebuildsThePlaneOfATrueColourLayerWithoutItsPalette)
{
    for (const ColorMode_e eMode : {PALETTE_COLORS, PACKED_COLORS}) {
        pKovaITextDisplay_t pDisplay =
            GivenShownDisplay(eMode == PALETTE_COLORS ? KOVA_GRAPHIC_LAYER2 : KOVA_GRAPHIC_LAYER3, eMode);
        const std::string surface = NameOf(RecordOf(pDisplay)->pBaseSurface);
        if (surface != "base") { // numbered after the two of the first display
            EXPECT_EQ(surface, "base3");
        }

        EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

        const std::string next = surface == "base" ? "base2" : "base4";
        const std::string layer = surface == "base" ? "layer" : "layer2";
        EXPECT_EQ(Tidy(Trace()),
                  Begun("SetPlane", 1280, 720) + "  " + surface + ".Release\n  " + layer +
                      ".GetConfiguration\n  " + layer +
                      ".SetConfiguration WIDTH|HEIGHT|PIXELFORMAT|BUFFERMODE|SURFACE_CAPS 1280x720 ARGB "
                      "BACKVIDEO DOUBLE\n  " +
                      layer + ".GetSurface\n  " + next + ".SetClip 0,0 1279,719\n  " + next +
                      ".SetBlittingFlags NOFX\n" + Wiped(next, eMode, "1280x720") + "exit SetPlane\n");
        EXPECT_EQ(RecordOf(pDisplay)->bColor32, eMode == PACKED_COLORS); // only an activation ends the mode
        Destroy(pDisplay);
    }
}

TEST(SetPlane, LoadsThePaletteOfTheRecordIntoTheNewSurface)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextColor_t color = {5, 6, 7, 8};
    EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, &color, 1, 255), 0);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    const DFBColor last = PaletteOf(RecordOf(pDisplay)->pBaseSurface)[255];
    EXPECT_EQ(last.r, 5);
    EXPECT_EQ(last.g, 6);
    EXPECT_EQ(last.b, 7);
    EXPECT_EQ(last.a, 8);
    Destroy(pDisplay);
}

TEST(SetPlane, RecreatesTheWindowOfTheFirstLayer)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER1);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    EXPECT_EQ(
        Tidy(Trace()),
        Begun("SetPlane", 1280, 720) +
            "  base2.Release\n"
            "  window2.Release\n"
            "  layer2.Release\n"
            "  dfb.GetDisplayLayer 0\n"
            "  layer3.SetCooperativeLevel SHARED\n"
            "  layer3.GetConfiguration\n"
            "  layer3.CreateWindow CAPS|WIDTH|HEIGHT|PIXELFORMAT|POSX|POSY|OPTIONS|STACKING 1280x720 at "
            "0,0 LUT8 ALPHACHANNEL|DOUBLEBUFFER|NOFOCUS ALPHACHANNEL|SCALE LOWER\n"
            "  window3.SetBounds 0,0 1920x1080\n"
            "  window3.GetSurface\n"
            "  base3.Clear 0,0,0,0\n"
            "  base3.Flip all WAIT|BLIT|ONSYNC\n"
            "  base3.Clear 0,0,0,0\n"
            "  window3.SetOpacity 255\n"
            "  window3.RaiseToTop\n"
            "  base3.SetClip 0,0 1279,719\n"
            "  base3.SetBlittingFlags NOFX\n" +
            Wiped("base3", INDEX_COLORS, "1280x720") + "exit SetPlane\n");
    EXPECT_EQ(RecordOf(pDisplay)->context[0].uiPlaneWidth, 1280u);
    EXPECT_EQ(RecordOf(pDisplay)->uiPlaneHeight, 720u);
    EXPECT_EQ(RecordOf(pDisplay)->bShow, 1);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(SetPlane, IgnoresThatTheWindowFails)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER1);
    FailNth("Dfb.GetDisplayLayer", 1, DFB_FAILURE);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    EXPECT_TRUE(Contains(Trace(), "  ERROR CreateOSD1Window: pLayer is NULL!\n"));
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->uiPlaneWidth, 1280u);
    Destroy(pDisplay);
}

TEST(SetPlane, KeepsDrawingOnTheBackupSurfaceButOnTheFirstLayer)
{
    for (const KovaGraphicLayer_e eLayer : {KOVA_GRAPHIC_LAYER1, KOVA_GRAPHIC_LAYER2, KOVA_GRAPHIC_LAYER3}) {
        SCOPED_TRACE(eLayer);
        pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(eLayer);
        IDirectFBSurface *const pBackup = GivenBackupSurface(pDisplay);
        EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);

        EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

        EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, eLayer == KOVA_GRAPHIC_LAYER1 ? nullptr : pBackup);
        EXPECT_NE(RecordOf(pDisplay)->pBaseSurface, nullptr);
        if (eLayer == KOVA_GRAPHIC_LAYER1) pBackup->Release(pBackup); // destruction does not release it
        Destroy(pDisplay);
    }
}

TEST(SetPlane, DrawsOnTheNewSurfaceWhenABackupSurfaceIsThereButNotInUse)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    GivenBackupSurface(pDisplay);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, RecordOf(pDisplay)->pBaseSurface);
    Destroy(pDisplay);
}

TEST(SetPlane, OpensTheFontsAgainInTheLowestSlots)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    for (kova_uint32 i = 0; i < 6; i++) {
        kova_sint32 siFont = -1;
        const std::string name = "f" + std::to_string(i) + ".ttf";
        EXPECT_EQ(pDisplay->CreateFont(pDisplay, 0, name.c_str(), 20 + i, KOVA_FONTATTR_NONE, &siFont), 0);
        EXPECT_EQ(siFont, kova_sint32(i));
    }
    for (const int iGone : {1, 3, 4}) {
        pRecord->font[iGone].pFont->Release(pRecord->font[iGone].pFont);
        pRecord->font[iGone] = {};
    }
    EXPECT_EQ(pDisplay->SetFont(pDisplay, 0, 2, 22, KOVA_FONTATTR_NONE), 0);
    ClearTrace();

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    // Slot 2 is selected again. It is now the third font, at the height of the second.
    EXPECT_EQ(Tidy(Trace()), Begun("SetPlane", 1280, 720) + PlaneMade("LUT8", "1280x720") + PALETTE_LOADED +
                                 CLIP_SET +
                                 "  font.Release\n"
                                 "  font3.Release\n"
                                 "  font6.Release\n"
                                 "  dfb.CreateFont f0.ttf ATTRIBUTES|HEIGHT attributes 0 height 20\n"
                                 "  font7.EnumEncodings\n"
                                 "  dfb.CreateFont f2.ttf ATTRIBUTES|HEIGHT attributes 0 height 22\n"
                                 "  font8.EnumEncodings\n"
                                 "  dfb.CreateFont f5.ttf ATTRIBUTES|HEIGHT attributes 0 height 25\n"
                                 "  font9.EnumEncodings\n"
                                 "  font9.Release\n"
                                 "  dfb.CreateFont f5.ttf ATTRIBUTES|HEIGHT attributes 0 height 22\n"
                                 "  font10.EnumEncodings\n"
                                 "  base2.SetFont font10\n" +
                                 Wiped("base2", INDEX_COLORS, "1280x720") + "exit SetPlane\n");
    EXPECT_EQ(pRecord->scActiveFontID, 2);
    for (int i = 0; i < MAX_FONTS; i++) EXPECT_EQ(pRecord->font[i].pFont != nullptr, i < 3) << i;
    Destroy(pDisplay);
}

TEST(SetPlane, OpensTheOtherFontsWhenOneCannotBeReleased)
{
    const LeaksAreMeant_t leaks;
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    kova_sint32 siFont = -1;
    EXPECT_EQ(pDisplay->CreateFont(pDisplay, 0, "a.ttf", 20, KOVA_FONTATTR_NONE, &siFont), 0);
    EXPECT_EQ(pDisplay->CreateFont(pDisplay, 0, "b.ttf", 20, KOVA_FONTATTR_NONE, &siFont), 0);
    ClearTrace();
    FailNth("Font.Release", 1, DFB_FAILURE);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    EXPECT_TRUE(Contains(Trace(), "  font.Release\n  " + CheckLine(DFB_FAILURE) +
                                      "  font2.Release\n"
                                      "  dfb.CreateFont a.ttf "));
    EXPECT_NE(RecordOf(pDisplay)->font[1].pFont, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, -1); // unchanged
    Destroy(pDisplay, "font");
}

TEST(SetPlane, ContinuesWhenACallFails)
{
    const LeaksAreMeant_t leaks;
    const char *const apcMethods[] = {"Surface.Release",         "Layer.GetConfiguration",
                                      "Layer.SetConfiguration",  "Surface.SetDescriptionFlags",
                                      "Palette.SetEntries",      "Surface.SetClip",
                                      "Surface.SetBlittingFlags"};
    for (const char *const pcMethod : apcMethods) {
        SCOPED_TRACE(pcMethod);
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
        FailNth(pcMethod, 1, DFB_FAILURE);

        EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

        const std::string trace = Tidy(Trace());
        EXPECT_EQ(CountOf(trace, "DFB_CHECK"), 1);
        EXPECT_TRUE(Contains(trace, "  " + CheckLine(DFB_FAILURE)));
        const size_t call = trace.find(strchr(pcMethod, '.'));
        ASSERT_NE(call, std::string::npos);
        EXPECT_EQ(trace.find("DFB_CHECK"), trace.find('\n', call) + 3);     // on the next line
        EXPECT_EQ(CountOf(trace, "\n"), CountOf(IndexedPlane(), "\n") + 1); // and nothing is skipped
        EXPECT_EQ(RecordOf(pDisplay)->uiPlaneWidth, 1280u);
        Destroy(pDisplay, pcMethod == apcMethods[0] ? "base" : "");
    }
}

TEST(SetPlane, EndsWithoutASurfaceWhenTheLayerReturnsNone)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    FailNth("Layer.GetSurface", 1, DFB_FAILURE);

    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    const std::string check = CheckLine(DFB_DESTROYED);
    EXPECT_EQ(Tidy(Trace()), Begun("SetPlane", 1280, 720) + PlaneMade("LUT8", "1280x720") + "  " +
                                 CheckLine(DFB_FAILURE) + "  " + check + "  " + check + // flags, GetPalette
                                 "  " + check + "  " + check +  // clip, blitting flags
                                 "  " + check + check + check + // the clear
                                 "exit SetPlane\n");
    EXPECT_EQ(RecordOf(pDisplay)->pBaseSurface, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, nullptr);
    Destroy(pDisplay);
}

TEST(AdjustDisplaySize, ResizesTheLayerAndTakesItsSurfaceAndNoMore)
{
    const struct {
        KovaGraphicLayer_e eLayer;
        const char *pcOld, *pcNew, *pcLayer;
    } rows[] = {{KOVA_GRAPHIC_LAYER2, "base", "base2", "layer"},
                {KOVA_GRAPHIC_LAYER1, "base4", "base5", "layer3"}};
    for (const auto &row : rows) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(row.eLayer);
        GivenFont(pDisplay);
        const std::string before = std::string("  ") + row.pcLayer, after = std::string("  ") + row.pcNew;
        RecordOf(pDisplay)->blast_frame_changed = 0;

        EXPECT_EQ(pDisplay->AdjustDisplaySize(pDisplay, 0, 11, 22, 1280, 720), 0);

        EXPECT_EQ(Trace(), Begun("AdjustDisplaySize", 1280, 720) + "  " + row.pcOld + ".Release\n" + before +
                               ".GetConfiguration\n" + before + ".SetConfiguration WIDTH|HEIGHT 1280x720\n" +
                               before + ".GetSurface\n" + after +
                               ".SetClip 0,0 1279,719\n"
                               "exit AdjustDisplaySize\n");
        const KovaDFBDisplay_t &record = *RecordOf(pDisplay);
        EXPECT_EQ(record.uiPlaneWidth, 1280u);
        EXPECT_EQ(record.uiPlaneHeight, 720u);
        EXPECT_EQ(record.context[0].uiPlaneWidth, 1280u);
        EXPECT_EQ(record.context[0].uiPlaneHeight, 720u);
        EXPECT_EQ(record.clip.x2, 1279);
        EXPECT_EQ(record.clip.y2, 719);
        EXPECT_EQ(record.pActiveSurface, record.pBaseSurface);
        EXPECT_EQ(record.blast_frame_changed, 0);
        EXPECT_EQ(record.scActiveFontID, 0);
        EXPECT_TRUE(LockIsFree(pDisplay));
        Destroy(pDisplay);
    }
}

TEST(AdjustDisplaySize, DropsTheBackupSurfaceAsTheTarget)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    GivenBackupSurface(pDisplay);
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);

    EXPECT_EQ(pDisplay->AdjustDisplaySize(pDisplay, 0, 0, 0, 1280, 720), 0);

    EXPECT_EQ(NameOf(RecordOf(pDisplay)->pActiveSurface), "base2");
    Destroy(pDisplay);
}

TEST(AdjustDisplaySize, ContinuesWhenACallFails)
{
    const LeaksAreMeant_t leaks;
    const char *const apcMethods[] = {"Surface.Release", "Layer.GetConfiguration", "Layer.SetConfiguration"};
    for (const char *const pcMethod : apcMethods) {
        SCOPED_TRACE(pcMethod);
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
        FailNth(pcMethod, 1, DFB_FAILURE);

        EXPECT_EQ(pDisplay->AdjustDisplaySize(pDisplay, 0, 0, 0, 1280, 720), 0);

        const std::string trace = Trace();
        EXPECT_EQ(CountOf(trace, "\n"), 9);
        EXPECT_EQ(trace.find("  " + CheckLine(DFB_FAILURE)),
                  trace.find('\n', trace.find(strchr(pcMethod, '.'))) + 1);
        Destroy(pDisplay, pcMethod == apcMethods[0] ? "base" : "");
    }
}

TEST(AdjustDisplaySize, EndsWithoutASurfaceWhenTheLayerReturnsNone)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    FailNth("Layer.GetSurface", 1, DFB_FAILURE);

    EXPECT_EQ(pDisplay->AdjustDisplaySize(pDisplay, 0, 0, 0, 1280, 720), 0);

    EXPECT_TRUE(Contains(Trace(), "  layer.GetSurface\n" + CheckLine(DFB_FAILURE) + CheckLine(DFB_DESTROYED) +
                                      "exit AdjustDisplaySize\n"));
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->pBaseSurface, nullptr);
    Destroy(pDisplay);
}

// ---- refusals of both operations

struct Resize_t {
    const char *pcName;
    int (*KovaITextDisplay_t::*pSlot)(pKovaITextDisplay_t, kova_sint8, kova_uint32, kova_uint32, kova_uint32,
                                      kova_uint32);
};

static void PrintTo(const Resize_t &resize, std::ostream *pStream)
{
    *pStream << resize.pcName;
}

class Resizing : public testing::TestWithParam<Resize_t>
{
protected:
    int Resize(pKovaITextDisplay_t pTable, pKovaITextDisplay_t pDisplay, int iContext,
               kova_uint32 uiWidth = 1280)
    {
        ClearTrace();
        return (pTable->*GetParam().pSlot)(pDisplay, kova_sint8(iContext), 0, 0, uiWidth, 720);
    }
    std::string Refused(const std::string &how, kova_sint32 siWidth = 1280)
    {
        return Begun(GetParam().pcName, siWidth, 720) + how + GetParam().pcName + ": ";
    }
};

TEST_P(Resizing, IsRefusedInThisOrder)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    IDirectFBDisplayLayer *const pLayer = pRecord->pLayer;

    EXPECT_EQ(Resize(pDisplay, nullptr, 4), -1);
    EXPECT_EQ(Trace(), Refused("ERROR ") + "NULL Pointer!\n");
    pRecord->pLayer = nullptr;
    for (const int iContext : {4, 0, 1}) {
        EXPECT_EQ(Resize(pDisplay, pDisplay, iContext), -1);
        EXPECT_EQ(Trace(), Refused("ERROR ") + "pLayer is NULL!\n");
    }
    pRecord->scActiveContextID = -2;
    EXPECT_EQ(Resize(pDisplay, pDisplay, 2), -1);
    EXPECT_EQ(Trace(), Refused("ERROR ") + "pLayer is NULL!\n");
    EXPECT_EQ(pRecord->context[2].uiPlaneWidth, 0u); // not even stored
    pRecord->scActiveContextID = 1;
    pRecord->pLayer = pLayer;
    for (const int iContext : {4, 127, -128, -1}) {
        EXPECT_EQ(Resize(pDisplay, pDisplay, iContext), -1);
        EXPECT_EQ(Trace(), Refused("ERROR ") + "Invalid context ID!\n");
    }
    for (const int iContext : {0, 2, 3}) {
        EXPECT_EQ(Resize(pDisplay, pDisplay, iContext), -1);
        EXPECT_EQ(Trace(), Refused("  ERROR ") + "Inactive context!\n");
        EXPECT_NE(pRecord->context[iContext].uiPlaneWidth, 1280u);
        EXPECT_TRUE(LockIsFree(pDisplay));
    }
    EXPECT_EQ(pRecord->uiPlaneWidth, PLANE_WIDTH);
    Destroy(pDisplay);
}

TEST_P(Resizing, IsStoredForLaterWhileThereIsNoLayerState)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    pRecord->scActiveContextID = -2;

    for (const int iContext : {0, 3}) { // whether it exists or not
        EXPECT_EQ(Resize(pDisplay, pDisplay, iContext), -1);

        EXPECT_EQ(Trace(), Refused("  ERROR ") + "Inactive context!\n");
        EXPECT_EQ(pRecord->context[iContext].uiPlaneWidth, 1280u);
        EXPECT_EQ(pRecord->context[iContext].uiPlaneHeight, 720u);
        EXPECT_EQ(pRecord->uiPlaneWidth, PLANE_WIDTH);
        EXPECT_EQ(pRecord->uiPlaneHeight, PLANE_HEIGHT);
        EXPECT_TRUE(LockIsFree(pDisplay));
    }
    Destroy(pDisplay);
}

TEST_P(Resizing, AcceptsEveryContextWhileNoneIsActive)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(Resize(pDisplay, pDisplay, 3), 0);

    EXPECT_EQ(RecordOf(pDisplay)->context[3].uiPlaneWidth, 1280u);
    EXPECT_EQ(RecordOf(pDisplay)->scActiveContextID, -1);
    Destroy(pDisplay);
}

TEST_P(Resizing, PrintsSizesAsSignedNumbers)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(Resize(pDisplay, pDisplay, 4, 0xFFFFFFFF), -1);

    EXPECT_EQ(Trace(), Refused("ERROR ", -1) + "Invalid context ID!\n");
    Destroy(pDisplay);
}

INSTANTIATE_TEST_SUITE_P(Of, Resizing,
                         testing::Values(Resize_t{"SetPlane", &KovaITextDisplay_t::SetPlane},
                                         Resize_t{"AdjustDisplaySize",
                                                  &KovaITextDisplay_t::AdjustDisplaySize}),
                         [](const auto &row) { return std::string(row.param.pcName); });

// ---- values that are only stored

TEST(SetDisplayWindow, StoresTheWindowOfItsContext)
{
    for (const bool bShown : {true, false}) {
        pKovaITextDisplay_t pDisplay = bShown ? GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, 1)
                                              : GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, 1);

        EXPECT_EQ(pDisplay->SetDisplayWindow(pDisplay, 1, 1, 2, 3, 4), 0);

        EXPECT_EQ(Trace(), "enter SetDisplayWindow\nexit SetDisplayWindow\n");
        const KovaDFBContext_t &context = RecordOf(pDisplay)->context[1];
        EXPECT_EQ(context.uiDisplayWindowX, 1u);
        EXPECT_EQ(context.uiDisplayWindowY, 2u);
        EXPECT_EQ(context.uiDisplayWindowWidth, 3u);
        EXPECT_EQ(context.uiDisplayWindowHeight, 4u);
        EXPECT_EQ(RecordOf(pDisplay)->context[0].uiDisplayWindowX, 10u); // as at creation
        EXPECT_EQ(RecordOf(pDisplay)->bUseTextWindow, 0);
        EXPECT_TRUE(LockIsFree(pDisplay));
        Destroy(pDisplay);
    }
}

TEST(SetDisplayWindow, StoresEachOfTheFourValuesSeparately)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    const kova_uint32 rows[][4] = {
        {11, 20, 320, 240}, {11, 21, 320, 240}, {11, 21, 321, 240}, {11, 21, 321, 241}};
    for (const auto &row : rows) {
        EXPECT_EQ(pDisplay->SetDisplayWindow(pDisplay, 0, row[0], row[1], row[2], row[3]), 0);
        const KovaDFBContext_t &context = RecordOf(pDisplay)->context[0];
        EXPECT_EQ(context.uiDisplayWindowX, row[0]);
        EXPECT_EQ(context.uiDisplayWindowY, row[1]);
        EXPECT_EQ(context.uiDisplayWindowWidth, row[2]);
        EXPECT_EQ(context.uiDisplayWindowHeight, row[3]);
    }
    Destroy(pDisplay);
}

TEST(SetDisplayWindow, RefusesNothingWhenNothingChanges)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    std::string locked;
    BeforeThreadCall([&](const char *pcCall, const void *pObject) {
        if (pObject == &RecordOf(pDisplay)->display_mutex) locked += pcCall;
    });

    EXPECT_EQ(pDisplay->SetDisplayWindow(pDisplay, 0, 10, 20, 320, 240), 0); // although context 1 is active
    EXPECT_EQ(Trace(), "enter SetDisplayWindow\nexit SetDisplayWindow\n");
    EXPECT_EQ(locked, "");

    ClearTrace();
    EXPECT_EQ(pDisplay->SetDisplayWindow(pDisplay, 0, 10, 20, 320, 241), -1);
    EXPECT_EQ(Trace(), "enter SetDisplayWindow\n  ERROR SetDisplayWindow: Inactive context!\n");
    EXPECT_EQ(RecordOf(pDisplay)->context[0].uiDisplayWindowHeight, 240u);
    BeforeThreadCall(nullptr);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(SetTextWindowSize, StoresTheSizeOfItsContext)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    const kova_uint32 rows[][2] = {{301, 200}, {301, 201}, {301, 201}, {1, 2}};
    for (const auto &row : rows) {
        ClearTrace();
        EXPECT_EQ(pDisplay->SetTextWindowSize(pDisplay, 1, row[0], row[1]), 0);
        EXPECT_EQ(Trace(), "enter SetTextWindowSize\nexit SetTextWindowSize\n");
        EXPECT_EQ(RecordOf(pDisplay)->context[1].uiTextWindowWidth, row[0]);
        EXPECT_EQ(RecordOf(pDisplay)->context[1].uiTextWindowHeight, row[1]);
    }
    EXPECT_EQ(RecordOf(pDisplay)->context[0].uiTextWindowWidth, 300u);
    EXPECT_EQ(RecordOf(pDisplay)->bUseTextWindow, 0);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(SetTextWindowSize, RefusesAnInactiveContextEvenWhenNothingChanges)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));

    EXPECT_EQ(pDisplay->SetTextWindowSize(pDisplay, 0, 300, 200), -1);

    EXPECT_EQ(Trace(), "enter SetTextWindowSize\n  ERROR SetTextWindowSize: Inactive context!\n");
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(WindowOperations, RefuseAnUnknownDisplayOrContext)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(pDisplay->SetDisplayWindow(nullptr, 4, 1, 2, 3, 4), -1);
    EXPECT_EQ(pDisplay->SetTextWindowSize(nullptr, 4, 1, 2), -1);
    EXPECT_EQ(Trace(), "enter SetDisplayWindow\nERROR SetDisplayWindow: NULL Pointer!\n"
                       "enter SetTextWindowSize\nERROR SetTextWindowSize: NULL Pointer!\n");
    for (const kova_sint8 scContext : {kova_sint8(4), kova_sint8(-1), kova_sint8(-128)}) {
        ClearTrace();
        EXPECT_EQ(pDisplay->SetDisplayWindow(pDisplay, scContext, 1, 2, 3, 4), -1);
        EXPECT_EQ(pDisplay->SetTextWindowSize(pDisplay, scContext, 1, 2), -1);
        EXPECT_EQ(Trace(), "enter SetDisplayWindow\nERROR SetDisplayWindow: Invalid context ID!\n"
                           "enter SetTextWindowSize\nERROR SetTextWindowSize: Invalid context ID!\n");
    }
    Destroy(pDisplay);
}

// ---- scaling of the plane

static Surface_OsdScaleInfo Scaling()
{
    return {1, 2, 3, 4, 5, 6, 7, 8, 9, -10};
}

static const char *const SCALING_ENTERED =
    "enter SetSurface_OsdScaleInfo Plane:(1x2)(3x4) Crop:(7x8)(9x-10)\n";

TEST(SetSurfaceOsdScaleInfo, PassesAllButTheBufferSizeOn)
{
    for (const bool bShown : {true, false}) {
        pKovaITextDisplay_t pDisplay =
            bShown ? GivenShownDisplay(KOVA_GRAPHIC_LAYER2) : GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
        Surface_OsdScaleInfo info = Scaling();
        const std::string surface = NameOf(RecordOf(pDisplay)->pActiveSurface);

        pDisplay->SetSurface_OsdScaleInfo(pDisplay, &info);

        EXPECT_EQ(Trace(), SCALING_ENTERED + surface + // without the lock
                               ".SetOSDScaleInfo plane 1,2 3x4 buf 0x0 crop 7,8 9x-10\n"
                               "exit SetSurface_OsdScaleInfo\n");
        Destroy(pDisplay);
    }
}

TEST(SetSurfaceOsdScaleInfo, ScalesTheBackupSurfaceInUse)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Surface_OsdScaleInfo info = Scaling();
    GivenBackupSurface(pDisplay);
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);
    ClearTrace();

    pDisplay->SetSurface_OsdScaleInfo(pDisplay, &info);

    EXPECT_EQ(CallsOnly(Trace()), "backup.SetOSDScaleInfo plane 1,2 3x4 buf 0x0 crop 7,8 9x-10\n");
    Destroy(pDisplay);
}

TEST(SetSurfaceOsdScaleInfo, ReportsAFailure)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Surface_OsdScaleInfo info = Scaling();
    Fail("Surface.SetOSDScaleInfo", DFB_UNSUPPORTED);

    pDisplay->SetSurface_OsdScaleInfo(pDisplay, &info);

    EXPECT_TRUE(Contains(Trace(), "crop 7,8 9x-10\n" + CheckLine(DFB_UNSUPPORTED) + "exit"));
    Destroy(pDisplay);
}

TEST(SetSurfaceOsdScaleInfo, DoesNothingWithoutADisplayASurfaceOrADescription)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    Surface_OsdScaleInfo info = Scaling();
    const std::string nothing = std::string(SCALING_ENTERED) + "exit SetSurface_OsdScaleInfo\n";

    pDisplay->SetSurface_OsdScaleInfo(nullptr, &info);
    EXPECT_EQ(Trace(), nothing);
    ClearTrace();
    pDisplay->SetSurface_OsdScaleInfo(pDisplay, nullptr);
    EXPECT_EQ(Trace(), "enter SetSurface_OsdScaleInfo Plane:(0x0)(0x0) Crop:(0x0)(0x0)\n"
                       "exit SetSurface_OsdScaleInfo\n");
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0); // it does not exist, so no surface is active
    ClearTrace();
    pDisplay->SetSurface_OsdScaleInfo(pDisplay, &info);
    EXPECT_EQ(Trace(), nothing);
    Destroy(pDisplay);
}
