// SPDX-License-Identifier: MIT
#include "support.h"

#include <algorithm>
#include <cstring>
#include <regex>

using namespace test;

// Colour i differs from its neighbours in every byte.
static KovaTextColor_t Color(int i)
{
    return {kova_uint8(i), kova_uint8(i + 64), kova_uint8(i + 128), kova_uint8(255 - i)};
}

static std::vector<KovaTextColor_t> Colors(int iCount)
{
    std::vector<KovaTextColor_t> colors;
    for (int i = 0; i < iCount; i++) colors.push_back(Color(i));
    return colors;
}

static bool operator==(const KovaTextColor_t &a, const KovaTextColor_t &b)
{
    return a.r == b.r && a.g == b.g && a.b == b.b && a.a == b.a;
}

static bool Agree(const DFBColor &a, const KovaTextColor_t &b)
{
    return a.r == b.r && a.g == b.g && a.b == b.b && a.a == b.a;
}

// Every change of visibility gets a palette too, so palette numbers are not compared.
static std::string Unnumbered(const std::string &trace)
{
    return std::regex_replace(trace, std::regex("palette[0-9]+"), "palette");
}

// The record's palette before a test; no entry equals a colour above.
static void MarkRecord(pKovaITextDisplay_t pDisplay)
{
    for (KovaTextColor_t &color : RecordOf(pDisplay)->palette) color = {9, 9, 9, 9};
}

static int MarkedEntries(pKovaITextDisplay_t pDisplay)
{
    return int(std::count(RecordOf(pDisplay)->palette, RecordOf(pDisplay)->palette + 256,
                          KovaTextColor_t{9, 9, 9, 9}));
}

TEST(SetPalette, RefusesInOrder)
{
    enum { NULL_DISPLAY = 1, BAD_CONTEXT = 2, NULL_COLORS = 4, TOO_MANY = 8, INACTIVE = 16, NO_SURFACE = 32 };
    static const struct {
        int iWrong;
        const char *pcError;
    } rows[] = {
        {NULL_DISPLAY | BAD_CONTEXT | NULL_COLORS | TOO_MANY, "ERROR SetPalette: NULL Pointer!\n"},
        {BAD_CONTEXT | NULL_COLORS | TOO_MANY | INACTIVE, "ERROR SetPalette: Invalid context ID!\n"},
        {NULL_COLORS | TOO_MANY | INACTIVE, "ERROR SetPalette: NULL Pointer!\n"},
        {TOO_MANY | INACTIVE | NO_SURFACE,
         "ERROR SetPalette: Palette length should be less than MAX_PALETTE_COLOR!\n"},
        {INACTIVE | NO_SURFACE, "  ERROR SetPalette: Inactive context!\n"},
        {INACTIVE, "  ERROR SetPalette: Inactive context!\n"},
        {NO_SURFACE, "  ERROR SetPalette: Inactive context!\n"},
    };
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    std::vector<KovaTextColor_t> colors = Colors(257);
    MarkRecord(pDisplay);

    for (const auto &row : rows) {
        SCOPED_TRACE(row.iWrong);
        ClearTrace();
        if (row.iWrong & NO_SURFACE) RecordOf(pDisplay)->pActiveSurface = nullptr;
        EXPECT_EQ(pDisplay->SetPalette(row.iWrong & NULL_DISPLAY ? nullptr : pDisplay,
                                       kova_sint8(row.iWrong & BAD_CONTEXT ? 4
                                                  : row.iWrong & INACTIVE  ? 0
                                                                           : 1),
                                       row.iWrong & NULL_COLORS ? nullptr : colors.data(),
                                       row.iWrong & TOO_MANY ? 257 : 256, 0),
                  -1);
        EXPECT_EQ(Trace(), std::string("enter SetPalette\n") + row.pcError);
        EXPECT_FALSE(HoldsLock());
        RecordOf(pDisplay)->pActiveSurface = RecordOf(pDisplay)->pBaseSurface;
    }

    EXPECT_EQ(MarkedEntries(pDisplay), 256);
    Destroy(pDisplay);
}

