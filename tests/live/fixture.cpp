// SPDX-License-Identifier: MIT
#include "fixture.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <set>

namespace live
{

static std::set<kova_sint8> contexts; // the existing ones

static std::string Environment(const char *pcName, const char *pcDefault)
{
    const char *const pcValue = getenv(pcName);
    return pcValue ? pcValue : pcDefault;
}

// Without a working fixture no test can continue.
static void Demand(bool bCondition, const char *pcWhat)
{
    if (bCondition) return;
    fprintf(stderr, "The test bed failed: %s\n", pcWhat);
    fflush(nullptr);
    _exit(1);
}

KovaGraphicLayer_e Layer()
{
    const std::string layer = Environment("KOVA_LIVE_LAYER", "1");
    Demand(layer == "1" || layer == "2" || layer == "3", "KOVA_LIVE_LAYER is 1, 2 or 3");
    return KovaGraphicLayer_e(layer[0] - '1');
}

Colors_e Colors()
{
    const std::string colors = Environment("KOVA_LIVE_COLORS", "index");
    Demand(colors == "index" || colors == "palette" || colors == "packed",
           "KOVA_LIVE_COLORS is index, palette or packed");
    return colors == "index" ? INDEX : colors == "palette" ? PALETTE : PACKED;
}

const std::array<KovaTextColor_t, 256> &TestPalette()
{
    static const std::array<KovaTextColor_t, 256> palette = [] {
        static const kova_uint8 aucOpacities[] = {255, 255, 192, 96};
        std::array<KovaTextColor_t, 256> colors = {};
        for (unsigned i = 1; i < 256; i++) {
            // Odd factors permute the 256 values, so all entries differ.
            colors[i] = {kova_uint8(i * 37 + 11), kova_uint8(i * 91 + 5), kova_uint8(i * 173 + 60),
                         aucOpacities[i % 4]};
        }
        return colors;
    }();
    return palette;
}

kova_uint32 Color(kova_uint32 i)
{
    const KovaTextColor_t c = TestPalette()[i];
    if (Colors() != PACKED) return i;
    return kova_uint32(c.r) << 24 | kova_uint32(c.g) << 16 | kova_uint32(c.b) << 8 | c.a;
}

kova_sint32 GlyphColor(kova_uint32 i)
{
    const KovaTextColor_t c = TestPalette()[i];
    if (Colors() != PACKED) return kova_sint32(i);
    return kova_sint32(kova_uint32(c.a) << 24 | kova_uint32(c.r) << 16 | kova_uint32(c.g) << 8 | c.b);
}

kova_uint32 StoredColor(kova_uint32 i)
{
    const KovaTextColor_t c = TestPalette()[i];
    if (Colors() == INDEX) return i;
    return kova_uint32(c.a) << 24 | kova_uint32(c.r) << 16 | kova_uint32(c.g) << 8 | c.b;
}

pKovaITextDisplay_t GivenDisplay(kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    KovaTextInitParam_t param = {};
    param.eLayer = Layer();
    param.uiPlaneWidth = uiWidth;
    param.uiPlaneHeight = uiHeight;
    param.bTextDisp_Palette = Colors() == PALETTE;
    Demand(Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param) == 0, "creating the display");
    pKovaITextDisplay_t const pDisplay = Kova_TextDisp_GetDisplayByID(0);
    Demand(pDisplay, "a display");
    return pDisplay;
}

kova_sint8 GivenContext(pKovaITextDisplay_t pDisplay, kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    KovaTextContextParam_t param = {};
    param.uiPlaneWidth = uiWidth;
    param.uiPlaneHeight = uiHeight;
    param.uiTextWindowWidth = uiWidth;
    param.uiTextWindowHeight = uiHeight;
    param.uiDisplayWindowWidth = uiWidth;
    param.uiDisplayWindowHeight = uiHeight;
    const kova_sint8 scContextID = Kova_TextDisp_CreateContext(pDisplay, &param);
    Demand(scContextID >= 0, "a context");
    contexts.insert(scContextID);
    return scContextID;
}

void LoadPalette(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID)
{
    std::array<KovaTextColor_t, 256> colors = TestPalette();
    Demand(pDisplay->SetPalette(pDisplay, scContextID, colors.data(), 256, 0) == 0, "loading the palette");
}

pKovaITextDisplay_t GivenShownDisplay(kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    pKovaITextDisplay_t const pDisplay = GivenDisplay(uiWidth, uiHeight);
    Demand(GivenContext(pDisplay, uiWidth, uiHeight) == 0, "context 0");
    Kova_TextDisp_SetActive(pDisplay, 0, 1);
    if (Colors() == PACKED) {
        Demand(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, uiWidth, uiHeight) == 0, "a 32-bit plane");
    }
    LoadPalette(pDisplay, 0);
    pDisplay->Show(pDisplay, 0);
    return pDisplay;
}

