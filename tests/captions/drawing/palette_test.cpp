// SPDX-License-Identifier: MIT
// Colours: the entries of the palette, opacities, mixtures, flashing.
#include "states.h"

constexpr int64_t HALF = KOVA_CAPTIONS_FLASH_HALF;

static bool Is(const KovaTextColor_t &color, unsigned r, unsigned g, unsigned b, unsigned a)
{
    return color.r == r && color.g == g && color.b == b && color.a == a;
}

TEST(Palette, HasItsColoursInFixedPlaces)
{
    Requirement("E6", "C53");
    ServiceState state;
    Stage stage;
    state.Define(0, 0, 0, 1, 1);

    stage.Draw(state);

    static const unsigned levels[4] = {0x00, 0x55, 0xC0, 0xFF};
    const KovaTextColor_t *const palette = stage.display->palette;
    EXPECT_TRUE(Is(palette[0], 0, 0, 0, 0));
    std::set<unsigned> different;
    for (unsigned code = 0; code < 64; ++code) {
        const unsigned r = levels[code >> 4], g = levels[code >> 2 & 3], b = levels[code & 3];
        EXPECT_TRUE(Is(palette[1 + code], r, g, b, 255));
        EXPECT_TRUE(Is(palette[65 + code], r, g, b, 128));
        EXPECT_TRUE(Is(palette[129 + code], r, g, b, 255));
        different.insert(r << 16 | g << 8 | b);
    }
    EXPECT_EQ(different.size(), 64u);
    EXPECT_EQ(stage.display->calls, std::vector<std::string>{"SetPalette 0+256"});
}

TEST(Palette, OfEightColoursIsUsedWhereThereAreNoMore)
{
    Requirement("C54");
    KovaCaptionsScreen screen = GivenScreen();
    screen.eight_colors = 1;
    Stage stage(screen, 1050, 375);
    ServiceState state;
    state.Define(0, 0, 0, 1, 1).attributes.fill_color = 0x1B; // 1, 2, 3

    stage.Draw(state);

    EXPECT_EQ(stage.display->Around(Solid(0x0A)), CellBox(0, 0)); // 0, 2, 2
}

// A cell of text in the middle of a window, in the colours of the pen.
struct Looks {
    kova_uint32 fill, back, text;
    // As colours, in the first and in the second phase of flashing.
    std::uint32_t backs[2], texts[2];
};

static Looks LookOf(uint8_t fill_opacity, uint8_t background_opacity, uint8_t foreground_opacity,
                    const KovaCaptionsSettings &settings = Defaults())
{
    ServiceState state;
    Stage stage;
    KovaCaptionsPen pen = PenStyle1();
    stage.Set(settings);
    KovaCaptionsWindow &window = state.Define(0, 0, 0, 3, 3);
    window.attributes.fill_color = KOVA_CAPTIONS_BLUE;
    window.attributes.fill_opacity = fill_opacity;
    pen.background = KOVA_CAPTIONS_RED;
    pen.background_opacity = background_opacity;
    pen.foreground = KOVA_CAPTIONS_GREEN;
    pen.foreground_opacity = foreground_opacity;
    state.Print(0, 1, 1, u"H", pen);
    Looks looks = {};
    // The letter is in the middle of its cell, and its corner shows the background.
    const Box cell = CellBox(1, 1);
    for (int phase = 0; phase < 2; ++phase) {
        stage.Draw(state, START + phase * HALF);
        looks.backs[phase] = stage.display->ColorAt(cell.left, cell.top);
        looks.texts[phase] = stage.display->ColorAt(cell.left + 10, cell.top + 12);
    }
    looks.fill = stage.display->Front(LEFT, TOP);
    looks.back = stage.display->Front(cell.left, cell.top);
    looks.text = stage.display->Front(cell.left + 10, cell.top + 12);
    return looks;
}

