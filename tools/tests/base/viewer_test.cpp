// SPDX-License-Identifier: MIT
#include "base/viewer.h"

#include <cstdlib>

#include <gtest/gtest.h>

using namespace caption;

TEST(CaptionColors, HaveFourLevelsOfEachComponent)
{
    EXPECT_EQ(CaptionColor(KOVA_CAPTIONS_WHITE), (Color{255, 255, 255}));
    EXPECT_EQ(CaptionColor(0x1B, 128), (Color{0x55, 0xC0, 0xFF, 128})); // 1,2,3
}

TEST(CaptionColors, AreTheNearestOfAnyColour)
{
    for (std::uint8_t color = 0; color <= KOVA_CAPTIONS_WHITE; ++color) {
        EXPECT_EQ(NearestCaptionColor(CaptionColor(color)), color);
    }
    // The middles between the levels are 42.5, 138.5 and 223.5.
    EXPECT_EQ(NearestCaptionColor({42, 138, 223}), 0x06);
    EXPECT_EQ(NearestCaptionColor({43, 139, 224}), 0x1B);
}

TEST(Opacities, AreAlphasAndBack)
{
    EXPECT_EQ(AlphaOf(KOVA_CAPTIONS_SOLID), 255);
    EXPECT_EQ(AlphaOf(KOVA_CAPTIONS_FLASH), 255);
    EXPECT_EQ(AlphaOf(KOVA_CAPTIONS_TRANSLUCENT), 128);
    EXPECT_EQ(AlphaOf(KOVA_CAPTIONS_TRANSPARENT), 0);
    EXPECT_EQ(OpacityOf(255), KOVA_CAPTIONS_SOLID);
    EXPECT_EQ(OpacityOf(254), KOVA_CAPTIONS_TRANSLUCENT);
    EXPECT_EQ(OpacityOf(1), KOVA_CAPTIONS_TRANSLUCENT);
    EXPECT_EQ(OpacityOf(0), KOVA_CAPTIONS_TRANSPARENT);
}

TEST(UsersSettings, AreWhereTheDesktopKeepsThem)
{
    setenv("HOME", "/home/viewer", 1);
    setenv("XDG_CONFIG_HOME", "/etc/xdg", 1);
    EXPECT_EQ(UsersSettingsFile(), "/etc/xdg/kova-caption/settings");
    setenv("XDG_CONFIG_HOME", "relative", 1);
    EXPECT_EQ(UsersSettingsFile(), "/home/viewer/.config/kova-caption/settings");
    unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(UsersSettingsFile(), "/home/viewer/.config/kova-caption/settings");
    unsetenv("HOME");
    EXPECT_EQ(UsersSettingsFile(), "");
}
