// SPDX-License-Identifier: MIT
#include "playing/menu.h"

#include <algorithm>
#include <set>

namespace caption
{

// A set offers the languages that are announced; the tool does not know them beforehand.
static const char *const g_languages[] = {"",    "eng", "spa", "fra", "por", "deu",
                                          "ita", "kor", "zho", "jpn", "rus"};

static const struct {
    const char *name;
    const char *label;
} g_labels[] = {{"foreground", "Text colour"},
                {"foreground_opacity", "Text opacity"},
                {"background", "Background colour"},
                {"background_opacity", "Background opacity"},
                {"window", "Window colour"},
                {"window_opacity", "Window opacity"},
                {"edge_type", "Edge"},
                {"edge_color", "Edge colour"},
                {"font", "Font"},
                {"italics", "Italics"},
                {"underline", "Underline"},
                {"flash", "Flashing"},
                {"size", "Size"},
                {"safe_area", "Safe area"},
                {"source", "Captions"},
                {"easy_reader", "Easy reader"},
                {"language", "Language"}};

Menu::Menu(const ViewerSettings &settings) : settings_(settings)
{
    for (unsigned i = 0; const char *const name = Kova_Captions_SettingName(i); ++i) {
        for (const auto &label : g_labels) {
            if (std::string(name) == label.name) rows_.push_back({i, label.label});
        }
    }
}

static std::string Current(const ViewerSettings &settings, unsigned setting)
{
    char value[KOVA_CAPTIONS_FONT_FILE] = "";

    Kova_Captions_WriteSetting(&settings, setting, value, sizeof value);
    return value;
}

std::string Menu::Value(std::size_t row) const
{
    const std::string name = Kova_Captions_SettingName(rows_[row].setting);
    std::string value = Current(settings_, rows_[row].setting);

    if (name == "size" || name == "safe_area") return value + " %";
    if (value.empty()) return "any";
    std::replace(value.begin(), value.end(), '-', ' ');
    return value;
}

// Percentages in steps, and the current one wherever it lies.
static std::vector<std::string> Percentages(int first, int step, int last, int current)
{
    std::set<int> percentages = {current};
    std::vector<std::string> values;

    for (int percentage = first; percentage <= last; percentage += step) percentages.insert(percentage);
    for (const int percentage : percentages) values.push_back(std::to_string(percentage));
    return values;
}

std::vector<std::string> Menu::Values(std::size_t row) const
{
    const unsigned setting = rows_[row].setting;
    const std::string name = Kova_Captions_SettingName(setting);
    std::vector<std::string> values;

    if (name == "size") values = Percentages(50, 10, 200, settings_.size);
    if (name == "safe_area") values = Percentages(80, 5, 100, settings_.safe_area);
    if (name == "language") values.assign(std::begin(g_languages), std::end(g_languages));
    for (unsigned i = 0; const char *const value = Kova_Captions_SettingValue(setting, i); ++i) {
        values.push_back(value);
    }
    return values;
}

// A value that is not listed, such as a colour by its components or a rare language, comes before the first.
void Menu::Step(int direction)
{
    const std::vector<std::string> values = Values(chosen_);
    const auto current = std::find(values.begin(), values.end(), Current(settings_, rows_[chosen_].setting));
    const auto count = int(values.size());
    int next = direction > 0 ? 0 : count - 1;

    if (current != values.end()) next = (int(current - values.begin()) + direction + count) % count;
    ChangeSetting(settings_,
                  Kova_Captions_SettingName(rows_[chosen_].setting) + ("=" + values[std::size_t(next)]));
}

void Menu::Press(Key key)
{
    const std::size_t count = rows_.size();

    if (key == Key::UP) chosen_ = (chosen_ + count - 1) % count;
    if (key == Key::DOWN) chosen_ = (chosen_ + 1) % count;
    if (key == Key::BACK) Step(-1);
    if (key == Key::FORWARD) Step(1);
    if (key == Key::RESET) settings_ = DefaultSettings();
}

} // namespace caption
