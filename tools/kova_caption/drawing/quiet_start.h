// SPDX-License-Identifier: MIT
// Suppresses two harmless lines that DirectFB prints on standard error when it starts, and passes on all
// others.
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
