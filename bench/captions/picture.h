// SPDX-License-Identifier: MIT
// The picture of renderers without a screen.
#ifndef BENCH_CAPTIONS_PICTURE_H
#define BENCH_CAPTIONS_PICTURE_H

#include "contender.h"

// NOLINTBEGIN(misc-definitions-in-headers): each program has one renderer
static uint32_t *g_puiPicture;

void Start()
{
    g_puiPicture = new uint32_t[WIDTH * HEIGHT]();
}

const uint32_t *Pixels(int *piPitch)
{
    return *piPitch = WIDTH, g_puiPicture;
}
// NOLINTEND(misc-definitions-in-headers)

#endif
