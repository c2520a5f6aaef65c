// SPDX-License-Identifier: MIT
#include "support.h"

#include <cstring>

using namespace test;

using Units_t = std::vector<unsigned short>;

static int Width(pKovaITextDisplay_t pDisplay, const void *pText, size_t uiBytes, int iEncoding,
                 kova_uint32 *puiWidth)
{
    return pDisplay->GetStringWidth(pDisplay, 0, static_cast<const unsigned short *>(pText),
                                    kova_uint8(uiBytes), KovaTextEncoding_e(iEncoding), puiWidth);
}

// The bytes that the font measures for 16-bit text, in the notation of the trace.
static std::string Measured(pKovaITextDisplay_t pDisplay, const Units_t &text, size_t uiBytes)
{
    kova_uint32 uiWidth = 0;

    ClearTrace();
    EXPECT_EQ(Width(pDisplay, text.data(), uiBytes, KOVA_TEXT_UNICODE, &uiWidth), 0);
    const std::string call = CallsOnly(TraceOf("font.GetStringWidth "));
    return call.substr(call.find('"'), call.rfind('"') + 1 - call.find('"'));
}

static std::string Measured(pKovaITextDisplay_t pDisplay, const Units_t &text)
{
    return Measured(pDisplay, text, text.size() * 2);
}

static std::string Times(size_t uiCount, const std::string &text)
{
    std::string all;
    for (size_t i = 0; i < uiCount; i++) all += text;
    return all;
}

// ---- the conversion

TEST(Conversion, WritesEachUnitAsOneToThreeBytes)
{
    static const struct {
        Units_t text;
        const char *pcBytes;
    } rows[] = {
        {{0x0001}, "<01>"},
        {{0x0041}, "A"},
        {{0x007E}, "~"},
        {{0x007F}, "<7F>"},
        {{0x0080}, "<C2><80>"},
        {{0x00BF}, "<C2><BF>"},
        {{0x00C0}, "<C3><80>"},
        {{0x00E9}, "<C3><A9>"},
        {{0x00FF}, "<C3><BF>"},
        {{0x0100}, "<C4><80>"},
        {{0x03FF}, "<CF><BF>"},
        {{0x07FF}, "<DF><BF>"},
        {{0x0800}, "<E0><A0><80>"},
        {{0x0FFF}, "<E0><BF><BF>"},
        {{0x1000}, "<E1><80><80>"},
        {{0x20AC}, "<E2><82><AC>"},
        {{0x7FFF}, "<E7><BF><BF>"},
        {{0x8000}, "<E8><80><80>"},
        {{0xD7FF}, "<ED><9F><BF>"},
        {{0xD800}, "<ED><A0><80>"}, // half of a pair is converted on its own
        {{0xDBFF}, "<ED><AF><BF>"},
        {{0xDC00}, "<ED><B0><80>"},
        {{0xDFFF}, "<ED><BF><BF>"},
        {{0xE000}, "<EE><80><80>"},
        {{0xFEFF}, "<EF><BB><BF>"},
        {{0xFFFD}, "<EF><BF><BD>"},
        {{0xFFFF}, "<EF><BF><BF>"},
        {{0xD83D, 0xDE00}, "<ED><A0><BD><ED><B8><80>"},
        {{0x0000}, "<00>"},
        {{0x0041, 0x0000, 0x0042}, "A<00>B"}, // a NUL is not a terminator
        {{0x0041, 0x00E9, 0x20AC, 0x0042}, "A<C3><A9><E2><82><AC>B"},
        {{}, ""},
    };
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);
    const Units_t nothing = {0};

    for (const auto &row : rows) {
        EXPECT_EQ(Measured(pDisplay, row.text.empty() ? nothing : row.text, row.text.size() * 2),
                  std::string("\"") + row.pcBytes + "\"");
    }
    DestroyUnlocked(pDisplay);
}

