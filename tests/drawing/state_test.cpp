// SPDX-License-Identifier: MIT
#include "support.h"

#include <functional>

using namespace test;

static bool operator==(const DFBRegion &a, const DFBRegion &b)
{
    return a.x1 == b.x1 && a.y1 == b.y1 && a.x2 == b.x2 && a.y2 == b.y2;
}

// ---- what all four setters have in common

struct Setter_t {
    const char *pcName;
    const char *pcEntryText;
    const char *pcMethod;
    const char *pcLog, *pcCall; // the trace of the call below on a shown display in index mode
    std::function<int(pKovaITextDisplay_t pTable, pKovaITextDisplay_t pThiz, kova_sint8 scContextID)> call;
};

static void PrintTo(const Setter_t &setter, std::ostream *pOut)
{
    *pOut << setter.pcName;
}

class StateSetter : public testing::TestWithParam<Setter_t>
{
protected:
    std::string Entry() const
    {
        return std::string("enter ") + GetParam().pcName + GetParam().pcEntryText + "\n";
    }
    std::string Exit() const
    {
        return std::string("exit ") + GetParam().pcName + "\n";
    }
    std::string Error(const char *pcText) const
    {
        return std::string("ERROR ") + GetParam().pcName + ": " + pcText + "\n";
    }
};

TEST_P(StateSetter, TracesAndSetsUnderTheLock)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));

    EXPECT_EQ(GetParam().call(pDisplay, pDisplay, 1), 0);

    EXPECT_EQ(Trace(), Entry() + "  log " + GetParam().pcName + ": " + GetParam().pcLog + "\n  base." +
                           GetParam().pcCall + "\n" + Exit());
    EXPECT_FALSE(HoldsLock());
    Destroy(pDisplay);
}

TEST_P(StateSetter, EndsEachRecordWithItsLine)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    GetParam().call(pDisplay, pDisplay, 0);

    const char *const pcEntry = GetParam().pcEntryText;
    EXPECT_EQ(RecordText(0), std::string(*pcEntry ? pcEntry + 1 : "") + "\n");
    EXPECT_EQ(RecordText(1), std::string(GetParam().pcLog) + "\n");
    EXPECT_EQ(RecordText(2), "\n");
    EXPECT_EQ(Records().size(), 3u);
    Destroy(pDisplay);
}

TEST_P(StateSetter, RefusesANullDisplayBeforeAllElse)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(GetParam().call(pDisplay, nullptr, 9), -1);

    EXPECT_EQ(Trace(), Entry() + Error("NULL Pointer!"));
    Destroy(pDisplay);
}

TEST_P(StateSetter, RefusesAnInvalidContextShownOrHidden)
{
    for (const bool bShown : {true, false}) {
        pKovaITextDisplay_t pDisplay =
            bShown ? GivenShownDisplay(KOVA_GRAPHIC_LAYER2) : GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
        for (const int iContext : {4, 127, 200, 255}) {
            SCOPED_TRACE(iContext);
            ClearTrace();
            EXPECT_EQ(GetParam().call(pDisplay, pDisplay, kova_sint8(iContext)), -1);
            EXPECT_EQ(Trace(), Entry() + Error("Invalid context ID!"));
            EXPECT_FALSE(HoldsLock());
        }
        Destroy(pDisplay);
    }
}

TEST_P(StateSetter, DoesNothingWhileHiddenWhicheverTheContext)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    RecordOf(pDisplay)->blast_frame_changed = 0;
    const DFBRegion before = RecordOf(pDisplay)->clip;

    for (const int iContext : {1, 0}) {
        ClearTrace();
        EXPECT_EQ(GetParam().call(pDisplay, pDisplay, kova_sint8(iContext)), 0);
        EXPECT_EQ(Trace(), Entry() + Exit());
    }

    EXPECT_TRUE(RecordOf(pDisplay)->clip == before);
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    Destroy(pDisplay);
}

