// SPDX-License-Identifier: MIT
// A DirectFB interface, released with its owner.
#ifndef KOVA_CAPTION_DRAWING_OWNED_H
#define KOVA_CAPTION_DRAWING_OWNED_H

#include <memory>

namespace caption
{

template <class Interface> struct ReleaseInterface {
    void operator()(Interface *thing) const
    {
        thing->Release(thing);
    }
};

template <class Interface> using Owned = std::unique_ptr<Interface, ReleaseInterface<Interface>>;

} // namespace caption

#endif
