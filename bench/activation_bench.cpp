// One activation with eight fonts, beside the DirectFB calls that it makes, made directly.
#include "bed.h"
#include "direct_window.h"

namespace bench
{

enum { FONTS = 8 };

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
            window.Open(bLarge ? 1920 : 1280, bLarge ? 1080 : 720, FONTS);
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
