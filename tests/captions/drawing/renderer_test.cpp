// SPDX-License-Identifier: MIT
// Redraws: what is drawn when something changes, and how often that flips.
#include "states.h"

#include <random>

TEST(Renderer, RefusesWhatItCannotUse)
{
    FakeDisplay display(100, 100);
    KovaCaptionsScreen screen = GivenScreen();
    EXPECT_EQ(Kova_Captions_CreateRenderer(nullptr), nullptr);
    EXPECT_EQ(Kova_Captions_CreateRenderer(&screen), nullptr);
    const auto refused = [&](void (*change)(KovaCaptionsScreen &)) {
        KovaCaptionsScreen changed = GivenScreen();
        changed.display = *display;
        change(changed);
        return Kova_Captions_CreateRenderer(&changed) == nullptr;
    };
    EXPECT_TRUE(refused([](KovaCaptionsScreen &changed) { changed.plane_width = 0; }));
    EXPECT_TRUE(refused([](KovaCaptionsScreen &changed) { changed.plane_height = 16385; }));
    EXPECT_TRUE(refused([](KovaCaptionsScreen &changed) { changed.context = 4; }));
    EXPECT_TRUE(refused([](KovaCaptionsScreen &changed) { changed.context = -1; }));
    EXPECT_TRUE(refused([](KovaCaptionsScreen &changed) { changed.color_mode = 3; }));
    EXPECT_TRUE(refused([](KovaCaptionsScreen &changed) { changed.layer = 3; }));
    EXPECT_TRUE(refused([](KovaCaptionsScreen &changed) { changed.aspect = 2; }));
    EXPECT_TRUE(refused([](KovaCaptionsScreen &changed) { changed.picture.uiWidth = 20; }));
    Stage stage;
    KovaCaptionsWindow window = {};
    KovaCaptionsService service = {};
    EXPECT_EQ(Kova_Captions_DrawChannel(*stage, nullptr, START), -1);
    EXPECT_EQ(Kova_Captions_DrawService(*stage, nullptr, &window, START), -1);
    EXPECT_EQ(Kova_Captions_DrawService(*stage, &service, nullptr, START), -1);
    EXPECT_EQ(Kova_Captions_Draw(*stage, nullptr, 1, START), -1);
    EXPECT_EQ(Kova_Captions_Preview(*stage, nullptr, START), -1);
    EXPECT_EQ(Kova_Captions_SetAspect(*stage, 2), -1);
    EXPECT_EQ(Kova_Captions_SetSettings(nullptr, nullptr), -1);
    EXPECT_EQ(Kova_Captions_Redraw(nullptr), -1);
    EXPECT_EQ(Kova_Captions_Clear(nullptr), -1);
    EXPECT_EQ(Kova_Captions_NextDraw(nullptr), KOVA_CAPTIONS_NEVER);
    Kova_Captions_DestroyRenderer(nullptr);
    Kova_Captions_GetDefaultScreen(nullptr);
    EXPECT_EQ(stage.display->calls.size() + stage.display->clips.size(), 0u);
}

TEST(Change, IsOneFlip)
{
    Requirement("E1", "E2");
    ServiceState state;
    Stage stage;
    const auto flips = [&] {
        stage.display->Forget();
        EXPECT_EQ(stage.Draw(state), 1);
        return stage.display->flips;
    };
    state.Define(0, 0, 0, 4, 20);
    state.Print(0, 0, 0, u"first");
    EXPECT_EQ(flips(), 1);
    // New text on a background that stays.
    state.Print(0, 0, 0, u"other");
    EXPECT_EQ(flips(), 1);
    EXPECT_EQ(stage.display->Screen(), [&] {
        Stage fresh;
        fresh.Draw(state);
        return fresh.display->Screen();
    }());
    state.Define(1, 20, 50, 3, 30);
    state.windows[0].definition.anchor_vertical = 40;
    EXPECT_EQ(flips(), 1);
    state.windows[0].visible = state.windows[1].visible = 0;
    EXPECT_EQ(flips(), 1);
    EXPECT_TRUE(stage.display->Ink().IsEmpty());
}

TEST(Change, OfNothingDrawsNothing)
{
    Requirement("E1");
    ServiceState state;
    Stage stage;
    state.Define(0, 0, 0, 4, 20);
    state.Print(0, 0, 0, u"text");
    stage.Draw(state);

    stage.display->Forget();
    EXPECT_EQ(stage.Draw(state, START + 10 * 1000000), 0);

    EXPECT_EQ(stage.display->flips + stage.display->fills + stage.display->palettes, 0);
    EXPECT_TRUE(stage.display->clips.empty());
}

