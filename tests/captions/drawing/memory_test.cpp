// SPDX-License-Identifier: MIT
// Drawing takes no memory.
#include "../allocations.h"
#include "states.h"

// A display that only counts: the recording one takes memory.
static int s_calls;

static KovaITextDisplay_t SilentDisplay()
{
    KovaITextDisplay_t table = {};

    table.SetFlip = [](pKovaITextDisplay_t, kova_bool) { return ++s_calls, 0; };
    table.SetClip = [](pKovaITextDisplay_t, kova_sint8, pKovaTextRect_t) { return ++s_calls, 0; };
    table.FillRect = [](pKovaITextDisplay_t, kova_sint8, pKovaTextRect_t, kova_uint32) {
        return ++s_calls, 0;
    };
    table.SetPalette = [](pKovaITextDisplay_t, kova_sint8, pKovaTextColor_t, kova_uint32, kova_uint8) {
        return ++s_calls, 0;
    };
    table.Blit = [](pKovaITextDisplay_t, kova_sint8, pKovaTextRect_t, kova_uint32, kova_uint32) {
        return ++s_calls, 0;
    };
    table.CreateFont = [](pKovaITextDisplay_t, kova_sint8, const char *, kova_uint32, KovaTextFontAttr_e,
                          kova_sint32 *number) { return *number = 0, ++s_calls, 0; };
    table.SetFont = [](pKovaITextDisplay_t, kova_sint8, kova_sint32, kova_uint32, KovaTextFontAttr_e) {
        return ++s_calls, 0;
    };
    table.ScaleFontWidth = [](pKovaITextDisplay_t, kova_sint8, kova_bool, kova_uint32) {
        return ++s_calls, 0;
    };
    table.GetFontHeight = [](pKovaITextDisplay_t, kova_sint8, kova_sint32 *height) {
        return *height = 20, 0;
    };
    table.GetStringWidth = [](pKovaITextDisplay_t, kova_sint8, const unsigned short *, kova_uint8 bytes,
                              KovaTextEncoding_e, kova_uint32 *width) { return *width = bytes * 9u, 0; };
    table.GetUnderlineInfo = [](pKovaITextDisplay_t, kova_sint8, kova_sint32, kova_uint32, kova_uint32,
                                kova_sint32 *top, kova_sint32 *thick) { return *top = *thick = 1, 0; };
    table.SetTextForeColor = [](pKovaITextDisplay_t, kova_sint8, kova_uint32) { return ++s_calls, 0; };
    table.SetEdgeColor = table.SetTextForeColor;
    table.SetEdgeType = [](pKovaITextDisplay_t, kova_sint8, KovaTextEdgeType_e) { return ++s_calls, 0; };
    table.DrawString = [](pKovaITextDisplay_t, kova_sint8, const unsigned short *, kova_uint8, kova_uint32,
                          kova_uint32, KovaTextEncoding_e, KovaTextAlignFlag_e) { return ++s_calls, 0; };
    return table;
}

TEST(Memory, IsTakenAtCreationAndNotWhileDrawing)
{
    Requirement("A1");
    KovaITextDisplay_t table = SilentDisplay();
    KovaCaptionsScreen screen = GivenScreen();
    screen.display = &table;
    ServiceState service;
    ChannelState channel;
    KovaCaptionsPen pen = PenStyle1();
    pen.font = KOVA_CAPTIONS_FONT_SANS;
    pen.underline = 1;
    pen.foreground_opacity = KOVA_CAPTIONS_FLASH;
    service.Define(0, 0, 0, 15, 42);
    for (unsigned row = 0; row < 15; ++row) {
        service.Print(0, row, 0, u"text that is long enough to be wrapped at", pen);
        channel.Print(row + 1, 1, u"text of CEA-608");
    }
    service.windows[0].effect = {START, 1000000, KOVA_CAPTIONS_FADE, 0, 1, {}};
    KovaCaptions *const decoder = Kova_Captions_Create(nullptr);
    KovaCaptionsSettings settings = Defaults();
    settings.size = 200;

    s_counts = true;
    KovaCaptionsRenderer *const renderer = Kova_Captions_CreateRenderer(&screen);
    EXPECT_EQ(s_allocations, 1u);
    EXPECT_EQ(s_bytes, Kova_Captions_GetRendererSize());
    s_allocations = 0;
    for (int64_t time = START; time < START + 2000000; time += 50000) {
        Kova_Captions_DrawService(renderer, &service.service, service.windows.data(), time);
        Kova_Captions_DrawChannel(renderer, channel.channel.get(), time);
        Kova_Captions_Preview(renderer, "preview", time);
        Kova_Captions_SetSettings(renderer, time < START + 1000000 ? nullptr : &settings);
        Kova_Captions_Draw(renderer, decoder, KOVA_CAPTIONS_S1, time);
        Kova_Captions_Redraw(renderer);
    }
    s_counts = false;

    EXPECT_EQ(s_allocations, 0u);
    EXPECT_GT(s_calls, 10000);
    Kova_Captions_DestroyRenderer(renderer);
    Kova_Captions_Destroy(decoder);
}
