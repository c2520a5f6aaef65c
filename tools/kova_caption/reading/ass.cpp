// SPDX-License-Identifier: MIT
#include "reading/ass.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <sstream>

namespace caption
{

static const int g_largest = 1 << 20; // limit of a canvas, pixels

// State of an event while its text is read.
struct AssScript::Reading {
    std::string name; // of the style of the event
    const StyleEntry *base = nullptr;
    Style style;
    Block block;
    int alignment = 2;
    double size = 0; // pixels of the canvas
    bool drawing = false;
    bool aligned = false;
};

static std::string Trimmed(const std::string &text)
{
    const std::size_t begin = text.find_first_not_of(" \t\r");
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1);
}

static std::string Lower(std::string text)
{
    for (char &letter : text) {
        if (letter >= 'A' && letter <= 'Z') letter = char(letter - 'A' + 'a');
    }
    return text;
}

// Splits at commas into at most `most` fields; the last one may contain commas.
static std::vector<std::string> Fields(const std::string &text, std::size_t most)
{
    std::vector<std::string> fields;
    std::size_t at = 0;

    while (fields.size() + 1 < most) {
        const std::size_t comma = text.find(',', at);
        if (comma == std::string::npos) break;
        fields.push_back(text.substr(at, comma - at));
        at = comma + 1;
    }
    fields.push_back(text.substr(at));
    return fields;
}

static double Number(const std::string &text)
{
    const double number = std::strtod(text.c_str(), nullptr);
    return std::isfinite(number) ? std::clamp(number, -1e9, 1e9) : 0;
}

static int Integer(const std::string &text)
{
    return int(Number(text));
}

// &HAABBGGRR& or a decimal number. Alpha 0 is opaque.
static std::uint32_t Packed(const std::string &text)
{
    const std::size_t digits = text.find_first_not_of("&Hh ");
    if (digits == std::string::npos) return 0;
    const bool hexadecimal = text.find_first_of("Hh&") != std::string::npos;
    return std::uint32_t(std::strtoll(text.c_str() + digits, nullptr, hexadecimal ? 16 : 10));
}

static Color ColorOf(std::uint32_t packed, std::uint8_t alpha)
{
    return {std::uint8_t(packed), std::uint8_t(packed >> 8), std::uint8_t(packed >> 16), alpha};
}

static Color ColorOf(const std::string &text)
{
    const std::uint32_t packed = Packed(text);
    return ColorOf(packed, std::uint8_t(255 - (packed >> 24)));
}

// 1, -1, and weights from semi-bold on are bold.
static bool IsBold(int weight)
{
    return weight == 1 || weight == -1 || weight >= 600;
}

// The old numbering has 5 to 7 for the top and 9 to 11 for the middle.
static int FromOldAlignment(int alignment)
{
    if (alignment >= 9) return alignment - 9 + 4;
    if (alignment >= 5) return alignment - 5 + 7;
    return alignment;
}

AssScript::AssScript(const std::string &header, AssHeader asked, Notices &notices)
    : asked_(asked), notices_(notices)
{
    std::istringstream lines(header);
    std::vector<std::string> names;
    bool old = false;

    for (std::string line; std::getline(lines, line);) {
        const std::size_t colon = line.find(':');
        const std::string key = Lower(Trimmed(line.substr(0, colon)));
        const std::string value = colon == std::string::npos ? "" : Trimmed(line.substr(colon + 1));

        if (key == "[v4 styles]") old = true;
        if (key == "[events]") break;
        if (key == "playresx") canvas_.width = Integer(value);
        if (key == "playresy") canvas_.height = Integer(value);
        if (key == "format") names = Fields(Lower(value), 64);
        if (key == "style") {
            std::vector<std::string> values = Fields(value, 64);
            for (std::size_t i = 0; i < names.size() && i < values.size(); ++i) {
                names[i] = Trimmed(names[i]);
                if (old && names[i] == "alignment") {
                    values[i] = std::to_string(FromOldAlignment(Integer(values[i])));
                }
            }
            ReadStyle(names, values);
        }
    }
    // With one of the two, the canvas is 4:3; with none, it is the default size of the format.
    canvas_.width = std::clamp(canvas_.width, 0, g_largest);
    canvas_.height = std::clamp(canvas_.height, 0, g_largest);
    if (canvas_.width == 0 && canvas_.height == 0) canvas_ = {384, 288};
    if (canvas_.width == 0) canvas_.width = std::max(1, canvas_.height * 4 / 3);
    if (canvas_.height == 0) canvas_.height = std::max(1, canvas_.width * 3 / 4);
    for (auto &style : styles_) SetSize(style.second.size, style.second, style.second.style);
}