TEST(SetPalette, ChecksTheContextAsAnUnsignedByteAndTheCountUnsigned)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<KovaTextColor_t> colors = Colors(1);

    for (const int iContext : {-1, -56, 4, 127}) {
        ClearTrace();
        EXPECT_EQ(pDisplay->SetPalette(pDisplay, kova_sint8(iContext), colors.data(), 1, 0), -1);
        EXPECT_EQ(TraceOf("ERROR"), "ERROR SetPalette: Invalid context ID!\n");
    }
    ClearTrace();
    EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, colors.data(), 0xFFFFFFFF, 0), -1);
    EXPECT_EQ(TraceOf("ERROR"), "ERROR SetPalette: Palette length should be less than MAX_PALETTE_COLOR!\n");
    Destroy(pDisplay);
}

TEST(SetPalette, RefusesWithoutASurfaceInEveryMode)
{
    for (const ColorMode_e eMode : {PALETTE_COLORS, PACKED_COLORS}) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, eMode);
        std::vector<KovaTextColor_t> colors = Colors(1);
        MarkRecord(pDisplay);
        RecordOf(pDisplay)->pActiveSurface = nullptr;
        EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, colors.data(), 1, 0), -1);
        EXPECT_EQ(Trace(), "enter SetPalette\n"
                           "  ERROR SetPalette: Inactive context!\n");
        EXPECT_EQ(MarkedEntries(pDisplay), 256);
        Destroy(pDisplay);
    }
}

// ---- index mode

TEST(SetPalette, LoadsTheSurfacesPaletteAndTheRecordsCopy)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    KovaTextColor_t colors[] = {{1, 2, 3, 4}, {250, 251, 252, 253}};
    MarkRecord(pDisplay);

    EXPECT_EQ(pDisplay->SetPalette(pDisplay, 1, colors, 2, 17), 0);

    EXPECT_EQ(Unnumbered(Trace()), "enter SetPalette\n"
                                   "  base.GetPalette\n"
                                   "  log SetPaletteInternal: colors[0].a:4\n"
                                   "  log SetPaletteInternal: colors[1].a:253\n"
                                   "  palette.SetEntries 2 at 17: 1,2,3,4 250,251,252,253\n"
                                   "  palette.Release\n"
                                   "exit SetPalette\n");
    EXPECT_EQ(RecordText(1), "colors[0].a:4\n");
    EXPECT_FALSE(HoldsLock());
    EXPECT_TRUE(RecordOf(pDisplay)->palette[17] == colors[0]);
    EXPECT_TRUE(RecordOf(pDisplay)->palette[18] == colors[1]);
    EXPECT_EQ(MarkedEntries(pDisplay), 254);
    EXPECT_TRUE(Agree(PaletteOf(RecordOf(pDisplay)->pBaseSurface)[17], colors[0]));
    EXPECT_TRUE(Agree(PaletteOf(RecordOf(pDisplay)->pBaseSurface)[18], colors[1]));
    Destroy(pDisplay);
}

TEST(SetPalette, IsAcceptedWhileHidden)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<KovaTextColor_t> colors = Colors(1);

    EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, colors.data(), 1, 3), 0);

    EXPECT_EQ(Unnumbered(CallsOnly(Trace())), "base.GetPalette\n"
                                              "palette.SetEntries 1 at 3: 0,64,128,255\n"
                                              "palette.Release\n");
    Destroy(pDisplay);
}

TEST(SetPalette, LoadsAll256Colours)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<KovaTextColor_t> colors = Colors(256);
    MarkRecord(pDisplay);

    EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, colors.data(), 256, 0), 0);

    const std::vector<DFBColor> given = LastEntries();
    ASSERT_EQ(given.size(), 256u);
    std::string traces;
    for (int i = 0; i < 256; i++) {
        EXPECT_TRUE(Agree(given[size_t(i)], colors[size_t(i)])) << i;
        EXPECT_TRUE(RecordOf(pDisplay)->palette[i] == colors[size_t(i)]) << i;
        traces +=
            "  log SetPaletteInternal: colors[" + std::to_string(i) + "].a:" + std::to_string(255 - i) + "\n";
    }
    EXPECT_EQ(TraceOf("log"), traces);
    Destroy(pDisplay);
}

TEST(SetPalette, AcceptsNoColourAtAll)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<KovaTextColor_t> colors = Colors(1);
    MarkRecord(pDisplay);

    EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, colors.data(), 0, 255), 0);

    EXPECT_EQ(Trace(), "enter SetPalette\n"
                       "  base.GetPalette\n"
                       "  palette.SetEntries 0 at 255\n"
                       "  palette.Release\n"
                       "exit SetPalette\n");
    EXPECT_EQ(MarkedEntries(pDisplay), 256);
    Destroy(pDisplay);
}

