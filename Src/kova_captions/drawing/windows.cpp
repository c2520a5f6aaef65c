// SPDX-License-Identifier: MIT
// Windows of CEA-708 as panels.
#include "look.h"
#include "motion.h"

namespace captions
{

static bool IsVertical(const KovaCaptionsWindowAttributes &attributes)
{
    return attributes.print_direction >= KOVA_CAPTIONS_TOP_TO_BOTTOM;
}

static uint8_t KindOf(const KovaCaptionsWindowCell &cell)
{
    return cell.pen.text_tag == KOVA_CAPTIONS_TAG_HIDDEN && cell.kind == KOVA_CAPTIONS_CHARACTER
               ? uint8_t(KOVA_CAPTIONS_TRANSPARENT_SPACE)
               : cell.kind;
}

static void FillCells(const View &view, const KovaCaptionsWindow &window, Panel &panel)
{
    const bool vertical = IsVertical(window.attributes);
    Stylist stylist(view);

    for (int row = 0; row < panel.frame.rows; ++row) {
        for (int column = 0; column < panel.frame.columns; ++column) {
            const KovaCaptionsWindowCell &from = window.cells[row][column];
            Cell &cell = panel.cells[row][column];

            if (KindOf(from) == KOVA_CAPTIONS_EMPTY) continue;
            cell = stylist.Style(from.pen, from.character, vertical);
            if (KindOf(from) != KOVA_CAPTIONS_TRANSPARENT_SPACE) continue;
            // The character stays: it says where a row may be broken.
            cell.flags = uint8_t(kTaken | (cell.flags & kMono));
        }
    }
}

// Vertical rows are justified by whole cells.
static void JustifyColumn(Panel &panel, int column, uint8_t justify)
{
    const int rows = panel.frame.rows;
    int first = rows, last = -1;

    for (int row = 0; row < rows; ++row) {
        if (!panel.cells[row][column].flags) continue;
        if (row < first) first = row;
        last = row;
    }
    if (last < 0) return;
    const int used = last - first + 1;
    const int start = justify == KOVA_CAPTIONS_JUSTIFY_RIGHT ? rows - used : (rows - used) / 2;
    Cell cells[kPanelRows] = {};
    for (int row = first; row <= last; ++row) cells[start + row - first] = panel.cells[row][column];
    for (int row = 0; row < rows; ++row) panel.cells[row][column] = cells[row];
}

static void Justify(const KovaCaptionsWindowAttributes &attributes, Panel &panel)
{
    const bool starts =
        attributes.justify == KOVA_CAPTIONS_JUSTIFY_LEFT || attributes.justify == KOVA_CAPTIONS_JUSTIFY_FULL;

    if (starts) return;
    if (!IsVertical(attributes)) {
        panel.frame.justify = attributes.justify;
        return;
    }
    for (int column = 0; column < panel.frame.columns; ++column) {
        JustifyColumn(panel, column, attributes.justify);
    }
}

static void Place(const View &view, const KovaCaptionsWindow &window, Panel &panel)
{
    const KovaCaptionsWindowAttributes &provided = window.attributes;
    KovaCaptionsWindowAttributes attributes;
    Frame &frame = panel.frame;

    Kova_Captions_ApplyToWindow(&view.settings, &provided, &attributes);
    frame.area =
        PlaceWindow(view.safe, view.units, window.definition, frame.rows, frame.columns, view.settings.size);
    frame.rect = frame.band = frame.area;
    if (HasTallRow(panel)) frame.band = WithOverhang(frame.rect, frame.area.height / frame.rows);
    frame.exists = !IsEmpty(frame.area);
    frame.priority = window.definition.priority;
    const Stylist stylist(view);
    frame.fill = stylist.Color(attributes.fill_opacity, attributes.fill_color);
    frame.border_type = attributes.border_type;
    frame.border_color = stylist.Color(KOVA_CAPTIONS_SOLID, attributes.border_color);
    if (frame.border_type != KOVA_CAPTIONS_EDGE_NONE) {
        frame.border_width = uint8_t(BorderWidth(frame.rect, frame.rows));
    }
}

static void ShowWindow(View &view, const KovaCaptionsWindow &window, const Panel &before, Panel &panel,
                       uint8_t &alpha)
{
    const KovaCaptionsDefinition &definition = window.definition;
    Frame &frame = panel.frame;

    if (!window.exists || (!window.visible && window.effect.kind == KOVA_CAPTIONS_STILL)) return;
    // Larger than the safe area by the stream's own numbers. [79.102(e)(4)]
    if (definition.columns > view.columns || definition.rows > kPanelRows) return;
    if (definition.columns == 0 || definition.rows == 0) return;
    frame.rows = definition.rows;
    frame.columns = definition.columns;
    FillCells(view, window, panel);
    const int most_columns = view.columns * 100 / view.settings.size;
    const int most_rows = kPanelRows * 100 / view.settings.size;
    if (frame.columns > most_columns || frame.rows > most_rows) Wrap(panel, most_columns, most_rows);
    Justify(window.attributes, panel);
    Place(view, window, panel);
    ApplyEffect(view, window.effect, window.visible, frame, alpha);
    ApplyScroll(view, window.scroll, 0, before, panel);
}

void ShowService(View &view, const KovaCaptionsService &service, const KovaCaptionsWindow *windows,
                 const Scene &before, Scene &scene)
{
    if (service.blanked) return;
    for (int i = 0; i < kPanels; ++i) {
        ShowWindow(view, windows[i], before.panels[i], scene.panels[i], scene.alpha[i]);
    }
    scene.flash_since = service.status.flash_since;
}

} // namespace captions
