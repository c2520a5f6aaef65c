// SPDX-License-Identifier: MIT
// Single lines of text on a sheet, drawn like captions.
#ifndef KOVA_CAPTION_DRAWING_LABEL_H
#define KOVA_CAPTION_DRAWING_LABEL_H

#include <map>
#include <string>
#include <utility>

#include "cues/cue.h"
#include "drawing/display.h"
#include "drawing/picture.h"
#include "text/fonts.h"

namespace caption
{

// Draws the line with its top left corner at (x, y), and returns its width.
int DrawLine(Display &display, Fonts &fonts, const Line &line, int height, int x, int y);

// Labels without an edge in the display's text colour. Each is drawn once and kept.
class Labels
{
public:
    // The display and the fonts must exist until the last new label is drawn.
    Labels(Display &display, Fonts &fonts) : display_(display), fonts_(fonts)
    {
    }

    // As wide as the text and as high as the lines of its font. For a text and a height not seen before it
    // clears the display and sets its edge to none.
    const Picture &Get(const std::string &text, int height);

    void Put(Picture &target, const std::string &text, int height, int x, int y)
    {
        PasteEnlarged(target, Get(text, height), x, y, 1);
    }

private:
    Display &display_;
    Fonts &fonts_;
    std::map<std::pair<std::string, int>, Picture> labels_;
};

} // namespace caption

#endif
