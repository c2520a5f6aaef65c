// SPDX-License-Identifier: MIT
#include "playing/menu.h"

#include <cstring>

#include <gtest/gtest.h>

using caption::Key;
using caption::Menu;

static bool IsDefault(const Menu &menu)
{
    const caption::ViewerSettings settings = caption::DefaultSettings();
    return std::memcmp(&settings, &menu.settings(), sizeof settings) == 0;
}

static void Press(Menu &menu, Key key, int times)
{
    for (int i = 0; i < times; ++i) menu.Press(key);
}

// Chooses the row with this label.
static void Choose(Menu &menu, const std::string &label)
{
    for (std::size_t i = 0; i < menu.rows().size() && menu.rows()[menu.chosen()].label != label; ++i) {
        menu.Press(Key::DOWN);
    }
    ASSERT_EQ(menu.rows()[menu.chosen()].label, label);
}

static std::string Chosen(const Menu &menu)
{
    return menu.Value(menu.chosen());
}

TEST(Menu, OffersEverySettingButTheFontFiles)
{
    const Menu menu(caption::DefaultSettings());
    std::size_t settings = 0;
    while (Kova_Captions_SettingName(unsigned(settings))) ++settings;

    EXPECT_EQ(menu.rows().size(), settings - KOVA_CAPTIONS_FONTS);
    EXPECT_EQ(menu.rows().front().label, "Text colour");
    EXPECT_EQ(menu.Value(0), "as provided");
    EXPECT_TRUE(IsDefault(menu));
}

TEST(Menu, ChoosesRowsUpAndDownAroundTheEnds)
{
    Menu menu(caption::DefaultSettings());

    menu.Press(Key::DOWN);
    EXPECT_EQ(menu.chosen(), 1u);
    Press(menu, Key::UP, 2);
    EXPECT_EQ(menu.chosen(), menu.rows().size() - 1);
    menu.Press(Key::DOWN);
    EXPECT_EQ(menu.chosen(), 0u);
    EXPECT_TRUE(IsDefault(menu));
}

TEST(Menu, ChangesTheChosenValueAroundTheEnds)
{
    Menu menu(caption::DefaultSettings());

    menu.Press(Key::FORWARD);
    EXPECT_EQ(Chosen(menu), "black");
    EXPECT_EQ(menu.settings().foreground, KOVA_CAPTIONS_BLACK);
    Press(menu, Key::BACK, 2);
    EXPECT_EQ(Chosen(menu), "white");
    menu.Press(Key::FORWARD);
    EXPECT_TRUE(IsDefault(menu));
}

TEST(Menu, ReachesEveryValueOfEveryRow)
{
    const std::pair<const char *, int> rows[] = {{"Text opacity", 5}, {"Edge", 7},       {"Font", 9},
                                                 {"Size", 16},        {"Safe area", 5},  {"Italics", 2},
                                                 {"Captions", 72},    {"Easy reader", 2}};

    for (const auto &[label, values] : rows) {
        Menu menu(caption::DefaultSettings());
        Choose(menu, label);
        const std::string first = Chosen(menu);
        for (int i = 1; i < values; ++i) {
            menu.Press(Key::FORWARD);
            EXPECT_NE(Chosen(menu), first) << label;
        }
        menu.Press(Key::FORWARD);
        EXPECT_EQ(Chosen(menu), first) << label;
    }
}

TEST(Menu, GoesOnFromValuesThatItDoesNotList)
{
    caption::ViewerSettings settings = caption::DefaultSettings();
    settings.foreground = 0x1B;
    settings.size = 125;
    Menu menu(settings);

    EXPECT_EQ(Chosen(menu), "1,2,3");
    menu.Press(Key::FORWARD);
    EXPECT_EQ(Chosen(menu), "as provided");
    Choose(menu, "Size");
    EXPECT_EQ(Chosen(menu), "125 %");
    menu.Press(Key::FORWARD);
    EXPECT_EQ(Chosen(menu), "130 %");
    Press(menu, Key::BACK, 2);
    EXPECT_EQ(Chosen(menu), "110 %");
}

TEST(Menu, GoesBackToAsProvidedAtOnce)
{
    Menu menu(caption::DefaultSettings());
    Press(menu, Key::FORWARD, 3);
    Choose(menu, "Language");
    menu.Press(Key::FORWARD);
    EXPECT_EQ(Chosen(menu), "eng");
    ASSERT_FALSE(IsDefault(menu));

    menu.Press(Key::RESET);

    EXPECT_TRUE(IsDefault(menu));
    EXPECT_EQ(Chosen(menu), "any");
}