// Every possible unit, compared with a plain implementation of the three forms.
TEST(Conversion, WritesAllUnits)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);
    SetThreshold(0);

    for (unsigned uiFirst = 0; uiFirst < 0x10000; uiFirst += 32) {
        Units_t text;
        std::string expected;
        for (unsigned ui = uiFirst; ui < uiFirst + 32; ui++) {
            char acBytes[16];
            const unsigned uiLow = 0x80 + ui % 64, uiMiddle = 0x80 + ui / 64 % 64;
            if (ui >= 0x800) {
                snprintf(acBytes, sizeof acBytes, "<%02X><%02X><%02X>", 0xE0 + ui / 4096, uiMiddle, uiLow);
            } else if (ui >= 0x80) {
                snprintf(acBytes, sizeof acBytes, "<%02X><%02X>", 0xC0 + ui / 64, uiLow);
            } else {
                snprintf(acBytes, sizeof acBytes, ui >= ' ' && ui <= '~' ? "%c" : "<%02X>", ui);
            }
            text.push_back(static_cast<unsigned short>(ui));
            expected += acBytes;
        }
        ASSERT_EQ(Measured(pDisplay, text), "\"" + expected + "\"");
        // The same in a text so long that each unit is checked for space.
        text.insert(text.end(), 60, 'x');
        ASSERT_EQ(Measured(pDisplay, text), "\"" + expected + Times(60, "x") + "\"");
    }
    DestroyUnlocked(pDisplay);
}

TEST(Conversion, IgnoresAnOddByteAtTheEnd)
{
    static const struct {
        size_t uiBytes;
        const char *pcBytes;
    } rows[] = {{0, ""}, {1, ""}, {2, "A"}, {3, "A"}, {4, "AB"}, {5, "AB"}, {6, "ABC"}};
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);

    for (const auto &row : rows) {
        EXPECT_EQ(Measured(pDisplay, {'A', 'B', 'C', 'D'}, row.uiBytes),
                  std::string("\"") + row.pcBytes + "\"");
    }
    EXPECT_EQ(Measured(pDisplay, Units_t(128, 'x'), 255), "\"" + std::string(127, 'x') + "\"");
    DestroyUnlocked(pDisplay);
}

// The measuring buffer has 256 bytes; all of them can be used, and no character is split.
TEST(Conversion, StopsBeforeTheFirstCharacterThatDoesNotFit)
{
    const std::string three = "<E2><82><AC>", two = "<C3><A9>";
    static const struct {
        size_t uiThree, uiTwo, uiOne;    // the number of characters with that many bytes, in this order
        size_t uiThree2, uiTwo2, uiOne2; // the number that is converted
    } rows[] = {
        {85, 0, 0, 85, 0, 0},   // 255 bytes
        {86, 0, 0, 85, 0, 0},   // 258
        {127, 0, 0, 85, 0, 0},  // 381, the maximum that can be passed
        {85, 0, 1, 85, 0, 1},   // 256
        {85, 0, 2, 85, 0, 1},   // 257
        {85, 1, 5, 85, 0, 0},   // the two bytes do not fit, and nothing after them is converted
        {84, 2, 0, 84, 2, 0},   // 256
        {84, 2, 1, 84, 2, 0},   // 257
        {84, 1, 2, 84, 1, 2},   // 256
        {84, 1, 3, 84, 1, 2},   // 257
        {0, 127, 0, 0, 127, 0}, // 254
        {1, 126, 0, 1, 126, 0}, // 255
        {2, 125, 0, 2, 125, 0}, // 256
        {3, 124, 0, 3, 123, 0}, // 257
        {0, 0, 127, 0, 0, 127},
    };
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);

    for (const auto &row : rows) {
        Units_t text(row.uiThree, 0x20AC);
        text.insert(text.end(), row.uiTwo, 0xE9);
        text.insert(text.end(), row.uiOne, 'x');
        EXPECT_EQ(Measured(pDisplay, text),
                  "\"" + Times(row.uiThree2, three) + Times(row.uiTwo2, two) + Times(row.uiOne2, "x") + "\"");
    }
    DestroyUnlocked(pDisplay);
}

// A three-byte character that does not fit leaves two bytes free, which a shorter one must not fill.
TEST(Conversion, ConvertsNothingBehindTheCharacterThatDoesNotFit)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);
    Units_t text(127, 0xE9);
    text[126] = 0x20AC; // starts at byte 252
    text[125] = 0x20AC;
    text[0] = 'x';
    text[1] = 'x'; // now 2 + 123 * 2 = 248 bytes precede the two three-byte characters

    EXPECT_EQ(Measured(pDisplay, text), "\"xx" + Times(123, "<C3><A9>") + "<E2><82><AC><E2><82><AC>\"");

    // 84 * 3 + 1 + 1 = 254 bytes, then three that do not fit, then one that would.
    Units_t full(84, 0x20AC);
    full.insert(full.end(), {'a', 'b', 0x20AC, 'c'});
    EXPECT_EQ(Measured(pDisplay, full), "\"" + Times(84, "<E2><82><AC>") + "ab\"");
    DestroyUnlocked(pDisplay);
}

