// SPDX-License-Identifier: MIT
// A DirectFB, a logging library and a clock that do what the test plans and record every call.
//
// The trace is text, one line an event, in order; a line is indented by two spaces while the calling thread
// holds the display's lock. Lines of other threads than the test's own (the flip thread's) are kept apart.
// What a line looks like:
//
//     enter DrawLine                      an entry trace; text of the operation's own follows the name
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

// One record as the logging library was given it.
struct Record_t {
    bool bDefaultCategory;
    int iLevel;
    std::string file, function;
    int iLine;
    std::string format, text;
    bool bMainThread;
};

// One line of the trace with what it is about.
struct Line_t {
    std::string text; // without indentation
    bool bMainThread;
    bool bLocked;
    std::string method; // of a DirectFB call, as it is named below; else empty
    std::string made;   // the name of the object that the call gave
};

// ---- what happened

std::string Trace();                            // the test's own thread, since the last ClearTrace
std::string ThreadTrace();                      // all other threads
std::string TraceOf(const std::string &prefix); // the lines of Trace() that begin so, indentation aside
std::vector<Line_t> Lines();                    // those of all threads
std::vector<Record_t> Records();
std::string StandardError(); // everything the library wrote there, as it wrote it
void ClearTrace();
void Note(const std::string &line);      // a line of the test's own
bool HoldsLock();                        // whether the calling thread holds the watched lock
void WatchLock(pthread_mutex_t *pMutex); // null: none
int LiveObjects();                       // DirectFB objects not yet released
std::string LiveObjectNames();
void DropObjects(); // frees what is left of them; none may be used any more
int CallCount();    // DirectFB calls since the last Reset, those of all threads

// ---- what is planned; methods have names like "Surface.SetClip", "Layer.GetSurface", "DirectFBInit"

void Fail(const std::string &method, DFBResult eResult);              // every time, out pointers untouched
void FailNth(const std::string &method, int iNth, DFBResult eResult); // the n-th call from now, 1 the next
void GiveNothing(const std::string &method); // says OK, and the out pointer becomes null
// The call that raises CallCount() to this number, whatever it is.
void FailCall(int iIndex, DFBResult eResult);
void GiveNothingAtCall(int iIndex);
void TemporarilyUnavailable(int iTimes); // answers of GetDisplayLayer before it does as it should
// A null name is passed on. The default has UTF8 last.
void SetEncodings(std::vector<std::pair<unsigned, const char *>> encodings);
void EnumerateWithoutContext(); // the callback gets a null context
void SetFontMetrics(int iHeight, int iUnderlinePosition, int iUnderlineThickness, int iWidthPerByte);
void SetLayerConfig(const DFBDisplayLayerConfig &config); // what GetConfiguration says until it is set anew
void ForceBufferMode(DFBDisplayLayerBufferMode eMode, bool bReported); // whatever was configured
void FailAllocation();                                                 // the library's next calloc
void FailThreadStart(int iError);
// Of mutexes and conditions, which are then left as they were; 0 ends it.
void FailInitialization(int iError);
void FailLoading(const std::string &error);                         // dlopen
void FailSymbol(const std::string &name, const std::string &error); // dlsym
void Reset(); // all of the above, and the trace; objects stay alive, and names begin anew if there are none

// ---- the objects themselves

IDirectFBSurface *MakeSurface(const std::string &name, int iWidth, int iHeight,
                              DFBSurfacePixelFormat eFormat);
// The memory of a surface. A byte written outside of its pixels ends the process, at once or when it is unlocked.
const unsigned char *Pixels(IDirectFBSurface *pSurface, int *piPitch);
void SizeOf(IDirectFBSurface *pSurface, int *piWidth, int *piHeight);
std::vector<unsigned char> Memory(IDirectFBSurface *pSurface); // rows without their padding
DFBRegion ClipOf(IDirectFBSurface *pSurface);
std::vector<DFBColor> PaletteOf(IDirectFBSurface *pSurface); // 256 entries
std::vector<DFBColor> LastEntries();                         // the colours of the last SetEntries
std::string NameOf(IDirectFBSurface *pSurface);
DFBDisplayLayerConfig LastConfiguration(); // the last that SetConfiguration was given, every member of it
DFBWindowDescription LastWindow();         // the last that CreateWindow was given

// ---- the clock, which stands still until it is turned; sleeping turns it by as much

void SetClock(long lSeconds, long lMicroseconds);
void TurnClock(long lMicroseconds);
struct timeval Now();

// Sleeps of other threads than the test's own are held until they are let go, one at a time; on by default.
void HoldSleeps(bool bHold);
bool AwaitSleeper(); // until another thread sleeps; false after a minute
void LetSleeperGo(); // and turns the clock by as much as it asked for
// The clock of the machine and sleeps that last, for what only time can show; off after Reset.
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