void AssScript::ReadStyle(const std::vector<std::string> &names, const std::vector<std::string> &values)
{
    const auto field = [&](const char *name) {
        const auto found = std::find(names.begin(), names.end(), name);
        const auto index = std::size_t(found - names.begin());
        return index < values.size() ? Trimmed(values[index]) : "";
    };
    const auto color = [&](const char *name) -> std::optional<Color> {
        return field(name).empty() ? std::nullopt : std::make_optional(ColorOf(field(name)));
    };
    StyleEntry entry;

    entry.size = std::max(0.0, Number(field("fontsize")));
    if (usualSize_ <= 0) usualSize_ = entry.size;
    if (asked_ == AssHeader::NOTHING) return;
    entry.style.italic = Integer(field("italic")) != 0;
    entry.style.bold = IsBold(Integer(field("bold")));
    entry.style.underline = Integer(field("underline")) != 0;
    entry.style.strikeout = Integer(field("strikeout")) != 0;
    entry.style.color = color("primarycolour");
    if (asked_ == AssHeader::STYLES) {
        // A transparent box is no box. The edges come from libavcodec.
        entry.style.background = color("backcolour");
        if (entry.style.background && entry.style.background->alpha == 0) entry.style.background.reset();
    } else if (field("borderstyle") == "3") {
        entry.style.background = color("outlinecolour");
    } else if (field("borderstyle") == "4") {
        entry.style.background = color("backcolour");
    } else if (Number(field("outline")) > 0) {
        entry.style.edgeColor = color("outlinecolour");
    } else if (Number(field("shadow")) > 0) {
        entry.style.edgeColor = color("backcolour");
    }
    const int alignment = Integer(field("alignment"));
    if (alignment >= 1 && alignment <= 9) entry.alignment = alignment;
    entry.left = Number(field("marginl"));
    entry.right = Number(field("marginr"));
    entry.vertical = Number(field("marginv"));
    entry.vertically = field("fontname").compare(0, 1, "@") == 0;
    if (asked_ == AssHeader::STYLES_AND_MARGINS) {
        entry.style.font = Interned(field("fontname").substr(entry.vertically ? 1 : 0));
    }
    if (Number(field("angle")) != 0) Unsupported("rotation");
    if (Number(field("spacing")) != 0) Unsupported("letter spacing");
    for (const char *const scale : {"scalex", "scaley"}) {
        if (!field(scale).empty() && Number(field(scale)) != 100) Unsupported("letter scaling");
    }
    if (defaultStyle_.empty()) defaultStyle_ = field("name");
    styles_[field("name")] = entry;
}

const AssScript::StyleEntry &AssScript::Find(const std::string &name) const
{
    static const StyleEntry none;

    // The name of the default style may begin with a star.
    for (const std::string &candidate : {name, name.compare(0, 1, "*") == 0 ? name.substr(1) : name,
                                         std::string("Default"), defaultStyle_}) {
        const auto found = styles_.find(candidate);
        if (found != styles_.end()) return found->second;
    }
    return none;
}

double AssScript::SizeOf(const StyleEntry &style) const
{
    return style.size > 0 ? style.size : usualSize_;
}

// A script has its own sizes. Where libavcodec wrote the header, a size counts as a share of the usual one.
void AssScript::SetSize(double size, const StyleEntry &base, Style &style) const
{
    if (asked_ == AssHeader::STYLES_AND_MARGINS) {
        style.line = float(std::clamp(size / canvas_.height, 0.0, 16.0));
    } else if (size > 0 && SizeOf(base) > 0) {
        style.scale = float(std::clamp(size / SizeOf(base), 1.0 / 16, 16.0));
    }
}

void AssScript::Unsupported(const std::string &what)
{
    notices_.Say(what + " is not supported");
}