void DestroyContext(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID)
{
    Demand(contexts.erase(scContextID) == 1, "destroying a context that is there");
    Kova_TextDisp_DestroyContext(pDisplay, scContextID);
}

void DestroyDisplay()
{
    pKovaITextDisplay_t const pDisplay = Kova_TextDisp_GetDisplayByID(0);
    if (!pDisplay) return;
    while (!contexts.empty()) DestroyContext(pDisplay, *contexts.begin());
    Kova_TextDisp_Destroy(0);
}

IDirectFB *DirectFB()
{
    return static_cast<IDirectFB *>(Kova_TextDisp_GetDFB());
}

// There is only one window, but DirectFB chooses its number.
static IDirectFBSurface *WindowSurface()
{
    IDirectFBDisplayLayer *pLayer = nullptr;
    IDirectFBSurface *pFound = nullptr;

    Demand(DirectFB()->GetDisplayLayer(DirectFB(), 0, &pLayer) == DFB_OK, "the primary layer");
    for (DFBWindowID id = 0; id < 1000; id++) {
        IDirectFBWindow *pWindow = nullptr;
        if (pLayer->GetWindow(pLayer, id, &pWindow) != DFB_OK) continue;
        Demand(!pFound, "one window, not two");
        Demand(pWindow->GetSurface(pWindow, &pFound) == DFB_OK, "the window's surface");
        pWindow->Release(pWindow);
    }
    pLayer->Release(pLayer);
    return pFound;
}

IDirectFBSurface *DisplaySurface()
{
    IDirectFBSurface *pSurface = nullptr;

    if (Layer() == KOVA_GRAPHIC_LAYER1) {
        pSurface = WindowSurface();
    } else {
        auto *const pLayer = static_cast<IDirectFBDisplayLayer *>(Kova_TextDisp_GetLayer());
        pLayer->GetSurface(pLayer, &pSurface);
    }
    Demand(pSurface, "the display's surface");
    return pSurface;
}

kova_uint32 Picture_t::Pixel(int iX, int iY) const
{
    kova_uint32 uiPixel = 0;
    const kova_uint8 *const puc = data.data() + (size_t(iY) * size_t(iWidth) + size_t(iX)) * size_t(iBytes);

    if (iBytes == 1) return *puc;
    memcpy(&uiPixel, puc, sizeof uiPixel);
    return uiPixel;
}

Picture_t Read(IDirectFBSurface *pSurface, bool bFront)
{
    DFBSurfacePixelFormat eFormat = DSPF_UNKNOWN;
    Picture_t picture;
    void *pData = nullptr;
    int iPitch = 0;

    pSurface->GetPixelFormat(pSurface, &eFormat);
    pSurface->GetSize(pSurface, &picture.iWidth, &picture.iHeight);
    Demand(eFormat == DSPF_LUT8 || eFormat == DSPF_ARGB, "a surface of LUT8 or ARGB");
    picture.iBytes = eFormat == DSPF_LUT8 ? 1 : 4;
    // A read lock returns the front buffer of a surface, a write lock its back buffer.
    const auto eFlags = DFBSurfaceLockFlags(bFront ? DSLF_READ : DSLF_READ | DSLF_WRITE);
    Demand(pSurface->Lock(pSurface, eFlags, &pData, &iPitch) == DFB_OK, "locking the surface");
    const size_t uiRow = size_t(picture.iWidth) * size_t(picture.iBytes);
    for (int iY = 0; iY < picture.iHeight; iY++) {
        const auto *const pucRow = static_cast<const kova_uint8 *>(pData) + ptrdiff_t(iY) * iPitch;
        picture.data.insert(picture.data.end(), pucRow, pucRow + uiRow);
    }
    pSurface->Unlock(pSurface);
    return picture;
}

static Picture_t ReadDisplay(bool bFront)
{
    IDirectFBSurface *const pSurface = DisplaySurface();
    Picture_t picture = Read(pSurface, bFront);
    pSurface->Release(pSurface);
    return picture;
}

Picture_t Drawn()
{
    return ReadDisplay(false);
}

Picture_t OnScreen()
{
    return ReadDisplay(true);
}

testing::AssertionResult Same(const Picture_t &expected, const Picture_t &seen)
{
    if (expected.iWidth != seen.iWidth || expected.iHeight != seen.iHeight ||
        expected.iBytes != seen.iBytes) {
        return testing::AssertionFailure()
               << "expected " << expected.iWidth << "x" << expected.iHeight << " of " << expected.iBytes
               << " bytes, seen " << seen.iWidth << "x" << seen.iHeight << " of " << seen.iBytes;
    }
    if (expected.data == seen.data) return testing::AssertionSuccess();
    int iDifferent = 0, iFirst = -1;
    for (int i = 0; i < expected.iWidth * expected.iHeight; i++) {
        const size_t uiBytes = size_t(expected.iBytes), uiAt = size_t(i) * uiBytes;
        if (memcmp(&expected.data[uiAt], &seen.data[uiAt], uiBytes) == 0) {
            continue;
        }
        if (iFirst < 0) iFirst = i;
        iDifferent++;
    }

    const int iX = iFirst % expected.iWidth, iY = iFirst / expected.iWidth;
    return testing::AssertionFailure()
           << iDifferent << " pixels differ, the first at " << iX << "," << iY << ": expected 0x" << std::hex
           << expected.Pixel(iX, iY) << ", seen 0x" << seen.Pixel(iX, iY);
}

