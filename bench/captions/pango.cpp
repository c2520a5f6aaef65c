// SPDX-License-Identifier: MIT
#include "contender.h"

#include <pango/pangocairo.h>

const char *const CONTENDER = "Pango with Cairo";
const char *const DIFFERENCES =
    "shapes with HarfBuzz, font from fontconfig, its default hinting; the same passes, "
    "a uniform edge as a stroked path";

static cairo_surface_t *g_pPicture;
static cairo_t *g_pCairo;
static PangoLayout *g_pLayout;
static Edge_e g_eEdge;

void Start()
{
    g_pPicture = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, WIDTH, HEIGHT);
    g_pCairo = cairo_create(g_pPicture);
    cairo_paint(g_pCairo);
}

void Open(Edge_e eEdge)
{
    g_eEdge = eEdge;
    g_pLayout = pango_cairo_create_layout(g_pCairo);
    PangoFontDescription *const pFont = pango_font_description_from_string("DejaVu Sans");
    pango_font_description_set_absolute_size(pFont, FONT_SIZE * PANGO_SCALE);
    pango_layout_set_font_description(g_pLayout, pFont);
    pango_font_description_free(pFont);
}

void Draw(int iCaption)
{
    cairo_set_operator(g_pCairo, CAIRO_OPERATOR_CLEAR);
    cairo_rectangle(g_pCairo, BOX_X, BOX_Y, BOX_WIDTH, BOX_HEIGHT);
    cairo_fill(g_pCairo);
    cairo_set_operator(g_pCairo, CAIRO_OPERATOR_OVER);
    for (int i = 0; i < 2; i++) {
        pango_layout_set_text(g_pLayout, CAPTIONS[iCaption][i], LINE_LENGTH);
        if (g_eEdge == EDGE_UNIFORM) {
            cairo_set_source_rgb(g_pCairo, 0, 0, 0);
            cairo_set_line_width(g_pCairo, 2);
            cairo_move_to(g_pCairo, LEFT + 1, TOPS[i] + 1);
            pango_cairo_layout_path(g_pCairo, g_pLayout);
            cairo_stroke(g_pCairo);
        }
        for (const Pass_t &pass : Passes(g_eEdge)) {
            if (g_eEdge == EDGE_UNIFORM && pass.bEdge) continue;
            const double fColor = pass.bEdge ? 0 : 1;
            cairo_set_source_rgb(g_pCairo, fColor, fColor, fColor);
            cairo_move_to(g_pCairo, LEFT + pass.iX, TOPS[i] + pass.iY);
            pango_cairo_show_layout(g_pCairo, g_pLayout);
        }
    }
}

const uint32_t *Pixels(int *piPitch)
{
    cairo_surface_flush(g_pPicture);
    *piPitch = cairo_image_surface_get_stride(g_pPicture) / 4;
    return reinterpret_cast<const uint32_t *>(cairo_image_surface_get_data(g_pPicture));
}
