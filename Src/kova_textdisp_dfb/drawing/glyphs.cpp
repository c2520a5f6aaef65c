// SPDX-License-Identifier: MIT
#include "color.h"
#include "operations.h"
#include "platform/platform.h"

namespace textdisp
{

static kova_sint32 HorizontalFactor(KovaTextExpand_e eExpand)
{
    return eExpand & 4 ? 2 : 1;
}

// 3 and 7 are not in the enumeration; they give a factor of 6.
static kova_sint32 VerticalFactor(KovaTextExpand_e eExpand)
{
    return eExpand & 3 ? (eExpand & 3) * 2 : 1;
}

// The platform's glyph calls take 0xAARRGGBB or an index. In 32-bit mode the caller passes that value, unlike in
// every other operation: nothing is unpacked here.
static kova_sint32 GlyphColor(const KovaDFBDisplay_t *pDisplay, kova_sint32 siColor)
{
    if (Peek(pDisplay->bColor32) || !pDisplay->bTextDisp_Palette) return siColor;
    const KovaTextColor_t c = PaletteColor(pDisplay, kova_uint32(siColor));
    return kova_sint32(kova_uint32(c.a) << 24 | kova_uint32(c.r) << 16 | kova_uint32(c.g) << 8 | c.b);
}

// Headers differ in the integer types of the platform's record.
template <typename Member, typename Value> static void Set(Member &member, Value value)
{
    member = static_cast<Member>(value);
}

static MonoGlyph_t DescribeGlyph(const KovaDFBDisplay_t *pDisplay, kova_uint32 uiWidth, kova_uint32 uiHeight,
                                 kova_uint32 uiRowByte, kova_sint32 siBgColor, kova_sint32 siFgColor,
                                 kova_uint32 uiBitOffset, KovaTextExpand_e eExpand)
{
    MonoGlyph_t glyph;

    Set(glyph.w, uiWidth);
    Set(glyph.h, uiHeight);
    Set(glyph.rowbyte, uiRowByte);
    Set(glyph.bitoffset, uiBitOffset);
    Set(glyph.fgcolor, GlyphColor(pDisplay, siFgColor));
    Set(glyph.bgcolor, GlyphColor(pDisplay, siBgColor));
    Set(glyph.hz, HorizontalFactor(eExpand));
    Set(glyph.vz, VerticalFactor(eExpand));
    return glyph;
}

int DrawPixelExpand(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint8 *ucPixel,
                    kova_uint32 uiStartX, kova_uint32 uiStartY, kova_uint32 uiWidth, kova_uint32 uiHeight,
                    kova_uint32 uiRowByte, kova_sint32 siBgColor, kova_sint32 siFgColor,
                    kova_uint32 uiBitOffset, KovaTextExpand_e eExpand)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    if (!ucPixel) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (uiWidth > MAX_GLYPH_SIZE) return TEXTDISP_ERROR("Can't support DrawPixelExpand with this width!"), -1;
    if (uiHeight > MAX_GLYPH_SIZE)
        return TEXTDISP_ERROR("Can't support DrawPixelExpand with this height!"), -1;
    if (!IsShown(pDisplay)) return TEXTDISP_EXIT(), 0;
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    const MonoGlyph_t glyph =
        DescribeGlyph(pDisplay, uiWidth, uiHeight, uiRowByte, siBgColor, siFgColor, uiBitOffset, eExpand);
    DFB_CHECK(DrawGlyph(pDisplay->pActiveSurface, ucPixel, glyph, {int(uiStartX), int(uiStartY)}));
    pDisplay->blast_frame_changed = 1;
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

int BatchDrawPixelExpand(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint8 **ucPixel,
                         kova_uint32 *uiStartX, kova_uint32 *uiStartY, kova_uint32 *uiWidth,
                         kova_uint32 *uiHeight, kova_uint32 *uiRowByte, kova_sint32 *siBgColor,
                         kova_sint32 *siFgColor, kova_uint32 *uiBitOffset, KovaTextExpand_e *eExpand,
                         kova_uint8 ucNumb)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    if (!ucPixel) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (ucNumb > MAX_BATCH) return TEXTDISP_ERROR("Can't draw so many characters at one time!"), -1;
    for (int i = 0; i < ucNumb; i++) {
        if (uiWidth[i] > MAX_GLYPH_SIZE)
            return TEXTDISP_ERROR("Can't support DrawPixelExpand with this width!"), -1;
        if (uiHeight[i] > MAX_GLYPH_SIZE)
            return TEXTDISP_ERROR("Can't support DrawPixelExpand with this height!"), -1;
    }
    if (!IsShown(pDisplay)) return TEXTDISP_EXIT(), 0;
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    MonoGlyph_t glyphs[MAX_BATCH];
    DFBPoint points[MAX_BATCH];
    for (int i = 0; i < ucNumb; i++) {
        glyphs[i] = DescribeGlyph(pDisplay, uiWidth[i], uiHeight[i], uiRowByte[i], siBgColor[i], siFgColor[i],
                                  uiBitOffset[i], eExpand[i]);
        points[i] = {int(uiStartX[i]), int(uiStartY[i])};
    }
    DFB_CHECK(DrawGlyphs(pDisplay->pActiveSurface, ucPixel, glyphs, points, ucNumb));
    pDisplay->blast_frame_changed = 1;
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

} // namespace textdisp