Reference::Reference(kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    DFBSurfaceDescription desc = {};
    desc.flags = DFBSurfaceDescriptionFlags(DSDESC_CAPS | DSDESC_WIDTH | DSDESC_HEIGHT | DSDESC_PIXELFORMAT);
    desc.caps = DSCAPS_DOUBLE;
    desc.width = int(uiWidth);
    desc.height = int(uiHeight);
    desc.pixelformat = Colors() == INDEX ? DSPF_LUT8 : DSPF_ARGB;
    Demand(DirectFB()->CreateSurface(DirectFB(), &desc, &m_pSurface) == DFB_OK, "a surface of our own");
    if (Colors() == INDEX) {
        IDirectFBPalette *pPalette = nullptr;
        DFBColor colors[256];
        for (size_t i = 0; i < 256; i++) {
            const KovaTextColor_t c = TestPalette()[i];
            colors[i] = {c.a, c.r, c.g, c.b};
        }
        Demand(m_pSurface->GetPalette(m_pSurface, &pPalette) == DFB_OK, "a palette of our own");
        Demand(pPalette->SetEntries(pPalette, colors, 256, 0) == DFB_OK, "setting it");
        pPalette->Release(pPalette);
    }
    Fill(0, 0, desc.width, desc.height, 0);
    Flip();
}

Reference::~Reference()
{
    m_pSurface->Release(m_pSurface);
}

void Reference::SetColor(kova_uint32 i)
{
    const KovaTextColor_t c = TestPalette()[i];
    const DFBResult eResult = Colors() == INDEX ? m_pSurface->SetColorIndex(m_pSurface, i)
                                                : m_pSurface->SetColor(m_pSurface, c.r, c.g, c.b, c.a);
    Demand(eResult == DFB_OK, "setting a colour");
}

void Reference::Fill(int iX, int iY, int iWidth, int iHeight, kova_uint32 i)
{
    SetColor(i);
    m_pSurface->FillRectangle(m_pSurface, iX, iY, iWidth, iHeight);
}

void Reference::Text(const std::string &text, int iX, int iY)
{
    const DFBResult eResult =
        m_pSurface->DrawString(m_pSurface, text.data(), int(text.size()), iX, iY, DSTF_TOPLEFT);
    Demand(eResult == DFB_OK, "drawing a string");
}

void Reference::Flip()
{
    Demand(m_pSurface->Flip(m_pSurface, nullptr, DSFLIP_BLIT) == DFB_OK, "flipping a surface of our own");
}

Picture_t Reference::Pixels() const
{
    return Read(m_pSurface, false);
}

Font::Font(const char *pcName, int iHeight, unsigned uiAttributes, int iWidth)
{
    DFBFontDescription desc = {};
    desc.flags = DFBFontDescriptionFlags(DFDESC_ATTRIBUTES | DFDESC_HEIGHT | (iWidth ? DFDESC_WIDTH : 0));
    desc.attributes = DFBFontAttributes(uiAttributes);
    desc.height = iHeight;
    desc.width = iWidth;
    Demand(DirectFB()->CreateFont(DirectFB(), pcName, &desc, &m_pFont) == DFB_OK, "a font of our own");
}

Font::~Font()
{
    m_pFont->Release(m_pFont);
}

kova_sint32 GivenFont(pKovaITextDisplay_t pDisplay, const char *pcName, kova_uint32 ucHeight,
                      KovaTextFontAttr_e eAttr)
{
    kova_sint32 siFont = -1;
    pDisplay->CreateFont(pDisplay, 0, pcName, ucHeight, eAttr, &siFont);
    Demand(siFont >= 0, "a font in the display");
    Demand(pDisplay->SetFont(pDisplay, 0, siFont, ucHeight, eAttr) == 0, "selecting it");
    return siFont;
}

std::vector<unsigned short> Wide(const std::string &text)
{
    return std::vector<unsigned short>(text.begin(), text.end());
}

int DrawText(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID, const std::string &text, kova_uint32 uiX,
             kova_uint32 uiY)
{
    const std::vector<unsigned short> wide = Wide(text);
    return pDisplay->DrawString(pDisplay, scContextID, wide.data(), kova_uint8(wide.size() * 2), uiX, uiY,
                                KOVA_TEXT_UNICODE, KOVA_TEXT_TOPLEFT);
}

void SleepMilliseconds(int iMilliseconds)
{
    usleep(useconds_t(iMilliseconds) * 1000);
}

} // namespace live