TEST_P(StateSetter, RefusesAnInactiveContextUnderTheLock)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    RecordOf(pDisplay)->blast_frame_changed = 0;
    const DFBRegion before = RecordOf(pDisplay)->clip;

    for (const int iActive : {1, -2}) {
        RecordOf(pDisplay)->scActiveContextID = kova_sint8(iActive);
        ClearTrace();
        EXPECT_EQ(GetParam().call(pDisplay, pDisplay, 0), -1);
        EXPECT_EQ(Trace(), Entry() + "  " + Error("Inactive context!"));
        EXPECT_FALSE(HoldsLock());
    }

    EXPECT_TRUE(RecordOf(pDisplay)->clip == before);
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    Destroy(pDisplay);
}

TEST_P(StateSetter, AcceptsEveryContextWhileNoneIsActive)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, NO_CONTEXT);

    for (const int iContext : {0, 1, 2, 3}) {
        ClearTrace();
        EXPECT_EQ(GetParam().call(pDisplay, pDisplay, kova_sint8(iContext)), 0);
        EXPECT_EQ(CallsOnly(Trace()), std::string("base.") + GetParam().pcCall + "\n");
    }
    Destroy(pDisplay);
}

TEST_P(StateSetter, PrintsAFailureAndSucceeds)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Fail(GetParam().pcMethod, DFB_INVARG);

    EXPECT_EQ(GetParam().call(pDisplay, pDisplay, 0), 0);

    EXPECT_EQ(CallsOnly(Trace()), std::string("base.") + GetParam().pcCall + "\n" + CheckLine(DFB_INVARG));
    EXPECT_EQ(TraceOf("exit"), Exit());
    EXPECT_FALSE(HoldsLock());
    Destroy(pDisplay);
}

TEST_P(StateSetter, PrintsAFailureWithoutASurface)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->pActiveSurface = nullptr;

    EXPECT_EQ(GetParam().call(pDisplay, pDisplay, 0), 0);

    EXPECT_EQ(CallsOnly(Trace()), CheckLine(DFB_DESTROYED));
    EXPECT_EQ(TraceOf("exit"), Exit());
    Destroy(pDisplay);
}

TEST_P(StateSetter, DrawsOnTheSurfaceInUse)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER1);
    RecordOf(pDisplay)->pActiveSurface = GivenBackupSurface(pDisplay);

    EXPECT_EQ(GetParam().call(pDisplay, pDisplay, 0), 0);

    EXPECT_EQ(CallsOnly(Trace()), std::string("backup.") + GetParam().pcCall + "\n");
    RecordOf(pDisplay)->pActiveSurface = RecordOf(pDisplay)->pBaseSurface;
    IDirectFBSurface *const pBackup = RecordOf(pDisplay)->pBackupSurface;
    RecordOf(pDisplay)->pBackupSurface = nullptr;
    pBackup->Release(pBackup);
    Destroy(pDisplay);
}

static KovaTextRect_t s_rect = {10, 20, 100, 50};

static const Setter_t s_setters[] = {
    {"SetClip", " (10x20)--(110x70)", "Surface.SetClip", "Set Clip Area: x:0xa,y:0x14,width:0x64,height:0x32",
     "SetClip 10,20 109,69",
     [](auto pTable, auto pThiz, kova_sint8 sc) { return pTable->SetClip(pThiz, sc, &s_rect); }},
    {"SetDstColorKey", " color:0x0000000b", "Surface.SetDstColorKeyIndex", "Set Dst Color Key to 0xb",
     "SetDstColorKeyIndex 11",
     [](auto pTable, auto pThiz, kova_sint8 sc) { return pTable->SetDstColorKey(pThiz, sc, 11); }},
    {"SetDrawingFlags", "", "Surface.SetDrawingFlags", "Set Drawing Flag to 0x2",
     "SetDrawingFlags DST_COLORKEY",
     [](auto pTable, auto pThiz, kova_sint8 sc) {
         return pTable->SetDrawingFlags(pThiz, sc, KOVA_DSDRAW_DST_COLORKEY);
     }},
    {"SetBlittingFlags", "", "Surface.SetBlittingFlags", "Set Blitting Flag to 0x8",
     "SetBlittingFlags SRC_COLORKEY",
     [](auto pTable, auto pThiz, kova_sint8 sc) {
         return pTable->SetBlittingFlags(pThiz, sc, KOVA_DSBLIT_SRC_COLORKEY);
     }},
};

