// SPDX-License-Identifier: MIT
#include "playing/menu_view.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <new>

#include "drawing/directfb_system.h"
#include "drawing/label.h"
#include "text/font_files.h"

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

// In memory layer 1 in index mode, as sets have it: there text can be translucent. In a window every string of
// layer 1 is a flip, which takes seconds for a menu, and layers 2 and 3 show no index mode.
static Options MenuOptions(Options options)
{
    options.layer = KOVA_GRAPHIC_LAYER1;
    ChooseDirectFBSystem(options);
    const char *const system = std::getenv("DFBARGS");
    const bool window = system && std::strstr(system, "system=x11");
    if (window) options.layer = KOVA_GRAPHIC_LAYER2;
    options.mode = window ? ColorMode::PALETTE : ColorMode::INDEX;
    return options;
}

// The default style is drawn cell by cell, for which a font of one width is made.
static std::string DefaultFile(const Fonts &fonts)
{
    const std::string file = FileOfStyle(KOVA_CAPTIONS_FONT_MONO_SANS);
    return file.empty() ? FileOf(fonts.First()) : file;
}

// The files of the eight styles: those that differ take slots of the display, of which the menu has one.
static KovaCaptionsRenderer *CreateRenderer(const Options &options, const Fonts &fonts, Display &display)
{
    KovaCaptionsScreen screen;
    std::array<std::string, KOVA_CAPTIONS_FONTS> files;

    Kova_Captions_GetDefaultScreen(&screen);
    for (unsigned i = 0; i < files.size(); ++i) {
        files[i] = i == KOVA_CAPTIONS_FONT_DEFAULT ? DefaultFile(fonts) : FileOfStyle(i);
        if (!files[i].empty()) screen.fonts[i] = files[i].c_str();
    }
    screen.display = display.ShareWithCaptions();
    screen.context = display.context();
    screen.plane_width = std::uint32_t(options.plane.width);
    screen.plane_height = std::uint32_t(options.plane.height);
    screen.layer = std::uint8_t(options.layer);
    screen.color_mode =
        options.Mode() == ColorMode::INDEX ? KOVA_CAPTIONS_INDEX_COLORS : KOVA_CAPTIONS_PALETTE_COLORS;
    KovaCaptionsRenderer *const renderer = Kova_Captions_CreateRenderer(&screen);
    if (!renderer) throw std::bad_alloc();
    return renderer;
}

MenuView::MenuView(const Options &options)
    : options_(MenuOptions(options)), fonts_(options_), display_(options_),
      captions_(CreateRenderer(options_, fonts_, display_), Kova_Captions_DestroyRenderer)
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
    Kova_Captions_SetSettings(captions_.get(), &menu.settings());
    Kova_Captions_Redraw(captions_.get());
    Continue();
}

SteadyTime MenuView::Continue()
{
    const std::int64_t now = Microseconds(std::chrono::steady_clock::now());

    Kova_Captions_Preview(captions_.get(), g_sample, now);
    const std::int64_t next = Kova_Captions_NextDraw(captions_.get());
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
