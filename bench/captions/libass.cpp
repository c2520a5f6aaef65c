// SPDX-License-Identifier: MIT
#include "picture.h"

#include <ass/ass.h>

#include <string>

const char *const CONTENDER = "libass";
const char *const DIFFERENCES =
    "shapes with HarfBuzz, no hinting; one shadow or a stroked outline as a separate mask, "
    "blended here";

static ASS_Renderer *g_pRenderer;
static ASS_Track *g_pTrack;

void Open(Edge_e eEdge)
{
    static constexpr const char *EDGE[] = {"",        "\\shad1\\xshad-2\\yshad-2", "\\shad1\\xshad1\\yshad1",
                                           "\\bord1", "\\shad1\\xshad-2\\yshad2",  "\\shad1\\xshad2\\yshad2"};
    // Its font size is ascender plus descender: 1.164 em for this font.
    std::string script =
        "[Script Info]\nPlayResX: 1920\nPlayResY: 1080\n[V4+ Styles]\n"
        "Format: Name, Fontname, Fontsize, PrimaryColour, OutlineColour, BackColour, BorderStyle, "
        "Outline, Shadow, Alignment\n"
        "Style: Default,DejaVu Sans,56,&H00FFFFFF,&H00000000,&H00000000,1,0,0,7\n[Events]\n"
        "Format: Layer, Start, End, Style, MarginL, MarginR, MarginV, Text\n";
    for (int iCaption = 0; iCaption < 2; iCaption++) {
        for (int i = 0; i < 2; i++) {
            script += "Dialogue: 0,0:00:0" + std::to_string(iCaption) + ".00,0:00:0" +
                      std::to_string(iCaption + 1) + ".00,Default,0,0,0,{\\pos(" + std::to_string(LEFT) +
                      "," + std::to_string(TOPS[i]) + ")" + EDGE[eEdge] + "}" + CAPTIONS[iCaption][i] + "\n";
        }
    }
    ASS_Library *const pLibrary = ass_library_init();
    ass_set_message_cb(
        pLibrary, [](int, const char *, va_list, void *) {}, nullptr);
    g_pRenderer = ass_renderer_init(pLibrary);
    ass_set_frame_size(g_pRenderer, WIDTH, HEIGHT);
    ass_set_fonts(g_pRenderer, FONT_FILE, "DejaVu Sans", ASS_FONTPROVIDER_NONE, nullptr, 0);
    g_pTrack = ass_read_memory(pLibrary, &script[0], script.size(), nullptr);
}

void Draw(int iCaption)
{
    ClearBox(g_puiPicture);
    for (const ASS_Image *p = ass_render_frame(g_pRenderer, g_pTrack, iCaption * 1000 + 500, nullptr); p;
         p = p->next) {
        BlendMask(g_puiPicture, p->bitmap, p->stride, p->dst_x, p->dst_y, p->w, p->h, p->color >> 8);
    }
}