INSTANTIATE_TEST_SUITE_P(Drawing, StateSetter, testing::ValuesIn(s_setters),
                         [](const auto &setter) { return std::string(setter.param.pcName); });

// ---- the clip

TEST(SetClip, KeepsInclusiveCornersAndWrapsWithoutACheck)
{
    static const struct {
        KovaTextRect_t rect;
        const char *pcEntry, *pcLog;
        DFBRegion clip;
    } rows[] = {
        {{0, 0, 720, 480}, "(0x0)--(720x480)", "x:0x0,y:0x0,width:0x2d0,height:0x1e0", {0, 0, 719, 479}},
        {{5, 6, 1, 1}, "(5x6)--(6x7)", "x:0x5,y:0x6,width:0x1,height:0x1", {5, 6, 5, 6}},
        {{7, 8, 0, 3}, "(7x8)--(7x11)", "x:0x7,y:0x8,width:0x0,height:0x3", {7, 8, 6, 10}},
        {{0, 0, 0, 0}, "(0x0)--(0x0)", "x:0x0,y:0x0,width:0x0,height:0x0", {0, 0, -1, -1}},
        {{5000, 6000, 10, 10},
         "(5000x6000)--(5010x6010)",
         "x:0x1388,y:0x1770,width:0xa,height:0xa",
         {5000, 6000, 5009, 6009}},
        {{0x7FFFFFFF, 0x7FFFFFFE, 1, 2},
         "(2147483647x2147483646)--(-2147483648x-2147483648)",
         "x:0x7fffffff,y:0x7ffffffe,width:0x1,height:0x2",
         {2147483647, 2147483646, 2147483647, 2147483647}},
        {{0xFFFFFFFF, 0x80000000, 2, 0x80000000},
         "(-1x-2147483648)--(1x0)",
         "x:0xffffffff,y:0x80000000,width:0x2,height:0x80000000",
         {-1, -2147483647 - 1, 0, -1}},
    };
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    for (const auto &row : rows) {
        SCOPED_TRACE(row.pcEntry);
        KovaTextRect_t rect = row.rect;
        ClearTrace();
        RecordOf(pDisplay)->blast_frame_changed = 0;

        EXPECT_EQ(pDisplay->SetClip(pDisplay, 0, &rect), 0);

        EXPECT_EQ(TraceOf("enter"), std::string("enter SetClip ") + row.pcEntry + "\n");
        EXPECT_EQ(TraceOf("log"), std::string("  log SetClip: Set Clip Area: ") + row.pcLog + "\n");
        EXPECT_TRUE(RecordOf(pDisplay)->clip == row.clip);
        EXPECT_TRUE(ClipOf(RecordOf(pDisplay)->pActiveSurface) == row.clip);
        EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    }
    Destroy(pDisplay);
}

TEST(SetClip, WithoutARectangleLiftsTheSurfacesClipAndKeepsTheRecords)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextRect_t rect = {10, 20, 30, 40};
    pDisplay->SetClip(pDisplay, 0, &rect);
    ClearTrace();
    RecordOf(pDisplay)->blast_frame_changed = 0;

    EXPECT_EQ(pDisplay->SetClip(pDisplay, 0, nullptr), 0);

    EXPECT_EQ(Trace(), "enter SetClip pRect:NULL\n"
                       "  base.SetClip all\n"
                       "exit SetClip\n");
    EXPECT_EQ(RecordText(0), "pRect:NULL\n");
    EXPECT_TRUE(RecordOf(pDisplay)->clip == (DFBRegion{10, 20, 39, 59}));
    EXPECT_TRUE(ClipOf(RecordOf(pDisplay)->pActiveSurface) == (DFBRegion{0, 0, 719, 479}));
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    Destroy(pDisplay);
}