enum : uint8_t {
    SOLID = KOVA_CAPTIONS_SOLID,
    FLASH = KOVA_CAPTIONS_FLASH,
    TRANSLUCENT = KOVA_CAPTIONS_TRANSLUCENT,
    TRANSPARENT = KOVA_CAPTIONS_TRANSPARENT
};
constexpr std::uint32_t RED = 0xFF0000FF, GREEN = 0x00FF00FF, BLUE = 0x0000FFFF, HALF_RED = 0xFF000080,
                        HALF_GREEN = 0x00FF0080;

TEST(Opacity, OfFillsIsThatOfThePalette)
{
    Requirement("C46", "C52");

    EXPECT_EQ(LookOf(SOLID, TRANSPARENT, SOLID).fill, Solid(KOVA_CAPTIONS_BLUE));
    EXPECT_EQ(LookOf(TRANSLUCENT, TRANSPARENT, SOLID).fill, Translucent(KOVA_CAPTIONS_BLUE));
    EXPECT_EQ(LookOf(TRANSPARENT, TRANSPARENT, SOLID).fill, 0u);
    EXPECT_EQ(LookOf(FLASH, TRANSPARENT, SOLID).fill, Flashing(KOVA_CAPTIONS_BLUE));
}

TEST(Opacity, OfBackgroundsOverTheFill)
{
    Requirement("C52");

    EXPECT_EQ(LookOf(SOLID, SOLID, SOLID).back, Solid(KOVA_CAPTIONS_RED));
    EXPECT_EQ(LookOf(SOLID, TRANSPARENT, SOLID).back, Solid(KOVA_CAPTIONS_BLUE));
    EXPECT_EQ(LookOf(TRANSPARENT, TRANSLUCENT, SOLID).back, Translucent(KOVA_CAPTIONS_RED));
    EXPECT_EQ(LookOf(TRANSLUCENT, TRANSLUCENT, SOLID).back, Translucent(KOVA_CAPTIONS_RED));
    EXPECT_EQ(LookOf(TRANSPARENT, FLASH, SOLID).back, Flashing(KOVA_CAPTIONS_RED));
    // Half red over blue, in an entry of the pool.
    const Looks mixed = LookOf(SOLID, TRANSLUCENT, SOLID);
    EXPECT_GE(mixed.back, 193u);
    EXPECT_EQ(mixed.backs[0], 0x7F007FFFu);
    const Looks flashing = LookOf(SOLID, FLASH, SOLID);
    EXPECT_EQ(flashing.backs[0], RED);
    EXPECT_EQ(flashing.backs[1], BLUE);
}

TEST(Opacity, OfTextOverItsBackground)
{
    Requirement("C52", "E7");

    EXPECT_EQ(LookOf(SOLID, SOLID, SOLID).text, Solid(KOVA_CAPTIONS_GREEN));
    EXPECT_EQ(LookOf(SOLID, SOLID, TRANSPARENT).text, Solid(KOVA_CAPTIONS_RED));
    EXPECT_EQ(LookOf(SOLID, SOLID, TRANSLUCENT).texts[0], 0x7F7F00FFu);
    EXPECT_EQ(LookOf(TRANSPARENT, TRANSLUCENT, TRANSLUCENT).texts[0], HALF_GREEN);
    // It flashes into its background, whatever that is.
    EXPECT_EQ(LookOf(TRANSPARENT, TRANSPARENT, FLASH).text, Flashing(KOVA_CAPTIONS_GREEN));
    const struct {
        uint8_t fill, background;
        std::uint32_t off;
    } backs[] = {
        {TRANSPARENT, TRANSPARENT, 0}, {TRANSPARENT, SOLID, RED}, {TRANSPARENT, TRANSLUCENT, HALF_RED},
        {SOLID, TRANSPARENT, BLUE},    {SOLID, FLASH, BLUE},      {TRANSPARENT, FLASH, 0}};
    for (const auto &back : backs) {
        const Looks looks = LookOf(back.fill, back.background, FLASH);
        EXPECT_EQ(looks.texts[0], GREEN);
        EXPECT_EQ(looks.texts[1], back.off);
    }
}