TEST(SetPalette, PassesAnOverrunToDirectFBAndCopiesWhatFits)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<KovaTextColor_t> colors = Colors(256);
    struct {
        kova_uint32 uiNumber;
        kova_uint8 ucOffset;
        const char *pcCall;
    } rows[] = {
        {57, 200, "palette.SetEntries 57 at 200: 0,64,128,255 1,65,129,254 2,66,130,253 3,67,131,252 ...\n"},
        {256, 255,
         "palette.SetEntries 256 at 255: 0,64,128,255 1,65,129,254 2,66,130,253 3,67,131,252 ...\n"},
    };

    for (const auto &row : rows) {
        MarkRecord(pDisplay);
        const std::string flags = {char(RecordOf(pDisplay)->bColor32), char(RecordOf(pDisplay)->bFlip)};
        const auto pfnCreate = RecordOf(pDisplay)->pFnDirectFBCreate;
        ClearTrace();
        EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, colors.data(), row.uiNumber, row.ucOffset), 0);
        EXPECT_EQ(Unnumbered(CallsOnly(Trace())),
                  std::string("base.GetPalette\n") + row.pcCall + "palette.Release\n");
        EXPECT_EQ(MarkedEntries(pDisplay), row.ucOffset);
        EXPECT_TRUE(RecordOf(pDisplay)->palette[255] == Color(255 - row.ucOffset));
        // Nothing behind the last entry is written.
        EXPECT_EQ(RecordOf(pDisplay)->pFnDirectFBCreate, pfnCreate);
        EXPECT_EQ(flags, (std::string{char(RecordOf(pDisplay)->bColor32), char(RecordOf(pDisplay)->bFlip)}));
    }
    Destroy(pDisplay);
}

TEST(SetPalette, SetsThePaletteOfTheBaseSurfaceWhenAnotherIsInUse)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<KovaTextColor_t> colors = Colors(1);
    RecordOf(pDisplay)->pActiveSurface = GivenBackupSurface(pDisplay);

    EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, colors.data(), 1, 5), 0);

    EXPECT_EQ(Trace(), "enter SetPalette\n"
                       "  backup.GetPalette\n"
                       "  log SetPaletteInternal: colors[0].a:255\n"
                       "  palette.SetEntries 1 at 5: 0,64,128,255\n"
                       "  base.SetPalette palette\n"
                       "  palette.Release\n"
                       "exit SetPalette\n");
    EXPECT_TRUE(Agree(PaletteOf(RecordOf(pDisplay)->pBaseSurface)[5], colors[0]));
    Destroy(pDisplay);
}

TEST(SetPalette, PrintsEachFailureAndContinues)
{
    static const struct {
        const char *pcMethod;
        bool bObjectGiven;
        const char *pcBefore, *pcAfter;
    } rows[] = {
        {"Surface.GetPalette", false, "backup.GetPalette\n", ""},
        {"Palette.SetEntries", true, "backup.GetPalette\npalette.SetEntries 1 at 5: 0,64,128,255\n",
         "base.SetPalette palette\npalette.Release\n"},
        {"Surface.SetPalette", true,
         "backup.GetPalette\npalette.SetEntries 1 at 5: 0,64,128,255\nbase.SetPalette palette\n",
         "palette.Release\n"},
        {"Palette.Release", true,
         "backup.GetPalette\npalette.SetEntries 1 at 5: 0,64,128,255\nbase.SetPalette "
         "palette\npalette.Release\n",
         ""},
    };
    const LeaksAreMeant_t leaks; // the palette whose release fails
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<KovaTextColor_t> colors = Colors(1);
    RecordOf(pDisplay)->pActiveSurface = GivenBackupSurface(pDisplay);

    for (const auto &row : rows) {
        SCOPED_TRACE(row.pcMethod);
        MarkRecord(pDisplay);
        ClearTrace();
        FailNth(row.pcMethod, 1, DFB_ACCESSDENIED);
        EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, colors.data(), 1, 5), 0);
        EXPECT_EQ(Unnumbered(CallsOnly(Trace())), row.pcBefore + CheckLine(DFB_ACCESSDENIED) + row.pcAfter);
        EXPECT_EQ(TraceOf("log"), "  log SetPaletteInternal: colors[0].a:255\n");
        EXPECT_EQ(TraceOf("exit"), "exit SetPalette\n");
        EXPECT_TRUE(RecordOf(pDisplay)->palette[5] == colors[0]);
        EXPECT_FALSE(HoldsLock());
    }
    Destroy(pDisplay, "palette3");
}

