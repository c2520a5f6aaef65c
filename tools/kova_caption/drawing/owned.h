// SPDX-License-Identifier: MIT
// An owning pointer for DirectFB interfaces.
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
