// SPDX-License-Identifier: MIT
// Keeps two harmless lines of DirectFB's start off standard error; every other one is passed on.
#ifndef KOVA_CAPTION_DRAWING_QUIET_START_H
#define KOVA_CAPTION_DRAWING_QUIET_START_H

namespace caption
{

class QuietStart
{
public:
    QuietStart();
    ~QuietStart();
    QuietStart(const QuietStart &) = delete;
    QuietStart &operator=(const QuietStart &) = delete;

private:
    int standardError_;
    int kept_;
};

} // namespace caption

#endif
