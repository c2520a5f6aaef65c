// SPDX-License-Identifier: MIT
// CEA-708: where windows are, what they look like, and how their rows are justified and wrapped.
#include "states.h"

#include <algorithm>

// A blue window is easy to find.
static KovaCaptionsWindow &DefineBlue(ServiceState &state, unsigned window, unsigned row, unsigned column,
                                      unsigned rows, unsigned columns)
{
    KovaCaptionsWindow &defined = state.Define(window, row, column, rows, columns);
    defined.attributes.fill_color = KOVA_CAPTIONS_BLUE;
    return defined;
}

static Box PlaceOf(const ServiceState &state, uint8_t aspect = KOVA_CAPTIONS_WIDE)
{
    Stage stage;
    EXPECT_EQ(Kova_Captions_SetAspect(*stage, aspect), 0);
    stage.Draw(state);
    return stage.display->Ink();
}

TEST(Anchors, AreReadOnTheGridOfTheSafeArea)
{
    Requirement("C29");
    ServiceState state;

    // A cell is five units of the grid in both directions.
    DefineBlue(state, 0, 0, 0, 2, 10);
    EXPECT_EQ(PlaceOf(state), CellBox(0, 0, 2, 10));
    DefineBlue(state, 0, 50, 105, 3, 12);
    EXPECT_EQ(PlaceOf(state), CellBox(10, 21, 3, 12));
    DefineBlue(state, 0, 65, 160, 2, 10);
    EXPECT_EQ(PlaceOf(state), CellBox(13, 32, 2, 10));
}

TEST(Anchors, OfServicesFor4To3AreReadOn160Units)
{
    Requirement("C29", "C33");
    ServiceState state;

    // The middle of 160 is the middle of the picture, and 16 of 32 columns are half of the safe area.
    DefineBlue(state, 0, 0, 80, 15, 16);
    EXPECT_EQ(PlaceOf(state, KOVA_CAPTIONS_NARROW), (Box{LEFT + 420, TOP, LEFT + 840, TOP + 300}));
    DefineBlue(state, 0, 0, 0, 15, 32);
    EXPECT_EQ(PlaceOf(state, KOVA_CAPTIONS_NARROW), CellBox(0, 0, 15, 42));
}

TEST(Anchors, MayBeHundredths)
{
    Requirement("C30");
    ServiceState state;
    KovaCaptionsWindow &window = DefineBlue(state, 0, 20, 50, 3, 10);
    window.definition.relative = 1;

    // 20 % of 300 pixels down, 50 % of 840 across.
    EXPECT_EQ(PlaceOf(state), (Box{LEFT + 420, TOP + 60, LEFT + 620, TOP + 120}));
}

TEST(Anchors, AreOneOfNinePoints)
{
    Requirement("C30");

    for (int point = 0; point < 9; ++point) {
        ServiceState state;
        // 3 rows of 10 columns; the anchor is at cell 7, 20.
        KovaCaptionsWindow &window = DefineBlue(state, 0, 35, 100, 3, 10);
        window.definition.anchor_point = uint8_t(point);
        const int x = LEFT + 20 * CELL - point % 3 * 100, y = TOP + 7 * CELL - point / 3 * 30;
        EXPECT_EQ(PlaceOf(state), (Box{x, y, x + 200, y + 60})) << point;
    }
}

TEST(Window, LargerThanTheSafeAreaIsNotShown)
{
    Requirement("C31");
    ServiceState state;

    DefineBlue(state, 0, 0, 0, 15, 42);
    EXPECT_EQ(PlaceOf(state), CellBox(0, 0, 15, 42));
    DefineBlue(state, 0, 0, 0, 15, 33);
    EXPECT_TRUE(PlaceOf(state, KOVA_CAPTIONS_NARROW).IsEmpty());
}

TEST(Window, ThatReachesOverTheSafeAreaIsMovedInside)
{
    Requirement("C32");
    ServiceState state;

    DefineBlue(state, 0, 74, 209, 4, 20);
    EXPECT_EQ(PlaceOf(state), CellBox(11, 22, 4, 20));
    KovaCaptionsWindow &window = DefineBlue(state, 0, 0, 0, 4, 20);
    window.definition.anchor_point = 8;
    EXPECT_EQ(PlaceOf(state), CellBox(0, 0, 4, 20));
}

