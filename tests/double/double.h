// SPDX-License-Identifier: MIT
// A DirectFB, a logging library and a clock that behave as the test plans and record every call.
//
// The trace is text, one line an event, in order; a line is indented by two spaces while the calling thread
// holds the display's lock. Lines of other threads than the test's own (the flip thread's) are kept apart.
// What a line looks like:
//
//     enter DrawLine                      an entry trace; the operation's own text follows the name
//     exit DrawLine                       an exit trace, likewise
//     ERROR DrawLine: NULL Pointer!       the three records of one error, when they agree with each other
//     error SetPaletteInternal: invalide  a single record at level ERROR
//     log SetClip: Set Clip Area: x:0x1   a single record at level LOG
//     base.DrawLine 10,20 30,20           a call on a DirectFB object
//     DFB_CHECK 0x1f                      a line of DFB_CHECK on standard error, with the result it names
//     DFB_CHECK_BRIEF                     a line of DFB_CHECK_BRIEF
//     dlopen libdirectfb.so NOW|GLOBAL    and dlsym NAME, dlclose, usleep 16000, pthread_create, pthread_join
//
// A line feed inside a record's text is written as \n, but for the one that ends it. Objects are named by
// what they are: dfb, layer, window, base (a surface of a layer or window), surface (one of CreateSurface),
// font, palette; the second of a kind is layer2, and so on.
#ifndef TESTS_DOUBLE_H
#define TESTS_DOUBLE_H

#include "kova_textdisp_dfb/platform/directfb_c.h"

#include <functional>
#include <pthread.h>
#include <string>
#include <sys/time.h>
#include <utility>
#include <vector>

namespace fake
{

// One record as passed to the logging library.
struct Record_t {
    bool bDefaultCategory;
    int iLevel;
    std::string file, function;
    int iLine;
    std::string format, text;
    bool bMainThread;
};

// One line of the trace with its details.
struct Line_t {
    std::string text; // without indentation
    bool bMainThread;
    bool bLocked;
    std::string method; // of a DirectFB call, in the notation below; otherwise empty
    std::string made;   // the name of the object that the call returned
};

// ---- what happened

std::string Trace();                            // the test's own thread, since the last ClearTrace
std::string ThreadTrace();                      // all other threads
std::string TraceOf(const std::string &prefix); // the lines of Trace() with this prefix, ignoring indentation
std::vector<Line_t> Lines();                    // of all threads
std::vector<Record_t> Records();
std::string StandardError(); // everything the library wrote there, unchanged
void ClearTrace();
void Note(const std::string &line);      // adds a line of the test itself
bool HoldsLock();                        // whether the calling thread holds the watched lock
void WatchLock(pthread_mutex_t *pMutex); // null: none
int LiveObjects();                       // DirectFB objects not yet released
std::string LiveObjectNames();
void DropObjects(); // frees the remaining ones, which must not be used any more
int CallCount();    // DirectFB calls of all threads since the last Reset

// ---- what to simulate; methods have names like "Surface.SetClip", "Layer.GetSurface", "DirectFBInit"

void Fail(const std::string &method, DFBResult eResult); // every call fails; output pointers are not written
void FailNth(const std::string &method, int iNth, DFBResult eResult); // the n-th call from now fails
void GiveNothing(const std::string &method); // returns DFB_OK, and the output pointer becomes null
// Affects the call that raises CallCount() to this number, whichever it is.
void FailCall(int iIndex, DFBResult eResult);
void GiveNothingAtCall(int iIndex);
void TemporarilyUnavailable(int iTimes); // GetDisplayLayer fails so many times before it succeeds
// A null name is passed on. By default UTF8 is last.
void SetEncodings(std::vector<std::pair<unsigned, const char *>> encodings);
void EnumerateWithoutContext(); // the callback gets a null context
void SetFontMetrics(int iHeight, int iUnderlinePosition, int iUnderlineThickness, int iWidthPerByte);
void SetLayerConfig(const DFBDisplayLayerConfig &config); // the result of GetConfiguration from now on
void ForceBufferMode(DFBDisplayLayerBufferMode eMode, bool bReported); // whatever was configured
void FailAllocation();                                                 // the library's next calloc fails
void FailThreadStart(int iError);
// Initialisation of mutexes and conditions fails and leaves them unchanged; 0 ends it.
void FailInitialization(int iError);
void FailLoading(const std::string &error);                         // dlopen
void FailSymbol(const std::string &name, const std::string &error); // dlsym
// Resets all of the above and the trace. Objects stay alive; names restart if there are none.
void Reset();

// ---- the objects

IDirectFBSurface *MakeSurface(const std::string &name, int iWidth, int iHeight,
                              DFBSurfacePixelFormat eFormat);
// The memory of a surface. A byte written outside of its pixels ends the process, at once or when it is
// unlocked.
const unsigned char *Pixels(IDirectFBSurface *pSurface, int *piPitch);
void SizeOf(IDirectFBSurface *pSurface, int *piWidth, int *piHeight);
std::vector<unsigned char> Memory(IDirectFBSurface *pSurface); // rows without padding
DFBRegion ClipOf(IDirectFBSurface *pSurface);
std::vector<DFBColor> PaletteOf(IDirectFBSurface *pSurface); // 256 entries
std::vector<DFBColor> LastEntries();                         // the colours of the last SetEntries
std::string NameOf(IDirectFBSurface *pSurface);
DFBDisplayLayerConfig LastConfiguration(); // the last argument of SetConfiguration, with every member
DFBWindowDescription LastWindow();         // the last argument of CreateWindow

// ---- the clock, which stands still until it is advanced; sleeping advances it

void SetClock(long lSeconds, long lMicroseconds);
void TurnClock(long lMicroseconds);
struct timeval Now();

// Sleeps of threads other than the test's are held until released, one at a time; on by default.
void HoldSleeps(bool bHold);
bool AwaitSleeper(); // waits until another thread sleeps; false after a minute
void LetSleeperGo(); // and advances the clock by the requested time
// Uses the real clock and real sleeps, for what only time can show; off after Reset.
void UseRealClock(bool bReal);
void SetThreshold(int iLevel); // __kova_debug_min; 5 after Reset

// For a stress: nothing is written down and no call fails, and threads that come by meet no lock here, which
// the thread sanitizer would take for the library's. On again after Reset.
void KeepTrace(bool bKeep);
// Called in the calling thread at each FillRectangle and at each Flip of a surface, the latter with the time
// that this thread was last told, zero if it never asked. Null: nobody.
void WatchSurfaces(void (*pfnFilled)(), void (*pfnFlipped)(struct timeval asked));

// Called in the calling thread before each pthread_mutex_lock, pthread_cond_wait, pthread_cond_signal and
// pthread_join that the library makes, with that name and the mutex or condition: there a test holds a thread
// up, or slows it down. nullptr takes it back; a call that has begun goes on.
void BeforeThreadCall(std::function<void(const char *pcCall, const void *pObject)> hook);

} // namespace fake

#endif
