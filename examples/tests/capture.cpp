// SPDX-License-Identifier: MIT
// Captures a picture at each call of sleep, and does not wait. It replaces sleep in the object of an example
// with -Wl,--wrap=sleep, so the example needs no changes. KOVA_PICTURE is the file name without extension:
// NAME.png, then NAME_2.png and so on; without it nothing is captured. With KOVA_PICTURE_BACKGROUND the plane
// is drawn over a plain colour and enlarged by an integer factor, for the documentation.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "base/options.h"
#include "drawing/readback.h"
#include "kova_textdisp_dfb/record.h"

// NOLINTNEXTLINE(bugprone-reserved-identifier): the linker makes this name
extern "C" unsigned int __wrap_sleep(unsigned int seconds);

static std::string NextFile(const char *name)
{
    static int taken = 0;
    return name + (++taken == 1 ? "" : "_" + std::to_string(taken)) + ".png";
}

static caption::Picture OverBackground(const caption::Picture &plane)
{
    const int scale = std::max(1, 960 / plane.size().width);
    caption::Picture shown({plane.size().width * scale, plane.size().height * scale},
                           {0x3A, 0x4A, 0x5A, 255});

    caption::PasteEnlarged(shown, plane, 0, 0, scale);
    return shown;
}

// NOLINTNEXTLINE(bugprone-reserved-identifier)
unsigned int __wrap_sleep(unsigned int)
{
    const auto *const display = reinterpret_cast<KovaDFBDisplay_t *>(Kova_TextDisp_GetDisplayByID(0));
    const char *const name = std::getenv("KOVA_PICTURE");
    if (!name) return 0;
    caption::Options options;
    options.layer = display->eLayer;
    options.plane = {int(display->uiPlaneWidth), int(display->uiPlaneHeight)};
    try {
        const caption::Picture plane = caption::Readback(options).Presented();
        caption::WritePng(std::getenv("KOVA_PICTURE_BACKGROUND") ? OverBackground(plane) : plane,
                          NextFile(name));
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "capture: %s\n", failure.what());
        std::exit(1);
    }
    return 0;
}
