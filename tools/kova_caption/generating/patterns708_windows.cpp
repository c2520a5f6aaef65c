// SPDX-License-Identifier: MIT
// CEA-708: places of windows, movement, commands, time and services.
#include "generating/patterns.h"

#include "kova/kova_captions.h"

namespace caption::patterns
{

using namespace encoding;

static const ByteString g_noWindows = DeleteWindows(0xFF);
static const ByteString g_newRow = Bytes({CR708});

static const char *const g_points[] = {"TOP LEFT", "TOP",         "TOP RIGHT", "LEFT",        "CENTRE",
                                       "RIGHT",    "BOTTOM LEFT", "BOTTOM",    "BOTTOM RIGHT"};

// A small cross of two lines at a point of the safe title area.
static void AddCross(Scene &scene, double x, double y)
{
    scene.boxes.push_back({x - 0.02, y, x + 0.02, y});
    scene.boxes.push_back({x, y - 0.03, x, y + 0.03});
}

void Anchors(Script &script)
{
    for (unsigned point = 0; point < 9; ++point) {
        const Window window = Window(0).Anchor(point, 37, 105).Rows(2).Columns(12).Styles(1, 1);
        Scene scene = {std::string("The cross in the middle lies at this point of the window: ") +
                           g_points[point],
                       {BoxOf(window)}};
        AddCross(scene, 105 / 210.0, 37 / 75.0);
        script.Show(scene);
        script.SendService(g_noWindows + Define(window) + Ascii(g_points[point]));
        script.Hold(1.5);
    }

    Scene scene = {"Windows at the corners and sides of the safe title area, by absolute positions."};
    ByteString bytes;
    unsigned id = 0;
    for (unsigned point = 0; point < 9; ++point) {
        if (point == 4) continue;
        const Window window = Window(id++)
                                  .Hidden()
                                  .Anchor(point, point / 3 * 37, point % 3 == 2 ? 209 : point % 3 * 105)
                                  .Columns(12);
        scene.boxes.push_back(BoxOf(window));
        bytes = bytes + Define(window) + Ascii(g_points[point]);
    }
    script.ShowPage(scene, bytes, 5);
}

void RelativeAnchors(Script &script)
{
    Scene scene = {"Windows at the corners and sides of the safe title area, by hundredths of it."};
    ByteString bytes;
    unsigned id = 0;

    for (unsigned point = 0; point < 9; ++point) {
        if (point == 4) continue;
        const unsigned vertical = point / 3 == 2 ? 99 : point / 3 * 50;
        const unsigned horizontal = point % 3 == 2 ? 99 : point % 3 * 50;
        const Window window =
            Window(id++).Hidden().Relative().Anchor(point, vertical, horizontal).Columns(12);
        scene.boxes.push_back(BoxOf(window));
        bytes = bytes + Define(window) + Ascii(g_points[point]);
    }
    script.ShowPage(scene, bytes, 5);

    const Window quarter = Window(0).Hidden().Relative().Anchor(4, 25, 25).Columns(12);
    const Window threeQuarters = Window(1).Hidden().Relative().Anchor(4, 75, 75).Columns(12);
    scene = {"Windows with their centres at a quarter and at three quarters of the safe title area.",
             {BoxOf(quarter), BoxOf(threeQuarters)}};
    AddCross(scene, 0.25, 0.25);
    AddCross(scene, 0.75, 0.75);
    script.ShowPage(scene, Define(quarter) + Ascii("25 %") + Define(threeQuarters) + Ascii("75 %"), 5);
}

void Priorities(Script &script)
{
    static const unsigned colors[] = {KOVA_CAPTIONS_RED, KOVA_CAPTIONS_GREEN, KOVA_CAPTIONS_BLUE};
    static const char *const names[] = {"RED", "GREEN", "BLUE"};
    const auto page = [&](const std::string &text, unsigned red, unsigned green, unsigned blue, bool fills) {
        const unsigned priorities[] = {red, green, blue};
        Scene scene = {text};
        ByteString bytes;
        for (unsigned id = 0; id < 3; ++id) {
            const Window window =
                Window(id).Priority(priorities[id]).Anchor(0, 15 + 10 * id, 40 + 25 * id).Rows(5).Columns(16);
            WindowAttributes attributes;
            PenColor pen;
            attributes.fill = colors[id];
            pen.foreground = KOVA_CAPTIONS_WHITE;
            pen.backgroundOpacity = KOVA_CAPTIONS_TRANSPARENT;
            scene.boxes.push_back(BoxOf(window));
            bytes = bytes + Define(window);
            if (fills) bytes = bytes + SetWindowAttributes(attributes) + SetPenColor(pen) + Ascii(names[id]);
        }
        script.Show(scene);
        script.SendService(bytes);
        script.Hold(4);
    };

    script.SendService(g_noWindows);
    page("Red covers green, green covers blue: priorities 0, 3, 7.", 0, 3, 7, true);
    page("Blue covers green, green covers red: the same windows with priorities 7, 3, 0.", 7, 3, 0, false);
    page("Green covers both, and blue covers red: priorities 7, 0, 3.", 7, 0, 3, false);
}

void Directions(Script &script)
{
    static const char *const names[] = {"left to right", "right to left", "top to bottom", "bottom to top"};
    // The pairs that CTA-708 allows: rows follow across the print direction.
    static const struct {
        unsigned print, scroll;
    } pairs[] = {{0, 3}, {0, 2}, {1, 3}, {1, 2}, {2, 1}, {2, 0}, {3, 1}, {3, 0}};

    for (const auto &pair : pairs) {
        const bool vertical = pair.print >= 2;
        const Window window =
            Window(0).Anchor(4, 37, 105).Rows(vertical ? 6 : 3).Columns(vertical ? 3 : 20).Styles(1, 1);
        WindowAttributes attributes;
        attributes.print = pair.print;
        attributes.scroll = pair.scroll;
        script.Show({std::string("Prints ") + names[pair.print] + ", scrolls " + names[pair.scroll] +
                         ". ONE scrolls out when FOUR comes.",
                     {BoxOf(window)}});
        script.SendService(g_noWindows + Define(window) + SetWindowAttributes(attributes) + Ascii("ONE"));
        for (const char *const line : {"TWO", "THREE", "FOUR"}) {
            script.Hold(0.6);
            script.SendService(g_newRow + Ascii(line));
        }
        script.Hold(3);
    }
}

void Justification(Script &script)
{
    static const char *const names[] = {"LEFT", "RIGHT", "CENTRE", "FULL"};
    Scene scene = {"Two rows each, justified left, right, centred and full (which may look like left)."};
    ByteString bytes;

    for (unsigned justify = 0; justify < 4; ++justify) {
        const Window window =
            Window(justify).Hidden().Anchor(0, 2 + 18 * justify, 40).Rows(2).Columns(26).Styles(1, 1);
        WindowAttributes attributes;
        attributes.justify = justify;
        scene.boxes.push_back(BoxOf(window));
        bytes = bytes + Define(window) + SetWindowAttributes(attributes) + Ascii(names[justify]) + g_newRow +
                Ascii("A LONGER ROW") + Bytes({ETX});
    }
    script.ShowPage(scene, bytes, 6);
}

void Effects(Script &script)
{
    static const struct {
        const char *name;
        unsigned effect, direction, speed;
    } effects[] = {{"snap", 0, 0, 0},
                   {"fade in half a second", 1, 0, 1},
                   {"fade in 2 seconds", 1, 0, 4},
                   {"wipe, left to right, in 2 seconds", 2, 0, 4},
                   {"wipe, right to left, in 2 seconds", 2, 1, 4},
                   {"wipe, top to bottom, in 2 seconds", 2, 2, 4},
                   {"wipe, bottom to top, in 2 seconds", 2, 3, 4}};
    const Window window = Window(0).Hidden().Anchor(4, 37, 105).Rows(3).Columns(24).Styles(1, 1);
    const std::size_t last = std::size(effects) - 1;

    for (std::size_t i = 0; i <= last; ++i) {
        const auto &effect = effects[i];
        const double duration = effect.speed * 0.5;
        WindowAttributes attributes;
        attributes.effect = effect.effect;
        attributes.effectDirection = effect.direction;
        attributes.effectSpeed = effect.speed;
        const std::string number = std::to_string(i + 1);
        script.SendService(g_noWindows + Define(window) + SetWindowAttributes(attributes) +
                           Ascii("EFFECT " + number));
        script.Hold(0.5);
        script.Show(
            {number + ": appears by " + effect.name +
                 (i < last ? ", then goes in the same way; a wipe covers in the opposite direction." : "."),
             {BoxOf(window)}});
        script.SendService(DisplayWindows(1));
        script.Hold(duration + 1.5);
        if (i == last) break;
        script.SendService(HideWindows(1));
        script.Hold(duration + 0.5);
    }
    script.Hold(2);
}

void WindowCommands(Script &script)
{
    const Window first = Window(0).Anchor(0, 10, 50).Rows(3).Columns(20).Styles(1, 1);
    const Window second = Window(1).Anchor(0, 45, 50).Rows(3).Columns(20).Styles(1, 1);
    const std::vector<Box> boxes = {BoxOf(first), BoxOf(second)};
    const auto step = [&](const std::string &text, const ByteString &bytes) {
        script.Show({text, boxes});
        script.SendService(bytes);
        script.Hold(2);
    };

    step("Both windows: FIRST above, SECOND below.",
         g_noWindows + Define(first) + Ascii("FIRST") + Define(second) + Ascii("SECOND"));
    step("HideWindows: FIRST is gone.", HideWindows(0x01));
    step("ToggleWindows: FIRST is back, SECOND is gone.", ToggleWindows(0x03));
    step("DisplayWindows: both.", DisplayWindows(0x03));
    step("Text for the hidden first window, unseen.",
         HideWindows(0x01) + SetCurrentWindow(0) + g_newRow + Ascii("MORE"));
    step("Displayed again: FIRST and MORE above, SECOND below.", DisplayWindows(0x01));
    step("ClearWindows: SECOND is erased, its window stays.", ClearWindows(0x02));
    step("Backspace: FIRST and MOST above.", Bytes({BS708, BS708}) + Ascii("ST"));
    step("HCR erases the row: FIRST and LAST above.", Bytes({HCR}) + Ascii("LAST"));
    step("FF erases the window: NEW above.", Bytes({FF}) + Ascii("NEW"));
    step("SetPenLocation: END in the last row, at the sixth column.", SetPenLocation(2, 5) + Ascii("END"));
    step("DeleteWindows: the second window is gone, the first stays.", DeleteWindows(0x02));
    script.Hold(2);
}

void Delays(Script &script)
{
    const Window window = Window(0).Anchor(4, 37, 105).Rows(10).Columns(30).Styles(1, 1);
    const ByteString clear = g_noWindows + Define(window);
    const unsigned longest = 255;
    const auto show = [&](const std::string &text) { script.Show({text, {BoxOf(window)}}); };

    show("Delay: TWO appears two seconds after ONE.");
    script.SendService(clear + Ascii("ONE ") + Delay(20) + Ascii("TWO"));
    script.Hold(4);

    show("DelayCancel: FOUR appears one second after THREE, though 25 seconds were asked for.");
    script.SendService(clear + Ascii("THREE ") + Delay(longest) + Ascii("FOUR"));
    script.Hold(1);
    script.SendService(Bytes({DLC}));
    script.Hold(3);

    show("Reset: FIVE is gone after a second, and SIX, which was delayed, is never seen.");
    script.SendService(clear + Ascii("FIVE ") + Delay(longest) + Ascii("SIX"));
    script.Hold(1);
    script.SendService(Bytes({RST}));
    script.Hold(3);

    // 128 bytes wait; the next one finds the buffer full.
    show("A full buffer ends a delay of 25 seconds: rows of X, the last with the word FULL, one second after "
         "SEVEN.");
    script.SendService(clear + Ascii("SEVEN") + Delay(longest));
    script.Hold(1);
    for (unsigned row = 1; row <= 4; ++row)
        script.SendService(SetPenLocation(row, 0) + Ascii(std::string(28, 'X')));
    script.SendService(SetPenLocation(5, 0) + Ascii("FULL"));
    script.Hold(4);
}

void Services(Script &script)
{
    static const unsigned services[] = {1, 2, 3, 4, 5, 6, 7, 63};
    const Window window = Window(0).Anchor(7, 70, 105).Rows(2).Columns(24).Styles(1, 1);
    ByteString all;

    script.Show({"Services 1 to 6, 7 and 63 each show their own name: choose one.", {BoxOf(window)}});
    for (const unsigned service : services) {
        script.SendService(g_noWindows + Define(window) + Ascii("SERVICE " + std::to_string(service)),
                           service);
    }
    script.Hold(4);

    // A block each, all in one packet of several frames.
    script.Show({"The second row says ONE PACKET in every service: eight service blocks came together.",
                 {BoxOf(window)}});
    for (const unsigned service : services) all = all + Block(service, g_newRow + Ascii("ONE PACKET"));
    script.SendBlocks(all);
    script.Hold(4);

    // Two blocks of a service, which cut a command, then null bytes up to the longest packet.
    script.Show(
        {"Service 1 says WHOLE: a command was cut by the end of a service block. Its packet has 128 bytes.",
         {BoxOf(window)}});
    const ByteString cut = Bytes({HCR}) + SetPenLocation(1, 3) + Ascii("WHOLE");
    const auto middle = cut.begin() + 2;
    script.SendBlocks([&] {
        ByteString blocks = Block(1, {cut.begin(), middle}) + Block(1, {middle, cut.end()});
        blocks.resize(127); // null blocks
        return blocks;
    }());
    script.Hold(4);
}

} // namespace caption::patterns
