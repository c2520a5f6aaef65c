// One activation with eight fonts, beside the DirectFB calls that it makes, made directly.
#include "bed.h"

namespace bench
{

enum { FONTS = 8 };

static DFBEnumerationResult Ignore(DFBTextEncodingID, const char *, void *)
{
    return DFENUM_OK;
}

// What an activation of layer 1 does, by hand.
class DirectWindow
{
public:
    explicit DirectWindow(IDirectFB *pDfb) : m_pDfb(pDfb)
    {
    }
    ~DirectWindow()
    {
        Close();
    }
    DirectWindow(const DirectWindow &) = delete;
    DirectWindow &operator=(const DirectWindow &) = delete;
    void Close();
    void Open(int iWidth, int iHeight);

private:
    IDirectFB *m_pDfb;
    IDirectFBDisplayLayer *m_pLayer = nullptr;
    IDirectFBWindow *m_pWindow = nullptr;
    IDirectFBSurface *m_pSurface = nullptr;
    IDirectFBFont *m_apFonts[FONTS] = {};
};

void DirectWindow::Close()
{
    if (!m_pLayer) return;
    m_pSurface->Release(m_pSurface);
    m_pWindow->Release(m_pWindow);
    m_pLayer->Release(m_pLayer);
    for (IDirectFBFont *pFont : m_apFonts) pFont->Release(pFont);
    m_pLayer = nullptr;
}

void DirectWindow::Open(int iWidth, int iHeight)
{
    m_pDfb->GetDisplayLayer(m_pDfb, DLID_PRIMARY, &m_pLayer);
    m_pLayer->SetCooperativeLevel(m_pLayer, DLSCL_SHARED);
    DFBDisplayLayerConfig config;
    m_pLayer->GetConfiguration(m_pLayer, &config);
    DFBWindowDescription desc = {};
    desc.flags = DFBWindowDescriptionFlags(DWDESC_CAPS | DWDESC_WIDTH | DWDESC_HEIGHT | DWDESC_PIXELFORMAT |
                                           DWDESC_POSX | DWDESC_POSY | DWDESC_OPTIONS | DWDESC_STACKING);
    desc.caps = DFBWindowCapabilities(DWCAPS_ALPHACHANNEL | DWCAPS_DOUBLEBUFFER | DWCAPS_NOFOCUS);
    desc.width = iWidth;
    desc.height = iHeight;
    desc.pixelformat = DSPF_ARGB;
    desc.options = DFBWindowOptions(DWOP_ALPHACHANNEL | DWOP_SCALE);
    desc.stacking = DWSC_LOWER;
    m_pLayer->CreateWindow(m_pLayer, &desc, &m_pWindow);
    m_pWindow->SetBounds(m_pWindow, 0, 0, config.width, config.height);
    m_pWindow->GetSurface(m_pWindow, &m_pSurface);
    m_pSurface->Clear(m_pSurface, 0, 0, 0, 0);
    m_pSurface->Flip(m_pSurface, nullptr, DFBSurfaceFlipFlags(DSFLIP_WAIT | DSFLIP_BLIT | DSFLIP_ONSYNC));
    m_pSurface->Clear(m_pSurface, 0, 0, 0, 0);
    m_pWindow->SetOpacity(m_pWindow, 255);
    m_pWindow->RaiseToTop(m_pWindow);
    const DFBRegion clip = {0, 0, iWidth - 1, iHeight - 1};
    m_pSurface->SetClip(m_pSurface, &clip);
    m_pSurface->SetBlittingFlags(m_pSurface, DSBLIT_NOFX);
    for (IDirectFBFont *&pFont : m_apFonts) {
        DFBFontDescription font = {};
        font.flags = DFBFontDescriptionFlags(DFDESC_ATTRIBUTES | DFDESC_HEIGHT);
        font.height = int(FONT_HEIGHT);
        m_pDfb->CreateFont(m_pDfb, FONT, &font, &pFont);
        pFont->EnumEncodings(pFont, Ignore, nullptr);
    }
    m_pSurface->SetFont(m_pSurface, m_apFonts[0]);
    m_pSurface->SetColor(m_pSurface, 0, 0, 0, 0);
    m_pSurface->FillRectangle(m_pSurface, 0, 0, iWidth, iHeight);
}

static void Activate(benchmark::State &state)
{
    Display display(PALETTE);
    DirectWindow window(display.Record()->pDfb);
    KovaTextContextParam_t param = {1280, 720, 0, 0, 0, 0, 1280, 720};
    kova_sint8 scNext = Kova_TextDisp_CreateContext(display, &param);
    bool bLarge = false;

    Kova_TextDisp_SetActive(display, scNext, 1);
    for (int i = 0; i < FONTS; i++) {
        kova_sint32 siFont;
        const std::string name =
            std::string(size_t(i), '/') + FONT; // eight names of one file: a name is a slot
        display->CreateFont(display, scNext, name.c_str(), FONT_HEIGHT, KOVA_FONTATTR_NONE, &siFont);
    }
    display->SetFont(display, scNext, 0, FONT_HEIGHT, KOVA_FONTATTR_NONE);
    Versus(
        state, "the same DirectFB calls",
        [&] {
            scNext = kova_sint8(1 - scNext);
            Kova_TextDisp_SetActive(display, scNext, 1);
        },
        [&] {
            window.Close();
            bLarge = !bLarge;
            window.Open(bLarge ? 1920 : 1280, bLarge ? 1080 : 720);
        },
        [&](bool bOurs) { // neither is to pay for the other's window lying beside it
            IDirectFBWindow *const pWindow = display.Record()->pWindow;
            window.Close();
            pWindow->SetOpacity(pWindow, bOurs ? 255 : 0);
        });
    Kova_TextDisp_DestroyContext(display, 1);
}

static const int s_registered = [] {
    if (!IsX11()) Register("activation/layer 1/8 fonts", Activate);
    return 0;
}();

} // namespace bench
