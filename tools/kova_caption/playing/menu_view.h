// SPDX-License-Identifier: MIT
// Draws the menu of the viewer's settings, and below it a caption that has them.
#ifndef KOVA_CAPTION_PLAYING_MENU_VIEW_H
#define KOVA_CAPTION_PLAYING_MENU_VIEW_H

#include "base/options.h"
#include "drawing/caption_renderer.h"
#include "drawing/display.h"
#include "drawing/picture.h"
#include "playing/menu.h"
#include "text/fonts.h"

namespace caption
{

class MenuView
{
public:
    // Starts DirectFB. Of the options it uses plane, background and headless.
    explicit MenuView(const Options &options);

    void Show(const Menu &menu);

    // What flashes in the caption goes on to its next phase. Returns when to call it again.
    SteadyTime Continue();

    // The same as a picture over a background.
    Picture Draw(const Menu &menu);

private:
    void DrawMenu(const Menu &menu);
    void DrawRow(const Menu &menu, std::size_t row);
    void Put(const std::string &text, Color color, int x, int y);

    const Options options_;
    Fonts fonts_; // of the menu
    Display display_;
    CaptionRenderer captions_;
};

// In memory, even with an X server.
Picture MenuPicture(const Menu &menu, const Options &options);

} // namespace caption

#endif
