// SPDX-License-Identifier: MIT
// CEA-608: rows on their grid, boxes, looks.
#include "states.h"

// The safe area is 840 by 300 at 105, 37: a column is 26.25 pixels wide, a row 20 high.
static int ColumnEdge(int column)
{
    return LEFT + (column * 840 + 16) / 32;
}

TEST(Grid, Of15By32FillsTheSafeArea)
{
    Requirement("B53", "E5");
    ChannelState state;
    Stage stage;
    // Solid blocks in every cell, each with its own colour.
    for (unsigned row = 1; row <= 15; ++row) {
        state.Print(row, 1, std::u16string(32, u'\u2588'));
        for (unsigned column = 1; column <= 32; ++column) {
            state.At(row, column).foreground = uint8_t(1 + (row * 7 + column * 3) % 62);
        }
    }

    stage.Draw(state);

    for (int row = 1; row <= 15; ++row) {
        for (int column = 1; column <= 32; ++column) {
            const Box cell = {ColumnEdge(column - 1), TOP + 20 * (row - 1), ColumnEdge(column),
                              TOP + 20 * row};
            const auto color = kova_uint32(Solid(unsigned(1 + (row * 7 + column * 3) % 62)));
            ASSERT_EQ(stage.display->Count(color, cell), (cell.right - cell.left) * 20)
                << row << "," << column;
        }
    }
}

TEST(Grid, HasNoGapsAndOverlapsAtOddSizes)
{
    Requirement("E5");

    for (const auto &[width, height] : {std::pair{641, 363}, std::pair{720, 480}, std::pair{1279, 719}}) {
        ChannelState state;
        Stage stage(width, height);
        for (unsigned row = 1; row <= 15; ++row) state.Print(row, 1, std::u16string(32, u'\u2588'));
        stage.Draw(state);
        const Box white = stage.display->Around(Solid(KOVA_CAPTIONS_WHITE));
        EXPECT_EQ(white.right - white.left, width * 80 / 100);
        EXPECT_EQ(white.bottom - white.top, height * 80 / 100);
        EXPECT_EQ(stage.display->Count(Solid(KOVA_CAPTIONS_WHITE), white),
                  (white.right - white.left) * (white.bottom - white.top));
    }
}

TEST(Row, Of32WideLettersStaysInItsCells)
{
    Requirement("B53", "E13");
    for (const char *font : {"/none/mono", "/none/prop"}) {
        ChannelState state;
        KovaCaptionsScreen screen = GivenScreen();
        screen.fonts[0] = font;
        Stage stage(screen, 400, 300);
        state.Print(15, 1, std::u16string(32, u'W'));

        stage.Draw(state);

        // 320 pixels of safe area: cells of ten.
        ASSERT_EQ(stage.display->texts.size(), 32u);
        for (int i = 0; i < 32; ++i) {
            const DrawnText &text = stage.display->texts[size_t(i)];
            EXPECT_LE(text.width, 10);
            EXPECT_GE(text.x, 40 + 10 * i);
            EXPECT_LE(text.x + text.width, 40 + 10 * i + 10);
        }
        EXPECT_EQ(stage.display->Around(Solid(KOVA_CAPTIONS_BLACK)), (Box{30, 254, 370, 270}));
    }
}

TEST(Box, HasASpaceBeforeAndAfterEachElement)
{
    Requirement("B48", "E15");
    ChannelState state;
    Stage stage;
    state.Print(15, 1, u"AB");
    state.Print(15, 11, u"CD");

    stage.Draw(state);

    const FakeDisplay &display = *stage.display;
    const int y = TOP + 14 * 20, black = int(Solid(KOVA_CAPTIONS_BLACK));
    EXPECT_EQ(display.Around(kova_uint32(black)), (Box{ColumnEdge(0) - 26, y, ColumnEdge(13), y + 20}));
    // Columns 4 to 9 between the boxes show the picture.
    EXPECT_EQ(display.Count(0, {ColumnEdge(3), y, ColumnEdge(9), y + 20}),
              (ColumnEdge(9) - ColumnEdge(3)) * 20);
    EXPECT_EQ(display.Front(ColumnEdge(3) - 1, y), kova_uint32(black));
    EXPECT_EQ(display.Front(ColumnEdge(9), y), kova_uint32(black));
}

TEST(Box, IsNotThereWithoutCharacters)
{
    Requirement("B48");
    ChannelState state;
    Stage stage;
    state.RollUp(3, 15);
    state.Print(13, 1, u"A");
    state.Print(15, 1, u"B");

    stage.Draw(state);

    EXPECT_EQ(stage.display->Count(0, {0, TOP + 13 * 20, 1050, TOP + 14 * 20}), 1050 * 20);
    EXPECT_GT(stage.display->Count(Solid(KOVA_CAPTIONS_BLACK), {0, TOP + 12 * 20, 1050, TOP + 13 * 20}), 0);
}

