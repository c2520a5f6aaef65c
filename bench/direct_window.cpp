// SPDX-License-Identifier: MIT
#include "direct_window.h"

#include "fixture.h"

namespace bench
{

static DFBEnumerationResult Ignore(DFBTextEncodingID, const char *, void *)
{
    return DFENUM_OK;
}

void DirectWindow::Close()
{
    if (!m_pLayer) return;
    m_pSurface->Release(m_pSurface);
    m_pWindow->Release(m_pWindow);
    m_pLayer->Release(m_pLayer);
    for (IDirectFBFont *pFont : m_fonts) pFont->Release(pFont);
    m_fonts.clear();
    m_pLayer = nullptr;
}

void DirectWindow::Open(int iWidth, int iHeight, int iFonts)
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
    for (int i = 0; i < iFonts; i++) {
        DFBFontDescription font = {};
        IDirectFBFont *pFont = nullptr;
        font.flags = DFBFontDescriptionFlags(DFDESC_ATTRIBUTES | DFDESC_HEIGHT);
        font.height = int(FONT_HEIGHT);
        m_pDfb->CreateFont(m_pDfb, FONT, &font, &pFont);
        pFont->EnumEncodings(pFont, Ignore, nullptr);
        m_fonts.push_back(pFont);
    }
    if (iFonts > 0) m_pSurface->SetFont(m_pSurface, m_fonts[0]);
    m_pSurface->SetColor(m_pSurface, 0, 0, 0, 0);
    m_pSurface->FillRectangle(m_pSurface, 0, 0, iWidth, iHeight);
}

} // namespace bench
