// SPDX-License-Identifier: MIT
// The interface of a caption renderer. Each is a separate executable, so that its memory can be measured.
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

// Two lines of 32 characters. Two captions alternate, so that no renderer can reuse its last picture.
constexpr const char *CAPTIONS[2][2] = {
    {"The quick brown fox jumps over a", "lazy dog while nobody is looking"},
    {"Pack my box with five dozen jugs", "of liquid veneer and do be quick"},
};
constexpr int LINE_LENGTH = 32;
constexpr int LEFT = 400, TOPS[2] = {900, 960};
// The area that is cleared before a caption is drawn.
constexpr int BOX_X = 390, BOX_Y = 890, BOX_WIDTH = 1140, BOX_HEIGHT = 140;

// A pass of a string: its offset from the text's position, and whether it uses the edge colour.
struct Pass_t {
    int iX, iY;
    bool bEdge;
};

// The passes of the library, for renderers that draw in passes too.
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

// Each renderer implements the following.
extern const char *const CONTENDER, *const DIFFERENCES;

void Start();                         // initialises the screen or the picture
void Open(Edge_e eEdge);              // opens the renderer, if it is not part of the screen, and the font
void Draw(int iCaption);              // clears the box and draws: white on black, black edge
const uint32_t *Pixels(int *piPitch); // the picture, ARGB; the pitch in pixels

// Blends a mask in one colour, 0xRRGGBB, onto a picture with premultiplied colours.
void BlendMask(uint32_t *puiPicture, const uint8_t *pucMask, int iMaskPitch, int iX, int iY, int iWidth,
               int iHeight, uint32_t uiColor);
void ClearBox(uint32_t *puiPicture);

#endif