TEST(Window, IsShownSolidBlackAndTransparentWithoutBorder)
{
    Requirement("C46");
    ServiceState state;
    Stage stage;

    KovaCaptionsWindow &window = state.Define(0, 0, 0, 2, 10);
    stage.Draw(state);
    EXPECT_EQ(stage.display->Around(Solid(KOVA_CAPTIONS_BLACK)), CellBox(0, 0, 2, 10));
    EXPECT_EQ(stage.display->Ink(), CellBox(0, 0, 2, 10));
    window.attributes.fill_opacity = KOVA_CAPTIONS_TRANSPARENT;
    stage.Draw(state);
    EXPECT_TRUE(stage.display->Ink().IsEmpty());
}

TEST(Window, HasFiveKindsOfBorder)
{
    Requirement("C47");
    const kova_uint32 fill = Solid(KOVA_CAPTIONS_BLUE), light = Solid(KOVA_CAPTIONS_WHITE),
                      dark = Solid(0x2A);
    const Box rect = CellBox(5, 5, 4, 10);
    const struct {
        uint8_t type;
        // Beside the middle of each side: left, top, right, bottom.
        kova_uint32 left, top, right, bottom;
    } kinds[] = {
        {KOVA_CAPTIONS_EDGE_NONE, 0, 0, 0, 0},
        {KOVA_CAPTIONS_EDGE_RAISED, light, light, dark, dark},
        {KOVA_CAPTIONS_EDGE_DEPRESSED, dark, dark, light, light},
        {KOVA_CAPTIONS_EDGE_UNIFORM, light, light, light, light},
        {KOVA_CAPTIONS_EDGE_SHADOW_LEFT, light, 0, 0, light},
        {KOVA_CAPTIONS_EDGE_SHADOW_RIGHT, 0, 0, light, light},
    };

    for (const auto &kind : kinds) {
        ServiceState state;
        Stage stage;
        KovaCaptionsWindow &window = DefineBlue(state, 0, 25, 25, 4, 10);
        window.attributes.border_type = kind.type;
        window.attributes.border_color = KOVA_CAPTIONS_WHITE;
        stage.Draw(state);
        const FakeDisplay &display = *stage.display;
        const int x = (rect.left + rect.right) / 2, y = (rect.top + rect.bottom) / 2;
        // Rows are 20 pixels high, so a border has the least width of two.
        for (int i = 1; i <= 2; ++i) {
            EXPECT_EQ(display.Front(rect.left - i, y), kind.left) << int(kind.type);
            EXPECT_EQ(display.Front(x, rect.top - i), kind.top) << int(kind.type);
            EXPECT_EQ(display.Front(rect.right + i - 1, y), kind.right) << int(kind.type);
            EXPECT_EQ(display.Front(x, rect.bottom + i - 1), kind.bottom) << int(kind.type);
        }
        EXPECT_EQ(display.Front(rect.left - 3, y), 0u);
        EXPECT_EQ(display.Front(x, rect.bottom + 2), 0u);
        EXPECT_EQ(display.Around(fill), rect) << int(kind.type);
    }
}

TEST(Window, OfHigherPriorityCoversOneOfLower)
{
    Requirement("C36");
    ServiceState state;
    Stage stage;

    // Window 0 has the lower priority; with equal ones the higher number is in front.
    DefineBlue(state, 0, 0, 0, 4, 10).definition.priority = 3;
    KovaCaptionsWindow &other = state.Define(1, 10, 20, 4, 10);
    other.attributes.fill_color = KOVA_CAPTIONS_RED;
    other.definition.priority = 2;
    stage.Draw(state);
    EXPECT_EQ(stage.display->Around(Solid(KOVA_CAPTIONS_RED)), CellBox(2, 4, 4, 10));
    EXPECT_EQ(stage.display->Count(Solid(KOVA_CAPTIONS_BLUE), CellBox(2, 4, 2, 6)), 0);
    EXPECT_EQ(stage.display->Count(Solid(KOVA_CAPTIONS_BLUE), CellBox(0, 0, 4, 10)),
              4 * 10 * CELL * CELL - 2 * 6 * CELL * CELL);

    state.windows[0].definition.priority = 1;
    stage.Draw(state);
    EXPECT_EQ(stage.display->Around(Solid(KOVA_CAPTIONS_BLUE)), CellBox(0, 0, 4, 10));
    state.windows[0].definition.priority = 2;
    stage.Draw(state);
    EXPECT_EQ(stage.display->Around(Solid(KOVA_CAPTIONS_RED)), CellBox(2, 4, 4, 10));
}

