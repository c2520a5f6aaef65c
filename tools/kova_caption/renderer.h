// Lays a caption out on the plane and has the display draw it.
#ifndef KOVA_CAPTION_RENDERER_H
#define KOVA_CAPTION_RENDERER_H

#include <vector>

#include "display.h"
#include "fonts.h"
#include "options.h"
#include "cue.h"

namespace caption
{

struct Drawn {
    Size size;             // of the block of text, edges included
    std::size_t lines = 0; // drawn
    std::size_t left = 0;  // lines that found no room
};

class Renderer
{
public:
    Renderer(const Options &options, Display &display, Fonts &fonts);

    // Draws the lines bottom centre within the safe area, breaking those that are too wide. Lines that do not
    // fit the height are left out from the end, and counted.
    Drawn Draw(const std::vector<Line> &lines);

private:
    struct Row {
        std::vector<Piece> pieces;
        int width = 0;
        Reach reach;
    };

    Row Prepare(const Line &line);
    void DrawRow(const Row &row, int x, int y);
    int Width(const Line &line);

    Options options_;
    Display &display_;
    Fonts &fonts_;
};

} // namespace caption

#endif