TEST(SetClip, IsRefusedWithoutARectangleAsWithOne)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));

    EXPECT_EQ(pDisplay->SetClip(nullptr, 0, nullptr), -1);
    EXPECT_EQ(pDisplay->SetClip(pDisplay, 4, nullptr), -1);
    EXPECT_EQ(pDisplay->SetClip(pDisplay, 0, nullptr), -1);

    EXPECT_EQ(Trace(), "enter SetClip pRect:NULL\n"
                       "ERROR SetClip: NULL Pointer!\n"
                       "enter SetClip pRect:NULL\n"
                       "ERROR SetClip: Invalid context ID!\n"
                       "enter SetClip pRect:NULL\n"
                       "  ERROR SetClip: Inactive context!\n");
    Destroy(pDisplay);
}

TEST(SetClip, KeepsTheRecordsClipThoughTheSurfaceRefusesIt)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextRect_t rect = {1, 2, 3, 4};
    RecordOf(pDisplay)->blast_frame_changed = 0;
    Fail("Surface.SetClip", DFB_INVAREA);

    EXPECT_EQ(pDisplay->SetClip(pDisplay, 0, &rect), 0);

    EXPECT_EQ(CallsOnly(Trace()), "base.SetClip 1,2 3,5\n" + CheckLine(DFB_INVAREA));
    EXPECT_TRUE(RecordOf(pDisplay)->clip == (DFBRegion{1, 2, 3, 5}));
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    Destroy(pDisplay);
}

// ---- the colour key

TEST(SetDstColorKey, ConvertsItsColourByTheDisplaysMode)
{
    static const struct {
        ColorMode_e eMode;
        kova_uint32 color;
        const char *pcHex, *pcShort, *pcCall;
    } rows[] = {
        {INDEX_COLORS, 0, "0x00000000", "0x0", "SetDstColorKeyIndex 0"},
        {INDEX_COLORS, 255, "0x000000ff", "0xff", "SetDstColorKeyIndex 255"},
        {INDEX_COLORS, 256, "0x00000100", "0x100", "SetDstColorKeyIndex 256"},
        {INDEX_COLORS, 0xFFFFFFFF, "0xffffffff", "0xffffffff", "SetDstColorKeyIndex 4294967295"},
        {PALETTE_COLORS, 3, "0x00000003", "0x3", "SetDstColorKey 31,32,33"},
        {PALETTE_COLORS, 255, "0x000000ff", "0xff", "SetDstColorKey 251,252,253"},
        {PALETTE_COLORS, 256, "0x00000100", "0x100", "SetDstColorKey 0,0,0"},
        {PALETTE_COLORS, 0x10003, "0x00010003", "0x10003", "SetDstColorKey 0,0,0"},
        {PACKED_COLORS, 0x11223344, "0x11223344", "0x11223344", "SetDstColorKey 17,34,51"},
        {PACKED_COLORS, 0xFF0000FF, "0xff0000ff", "0xff0000ff", "SetDstColorKey 255,0,0"},
        {PACKED_COLORS, 0x00FEFF00, "0x00feff00", "0xfeff00", "SetDstColorKey 0,254,255"},
    };

    for (const ColorMode_e eMode : {INDEX_COLORS, PALETTE_COLORS, PACKED_COLORS}) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, eMode);
        const std::string surface = NameOf(RecordOf(pDisplay)->pActiveSurface);
        RecordOf(pDisplay)->palette[3] = {31, 32, 33, 34};
        RecordOf(pDisplay)->palette[255] = {251, 252, 253, 254};
        for (const auto &row : rows) {
            if (row.eMode != eMode) continue;
            SCOPED_TRACE(row.pcCall);
            ClearTrace();
            RecordOf(pDisplay)->blast_frame_changed = 0;
            EXPECT_EQ(pDisplay->SetDstColorKey(pDisplay, 0, row.color), 0);
            EXPECT_EQ(Trace(), std::string("enter SetDstColorKey color:") + row.pcHex +
                                   "\n  log SetDstColorKey: Set Dst Color Key to " + row.pcShort + "\n  " +
                                   surface + "." + row.pcCall + "\nexit SetDstColorKey\n");
            EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
        }
        Destroy(pDisplay);
    }
}

