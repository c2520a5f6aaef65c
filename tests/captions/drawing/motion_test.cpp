// SPDX-License-Identifier: MIT
// Movement: scrolling and rolling, wipes, fades, and when to draw again.
#include "states.h"

#include <chrono>
#include <thread>

constexpr int64_t STEP = KOVA_CAPTIONS_STEP;
constexpr int64_t SECOND = 1000000;

// The renderer does not copy what may not have been flipped yet.
static void LetTheDisplayFlip()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(9));
}

static ServiceState WithRows()
{
    ServiceState state;
    state.Define(0, 0, 0, 4, 20).attributes.fill_color = KOVA_CAPTIONS_BLUE;
    state.Print(0, 0, 0, u"top row");
    state.Print(0, 1, 0, u"second");
    state.Print(0, 2, 0, u"third");
    state.Print(0, 3, 0, u"fourth row");
    return state;
}

static KovaCaptionsScreen WithoutBlit()
{
    KovaCaptionsScreen screen = GivenScreen();
    screen.no_blit = 1;
    return screen;
}

TEST(Scrolling, MovesTheRowsSmoothlyAndInTime)
{
    Requirement("C41", "E11");
    ServiceState state = WithRows();
    Stage stage;
    stage.Draw(state, START);
    const auto top = [&] { return stage.display->Around(Solid(KOVA_CAPTIONS_BLACK)).top; };
    EXPECT_EQ(top(), TOP);

    // What stood in row 0 leaves, what stood in row 1 arrives at row 0 within 0.433 s.
    state.Scroll(0, START + SECOND);
    int64_t time = START + SECOND;
    int bottom = TOP + 4 * CELL, steps = 0;
    for (; time < START + SECOND + KOVA_CAPTIONS_ROLL; time = Kova_Captions_NextDraw(*stage)) {
        stage.Draw(state, time);
        const int now = stage.display->Around(Solid(KOVA_CAPTIONS_BLACK)).bottom;
        EXPECT_LE(now, bottom);
        EXPECT_LE(bottom - now, 2);
        bottom = now;
        ++steps;
    }
    EXPECT_EQ(time, START + SECOND + KOVA_CAPTIONS_ROLL);
    EXPECT_LE(KOVA_CAPTIONS_ROLL, 433000);
    EXPECT_GE(steps, 20);
    stage.Draw(state, time);
    EXPECT_EQ(stage.display->Around(Solid(KOVA_CAPTIONS_BLACK)), CellBox(0, 0, 3, 10));
    EXPECT_EQ(Kova_Captions_NextDraw(*stage), KOVA_CAPTIONS_NEVER);
}

TEST(Scrolling, CopiesPixelsOfAWindowThatStandsFree)
{
    Requirement("E11", "E3");
    ServiceState state = WithRows();
    Stage blitting, drawing(WithoutBlit(), 1050, 375);
    blitting.Draw(state, START);
    drawing.Draw(state, START);
    state.Scroll(0, START);
    int blits = 0;

    for (int64_t time = START; time <= START + KOVA_CAPTIONS_ROLL; time += STEP) {
        blitting.display->Forget();
        LetTheDisplayFlip();
        const int drawn = blitting.Draw(state, time);
        drawing.Draw(state, time);
        ASSERT_EQ(blitting.display->Screen(), drawing.display->Screen()) << time - START;
        EXPECT_EQ(blitting.display->flips, drawn);
        blits += blitting.display->blits;
    }

    EXPECT_GT(blits, 10);
    EXPECT_EQ(drawing.display->blits, 0);
}

TEST(Scrolling, DrawsAgainWhereWindowsOverlap)
{
    Requirement("E11");
    ServiceState state = WithRows();
    state.Define(1, 15, 30, 2, 10).attributes.fill_color = KOVA_CAPTIONS_RED;
    Stage stage;
    stage.Draw(state, START);
    state.Scroll(0, START);

    for (int64_t time = START; time <= START + KOVA_CAPTIONS_ROLL; time += STEP) {
        stage.Draw(state, time);
        EXPECT_EQ(stage.display->Around(Solid(KOVA_CAPTIONS_RED)), CellBox(3, 6, 2, 10));
    }
    EXPECT_EQ(stage.display->blits, 0);
}