void AssScript::ReadTag(const std::string &name, const std::string &value, Reading &reading)
{
    Style &style = reading.style;
    const Style &base = reading.base->style;
    const auto flag = [&](bool preset) { return value.empty() ? preset : Integer(value) != 0; };
    const auto setColor = [&](std::optional<Color> &color, const std::optional<Color> &preset) {
        color = value.empty()
                    ? preset
                    : std::make_optional(ColorOf(Packed(value), color ? color->alpha : std::uint8_t(255)));
    };
    // White letters and black edges are usual.
    const auto setAlpha = [&](std::optional<Color> &color, const std::optional<Color> &preset, Color usual) {
        const std::uint8_t alpha = preset ? preset->alpha : std::uint8_t(255);
        color = color.value_or(usual);
        color->alpha = value.empty() ? alpha : std::uint8_t(255 - (Packed(value) & 0xFF));
    };

    if (name == "i") style.italic = flag(base.italic);
    if (name == "b") style.bold = value.empty() ? base.bold : IsBold(Integer(value));
    if (name == "u") style.underline = flag(base.underline);
    if (name == "s") style.strikeout = flag(base.strikeout);
    if (name == "c" || name == "1c") setColor(style.color, base.color);
    if (name == "3c") {
        const bool box = base.background.has_value();
        setColor(box ? style.background : style.edgeColor, box ? base.background : base.edgeColor);
    }
    if (name == "alpha" || name == "1a") setAlpha(style.color, base.color, {255, 255, 255});
    if (name == "alpha" || name == "3a") {
        if (base.background) setAlpha(style.background, base.background, *base.background);
        if (!base.background) setAlpha(style.edgeColor, base.edgeColor, {0, 0, 0});
    }
    if (name == "fn") style.font = value.empty() || value == "0" ? base.font : Interned(value);
    if (name == "fs") {
        const bool relative = value.compare(0, 1, "+") == 0 || value.compare(0, 1, "-") == 0;
        const double size = relative ? reading.size * (1 + Number(value) / 10) : Number(value);
        reading.size = size > 0 ? size : SizeOf(*reading.base);
        SetSize(reading.size, *reading.base, style);
    }
    if (name == "r") {
        reading.base = value.empty() ? &Find(reading.name) : &Find(value);
        style = reading.base->style;
        reading.size = SizeOf(*reading.base);
    }
    if ((name == "an" || name == "a") && !reading.aligned) {
        const int alignment = name == "a" ? FromOldAlignment(Integer(value)) : Integer(value);
        if (alignment >= 1 && alignment <= 9) reading.alignment = alignment;
        reading.aligned = alignment >= 1 && alignment <= 9;
    }
    if ((name == "pos" || name == "move") && !reading.block.anchor) {
        const std::vector<std::string> point = Fields(value, 8);
        if (point.size() >= 2) {
            reading.block.anchor =
                Anchor{Number(point[0]) / canvas_.width, Number(point[1]) / canvas_.height};
            reading.block.pinned = true;
        }
    }
    if (name == "p") reading.drawing = Integer(value) > 0;
}

void AssScript::ReadTags(const std::string &tags, Reading &reading)
{
    struct Known {
        const char *name;
        const char *undrawn; // the unsupported feature, or empty
    };
    // If a name is the beginning of another one, the longer one comes first.
    static const Known known[] = {{"alpha", ""},
                                  {"an", ""},
                                  {"a", ""},
                                  {"blur", "blur"},
                                  {"bord", "edge width"},
                                  {"be", "blur"},
                                  {"b", ""},
                                  {"clip", "clipping"},
                                  {"c", ""},
                                  {"fade", "fading"},
                                  {"fad", "fading"},
                                  {"fax", "shearing"},
                                  {"fay", "shearing"},
                                  {"fe", ""},
                                  {"fn", ""},
                                  {"fr", "rotation"},
                                  {"fscx", "letter scaling"},
                                  {"fscy", "letter scaling"},
                                  {"fsp", "letter spacing"},
                                  {"fs", ""},
                                  {"iclip", "clipping"},
                                  {"i", ""},
                                  {"kf", "karaoke"},
                                  {"ko", "karaoke"},
                                  {"kt", "karaoke"},
                                  {"k", "karaoke"},
                                  {"K", "karaoke"},
                                  {"move", "movement"},
                                  {"org", ""},
                                  {"pbo", ""},
                                  {"pos", ""},
                                  {"p", ""},
                                  {"q", ""},
                                  {"r", ""},
                                  {"shad", "edge width"},
                                  {"s", ""},
                                  {"t", "animation"},
                                  {"u", ""},
                                  {"xbord", "edge width"},
                                  {"xshad", "edge width"},
                                  {"ybord", "edge width"},
                                  {"yshad", "edge width"},
                                  {"1a", ""},
                                  {"1c", ""},
                                  {"2a", ""},
                                  {"2c", ""},
                                  {"3a", ""},
                                  {"3c", ""},
                                  {"4a", ""},
                                  {"4c", ""}};

    for (std::size_t at = tags.find('\\'); at != std::string::npos;) {
        std::size_t end = tags.find_first_of("\\(", ++at);
        if (end != std::string::npos && tags[end] == '(') end = std::min(tags.find(')', end), tags.size());
        const std::string tag = Trimmed(tags.substr(at, end - at));
        at = end == std::string::npos ? end : tags.find('\\', end);

        const auto found = std::find_if(std::begin(known), std::end(known),
                                        [&](const Known &each) { return tag.rfind(each.name, 0) == 0; });
        if (found == std::end(known)) continue;
        const std::string name = found->name;
        std::string value = Trimmed(tag.substr(name.size()));
        if (value.compare(0, 1, "(") == 0) value.erase(0, 1);
        const bool asks =
            value.find_first_not_of("xyz0. ") != std::string::npos; // not without a value or with 0
        if (*found->undrawn && asks) Unsupported(found->undrawn);
        ReadTag(name, value, reading);
    }
}