TEST(Box, CoversATransparentSpaceBesideACharacter)
{
    Requirement("B48");
    ChannelState state;
    Stage stage;
    state.Print(1, 5, u"A");
    for (const unsigned column : {6u, 7u}) {
        state.At(1, column).kind = KOVA_CAPTIONS_TRANSPARENT_SPACE;
        state.At(1, column).character = ' ';
    }

    stage.Draw(state);

    EXPECT_EQ(stage.display->Ink(), (Box{ColumnEdge(3), TOP, ColumnEdge(6), TOP + 20}));
}

TEST(Box, OfTextModeCoversTheWholeArea)
{
    Requirement("B48");
    ChannelState state;
    Stage stage;
    state.channel->mode = KOVA_CAPTIONS_TEXT_MODE;

    stage.Draw(state);

    EXPECT_EQ(stage.display->Around(Solid(KOVA_CAPTIONS_BLACK)),
              (Box{ColumnEdge(0) - 26, TOP, ColumnEdge(32) + 26, TOP + 300}));
}

TEST(Cell, HasItsColourItalicsUnderlineAndBackground)
{
    Requirement("B24");
    ChannelState state;
    Stage stage;
    state.Print(1, 1, u"GREEN");
    for (unsigned column = 1; column <= 5; ++column) {
        KovaCaptionsChannelCell &cell = state.At(1, column);
        cell.foreground = KOVA_CAPTIONS_GREEN;
        cell.background = KOVA_CAPTIONS_BLUE;
        cell.italics = column <= 2;
        cell.underline = column >= 4;
    }

    stage.Draw(state);

    ASSERT_EQ(stage.display->texts.size(), 5u);
    for (const DrawnText &text : stage.display->texts) {
        EXPECT_EQ(text.color, Solid(KOVA_CAPTIONS_GREEN));
        EXPECT_EQ(text.italics, text.text == "G" || text.text == "R");
    }
    EXPECT_EQ(stage.display->Ink(), stage.display->Around(Solid(KOVA_CAPTIONS_BLUE)));
    // The underline is in the text's colour, below the base line at four fifths, under columns 4 and 5 as a whole.
    const int y = TOP + 16 + stage.display->underline_top;
    for (int x = ColumnEdge(3); x < ColumnEdge(5); ++x) {
        EXPECT_EQ(stage.display->Count(Solid(KOVA_CAPTIONS_GREEN), {x, y, x + 1, y + 2}), 2);
    }
}

TEST(Cell, MayHaveATranslucentOrNoBackground)
{
    ChannelState state;
    Stage stage;
    state.Print(1, 1, u"AB");
    state.At(1, 1).background_opacity = KOVA_CAPTIONS_TRANSLUCENT;
    state.At(1, 2).background_opacity = KOVA_CAPTIONS_TRANSPARENT;

    stage.Draw(state);

    EXPECT_EQ(stage.display->Around(Translucent(KOVA_CAPTIONS_BLACK)),
              (Box{ColumnEdge(0) - 26, TOP, ColumnEdge(1), TOP + 20}));
    EXPECT_EQ(stage.display->Count(Solid(KOVA_CAPTIONS_BLACK), {0, 0, 1050, 375}), 0);
}

TEST(Size, OfRowsKeepsThemInTheSafeArea)
{
    Requirement("D5", "D16");

    for (const unsigned percent : {50u, 80u, 130u, 200u}) {
        for (const unsigned row : {1u, 8u, 15u}) {
            ChannelState state;
            Stage stage;
            KovaCaptionsSettings settings = Defaults();
            settings.size = uint8_t(percent);
            stage.Set(settings);
            state.Print(row, 1, u"This row has all of its 32 cells");
            stage.Draw(state);
            const Box ink = stage.display->Ink();
            EXPECT_FALSE(ink.IsEmpty());
            EXPECT_GE(ink.top, TOP) << percent << " " << row;
            EXPECT_LE(ink.bottom, TOP + 300) << percent << " " << row;
            // It takes two rows where 32 columns do not fit.
            EXPECT_NEAR(ink.bottom - ink.top, (percent > 100 ? 2 : 1) * int(percent) / 5, 1) << percent;
            // One box of a column on each side lies outside.
            EXPECT_GE(ink.left, LEFT - 27 * int(percent) / 100) << percent;
        }
    }
}

TEST(WindowColor, OfTheViewerFillsTheBoxOfEachRow)
{
    Requirement("D9");
    ChannelState state;
    Stage stage;
    KovaCaptionsSettings settings = Defaults();
    settings.window = KOVA_CAPTIONS_RED;
    settings.window_opacity = KOVA_CAPTIONS_SOLID;
    settings.background_opacity = KOVA_CAPTIONS_TRANSPARENT;
    stage.Set(settings);
    state.Print(1, 1, u"A");
    state.Print(1, 11, u"B");

    stage.Draw(state);

    // From the first box to the last, the gap between the elements included.
    EXPECT_EQ(stage.display->Around(Solid(KOVA_CAPTIONS_RED)),
              (Box{ColumnEdge(0) - 26, TOP, ColumnEdge(12), TOP + 20}));
    EXPECT_EQ(stage.display->Count(0, {ColumnEdge(3), TOP, ColumnEdge(9), TOP + 20}), 0);
}