TEST(Scrolling, GoesInAllDirections)
{
    Requirement("C40");
    const struct {
        uint8_t direction;
        int dx, dy;
    } directions[] = {{KOVA_CAPTIONS_LEFT_TO_RIGHT, -10, 0},
                      {KOVA_CAPTIONS_RIGHT_TO_LEFT, 10, 0},
                      {KOVA_CAPTIONS_TOP_TO_BOTTOM, 0, -10},
                      {KOVA_CAPTIONS_BOTTOM_TO_TOP, 0, 10}};
    for (const auto &direction : directions) {
        for (const bool blits : {true, false}) {
            ServiceState state;
            Stage stage(blits ? GivenScreen() : WithoutBlit(), 1050, 375);
            state.Define(0, 0, 0, 5, 5).attributes.fill_color = KOVA_CAPTIONS_BLUE;
            stage.Draw(state, START);
            // The whole block is in its place already; half way it is half a cell behind.
            state.Print(0, 2, 2, u"\u2588");
            state.windows[0].scroll = {
                START, KOVA_CAPTIONS_ROLL, KOVA_CAPTIONS_SCROLL, direction.direction, 0, {}};
            stage.Draw(state, START);
            LetTheDisplayFlip();
            stage.Draw(state, START + KOVA_CAPTIONS_ROLL / 4);
            LetTheDisplayFlip();
            stage.display->Forget();
            stage.Draw(state, START + KOVA_CAPTIONS_ROLL / 2);
            EXPECT_EQ(stage.display->blits, blits ? 1 : 0);
            const Box cell = CellBox(2, 2);
            EXPECT_EQ(stage.display->Around(Solid(0x2A)),
                      (Box{cell.left + direction.dx, cell.top + direction.dy, cell.right + direction.dx,
                           cell.bottom + direction.dy}));
            stage.Draw(state, START + KOVA_CAPTIONS_ROLL);
            EXPECT_EQ(stage.display->Around(Solid(0x2A)), cell);
        }
    }
}

TEST(Rolling, MovesTheWindowOfAChannelAndNothingElse)
{
    Requirement("B35", "B32");
    ChannelState state;
    state.RollUp(3, 15);
    state.Print(13, 1, u"first");
    state.Print(14, 1, u"second");
    state.Print(15, 1, u"third");
    Stage blitting, drawing(WithoutBlit(), 1050, 375);
    blitting.Draw(state, START);
    drawing.Draw(state, START);
    state.Roll(START);

    int last = 0;
    for (int64_t time = START; time < START + KOVA_CAPTIONS_ROLL; time += STEP) {
        LetTheDisplayFlip();
        blitting.Draw(state, time);
        drawing.Draw(state, time);
        ASSERT_EQ(blitting.display->Screen(), drawing.display->Screen());
        const Box ink = drawing.display->Ink();
        // The row that goes is cut off at the window's top, and the last row moves up.
        EXPECT_EQ(ink.top, TOP + 12 * 20);
        if (last) {
            EXPECT_LE(ink.bottom, last);
            EXPECT_LE(last - ink.bottom, 2);
        }
        last = ink.bottom;
    }
    EXPECT_GT(blitting.display->blits, 0);
    blitting.Draw(state, START + KOVA_CAPTIONS_ROLL);
    EXPECT_EQ(blitting.display->Ink().bottom, TOP + 14 * 20);
}

TEST(Rolling, ShowsTextThatArrivesMeanwhile)
{
    ChannelState state;
    Stage stage, drawing(WithoutBlit(), 1050, 375);
    state.RollUp(2, 15);
    state.Print(15, 1, u"above");
    stage.Draw(state, START);
    drawing.Draw(state, START);
    state.Roll(START);
    for (int64_t time = START; time <= START + KOVA_CAPTIONS_ROLL; time += 3 * STEP) {
        state.Print(15, unsigned(1 + (time - START) / (3 * STEP)), u"x");
        stage.Draw(state, time);
        drawing.Draw(state, time);
        EXPECT_EQ(stage.display->Screen(), drawing.display->Screen());
    }
    stage.Draw(state, START + KOVA_CAPTIONS_ROLL);
    Stage fresh;
    fresh.Draw(state, START + KOVA_CAPTIONS_ROLL);
    EXPECT_EQ(stage.display->Screen(), fresh.display->Screen());
}

// ----------------------------------------------------------------------------------------------------------- Effects

static ServiceState WithEffect(uint8_t kind, uint8_t direction, bool showing)
{
    ServiceState state = WithRows();
    state.windows[0].visible = showing;
    state.windows[0].effect = {START, 2 * SECOND, kind, direction, uint8_t(showing), {}};
    return state;
}