TEST(Conversion, HasRoomForTheLongestStringToDraw)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);
    RecordOf(pDisplay)->eEdge = KOVA_TEXT_ENONE;
    const Units_t text(127, 0x20AC);

    EXPECT_EQ(pDisplay->DrawString(pDisplay, 0, text.data(), 255, 1, 2, KOVA_TEXT_UNICODE, KOVA_TEXT_LEFT),
              0);

    EXPECT_EQ(TraceOf("base.DrawString"),
              "  base.DrawString \"" + Times(127, "<E2><82><AC>") + "\" 1,2 TOPLEFT\n");
    DestroyUnlocked(pDisplay);
}

// ---- the width

TEST(GetStringWidth, MeasuresInTheFontsUTF8Encoding)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    SetEncodings({{1, "Latin1"}, {7, "UTF8"}});
    GivenFont(pDisplay, 24, "a");
    SetEncodings({{1, "Latin1"}, {9, "UTF8"}});
    GivenFont(pDisplay, 24, "b");
    const Units_t text = {'A', 0xE9};
    kova_uint32 uiWidth = 77;

    EXPECT_EQ(Width(pDisplay, text.data(), 4, KOVA_TEXT_UNICODE, &uiWidth), 0);

    EXPECT_EQ(Trace(), "enter GetStringWidth\n"
                       "  font2.SetEncoding 9\n"
                       "  font2.GetStringWidth \"A<C3><A9>\"\n"
                       "exit GetStringWidth return width:30\n");
    EXPECT_EQ(RecordText(1), "return width:30\n");
    EXPECT_EQ(uiWidth, 30u);
    DestroyUnlocked(pDisplay);
}

TEST(GetStringWidth, CopiesUTF8AndIgnoresOtherEncodings)
{
    static const struct {
        int iEncoding;
        size_t uiBytes;
        const char *pcBytes;
        kova_uint32 uiWidth;
    } rows[] = {
        {KOVA_TEXT_UTF8, 4, "<E2><82><AC>x", 40},
        {KOVA_TEXT_UTF8, 1, "<E2>", 10}, // odd counts and incomplete characters are passed on unchanged
        {KOVA_TEXT_UTF8, 6, "<E2><82><AC>x<00>y", 60},
        {KOVA_TEXT_UTF8, 0, "", 0},
        {KOVA_TEXT_ASCII, 4, "", 0},
        {KOVA_TEXT_ASCII, 0, "", 0},
        {3, 4, "", 0},
        {-1, 4, "", 0},
    };
    alignas(unsigned short) static const char acText[] = "\xE2\x82\xACx\0y";
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);

    for (const auto &row : rows) {
        kova_uint32 uiWidth = 77;
        ClearTrace();
        EXPECT_EQ(Width(pDisplay, acText, row.uiBytes, row.iEncoding, &uiWidth), 0);
        EXPECT_EQ(CallsOnly(Trace()), std::string("font.SetEncoding 2\n"
                                                  "font.GetStringWidth \"") +
                                          row.pcBytes + "\"\n");
        EXPECT_EQ(TraceOf("exit"), "exit GetStringWidth return width:" + std::to_string(row.uiWidth) + "\n");
        EXPECT_EQ(uiWidth, row.uiWidth);
    }
    DestroyUnlocked(pDisplay);
}

TEST(GetStringWidth, CopiesAll255BytesOfUTF8)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);
    const Units_t text(128, 'u' << 8 | 'u');
    kova_uint32 uiWidth = 0;

    EXPECT_EQ(Width(pDisplay, text.data(), 255, KOVA_TEXT_UTF8, &uiWidth), 0);

    EXPECT_EQ(TraceOf("font.GetStringWidth"), "  font.GetStringWidth \"" + std::string(255, 'u') + "\"\n");
    EXPECT_EQ(uiWidth, 2550u);
    DestroyUnlocked(pDisplay);
}

