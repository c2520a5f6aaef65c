// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "base/failure.h"
#include "commands/command.h"
#include "commands/common_options.h"
#include "playing/keys.h"
#include "playing/menu_view.h"

namespace caption
{

namespace
{

struct SettingsOptions {
    Options options;
    std::optional<std::string> file;
    std::vector<std::string> changes; // NAME=VALUE
    std::optional<std::string> keys;
    std::string picture;
    bool print = false;
};

} // namespace

static const Choice<Key> g_keys[] = {{"up", Key::UP},         {"down", Key::DOWN},  {"left", Key::BACK},
                                     {"right", Key::FORWARD}, {"r", Key::RESET},    {"enter", Key::SAVE},
                                     {"s", Key::SAVE},        {"escape", Key::END}, {"q", Key::END}};

static std::vector<Key> ParseKeys(const std::string &text)
{
    std::istringstream words(text);
    std::vector<Key> keys;

    for (std::string word; words >> word;) {
        const auto known = std::find_if(std::begin(g_keys), std::end(g_keys),
                                        [&](const Choice<Key> &key) { return word == key.name; });
        if (known == std::end(g_keys)) {
            throw WrongUsage("--keys: '" + word +
                             "' must be one of up, down, left, right, r, enter, s, escape, q");
        }
        keys.push_back(known->value);
    }
    return keys;
}

// One more key; false at the end of the menu. Saves where the key says so.
static bool Press(Menu &menu, Key key, const std::string &file, std::FILE *out)
{
    if (key == Key::SAVE) {
        WriteSettings(menu.settings(), file);
        std::fprintf(out, "saved %s\n", file.c_str());
    }
    menu.Press(key);
    return key != Key::SAVE && key != Key::END;
}

static void Open(Menu &menu, const Options &options, const std::string &file, std::FILE *out)
{
    const bool window = !options.headless && (std::getenv("DISPLAY") || std::getenv("DFBARGS"));

    if (!window && !isatty(STDIN_FILENO)) {
        throw WrongUsage(
            "settings: no window and no terminal to read keys from; use --set, or --keys with -o");
    }
    MenuView view(options);
    Keys keys(!options.headless);
    view.Show(menu);
    std::fprintf(out, "editing %s\n", file.c_str());
    std::fflush(out);
    for (;;) {
        const std::optional<Key> key = keys.Wait(view.Continue());
        if (!key) continue;
        if (!Press(menu, *key, file, out)) return;
        view.Show(menu);
    }
}

static void RunSettings(const SettingsOptions &wanted, std::FILE *out)
{
    const std::string file = wanted.file.value_or(UsersSettingsFile());
    const bool exists = !file.empty() && std::filesystem::exists(file);
    ViewerSettings settings = exists ? ReadSettings(file) : DefaultSettings();
    const std::vector<Key> keys = ParseKeys(wanted.keys.value_or(""));

    if (file.empty()) throw WrongUsage("settings: HOME is not set; name a file with --settings");
    for (const std::string &change : wanted.changes) ChangeSetting(settings, change);
    if (!wanted.changes.empty()) WriteSettings(settings, file);
    Menu menu(settings);
    if (wanted.changes.empty() && !wanted.keys && wanted.picture.empty() && !wanted.print) {
        return Open(menu, wanted.options, file, out);
    }
    for (const Key key : keys) {
        if (!Press(menu, key, file, out)) break;
    }
    if (!wanted.picture.empty()) {
        WritePng(MenuPicture(menu, wanted.options), wanted.picture);
        std::fprintf(out, "%s\n", wanted.picture.c_str());
    }
    if (wanted.print) std::fputs(SettingsText(menu.settings()).c_str(), out);
}

Command AddSettings(CLI::App &tool)
{
    const auto arguments = std::make_shared<SettingsOptions>();
    CLI::App &command = AddCommand(
        tool, "settings",
        "Change the viewer's settings in a menu, with a caption that shows them: arrows choose and change, r "
        "is as provided, Enter saves, Escape leaves",
        {"kova-caption settings", "kova-caption settings --set size=150 --set background_opacity=solid",
         "kova-caption settings --print",
         "kova-caption settings --headless --keys \"down right right\" -o menu.png"});

    command
        .add_option("--settings", arguments->file, "File of the settings [~/.config/kova-caption/settings]")
        ->type_name("FILE");
    command
        .add_option(
            "--set", arguments->changes,
            "Change a setting and save, without the menu; may be repeated. The names are those of --print")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
    command
        .add_option("--keys", arguments->keys,
                    "Press these keys instead of opening the menu: up, down, left, right, r, enter, escape")
        ->type_name("KEYS");
    command.add_option("-o", arguments->picture, "Write the menu as a picture instead of opening it")
        ->type_name("PNG");
    command.add_flag("--print", arguments->print, "Print the settings instead of opening the menu");
    AddPlane(command, arguments->options);
    AddHeadless(command, arguments->options);
    AddBackground(command, arguments->options);
    return {&command, [arguments](std::FILE *out) { RunSettings(*arguments, out); }};
}

} // namespace caption