TEST(Change, OfADecoderIsDrawnAndNothingElse)
{
    Requirement("E1");
    KovaCaptions *const decoder = Kova_Captions_Create(nullptr);
    Stage stage;
    const auto push = [decoder](unsigned first, unsigned second) {
        const auto parity = [](unsigned byte) {
            return uint8_t(byte | (__builtin_popcount(byte) % 2 ? 0u : 0x80u));
        };
        Kova_Captions_PushPair(decoder, START, 1, parity(first), parity(second));
    };
    // Paint-on, row 15, two letters.
    push(0x14, 0x29);
    push(0x14, 0x70);
    push('H', 'i');
    EXPECT_EQ(Kova_Captions_Draw(*stage, decoder, KOVA_CAPTIONS_CC1, START), 1);
    EXPECT_EQ(stage.display->strings, 2);
    stage.display->Forget();
    EXPECT_EQ(Kova_Captions_Draw(*stage, decoder, KOVA_CAPTIONS_CC1, START + 1), 0);
    push('!', 0);
    EXPECT_EQ(Kova_Captions_Draw(*stage, decoder, KOVA_CAPTIONS_CC1, START + 2), 1);
    EXPECT_EQ(stage.display->flips, 1);
    // Another source, and back.
    EXPECT_EQ(Kova_Captions_Draw(*stage, decoder, KOVA_CAPTIONS_S1, START + 3), 1);
    EXPECT_TRUE(stage.display->Ink().IsEmpty());
    EXPECT_EQ(Kova_Captions_Draw(*stage, decoder, KOVA_CAPTIONS_CC1, START + 4), 1);
    EXPECT_EQ(Kova_Captions_Preview(*stage, "preview", START + 5), 1);
    EXPECT_EQ(Kova_Captions_Draw(*stage, decoder, KOVA_CAPTIONS_CC1, START + 6), 1);
    EXPECT_EQ(Kova_Captions_Draw(*stage, decoder, KOVA_CAPTIONS_NONE, START + 7), 1);
    EXPECT_TRUE(stage.display->Ink().IsEmpty());
    Kova_Captions_Destroy(decoder);
}

TEST(Change, OfARowDrawsThatRow)
{
    Requirement("E4");
    ServiceState state;
    Stage stage;
    state.Define(0, 0, 0, 6, 20);
    state.Define(1, 50, 100, 3, 20);
    for (unsigned row = 0; row < 6; ++row) state.Print(0, row, 0, u"text");
    stage.Draw(state);

    stage.display->Forget();
    state.Print(0, 2, 4, u"!");
    stage.Draw(state);

    EXPECT_EQ(stage.display->touched, CellBox(2, 0, 1, 20));
    for (const Box &clip : stage.display->clips) {
        EXPECT_GE(clip.top, CellBox(2, 0).top);
        EXPECT_LE(clip.bottom, CellBox(2, 0).bottom);
    }
    EXPECT_EQ(stage.display->strings, 5);
}

TEST(Change, OfAChannelsRowDrawsThatRow)
{
    Requirement("E4");
    ChannelState state;
    Stage stage;
    state.Print(14, 1, u"above");
    state.Print(15, 1, u"text");
    stage.Draw(state);

    stage.display->Forget();
    state.Print(15, 5, u"+");
    stage.Draw(state);

    EXPECT_EQ(stage.display->touched.top, TOP + 14 * 20);
    EXPECT_EQ(stage.display->touched.bottom, TOP + 15 * 20);
}