TEST(GetStringWidth, PassesANegativeWidthThrough)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);
    SetFontMetrics(0, 0, 0, -5);
    const Units_t text = {'A', 'B'};
    kova_uint32 uiWidth = 77;

    EXPECT_EQ(Width(pDisplay, text.data(), 4, KOVA_TEXT_UNICODE, &uiWidth), 0);

    EXPECT_EQ(uiWidth, 0xFFFFFFF6);
    EXPECT_EQ(TraceOf("exit"), "exit GetStringWidth return width:-10\n");
    DestroyUnlocked(pDisplay);
}

TEST(GetStringWidth, PrintsFailuresAndReturnsZero)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);
    Fail("Font.SetEncoding", DFB_UNSUPPORTED);
    Fail("Font.GetStringWidth", DFB_INVARG);
    const Units_t text = {'A'};
    kova_uint32 uiWidth = 77;

    EXPECT_EQ(Width(pDisplay, text.data(), 2, KOVA_TEXT_UNICODE, &uiWidth), 0);

    EXPECT_EQ(CallsOnly(Trace()), "font.SetEncoding 2\n" + CheckLine(DFB_UNSUPPORTED) +
                                      "font.GetStringWidth \"A\"\n" + CheckLine(DFB_INVARG));
    EXPECT_EQ(TraceOf("exit"), "exit GetStringWidth return width:0\n");
    EXPECT_EQ(uiWidth, 0u);
    DestroyUnlocked(pDisplay);
}

TEST(GetStringWidth, RefusesInOrderAndLeavesTheWidthAlone)
{
    // Each row creates the named fault and all faults that are checked later, where both are possible.
    enum Wrong_e {
        NULL_DISPLAY,
        BAD_CONTEXT,
        HIDDEN,
        NULL_TEXT,
        NULL_WIDTH,
        NO_FONT,
        BAD_FONT,
        EMPTY_SLOT,
        INACTIVE
    };
    static const struct {
        Wrong_e eWrong;
        int iResult;
        const char *pcTrace;
    } rows[] = {
        {NULL_DISPLAY, -1, "ERROR GetStringWidth: NULL Pointer!\n"},
        {BAD_CONTEXT, -1, "  ERROR GetStringWidth: Invalid context ID!\n"},
        {HIDDEN, 0, "exit GetStringWidth\n"},
        {NULL_TEXT, -1, "  ERROR GetStringWidth: NULL Pointer!\n"},
        {NULL_WIDTH, -1, "  ERROR GetStringWidth: NULL Pointer!\n"},
        {NO_FONT, -1, "  ERROR GetStringWidth: Only can support max 8 fonts!\n"},
        {BAD_FONT, -1, "  ERROR GetStringWidth: Only can support max 8 fonts!\n"},
        {EMPTY_SLOT, -1, "  ERROR GetStringWidth: NULL POINTER!\n"},
        {INACTIVE, -1, "  ERROR GetStringWidth: Inactive context!\n"},
    };
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    GivenFont(pDisplay);
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    IDirectFBFont *const pFont = pRecord->font[0].pFont;
    const Units_t text = {'A'};

    for (const auto &row : rows) {
        SCOPED_TRACE(row.eWrong);
        kova_uint32 uiWidth = 77;
        pRecord->bShow = row.eWrong > HIDDEN;
        pRecord->scActiveFontID = kova_sint8(row.eWrong <= NO_FONT ? -1 : row.eWrong == BAD_FONT ? 8 : 0);
        if (row.eWrong <= EMPTY_SLOT) pRecord->font[0].pFont = nullptr;
        EXPECT_EQ(pDisplay->GetStringWidth(
                      row.eWrong == NULL_DISPLAY ? nullptr : pDisplay,
                      kova_sint8(row.eWrong <= BAD_CONTEXT ? -1 : 0),
                      row.eWrong <= NULL_TEXT ? nullptr : text.data(), 2, KOVA_TEXT_UNICODE,
                      row.eWrong == NULL_WIDTH || row.eWrong == BAD_CONTEXT ? nullptr : &uiWidth),
                  row.iResult);
        EXPECT_EQ(Trace(), std::string("enter GetStringWidth\n") + row.pcTrace);
        EXPECT_EQ(uiWidth, 77u);
        EXPECT_FALSE(HoldsLock());
        pRecord->bShow = 1;
        pRecord->scActiveFontID = 0;
        pRecord->font[0].pFont = pFont;
        ClearTrace();
    }
    DestroyUnlocked(pDisplay);
}