// Where the text's background is in a window of one row and ten columns.
static Box Justified(uint8_t justify, const std::u16string &text)
{
    ServiceState state;
    Stage stage;
    KovaCaptionsWindow &window = DefineBlue(state, 0, 0, 0, 1, 10);
    window.attributes.justify = justify;
    state.Print(0, 0, 0, text);
    stage.Draw(state);
    return stage.display->Around(Solid(KOVA_CAPTIONS_BLACK));
}

TEST(Rows, AreJustified)
{
    Requirement("C37");

    EXPECT_EQ(Justified(KOVA_CAPTIONS_JUSTIFY_LEFT, u"four"), CellBox(0, 0, 1, 4));
    EXPECT_EQ(Justified(KOVA_CAPTIONS_JUSTIFY_FULL, u"four"), CellBox(0, 0, 1, 4));
    EXPECT_EQ(Justified(KOVA_CAPTIONS_JUSTIFY_RIGHT, u"four"), CellBox(0, 6, 1, 4));
    EXPECT_EQ(Justified(KOVA_CAPTIONS_JUSTIFY_CENTER, u"four"), CellBox(0, 3, 1, 4));
    // Three of ten cells are centred by half a cell.
    const Box odd = Justified(KOVA_CAPTIONS_JUSTIFY_CENTER, u"odd");
    EXPECT_EQ(odd, (Box{LEFT + 7 * CELL / 2, TOP, LEFT + 13 * CELL / 2, TOP + CELL}));
}

TEST(Rows, OfProportionalTextAreJustifiedByTheirWidth)
{
    Requirement("C37");
    KovaCaptionsPen pen = PenStyle1();
    pen.font = KOVA_CAPTIONS_FONT_SANS;

    for (const uint8_t justify :
         {KOVA_CAPTIONS_JUSTIFY_LEFT, KOVA_CAPTIONS_JUSTIFY_CENTER, KOVA_CAPTIONS_JUSTIFY_RIGHT}) {
        ServiceState state;
        Stage stage;
        DefineBlue(state, 0, 0, 0, 1, 20).attributes.justify = justify;
        state.Print(0, 0, 0, u"iiii iiii", pen);
        stage.Draw(state);
        ASSERT_EQ(stage.display->texts.size(), 1u);
        const DrawnText &text = stage.display->texts[0];
        const Box back = stage.display->Around(Solid(KOVA_CAPTIONS_BLACK));
        EXPECT_EQ(text.text, "iiii iiii");
        EXPECT_LT(text.width, 9 * CELL / 2);
        // The background is a little wider than the text, on both sides alike.
        EXPECT_EQ(text.x - back.left, back.right - (text.x + text.width));
        EXPECT_GT(text.x - back.left, 0);
        const Box window = CellBox(0, 0, 1, 20);
        if (justify == KOVA_CAPTIONS_JUSTIFY_LEFT) {
            EXPECT_EQ(back.left, window.left);
        }
        if (justify == KOVA_CAPTIONS_JUSTIFY_RIGHT) {
            EXPECT_EQ(back.right, window.right);
        }
        if (justify == KOVA_CAPTIONS_JUSTIFY_CENTER) {
            EXPECT_NEAR(back.left - window.left, window.right - back.right, 1);
        }
    }
}

TEST(Rows, OfVerticalPrintAreJustifiedDownwards)
{
    Requirement("C37");
    ServiceState state;
    Stage stage;
    KovaCaptionsWindow &window = DefineBlue(state, 0, 0, 0, 10, 3);
    window.attributes.print_direction = KOVA_CAPTIONS_TOP_TO_BOTTOM;
    window.attributes.justify = KOVA_CAPTIONS_JUSTIFY_RIGHT;
    state.Print(0, 0, 1, u"a");
    state.Print(0, 1, 1, u"b");

    stage.Draw(state);

    EXPECT_EQ(stage.display->Around(Solid(KOVA_CAPTIONS_BLACK)), CellBox(8, 1, 2, 1));
}

