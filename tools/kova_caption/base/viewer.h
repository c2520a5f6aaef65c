// SPDX-License-Identifier: MIT
// The viewer's settings: the file that keeps them, and their colours.
#ifndef KOVA_CAPTION_BASE_VIEWER_H
#define KOVA_CAPTION_BASE_VIEWER_H

#include <optional>
#include <string>

#include "base/color.h"
#include "kova/kova_captions_settings.h"

namespace caption
{

using ViewerSettings = KovaCaptionsSettings;

ViewerSettings DefaultSettings();

// $XDG_CONFIG_HOME/kova-caption/settings, or the same in ~/.config. Empty without a home.
std::string UsersSettingsFile();

// The settings of a file; without one those of the user's, or the defaults where there is none. Throws
// WrongUsage with file and line where they cannot be used.
ViewerSettings ReadSettings(const std::optional<std::string> &file);

// Changes one setting: "name=value". Throws WrongUsage.
void ChangeSetting(ViewerSettings &settings, const std::string &assignment);

// Replaces the file as a whole, and makes its folder. Throws Failure.
void WriteSettings(const ViewerSettings &settings, const std::string &file);

// The text form of all settings.
std::string SettingsText(const ViewerSettings &settings);

// The values of a setting, such as "red, green or 1,0,2 (red, green and blue from 0 to 3)". Throws nothing.
std::string ValuesOf(unsigned setting);

// A colour of closed captions, two bits each of red, green and blue, and the nearest one of any colour.
Color CaptionColor(std::uint8_t color, std::uint8_t alpha = 255);
std::uint8_t NearestCaptionColor(Color color);

// KOVA_CAPTIONS_SOLID and so on.
std::uint8_t AlphaOf(std::uint8_t opacity);
std::uint8_t OpacityOf(std::uint8_t alpha);

} // namespace caption

#endif
