// SPDX-License-Identifier: MIT
#include "reading/webvtt.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <sstream>
#include <vector>

#include <fribidi.h>

#include "base/utf8.h"

namespace caption
{

namespace
{

struct Settings {
    std::string line = "auto";
    std::string lineAlign = "start";
    std::string position = "auto";
    std::string positionAlign = "auto";
    std::string size = "100%";
    std::string align = "center";
    bool any = false;
};

struct Open {
    std::string tag;
    Style outside;
};

} // namespace

// The line height that line numbers refer to, as a share of the canvas.
static const double g_row = 0.0533;

static std::string CharacterNamed(const std::string &name)
{
    static const std::map<std::string, std::string> characters = {{"amp", "&"},
                                                                  {"lt", "<"},
                                                                  {"gt", ">"},
                                                                  {"quot", "\""},
                                                                  {"apos", "'"},
                                                                  {"nbsp", "\xC2\xA0"},
                                                                  {"lrm", "\xE2\x80\x8E"},
                                                                  {"rlm", "\xE2\x80\x8F"}};
    const auto found = characters.find(name);

    if (found != characters.end()) return found->second;
    if (name.empty() || name[0] != '#') return "";
    const bool hexadecimal = name.size() > 1 && (name[1] == 'x' || name[1] == 'X');
    char *end = nullptr;
    const unsigned long code =
        std::strtoul(name.c_str() + (hexadecimal ? 2 : 1), &end, hexadecimal ? 16 : 10);
    return *end || code == 0 ? "" : Utf8(char32_t(std::min(code, 0x110000ul)));
}

static std::vector<std::string> Split(const std::string &text, char separator)
{
    std::vector<std::string> parts;
    std::istringstream in(text);

    for (std::string part; std::getline(in, part, separator);) parts.push_back(part);
    return parts;
}

// Applies the classes of a tag that name one of the eight colours, of the text or its background.
static void ReadClasses(const std::string &tag, Style &style)
{
    static const std::map<std::string, Color> colors = {
        {"white", {255, 255, 255, 255}}, {"lime", {0, 255, 0, 255}},     {"cyan", {0, 255, 255, 255}},
        {"red", {255, 0, 0, 255}},       {"yellow", {255, 255, 0, 255}}, {"magenta", {255, 0, 255, 255}},
        {"blue", {0, 0, 255, 255}},      {"black", {0, 0, 0, 255}}};
    static const std::string behind = "bg_";

    for (const std::string &name : Split(tag, '.')) {
        const bool background = name.compare(0, behind.size(), behind) == 0;
        const auto color = colors.find(background ? name.substr(behind.size()) : name);
        if (color != colors.end()) (background ? style.background : style.color) = color->second;
    }
}

static void ReadTag(const std::string &tag, Style &style, std::vector<Open> &open, Notices &notices)
{
    const std::string whole = tag.substr(0, tag.find_first_of(" \t\n"));
    const std::string name = whole.substr(0, whole.find('.'));

    if (name.compare(0, 1, "/") == 0) {
        if (open.empty() || open.back().tag != name.substr(1)) return;
        style = open.back().outside;
        open.pop_back();
        return;
    }
    if (!name.empty() && name[0] >= '0' && name[0] <= '9') {
        notices.Say("timestamps inside a cue are not supported; its whole text is shown at once");
        return;
    }
    if (name == "ruby") notices.Say("ruby text is drawn within the line");
    open.push_back({name, style});
    if (name == "i") style.italic = true;
    if (name == "b") style.bold = true;
    if (name == "u") style.underline = true;
    ReadClasses(whole, style);
}

static std::vector<Line> ReadText(const std::string &text, Notices &notices)
{
    std::vector<Line> lines(1);
    std::vector<Open> open;
    Style style;

    for (std::size_t at = 0; at < text.size();) {
        std::string shown(1, text[at]);
        if (text[at] == '\n') {
            lines.emplace_back();
            ++at;
            continue;
        }
        if (text[at] == '<') {
            const std::size_t close = std::min(text.find('>', at), text.size());
            ReadTag(text.substr(at + 1, close - at - 1), style, open, notices);
            at = close + 1;
            continue;
        }
        if (text[at] == '&') {
            const std::size_t end = text.find(';', at);
            const std::string named = end == std::string::npos || end - at > 12
                                          ? ""
                                          : CharacterNamed(text.substr(at + 1, end - at - 1));
            if (!named.empty()) {
                shown = named;
                at = end;
            }
        }
        if (shown != "\r") Append(lines.back(), shown, style);
        ++at;
    }
    return lines;
}

static void Divide(const std::string &text, std::string &value, std::string &alignment)
{
    const std::size_t comma = text.find(',');
    value = text.substr(0, comma);
    if (comma != std::string::npos) alignment = text.substr(comma + 1);
}

static Settings ReadSettings(const std::string &text, Notices &notices)
{
    Settings settings;
    std::istringstream words(text);

    for (std::string word; words >> word;) {
        const std::size_t colon = word.find(':');
        if (colon == std::string::npos) continue;
        const std::string name = word.substr(0, colon);
        const std::string value = word.substr(colon + 1);
        if (name == "line") Divide(value, settings.line, settings.lineAlign);
        if (name == "position") Divide(value, settings.position, settings.positionAlign);
        if (name == "size") settings.size = value;
        if (name == "align") settings.align = value == "middle" ? "center" : value;
        if (name == "vertical") notices.Say("vertical text is drawn horizontally");
        if (name == "region") notices.Say("regions are not supported");
        settings.any |= name == "line" || name == "position" || name == "size" || name == "align";
    }
    return settings;
}

// Converts a percentage to a share of 1; nothing for other text.
static std::optional<double> Share(const std::string &text)
{
    char *end = nullptr;
    const double percent = std::strtod(text.c_str(), &end);
    if (end == text.c_str() || std::string(end) != "%" || !(percent >= 0 && percent <= 100))
        return std::nullopt;
    return percent / 100;
}

// The first strong character determines the direction of a line.
static bool RunsFromRight(const Line &line)
{
    for (const Character &character : Characters(PlainText(line))) {
        const FriBidiCharType type = fribidi_get_bidi_type(character.code);
        if (FRIBIDI_IS_STRONG(type)) return FRIBIDI_IS_RTL(type);
    }
    return false;
}

// The box has the requested width, limited by the room beside its position. Text is aligned inside.
static void PlaceAcross(const Settings &settings, Block &block, Anchor &anchor)
{
    const bool fromRight = RunsFromRight(block.lines.front());
    const bool left = settings.align == "left" || settings.align == (fromRight ? "end" : "start");
    const bool right = settings.align == "right" || settings.align == (fromRight ? "start" : "end");
    std::string side = settings.positionAlign;
    if (side == "auto") side = left ? "line-left" : right ? "line-right" : "center";
    if (side == "middle") side = "center";
    const double position = Share(settings.position).value_or(left ? 0 : right ? 1 : 0.5);

    const double room = side == "line-left"    ? 1 - position
                        : side == "line-right" ? position
                                               : 2 * std::min(position, 1 - position);
    const double size = std::min(Share(settings.size).value_or(1), room);
    const double start = side == "line-left"    ? position
                         : side == "line-right" ? position - size
                                                : position - size / 2;
    block.width = size;
    block.horizontal = left ? Horizontal::LEFT : right ? Horizontal::RIGHT : Horizontal::CENTER;
    anchor.x = left ? start : right ? start + size : start + size / 2;
}

static void PlaceDown(const Settings &settings, Block &block, Anchor &anchor)
{
    char *end = nullptr;
    const double number = std::clamp(std::strtod(settings.line.c_str(), &end), -100.0, 100.0);
    const bool numbered = end != settings.line.c_str() && *end == '\0';

    if (const std::optional<double> share = Share(settings.line)) {
        anchor.y = *share;
        block.vertical = settings.lineAlign == "end"      ? Vertical::BOTTOM
                         : settings.lineAlign == "center" ? Vertical::MIDDLE
                                                          : Vertical::TOP;
    } else if (numbered && number >= 0) {
        anchor.y = number * g_row;
        block.vertical = Vertical::TOP;
    } else if (numbered) {
        // Negative numbers count from the bottom, and the first line of the text is on that line.
        anchor.y = 1 - std::max(0.0, -number - double(block.lines.size())) * g_row;
    }
}

void ReadWebVttCue(const std::string &text, const std::string &settings, Cue &cue, Notices &notices)
{
    Block block;
    block.lines = ReadText(text, notices);
    const auto blank = [](const Line &line) {
        return PlainText(line).find_first_not_of(" \t") == std::string::npos;
    };
    while (!block.lines.empty() && blank(block.lines.back())) block.lines.pop_back();
    if (block.lines.empty()) return;

    const Settings asked = ReadSettings(settings, notices);
    if (asked.any) {
        Anchor anchor = {0.5, 1};
        PlaceAcross(asked, block, anchor);
        PlaceDown(asked, block, anchor);
        block.anchor = anchor;
    }
    cue.blocks.push_back(std::move(block));
}

std::string WithoutWebVttStyles(const std::string &file, Notices &notices)
{
    static const std::string signature = "WEBVTT";
    std::istringstream lines(file);
    std::string kept;
    bool begins = true; // a block, which ends at an empty line
    bool drop = false;

    if (file.compare(0, signature.size(), signature) != 0) return file;
    for (std::string line; std::getline(lines, line);
         begins = line.find_first_not_of(" \t\r") == std::string::npos) {
        const std::string word = line.substr(0, line.find_last_not_of(" \t\r") + 1);
        if (begins) drop = word == "STYLE" || word == "REGION";
        if (begins && word == "STYLE") notices.Say("style sheets are not supported");
        if (!drop) kept += line + "\n";
    }
    return kept;
}

} // namespace caption