TEST(SetDstColorKey, UsesAPackedColourWhenBothModesAreSet)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, PALETTE_COLORS);
    RecordOf(pDisplay)->bColor32 = 1;

    EXPECT_EQ(pDisplay->SetDstColorKey(pDisplay, 0, 0x01020304), 0);

    EXPECT_EQ(CallsOnly(Trace()), "base.SetDstColorKey 1,2,3\n");
    Destroy(pDisplay);
}

TEST(SetDstColorKey, PrintsAFailureInEveryMode)
{
    for (const ColorMode_e eMode : {PALETTE_COLORS, PACKED_COLORS}) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, eMode);
        Fail("Surface.SetDstColorKey", DFB_UNSUPPORTED);
        EXPECT_EQ(pDisplay->SetDstColorKey(pDisplay, 0, 0), 0);
        EXPECT_EQ(TraceOf("DFB_CHECK"), CheckLine(DFB_UNSUPPORTED));
        Destroy(pDisplay);
        Reset();
    }
}

// ---- the flags

TEST(SetDrawingFlags, TranslatesTheColourKeyAndDropsTheRest)
{
    static const struct {
        int iFlag;
        const char *pcLog, *pcFlags;
    } rows[] = {
        {KOVA_DSDRAW_NOFX, "0x0", "NOFX"},
        {KOVA_DSDRAW_DST_COLORKEY, "0x2", "DST_COLORKEY"},
        {KOVA_DSDRAW_STRING_SHARP, "0x0", "NOFX"},
        {KOVA_DSDRAW_DST_COLORKEY | KOVA_DSDRAW_STRING_SHARP, "0x2", "DST_COLORKEY"},
        {2, "0x0", "NOFX"}, // DirectFB's own value has no meaning here
        {0xEF, "0x0", "NOFX"},
        {0xFF, "0x2", "DST_COLORKEY"},
        {-1, "0x2", "DST_COLORKEY"},
    };
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->blast_frame_changed = 0;

    for (const auto &row : rows) {
        SCOPED_TRACE(row.iFlag);
        ClearTrace();
        EXPECT_EQ(pDisplay->SetDrawingFlags(pDisplay, 0, KovaTextDrawFlag_e(row.iFlag)), 0);
        EXPECT_EQ(Trace(), std::string("enter SetDrawingFlags\n  log SetDrawingFlags: Set Drawing Flag to ") +
                               row.pcLog + "\n  base.SetDrawingFlags " + row.pcFlags +
                               "\nexit SetDrawingFlags\n");
    }

    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    Destroy(pDisplay);
}

TEST(SetBlittingFlags, PassesTheTwoColourKeysOnAndStoresNothing)
{
    static const struct {
        int iFlag;
        const char *pcLog, *pcFlags;
    } rows[] = {
        {KOVA_DSBLIT_NOFX, "0x0", "NOFX"},
        {KOVA_DSBLIT_SRC_COLORKEY, "0x8", "SRC_COLORKEY"},
        {KOVA_DSBLIT_DST_COLORKEY, "0x10", "DST_COLORKEY"},
        {24, "0x18", "SRC_COLORKEY|DST_COLORKEY"},
        {7, "0x0", "NOFX"},
        {32, "0x0", "NOFX"},
        {0xFF, "0x18", "SRC_COLORKEY|DST_COLORKEY"},
        {-1, "0x18", "SRC_COLORKEY|DST_COLORKEY"},
    };
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->blast_frame_changed = 0;
    RecordOf(pDisplay)->eBlitFlag = KovaTextBlitFlag_e(5);

    for (const auto &row : rows) {
        SCOPED_TRACE(row.iFlag);
        ClearTrace();
        EXPECT_EQ(pDisplay->SetBlittingFlags(pDisplay, 0, KovaTextBlitFlag_e(row.iFlag)), 0);
        EXPECT_EQ(Trace(),
                  std::string("enter SetBlittingFlags\n  log SetBlittingFlags: Set Blitting Flag to ") +
                      row.pcLog + "\n  base.SetBlittingFlags " + row.pcFlags + "\nexit SetBlittingFlags\n");
        EXPECT_EQ(int(RecordOf(pDisplay)->eBlitFlag), 5);
    }

    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    Destroy(pDisplay);
}
