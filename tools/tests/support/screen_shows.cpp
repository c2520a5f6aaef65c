// SPDX-License-Identifier: MIT
// usage: screen_shows SCREEN PNG. Succeeds if the screen, in XWD format, shows the picture in its top left corner.
#include <exception>

#include "support/tool.h"

int main(int argc, char **argv)
{
    if (argc != 3) return 2;
    try {
        const caption::Picture caption = ReadPng(argv[2]);
        return Differences(ReadScreen(argv[1], caption.size()), caption) != 0;
    } catch (const std::exception &) {
        return 1; // the screen is being written
    }
}