TEST(Wipe, UncoversTheWindowFromFourSides)
{
    Requirement("C45", "E10");
    const Box whole = CellBox(0, 0, 4, 20);
    const int x = (whole.left + whole.right) / 2, y = (whole.top + whole.bottom) / 2;
    // What is seen half way.
    const struct {
        uint8_t direction;
        Box shown, hidden;
    } directions[] = {
        {KOVA_CAPTIONS_LEFT_TO_RIGHT,
         {whole.left, whole.top, x, whole.bottom},
         {x, whole.top, whole.right, whole.bottom}},
        {KOVA_CAPTIONS_RIGHT_TO_LEFT,
         {x, whole.top, whole.right, whole.bottom},
         {whole.left, whole.top, x, whole.bottom}},
        {KOVA_CAPTIONS_TOP_TO_BOTTOM,
         {whole.left, whole.top, whole.right, y},
         {whole.left, y, whole.right, whole.bottom}},
        {KOVA_CAPTIONS_BOTTOM_TO_TOP,
         {whole.left, y, whole.right, whole.bottom},
         {whole.left, whole.top, whole.right, y}},
    };

    for (const auto &direction : directions) {
        for (const bool showing : {true, false}) {
            ServiceState state = WithEffect(KOVA_CAPTIONS_WIPE, direction.direction, showing);
            Stage stage, full;
            if (!showing) stage.Draw(WithRows(), START);
            for (int64_t time = START; time < START + SECOND; time += 5 * STEP) stage.Draw(state, time);
            stage.display->Forget();
            stage.Draw(state, START + SECOND);
            // A window that appears comes from where the movement starts; one that goes leaves from there.
            const Box seen = showing ? direction.shown : direction.hidden;
            EXPECT_EQ(stage.display->Ink(), seen);
            EXPECT_EQ(stage.display->flips, 1);
            // What is seen is what the whole window has there.
            full.Draw(WithRows(), START);
            for (int row = seen.top; row < seen.bottom; ++row) {
                for (int column = seen.left; column < seen.right; ++column) {
                    ASSERT_EQ(stage.display->Front(column, row), full.display->Front(column, row));
                }
            }
            stage.Draw(state, START + 2 * SECOND);
            if (showing) {
                EXPECT_EQ(stage.display->Screen(), full.display->Screen());
            } else {
                EXPECT_TRUE(stage.display->Ink().IsEmpty());
            }
        }
    }
}

TEST(Wipe, DrawsTheStripThatChanges)
{
    Requirement("E10", "E4");
    ServiceState state = WithEffect(KOVA_CAPTIONS_WIPE, KOVA_CAPTIONS_LEFT_TO_RIGHT, true);
    Stage stage;
    stage.Draw(state, START + SECOND);

    stage.display->Forget();
    stage.Draw(state, START + SECOND + SECOND / 10);

    const Box whole = CellBox(0, 0, 4, 20);
    EXPECT_EQ(stage.display->touched, (Box{whole.left + 200, whole.top, whole.left + 220, whole.bottom}));
}

TEST(Fade, ChangesThePaletteAloneBetweenItsEnds)
{
    Requirement("C45", "E8");

    for (const bool showing : {true, false}) {
        ServiceState state = WithEffect(KOVA_CAPTIONS_FADE, 0, showing);
        Stage stage;
        int drawings = 0, palettes = 0, previous = showing ? 0 : 255;
        if (!showing) stage.Draw(WithRows(), START);
        for (int64_t time = START; time < START + 2 * SECOND; time = Kova_Captions_NextDraw(*stage)) {
            stage.display->Forget();
            drawings += stage.Draw(state, time);
            palettes += stage.display->palettes;
            EXPECT_LE(stage.display->flips, time == START ? 1 : 0);
            const auto alpha = int(stage.display->ColorAt(LEFT + 190, TOP + 70) & 255);
            const auto done = int((time - START) * 255 / (2 * SECOND));
            EXPECT_NEAR(alpha, showing ? done : 255 - done, 2);
            if (showing) {
                EXPECT_GE(alpha, previous);
            } else {
                EXPECT_LE(alpha, previous);
            }
            previous = alpha;
        }
        EXPECT_EQ(drawings, 1);
        EXPECT_GT(palettes, 60);
        EXPECT_EQ(stage.Draw(state, START + 2 * SECOND), 1);
        Stage end;
        if (showing) {
            end.Draw(WithRows(), START);
        }
        EXPECT_EQ(stage.display->Screen(), end.display->Screen());
    }
}

