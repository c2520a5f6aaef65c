// SPDX-License-Identifier: MIT
#include "picture.h"

#include <ft2build.h>
#include FT_FREETYPE_H

const char *const CONTENDER = "FreeType alone";
const char *const DIFFERENCES =
    "the minimum: the same passes from a hand-written glyph cache, hinted; no kerning, no clip";

struct Glyph_t {
    std::vector<uint8_t> mask;
    int iWidth, iHeight, iLeft, iTop, iAdvance;
};

static Glyph_t g_glyphs[128];
static bool g_abKept[128];
static FT_Face g_face;
static Edge_e g_eEdge;

void Open(Edge_e eEdge)
{
    FT_Library library;

    g_eEdge = eEdge;
    FT_Init_FreeType(&library);
    FT_New_Face(library, FONT_FILE, 0, &g_face);
    FT_Set_Pixel_Sizes(g_face, 0, FONT_SIZE);
}

static const Glyph_t &Keep(int iCode)
{
    Glyph_t &glyph = g_glyphs[iCode];

    if (g_abKept[iCode]) return glyph;
    g_abKept[iCode] = true;
    FT_Load_Char(g_face, FT_ULong(iCode), FT_LOAD_RENDER);
    const FT_GlyphSlot slot = g_face->glyph;
    glyph.iWidth = int(slot->bitmap.width);
    glyph.iHeight = int(slot->bitmap.rows);
    glyph.iLeft = slot->bitmap_left;
    glyph.iTop = slot->bitmap_top;
    glyph.iAdvance = int(slot->advance.x >> 6);
    for (int y = 0; y < glyph.iHeight; y++) {
        const uint8_t *const pucRow = slot->bitmap.buffer + y * slot->bitmap.pitch;
        glyph.mask.insert(glyph.mask.end(), pucRow, pucRow + glyph.iWidth);
    }
    return glyph;
}

void Draw(int iCaption)
{
    const int iAscent = int(g_face->size->metrics.ascender >> 6);

    ClearBox(g_puiPicture);
    for (int i = 0; i < 2; i++) {
        for (const Pass_t &pass : Passes(g_eEdge)) {
            int iX = LEFT + pass.iX;
            for (const char *pc = CAPTIONS[iCaption][i]; *pc; pc++) {
                const Glyph_t &glyph = Keep(*pc);
                BlendMask(g_puiPicture, glyph.mask.data(), glyph.iWidth, iX + glyph.iLeft,
                          TOPS[i] + pass.iY + iAscent - glyph.iTop, glyph.iWidth, glyph.iHeight,
                          pass.bEdge ? 0 : 0xFFFFFF);
                iX += glyph.iAdvance;
            }
        }
    }
}
