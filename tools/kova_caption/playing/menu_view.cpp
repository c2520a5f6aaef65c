// SPDX-License-Identifier: MIT
#include "playing/menu_view.h"

#include <algorithm>
#include <chrono>

#include "drawing/label.h"

namespace caption
{

// Colours of the captions' palette.
static const Color g_panel = CaptionColor(KOVA_CAPTIONS_BLACK);
static const Color g_bar = CaptionColor(0x06);    // 0,1,2
static const Color g_bright = CaptionColor(0x3F); // 3,3,3
static const Color g_dim = CaptionColor(0x2A);    // 2,2,2

static const std::size_t g_rows = 9; // of a column; there are two columns

// Lines that need no wrapping at 200 %.
static const char g_sample[] = "This is a caption.\nIs the tide in?";
static const char g_title[] = "Caption settings";
static const char g_help[] =
    "arrows: choose and change    r: as provided    Enter: save    Escape: leave without saving";

MenuView::MenuView(const Options &options)
    : options_(ForCaptions(options)), fonts_(options_), display_(options_),
      captions_(options_, fonts_, {}, display_)
{
}

static int RowHeight(Size plane)
{
    return plane.height / 24;
}

static int TextHeight(Size plane)
{
    return std::max(8, RowHeight(plane) * 2 / 3);
}

void MenuView::Put(const std::string &text, Color color, int x, int y)
{
    Run run = {text, {}};

    run.style.color = color;
    DrawLine(display_, fonts_, {run}, TextHeight(options_.plane), x, y);
}

void MenuView::DrawRow(const Menu &menu, std::size_t row)
{
    const Size plane = options_.plane;
    const int height = RowHeight(plane);
    const int width = plane.width * 9 / 20; // of a column
    const int x = plane.width / 20 + int(row / g_rows) * width;
    const int y = plane.height / 20 + height * (2 + int(row % g_rows));
    const bool chosen = row == menu.chosen();
    const int gap = height / 3;
    const int top = y + (height - TextHeight(plane) * 5 / 4) / 2;

    if (chosen) display_.Fill({x, y, width, height}, g_bar);
    Put(menu.rows()[row].label, chosen ? g_bright : g_dim, x + gap, top);
    Put(menu.Value(row), g_bright, x + width / 2, top);
}

void MenuView::DrawMenu(const Menu &menu)
{
    const Size plane = options_.plane;
    const int height = RowHeight(plane);
    const int x = plane.width / 20;
    const int y = plane.height / 20;

    display_.SetEdge(KOVA_TEXT_ENONE);
    display_.Fill({x, y, plane.width - 2 * x, height * (4 + int(g_rows))}, g_panel);
    Put(g_title, g_bright, x + height / 3, y + height / 3);
    for (std::size_t row = 0; row < menu.rows().size(); ++row) DrawRow(menu, row);
    Put(g_help, g_dim, x + height / 3, y + height * (2 + int(g_rows)) + height / 2);
}

// Flashing goes by the steady clock.
static std::int64_t Microseconds(SteadyTime time)
{
    return std::chrono::duration_cast<std::chrono::microseconds>(time.time_since_epoch()).count();
}

void MenuView::Show(const Menu &menu)
{
    display_.Hold();
    DrawMenu(menu);
    display_.Release();
    // The menu's letters have changed the display's font.
    captions_.SetSettings(menu.settings());
    captions_.Redraw();
    Continue();
}

SteadyTime MenuView::Continue()
{
    const std::int64_t now = Microseconds(std::chrono::steady_clock::now());

    captions_.Preview(g_sample, now);
    const std::int64_t next = captions_.NextDraw();
    if (next == KOVA_CAPTIONS_NEVER) return SteadyTime::max();
    return SteadyTime(std::chrono::microseconds(next));
}

Picture MenuView::Draw(const Menu &menu)
{
    Show(menu);
    return Over(display_.Present(), options_.background.value_or(g_sheetBackground));
}

Picture MenuPicture(const Menu &menu, const Options &options)
{
    Options memory = options;
    memory.headless = true;
    return MenuView(memory).Draw(menu);
}

} // namespace caption
