// SPDX-License-Identifier: MIT
#include "cues/look.h"

#include <cstring>

#include <gtest/gtest.h>

using namespace caption;

static const Color g_yellow = {255, 255, 0};
static const Color g_black = {0, 0, 0};

static Options With(const std::string &settings)
{
    Options options;

    EXPECT_EQ(Kova_Captions_ReadSettings(&options.viewer, settings.data(), settings.size(), nullptr), 0)
        << settings;
    return WithSettings(options);
}

static Style Look(const std::string &settings, const Style &style = {})
{
    return WithSettings(style, With(settings));
}

// A style that says everything.
static Style Full()
{
    Style style;

    style.italic = style.bold = style.underline = style.strikeout = true;
    style.color = Color{1, 2, 3, 200};
    style.edgeColor = Color{4, 5, 6};
    style.background = Color{7, 8, 9, 100};
    style.font = Interned("Some Font");
    style.line = 0.125f;
    style.scale = 2;
    return style;
}

TEST(Look, AsProvidedIsTheSourcesOwn)
{
    EXPECT_EQ(Look(""), Style());
    EXPECT_EQ(Look("", Full()), Full());
    EXPECT_EQ(With("").edge, Options().edge);
}

TEST(Look, HasTheViewersColoursAtTheSourcesOpacity)
{
    EXPECT_EQ(Look("foreground = yellow").color, g_yellow);
    EXPECT_EQ(Look("foreground = yellow", Full()).color, (Color{255, 255, 0, 200}));
    EXPECT_EQ(Look("background = 1,2,3", Full()).background, (Color{0x55, 0xC0, 0xFF, 100}));
    EXPECT_EQ(Look("edge_color = blue").edgeColor, (Color{0, 0, 255}));
    // Text without a background gets none by a colour alone.
    EXPECT_EQ(Look("background = black").background, std::nullopt);
    // A colour of the source that is only nearly the viewer's is replaced too.
    Style nearly;
    nearly.color = Color{250, 250, 3};
    EXPECT_EQ(Look("foreground = yellow", nearly).color, g_yellow);
}

TEST(Look, HasTheViewersOpacities)
{
    EXPECT_EQ(Look("foreground_opacity = translucent").color, (Color{255, 255, 255, 128}));
    EXPECT_EQ(Look("foreground_opacity = translucent").edgeColor, (Color{0, 0, 0, 128}))
        << "the edge is the letters'";
    EXPECT_EQ(Look("foreground_opacity = solid", Full()).color, (Color{1, 2, 3}));
    EXPECT_EQ(Look("background = black\nbackground_opacity = solid").background, g_black);
    EXPECT_EQ(Look("background_opacity = transparent", Full()).background->alpha, 0);
    EXPECT_EQ(Look("foreground_opacity = flash", Full()).color, (Color{1, 2, 3}))
        << "solid, as nothing flashes";
}

TEST(Look, LeavesOutItalicsUnderlinesAndFontsThatTheViewerDoesNotWant)
{
    const Style look = Look("italics = off\nunderline = off\nfont = serif", Full());

    EXPECT_FALSE(look.italic);
    EXPECT_FALSE(look.underline);
    EXPECT_TRUE(look.font.empty());
    EXPECT_TRUE(look.bold && look.strikeout);
    EXPECT_EQ(look.line, 0.125f);
    EXPECT_EQ(look.scale, 2);
}

TEST(Look, KeepsTextReadableOnItsBackground)
{
    Style box;
    box.background = g_yellow;

    // With an edge it can be read.
    EXPECT_EQ(Look("foreground = yellow", box).background, g_yellow);
    EXPECT_EQ(Look("foreground = yellow\nedge_type = none", box).background, g_black);
    EXPECT_EQ(Look("foreground = yellow\nbackground = yellow\nedge_type = none", box).background, g_yellow);
}

TEST(Look, HasTheViewersEdge)
{
    EXPECT_EQ(With("edge_type = none").edge, KOVA_TEXT_ENONE);
    EXPECT_EQ(With("edge_type = raised").edge, KOVA_TEXT_ERAISED);
    EXPECT_EQ(With("edge_type = depressed").edge, KOVA_TEXT_EDEPRESSED);
    EXPECT_EQ(With("edge_type = uniform").edge, KOVA_TEXT_EUNIFORM);
    EXPECT_EQ(With("edge_type = shadow-left").edge, KOVA_TEXT_ELEFTDROPSHADOW);
    EXPECT_EQ(With("edge_type = shadow-right").edge, KOVA_TEXT_ERIGTHDROPSHADOW);
}

TEST(Look, HasAWindowOnlyWithAnOpacity)
{
    EXPECT_EQ(WindowOf(With("").viewer), std::nullopt);
    EXPECT_EQ(WindowOf(With("window = blue").viewer), std::nullopt);
    EXPECT_EQ(WindowOf(With("window = blue\nwindow_opacity = translucent").viewer), (Color{0, 0, 255, 128}));
    EXPECT_EQ(WindowOf(With("window_opacity = solid").viewer), g_black);
}

TEST(Over, MixesByTheAlphaOfBoth)
{
    EXPECT_EQ(Over({10, 20, 30}, {200, 200, 200}), (Color{10, 20, 30}));
    EXPECT_EQ(Over(g_transparent, {200, 100, 50, 40}), (Color{200, 100, 50, 40}));
    EXPECT_EQ(Over({200, 100, 50, 40}, g_transparent), (Color{200, 100, 50, 40}));
    EXPECT_EQ(Over(g_transparent, g_transparent), g_transparent);
    // 128 of 255 white over black: 128.
    EXPECT_EQ(Over({255, 255, 255, 128}, g_black), (Color{128, 128, 128}));
    // 128 over 128: 128 + 128 * 127 / 255 = 191.75, of which two thirds are the upper one.
    EXPECT_EQ(Over({255, 0, 0, 128}, {0, 0, 255, 128}), (Color{170, 0, 85, 192}));
}

TEST(TextSizes, AreTheViewersPartOfTheUsualOne)
{
    EXPECT_EQ(With("").TextHeight(), 45); // a sixteenth of 720
    EXPECT_EQ(With("size = 50").TextHeight(), 23);
    EXPECT_EQ(With("size = 200").TextHeight(), 90);
    EXPECT_EQ(With("").TextHeight(2), 90);
    Options huge = With("size = 200");
    huge.height = 500;
    EXPECT_EQ(huge.TextHeight(), 720) << "as high as the plane";
    EXPECT_EQ(With("size = 50").Enlarged(1), 1) << "at least a pixel";
}
