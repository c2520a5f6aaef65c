// SPDX-License-Identifier: MIT
#include "expect.h"

using namespace test;

static std::string Used(const std::string &body)
{
    return "enter UseBackupSurface\n" + body;
}

static const char *const LEFT = "exit UseBackupSurface\n";

TEST(UseBackupSurface, CarriesThePaletteAndTheFontOver)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    IDirectFBSurface *const pBackup = GivenBackupSurface(pDisplay);
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    KovaTextColor_t color = {1, 2, 3, 4};
    kova_sint32 siFont = -1;
    for (const char *const pcName : {"a", "b", "c", "d"}) {
        EXPECT_EQ(pDisplay->CreateFont(pDisplay, 0, pcName, 20, KOVA_FONTATTR_NONE, &siFont), 0);
    }
    EXPECT_EQ(pDisplay->SetFont(pDisplay, 0, 3, 20, KOVA_FONTATTR_NONE), 0);
    EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, &color, 1, 255), 0);
    ClearTrace();

    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);

    const std::string carried = "  %.GetPalette\n"
                                "  palette.GetEntries 256 at 0\n"
                                "  palette.Release\n"
                                "  $.SetFont font4\n"
                                "  $.GetPalette\n"
                                "  palette.SetEntries 256 at 0: 0,0,0,0 0,0,0,0 0,0,0,0 0,0,0,0 ...\n"
                                "  palette.Release\n";
    const auto between = [&](const std::string &from, const std::string &to) {
        std::string text = carried;
        for (size_t at; (at = text.find('%')) != std::string::npos;) text.replace(at, 1, from);
        for (size_t at; (at = text.find('$')) != std::string::npos;) text.replace(at, 1, to);
        return text;
    };
    EXPECT_EQ(Tidy(Trace()), Used(between("base", "backup") + LEFT));
    EXPECT_EQ(pRecord->pActiveSurface, pBackup);
    const DFBColor last = PaletteOf(pBackup)[255];
    EXPECT_EQ(last.r, 1);
    EXPECT_EQ(last.g, 2);
    EXPECT_EQ(last.b, 3);
    EXPECT_EQ(last.a, 4);
    EXPECT_TRUE(LockIsFree(pDisplay));

    ClearTrace();
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 0), 0); // and back
    EXPECT_EQ(Tidy(Trace()), Used(between("backup", "base") + LEFT));
    EXPECT_EQ(pRecord->pActiveSurface, pRecord->pBaseSurface);
    EXPECT_EQ(pRecord->scActiveFontID, 3);
    Destroy(pDisplay);
}

TEST(UseBackupSurface, LeavesTheTargetItsPaletteWithoutAFont)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    IDirectFBSurface *const pBackup = GivenBackupSurface(pDisplay);
    KovaTextColor_t color = {1, 2, 3, 4};
    EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, &color, 1, 255), 0);
    ClearTrace();

    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);

    EXPECT_EQ(Tidy(Trace()), Used("  base.GetPalette\n"
                                  "  palette.GetEntries 256 at 0\n"
                                  "  palette.Release\n") +
                                 LEFT);
    EXPECT_EQ(PaletteOf(pBackup)[255].r, 0);
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, pBackup);
    Destroy(pDisplay);
}

TEST(UseBackupSurface, CarriesThePaletteOverWhenTheSelectedSlotIsEmpty)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenBackupSurface(pDisplay);
    RecordOf(pDisplay)->scActiveFontID = 7;

    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 255), 0); // any value except 0 is true

    EXPECT_FALSE(Contains(Trace(), "SetFont"));
    EXPECT_TRUE(Contains(Trace(), ".SetEntries 256 at 0"));
    Destroy(pDisplay);
}

