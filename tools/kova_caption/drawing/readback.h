// SPDX-License-Identifier: MIT
// What a display has drawn, read through published DirectFB calls: the display's own record is private.
#ifndef KOVA_CAPTION_DRAWING_READBACK_H
#define KOVA_CAPTION_DRAWING_READBACK_H

#include <memory>

#include "base/options.h"
#include "drawing/picture.h"

struct _IDirectFBSurface;

namespace caption
{

class Readback
{
public:
    // Of the display just made and activated: the surface of its layer, or, for layer 1, of its window.
    explicit Readback(const Options &options);

    // What was drawn last, once it has been presented.
    Picture Presented() const;

private:
    struct Release {
        void operator()(_IDirectFBSurface *surface) const;
    };

    Size plane_;
    std::unique_ptr<_IDirectFBSurface, Release> surface_;
};

} // namespace caption

#endif
