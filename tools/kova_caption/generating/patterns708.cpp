// SPDX-License-Identifier: MIT
// CEA-708: styles, colours and characters.
#include "generating/patterns.h"

#include "kova/kova_captions.h"

namespace caption::patterns
{

using namespace encoding;

static const unsigned g_black = KOVA_CAPTIONS_BLACK;
static const unsigned g_white = 0x2A; // two of three: what CTA-708 calls white
static const unsigned g_brightWhite = KOVA_CAPTIONS_WHITE;
static const unsigned g_transparent = KOVA_CAPTIONS_TRANSPARENT;
static const unsigned g_transparentStyle = 2; // of windows

static ByteString Colors(unsigned foreground, unsigned background, unsigned edge = 0,
                         unsigned foregroundOpacity = 0, unsigned backgroundOpacity = 0)
{
    PenColor color;

    color.foreground = foreground;
    color.foregroundOpacity = foregroundOpacity;
    color.background = background;
    color.backgroundOpacity = backgroundOpacity;
    color.edge = edge;
    return SetPenColor(color);
}

static ByteString Line(unsigned row, const std::string &text)
{
    return SetPenLocation(row, 0) + Ascii(text);
}

void WindowStyles(Script &script)
{
    static const char *const looks[] = {
        "1: on the left, solid black",
        "2: on the left, no fill",
        "3: centred, solid black",
        "4: roll-up, on the left, solid black",
        "5: roll-up, on the left, no fill",
        "6: roll-up, centred, solid black",
        "7: ticker, from the top down, columns move to the left",
    };

    for (unsigned style = 1; style <= 7; ++style) {
        const bool ticker = style == 7;
        const Window window = ticker ? Window(0).Anchor(4, 37, 105).Rows(10).Columns(3).Styles(style, 1)
                                     : Window(0).Anchor(7, 70, 105).Rows(3).Columns(28).Styles(style, 1);

        script.Show({std::string("Window style ") + looks[style - 1], {BoxOf(window)}});
        script.SendService(DeleteWindows(0xFF) + Define(window) + Ascii("STYLE " + std::to_string(style)));
        for (const char *const line : {"LINE TWO", "LINE THREE", "LINE FOUR"}) {
            script.Hold(0.6);
            script.SendService(Bytes({CR708}) + Ascii(line));
        }
        script.Hold(3);
    }
}

void WindowFills(Script &script)
{
    static const char *const names[] = {"SOLID", "FLASHING", "TRANSLUCENT", "TRANSPARENT"};
    Scene scene = {
        "Red window fills: solid, flashing, translucent, transparent. The bars of the picture are seen "
        "through the third, and bare in the fourth and half of the time in the second."};
    ByteString bytes;

    for (unsigned opacity = 0; opacity < 4; ++opacity) {
        const Window window =
            Window(opacity).Hidden().Anchor(0, 4 + 18 * opacity, 50).Rows(3).Columns(20).Styles(1, 1);
        WindowAttributes attributes;
        attributes.fill = KOVA_CAPTIONS_RED;
        attributes.fillOpacity = opacity;
        scene.boxes.push_back(BoxOf(window));
        bytes = bytes + Define(window) + SetWindowAttributes(attributes) +
                Colors(g_white, g_black, 0, 0, g_transparent) + SetPenLocation(1, 4) + Ascii(names[opacity]);
    }
    script.ShowPage(scene, bytes, 6);
}

void Borders(Script &script)
{
    static const char *const names[] = {"NONE",    "RAISED",      "DEPRESSED",
                                        "UNIFORM", "SHADOW LEFT", "SHADOW RIGHT"};
    Scene scene = {
        "Yellow borders on blue windows, from top to bottom: none, raised, depressed, uniform, shadow on "
        "the left, shadow on the right."};
    ByteString bytes;

    for (unsigned border = 0; border < 6; ++border) {
        const Window window =
            Window(border).Hidden().Anchor(0, 1 + 12 * border, 60).Rows(2).Columns(18).Styles(1, 1);
        WindowAttributes attributes;
        attributes.fill = KOVA_CAPTIONS_BLUE;
        attributes.border = border;
        attributes.borderColor = KOVA_CAPTIONS_YELLOW;
        scene.boxes.push_back(BoxOf(window));
        bytes = bytes + Define(window) + SetWindowAttributes(attributes) +
                Colors(g_white, g_black, 0, 0, g_transparent) + SetPenLocation(0, 1) + Ascii(names[border]);
    }
    script.ShowPage(scene, bytes, 6);
}

void PenStyles(Script &script)
{
    static const char *const names[] = {
        "1 DEFAULT", "2 MONO SERIF",          "3 SERIF",          "4 MONO SANS",
        "5 SANS",    "6 MONO SANS, OUTLINED", "7 SANS, OUTLINED",
    };
    Scene scene = {
        "Pen styles 1 to 7: 1 to 5 on black in five fonts, 6 and 7 with a black edge and no background."};
    ByteString bytes;

    for (unsigned style = 1; style <= 7; ++style) {
        const Window window =
            Window(style).Hidden().Anchor(0, 9 * style - 5, 50).Columns(24).Styles(g_transparentStyle, style);
        scene.boxes.push_back(BoxOf(window));
        bytes = bytes + Define(window) + Ascii(names[style - 1]);
    }
    script.ShowPage(scene, bytes, 6);
}

void Fonts(Script &script)
{
    static const char *const names[] = {"0 default", "1 mono serif", "2 serif",   "3 mono sans",
                                        "4 sans",    "5 casual",     "6 cursive", "7 small capitals"};
    const Window window = Window(0).Hidden().Anchor(4, 37, 105).Rows(11).Columns(24).Styles(1, 1);
    ByteString bytes = Define(window);
    PenAttributes pen;

    for (unsigned font = 0; font < 8; ++font) {
        pen.font = font;
        bytes = bytes + SetPenAttributes(pen) + Line(font, names[font]);
    }
    pen.font = 0;
    pen.italics = 1;
    bytes = bytes + SetPenAttributes(pen) + Line(8, "italics");
    pen.italics = 0;
    pen.underline = 1;
    bytes = bytes + SetPenAttributes(pen) + Line(9, "underlined");
    pen.italics = 1;
    bytes = bytes + SetPenAttributes(pen) + Line(10, "both");
    script.ShowPage({"Eight font styles that differ, then italics, underline, and both.", {BoxOf(window)}},
                    bytes, 6);
}

void Edges(Script &script)
{
    static const char *const names[] = {"No edge", "Raised",      "Depressed",
                                        "Uniform", "Shadow left", "Shadow right"};
    static const struct {
        const char *name;
        unsigned color;
    } colors[] = {{"black", KOVA_CAPTIONS_BLACK}, {"red", KOVA_CAPTIONS_RED}, {"blue", KOVA_CAPTIONS_BLUE}};
    const Window window =
        Window(0).Hidden().Anchor(4, 37, 105).Rows(6).Columns(20).Styles(g_transparentStyle, 1);

    for (const auto &color : colors) {
        ByteString bytes = Define(window) + Colors(g_white, g_black, color.color, 0, g_transparent);
        for (unsigned edge = 0; edge < 6; ++edge) {
            PenAttributes pen;
            pen.size = KOVA_CAPTIONS_PEN_LARGE;
            pen.edge = edge;
            bytes = bytes + SetPenAttributes(pen) + Line(edge, names[edge]);
        }
        script.ShowPage(
            {std::string("White letters without background, edges in ") + color.name +
                 ", from top to bottom: none, raised, depressed, uniform, shadow left, shadow right.",
             {BoxOf(window)}},
            bytes, 4);
    }
}

// The levels of a colour's components, two bits each.
static Color ColorOf(unsigned value)
{
    static const std::uint8_t levels[] = {0x00, 0x55, 0xC0, 0xFF};
    return {levels[value >> 4 & 3], levels[value >> 2 & 3], levels[value & 3]};
}

static bool IsLight(unsigned color)
{
    return (color >> 2 & 3) >= 2;
}

// Eight rows of eight colours, two cells each, and the same beside them in the picture.
static void ColorPage(Script &script, const std::string &text, bool background)
{
    const Window window =
        Window(0).Hidden().Anchor(0, 17, 0).Rows(8).Columns(16).Styles(g_transparentStyle, 1);
    const Box cube = BoxOf(window);
    const double apart = 20 / 42.0;
    Scene scene = {text};
    ByteString bytes = Define(window);

    for (unsigned color = 0; color < 64; ++color) {
        const unsigned row = color / 8;
        const unsigned column = color % 8;
        char name[8];
        std::snprintf(name, sizeof name, "%02X", color);
        if (column == 0) bytes = bytes + SetPenLocation(row, 0);
        if (background) {
            bytes = bytes + Colors(IsLight(color) ? g_black : g_brightWhite, color) + Ascii(name);
        } else {
            bytes = bytes + Colors(color, g_black);
            bytes = bytes + Bytes({EXT1, 0x30, EXT1, 0x30}); // solid blocks
        }
        const double left = cube.left + apart + column * 2 / 42.0;
        const double top = cube.top + row / 15.0;
        scene.boxes.push_back({left, top, left + 2 / 42.0, top + 1 / 15.0, ColorOf(color)});
    }
    script.ShowPage(scene, bytes, 5);
}

void ColorCube(Script &script)
{
    ColorPage(
        script,
        "64 colours of letters, as solid blocks. The picture has the same on the right, with the levels "
        "00 55 C0 FF.",
        false);
    ColorPage(
        script,
        "64 colours of backgrounds with their hexadecimal numbers. The picture has the same on the right.",
        true);
}

void Opacities(Script &script)
{
    static const char *const names[] = {"SOLID", "FLASHING", "TRANSLUCENT", "TRANSPARENT"};
    const Window window =
        Window(0).Hidden().Anchor(4, 37, 105).Rows(8).Columns(24).Styles(g_transparentStyle, 1);
    ByteString bytes = Define(window);

    for (unsigned opacity = 0; opacity < 4; ++opacity) {
        bytes = bytes + Colors(KOVA_CAPTIONS_YELLOW, KOVA_CAPTIONS_BLUE, 0, opacity, 0) +
                Line(opacity, std::string("LETTERS ") + names[opacity]);
    }
    for (unsigned opacity = 0; opacity < 4; ++opacity) {
        bytes = bytes + Colors(KOVA_CAPTIONS_YELLOW, KOVA_CAPTIONS_BLUE, 0, 0, opacity) +
                Line(4 + opacity, std::string("BACKGROUND ") + names[opacity]);
    }
    script.ShowPage(
        {"Yellow letters, solid, flashing, translucent, transparent (a blue row without letters). Then blue "
         "backgrounds, solid, flashing, translucent, transparent.",
         {BoxOf(window)}},
        bytes, 6);
}

void Flashing(Script &script)
{
    const Window letters = Window(0).Hidden().Anchor(0, 10, 50).Rows(2).Columns(20).Styles(1, 1);
    const Window backgrounds =
        Window(1).Hidden().Anchor(0, 32, 50).Rows(2).Columns(20).Styles(g_transparentStyle, 1);
    const Window fill = Window(2).Hidden().Anchor(0, 54, 50).Rows(2).Columns(20).Styles(1, 1);
    WindowAttributes attributes;

    attributes.fill = KOVA_CAPTIONS_RED;
    attributes.fillOpacity = KOVA_CAPTIONS_FLASH;
    script.ShowPage({"Flashing, all three in step, at least once a second: letters, backgrounds of letters, "
                     "the fill of a "
                     "window (its letters do not flash).",
                     {BoxOf(letters), BoxOf(backgrounds), BoxOf(fill)}},
                    Define(letters) + Colors(g_white, g_black, 0, KOVA_CAPTIONS_FLASH) + Ascii("LETTERS") +
                        Define(backgrounds) + Colors(g_white, KOVA_CAPTIONS_RED, 0, 0, KOVA_CAPTIONS_FLASH) +
                        Ascii("BACKGROUND") + Define(fill) + SetWindowAttributes(attributes) +
                        Colors(g_white, g_black, 0, 0, g_transparent) + Ascii("WINDOW"),
                    8);
}

void PenSizes(Script &script)
{
    static const char *const names[] = {"Small 0123456789", "Standard 0123456789", "Large 0123456789"};
    const Window window = Window(0).Hidden().Anchor(4, 37, 105).Rows(3).Columns(32).Styles(1, 1);
    ByteString bytes = Define(window);

    for (unsigned size = 0; size < 3; ++size) {
        PenAttributes pen;
        pen.size = size;
        bytes = bytes + SetPenAttributes(pen) + Line(size, names[size]);
    }
    script.ShowPage({"Small, standard and large letters. The window has the same size whatever the pen's.",
                     {BoxOf(window)}},
                    bytes, 6);
}

void PenOffsets(Script &script)
{
    const Window window = Window(0).Hidden().Anchor(4, 37, 105).Rows(2).Columns(20).Styles(1, 1);
    PenAttributes subscript, normal, superscript;

    subscript.offset = KOVA_CAPTIONS_SUBSCRIPT;
    superscript.offset = KOVA_CAPTIONS_SUPERSCRIPT;
    script.ShowPage({"H2O with a lowered 2, then x2 + y2 with raised ones.", {BoxOf(window)}},
                    Define(window) + Ascii("H") + SetPenAttributes(subscript) + Ascii("2") +
                        SetPenAttributes(normal) + Ascii("O") + SetPenLocation(1, 0) + Ascii("x") +
                        SetPenAttributes(superscript) + Ascii("2") + SetPenAttributes(normal) +
                        Ascii(" + y") + SetPenAttributes(superscript) + Ascii("2"),
                    6);
}

static ByteString Range(unsigned first, unsigned last, bool extended = false)
{
    ByteString bytes;

    for (unsigned code = first; code <= last; ++code) {
        if (extended) bytes.push_back(EXT1);
        bytes.push_back(std::uint8_t(code));
    }
    return bytes;
}

void Characters708(Script &script)
{
    const Window latin = Window(0).Hidden().Anchor(4, 37, 105).Rows(6).Columns(32).Styles(1, 1);
    const Window more = Window(0).Hidden().Anchor(4, 37, 105).Rows(7).Columns(32).Styles(1, 1);
    ByteString bytes = Define(latin);

    for (unsigned row = 0; row < 3; ++row) {
        bytes = bytes + SetPenLocation(row, 0) + Range(0x20 + 32 * row, 0x3F + 32 * row) +
                SetPenLocation(row + 3, 0) + Range(0xA0 + 32 * row, 0xBF + 32 * row);
    }
    script.ShowPage(
        {"G0: ASCII with a music note at its end (rows 1 to 3). G1: Latin-1 (rows 4 to 6).", {BoxOf(latin)}},
        bytes, 5);

    const ByteString g2 = Range(0x25, 0x25, true) + Range(0x2A, 0x2A, true) + Range(0x2C, 0x2C, true) +
                          Range(0x30, 0x35, true) + Range(0x39, 0x3A, true) + Range(0x3C, 0x3D, true) +
                          Range(0x3F, 0x3F, true);
    const ByteString fractions = Range(0x76, 0x79, true);
    const ByteString box = Range(0x7A, 0x7F, true);
    const ByteString greek = Wide(0x0391) + Wide(0x0392) + Wide(0x0393) + Wide(0x03A9);
    const ByteString cyrillic = Wide(0x0410) + Wide(0x0411) + Wide(0x0412) + Wide(0x042F);
    const ByteString hangul = Wide(0xD55C) + Wide(0xAD6D) + Wide(0xC5B4);
    script.ShowPage(
        {"G2: dots, S caron, OE, a block, quotes, bullet, TM, s caron, oe, SM, Y dots; 1/8 3/8 5/8 7/8; "
         "lines. G3: "
         "CC sign. P16: Greek, Cyrillic, Hangul. Last row: A, 2 gaps without background, B, 2 underscores.",
         {BoxOf(more)}},
        Define(more) + g2 + SetPenLocation(1, 0) + fractions + SetPenLocation(2, 0) + box +
            SetPenLocation(3, 0) + Bytes({EXT1, 0xA0}) + SetPenLocation(4, 0) + greek + SetPenLocation(5, 0) +
            cyrillic + Ascii(" ") + hangul + SetPenLocation(6, 0) + Ascii("A") +
            Bytes({EXT1, 0x20, EXT1, 0x21}) + Ascii("B") + Bytes({EXT1, 0xA1, EXT1, 0xFF}),
        6);
}

} // namespace caption::patterns