TEST(Fade, IsDrawnAgainWherePixelsHaveTheirColours)
{
    Requirement("E20");
    ServiceState state = WithEffect(KOVA_CAPTIONS_FADE, 0, true);
    Stage index;
    KovaCaptionsScreen screen = GivenScreen();
    screen.color_mode = KOVA_CAPTIONS_TRUE_COLORS;
    Stage colors(screen, 1050, 375);

    for (int64_t time = START; time <= START + 2 * SECOND; time += SECOND / 4) {
        index.Draw(state, time);
        colors.display->Forget();
        colors.Draw(state, time);
        EXPECT_EQ(colors.display->flips, 1);
        EXPECT_EQ(colors.display->Screen(), index.display->Colors());
    }
}

TEST(Fade, IsASnapWithoutPaletteEntries)
{
    Requirement("E9", "C44");
    ServiceState state = WithEffect(KOVA_CAPTIONS_FADE, 0, true);
    // Too many colours for one window that fades.
    for (unsigned i = 0; i < 64; ++i) {
        KovaCaptionsPen pen = PenStyle1();
        pen.foreground = uint8_t(i);
        pen.background = uint8_t(63 - i);
        state.Print(0, i / 20, i % 20, u"H", pen);
    }
    Stage stage, still;

    stage.Draw(state, START);
    state.windows[0].effect = {};
    still.Draw(state, START);

    EXPECT_EQ(stage.display->Screen(), still.display->Screen());
    // One that goes is gone at once.
    state.windows[0].effect = {START, SECOND, KOVA_CAPTIONS_FADE, 0, 0, {}};
    state.windows[0].visible = 0;
    stage.Draw(state, START);
    EXPECT_TRUE(stage.display->Ink().IsEmpty());
}

TEST(Effects, OfADecoderAreAnnouncedAndEnd)
{
    Requirement("E8");
    KovaCaptions *const decoder = Kova_Captions_Create(nullptr);
    Stage stage;
    // DefineWindow 0, hidden, 1 row of 4; fade, 0.5 s; "Hi"; DisplayWindows 0; in one packet of service 1.
    const uint8_t block[] = {0x98, 0x00, 0x00, 0x00, 0x00, 0x03, 0x09, 0x97, 0x00,
                             0x00, 0x0C, 0x11, 'H',  'i',  0x89, 0x01, 0x00};
    uint8_t packet[20] = {uint8_t(sizeof packet / 2), uint8_t(1 << 5 | sizeof block)};
    std::copy(std::begin(block), std::end(block), packet + 2);
    for (size_t i = 0; i < sizeof packet; i += 2) {
        const uint8_t triplet[3] = {uint8_t(i == 0 ? 0xFF : 0xFE), packet[i], packet[i + 1]};
        ASSERT_EQ(Kova_Captions_PushTriplets(decoder, START, triplet, 1), 0);
    }

    EXPECT_EQ(Kova_Captions_Draw(*stage, decoder, 1, START), 1);
    EXPECT_EQ(Kova_Captions_NextDraw(*stage), START + STEP);
    EXPECT_EQ(Kova_Captions_Draw(*stage, decoder, 1, START + SECOND / 4), 0);
    EXPECT_NEAR(int(stage.display->ColorAt(LEFT + 1, TOP + 1) & 255), 128, 2);
    EXPECT_EQ(Kova_Captions_Draw(*stage, decoder, 1, START + SECOND / 2), 1);
    EXPECT_EQ(stage.display->ColorAt(LEFT + 1, TOP + 1), 0xFFu);
    // Then the time without data.
    EXPECT_EQ(Kova_Captions_NextDraw(*stage), START + 16 * SECOND);
    EXPECT_EQ(Kova_Captions_Draw(*stage, decoder, 1, Kova_Captions_NextDraw(*stage)), 1);
    EXPECT_TRUE(stage.display->Ink().IsEmpty());
    EXPECT_EQ(Kova_Captions_Draw(*stage, decoder, KOVA_CAPTIONS_NONE, START), 0);
    EXPECT_EQ(Kova_Captions_Draw(*stage, decoder, KOVA_CAPTIONS_CC1, START), 0);
    EXPECT_EQ(Kova_Captions_Draw(*stage, decoder, 200, START), -1);
    Kova_Captions_Destroy(decoder);
}