TEST(UseBackupSurface, ReturnsAtOnceWhenTheTargetIsInUse)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenBackupSurface(pDisplay);

    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 0), 0);
    EXPECT_EQ(Trace(), Used("")); // no exit trace
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);
    ClearTrace();
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);
    EXPECT_EQ(Trace(), Used(""));

    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(UseBackupSurface, LeavesNoActiveSurfaceWhereThereIsNoBackup)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);

    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);
    EXPECT_EQ(Tidy(Trace()), Used("  base.GetPalette\n"
                                  "  palette.GetEntries 256 at 0\n"
                                  "  palette.Release\n") +
                                 LEFT);
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, nullptr);

    ClearTrace();
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0); // there is still no target
    EXPECT_EQ(Trace(), Used(""));

    ClearTrace();
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 0), 0); // nothing to carry over
    EXPECT_EQ(Trace(), Used(LEFT));
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, RecordOf(pDisplay)->pBaseSurface);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(UseBackupSurface, SkipsThePaletteOfATrueColourSurface)
{
    for (const ColorMode_e eMode : {PALETTE_COLORS, PACKED_COLORS}) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, eMode);
        GivenFont(pDisplay);
        const std::string surface = NameOf(RecordOf(pDisplay)->pBaseSurface);
        IDirectFBSurface *const pBackup = GivenBackupSurface(pDisplay);
        const std::string font = eMode == PALETTE_COLORS ? "font" : "font2";

        EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);

        EXPECT_EQ(Trace(), Used("  " + surface + ".GetPalette\n  " + CheckLine(DFB_UNSUPPORTED) + "  " +
                                NameOf(pBackup) + ".SetFont " + font + "\n" + LEFT));
        Destroy(pDisplay);
    }
}

TEST(UseBackupSurface, ContinuesWhenACallFails)
{
    const struct {
        const char *pcMethod, *pcCall;
    } rows[] = {{"Palette.GetEntries", ".GetEntries"},
                {"Surface.SetFont", ".SetFont"},
                {"Palette.SetEntries", ".SetEntries"}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.pcMethod);
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
        GivenFont(pDisplay);
        GivenBackupSurface(pDisplay);
        FailNth(row.pcMethod, 1, DFB_FAILURE);

        EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);

        const std::string trace = Tidy(Trace());
        EXPECT_EQ(trace.find("  " + CheckLine(DFB_FAILURE)), trace.find('\n', trace.find(row.pcCall)) + 1)
            << trace;
        EXPECT_EQ(CountOf(trace, "\n"), 10) << trace; // nine lines and the report
        Destroy(pDisplay);
    }
}

TEST(UseBackupSurface, ReportsThatTheTargetHasNoPalette)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);
    GivenBackupSurface(pDisplay);
    FailNth("Surface.GetPalette", 2, DFB_FAILURE);

    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);

    EXPECT_EQ(Tidy(Trace()), Used("  base.GetPalette\n"
                                  "  palette.GetEntries 256 at 0\n"
                                  "  palette.Release\n"
                                  "  backup.SetFont font\n"
                                  "  backup.GetPalette\n" +
                                  CheckLine(DFB_FAILURE) + LEFT));
    Destroy(pDisplay);
}

TEST(UseBackupSurface, LocksBeforeItChecksTheContext)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));

    EXPECT_EQ(pDisplay->UseBackupSurface(nullptr, 4, 1), -1);
    EXPECT_EQ(Trace(), Used("ERROR UseBackupSurface: NULL Pointer!\n"));
    for (const int iContext : {4, -1, -128}) {
        ClearTrace();
        EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, kova_sint8(iContext), 1), -1);
        EXPECT_EQ(Trace(), Used("  ERROR UseBackupSurface: Invalid context ID!\n"));
        EXPECT_TRUE(LockIsFree(pDisplay));
    }
    ClearTrace();
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 0), -1); // although the target is in use
    EXPECT_EQ(Trace(), Used("  ERROR UseBackupSurface: Inactive context!\n"));
    EXPECT_TRUE(LockIsFree(pDisplay));
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 1, 1), 0); // whether hidden or not
    EXPECT_EQ(RecordOf(pDisplay)->pActiveSurface, nullptr);
    Destroy(pDisplay);
}

// ---- copying from the backup surface

static KovaTextRect_t Rect()
{
    return {1, 2, 30, 40};
}