// Some change of some window, so that windows overlap, move, go and come.
static void ChangeSomething(std::mt19937 &random, ServiceState &state)
{
    const auto below = [&random](unsigned most) { return unsigned(random() % most); };
    const unsigned number = below(4);
    KovaCaptionsWindow &window = state.windows[number];

    if (!window.exists || below(6) == 0) {
        state.Define(number, below(60), below(180), 1 + below(5), 4 + below(20));
        window.definition.priority = uint8_t(below(3));
        window.definition.anchor_point = uint8_t(below(9));
        window.attributes.fill_color = uint8_t(below(64));
        window.attributes.fill_opacity = uint8_t(below(4));
        window.attributes.border_type = uint8_t(below(6));
        window.attributes.justify = uint8_t(below(4));
        return;
    }
    switch (below(5)) {
    case 0:
        window.visible ^= 1;
        break;
    case 1:
        window.definition.anchor_horizontal = uint8_t(below(200));
        break;
    default:
        KovaCaptionsPen pen = PenStyle1();
        pen.foreground = uint8_t(below(64));
        pen.foreground_opacity = uint8_t(below(4));
        pen.background = uint8_t(below(64));
        pen.background_opacity = uint8_t(below(4));
        pen.edge_type = uint8_t(below(6));
        pen.size = uint8_t(below(3));
        pen.offset = uint8_t(below(3));
        pen.font = uint8_t(below(8));
        pen.italics = uint8_t(below(2));
        pen.underline = uint8_t(below(2));
        state.Print(number, below(window.definition.rows), below(4),
                    std::u16string(below(5), char16_t('A' + below(50))), pen);
    }
}

TEST(Redraw, OfEverythingGivesTheSamePixelsAsTheChanges)
{
    Requirement("E3", "E4");

    for (const uint8_t mode : {KOVA_CAPTIONS_INDEX_COLORS, KOVA_CAPTIONS_TRUE_COLORS}) {
        std::mt19937 random(20261122 + mode);
        KovaCaptionsScreen screen = GivenScreen();
        screen.color_mode = mode;
        Stage stage(screen, 525, 188);
        ServiceState state;
        for (int i = 0; i < 150; ++i) {
            ChangeSomething(random, state);
            stage.Draw(state);
            Stage fresh(screen, 525, 188);
            fresh.Draw(state);
            // Entries of the pool may differ, what is seen may not.
            if (mode == KOVA_CAPTIONS_INDEX_COLORS) {
                ASSERT_EQ(stage.display->Colors(), fresh.display->Colors()) << i;
            } else {
                ASSERT_EQ(stage.display->Screen(), fresh.display->Screen()) << i;
            }
        }
    }
}

// Codes and characters in any order, in packets of service 1 and as pairs of field 1.
static void PushAnything(std::mt19937 &random, KovaCaptions *decoder, int64_t time)
{
    uint8_t packet[32] = {uint8_t(sizeof packet / 2), 1 << 5 | (sizeof packet - 2)};
    const auto below = [&random](unsigned most) { return unsigned(random() % most); };
    for (size_t i = 2; i < sizeof packet; ++i) {
        packet[i] = uint8_t(below(3) ? below(128) : 0x80 + below(32));
    }
    for (size_t i = 0; i < sizeof packet; i += 2) {
        const uint8_t triplet[3] = {uint8_t(i == 0 ? 0xFF : 0xFE), packet[i], packet[i + 1]};
        Kova_Captions_PushTriplets(decoder, time, triplet, 1);
    }
    for (int i = 0; i < 8; ++i) {
        const auto parity = [](unsigned byte) {
            return uint8_t(byte | (__builtin_popcount(byte) % 2 ? 0u : 0x80u));
        };
        const unsigned first = below(2) ? 0x10 + below(8) : 0x20 + below(96);
        Kova_Captions_PushPair(decoder, time, 1, parity(first), parity(0x20 + below(96)));
    }
}

TEST(Redraw, OfAnyBytesGivesTheSamePixelsAsTheChanges)
{
    Requirement("E3");
    std::mt19937 random(608708);
    KovaCaptions *const decoder = Kova_Captions_Create(nullptr);
    Stage service(525, 188), channel(525, 188);
    int seen = 0;

    for (int64_t time = START; time < START + 60 * int64_t(1000000); time += 1000000) {
        PushAnything(random, decoder, time);
        // While something moves, then when it has ended.
        for (const int64_t later : {0, 100000, 200000, 900000}) {
            Kova_Captions_Draw(*service, decoder, KOVA_CAPTIONS_S1, time + later);
            Kova_Captions_Draw(*channel, decoder, KOVA_CAPTIONS_CC1, time + later);
        }
        for (const auto &[stage, source] :
             {std::pair{&service, KOVA_CAPTIONS_S1}, {&channel, KOVA_CAPTIONS_CC1}}) {
            if (Kova_Captions_NextChange(decoder, uint8_t(source), KOVA_CAPTIONS_CHANGE_MOTION) !=
                KOVA_CAPTIONS_NEVER) {
                continue;
            }
            Stage fresh(525, 188);
            Kova_Captions_Draw(*fresh, decoder, uint8_t(source), time + 900000);
            ASSERT_EQ(stage->display->Colors(), fresh.display->Colors()) << time << " " << source;
            seen += !fresh.display->Ink().IsEmpty();
        }
    }
    EXPECT_GT(seen, 30);
    Kova_Captions_Destroy(decoder);
}

