// SPDX-License-Identifier: MIT
// A sample text as a window of style 1, but centred.
#include "look.h"

#include <string.h>

namespace captions
{

// The next character, as U+FFFD where there is none of the Basic Multilingual Plane.
static uint16_t NextCharacter(const unsigned char *&text)
{
    constexpr uint16_t kUnknown = 0xFFFD;
    const unsigned char lead = *text++;
    const int more = lead < 0x80 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : -1;
    unsigned character = more <= 0 ? lead : lead & (0x3Fu >> more);

    if (more < 0) return kUnknown;
    for (int i = 0; i < more; ++i) {
        if ((*text & 0xC0) != 0x80) return kUnknown;
        character = character << 6 | (*text++ & 0x3F);
    }
    return character > 0xFFFF ? kUnknown : uint16_t(character);
}

static void FillCells(const View &view, const unsigned char *text, Panel &panel)
{
    KovaCaptionsPen pen = {};
    pen.foreground = KOVA_CAPTIONS_WHITE;
    pen.size = KOVA_CAPTIONS_PEN_STANDARD;
    pen.offset = KOVA_CAPTIONS_NORMAL;
    Stylist stylist(view);
    Frame &frame = panel.frame;
    int row = 0, column = 0;

    while (*text && row < kPanelRows) {
        const uint16_t character = NextCharacter(text);
        if (character == '\n') {
            ++row;
            column = 0;
            continue;
        }
        if (column >= view.columns) continue;
        panel.cells[row][column++] = stylist.Style(pen, character, false);
        frame.rows = uint8_t(row + 1);
        if (column > frame.columns) frame.columns = uint8_t(column);
    }
}

void ShowText(const View &view, const char *text, Scene &scene)
{
    Panel &panel = scene.panels[0];
    Frame &frame = panel.frame;
    const int percent = view.settings.size;

    FillCells(view, reinterpret_cast<const unsigned char *>(text), panel);
    if (frame.columns == 0) return;
    const int most_columns = view.columns * 100 / percent, most_rows = kPanelRows * 100 / percent;
    if (frame.columns > most_columns || frame.rows > most_rows) Wrap(panel, most_columns, most_rows);
    KovaCaptionsDefinition bottom = {};
    bottom.relative = 1;
    bottom.anchor_horizontal = 50;
    bottom.anchor_vertical = 99;
    bottom.anchor_point = 7;
    KovaCaptionsWindowAttributes window = {};
    window.fill_opacity = KOVA_CAPTIONS_TRANSPARENT;
    Kova_Captions_ApplyToWindow(&view.settings, &window, &window);
    frame.area = PlaceWindow(view.safe, view.units, bottom, frame.rows, frame.columns, percent);
    frame.rect = frame.band = frame.shown = frame.area;
    frame.exists = !IsEmpty(frame.area);
    frame.fill = Stylist(view).Color(window.fill_opacity, window.fill_color);
    frame.justify = KOVA_CAPTIONS_JUSTIFY_CENTER;
    scene.flash_since = KOVA_CAPTIONS_NO_TIME;
}

} // namespace captions
