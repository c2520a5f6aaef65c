// SPDX-License-Identifier: MIT
#include "paint.h"

#include <string.h>

namespace captions
{

void Painter::Start(const KovaCaptionsScreen &screen, Palette *palette, Fonts *fonts)
{
    m_screen = &screen;
    m_palette = palette;
    m_fonts = fonts;
}

// -------------------------------------------------------------------------------------------------- Clips and fills

static KovaTextRect_t ForDisplay(const Rect &rect)
{
    return {kova_uint32(rect.x), kova_uint32(rect.y), kova_uint32(rect.width), kova_uint32(rect.height)};
}

void Painter::SetClip(const Rect *rect)
{
    KovaTextRect_t clip = rect ? ForDisplay(*rect) : KovaTextRect_t();
    m_screen->display->SetClip(m_screen->display, m_screen->context, rect ? &clip : nullptr);
}

// Coordinates are unsigned; what is left of the plane or above it is cut off here.
void Painter::Fill(const Rect &rect, const Ink &ink)
{
    const Rect inside = Intersection(rect, m_plane);
    if (IsEmpty(inside)) return;
    KovaTextRect_t target = ForDisplay(inside);
    m_screen->display->FillRect(m_screen->display, m_screen->context, &target,
                                m_palette->Value(*m_screen, ink, m_panel));
}

// ------------------------------------------------------------------------------------------- Border, fill, backgrounds

// Outside the panel. A shadow is the panel's own shape, moved, and the panel covers the rest of it.
void Painter::DrawBorder(const Frame &frame)
{
    const Ink light = Over(frame.border_color, kNoInk, m_economy);
    const Ink dark = Over(HalfColor(frame.border_color), kNoInk, m_economy);
    const Rect outer = Grown(frame.rect, frame.border_width);
    const int width = frame.border_width;
    const Rect left = {outer.x, outer.y, width, outer.height};
    const Rect right = {frame.rect.Right(), outer.y, width, outer.height};
    const Rect top = {frame.rect.x, outer.y, frame.rect.width, width};
    const Rect bottom = {frame.rect.x, frame.rect.Bottom(), frame.rect.width, width};
    const bool raised = frame.border_type != KOVA_CAPTIONS_EDGE_DEPRESSED;

    switch (frame.border_type) {
    case KOVA_CAPTIONS_EDGE_RAISED:
    case KOVA_CAPTIONS_EDGE_DEPRESSED:
        Fill(left, raised ? light : dark);
        Fill(top, raised ? light : dark);
        Fill(right, raised ? dark : light);
        Fill(bottom, raised ? dark : light);
        break;
    case KOVA_CAPTIONS_EDGE_UNIFORM:
        Fill(left, light);
        Fill(top, light);
        Fill(right, light);
        Fill(bottom, light);
        break;
    case KOVA_CAPTIONS_EDGE_SHADOW_LEFT:
        Fill(Moved(frame.rect, -width, width), light);
        break;
    case KOVA_CAPTIONS_EDGE_SHADOW_RIGHT:
        Fill(Moved(frame.rect, width, width), light);
        break;
    default:
        break;
    }
}

void Painter::DrawFill(const Panel &panel)
{
    const Frame &frame = panel.frame;
    const Ink fill = FillInk(frame, m_economy);

    if (!frame.fills_rows) {
        Fill(frame.rect, fill);
        return;
    }
    if (frame.fill >> 6 == KOVA_CAPTIONS_TRANSPARENT) return;
    for (int row = -1; row <= frame.rows; ++row) {
        const Cell *const cells = RowOf(panel, row);
        int first = 0, last = CellsOf(frame);
        while (first < last && !cells[first].flags) ++first;
        while (last > first && !cells[last - 1].flags) --last;
        if (first < last) Fill(Intersection(CellRect(frame, row, first, last), frame.band), fill);
    }
}

CellInks Painter::Inks(const Cell &cell) const
{
    return InksOf(*m_frame, cell, m_economy);
}

// Cells of a column that scrolls out of sight are beside their rows.
static const Cell &CellOf(const Panel &panel, int row, int cell)
{
    static const Cell none = {};
    const Frame &frame = panel.frame;
    const int count = CellsOf(frame);
    const bool beside = (frame.leaving == kLeftOfFirstColumn && cell == -1) ||
                        (frame.leaving == kRightOfLastColumn && cell == count);

    if (beside && row >= 0 && row < frame.rows) return frame.leaver[row];
    return cell < 0 || cell >= count ? none : RowOf(panel, row)[cell];
}

// How far justification moves a row, in half cells.
static int ShiftOf(const Panel &panel, int row)
{
    const Frame &frame = panel.frame;
    const Cell *const cells = RowOf(panel, row);
    const int count = CellsOf(frame);
    int first = 0, last = count;

    if (frame.justify == KOVA_CAPTIONS_JUSTIFY_LEFT) return 0;
    while (first < last && !cells[first].flags) ++first;
    while (last > first && !cells[last - 1].flags) --last;
    const int right = 2 * (count - last);
    return frame.justify == KOVA_CAPTIONS_JUSTIFY_RIGHT ? right : count - last - first;
}

static Rect CellsRect(const Panel &panel, int row, int first, int last)
{
    const Frame &frame = panel.frame;
    const Rect rect = CellRect(frame, row, 0, 1);
    const int shift = ShiftOf(panel, row) - 2 * frame.margin;
    const int left = HalfEdge(frame.area.x, frame.area.width, frame.columns, 2 * first + shift);
    const int right = HalfEdge(frame.area.x, frame.area.width, frame.columns, 2 * last + shift);
    return {left + frame.dx, rect.y, right - left, rect.height};
}

// Runs of equal backgrounds: behind cells, or behind text of its natural width.
void Painter::DrawBackgrounds(const Panel &panel, int row)
{
    for (int i = 0; i < m_run_count;) {
        const Run &run = m_runs[i];
        const Cell &cell = CellOf(panel, run.row, run.first);
        const Rect place = CellRect(panel.frame, run.row, 0, 1);
        int right = run.right;

        ++i;
        if (run.row != row || !(cell.flags & kBackground)) continue;
        for (; i < m_run_count && m_runs[i].row == row && m_runs[i].left == right; ++i) {
            const Cell &next = CellOf(panel, row, m_runs[i].first);
            if (!(next.flags & kBackground) || next.background != cell.background) break;
            right = m_runs[i].right;
        }
        Fill(Intersection({run.left, place.y, right - run.left, place.height}, panel.frame.band),
             Inks(cell).back);
    }
}

// -------------------------------------------------------------------------------------------------------------- Runs

static bool IsSamePen(const Cell &first, const Cell &second)
{
    return first.foreground == second.foreground && first.background == second.background &&
           first.edge == second.edge && first.font == second.font && first.flags == second.flags;
}

// A piece is cells next to each other of one kind: in their cells, or of their natural width.
void Painter::AddPiece(const Panel &panel, int row, int first, int last)
{
    for (int i = first; i < last && m_run_count < kMostRuns;) {
        const Cell &cell = CellOf(panel, row, i);
        const Glyph glyph = m_fonts->Find(cell, m_row_height);
        Run &run = m_runs[m_run_count++];
        int end = i + 1;

        run.mono = cell.flags & kMono;
        while (!run.mono && end < last) {
            const Cell &next = CellOf(panel, row, end);
            if (!IsSamePen(cell, next)) break;
            if (!IsSame(m_fonts->Find(next, m_row_height).key, glyph.key)) break;
            ++end;
        }
        const Rect place = CellsRect(panel, row, i, end);
        run.row = int16_t(row);
        run.first = int16_t(i);
        run.count = int16_t(end - i);
        run.piece_end = int16_t(last);
        run.left = run.text_left = place.x;
        run.right = run.text_right = place.Right();
        run.scale = kNaturalWidth;
        run.key = glyph.key;
        i = end;
    }
}

void Painter::AddRuns(const Panel &panel, int row)
{
    const int count = CellsOf(panel.frame);

    for (int i = -1; i <= count;) {
        const Cell &cell = CellOf(panel, row, i);
        int end = i + 1;
        if (cell.flags) {
            const auto belongs = [&](const Cell &next) {
                return next.flags && (next.flags & kMono) == (cell.flags & kMono);
            };
            while (end <= count && belongs(CellOf(panel, row, end))) ++end;
            AddPiece(panel, row, i, end);
        }
        i = end;
    }
}

size_t Painter::TextOf(const Panel &panel, const Run &run, char *text) const
{
    size_t bytes = 0;
    for (int i = run.first; i < run.first + run.count; ++i) {
        const Cell &cell = CellOf(panel, run.row, i);
        const bool blank = cell.character == 0 || cell.character == 0xA0;
        const uint16_t character = blank ? uint16_t(' ') : m_fonts->Find(cell, m_row_height).character;
        bytes += size_t(ToUtf8(character, text + bytes));
    }
    return bytes;
}

// Characters take three bytes at most, so the longest row stays below the 255 that the display draws.
constexpr size_t kLongestText = 3 * kPanelColumns;

static unsigned OrderOf(const FontKey &key)
{
    return unsigned(key.font) << 24 | unsigned(key.height) << 16 | unsigned(key.italics) << 8 | key.wide;
}

// Calls the action for all runs of one font after the other, because each change opens a font file. The order does not
// depend on which other runs there are, so that letters that overlap do it in every redraw alike.
template <typename Action> void Painter::ForEachKey(Action action)
{
    constexpr unsigned kEnd = unsigned(kNoFont) << 24;

    for (unsigned key = 0;;) {
        unsigned next = kEnd;
        for (int i = 0; i < m_run_count; ++i) {
            const unsigned order = OrderOf(m_runs[i].key);
            if (order >= key && order < next) next = order;
        }
        if (next == kEnd) return;
        for (int i = 0; i < m_run_count; ++i) {
            if (OrderOf(m_runs[i].key) == next) action(m_runs[i]);
        }
        key = next + 1;
    }
}

// Puts text of its natural width into the place of its cells: justified there, and narrowed if it does not fit. The
// background reaches a little beyond it on both sides.
void Painter::PlacePiece(const Panel &panel, Run *runs, int count)
{
    const Rect place = CellsRect(panel, runs[0].row, runs[0].first, runs[0].piece_end);
    const int cells = runs[0].piece_end - runs[0].first;
    const int margin = place.width / cells / 4;
    const int room = place.width - 2 * margin;
    int total = 0;

    for (int i = 0; i < count; ++i) total += runs[i].text_right;
    const kova_uint32 scale =
        total > room ? kNaturalWidth * kova_uint32(room > 0 ? room : 1) / kova_uint32(total) : kNaturalWidth;
    const int width = total > room ? room : total;
    const int rest = place.width - width - 2 * margin;
    const int indent = panel.frame.justify == KOVA_CAPTIONS_JUSTIFY_RIGHT    ? rest
                       : panel.frame.justify == KOVA_CAPTIONS_JUSTIFY_CENTER ? rest / 2
                                                                             : 0;
    int x = place.x + indent + margin, passed = 0;
    const int start = x;
    for (int i = 0; i < count; ++i) {
        passed += runs[i].text_right;
        runs[i].left = runs[i].text_left = x;
        x = total > room ? start + int(int64_t(passed) * room / total) : start + passed;
        runs[i].right = runs[i].text_right = x;
        runs[i].scale = scale;
    }
    runs[0].left -= margin;
    runs[count - 1].right += margin;
}

void Painter::PlaceRuns(const Panel &panel)
{
    // Measured, a run has its width as the right end of its text until it is placed.
    ForEachKey([&](Run &run) {
        char text[kLongestText];
        if (run.mono || !m_fonts->Select(run.key, kNaturalWidth)) return;
        run.text_right = m_fonts->Width(text, TextOf(panel, run, text));
    });
    for (int i = 0; i < m_run_count;) {
        int end = i + 1;
        while (end < m_run_count && m_runs[end].row == m_runs[i].row && !m_runs[i].mono &&
               m_runs[end].piece_end == m_runs[i].piece_end) {
            ++end;
        }
        if (!m_runs[i].mono && m_runs[i].key.font != kNoFont) PlacePiece(panel, m_runs + i, end - i);
        i = end;
    }
}

// -------------------------------------------------------------------------------------------------------------- Text

// Where each edge draws its letters beside the position it is given.
static const struct {
    KovaTextEdgeType_e type;
    int dx, dy;
} kEdges[] = {{KOVA_TEXT_ENONE, 0, 0},           {KOVA_TEXT_ERAISED, 2, 0},
              {KOVA_TEXT_EDEPRESSED, 0, 0},      {KOVA_TEXT_EUNIFORM, 1, 1},
              {KOVA_TEXT_ELEFTDROPSHADOW, 0, 0}, {KOVA_TEXT_ERIGTHDROPSHADOW, 0, 0}};

void Painter::DrawText(const Cell &cell, const CellInks &inks, const char *text, size_t bytes, int x, int y)
{
    pKovaITextDisplay_t const display = m_screen->display;
    const int8_t context = m_screen->context;
    const unsigned kinds = sizeof kEdges / sizeof kEdges[0];
    const auto &edge = kEdges[EdgeOf(cell) < kinds ? EdgeOf(cell) : 0];
    const void *const units = text;

    display->SetTextForeColor(display, context, m_palette->Value(*m_screen, inks.text, m_panel));
    display->SetEdgeType(display, context, edge.type);
    if (edge.type != KOVA_TEXT_ENONE) {
        display->SetEdgeColor(display, context, m_palette->Value(*m_screen, inks.edge, m_panel));
    }
    display->DrawString(display, context, static_cast<const unsigned short *>(units), kova_uint8(bytes),
                        kova_uint32(x - edge.dx), kova_uint32(y - edge.dy), KOVA_TEXT_UTF8,
                        KOVA_TEXT_TOPLEFT);
}

// Of all cells alike, although some are a pixel wider: each change opens a font file.
static kova_uint32 CellScale(const Frame &frame, const FontKey &key, Fonts &fonts)
{
    return fonts.ScaleFor(key, frame.area.width / frame.columns);
}

// In the middle of its cell. The icon is two small letters in one cell.
void Painter::DrawGlyph(const Panel &panel, const Run &run, const Cell &cell, int base_line, int ascent)
{
    const bool icon = cell.character == kCaptionIcon;
    const int room = run.right - run.left;
    char text[4] = "CC";
    const size_t bytes = icon ? 2 : TextOf(panel, run, text);
    int width = m_fonts->Width(text, bytes);

    if (width > room) {
        const kova_uint32 scale =
            CellScale(panel.frame, run.key, *m_fonts) * kova_uint32(room) / kova_uint32(width);
        if (m_fonts->Select(run.key, scale)) width = m_fonts->Width(text, bytes);
    }
    DrawText(cell, Inks(cell), text, bytes, run.left + (room - width) / 2, base_line - ascent);
}

void Painter::DrawUnderline(const Panel &panel, const Run &run, int base_line)
{
    const Cell &cell = CellOf(panel, run.row, run.first);
    int top, thickness;

    m_fonts->Underline(run.key, &top, &thickness);
    Fill(Intersection({run.text_left, base_line + top, run.text_right - run.text_left, thickness},
                      panel.frame.band),
         Inks(cell).text);
}

// Raised and lowered text, in pixels down.
static int Lowered(const Cell &cell, int row_height)
{
    switch (cell.edge >> 6) {
    case KOVA_CAPTIONS_SUBSCRIPT:
        return row_height / 8;
    case KOVA_CAPTIONS_SUPERSCRIPT:
        return -row_height / 4;
    default:
        return 0;
    }
}

void Painter::DrawRun(const Panel &panel, const Run &run, const Rect &rect)
{
    const Cell &cell = CellOf(panel, run.row, run.first);
    const Rect place = CellRect(panel.frame, run.row, 0, 1);
    const Rect reach = Intersection(RowReach(panel, run.row), rect);

    if (!HasText(cell) && run.mono) return;
    if (cell.foreground >> 6 == KOVA_CAPTIONS_TRANSPARENT || IsEmpty(reach)) return;
    SetClip(&reach);
    if (run.mono && cell.character == kSolidBlock) {
        Fill({run.left, place.y, run.right - run.left, place.height}, Inks(cell).text);
        return;
    }
    // A phase of flashing without letters. In index mode the palette sees to it.
    if (panel.frame.off && (Inks(cell).text.off & 255) == 0) return;
    if (!m_fonts->Select(run.key, run.mono ? CellScale(panel.frame, run.key, *m_fonts) : run.scale)) return;
    const int base_line = place.y + place.height * 4 / 5 + Lowered(cell, place.height);
    const int ascent = m_fonts->Ascent(run.key);
    if (cell.flags & kUnderline) DrawUnderline(panel, run, base_line);
    if (run.mono) {
        const bool glyph = cell.character != 0 && cell.character != ' ' && cell.character != 0xA0;
        if (glyph) DrawGlyph(panel, run, cell, base_line, ascent);
        return;
    }
    char text[kLongestText];
    const size_t bytes = TextOf(panel, run, text);
    DrawText(cell, Inks(cell), text, bytes, run.text_left, base_line - ascent);
}

// ------------------------------------------------------------------------------------------------------------ Redraw

void Painter::DrawPanel(const Panel &panel, const Rect &rect)
{
    const Frame &frame = panel.frame;
    m_frame = &frame;

    SetClip(&rect);
    DrawBorder(frame);
    DrawFill(panel);
    m_run_count = 0;
    for (int row = -1; row <= frame.rows; ++row) {
        if (!IsEmpty(Intersection(RowReach(panel, row), rect))) AddRuns(panel, row);
    }
    if (m_run_count == 0) return;
    PlaceRuns(panel);
    for (int row = -1; row <= frame.rows; ++row) DrawBackgrounds(panel, row);
    ForEachKey([&](Run &run) { DrawRun(panel, run, rect); });
}

void Painter::Draw(const View &view, const Scene &scene, const Damage &damage)
{
    pKovaITextDisplay_t const display = m_screen->display;
    constexpr int kPriorities = 8;

    m_plane = view.plane;
    m_economy = scene.economy;
    m_row_height = view.safe.height / kPanelRows;
    m_fonts->Deselect();
    display->SetFlip(display, 0);
    // Blit waits for a flip that is still to come, because it copies what was flipped last. A clip that is set before would
    // cancel that flip.
    for (int i = 0; i < damage.shift_count; ++i) {
        const Shift &shift = damage.shifts[i];
        KovaTextRect_t from = ForDisplay(shift.from);
        display->Blit(display, m_screen->context, &from, kova_uint32(shift.x), kova_uint32(shift.y));
    }
    for (int i = 0; i < damage.count; ++i) {
        const Rect &rect = damage.rects[i];
        if (IsEmpty(rect)) continue;
        SetClip(&rect);
        m_panel = kNoPanel;
        Fill(rect, kNoInk);
        for (int priority = kPriorities - 1; priority >= 0; --priority) {
            for (int j = 0; j < kPanels; ++j) {
                const Frame &frame = scene.panels[j].frame;
                if (!frame.exists || frame.priority != priority) continue;
                const Rect part = Intersection(Intersection(OuterRect(frame), frame.shown), rect);
                if (IsEmpty(part)) continue;
                m_panel = frame.fades ? uint8_t(j) : kNoPanel;
                DrawPanel(scene.panels[j], part);
            }
        }
    }
    SetClip(nullptr);
    display->SetFlip(display, 1);
}

} // namespace captions