TEST(Opacity, IsTheViewersIfChosen)
{
    Requirement("D3", "D4", "D7", "D9", "D14", "D15");
    KovaCaptionsSettings settings = Defaults();
    settings.foreground = KOVA_CAPTIONS_YELLOW;

    EXPECT_EQ(LookOf(SOLID, SOLID, SOLID, settings).text, Solid(KOVA_CAPTIONS_YELLOW));
    EXPECT_EQ(LookOf(SOLID, SOLID, FLASH, settings).texts[1], RED);
    settings.foreground_opacity = SOLID;
    EXPECT_EQ(LookOf(SOLID, SOLID, FLASH, settings).texts[1], 0xFFFF00FFu);
    settings.background_opacity = TRANSLUCENT;
    EXPECT_EQ(LookOf(TRANSPARENT, SOLID, SOLID, settings).backs[0], HALF_RED);
    settings.window = KOVA_CAPTIONS_CYAN;
    EXPECT_EQ(LookOf(SOLID, SOLID, SOLID, settings).fill, Solid(KOVA_CAPTIONS_CYAN));
}

TEST(Flashing, ChangesThePaletteAlone)
{
    Requirement("E7", "B23");
    ChannelState state;
    Stage stage;
    state.Print(1, 1, u"flash");
    for (unsigned column = 1; column <= 5; ++column) state.At(1, column).flash = 1;
    state.channel->status.flash_since = START;
    stage.Draw(state, START);
    const std::vector<kova_uint32> pixels = stage.display->Screen();
    const std::vector<std::uint32_t> lit = stage.display->Colors();

    for (int half = 1; half <= 4; ++half) {
        EXPECT_EQ(Kova_Captions_NextDraw(*stage), START + half * HALF);
        stage.display->Forget();
        EXPECT_EQ(stage.Draw(state, START + half * HALF - 1), 0);
        EXPECT_EQ(stage.display->palettes, 0);
        EXPECT_EQ(stage.Draw(state, START + half * HALF), 0);
        // The 64 fixed entries, and one for white over black, which is the first of the pool.
        EXPECT_EQ(stage.display->calls, std::vector<std::string>{"SetPalette 129+65"});
        EXPECT_EQ(stage.display->flips + stage.display->fills + stage.display->strings, 0);
        EXPECT_EQ(stage.display->Screen(), pixels);
        EXPECT_EQ(stage.display->Colors() == lit, half % 2 == 0);
    }
}

TEST(Flashing, MakesNoCallsWhereNothingFlashes)
{
    Requirement("E7");
    ChannelState state;
    Stage stage;
    state.Print(1, 1, u"still");
    stage.Draw(state, START);

    stage.display->Forget();
    EXPECT_EQ(Kova_Captions_NextDraw(*stage), KOVA_CAPTIONS_NEVER);
    EXPECT_EQ(stage.Draw(state, START + HALF), 0);
    EXPECT_EQ(stage.display->palettes, 0);
}

TEST(Flashing, FlipsWhereTheLayerNeedsIt)
{
    ChannelState state;
    KovaCaptionsScreen screen = GivenScreen();
    screen.palette_needs_flip = 1;
    Stage stage(screen, 1050, 375);
    state.Print(1, 1, u"f");
    state.At(1, 1).flash = 1;
    state.channel->status.flash_since = START;
    stage.Draw(state, START);

    stage.display->Forget();
    EXPECT_EQ(stage.Draw(state, START + HALF), 0);
    EXPECT_EQ(stage.display->flips, 1);
}