TEST(BlitBackupSurface, CopiesToTheBaseSurfaceAndLeavesTheFlipToOthers)
{
    for (const bool bBackupInUse : {false, true}) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
        GivenFont(pDisplay);
        const std::string base = NameOf(RecordOf(pDisplay)->pBaseSurface);
        const std::string backup = NameOf(GivenBackupSurface(pDisplay));
        EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, bBackupInUse), 0);
        KovaTextRect_t rect = Rect();
        ClearTrace();
        RecordOf(pDisplay)->blast_frame_changed = 0;

        EXPECT_EQ(pDisplay->BlitBackupSurface(pDisplay, 0, &rect, 50, 60), 0);

        EXPECT_EQ(Trace(), "enter BlitBackupSurface\n"
                           "  " +
                               base + ".Blit " + backup +
                               " 1,2 30x40 to 50,60\n"
                               "exit BlitBackupSurface\n");
        EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
        EXPECT_TRUE(LockIsFree(pDisplay));
        Destroy(pDisplay);
    }
}

TEST(BlitBackupSurface, ReportsAFailure)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);
    GivenBackupSurface(pDisplay);
    KovaTextRect_t rect = Rect();
    Fail("Surface.Blit", DFB_INVAREA);

    EXPECT_EQ(pDisplay->BlitBackupSurface(pDisplay, 0, &rect, 50, 60), 0);

    EXPECT_TRUE(Contains(Trace(), "to 50,60\n" + CheckLine(DFB_INVAREA) + "exit BlitBackupSurface\n"));
    Destroy(pDisplay);
}

TEST(BlitBackupSurface, IsRefusedInThisOrder)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    KovaTextRect_t rect = Rect();
    const auto blit = [&](pKovaITextDisplay_t pThiz, int iContext, KovaTextRect_t *pRect) {
        ClearTrace();
        const int iResult = pDisplay->BlitBackupSurface(pThiz, kova_sint8(iContext), pRect, 0, 0);
        EXPECT_EQ(Trace().rfind("enter BlitBackupSurface\n", 0), 0u);
        return std::to_string(iResult) + " " + Trace().substr(strlen("enter BlitBackupSurface\n"));
    };
    const std::string null = "-1 ERROR BlitBackupSurface: NULL Pointer!\n";

    EXPECT_EQ(blit(nullptr, 4, nullptr), null);
    for (const int iContext : {4, -1, -128}) {
        EXPECT_EQ(blit(pDisplay, iContext, nullptr), "-1 ERROR BlitBackupSurface: Invalid context ID!\n");
    }
    EXPECT_EQ(blit(pDisplay, 0, nullptr), null);
    for (const int iFont : {-1, 8, 127}) { // no font, which is checked before the surfaces
        pRecord->scActiveFontID = kova_sint8(iFont);
        EXPECT_EQ(blit(pDisplay, 0, &rect), "-1 ERROR BlitBackupSurface: Only can support max 8 fonts!\n");
    }
    pRecord->scActiveFontID = 7;
    EXPECT_EQ(blit(pDisplay, 0, &rect), null); // no backup surface, as on every display
    IDirectFBSurface *const pBackup = GivenBackupSurface(pDisplay), *const pBase = pRecord->pBaseSurface;
    pRecord->pBaseSurface = nullptr;
    EXPECT_EQ(blit(pDisplay, 0, &rect), null);
    pRecord->pBaseSurface = pBase;
    EXPECT_EQ(blit(pDisplay, 0, &rect), "0 exit BlitBackupSurface\n"); // hidden: before the context
    pDisplay->Show(pDisplay, 1);
    EXPECT_EQ(blit(pDisplay, 0, &rect), "-1   ERROR BlitBackupSurface: Inactive context!\n");
    EXPECT_TRUE(LockIsFree(pDisplay));
    EXPECT_EQ(blit(pDisplay, 1, &rect), "0   base.Blit " + NameOf(pBackup) +
                                            " 1,2 30x40 to 0,0\n"
                                            "exit BlitBackupSurface\n");
    pRecord->scActiveFontID = -1;
    Destroy(pDisplay);
}
