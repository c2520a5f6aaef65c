// SPDX-License-Identifier: MIT
// The cost of an operation, compared with the same DirectFB calls made directly: on the same surface, in the
// same colours, with the same no-op flip where the operation flips.
#include "fixture.h"

#include <cstring>

namespace bench
{

static constexpr char TEXT[] = "The quick brown fox jumps over a"; // 32 characters
enum { TEXT_LENGTH = sizeof TEXT - 1, FOREGROUND = 7, EDGE = 9, TEXT_X = 300, TEXT_Y = 900 };

// The library's colour argument. Direct::SetColor sets the same colour directly.
static kova_uint32 Color(Colors_e eColors, unsigned uiIndex)
{
    return eColors == PACKED ? uiIndex * 37 << 24 | 0xFF : uiIndex;
}

class Direct
{
public:
    Direct(IDirectFBSurface *pSurface, Colors_e eColors) : m_pSurface(pSurface), m_eColors(eColors)
    {
    }
    void SetColor(unsigned uiIndex) const
    {
        if (m_eColors == INDEX) {
            m_pSurface->SetColorIndex(m_pSurface, uiIndex);
        } else {
            m_pSurface->SetColor(m_pSurface, kova_uint8(uiIndex * 37), kova_uint8(uiIndex * 91),
                                 kova_uint8(uiIndex * 173), 255);
        }
    }
    void Flip() const
    {
        m_pSurface->Flip(m_pSurface, nullptr, DFBSurfaceFlipFlags(DSFLIP_WAIT | DSFLIP_BLIT | DSFLIP_ONSYNC));
    }
    void Draw(int iX, int iY) const
    {
        m_pSurface->DrawString(m_pSurface, TEXT, TEXT_LENGTH, TEXT_X + iX, TEXT_Y + iY, DSTF_TOPLEFT);
    }
    // The passes of an edge and their colours, as a program without the library would draw them.
    void DrawEdged(KovaTextEdgeType_e eEdge) const
    {
        SetColor(eEdge == KOVA_TEXT_ENONE ? FOREGROUND : EDGE);
        switch (eEdge) {
        case KOVA_TEXT_ERAISED:
            Draw(0, -2), SetColor(FOREGROUND), Draw(2, 0);
            break;
        case KOVA_TEXT_EDEPRESSED:
            Draw(0, 1), Draw(1, 1), SetColor(FOREGROUND), Draw(0, 0);
            break;
        case KOVA_TEXT_ELEFTDROPSHADOW:
            Draw(-2, 2), SetColor(FOREGROUND), Draw(0, 0);
            break;
        case KOVA_TEXT_ERIGTHDROPSHADOW:
            Draw(2, 2), SetColor(FOREGROUND), Draw(0, 0);
            break;
        case KOVA_TEXT_EUNIFORM:
            Draw(0, 1), Draw(2, 1), Draw(1, 0), Draw(1, 2), SetColor(FOREGROUND), Draw(1, 1);
            break;
        default:
            Draw(0, 0);
            break;
        }
        Flip();
    }

private:
    IDirectFBSurface *m_pSurface;
    Colors_e m_eColors;
};

struct Plane {
    const char *pcName;
    Colors_e eColors;
    KovaGraphicLayer_e eLayer;
};

static void Fill(benchmark::State &state, const Plane &plane, kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    Display display(plane.eColors, plane.eLayer);
    const Direct direct(display.Surface(), plane.eColors);
    IDirectFBSurface *const pSurface = display.Surface();
    KovaTextRect_t rect = {0, 0, uiWidth, uiHeight};
    const kova_uint32 uiColor = Color(plane.eColors, FOREGROUND);

    CompareWith(
        state, "FillRectangle", [&] { display->FillRect(display, 0, &rect, uiColor); },
        [&] {
            direct.SetColor(FOREGROUND);
            pSurface->FillRectangle(pSurface, 0, 0, int(uiWidth), int(uiHeight));
        });
}

static void Line(benchmark::State &state, const Plane &plane)
{
    Display display(plane.eColors, plane.eLayer);
    const Direct direct(display.Surface(), plane.eColors);
    IDirectFBSurface *const pSurface = display.Surface();
    const kova_uint32 uiColor = Color(plane.eColors, FOREGROUND);

    CompareWith(
        state, "DrawLine", [&] { display->DrawLine(display, 0, 100, 100, 900, 500, uiColor); },
        [&] {
            direct.SetColor(FOREGROUND);
            pSurface->DrawLine(pSurface, 100, 100, 900, 500);
            direct.Flip();
        });
}

static void String(benchmark::State &state, const Plane &plane, KovaTextEdgeType_e eEdge, bool bWide)
{
    Display display(plane.eColors, plane.eLayer);
    const Direct direct(display.Surface(), plane.eColors);
    unsigned short wide[TEXT_LENGTH];
    const void *const pText = bWide ? static_cast<const void *>(wide) : TEXT;
    const KovaTextEncoding_e eEncoding = bWide ? KOVA_TEXT_UNICODE : KOVA_TEXT_UTF8;

    for (size_t i = 0; i < TEXT_LENGTH; i++) wide[i] = kova_uint8(TEXT[i]);
    display.OpenFont();
    display->SetEdgeType(display, 0, eEdge);
    display->SetEdgeColor(display, 0, Color(plane.eColors, EDGE));
    display->SetTextForeColor(display, 0, Color(plane.eColors, FOREGROUND));
    CompareWith(
        state, "DrawString",
        [&] {
            display->DrawString(display, 0, static_cast<const unsigned short *>(pText),
                                kova_uint8(TEXT_LENGTH * (bWide ? 2 : 1)), TEXT_X, TEXT_Y, eEncoding,
                                KOVA_TEXT_LEFT);
        },
        [&] { direct.DrawEdged(eEdge); });
}

static void Palette(benchmark::State &state, const Plane &plane)
{
    Display display(plane.eColors, plane.eLayer);
    IDirectFBSurface *const pSurface = display.Surface();
    KovaTextColor_t colors[256] = {};
    DFBColor directColors[256] = {};

    CompareWith(
        state, "SetEntries", [&] { display->SetPalette(display, 0, colors, 256, 0); },
        [&] {
            IDirectFBPalette *pPalette = nullptr;
            pSurface->GetPalette(pSurface, &pPalette);
            for (int i = 0; i < 256; i++) {
                directColors[i] = {colors[i].a, colors[i].r, colors[i].g, colors[i].b};
            }
            pPalette->SetEntries(pPalette, directColors, 256, 0);
            pPalette->Release(pPalette);
        });
}

static void Rows(benchmark::State &state, const Plane &plane, kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    Display display(plane.eColors, plane.eLayer);
    const Direct direct(display.Surface(), plane.eColors);
    IDirectFBSurface *const pSurface = display.Surface();
    std::vector<kova_uint8> pixels(uiWidth * uiHeight, 7);

    CompareWith(
        state, "Lock, memcpy, Unlock",
        [&] { display->DrawPixel(display, 0, pixels.data(), 0, 0, uiWidth, uiHeight, uiWidth); },
        [&] {
            void *pData;
            int iPitch;
            pSurface->Lock(pSurface, DSLF_WRITE, &pData, &iPitch);
            for (kova_uint32 y = 0; y < uiHeight; y++) {
                std::memcpy(static_cast<char *>(pData) + y * kova_uint32(iPitch), pixels.data() + y * uiWidth,
                            uiWidth);
            }
            pSurface->Unlock(pSurface);
            direct.Flip();
        });
}

static void RegisterPlane(const Plane &plane)
{
    static constexpr kova_uint32 SIZES[][2] = {{1, 1}, {8, 8}, {64, 48}, {640, 120}, {1920, 1080}};
    static constexpr struct {
        const char *pcName;
        KovaTextEdgeType_e eEdge;
        bool bWide;
    } STRINGS[] = {{"string, no edge", KOVA_TEXT_ENONE, false},
                   {"string, no edge, 16-bit", KOVA_TEXT_ENONE, true},
                   {"string, raised", KOVA_TEXT_ERAISED, false},
                   {"string, depressed", KOVA_TEXT_EDEPRESSED, false},
                   {"string, uniform", KOVA_TEXT_EUNIFORM, false},
                   {"string, left shadow", KOVA_TEXT_ELEFTDROPSHADOW, false},
                   {"string, right shadow", KOVA_TEXT_ERIGTHDROPSHADOW, false}};
    const std::string group = std::string("direct/") + plane.pcName + "/";
    const auto size = [](const kova_uint32 *pSize) {
        return std::to_string(pSize[0]) + "x" + std::to_string(pSize[1]);
    };

    for (const auto &s : SIZES) {
        Register(group + "fill " + size(s),
                 [plane, &s](benchmark::State &state) { Fill(state, plane, s[0], s[1]); });
    }
    Register(group + "line 800x400", [plane](benchmark::State &state) { Line(state, plane); });
    for (const auto &s : STRINGS) {
        Register(group + s.pcName,
                 [plane, &s](benchmark::State &state) { String(state, plane, s.eEdge, s.bWide); });
    }
    if (plane.eColors != INDEX) return; // the other modes have no DirectFB palette and no one-byte pixels
    Register(group + "palette of 256", [plane](benchmark::State &state) { Palette(state, plane); });
    for (const auto &s : {SIZES[1], SIZES[3], SIZES[4]}) {
        Register(group + "rows " + size(s),
                 [plane, uiWidth = s[0], uiHeight = s[1]](benchmark::State &state) {
                     Rows(state, plane, uiWidth, uiHeight);
                 });
    }
}

static const int s_registered = [] {
    if (IsX11()) {
        RegisterPlane({"layer 1 ARGB X11", PALETTE, KOVA_GRAPHIC_LAYER1});
        RegisterPlane({"layer 2 LUT8 X11", INDEX, KOVA_GRAPHIC_LAYER2});
        RegisterPlane({"layer 2 ARGB X11", PACKED, KOVA_GRAPHIC_LAYER2});
    } else {
        RegisterPlane({"layer 1 LUT8", INDEX, KOVA_GRAPHIC_LAYER1});
        RegisterPlane({"layer 1 ARGB", PALETTE, KOVA_GRAPHIC_LAYER1});
    }
    return 0;
}();

} // namespace bench
