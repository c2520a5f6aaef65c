// SPDX-License-Identifier: MIT
#include "drawing/readback.h"

#include <array>
#include <chrono>
#include <cstring>
#include <string>
#include <thread>

#include "base/failure.h"
#include "drawing/owned.h"
#include "kova/kova_textdisp_dfb.h"

namespace caption
{

void Readback::Release::operator()(_IDirectFBSurface *surface) const
{
    surface->Release(surface);
}

static IDirectFBSurface *SurfaceOfLayer()
{
    auto *const layer = static_cast<IDirectFBDisplayLayer *>(Kova_TextDisp_GetLayer());
    IDirectFBSurface *surface = nullptr;

    if (layer) layer->GetSurface(layer, &surface);
    return surface;
}

// The display opens a window on the primary layer and does not export it, so the windows of that layer are
// searched for one of the plane's size. A process sees only its own windows, and each activation gives a
// window a new number.
static IDirectFBSurface *SurfaceOfWindow(IDirectFB *directfb, Size plane)
{
    const DFBWindowID mostWindows = 64;
    IDirectFBDisplayLayer *primary = nullptr;
    IDirectFBSurface *surface = nullptr;

    if (directfb->GetDisplayLayer(directfb, DLID_PRIMARY, &primary) != DFB_OK || !primary) return nullptr;
    const Owned<IDirectFBDisplayLayer> layer(primary);
    for (DFBWindowID id = mostWindows; id > 0 && !surface; --id) {
        IDirectFBWindow *found = nullptr;
        if (layer->GetWindow(layer.get(), id, &found) != DFB_OK || !found) continue;
        const Owned<IDirectFBWindow> window(found);
        IDirectFBSurface *candidate = nullptr;
        Size size;
        if (window->GetSurface(window.get(), &candidate) != DFB_OK || !candidate) continue;
        Owned<IDirectFBSurface> owner(candidate);
        candidate->GetSize(candidate, &size.width, &size.height);
        if (size.width == plane.width && size.height == plane.height) surface = owner.release();
    }
    return surface;
}

Readback::Readback(const Options &options) : plane_(options.plane)
{
    auto *const directfb = static_cast<IDirectFB *>(Kova_TextDisp_GetDFB());

    if (directfb) {
        surface_.reset(options.layer == KOVA_GRAPHIC_LAYER1 ? SurfaceOfWindow(directfb, options.plane)
                                                            : SurfaceOfLayer());
    }
    if (!surface_) {
        throw Failure("the display has no surface; see the messages of DirectFB above");
    }
}

static std::array<Color, 256> PaletteOf(IDirectFBSurface *surface)
{
    std::array<Color, 256> colors = {};
    std::array<DFBColor, 256> entries = {};
    IDirectFBPalette *palette = nullptr;

    if (surface->GetPalette(surface, &palette) == DFB_OK && palette) {
        const Owned<IDirectFBPalette> owner(palette);
        palette->GetEntries(palette, entries.data(), unsigned(entries.size()), 0);
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        colors[i] = {entries[i].r, entries[i].g, entries[i].b, entries[i].a};
    }
    return colors;
}

// Locked for reading only, a surface shows its front buffer; locked for writing, its back buffer.
static Picture Read(IDirectFBSurface *surface, Size plane, DFBSurfaceLockFlags flags)
{
    DFBSurfacePixelFormat format = DSPF_UNKNOWN;
    void *memory = nullptr;
    int pitch = 0;
    Picture picture(plane);

    surface->GetPixelFormat(surface, &format);
    if (format != DSPF_ARGB && format != DSPF_LUT8) {
        throw Failure("the display's surface is neither indexed nor ARGB; try another --mode");
    }
    const std::array<Color, 256> palette =
        format == DSPF_LUT8 ? PaletteOf(surface) : std::array<Color, 256>();
    if (surface->Lock(surface, flags, &memory, &pitch) != DFB_OK) {
        throw Failure("the display's surface cannot be read; try another DirectFB system in DFBARGS");
    }
    for (int y = 0; y < plane.height; ++y) {
        const auto *const row = static_cast<const std::uint8_t *>(memory) + std::ptrdiff_t(y) * pitch;
        for (int x = 0; x < plane.width; ++x) {
            if (format == DSPF_LUT8) {
                picture.At(x, y) = palette[row[x]]; // palette colours are not premultiplied
                continue;
            }
            std::uint32_t argb;
            std::memcpy(&argb, row + std::ptrdiff_t(x) * 4, sizeof argb);
            picture.At(x, y) = Unpremultiply({std::uint8_t(argb >> 16 & 255), std::uint8_t(argb >> 8 & 255),
                                              std::uint8_t(argb & 255), std::uint8_t(argb >> 24)});
        }
    }
    surface->Unlock(surface);
    return picture;
}

Picture Readback::Presented() const
{
    const auto longest = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    Picture drawn = Read(surface_.get(), plane_, DFBSurfaceLockFlags(DSLF_READ | DSLF_WRITE));

    // The library's thread makes the last flip of a burst a moment later.
    while (!(Read(surface_.get(), plane_, DSLF_READ) == drawn)) {
        if (std::chrono::steady_clock::now() > longest) {
            throw Failure("the picture did not reach the screen within 5 seconds; check whether the X server "
                          "is overloaded");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(4));
    }
    return drawn;
}

} // namespace caption