// The rows of a window's text at a size, top to bottom; runs of one row are joined.
static std::string RowsAt(unsigned percent, const std::vector<std::u16string> &rows, unsigned columns = 42)
{
    ServiceState state;
    Stage stage;
    KovaCaptionsSettings settings = Defaults();
    settings.size = uint8_t(percent);
    stage.Set(settings);
    state.Define(0, 0, 0, unsigned(rows.size()), columns);
    for (unsigned row = 0; row < rows.size(); ++row) state.Print(0, row, 0, rows[row]);
    stage.Draw(state);
    std::vector<DrawnText> texts = stage.display->texts;
    std::sort(texts.begin(), texts.end(), [](const DrawnText &first, const DrawnText &second) {
        return first.y != second.y ? first.y < second.y : first.x < second.x;
    });
    std::string result;
    for (size_t i = 0; i < texts.size(); ++i) {
        if (i > 0 && texts[i].y != texts[i - 1].y) result += '|';
        result += texts[i].text;
    }
    return result;
}

TEST(Wrapping, BreaksAtSpacesAndAfterHyphens)
{
    Requirement("C42", "D16");

    // 21 columns fit at 200 %. Spaces are not drawn.
    EXPECT_EQ(RowsAt(200, {u"every good boy deserves favour and fudge"}),
              "everygoodboy|deservesfavourand|fudge");
    EXPECT_EQ(RowsAt(200, {u"a non-breaking twenty-first-century word"}),
              "anon-breaking|twenty-first-century|word");
    EXPECT_EQ(RowsAt(200, {u"0123456789012345678901234567890"}), "012345678901234567890|1234567890");
    // Not at a non-breaking space.
    EXPECT_EQ(RowsAt(200, {u"twelve o'clock\u00A0and\u00A0half past"}), "twelve|o'clockandhalfpast");
    EXPECT_EQ(RowsAt(100, {u"every good boy deserves favour and fudge"}),
              "everygoodboydeservesfavourandfudge");
}

TEST(Wrapping, CutsOffBlankRowsFirstAndThenTheOldest)
{
    Requirement("D16");
    std::vector<std::u16string> rows(15);
    rows[0] = u"first";
    rows[14] = u"last";

    EXPECT_EQ(RowsAt(200, rows), "first|last");
    for (char16_t i = 0; i < 15; ++i) rows[i] = std::u16string(1, char16_t(u'a' + i));
    EXPECT_EQ(RowsAt(200, rows), "i|j|k|l|m|n|o");
}

TEST(Size, GrowsTheWindowAndKeepsItInside)
{
    Requirement("D5", "D16");
    const auto place = [](unsigned percent) {
        ServiceState state;
        Stage stage;
        KovaCaptionsSettings settings = Defaults();
        settings.size = uint8_t(percent);
        stage.Set(settings);
        KovaCaptionsWindow &window = DefineBlue(state, 0, 74, 105, 2, 10);
        window.definition.anchor_point = 7;
        stage.Draw(state);
        return stage.display->Ink();
    };
    // Its anchor, the middle of the bottom, stays at 74 of 75: 296 pixels down.
    EXPECT_EQ(place(100), (Box{LEFT + 320, TOP + 256, LEFT + 520, TOP + 296}));
    EXPECT_EQ(place(50), (Box{LEFT + 370, TOP + 276, LEFT + 470, TOP + 296}));
    EXPECT_EQ(place(200), (Box{LEFT + 220, TOP + 216, LEFT + 620, TOP + 296}));
}

TEST(SafeArea, IsTheMiddleOfThePicture)
{
    ServiceState state;
    DefineBlue(state, 0, 0, 0, 15, 42);
    KovaCaptionsScreen screen = GivenScreen();
    screen.picture = {100, 50, 400, 300};
    Stage stage(screen, 600, 400);
    stage.Draw(state);
    EXPECT_EQ(stage.display->Ink(), (Box{140, 80, 460, 320}));
    KovaCaptionsSettings settings = Defaults();
    settings.safe_area = 100;
    stage.Set(settings);
    stage.Draw(state);
    EXPECT_EQ(stage.display->Ink(), (Box{100, 50, 500, 350}));
}
