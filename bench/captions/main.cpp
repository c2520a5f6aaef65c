// SPDX-License-Identifier: MIT
// Draws captions with one edge type, and prints the microseconds of the first caption, including everything
// that is opened for it, those of the following captions, and the peak memory in KiB. With a file name it
// writes a picture of the first caption. usage: PROGRAM EDGE(0 to 5) CAPTIONS [PICTURE.png]
#include "../memory.h"
#include "contender.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <png.h>
#include <string>

void BlendMask(uint32_t *puiPicture, const uint8_t *pucMask, int iMaskPitch, int iX, int iY, int iWidth,
               int iHeight, uint32_t uiColor)
{
    const uint32_t uiRed = uiColor >> 16 & 255, uiGreen = uiColor >> 8 & 255, uiBlue = uiColor & 255;

    for (int y = 0; y < iHeight; y++) {
        uint32_t *const puiTo = puiPicture + (iY + y) * WIDTH + iX;
        const uint8_t *const pucFrom = pucMask + y * iMaskPitch;
        for (int x = 0; x < iWidth; x++) {
            const uint32_t a = pucFrom[x], b = 255 - a, d = puiTo[x];
            // (v * 257 + 257) >> 16 equals v / 255 in this range.
            const auto mix = [=](uint32_t uiNew, uint32_t uiOld) {
                return ((uiNew * a + uiOld * b) * 257 + 257) >> 16;
            };
            puiTo[x] = mix(255, d >> 24) << 24 | mix(uiRed, d >> 16 & 255) << 16 |
                       mix(uiGreen, d >> 8 & 255) << 8 | mix(uiBlue, d & 255);
        }
    }
}

void ClearBox(uint32_t *puiPicture)
{
    for (int y = BOX_Y; y < BOX_Y + BOX_HEIGHT; y++)
        std::memset(puiPicture + y * WIDTH + BOX_X, 0, BOX_WIDTH * 4);
}

// The box over grey; the colours are premultiplied.
static void SavePicture(const char *pcFile)
{
    int iPitch;
    const uint32_t *const puiPicture = Pixels(&iPitch);
    std::vector<uint8_t> rgb;
    png_image image = {};

    for (int y = BOX_Y; y < BOX_Y + BOX_HEIGHT; y++) {
        for (int x = BOX_X; x < BOX_X + BOX_WIDTH; x++) {
            const uint32_t uiPixel = puiPicture[y * iPitch + x], uiGrey = 128 * (255 - (uiPixel >> 24)) / 255;
            for (const int iShift : {16, 8, 0}) {
                const uint32_t uiSum = (uiPixel >> iShift & 255) + uiGrey;
                rgb.push_back(uint8_t(uiSum > 255 ? 255 : uiSum));
            }
        }
    }
    image.version = PNG_IMAGE_VERSION;
    image.width = BOX_WIDTH;
    image.height = BOX_HEIGHT;
    image.format = PNG_FORMAT_RGB;
    png_image_write_to_file(&image, pcFile, 0, rgb.data(), 0, nullptr);
}

int main(int argc, char **argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s EDGE CAPTIONS [PICTURE.png]\n%s: %s\n", argv[0], CONTENDER,
                     DIFFERENCES);
        return 2;
    }
    const auto eEdge = Edge_e(std::atoi(argv[1]));
    const int iCaptions = std::atoi(argv[2]);
    const auto time = [](auto what) {
        const auto start = std::chrono::steady_clock::now();
        what();
        return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
    };

    Start();
    std::string line = std::to_string(time([=] { Open(eEdge), Draw(0); }));
    if (argc > 3) SavePicture(argv[3]);
    Draw(1);
    for (int i = 0; i < iCaptions; i++) line += " " + std::to_string(time([=] { Draw(i % 2); }));
    std::printf("%s\n%ld\n%s\n%s\n", line.c_str(), MemoryKiB("VmHWM:"), CONTENDER, DIFFERENCES);
    std::fflush(stdout);
    std::quick_exit(0); // the exit of a library is not measured
}
