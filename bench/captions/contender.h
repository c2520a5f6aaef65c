// SPDX-License-Identifier: MIT
// One way to draw captions. Each is an executable of its own, so that its memory is its own.
#ifndef BENCH_CAPTIONS_CONTENDER_H
#define BENCH_CAPTIONS_CONTENDER_H

#include <cstdint>
#include <vector>

enum Edge_e {
    EDGE_NONE,
    EDGE_RAISED,
    EDGE_DEPRESSED,
    EDGE_UNIFORM,
    EDGE_LEFT_SHADOW,
    EDGE_RIGHT_SHADOW,
    EDGES
};

constexpr int WIDTH = 1920, HEIGHT = 1080;
constexpr int FONT_SIZE = 48; // pixels of the em square
constexpr const char *FONT_FILE = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

// Two lines of 32 characters. The next caption is another one, so that nobody gets away with the last
// picture.
constexpr const char *CAPTIONS[2][2] = {
    {"The quick brown fox jumps over a", "lazy dog while nobody is looking"},
    {"Pack my box with five dozen jugs", "of liquid veneer and do be quick"},
};
constexpr int LINE_LENGTH = 32;
constexpr int LEFT = 400, TOPS[2] = {900, 960};
// What is wiped before a caption is drawn.
constexpr int BOX_X = 390, BOX_Y = 890, BOX_WIDTH = 1140, BOX_HEIGHT = 140;

// A pass of a string: its place beside the text's, and whether it is drawn in the edge colour.
struct Pass_t {
    int iX, iY;
    bool bEdge;
};

// The passes the library draws, for those who draw in passes too.
inline std::vector<Pass_t> Passes(Edge_e eEdge)
{
    switch (eEdge) {
    case EDGE_RAISED:
        return {{0, -2, true}, {2, 0, false}};
    case EDGE_DEPRESSED:
        return {{0, 1, true}, {1, 1, true}, {0, 0, false}};
    case EDGE_UNIFORM:
        return {{0, 1, true}, {2, 1, true}, {1, 0, true}, {1, 2, true}, {1, 1, false}};
    case EDGE_LEFT_SHADOW:
        return {{-2, 2, true}, {0, 0, false}};
    case EDGE_RIGHT_SHADOW:
        return {{2, 2, true}, {0, 0, false}};
    default:
        return {{0, 0, false}};
    }
}

// The rest is the contender's own.
extern const char *const CONTENDER, *const DIFFERENCES;

void Start();                       // what is there before the first caption: the screen or the picture
void Open(Edge_e eEdge);            // the library itself, if it is not the screen's, and the font
void Draw(int iCaption);            // wipes the box and draws; white on black, black edge
const uint32_t *Look(int *piPitch); // the picture, ARGB; the pitch in pixels

// Lays a mask in one colour, 0xRRGGBB, over a picture with premultiplied colours.
void BlendMask(uint32_t *puiPicture, const uint8_t *pucMask, int iMaskPitch, int iX, int iY, int iWidth,
               int iHeight, uint32_t uiColor);
void WipeBox(uint32_t *puiPicture);

#endif
