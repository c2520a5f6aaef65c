// SPDX-License-Identifier: MIT
// Displays in a given state on the recording double, so that a test reads as a sentence.
#ifndef TESTS_SUPPORT_H
#define TESTS_SUPPORT_H

#include "double.h"
#include "kova/kova_textdisp_dfb.h"
#include "kova_textdisp_dfb/record.h"

#include <gtest/gtest.h>

namespace test
{

using namespace fake;

enum ColorMode_e { INDEX_COLORS, PALETTE_COLORS, PACKED_COLORS };

constexpr int NO_CONTEXT = -1;
constexpr int ACTIVE_CONTEXT(int iContext)
{
    return iContext;
}

constexpr kova_uint32 PLANE_WIDTH = 720, PLANE_HEIGHT = 480;

// The record behind a display.
KovaDFBDisplay_t *RecordOf(pKovaITextDisplay_t pDisplay);

KovaTextInitParam_t InitParam(KovaGraphicLayer_e eLayer, ColorMode_e eMode = INDEX_COLORS);
KovaTextContextParam_t ContextParam(kova_uint32 uiWidth = PLANE_WIDTH, kova_uint32 uiHeight = PLANE_HEIGHT);

// After each of these the trace is empty, the clock is a second past the last flip, and the lock is watched.
// A display as created by the facade, hidden and without contexts.
pKovaITextDisplay_t GivenDisplay(KovaGraphicLayer_e eLayer, ColorMode_e eMode = INDEX_COLORS);
// The same with contexts 0 to iActive, the last one activated; the flip thread waits. With NO_CONTEXT there
// is neither context nor thread. PACKED_COLORS stays in effect although an activation ends it.
pKovaITextDisplay_t GivenHiddenDisplay(KovaGraphicLayer_e eLayer, ColorMode_e eMode = INDEX_COLORS,
                                       int iActive = 0);
pKovaITextDisplay_t GivenShownDisplay(KovaGraphicLayer_e eLayer, ColorMode_e eMode = INDEX_COLORS,
                                      int iActive = 0);
// Creates a font in slot 0 at this height and selects it; the trace is empty again.
void GivenFont(pKovaITextDisplay_t pDisplay, kova_uint32 uiHeight = 24, const char *pcName = "sans.ttf");
// A backup surface with the plane's size and format, named "backup"; no operation creates one.
IDirectFBSurface *GivenBackupSurface(pKovaITextDisplay_t pDisplay);

// Waits until the flip thread waits for a request; false after a minute.
bool AwaitIdleThread(pKovaITextDisplay_t pDisplay);
// Waits until the thread's trace contains this text; false after a minute.
bool AwaitThreadTrace(const std::string &text);

// Destroys all contexts and the display, and expects that no DirectFB object is left except the named ones,
// whose release failed.
void Destroy(pKovaITextDisplay_t pDisplay, const std::string &left = "");
// The same, but first expects that the caller does not hold the display's lock.
void DestroyUnlocked(pKovaITextDisplay_t pDisplay);

// Disables leak detection while it exists, for memory that the library intentionally does not free.
struct LeaksAreMeant_t {
    LeaksAreMeant_t();
    ~LeaksAreMeant_t();
    LeaksAreMeant_t(const LeaksAreMeant_t &) = delete;
    LeaksAreMeant_t &operator=(const LeaksAreMeant_t &) = delete;
};

// The lines of a trace that are not log records ("enter", "exit", "log"), without indentation.
std::string CallsOnly(const std::string &trace);
// What record i of the log says behind its place and thread, if it is an entry or exit trace, or says at all:
// to the last byte, where the trace leaves the end of a line away.
std::string RecordText(size_t i);
// The DFB_CHECK line of this result in the notation of the trace.
std::string CheckLine(DFBResult eResult);

} // namespace test

#endif