TEST(SetPalette, SkipsWhatNeedsAPaletteWhenThereIsNone)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<KovaTextColor_t> colors = Colors(2);
    GiveNothing("Surface.GetPalette");

    EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, colors.data(), 2, 5), 0);

    EXPECT_EQ(Trace(), "enter SetPalette\n"
                       "  base.GetPalette\n"
                       "  log SetPaletteInternal: colors[0].a:255\n"
                       "  log SetPaletteInternal: colors[1].a:254\n"
                       "exit SetPalette\n");
    EXPECT_TRUE(RecordOf(pDisplay)->palette[5] == colors[0]);
    EXPECT_TRUE(RecordOf(pDisplay)->palette[6] == colors[1]);
    Destroy(pDisplay);
}

TEST(SetPalette, PrintsAFailureWithoutABaseSurface)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<KovaTextColor_t> colors = Colors(1);
    IDirectFBSurface *const pBase = RecordOf(pDisplay)->pBaseSurface;
    RecordOf(pDisplay)->pBaseSurface = nullptr;

    EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, colors.data(), 1, 0), 0);

    EXPECT_EQ(CallsOnly(Trace()), "base.GetPalette\n"
                                  "palette.SetEntries 1 at 0: 0,64,128,255\n" +
                                      CheckLine(DFB_DESTROYED) + "palette.Release\n");
    RecordOf(pDisplay)->pBaseSurface = pBase;
    Destroy(pDisplay);
}

// ---- palette-copy mode

TEST(SetPalette, LoadsOnlyTheRecordsCopyInPaletteCopyMode)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, PALETTE_COLORS);
    std::vector<KovaTextColor_t> colors = Colors(256);
    static const struct {
        kova_uint32 uiNumber;
        kova_uint8 ucOffset;
    } rows[] = {{1, 0}, {56, 200}, {256, 0}, {0, 255}, {1, 255}, {0, 0}};

    for (const auto &row : rows) {
        SCOPED_TRACE(row.uiNumber);
        MarkRecord(pDisplay);
        ClearTrace();
        EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, colors.data(), row.uiNumber, row.ucOffset), 0);
        EXPECT_EQ(Trace(), "enter SetPalette\n"
                           "exit SetPalette\n");
        EXPECT_EQ(MarkedEntries(pDisplay), 256 - int(row.uiNumber));
        for (int i = 0; i < int(row.uiNumber); i++) {
            EXPECT_TRUE(RecordOf(pDisplay)->palette[row.ucOffset + i] == colors[size_t(i)]) << i;
        }
    }
    Destroy(pDisplay);
}

TEST(SetPalette, RejectsAnOverrunWholeInPaletteCopyMode)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, PALETTE_COLORS);
    std::vector<KovaTextColor_t> colors = Colors(256);
    static const struct {
        kova_uint32 uiNumber;
        kova_uint8 ucOffset;
        const char *pcText;
    } rows[] = {
        {57, 200, "invalide offset:200, uiNumber:57"},
        {2, 255, "invalide offset:255, uiNumber:2"},
        {256, 1, "invalide offset:1, uiNumber:256"},
    };
    MarkRecord(pDisplay);

    for (const auto &row : rows) {
        ClearTrace();
        EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, colors.data(), row.uiNumber, row.ucOffset), 0);
        EXPECT_EQ(Trace(), std::string("enter SetPalette\n"
                                       "  error SetPaletteInternal: ") +
                               row.pcText + "\nexit SetPalette\n");
        ASSERT_EQ(Records().size(), 3u);
        EXPECT_EQ(Records()[1].iLevel, 1);
        EXPECT_EQ(Records()[1].text, row.pcText);
    }

    EXPECT_EQ(MarkedEntries(pDisplay), 256);
    Destroy(pDisplay);
}

// ---- 32-bit mode

TEST(SetPalette, DoesNothingIn32BitModeEvenWithAPaletteCopy)
{
    for (const ColorMode_e eMode : {PACKED_COLORS, PALETTE_COLORS}) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, eMode);
        std::vector<KovaTextColor_t> colors = Colors(256);
        RecordOf(pDisplay)->bColor32 = 1;
        MarkRecord(pDisplay);
        EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, colors.data(), 256, 200), 0);
        EXPECT_EQ(Trace(), "enter SetPalette\n"
                           "exit SetPalette\n");
        EXPECT_EQ(MarkedEntries(pDisplay), 256);
        Destroy(pDisplay);
    }
}
