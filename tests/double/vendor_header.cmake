# SPDX-License-Identifier: MIT
# Makes the header of a platform with the OSD extensions out of the published one: run as a script with -DFROM=, -DTO=
# and, for a header that differs from most platforms' in something that a vendor may choose, -DVARIANT=.
# Each replacement must find its text, or the published header is another than the one this was written for.
file(READ ${FROM} text)

function(replace_once old new)
    string(FIND "${text}" "${old}" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "${FROM} lacks the text\n${old}")
    endif()
    string(REPLACE "${old}" "${new}" changed "${text}")
    set(text "${changed}" PARENT_SCOPE)
endfunction()

replace_once("     int  width;         /* glyph width */
     int  height;        /* glyph height */" "     int  w;
     int  h;")
replace_once("     int  hzoom;         /* horizontal zoom factor */
     int  vzoom;         /* vertical zoom factor */" "     int  hz;
     int  vz;")
replace_once("} DFBMonoGlyphAttributes;" "} DFBMonoGlyphAttributes;

typedef struct {
     int  plane_x, plane_y, plane_w, plane_h;
     int  buf_w, buf_h;
     int  crop_x, crop_y, crop_w, crop_h;
} DFBOsdScaleInfo;")
replace_once("     DFBResult (*DrawMonoGlyphs) (
           IDirectFBSurface             *thiz,
           const void                   *glyph[],
           const DFBMonoGlyphAttributes *attributes,
           const DFBPoint               *dest_points,
           unsigned int                  num
     );" "     DFBResult (*DrawMonoGlyph) (
           IDirectFBSurface             *thiz,
           const void                   *glyph,
           int w, int h, int rowbyte, int bitoffset, int x, int y, int fgcolor, int bgcolor, int hz, int vz
     );

     DFBResult (*BatchDrawMonoGlyph) (
           IDirectFBSurface             *thiz,
           const void                   *glyph[],
           const DFBMonoGlyphAttributes *attributes,
           const DFBPoint               *dest_points,
           unsigned int                  num
     );

     DFBResult (*SetOSDScaleInfo) (
           IDirectFBSurface             *thiz,
           const DFBOsdScaleInfo        *info
     );

     DFBResult (*SetDescriptionFlags) (
           IDirectFBSurface             *thiz,
           DFBSurfaceDescriptionFlags    flags
     );")
replace_once("     DSDESC_ALL          = 0x0000037F" "     DSDESC_DESTINATION_LUT8 = 0x00000800,
     DSDESC_ALL          = 0x00000B7F")
replace_once("     DFFA_SOFTHINTING         = 0x00000100," "     DFFA_ITALIC_STYLE        = 0x00000100,")
replace_once("     DFFA_STYLE_ITALIC        = 0x00000200,  /* load italic style */" "")

set(single_data "const void                   *glyph,")
set(batch_arguments "const void                   *glyph[],
           const DFBMonoGlyphAttributes *attributes,
           const DFBPoint               *dest_points,
           unsigned int                  num")
set(flags_call "     DFBResult (*SetDescriptionFlags) (
           IDirectFBSurface             *thiz,
           DFBSurfaceDescriptionFlags    flags
     );")
string(REGEX MATCH "     DFBResult [(][*]DrawMonoGlyph[)] [^;]*;" single_call "${text}")
string(REGEX MATCH "     DFBResult [(][*]BatchDrawMonoGlyph[)] [^;]*;" batch_call "${text}")

if(VARIANT STREQUAL "void_glyphs")
    replace_once("${single_data}" "void *glyph,")
    replace_once("${batch_arguments}" "void *glyph[], DFBMonoGlyphAttributes *attributes, DFBPoint *dest_points, int num")
elseif(VARIANT STREQUAL "char_glyphs")
    replace_once("${single_data}" "const char *glyph,")
    replace_once("${batch_arguments}"
        "const char *const *glyph, const DFBMonoGlyphAttributes *attributes, DFBPoint *dest_points, u8 num")
elseif(VARIANT STREQUAL "other_integers")
    replace_once("     int  w;
     int  h;" "     u16  w;
     u16  h;")
    replace_once("     int  hz;
     int  vz;" "     u8  hz;
     u8  vz;")
    replace_once("int w, int h, int rowbyte, int bitoffset, int x, int y, int fgcolor, int bgcolor, int hz, int vz"
        "u16 w, u16 h, unsigned rowbyte, unsigned bitoffset, s16 x, s16 y, u32 fgcolor, u32 bgcolor, u8 hz, u8 vz")
elseif(VARIANT STREQUAL "no_batch")
    replace_once("${batch_call}" "")
elseif(VARIANT STREQUAL "no_single")
    replace_once("${single_call}" "")
elseif(VARIANT STREQUAL "no_glyphs")
    replace_once("${single_call}" "")
    replace_once("${batch_call}" "")
elseif(VARIANT STREQUAL "no_flags")
    replace_once("${flags_call}" "")
elseif(VARIANT STREQUAL "nameless_flag")
    replace_once("     DSDESC_DESTINATION_LUT8 = 0x00000800," "")
    replace_once("           DFBSurfaceDescriptionFlags    flags" "           unsigned int                  flags")
elseif(VARIANT STREQUAL "mutable_info")
    replace_once("           const DFBOsdScaleInfo        *info" "           DFBOsdScaleInfo              *info")
elseif(VARIANT)
    message(FATAL_ERROR "no such variant: ${VARIANT}")
endif()
file(WRITE ${TO} "${text}")
