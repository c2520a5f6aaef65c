// SPDX-License-Identifier: MIT
#include "base/viewer.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "base/failure.h"
#include "base/whole_file.h"

namespace caption
{

static const std::size_t g_largestFile = 1 << 20;

ViewerSettings DefaultSettings()
{
    ViewerSettings settings;

    Kova_Captions_GetDefaultSettings(&settings);
    return settings;
}

// A relative XDG_CONFIG_HOME is invalid and ignored, as its standard asks for.
std::string UsersSettingsFile()
{
    const char *const config = std::getenv("XDG_CONFIG_HOME");
    const char *const home = std::getenv("HOME");

    if (config && *config == '/') return std::string(config) + "/kova-caption/settings";
    return home && *home ? std::string(home) + "/.config/kova-caption/settings" : "";
}

static std::string Trimmed(const std::string &text)
{
    const std::size_t begin = text.find_first_not_of(" \t\r");
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1);
}

std::string ValuesOf(unsigned setting)
{
    const std::string name = Kova_Captions_SettingName(setting);
    std::string values;

    if (name == "source") return "automatic, s1 to s63, cc1 to cc4 or t1 to t4";
    if (name == "size") return "a number from 50 to 200";
    if (name == "safe_area") return "a number from 80 to 100";
    if (name == "language") return "three small letters or nothing";
    for (unsigned i = 0; const char *const value = Kova_Captions_SettingValue(setting, i); ++i) {
        values += (i == 0                                       ? ""
                   : Kova_Captions_SettingValue(setting, i + 1) ? ", "
                                                                : " or ") +
                  std::string(value);
    }
    if (values.empty()) return "a file name of at most 99 bytes or nothing";
    return values.find("magenta") == std::string::npos ? values : values + ", or R,G,B from 0 to 3";
}

// Why a line cannot be used. Bytes that would command a terminal are not repeated.
static std::string WhatIsWrong(const std::string &line)
{
    const std::size_t sign = line.find('=');
    const std::string name = Trimmed(line.substr(0, sign));
    std::string names;

    if (sign == std::string::npos) return "not of the form NAME = VALUE";
    if (name == "version") return "version must be a number from 1";
    for (unsigned i = 0; const char *const each = Kova_Captions_SettingName(i); ++i) {
        if (name == each) return name + " must be " + ValuesOf(i);
        names += (names.empty() ? "" : ", ") + std::string(each);
    }
    return "unknown setting; there are " + names;
}

static std::string LineOf(const std::string &text, unsigned number)
{
    std::size_t begin = 0;

    for (unsigned line = 1; line < number; ++line) begin = text.find('\n', begin) + 1;
    return text.substr(begin, text.find('\n', begin) - begin);
}

static std::string ReadWhole(const std::string &file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string text(std::istreambuf_iterator<char>(stream), {});

    if (!stream.is_open() || stream.bad()) {
        throw WrongUsage(file + ": the settings cannot be read (" + std::strerror(errno) +
                         "); give another file with --settings");
    }
    return text;
}

static void ReadText(ViewerSettings &settings, const std::string &text, const std::string &file)
{
    unsigned line = 0;

    if (Kova_Captions_ReadSettings(&settings, text.data(), text.size(), &line) == 0) return;
    throw WrongUsage(file + ":" + std::to_string(line) + ": " + WhatIsWrong(LineOf(text, line)));
}

ViewerSettings ReadSettings(const std::optional<std::string> &file)
{
    const std::string chosen = file.value_or(UsersSettingsFile());
    ViewerSettings settings = DefaultSettings();
    std::error_code error;

    if (!file && (chosen.empty() || !std::filesystem::exists(chosen, error))) return settings;
    // A pipe or a device could give bytes without end.
    if (std::filesystem::exists(chosen, error) &&
        (!std::filesystem::is_regular_file(chosen, error) ||
         std::filesystem::file_size(chosen, error) > g_largestFile)) {
        throw WrongUsage(chosen + ": not a file of settings; kova-caption settings --print shows the form");
    }
    ReadText(settings, ReadWhole(chosen), chosen);
    return settings;
}

void ChangeSetting(ViewerSettings &settings, const std::string &assignment)
{
    if (assignment.find('\n') != std::string::npos || assignment.find('=') == std::string::npos ||
        Kova_Captions_ReadSettings(&settings, assignment.data(), assignment.size(), nullptr) != 0) {
        throw WrongUsage("--set " + assignment + ": " + WhatIsWrong(assignment));
    }
}

std::string SettingsText(const ViewerSettings &settings)
{
    char text[KOVA_CAPTIONS_SETTINGS_TEXT];

    Kova_Captions_WriteSettings(&settings, text, sizeof text);
    return text;
}

void WriteSettings(const ViewerSettings &settings, const std::string &file)
{
    const std::filesystem::path folder = std::filesystem::path(file).parent_path();
    const std::string text = SettingsText(settings);
    std::error_code error;

    if (!folder.empty()) std::filesystem::create_directories(folder, error);
    WholeFile whole(file, "--settings");
    whole.Write(text.data(), text.size());
    whole.Finish();
}

static const std::uint8_t g_levels[] = {0x00, 0x55, 0xC0, 0xFF};

Color CaptionColor(std::uint8_t color, std::uint8_t alpha)
{
    return {g_levels[color >> 4 & 3], g_levels[color >> 2 & 3], g_levels[color & 3], alpha};
}

std::uint8_t NearestCaptionColor(Color color)
{
    const auto nearest = [](std::uint8_t component) {
        unsigned level = 0;
        while (level < 3 && component > (g_levels[level] + g_levels[level + 1]) / 2) ++level;
        return level;
    };

    return std::uint8_t(nearest(color.red) << 4 | nearest(color.green) << 2 | nearest(color.blue));
}

std::uint8_t AlphaOf(std::uint8_t opacity)
{
    if (opacity == KOVA_CAPTIONS_TRANSPARENT) return 0;
    return opacity == KOVA_CAPTIONS_TRANSLUCENT ? 128 : 255;
}

std::uint8_t OpacityOf(std::uint8_t alpha)
{
    if (alpha == 0) return KOVA_CAPTIONS_TRANSPARENT;
    return alpha == 255 ? KOVA_CAPTIONS_SOLID : KOVA_CAPTIONS_TRANSLUCENT;
}

} // namespace caption
