// SPDX-License-Identifier: MIT
// All the state of a display. Many files read and write the fields; the comment above each group names the file that
// owns it. Up to flip_clip the order and types are fixed, because other programs read this record.
#ifndef TEXTDISP_RECORD_H
#define TEXTDISP_RECORD_H

#include "kova/kova_textdisp.h"
#include "platform/directfb_c.h"

#include <pthread.h>

enum {
    MAX_CONTEXTS = 4,
    MAX_FONTS = 8,
    MAX_ENCODINGS = 8,
    MAX_FONT_NAME = 100, // with its NUL
    MAX_PALETTE_COLOR = 256
};

// The geometry of one drawing context, in pixels.
typedef struct KovaDFBContext_tag {
    kova_uint32 uiTextWindowWidth;
    kova_uint32 uiTextWindowHeight;
    kova_uint32 uiDisplayWindowX;
    kova_uint32 uiDisplayWindowY;
    kova_uint32 uiDisplayWindowWidth;
    kova_uint32 uiDisplayWindowHeight;
    kova_uint32 uiPlaneWidth;
    kova_uint32 uiPlaneHeight;
} KovaDFBContext_t, *pKovaDFBContext_t;

typedef struct KovaDFBSize_tag {
    kova_uint32 uiWidth; // pixels
    kova_uint32 uiHeight;
} KovaDFBSize_t;

typedef struct KovaDFBEncoding_tag {
    DFBTextEncodingID id;
    const char *cEncoding; // DirectFB's own string, neither copied nor owned
} KovaDFBEncoding_t;

// A font slot. It is free exactly while pFont is null.
typedef struct KovaDFBFont_tag {
    char *pcFontName; // a row of FontName; null when the slot was never named
    KovaTextFontAttr_e eAttr;
    IDirectFBFont *pFont;
    kova_uint32 ucHeight;   // as requested, pixels
    kova_uint32 ucWidth;    // set by ScaleFontWidth, pixels; 0 not scaled
    kova_uint8 ucUTF8Index; // the encoding that strings are drawn in
    KovaDFBEncoding_t encoding[MAX_ENCODINGS];
} KovaDFBFont_t;

typedef struct KovaDFBDisplay_tag {
    // What the caller sees; filled by core/display.cpp, eType by the facade.
    KovaITextDisplay_t sInterface;

    // core/display.cpp
    kova_sint32 iPid;             // not used
    kova_bool bUseTextWindow;     // not used
    kova_bool bShow;              // core/visibility.cpp; read without the lock by most operations
    kova_sint32 siFontHeight;     // not used
    KovaTextBlitFlag_e eBlitFlag; // not used: the flags live in the surface
    kova_bool bDoubleBuffer;      // always false
    void *pDlHandle;
    pthread_mutex_t display_mutex; // recursive; guards the whole record
    char *pcParamStr;              // not used
    int iParamCount;               // not used
    KovaGraphicLayer_e eLayer;

    // core/contexts.cpp and core/geometry.cpp
    KovaDFBContext_t context[MAX_CONTEXTS];
    kova_uint8 ucContextMask;     // bit i: context i exists
    kova_sint8 scActiveContextID; // 0 to 3; -1 none yet, any may draw; -2 the layer is gone
    kova_uint32 uiPlaneWidth;     // of the surface now in use, pixels
    kova_uint32 uiPlaneHeight;

    // core/display.cpp, core/layer.cpp, core/osd1_window.cpp
    IDirectFB *pDfb;
    IDirectFBDisplayLayer *pLayer;
    IDirectFBWindow *pWindow; // layer 1 only
    IDirectFBSurface *pBaseSurface;
    IDirectFBSurface *pCharSurface;   // never made
    IDirectFBSurface *pBackupSurface; // presentation/backup.cpp; no operation makes one
    IDirectFBSurface *pActiveSurface; // borrowed: one of the two above, or null

    // text/fonts.cpp
    KovaDFBFont_t font[MAX_FONTS];
    kova_sint8 scActiveFontID; // 0 to 7; -1 none; written by text/metrics.cpp

    // drawing/state.cpp
    DFBRegion clip; // inclusive corners

    // text/style.cpp; colours as the caller passed them
    KovaTextEdgeType_e eEdge;
    kova_uint32 ucEdgeColorIndex;
    kova_uint32 ucFgColorIndex;

    // text/fonts.cpp; a row whose first byte is 0 is free
    char FontName[MAX_FONTS][MAX_FONT_NAME];

    // drawing/palette.cpp
    KovaTextColor_t palette[MAX_PALETTE_COLOR];

    // core/loader.cpp
    DFBResult (*pFnDirectFBInit)(int *argc, char ***argv);
    DFBResult (*pFnDirectFBCreate)(IDirectFB **ppDfb);
    DFBResult (*pFnDirectFBErrorFatal)(const char *pcMessage, DFBResult eResult); // never called

    // The colour mode, chosen at creation; bColor32 also by core/plane32.cpp and core/contexts.cpp.
    kova_bool bColor32;
    kova_bool bFlip; // presentation/flip.cpp: flipping is enabled
    kova_bool bTextDisp_Palette;

    // presentation/flip_thread.cpp
    kova_uint32 flip_thread_ref; // contexts that hold the thread; it exists while this is above 0
    pthread_t flip_thread_id;
    // Held only around the thread's wait; the thread never holds it together with display_mutex.
    pthread_mutex_t flip_thread_mutex;
    pthread_cond_t flip_thread_cond;
    kova_bool flip_thread_stop;
    kova_bool blast_frame_changed; // 0 only while a deferred flip is pending and nothing has superseded it
    kova_bool has_flipping_req;    // the thread is awake for a request
    DFBRegion flip_clip;           // the clip under which the deferred flip is made

    // presentation/flip_thread.cpp: a flip was deferred and the thread has not seen it yet. A signal alone would be
    // lost if it came between the thread's decision to wait and its wait.
    kova_bool bFlipPosted;

    // How large the surfaces are, for DrawPixel. The plane size may differ from all of these.
    KovaDFBSize_t
        sLayerSize; // core/layer.cpp; the layer's, and so that of a base surface that the layer gave
    KovaDFBSize_t sWindowSize; // core/osd1_window.cpp; pWindow's
    kova_bool bWindowSurface;  // core/osd1_window.cpp; a window gave pBaseSurface, of the size that follows
    KovaDFBSize_t sWindowSurfaceSize;
    IDirectFBSurface *pMeasuredBackup; // presentation/backup.cpp; the backup surface whose size follows
    KovaDFBSize_t sBackupSize;
} KovaDFBDisplay_t, *pKovaDFBDisplay_t;

#endif