TEST(Redraw, BringsAnErasedPlaneBack)
{
    Requirement("E3");
    ServiceState state;
    Stage stage;
    KovaCaptionsPen pen = PenStyle1();
    pen.italics = 1;
    state.Define(0, 0, 0, 4, 20).attributes.fill_opacity = KOVA_CAPTIONS_TRANSLUCENT;
    state.Print(0, 0, 0, u"text", pen);
    state.Print(0, 1, 0, u"WWWW");
    stage.Draw(state);
    const std::vector<std::uint32_t> before = stage.display->Colors();

    stage.display->Erase();
    stage.display->Forget();
    EXPECT_EQ(Kova_Captions_Redraw(*stage), 1);

    EXPECT_EQ(stage.display->Colors(), before);
    EXPECT_EQ(stage.display->flips, 1);
    EXPECT_EQ(stage.display->calls.at(0), "SetPalette 0+256");
    stage.display->Forget();
    EXPECT_EQ(stage.Draw(state), 0);
}

TEST(Settings, ActAtOnceAndAreTakenBackAtOnce)
{
    Requirement("D1", "D14");
    ServiceState state;
    ChannelState channel;
    Stage stage;
    state.Define(0, 0, 0, 2, 20);
    state.Print(0, 0, 0, u"text");
    channel.Print(2, 3, u"text");
    KovaCaptionsSettings settings = Defaults();
    settings.foreground = KOVA_CAPTIONS_CYAN;

    const auto both = [&](const auto &shown) {
        stage.Set(Defaults());
        stage.Draw(shown);
        const auto provided = stage.display->Screen();
        stage.Set(settings);
        EXPECT_EQ(stage.Draw(shown), 1);
        EXPECT_GT(stage.display->Count(Solid(KOVA_CAPTIONS_CYAN), {0, 0, 1050, 375}), 0);
        EXPECT_EQ(Kova_Captions_SetSettings(*stage, nullptr), 0);
        EXPECT_EQ(stage.Draw(shown), 1);
        EXPECT_EQ(stage.display->Screen(), provided);
    };
    both(state);
    both(channel);
}

TEST(Settings, BlackBehindRowsOf608)
{
    Requirement("D13");
    ChannelState state;
    Stage stage;
    KovaCaptionsSettings settings = Defaults();
    state.Print(1, 1, u"A");
    state.At(1, 1).background = KOVA_CAPTIONS_GREEN;
    state.At(1, 1).background_opacity = KOVA_CAPTIONS_TRANSLUCENT;
    settings.background = KOVA_CAPTIONS_BLACK;
    settings.background_opacity = KOVA_CAPTIONS_SOLID;
    stage.Set(settings);

    stage.Draw(state);

    EXPECT_EQ(stage.display->Around(Solid(KOVA_CAPTIONS_BLACK)), stage.display->Ink());
}

TEST(Preview, ShowsSettingsWithoutADecoder)
{
    Requirement("D11");
    Stage stage;
    KovaCaptionsSettings settings = Defaults();
    settings.foreground = KOVA_CAPTIONS_YELLOW;
    settings.background = KOVA_CAPTIONS_BLUE;
    settings.window = KOVA_CAPTIONS_RED;
    settings.window_opacity = KOVA_CAPTIONS_SOLID;
    stage.Set(settings);

    EXPECT_EQ(stage.Preview("This is how\ncaptions look"), 1);

    const FakeDisplay &display = *stage.display;
    const Box window = display.Ink();
    EXPECT_NEAR(window.left + window.right, 1050, 1);
    EXPECT_EQ(window.bottom - window.top, 40);
    EXPECT_GT(display.Count(Solid(KOVA_CAPTIONS_YELLOW), window), 0);
    EXPECT_GT(display.Count(Solid(KOVA_CAPTIONS_BLUE), window), 0);
    EXPECT_GT(display.Count(Solid(KOVA_CAPTIONS_RED), window), 0);
    std::string letters;
    for (const DrawnText &text : display.texts) letters += text.text;
    EXPECT_EQ(letters.size(), std::string("Thisishowcaptionslook").size());
    EXPECT_EQ(Kova_Captions_Clear(*stage), 1);
    EXPECT_TRUE(stage.display->Ink().IsEmpty());
}

