// SPDX-License-Identifier: MIT
// Reads what a display has drawn through published DirectFB calls, because the display's own record is
// private.
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
    // For the display that was just created and activated: the surface of its layer or, for layer 1, of its
    // window.
    explicit Readback(const Options &options);

    // Waits until the last drawing is presented, and returns it.
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
