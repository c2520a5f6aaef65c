// SPDX-License-Identifier: MIT
// A null DirectFB whose calls return at once, so that the remaining cost of an operation is the library's.
#include "platform/directfb_c.h"

#define EXPORTED extern "C" __attribute__((visibility("default")))

template <typename Result, typename... Arguments> static void Mute(Result (*&method)(Arguments...))
{
    method = [](Arguments...) { return Result(DFB_OK); };
}

// Methods that return an object return one of these, which are never freed.
static IDirectFB s_dfb;
static IDirectFBDisplayLayer s_layer;
static IDirectFBWindow s_window;
static IDirectFBSurface s_surface, s_otherSurface;
static IDirectFBFont s_font;
static IDirectFBPalette s_palette;
static unsigned char s_aucPixels[64 * 64];

static void FillSurface(IDirectFBSurface &surface)
{
    Mute(surface.Release);
    Mute(surface.Clear);
    Mute(surface.Flip);
    Mute(surface.FillRectangle);
    Mute(surface.DrawLine);
    Mute(surface.DrawString);
    Mute(surface.Blit);
    Mute(surface.SetBlittingFlags);
    Mute(surface.SetDrawingFlags);
    Mute(surface.SetClip);
    Mute(surface.GetClip);
    Mute(surface.SetColor);
    Mute(surface.SetColorIndex);
    Mute(surface.SetDstColorKey);
    Mute(surface.SetDstColorKeyIndex);
    Mute(surface.SetFont);
    Mute(surface.SetPalette);
    Mute(surface.SetDescriptionFlags);
    Mute(surface.SetOSDScaleInfo);
    Mute(surface.DrawMonoGlyph);
    Mute(surface.BatchDrawMonoGlyph);
    Mute(surface.Unlock);
    surface.GetPalette = [](IDirectFBSurface *, IDirectFBPalette **ppPalette) {
        return *ppPalette = &s_palette, DFB_OK;
    };
    surface.Lock = [](IDirectFBSurface *, DFBSurfaceLockFlags, void **ppData, int *piPitch) {
        return *ppData = s_aucPixels, *piPitch = 64, DFB_OK;
    };
}

EXPORTED DFBResult DirectFBInit(int *, char *(*[]))
{
    Mute(s_dfb.Release);
    Mute(s_dfb.GetDeviceDescription);
    s_dfb.GetDisplayLayer = [](IDirectFB *, DFBDisplayLayerID, IDirectFBDisplayLayer **ppLayer) {
        return *ppLayer = &s_layer, DFB_OK;
    };
    s_dfb.CreateFont = [](IDirectFB *, const char *, const DFBFontDescription *, IDirectFBFont **ppFont) {
        return *ppFont = &s_font, DFB_OK;
    };
    s_dfb.CreateSurface = [](IDirectFB *, const DFBSurfaceDescription *, IDirectFBSurface **ppSurface) {
        return *ppSurface = &s_otherSurface, DFB_OK;
    };

    Mute(s_layer.Release);
    Mute(s_layer.SetConfiguration);
    Mute(s_layer.SetCooperativeLevel);
    s_layer.GetConfiguration = [](IDirectFBDisplayLayer *, DFBDisplayLayerConfig *pConfig) {
        pConfig->flags = DLCONF_BUFFERMODE;
        pConfig->buffermode = DLBM_BACKVIDEO;
        return DFB_OK;
    };
    s_layer.GetSurface = [](IDirectFBDisplayLayer *, IDirectFBSurface **ppSurface) {
        return *ppSurface = &s_surface, DFB_OK;
    };
    s_layer.CreateWindow = [](IDirectFBDisplayLayer *, const DFBWindowDescription *,
                              IDirectFBWindow **ppWindow) { return *ppWindow = &s_window, DFB_OK; };

    Mute(s_window.Release);
    Mute(s_window.RaiseToTop);
    Mute(s_window.SetBounds);
    Mute(s_window.SetOpacity);
    s_window.GetSurface = [](IDirectFBWindow *, IDirectFBSurface **ppSurface) {
        return *ppSurface = &s_surface, DFB_OK;
    };

    FillSurface(s_surface);
    FillSurface(s_otherSurface);

    Mute(s_font.Release);
    Mute(s_font.SetEncoding);
    Mute(s_font.GetHeight);
    Mute(s_font.GetStringWidth);
    Mute(s_font.GetUnderline);
    s_font.EnumEncodings = [](IDirectFBFont *, DFBTextEncodingCallback callback, void *pContext) {
        return callback(0, "UTF8", pContext), DFB_OK;
    };

    Mute(s_palette.Release);
    Mute(s_palette.GetEntries);
    Mute(s_palette.SetEntries);
    return DFB_OK;
}

EXPORTED DFBResult DirectFBCreate(IDirectFB **ppDfb)
{
    return *ppDfb = &s_dfb, DFB_OK;
}

EXPORTED DFBResult DirectFBErrorFatal(const char *, DFBResult eResult)
{
    return eResult;
}