void AssScript::ReadText(const std::string &text, Reading &reading)
{
    static const std::string hardSpace = "\xC2\xA0";
    static const std::string wordJoiner = "\xE2\x81\xA0"; // follows a literal backslash
    std::vector<Line> &lines = reading.block.lines;

    lines.emplace_back();
    for (std::size_t at = 0; at < text.size();) {
        const char next = at + 1 < text.size() ? text[at + 1] : '\0';
        const std::size_t close = text[at] == '{' ? text.find('}', at) : std::string::npos;
        std::string shown;

        if (close != std::string::npos) {
            ReadTags(text.substr(at + 1, close - at - 1), reading);
            at = close + 1;
        } else if (text[at] == '\\' && next == 'N') {
            lines.emplace_back();
            at += 2;
        } else if (text[at] == '\\' && next == 'n') {
            shown = " ";
            at += 2;
        } else if (text[at] == '\\' && next == 'h') {
            shown = hardSpace;
            at += 2;
        } else if (text[at] == '\\' && (next == '{' || next == '}')) {
            shown = next;
            at += 2;
        } else if (text[at] == '\\' && text.compare(at + 1, wordJoiner.size(), wordJoiner) == 0) {
            shown = "\\";
            at += 1 + wordJoiner.size();
        } else {
            const std::size_t end = std::min(text.find_first_of("{\\\r\n", at + 1), text.size());
            if (text[at] != '\r' && text[at] != '\n') shown = text.substr(at, end - at);
            at = shown.empty() ? at + 1 : end;
        }
        if (reading.drawing && !shown.empty()) Unsupported("drawing");
        if (!reading.drawing) Append(lines.back(), shown, reading.style);
    }
}

void AssScript::Place(const std::vector<std::string> &fields, Reading &reading) const
{
    Block &block = reading.block;

    block.horizontal = Horizontal((reading.alignment - 1) % 3);
    block.vertical = Vertical(2 - (reading.alignment - 1) / 3);
    if (block.anchor || asked_ != AssHeader::STYLES_AND_MARGINS) return;

    // A margin of the event replaces that of its style.
    const auto margin = [&](std::size_t field, double preset) {
        return Number(fields[field]) != 0 ? Number(fields[field]) : preset;
    };
    const double left = margin(4, reading.base->left) / canvas_.width;
    const double right = 1 - margin(5, reading.base->right) / canvas_.width;
    const double vertical = margin(6, reading.base->vertical) / canvas_.height;
    const double xs[] = {left, (left + right) / 2, right};
    const double ys[] = {vertical, 0.5, 1 - vertical};
    block.anchor = Anchor{xs[int(block.horizontal)], ys[int(block.vertical)]};
    block.width = std::max(0.0, right - left);
}

static bool IsBlank(const Line &line)
{
    return PlainText(line).find_first_not_of(" \t") == std::string::npos;
}

void AssScript::Read(const std::string &event, Cue &cue)
{
    const std::vector<std::string> fields = Fields(event, 9);
    if (fields.size() < 9) return;
    Reading reading;

    reading.name = fields[2];
    reading.base = &Find(reading.name);
    reading.style = reading.base->style;
    reading.size = SizeOf(*reading.base);
    reading.alignment = reading.base->alignment;
    const StyleEntry &own = *reading.base;
    ReadText(fields[8], reading);

    std::vector<Line> &lines = reading.block.lines;
    while (!lines.empty() && IsBlank(lines.back())) lines.pop_back();
    lines.erase(lines.begin(), std::find_if_not(lines.begin(), lines.end(), IsBlank));
    if (lines.empty()) return;

    if (!fields[7].empty()) Unsupported("an effect such as scrolling");
    if (own.vertically) Unsupported("vertical text");
    reading.base = &own;
    Place(fields, reading);
    cue.layer = Integer(fields[1]);
    if (asked_ == AssHeader::STYLES_AND_MARGINS) cue.canvas = canvas_;
    cue.blocks.push_back(std::move(reading.block));
}

} // namespace caption
