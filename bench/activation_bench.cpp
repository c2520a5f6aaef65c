// One activation with eight fonts, beside the DirectFB calls that it makes, made directly.
#include "bed.h"

namespace bench
{

enum { FONTS = 8 };

static void Activate(benchmark::State &state)
{
    Display display(true);
    KovaTextContextParam_t param = {1280, 720, 0, 0, 0, 0, 1280, 720};
    kova_sint8 scNext = Kova_TextDisp_CreateContext(display, &param);

    Kova_TextDisp_SetActive(display, scNext, 1);
    for (int i = 0; i < FONTS; i++) {
        kova_sint32 siFont;
        // Eight names of one file: a name is a slot.
        const std::string name = std::string("/") + std::string(size_t(i), '/') + (FONT + 1);
        display->CreateFont(display, scNext, name.c_str(), 40, KOVA_FONTATTR_NONE, &siFont);
    }
    display->SetFont(display, scNext, 0, 40, KOVA_FONTATTR_NONE);
    for (auto _ : state) {
        scNext = kova_sint8(1 - scNext);
        Kova_TextDisp_SetActive(display, scNext, 1);
    }
    Kova_TextDisp_DestroyContext(display, 1);
}

static DFBEnumerationResult Ignore(DFBTextEncodingID, const char *, void *)
{
    return DFENUM_OK;
}

static void ActivateDirectly(benchmark::State &state)
{
    Display display(true);
    IDirectFB *const pDfb = display.Record()->pDfb;
    IDirectFBDisplayLayer *pLayer = nullptr;
    IDirectFBWindow *pWindow = nullptr;
    IDirectFBSurface *pSurface = nullptr;
    IDirectFBFont *apFonts[FONTS] = {};
    int iWidth = 1280, iHeight = 720;

    const auto release = [&] {
        if (!pLayer) return;
        pSurface->Release(pSurface);
        pWindow->Release(pWindow);
        pLayer->Release(pLayer);
        for (IDirectFBFont *pFont : apFonts) pFont->Release(pFont);
    };
    for (auto _ : state) {
        release();
        iWidth = 1280 + 1920 - iWidth;
        iHeight = 720 + 1080 - iHeight;
        pDfb->GetDisplayLayer(pDfb, DLID_PRIMARY, &pLayer);
        pLayer->SetCooperativeLevel(pLayer, DLSCL_SHARED);
        DFBDisplayLayerConfig config;
        pLayer->GetConfiguration(pLayer, &config);
        DFBWindowDescription desc = {};
        desc.flags =
            DFBWindowDescriptionFlags(DWDESC_CAPS | DWDESC_WIDTH | DWDESC_HEIGHT | DWDESC_PIXELFORMAT |
                                      DWDESC_POSX | DWDESC_POSY | DWDESC_OPTIONS | DWDESC_STACKING);
        desc.caps = DFBWindowCapabilities(DWCAPS_ALPHACHANNEL | DWCAPS_DOUBLEBUFFER | DWCAPS_NOFOCUS);
        desc.width = iWidth;
        desc.height = iHeight;
        desc.pixelformat = DSPF_ARGB;
        desc.options = DFBWindowOptions(DWOP_ALPHACHANNEL | DWOP_SCALE);
        desc.stacking = DWSC_LOWER;
        pLayer->CreateWindow(pLayer, &desc, &pWindow);
        pWindow->SetBounds(pWindow, 0, 0, config.width, config.height);
        pWindow->GetSurface(pWindow, &pSurface);
        pSurface->Clear(pSurface, 0, 0, 0, 0);
        pSurface->Flip(pSurface, nullptr, DFBSurfaceFlipFlags(DSFLIP_WAIT | DSFLIP_BLIT | DSFLIP_ONSYNC));
        pSurface->Clear(pSurface, 0, 0, 0, 0);
        pWindow->SetOpacity(pWindow, 255);
        pWindow->RaiseToTop(pWindow);
        const DFBRegion clip = {0, 0, iWidth - 1, iHeight - 1};
        pSurface->SetClip(pSurface, &clip);
        pSurface->SetBlittingFlags(pSurface, DSBLIT_NOFX);
        for (IDirectFBFont *&pFont : apFonts) {
            DFBFontDescription font = {};
            font.flags = DFBFontDescriptionFlags(DFDESC_ATTRIBUTES | DFDESC_HEIGHT);
            font.height = 40;
            pDfb->CreateFont(pDfb, FONT, &font, &pFont);
            pFont->EnumEncodings(pFont, Ignore, nullptr);
        }
        pSurface->SetFont(pSurface, apFonts[0]);
        pSurface->SetColor(pSurface, 0, 0, 0, 0);
        pSurface->FillRectangle(pSurface, 0, 0, iWidth, iHeight);
    }
    release();
}

static const int s_registered = [] {
    benchmark::RegisterBenchmark("activation 8 fonts", Activate)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("activation by DirectFB calls", ActivateDirectly)
        ->Unit(benchmark::kMillisecond);
    Compare("activation 8 fonts", "activation by DirectFB calls");
    return 0;
}();

} // namespace bench
