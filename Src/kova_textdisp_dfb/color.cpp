#include "color.h"

namespace textdisp
{

KovaTextColor_t PaletteColor(const KovaDFBDisplay_t *pDisplay, kova_uint32 uiIndex)
{
    return uiIndex < MAX_PALETTE_COLOR ? pDisplay->palette[uiIndex] : KovaTextColor_t{0, 0, 0, 0};
}

KovaTextColor_t UnpackColor(kova_uint32 color)
{
    return {kova_uint8(color >> 24), kova_uint8(color >> 16), kova_uint8(color >> 8), kova_uint8(color)};
}

void SelectColor(KovaDFBDisplay_t *pDisplay, kova_uint32 color)
{
    IDirectFBSurface *const pSurface = pDisplay->pActiveSurface;

    if (IsIndexed(pDisplay)) {
        DFB_CHECK(Call(pSurface, &IDirectFBSurface::SetColorIndex, color));
    } else {
        const KovaTextColor_t c =
            Peek(pDisplay->bColor32) ? UnpackColor(color) : PaletteColor(pDisplay, color);

        DFB_CHECK(Call(pSurface, &IDirectFBSurface::SetColor, c.r, c.g, c.b, c.a));
    }
}

} // namespace textdisp