TEST(Preview, TakesAnyBytes)
{
    Stage stage;
    EXPECT_EQ(stage.Preview("\xC3\x28 \xF0\x9F\x98\x80 \xE2\x82"), 1);
    EXPECT_EQ(stage.Preview(""), 1);
    EXPECT_EQ(stage.Preview("\n\n\n"), 0);
    std::string rows;
    for (int i = 0; i < 30; ++i) rows += "0123456789012345678901234567890123456789012345678901234567890\n";
    EXPECT_EQ(stage.Preview(rows.c_str()), 1);
    EXPECT_EQ(stage.display->Ink(), CellBox(0, 0, 15, 42));
}

TEST(Styles, OfCaptionsAreAllShown)
{
    Requirement("D12");
    ChannelState state;
    Stage stage;
    state.Print(3, 4, u"Text");
    for (const uint8_t mode : {KOVA_CAPTIONS_POP_ON, KOVA_CAPTIONS_PAINT_ON, KOVA_CAPTIONS_ROLL_UP}) {
        state.channel->mode = mode;
        if (mode == KOVA_CAPTIONS_ROLL_UP) state.RollUp(2, 4);
        stage.Draw(state);
        EXPECT_EQ(stage.display->Ink().top, TOP + 2 * 20);
    }
    ServiceState windows;
    for (unsigned i = 0; i < 8; ++i)
        windows.Define(i, i * 9, 0, 1, 1 + i).attributes.fill_color = uint8_t(i + 1);
    stage.Draw(windows);
    for (unsigned i = 0; i < 8; ++i) {
        EXPECT_EQ(stage.display->Count(Solid(i + 1), {0, 0, 1050, 375}), int(i + 1) * CELL * CELL);
    }
}

TEST(ColorModes, GiveTheSamePicture)
{
    Requirement("E20");
    ServiceState state;
    KovaCaptionsPen pen = PenStyle1();
    pen.background_opacity = KOVA_CAPTIONS_TRANSLUCENT;
    pen.foreground = KOVA_CAPTIONS_RED;
    pen.foreground_opacity = KOVA_CAPTIONS_FLASH;
    state.Define(0, 0, 0, 3, 20).attributes.fill_color = KOVA_CAPTIONS_GREEN;
    state.Print(0, 1, 1, u"text", pen);
    state.service.status.flash_since = START;

    for (const int64_t time :
         {START, START + KOVA_CAPTIONS_FLASH_HALF, START + 2 * KOVA_CAPTIONS_FLASH_HALF}) {
        std::vector<std::vector<std::uint32_t>> pictures;
        for (const uint8_t mode :
             {KOVA_CAPTIONS_INDEX_COLORS, KOVA_CAPTIONS_PALETTE_COLORS, KOVA_CAPTIONS_TRUE_COLORS}) {
            KovaCaptionsScreen screen = GivenScreen();
            screen.color_mode = mode;
            Stage stage(screen, 525, 188);
            stage.Draw(state, START);
            // In true colours pixels are colours. In palette-copy mode they are taken when they are drawn: the same, as
            // what changed is drawn again.
            stage.Draw(state, time);
            pictures.push_back(mode == KOVA_CAPTIONS_TRUE_COLORS ? stage.display->Screen()
                                                                 : stage.display->Colors());
            if (mode != KOVA_CAPTIONS_INDEX_COLORS && time == START + KOVA_CAPTIONS_FLASH_HALF) {
                EXPECT_EQ(stage.display->flips, 2);
            }
        }
        EXPECT_EQ(pictures[0], pictures[1]);
        EXPECT_EQ(pictures[0], pictures[2]);
    }
}

TEST(Layer1, ShowsTheSamePicture)
{
    Requirement("E20");
    ServiceState state;
    state.Define(0, 0, 0, 3, 20);
    state.Print(0, 1, 1, u"text");
    KovaCaptionsScreen screen = GivenScreen();
    screen.layer = KOVA_GRAPHIC_LAYER1;
    Stage window(screen, 525, 188), layer(525, 188);
    window.display->flips_always = true;

    window.Draw(state);
    layer.Draw(state);

    EXPECT_EQ(window.display->Screen(), layer.display->Screen());
}