// Eight rows of characters that flash, each in another colour over another background.
static ServiceState WithFlashPairs(unsigned pairs)
{
    ServiceState state;
    KovaCaptionsPen pen = PenStyle1();
    pen.foreground_opacity = FLASH;
    state.Define(0, 0, 0, 4, 32);
    for (unsigned i = 0; i < pairs; ++i) {
        pen.foreground = uint8_t(i % 64);
        pen.background = uint8_t((i + 1 + i / 64) % 64);
        state.Print(0, i / 32, i % 32, u"\u2588", pen);
    }
    state.service.status.flash_since = START;
    return state;
}

TEST(Pool, HoldsSixtyThreeColours)
{
    Requirement("E9");
    Stage stage;
    const ServiceState state = WithFlashPairs(63);

    stage.Draw(state, START + HALF);
    for (unsigned i = 0; i < 63; ++i) {
        const Box cell = CellBox(int(i / 32), int(i % 32));
        EXPECT_EQ(stage.display->Front(cell.left, cell.top),
                  stage.display->Front(cell.left + 9, cell.top + 9));
        EXPECT_GE(stage.display->Front(cell.left, cell.top), 193u);
    }
    // In the second phase every cell has the colour of its background.
    EXPECT_EQ(stage.display->ColorAt(CellBox(0, 2).left, TOP), 0x0000FFFFu); // code 3
}

TEST(Pool, MakesFlashingTextSolidWhenItIsEmpty)
{
    Requirement("E9");
    Stage stage;

    stage.Draw(WithFlashPairs(64), START + HALF);
    for (unsigned i = 0; i < 64; ++i) {
        const Box cell = CellBox(int(i / 32), int(i % 32));
        ASSERT_EQ(stage.display->Front(cell.left, cell.top), Solid(i));
    }
    EXPECT_EQ(Kova_Captions_NextDraw(*stage), KOVA_CAPTIONS_NEVER);
    // With one pair fewer all flash again.
    stage.Draw(WithFlashPairs(63), START + HALF);
    EXPECT_GE(stage.display->Front(LEFT, TOP), 193u);
}

TEST(Pool, TakesTheNearestColourForMixturesWhenItIsEmpty)
{
    Requirement("E9");
    Stage stage;
    ServiceState state;
    // Each window mixes 15 colours of its own with its fill.
    for (unsigned window = 0; window < 8; ++window) {
        KovaCaptionsPen pen = PenStyle1();
        state.Define(window, window * 5, 0, 1, 15).attributes.fill_color = uint8_t(window * 8 + 3);
        pen.background_opacity = TRANSLUCENT;
        pen.foreground_opacity = TRANSPARENT;
        for (unsigned i = 0; i < 15; ++i) {
            pen.background = uint8_t(i * 4 + 1);
            state.Print(window, 0, i, u"x", pen);
        }
    }

    stage.Draw(state);

    for (int i = 0; i < 8 * 15; ++i) {
        const Box cell = CellBox(i / 15, i % 15);
        EXPECT_LT(stage.display->Front(cell.left, cell.top), 65u);
    }
    // Half of 1 (red 0, green 0, blue 55) and half of 3 (FF): blue AA, which is nearest to C0.
    EXPECT_EQ(stage.display->Front(LEFT, TOP), Solid(2));
}

TEST(Pool, KeepsTheEntriesOfWhatStays)
{
    Requirement("E3", "E9");
    Stage stage;
    stage.Draw(WithFlashPairs(60), START + HALF);
    // Other pairs in the first row, and those of the second row as they were.
    ServiceState state = WithFlashPairs(60);
    const ServiceState other = WithFlashPairs(130);
    for (unsigned i = 0; i < 32; ++i) state.windows[0].cells[0][i] = other.windows[0].cells[2][i];

    stage.Draw(state, START + HALF);

    Stage fresh;
    fresh.Draw(state, START + HALF);
    EXPECT_EQ(stage.display->Colors(), fresh.display->Colors());
    EXPECT_GE(stage.display->Front(CellBox(1, 0).left, CellBox(1, 0).top), 193u);
}
