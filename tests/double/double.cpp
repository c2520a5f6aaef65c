// SPDX-License-Identifier: MIT
#include "double.h"

#include "kova_debug.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <map>
#include <memory>
#include <mutex>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

// NOLINTNEXTLINE(bugprone-reserved-identifier): the run-time of the sanitizers calls it so
extern "C" void __sanitizer_set_report_fd(void *pFd) __attribute__((weak));

namespace fake
{

// ------------------------------------------------------------------------------------------------ the trace

struct Plan_t {
    enum { FAIL, NOTHING } eKind;
    int iNth; // 0: every time
    DFBResult eResult;
};

struct State_t {
    std::recursive_mutex mutex;
    pthread_t mainThread = pthread_self();
    pthread_mutex_t *pWatched = nullptr;

    std::vector<Line_t> lines;
    std::vector<Record_t> records;
    std::map<pthread_t, std::vector<Record_t>> openErrors; // the records of an error that is not yet whole

    int iCapture = -1; // the file that stands for standard error
    off_t uiRead = 0;
    std::string error;

    std::map<std::string, std::vector<Plan_t>> plans;
    int iCalls = 0, iFailCall = 0;
    Plan_t callPlan = {Plan_t::FAIL, 0, DFB_FAILURE};
    int iUnavailable = 0;
    std::vector<std::pair<unsigned, const char *>> encodings;
    bool bNoContext = false;
    int iFontHeight = 0, iUnderlinePosition = 0, iUnderlineThickness = 0, iWidthPerByte = 0;
    DFBDisplayLayerConfig config = {};
    bool bForceMode = false, bModeReported = true;
    DFBDisplayLayerBufferMode eMode = DLBM_BACKVIDEO;
    bool bFailAllocation = false;
    int iThreadError = 0, iInitError = 0;
    std::string loadError, symbol, symbolError, dlError;
    bool bDlError = false;

    std::map<std::string, int> names;
    std::map<std::string, struct Object_t *> alive;
    std::vector<DFBColor> lastEntries;
    DFBDisplayLayerConfig lastConfig = {};
    DFBWindowDescription lastWindow = {};

    std::mutex clockMutex;
    std::condition_variable clockChanged;
    long long iNow = 0; // microseconds
    bool bHold = true;
    int iSleepers = 0, iLetGo = 0;
    std::atomic<bool> bRealClock{false};

    std::shared_ptr<std::function<void(const char *, const void *)>> hook;
    std::atomic<bool> bHooked{false};

    std::atomic<bool> bKeepTrace{true};
    std::atomic<void (*)()> pfnFilled{nullptr};
    std::atomic<void (*)(struct timeval)> pfnFlipped{nullptr};
};

static thread_local struct timeval s_asked;

static State_t &State()
{
    static State_t *const pState = new State_t; // never destroyed: threads may outlive main
    return *pState;
}

static std::string Format(const char *pcFormat, ...) __attribute__((format(printf, 1, 2)));
static std::string Format(const char *pcFormat, ...)
{
    char acText[8192];
    va_list arguments;
    va_start(arguments, pcFormat);
    vsnprintf(acText, sizeof acText, pcFormat, arguments);
    va_end(arguments);
    return acText;
}

bool HoldsLock()
{
    const pthread_mutex_t *const pMutex = State().pWatched;

    return pMutex && pMutex->__data.__owner == int(syscall(SYS_gettid));
}

void WatchLock(pthread_mutex_t *pMutex)
{
    State().pWatched = pMutex;
}

static bool IsMainThread()
{
    return pthread_equal(pthread_self(), State().mainThread);
}

static void AddLine(const std::string &line)
{
    State().lines.push_back({line, IsMainThread(), HoldsLock(), "", ""});
}

// What the library wrote to standard error since the last look goes into the trace, before what comes now.
static void DrainStandardError()
{
    State_t &state = State();
    char acText[4096];
    std::string fresh;

    // The library's thread writes with the display locked alone. What lies here otherwise is the main
    // thread's, which has not come by yet.
    if (!IsMainThread() && !HoldsLock()) return;
    fflush(stderr);
    for (ssize_t n;
         state.iCapture >= 0 && (n = pread(state.iCapture, acText, sizeof acText, state.uiRead)) > 0;) {
        fresh.append(acText, size_t(n));
        state.uiRead += n;
    }
    state.error += fresh;
    for (size_t at = fresh.find("TextDisp: [thread:"); at != std::string::npos;) {
        const size_t next = fresh.find("TextDisp: [thread:", at + 1);
        const std::string line = fresh.substr(at, next == std::string::npos ? next : next - at);
        int iPid = 0, iLine = 0, iEnd = 0, iEndBrief = 0;
        unsigned uiResult = 0;
        sscanf(line.c_str(), "TextDisp: [thread:%d]:Src/kova_textdisp_dfb <%d>: err %x \n\t%n", &iPid, &iLine,
               &uiResult, &iEnd);
        sscanf(line.c_str(), "TextDisp: [thread:%d]:Src/kova_textdisp_dfb <%d>:\n\t%n", &iPid, &iLine,
               &iEndBrief);
        const std::string full = Format("TextDisp: [thread:%d]:Src/kova_textdisp_dfb <%d>: err %#x \n\t",
                                        getpid(), iLine, uiResult);
        const std::string brief =
            Format("TextDisp: [thread:%d]:Src/kova_textdisp_dfb <%d>:\n\t", getpid(), iLine);
        if (line == full && iLine > 0) {
            AddLine(Format("DFB_CHECK %#x", uiResult));
        } else if (line == brief && iLine > 0) {
            AddLine("DFB_CHECK_BRIEF");
        } else {
            AddLine("malformed on standard error: " + line);
        }
        at = next;
    }
}

static void Add(const std::string &line)
{
    State_t &state = State();
    if (!state.bKeepTrace) return;
    const std::lock_guard<std::recursive_mutex> guard(state.mutex);

    DrainStandardError();
    AddLine(line);
}

// What the library's thread wrote is its own only until it gives the lock back.
void BeforeUnlock()
{
    State_t &state = State();
    if (!state.bKeepTrace || IsMainThread()) return;
    const std::lock_guard<std::recursive_mutex> guard(state.mutex);

    DrainStandardError();
}

void Note(const std::string &line)
{
    Add(line);
}

static std::string Collect(bool bMain)
{
    State_t &state = State();
    const std::lock_guard<std::recursive_mutex> guard(state.mutex);
    std::string all;

    DrainStandardError();
    for (const Line_t &line : state.lines) {
        if (line.bMainThread == bMain) all += (line.bLocked ? "  " : "") + line.text + "\n";
    }
    for (const auto &open : state.openErrors) {
        if (!open.second.empty() && pthread_equal(open.first, state.mainThread) == bMain)
            all += "an error is not whole\n";
    }
    return all;
}

std::string Trace()
{
    return Collect(true);
}

std::string ThreadTrace()
{
    return Collect(false);
}

std::string TraceOf(const std::string &prefix)
{
    const std::string all = Trace();
    std::string some;

    for (size_t at = 0; at < all.size();) {
        const size_t end = all.find('\n', at) + 1;
        const size_t text = all.find_first_not_of(' ', at);
        if (all.compare(text, prefix.size(), prefix) == 0) some += all.substr(at, end - at);
        at = end;
    }
    return some;
}

std::vector<Line_t> Lines()
{
    const std::lock_guard<std::recursive_mutex> guard(State().mutex);
    DrainStandardError();
    return State().lines;
}

std::vector<Record_t> Records()
{
    const std::lock_guard<std::recursive_mutex> guard(State().mutex);
    return State().records;
}

std::string StandardError()
{
    const std::lock_guard<std::recursive_mutex> guard(State().mutex);
    DrainStandardError();
    return State().error;
}

void ClearTrace()
{
    State_t &state = State();
    const std::lock_guard<std::recursive_mutex> guard(state.mutex);

    DrainStandardError();
    state.lines.clear();
    state.records.clear();
    state.openErrors.clear();
    state.error.clear();
}

// Standard error goes to a file of its own from the start; reports of the sanitizers keep the old one.
__attribute__((constructor)) static void CaptureStandardError()
{
    State_t &state = State();
    if (getenv("KOVA_DOUBLE_KEEP_STDERR")) return Reset(); // a fuzzer's own output goes there
    const int iOld = dup(STDERR_FILENO);

    // NOLINTNEXTLINE(performance-no-int-to-ptr): its argument is a descriptor
    if (__sanitizer_set_report_fd) __sanitizer_set_report_fd(reinterpret_cast<void *>(intptr_t(iOld)));
    state.iCapture = int(memfd_create("stderr", 0));
    dup2(state.iCapture, STDERR_FILENO);
    lseek(STDERR_FILENO, 0, SEEK_SET);
    Reset();
}

// ------------------------------------------------------------------------------------------------ plans

void Fail(const std::string &method, DFBResult eResult)
{
    State().plans[method].push_back({Plan_t::FAIL, 0, eResult});
}

void FailNth(const std::string &method, int iNth, DFBResult eResult)
{
    State().plans[method].push_back({Plan_t::FAIL, iNth, eResult});
}

void GiveNothing(const std::string &method)
{
    State().plans[method].push_back({Plan_t::NOTHING, 0, DFB_OK});
}

void FailCall(int iIndex, DFBResult eResult)
{
    State().iFailCall = iIndex;
    State().callPlan = {Plan_t::FAIL, 0, eResult};
}

void GiveNothingAtCall(int iIndex)
{
    State().iFailCall = iIndex;
    State().callPlan = {Plan_t::NOTHING, 0, DFB_OK};
}

int CallCount()
{
    const std::lock_guard<std::recursive_mutex> guard(State().mutex);
    return State().iCalls;
}

void TemporarilyUnavailable(int iTimes)
{
    State().iUnavailable = iTimes;
}

void SetEncodings(std::vector<std::pair<unsigned, const char *>> encodings)
{
    State().encodings = std::move(encodings);
}

void EnumerateWithoutContext()
{
    State().bNoContext = true;
}

void SetFontMetrics(int iHeight, int iUnderlinePosition, int iUnderlineThickness, int iWidthPerByte)
{
    State_t &state = State();
    state.iFontHeight = iHeight;
    state.iUnderlinePosition = iUnderlinePosition;
    state.iUnderlineThickness = iUnderlineThickness;
    state.iWidthPerByte = iWidthPerByte;
}

void SetLayerConfig(const DFBDisplayLayerConfig &config)
{
    State().config = config;
}

void ForceBufferMode(DFBDisplayLayerBufferMode eMode, bool bReported)
{
    State().bForceMode = true;
    State().eMode = eMode;
    State().bModeReported = bReported;
}

void FailAllocation()
{
    State().bFailAllocation = true;
}

void FailThreadStart(int iError)
{
    State().iThreadError = iError;
}

void FailInitialization(int iError)
{
    State().iInitError = iError;
}

void FailLoading(const std::string &error)
{
    State().loadError = error;
}

void FailSymbol(const std::string &name, const std::string &error)
{
    State().symbol = name;
    State().symbolError = error;
}

void SetThreshold(int iLevel)
{
    __kova_debug_min = iLevel;
}

void Reset()
{
    State_t &state = State();
    const std::lock_guard<std::recursive_mutex> guard(state.mutex);

    ClearTrace();
    if (state.alive.empty()) state.names.clear();
    state.plans.clear();
    state.iCalls = state.iFailCall = 0;
    state.iUnavailable = 0;
    state.encodings = {{1, "Latin1"}, {2, "UTF8"}};
    state.bNoContext = false;
    SetFontMetrics(30, 3, 2, 10);
    state.config = {};
    state.config.flags = DFBDisplayLayerConfigFlags(DLCONF_WIDTH | DLCONF_HEIGHT | DLCONF_PIXELFORMAT |
                                                    DLCONF_BUFFERMODE | DLCONF_SURFACE_CAPS);
    state.config.width = 1920;
    state.config.height = 1080;
    state.config.pixelformat = DSPF_RGB32;
    state.config.buffermode = DLBM_FRONTONLY;
    state.bForceMode = false;
    state.bFailAllocation = false;
    state.iThreadError = state.iInitError = 0;
    state.loadError.clear();
    state.symbol.clear();
    state.bDlError = false;
    state.bRealClock = false;
    state.bKeepTrace = true;
    SetClock(1000000, 0);
    SetThreshold(5);
}

// ------------------------------------------------------------------------------------------------ objects

struct Object_t {
    std::string kind, name;
    int iRefs = 1;
    virtual ~Object_t() = default;
};

struct Palette_t : Object_t {
    IDirectFBPalette iface = {};
    std::shared_ptr<std::vector<DFBColor>> colors;
};

// Memory that ends at a page which nobody may touch: a byte written after it ends the process, with or without a
// sanitizer.
class GuardedMemory
{
public:
    GuardedMemory() = default;
    GuardedMemory(const GuardedMemory &) = delete;
    GuardedMemory &operator=(const GuardedMemory &) = delete;
    ~GuardedMemory()
    {
        Free();
    }
    void Allocate(size_t uiBytes)
    {
        const size_t uiPage = size_t(sysconf(_SC_PAGESIZE));
        const size_t uiUsed = (uiBytes + uiPage - 1) / uiPage * uiPage;

        Free();
        m_uiMapped = uiUsed + 2 * uiPage;
        m_pucMapped = static_cast<unsigned char *>(
            // cppcheck-suppress invalidFunctionArg ; an anonymous mapping has no file
            mmap(nullptr, m_uiMapped, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
        if (m_pucMapped == MAP_FAILED) abort();
        if (uiUsed && mprotect(m_pucMapped + uiPage, uiUsed, PROT_READ | PROT_WRITE) != 0) abort();
        m_pucBytes = m_pucMapped + uiPage + uiUsed - uiBytes;
        m_uiBytes = uiBytes;
    }
    unsigned char *Bytes() const
    {
        return m_pucBytes;
    }
    bool IsEmpty() const
    {
        return m_uiBytes == 0;
    }
    // The bytes between the page before and the memory, which do not fill a page.
    bool IsUntouchedBefore() const
    {
        const unsigned char *const pucFirst = m_pucMapped + sysconf(_SC_PAGESIZE);
        return IsEmpty() || std::all_of(pucFirst, const_cast<const unsigned char *>(m_pucBytes),
                                        [](unsigned char uc) { return uc == 0; });
    }

private:
    void Free()
    {
        if (m_pucMapped) munmap(m_pucMapped, m_uiMapped);
        m_pucMapped = nullptr;
    }

    unsigned char *m_pucMapped = nullptr, *m_pucBytes = nullptr;
    size_t m_uiMapped = 0, m_uiBytes = 0;
};

struct Surface_t : Object_t {
    IDirectFBSurface iface = {};
    int iWidth = 0, iHeight = 0, iPitch = 0;
    DFBSurfacePixelFormat eFormat = DSPF_ARGB;
    DFBRegion clip = {};
    bool bOfLayer = false; // follows the size of its layer, as a surface that a layer gave does
    GuardedMemory memory;
    std::shared_ptr<std::vector<DFBColor>> colors;
};

struct Font_t : Object_t {
    IDirectFBFont iface = {};
};

struct Window_t : Object_t {
    IDirectFBWindow iface = {};
    int iWidth = 0, iHeight = 0;
    DFBSurfacePixelFormat eFormat = DSPF_ARGB;
};

struct Layer_t : Object_t {
    IDirectFBDisplayLayer iface = {};
};

struct Dfb_t : Object_t {
    IDirectFB iface = {};
};

template <typename Interface> struct ObjectOf;
template <> struct ObjectOf<IDirectFB> {
    using type = Dfb_t;
};
template <> struct ObjectOf<IDirectFBDisplayLayer> {
    using type = Layer_t;
};
template <> struct ObjectOf<IDirectFBWindow> {
    using type = Window_t;
};
template <> struct ObjectOf<IDirectFBSurface> {
    using type = Surface_t;
};
template <> struct ObjectOf<IDirectFBFont> {
    using type = Font_t;
};
template <> struct ObjectOf<IDirectFBPalette> {
    using type = Palette_t;
};

template <typename Interface> static typename ObjectOf<Interface>::type *Of(Interface *pThiz)
{
    return static_cast<typename ObjectOf<Interface>::type *>(pThiz->priv);
}

static void NameObject(Object_t *pObject, const std::string &kind, const std::string &name)
{
    State_t &state = State();
    const std::lock_guard<std::recursive_mutex> guard(state.mutex);
    const int iCount = ++state.names[name];

    pObject->kind = kind;
    pObject->name = iCount == 1 ? name : name + std::to_string(iCount);
    state.alive[pObject->name] = pObject;
    // The call that gives it is the last that this thread has made.
    for (auto line = state.lines.rbegin(); line != state.lines.rend(); ++line) {
        if (line->bMainThread != IsMainThread()) continue;
        if (!line->method.empty()) line->made = pObject->name;
        break;
    }
}

int LiveObjects()
{
    const std::lock_guard<std::recursive_mutex> guard(State().mutex);
    return int(State().alive.size());
}

std::string LiveObjectNames()
{
    const std::lock_guard<std::recursive_mutex> guard(State().mutex);
    std::string all;
    for (const auto &entry : State().alive) all += (all.empty() ? "" : " ") + entry.first;
    return all;
}

void DropObjects()
{
    const std::lock_guard<std::recursive_mutex> guard(State().mutex);
    for (const auto &entry : State().alive) delete entry.second;
    State().alive.clear();
}

// Records the call and returns its planned result. *pbNothing says that a call that gives objects is to give none.
static DFBResult Called(const std::string &who, const std::string &method, const std::string &arguments,
                        bool *pbNothing = nullptr)
{
    State_t &state = State();
    if (!state.bKeepTrace) return DFB_OK;
    const std::lock_guard<std::recursive_mutex> guard(state.mutex);
    DFBResult eResult = DFB_OK;
    bool bNothing = false;
    const auto apply = [&](const Plan_t &plan) {
        if (plan.eKind == Plan_t::FAIL) {
            eResult = plan.eResult;
        } else {
            bNothing = true;
        }
    };

    Add(who + (arguments.empty() ? "" : " " + arguments));
    state.lines.back().method = method;
    if (++state.iCalls == state.iFailCall) apply(state.callPlan);
    for (Plan_t &plan : state.plans[method]) {
        if (plan.iNth == 0) {
            apply(plan);
        } else if (--plan.iNth == 0) {
            apply(plan);
            plan.iNth = -1;
        }
    }
    if (pbNothing) *pbNothing = bNothing;
    return eResult;
}

static DFBResult Called(const Object_t *pObject, const char *pcMethod, const std::string &arguments = "",
                        bool *pbNothing = nullptr)
{
    return Called(pObject->name + "." + pcMethod, pObject->kind + "." + pcMethod, arguments, pbNothing);
}

template <typename Interface> static DirectResult AddRefTo(Interface *pThiz)
{
    return DirectResult(Called(Of(pThiz), "AddRef"));
}

template <typename Interface> static DirectResult ReleaseOf(Interface *pThiz)
{
    auto *const pObject = Of(pThiz);
    const DFBResult eResult = Called(pObject, "Release");

    if (eResult != DFB_OK) return DirectResult(eResult);
    const std::lock_guard<std::recursive_mutex> guard(State().mutex);
    State().alive.erase(pObject->name);
    delete pObject;
    return DR_OK;
}

template <typename Object> static void Prepare(Object *pObject)
{
    pObject->iface.priv = pObject;
    pObject->iface.AddRef = AddRefTo;
    pObject->iface.Release = ReleaseOf;
}

static std::string Flags(unsigned uiValue, std::initializer_list<std::pair<unsigned, const char *>> names,
                         const char *pcNone)
{
    std::string text;

    for (const auto &name : names) {
        if ((uiValue & name.first) != name.first) continue;
        text += (text.empty() ? "" : "|") + std::string(name.second);
        uiValue &= ~name.first;
    }
    if (uiValue) text += (text.empty() ? "" : "|") + Format("%#x", uiValue);
    return text.empty() ? pcNone : text;
}

static const char *FormatName(DFBSurfacePixelFormat eFormat)
{
    return eFormat == DSPF_ARGB    ? "ARGB"
           : eFormat == DSPF_LUT8  ? "LUT8"
           : eFormat == DSPF_RGB32 ? "RGB32"
                                   : "other";
}

static std::string Region(const DFBRegion *pRegion)
{
    return pRegion ? Format("%d,%d %d,%d", pRegion->x1, pRegion->y1, pRegion->x2, pRegion->y2) : "all";
}

static std::string Quoted(const char *pcText, int iBytes)
{
    std::string text;
    for (int i = 0; i < iBytes; i++) {
        const auto uc = static_cast<unsigned char>(pcText[i]);
        text += uc >= 0x20 && uc < 0x7F ? std::string(1, char(uc)) : Format("<%02X>", uc);
    }
    return "\"" + text + "\"";
}

static std::string Colors(const DFBColor *pColors, unsigned uiCount)
{
    std::string text;
    for (unsigned i = 0; i < uiCount && i < 4; i++) {
        text += Format(" %d,%d,%d,%d", pColors[i].r, pColors[i].g, pColors[i].b, pColors[i].a);
    }
    return text + (uiCount > 4 ? " ..." : "");
}

// ------------------------------------------------------------------------------------------------ palettes

static IDirectFBPalette *MakePalette(const std::shared_ptr<std::vector<DFBColor>> &colors)
{
    auto *const pPalette = new Palette_t;

    NameObject(pPalette, "Palette", "palette");
    pPalette->colors = colors;
    Prepare(pPalette);
    pPalette->iface.SetEntries = [](IDirectFBPalette *pThiz, const DFBColor *pEntries, unsigned uiCount,
                                    unsigned uiOffset) {
        const DFBResult eResult = Called(
            Of(pThiz), "SetEntries",
            Format("%u at %u%s%s", uiCount, uiOffset, uiCount ? ":" : "", Colors(pEntries, uiCount).c_str()));
        State().lastEntries.assign(pEntries, pEntries + uiCount);
        for (unsigned i = 0; eResult == DFB_OK && i < uiCount && uiOffset + i < 256; i++) {
            (*Of(pThiz)->colors)[uiOffset + i] = pEntries[i];
        }
        return eResult;
    };
    pPalette->iface.GetEntries = [](IDirectFBPalette *pThiz, DFBColor *pEntries, unsigned uiCount,
                                    unsigned uiOffset) {
        const DFBResult eResult = Called(Of(pThiz), "GetEntries", Format("%u at %u", uiCount, uiOffset));
        for (unsigned i = 0; eResult == DFB_OK && i < uiCount && uiOffset + i < 256; i++) {
            pEntries[i] = (*Of(pThiz)->colors)[uiOffset + i];
        }
        return eResult;
    };
    return &pPalette->iface;
}

std::vector<DFBColor> LastEntries()
{
    return State().lastEntries;
}

std::vector<DFBColor> PaletteOf(IDirectFBSurface *pSurface)
{
    return *Of(pSurface)->colors;
}

// ------------------------------------------------------------------------------------------------ surfaces

static std::string FlipFlags(DFBSurfaceFlipFlags eFlags)
{
    return Flags(unsigned(eFlags), {{DSFLIP_WAIT, "WAIT"}, {DSFLIP_BLIT, "BLIT"}, {DSFLIP_ONSYNC, "ONSYNC"}},
                 "NONE");
}

static void FillDrawing(IDirectFBSurface *pIface)
{
    pIface->Clear = [](IDirectFBSurface *pThiz, u8 r, u8 g, u8 b, u8 a) {
        return Called(Of(pThiz), "Clear", Format("%d,%d,%d,%d", r, g, b, a));
    };
    pIface->SetColor = [](IDirectFBSurface *pThiz, u8 r, u8 g, u8 b, u8 a) {
        return Called(Of(pThiz), "SetColor", Format("%d,%d,%d,%d", r, g, b, a));
    };
    pIface->SetColorIndex = [](IDirectFBSurface *pThiz, unsigned uiIndex) {
        return Called(Of(pThiz), "SetColorIndex", Format("%u", uiIndex));
    };
    pIface->SetDstColorKey = [](IDirectFBSurface *pThiz, u8 r, u8 g, u8 b) {
        return Called(Of(pThiz), "SetDstColorKey", Format("%d,%d,%d", r, g, b));
    };
    pIface->SetDstColorKeyIndex = [](IDirectFBSurface *pThiz, unsigned uiIndex) {
        return Called(Of(pThiz), "SetDstColorKeyIndex", Format("%u", uiIndex));
    };
    pIface->SetDrawingFlags = [](IDirectFBSurface *pThiz, DFBSurfaceDrawingFlags eFlags) {
        return Called(Of(pThiz), "SetDrawingFlags",
                      Flags(eFlags, {{DSDRAW_DST_COLORKEY, "DST_COLORKEY"}}, "NOFX"));
    };
    pIface->SetBlittingFlags = [](IDirectFBSurface *pThiz, DFBSurfaceBlittingFlags eFlags) {
        return Called(Of(pThiz), "SetBlittingFlags",
                      Flags(eFlags,
                            {{DSBLIT_SRC_COLORKEY, "SRC_COLORKEY"}, {DSBLIT_DST_COLORKEY, "DST_COLORKEY"}},
                            "NOFX"));
    };
    pIface->FillRectangle = [](IDirectFBSurface *pThiz, int x, int y, int w, int h) {
        if (void (*const pfnFilled)() = State().pfnFilled) pfnFilled();
        return Called(Of(pThiz), "FillRectangle", Format("%d,%d %dx%d", x, y, w, h));
    };
    pIface->DrawLine = [](IDirectFBSurface *pThiz, int x1, int y1, int x2, int y2) {
        return Called(Of(pThiz), "DrawLine", Format("%d,%d %d,%d", x1, y1, x2, y2));
    };
    pIface->DrawString = [](IDirectFBSurface *pThiz, const char *pcText, int iBytes, int x, int y,
                            DFBSurfaceTextFlags eFlags) {
        return Called(Of(pThiz), "DrawString",
                      Quoted(pcText, iBytes) + Format(" %d,%d ", x, y) +
                          (eFlags == DSTF_TOPLEFT ? "TOPLEFT" : Format("%#x", unsigned(eFlags))));
    };
    pIface->SetFont = [](IDirectFBSurface *pThiz, IDirectFBFont *pFont) {
        return Called(Of(pThiz), "SetFont", pFont ? Of(pFont)->name : "null");
    };
    pIface->Blit = [](IDirectFBSurface *pThiz, IDirectFBSurface *pSource, const DFBRectangle *pRect, int x,
                      int y) {
        return Called(Of(pThiz), "Blit",
                      Of(pSource)->name +
                          (pRect ? Format(" %d,%d %dx%d", pRect->x, pRect->y, pRect->w, pRect->h) : " all") +
                          Format(" to %d,%d", x, y));
    };
}

static size_t RowBytes(const Surface_t *pSurface)
{
    return size_t(pSurface->iWidth) * (pSurface->eFormat == DSPF_LUT8 ? 1 : 4);
}

// Whoever wrote left or right of the surface's pixels ends the process, as writing below them does by itself.
static void DemandUntouchedPadding(const Surface_t *pSurface)
{
    bool bUntouched = pSurface->memory.IsUntouchedBefore();

    for (int y = 0; y < pSurface->iHeight && !pSurface->memory.IsEmpty(); y++) {
        const unsigned char *const pucRow = pSurface->memory.Bytes() + size_t(y) * size_t(pSurface->iPitch);
        for (size_t x = RowBytes(pSurface); x < size_t(pSurface->iPitch); x++) bUntouched &= pucRow[x] == 0;
    }
    if (bUntouched) return;
    printf("pixels were written outside of the surface \"%s\"\n", pSurface->name.c_str());
    fflush(stdout);
    abort();
}

static void FillState(IDirectFBSurface *pIface)
{
    pIface->SetClip = [](IDirectFBSurface *pThiz, const DFBRegion *pClip) {
        const DFBResult eResult = Called(Of(pThiz), "SetClip", Region(pClip));
        Surface_t *const pSurface = Of(pThiz);
        if (eResult == DFB_OK) {
            pSurface->clip = pClip ? *pClip : DFBRegion{0, 0, pSurface->iWidth - 1, pSurface->iHeight - 1};
        }
        return eResult;
    };
    pIface->GetClip = [](IDirectFBSurface *pThiz, DFBRegion *pClip) {
        const DFBResult eResult = Called(Of(pThiz), "GetClip");
        if (eResult == DFB_OK) *pClip = Of(pThiz)->clip;
        return eResult;
    };
    pIface->GetPixelFormat = [](IDirectFBSurface *pThiz, DFBSurfacePixelFormat *peFormat) {
        const DFBResult eResult = Called(Of(pThiz), "GetPixelFormat");
        if (eResult == DFB_OK) *peFormat = Of(pThiz)->eFormat;
        return eResult;
    };
    pIface->GetSize = [](IDirectFBSurface *pThiz, int *piWidth, int *piHeight) {
        const DFBResult eResult = Called(Of(pThiz), "GetSize");
        if (eResult == DFB_OK) *piWidth = Of(pThiz)->iWidth;
        if (eResult == DFB_OK) *piHeight = Of(pThiz)->iHeight;
        return eResult;
    };
    pIface->GetPalette = [](IDirectFBSurface *pThiz, IDirectFBPalette **ppPalette) {
        bool bNothing = false;
        const DFBResult eResult = Called(Of(pThiz), "GetPalette", "", &bNothing);
        if (eResult == DFB_OK && Of(pThiz)->eFormat != DSPF_LUT8) return DFB_UNSUPPORTED;
        if (eResult == DFB_OK) *ppPalette = bNothing ? nullptr : MakePalette(Of(pThiz)->colors);
        return eResult;
    };
    pIface->SetPalette = [](IDirectFBSurface *pThiz, IDirectFBPalette *pPalette) {
        const DFBResult eResult = Called(Of(pThiz), "SetPalette", Of(pPalette)->name);
        if (eResult == DFB_OK) Of(pThiz)->colors = Of(pPalette)->colors;
        return eResult;
    };
    pIface->Flip = [](IDirectFBSurface *pThiz, const DFBRegion *pRegion, DFBSurfaceFlipFlags eFlags) {
        if (void (*const pfnFlipped)(struct timeval) = State().pfnFlipped) pfnFlipped(s_asked);
        return Called(Of(pThiz), "Flip", Region(pRegion) + " " + FlipFlags(eFlags));
    };
    pIface->Lock = [](IDirectFBSurface *pThiz, DFBSurfaceLockFlags eFlags, void **ppData, int *piPitch) {
        const DFBResult eResult =
            Called(Of(pThiz), "Lock", Flags(eFlags, {{DSLF_READ, "READ"}, {DSLF_WRITE, "WRITE"}}, "NONE"));
        if (eResult != DFB_OK) return eResult;
        const bool bEmpty = Of(pThiz)->iWidth == 0 || Of(pThiz)->iHeight == 0;
        if (Of(pThiz)->memory.IsEmpty() && !bEmpty) return DFB_LIMITEXCEEDED; // larger than any memory
        *ppData = Of(pThiz)->memory.Bytes();
        *piPitch = Of(pThiz)->iPitch;
        return eResult;
    };
    pIface->Unlock = [](IDirectFBSurface *pThiz) {
        DemandUntouchedPadding(Of(pThiz));
        return Called(Of(pThiz), "Unlock");
    };
}

#ifdef KOVA_VENDOR_HEADER
static std::string Glyph(const DFBMonoGlyphAttributes &a, int x, int y)
{
    return Format("%dx%d row %d bit %d at %d,%d fg %#x bg %#x hz %d vz %d", a.w, a.h, a.rowbyte, a.bitoffset,
                  x, y, unsigned(a.fgcolor), unsigned(a.bgcolor), a.hz, a.vz);
}

static void FillExtensions(IDirectFBSurface *pIface)
{
    pIface->DrawMonoGlyph = [](IDirectFBSurface *pThiz, const void *pData, int w, int h, int iRowByte,
                               int iBitOffset, int x, int y, int iFg, int iBg, int iHz, int iVz) {
        return Called(Of(pThiz), "DrawMonoGlyph",
                      (pData ? "" : "null ") + Glyph({w, h, iRowByte, iBitOffset, iFg, iBg, iHz, iVz}, x, y));
    };
#ifndef KOVA_NO_BATCH
    pIface->BatchDrawMonoGlyph = [](IDirectFBSurface *pThiz, const void *apData[],
                                    const DFBMonoGlyphAttributes *pAttributes, const DFBPoint *pPoints,
                                    unsigned uiCount) {
        std::string text = Format("%u", uiCount);
        for (unsigned i = 0; i < uiCount; i++) {
            text += (i ? "; " : ": ") + std::string(apData[i] ? "" : "null ") +
                    Glyph(pAttributes[i], pPoints[i].x, pPoints[i].y);
        }
        return Called(Of(pThiz), "BatchDrawMonoGlyph", text);
    };
#endif
    pIface->SetOSDScaleInfo = [](IDirectFBSurface *pThiz, const DFBOsdScaleInfo *p) {
        return Called(Of(pThiz), "SetOSDScaleInfo",
                      Format("plane %d,%d %dx%d buf %dx%d crop %d,%d %dx%d", p->plane_x, p->plane_y,
                             p->plane_w, p->plane_h, p->buf_w, p->buf_h, p->crop_x, p->crop_y, p->crop_w,
                             p->crop_h));
    };
    pIface->SetDescriptionFlags = [](IDirectFBSurface *pThiz, DFBSurfaceDescriptionFlags eFlags) {
        return Called(Of(pThiz), "SetDescriptionFlags",
                      Flags(eFlags, {{DSDESC_DESTINATION_LUT8, "DESTINATION_LUT8"}}, "NONE"));
    };
}
#endif

static void Lay(Surface_t *pSurface, int iWidth, int iHeight, DFBSurfacePixelFormat eFormat)
{
    pSurface->iWidth = iWidth;
    pSurface->iHeight = iHeight;
    pSurface->eFormat = eFormat;
    // A caller may ask for a plane that no memory would hold; it is not there to be drawn in then.
    const bool bFits =
        iWidth > 0 && iHeight > 0 && iWidth < 1 << 14 && iHeight < 64 * 1024 * 1024 / (iWidth * 4 + 12);
    // A pitch that is not the width.
    pSurface->iPitch = bFits ? int(RowBytes(pSurface)) + 12 : 0;
    pSurface->memory.Allocate(size_t(pSurface->iPitch) * size_t(bFits ? iHeight : 0));
}

IDirectFBSurface *MakeSurface(const std::string &name, int iWidth, int iHeight, DFBSurfacePixelFormat eFormat)
{
    const std::lock_guard<std::recursive_mutex> guard(State().mutex);
    auto *const pSurface = new Surface_t;

    NameObject(pSurface, "Surface", name);
    Lay(pSurface, iWidth, iHeight, eFormat);
    pSurface->clip = {0, 0, iWidth - 1, iHeight - 1};
    pSurface->colors = std::make_shared<std::vector<DFBColor>>(256);
    Prepare(pSurface);
    FillDrawing(&pSurface->iface);
    FillState(&pSurface->iface);
#ifdef KOVA_VENDOR_HEADER
    FillExtensions(&pSurface->iface);
#endif
    return &pSurface->iface;
}

const unsigned char *Pixels(IDirectFBSurface *pSurface, int *piPitch)
{
    *piPitch = Of(pSurface)->iPitch;
    return Of(pSurface)->memory.Bytes();
}

void SizeOf(IDirectFBSurface *pSurface, int *piWidth, int *piHeight)
{
    *piWidth = Of(pSurface)->iWidth;
    *piHeight = Of(pSurface)->iHeight;
}

std::vector<unsigned char> Memory(IDirectFBSurface *pSurface)
{
    const Surface_t *const p = Of(pSurface);
    const size_t uiRow = RowBytes(p);
    std::vector<unsigned char> rows;

    for (int y = 0; y < p->iHeight; y++) {
        const unsigned char *const pucRow = p->memory.Bytes() + size_t(y) * size_t(p->iPitch);
        rows.insert(rows.end(), pucRow, pucRow + uiRow);
    }
    return rows;
}

DFBRegion ClipOf(IDirectFBSurface *pSurface)
{
    return Of(pSurface)->clip;
}

std::string NameOf(IDirectFBSurface *pSurface)
{
    return pSurface ? Of(pSurface)->name : "null";
}

// ------------------------------------------------------------------------------------------------ fonts

static IDirectFBFont *MakeFont()
{
    auto *const pFont = new Font_t;

    NameObject(pFont, "Font", "font");
    Prepare(pFont);
    pFont->iface.SetEncoding = [](IDirectFBFont *pThiz, DFBTextEncodingID id) {
        return Called(Of(pThiz), "SetEncoding", Format("%u", id));
    };
    pFont->iface.GetHeight = [](IDirectFBFont *pThiz, int *piHeight) {
        const DFBResult eResult = Called(Of(pThiz), "GetHeight");
        if (eResult == DFB_OK) *piHeight = State().iFontHeight;
        return eResult;
    };
    pFont->iface.GetStringWidth = [](IDirectFBFont *pThiz, const char *pcText, int iBytes, int *piWidth) {
        const DFBResult eResult = Called(Of(pThiz), "GetStringWidth", Quoted(pcText, iBytes));
        if (eResult == DFB_OK) *piWidth = iBytes * State().iWidthPerByte;
        return eResult;
    };
    pFont->iface.GetUnderline = [](IDirectFBFont *pThiz, int *piPosition, int *piThickness) {
        const DFBResult eResult = Called(Of(pThiz), "GetUnderline");
        if (eResult == DFB_OK) *piPosition = State().iUnderlinePosition;
        if (eResult == DFB_OK) *piThickness = State().iUnderlineThickness;
        return eResult;
    };
    pFont->iface.EnumEncodings = [](IDirectFBFont *pThiz, DFBTextEncodingCallback callback, void *pContext) {
        const DFBResult eResult = Called(Of(pThiz), "EnumEncodings");
        if (eResult != DFB_OK) return eResult;
        for (const auto &encoding : State().encodings) {
            if (callback(encoding.first, encoding.second, State().bNoContext ? nullptr : pContext) !=
                DFENUM_OK) {
                Add("enumeration cancelled");
                break;
            }
        }
        return eResult;
    };
    return &pFont->iface;
}

// ------------------------------------------------------------------------------------- windows and layers

static IDirectFBWindow *MakeWindow(const DFBWindowDescription &desc)
{
    auto *const pWindow = new Window_t;

    NameObject(pWindow, "Window", "window");
    pWindow->iWidth = int(desc.width);
    pWindow->iHeight = int(desc.height);
    pWindow->eFormat = desc.pixelformat;
    Prepare(pWindow);
    pWindow->iface.SetBounds = [](IDirectFBWindow *pThiz, int x, int y, int w, int h) {
        return Called(Of(pThiz), "SetBounds", Format("%d,%d %dx%d", x, y, w, h));
    };
    pWindow->iface.SetOpacity = [](IDirectFBWindow *pThiz, u8 ucOpacity) {
        return Called(Of(pThiz), "SetOpacity", Format("%d", ucOpacity));
    };
    pWindow->iface.RaiseToTop = [](IDirectFBWindow *pThiz) { return Called(Of(pThiz), "RaiseToTop"); };
    pWindow->iface.GetSurface = [](IDirectFBWindow *pThiz, IDirectFBSurface **ppSurface) {
        bool bNothing = false;
        const DFBResult eResult = Called(Of(pThiz), "GetSurface", "", &bNothing);
        const Window_t *const p = Of(pThiz);
        if (eResult == DFB_OK)
            *ppSurface = bNothing ? nullptr : MakeSurface("base", p->iWidth, p->iHeight, p->eFormat);
        return eResult;
    };
    return &pWindow->iface;
}

static std::string ConfigFlags(unsigned uiFlags)
{
    return Flags(uiFlags,
                 {{DLCONF_WIDTH, "WIDTH"},
                  {DLCONF_HEIGHT, "HEIGHT"},
                  {DLCONF_PIXELFORMAT, "PIXELFORMAT"},
                  {DLCONF_BUFFERMODE, "BUFFERMODE"},
                  {DLCONF_SURFACE_CAPS, "SURFACE_CAPS"}},
                 "NONE");
}

// Only what the flags name: the rest has no meaning to DirectFB.
static std::string Config(const DFBDisplayLayerConfig &c)
{
    std::string text = ConfigFlags(c.flags);

    if (c.flags & DLCONF_WIDTH) text += Format(" %dx%d", c.width, c.height);
    if (c.flags & DLCONF_PIXELFORMAT) text += std::string(" ") + FormatName(c.pixelformat);
    if (c.flags & DLCONF_BUFFERMODE)
        text += c.buffermode == DLBM_BACKVIDEO ? " BACKVIDEO" : Format(" %#x", unsigned(c.buffermode));
    if (c.flags & DLCONF_SURFACE_CAPS)
        text += c.surface_caps == DSCAPS_DOUBLE ? " DOUBLE" : Format(" %#x", unsigned(c.surface_caps));
    return text;
}

static std::string WindowText(const DFBWindowDescription &d)
{
    return Flags(d.flags,
                 {{DWDESC_CAPS, "CAPS"},
                  {DWDESC_WIDTH, "WIDTH"},
                  {DWDESC_HEIGHT, "HEIGHT"},
                  {DWDESC_PIXELFORMAT, "PIXELFORMAT"},
                  {DWDESC_POSX, "POSX"},
                  {DWDESC_POSY, "POSY"},
                  {DWDESC_OPTIONS, "OPTIONS"},
                  {DWDESC_STACKING, "STACKING"}},
                 "NONE") +
           Format(" %dx%d at %d,%d %s ", int(d.width), int(d.height), d.posx, d.posy,
                  FormatName(d.pixelformat)) +
           Flags(d.caps,
                 {{DWCAPS_ALPHACHANNEL, "ALPHACHANNEL"},
                  {DWCAPS_DOUBLEBUFFER, "DOUBLEBUFFER"},
                  {DWCAPS_NOFOCUS, "NOFOCUS"}},
                 "NONE") +
           " " +
           Flags(unsigned(d.options), {{DWOP_ALPHACHANNEL, "ALPHACHANNEL"}, {DWOP_SCALE, "SCALE"}}, "NONE") +
           (d.stacking == DWSC_LOWER ? " LOWER" : Format(" %#x", unsigned(d.stacking)));
}

DFBDisplayLayerConfig LastConfiguration()
{
    return State().lastConfig;
}

DFBWindowDescription LastWindow()
{
    return State().lastWindow;
}

static IDirectFBDisplayLayer *MakeLayer()
{
    auto *const pLayer = new Layer_t;

    NameObject(pLayer, "Layer", "layer");
    Prepare(pLayer);
    pLayer->iface.SetCooperativeLevel = [](IDirectFBDisplayLayer *pThiz,
                                           DFBDisplayLayerCooperativeLevel eLevel) {
        return Called(Of(pThiz), "SetCooperativeLevel",
                      eLevel == DLSCL_EXCLUSIVE ? "EXCLUSIVE"
                      : eLevel == DLSCL_SHARED  ? "SHARED"
                                                : "ADMINISTRATIVE");
    };
    pLayer->iface.GetConfiguration = [](IDirectFBDisplayLayer *pThiz, DFBDisplayLayerConfig *pConfig) {
        const DFBResult eResult = Called(Of(pThiz), "GetConfiguration");
        const State_t &state = State();
        if (eResult != DFB_OK) return eResult;
        *pConfig = state.config;
        if (state.bForceMode) pConfig->buffermode = state.eMode;
        if (!state.bModeReported)
            pConfig->flags = DFBDisplayLayerConfigFlags(pConfig->flags & ~DLCONF_BUFFERMODE);
        return eResult;
    };
    pLayer->iface.SetConfiguration = [](IDirectFBDisplayLayer *pThiz, const DFBDisplayLayerConfig *pConfig) {
        const DFBResult eResult = Called(Of(pThiz), "SetConfiguration", Config(*pConfig));
        DFBDisplayLayerConfig &config = State().config;
        State().lastConfig = *pConfig;
        if (eResult != DFB_OK) return eResult;
        if (pConfig->flags & DLCONF_WIDTH) config.width = pConfig->width;
        if (pConfig->flags & DLCONF_HEIGHT) config.height = pConfig->height;
        if (pConfig->flags & DLCONF_PIXELFORMAT) config.pixelformat = pConfig->pixelformat;
        if (pConfig->flags & DLCONF_BUFFERMODE) config.buffermode = pConfig->buffermode;
        if (pConfig->flags & DLCONF_SURFACE_CAPS) config.surface_caps = pConfig->surface_caps;
        // A layer's surface that the library keeps over an activation follows its layer in size.
        const std::lock_guard<std::recursive_mutex> guard(State().mutex);
        for (const auto &[name, pObject] : State().alive) {
            auto *const pSurface = dynamic_cast<Surface_t *>(pObject);
            if (pSurface && pSurface->bOfLayer) Lay(pSurface, config.width, config.height, pSurface->eFormat);
        }
        return eResult;
    };
    pLayer->iface.GetSurface = [](IDirectFBDisplayLayer *pThiz, IDirectFBSurface **ppSurface) {
        bool bNothing = false;
        const DFBResult eResult = Called(Of(pThiz), "GetSurface", "", &bNothing);
        const DFBDisplayLayerConfig &c = State().config;
        if (eResult != DFB_OK) return eResult;
        *ppSurface = bNothing ? nullptr : MakeSurface("base", c.width, c.height, c.pixelformat);
        if (*ppSurface) Of(*ppSurface)->bOfLayer = true;
        return eResult;
    };
    pLayer->iface.SetSourceRectangle = [](IDirectFBDisplayLayer *pThiz, int x, int y, int w, int h) {
        return Called(Of(pThiz), "SetSourceRectangle", Format("%d,%d %dx%d", x, y, w, h));
    };
    pLayer->iface.SetScreenRectangle = [](IDirectFBDisplayLayer *pThiz, int x, int y, int w, int h) {
        return Called(Of(pThiz), "SetScreenRectangle", Format("%d,%d %dx%d", x, y, w, h));
    };
    pLayer->iface.CreateWindow = [](IDirectFBDisplayLayer *pThiz, const DFBWindowDescription *pDesc,
                                    IDirectFBWindow **ppWindow) {
        bool bNothing = false;
        const DFBResult eResult = Called(Of(pThiz), "CreateWindow", WindowText(*pDesc), &bNothing);
        State().lastWindow = *pDesc;
        if (eResult == DFB_OK) *ppWindow = bNothing ? nullptr : MakeWindow(*pDesc);
        return eResult;
    };
    return &pLayer->iface;
}

// ------------------------------------------------------------------------------------- the main interface

static std::string FontText(const char *pcName, const DFBFontDescription &d)
{
    std::string text =
        (pcName ? pcName : "null") + std::string(" ") +
        Flags(d.flags,
              {{DFDESC_ATTRIBUTES, "ATTRIBUTES"}, {DFDESC_HEIGHT, "HEIGHT"}, {DFDESC_WIDTH, "WIDTH"}},
              "NONE");
    if (d.flags & DFDESC_ATTRIBUTES) text += Format(" attributes %#x", unsigned(d.attributes));
    if (d.flags & DFDESC_HEIGHT) text += Format(" height %d", d.height);
    if (d.flags & DFDESC_WIDTH) text += Format(" width %d", d.width);
    return text;
}

static IDirectFB *MakeDfb()
{
    auto *const pDfb = new Dfb_t;

    NameObject(pDfb, "Dfb", "dfb");
    Prepare(pDfb);
    pDfb->iface.GetDeviceDescription = [](IDirectFB *pThiz, DFBGraphicsDeviceDescription *pDesc) {
        memset(pDesc, 0, sizeof *pDesc);
        return Called(Of(pThiz), "GetDeviceDescription");
    };
    pDfb->iface.GetDisplayLayer = [](IDirectFB *pThiz, DFBDisplayLayerID id,
                                     IDirectFBDisplayLayer **ppLayer) {
        bool bNothing = false;
        DFBResult eResult = Called(Of(pThiz), "GetDisplayLayer", Format("%u", id), &bNothing);
        if (State().iUnavailable > 0) {
            State().iUnavailable--;
            return DFB_TEMPUNAVAIL;
        }
        if (eResult == DFB_OK) *ppLayer = bNothing ? nullptr : MakeLayer();
        return eResult;
    };
    pDfb->iface.CreateFont = [](IDirectFB *pThiz, const char *pcName, const DFBFontDescription *pDesc,
                                IDirectFBFont **ppFont) {
        bool bNothing = false;
        const DFBResult eResult = Called(Of(pThiz), "CreateFont", FontText(pcName, *pDesc), &bNothing);
        if (eResult == DFB_OK) *ppFont = bNothing ? nullptr : MakeFont();
        return eResult;
    };
    pDfb->iface.CreateSurface = [](IDirectFB *pThiz, const DFBSurfaceDescription *pDesc,
                                   IDirectFBSurface **ppSurface) {
        bool bNothing = false;
        const DFBResult eResult = Called(
            Of(pThiz), "CreateSurface",
            Format("%dx%d %s", pDesc->width, pDesc->height, FormatName(pDesc->pixelformat)), &bNothing);
        if (eResult == DFB_OK) {
            *ppSurface =
                bNothing ? nullptr : MakeSurface("surface", pDesc->width, pDesc->height, pDesc->pixelformat);
        }
        return eResult;
    };
    return &pDfb->iface;
}

// ------------------------------------------------------------------------------------------------ the clock

void SetClock(long lSeconds, long lMicroseconds)
{
    const std::lock_guard<std::mutex> guard(State().clockMutex);
    State().iNow = (long long)(lSeconds)*1000000 + lMicroseconds;
}

void TurnClock(long lMicroseconds)
{
    const std::lock_guard<std::mutex> guard(State().clockMutex);
    State().iNow += lMicroseconds;
}

struct timeval Now()
{
    const std::lock_guard<std::mutex> guard(State().clockMutex);
    return {time_t(State().iNow / 1000000), suseconds_t(State().iNow % 1000000)};
}

void UseRealClock(bool bReal)
{
    State().bRealClock = bReal;
}

void KeepTrace(bool bKeep)
{
    ClearTrace();
    State().bKeepTrace = bKeep;
}

void WatchSurfaces(void (*pfnFilled)(), void (*pfnFlipped)(struct timeval asked))
{
    State().pfnFilled = pfnFilled;
    State().pfnFlipped = pfnFlipped;
}

void BeforeThreadCall(std::function<void(const char *pcCall, const void *pObject)> hook)
{
    State().bHooked = bool(hook);
    std::atomic_store(
        &State().hook,
        hook ? std::make_shared<std::function<void(const char *, const void *)>>(std::move(hook)) : nullptr);
}

void HoldSleeps(bool bHold)
{
    const std::lock_guard<std::mutex> guard(State().clockMutex);
    State().bHold = bHold;
    State().clockChanged.notify_all();
}

bool AwaitSleeper()
{
    std::unique_lock<std::mutex> guard(State().clockMutex);
    return State().clockChanged.wait_for(guard, std::chrono::seconds(60),
                                         [] { return State().iSleepers > 0; });
}

void LetSleeperGo()
{
    const std::lock_guard<std::mutex> guard(State().clockMutex);
    State().iLetGo++;
    State().clockChanged.notify_all();
}

static void Sleep(long lMicroseconds)
{
    State_t &state = State();

    Add(Format("usleep %ld", lMicroseconds));
    if (state.bRealClock) return std::this_thread::sleep_for(std::chrono::microseconds(lMicroseconds));
    std::unique_lock<std::mutex> guard(state.clockMutex);
    if (!IsMainThread()) {
        state.iSleepers++;
        state.clockChanged.notify_all();
        state.clockChanged.wait(guard, [&] { return state.iLetGo > 0 || !state.bHold; });
        if (state.iLetGo > 0) state.iLetGo--;
        state.iSleepers--;
    }
    state.iNow += lMicroseconds;
}

// ------------------------------------------------------------------------------------------------ the log

static std::string OneLine(const std::string &text)
{
    std::string line = text;
    if (!line.empty() && line.back() == '\n') line.pop_back();
    for (size_t at; (at = line.find('\n')) != std::string::npos;) line.replace(at, 1, "\\n");
    return line;
}

static std::string WithText(const std::string &word, const std::string &rest)
{
    std::string text = rest;
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
    return text.empty() ? word : word + " " + text;
}

// An entry or exit trace, if that is what the record is.
static bool AddEntryOrExit(const Record_t &r)
{
    for (const char *pcPrefix : {"TextDisp: ", "TextDisp: Exit "}) {
        const std::string head = Format("%s%s():%d tpid:0x%lx ", pcPrefix, r.function.c_str(), r.iLine,
                                        (unsigned long)pthread_self());
        if (r.text.compare(0, head.size(), head) != 0 || r.text.back() != '\n') continue;
        AddLine(WithText((strstr(pcPrefix, "Exit") ? "exit " : "enter ") + r.function,
                         r.text.substr(head.size())));
        return true;
    }
    return false;
}

static void Log(const Record_t &r)
{
    State_t &state = State();
    const std::lock_guard<std::recursive_mutex> guard(state.mutex);
    std::vector<Record_t> &open = state.openErrors[pthread_self()];

    DrainStandardError();
    state.records.push_back(r);
    const std::string head =
        Format("[File:%s Function:%s Line:%d]:", r.file.c_str(), r.function.c_str(), r.iLine);
    if (r.iLevel == 1 && open.empty() && r.text == head) {
        open.push_back(r);
    } else if (r.iLevel == 1 && !open.empty() && open[0].function == r.function && open[0].iLine == r.iLine &&
               open[0].file == r.file) {
        open.push_back(r);
        if (open.size() == 3) {
            std::string message = open[1].text;
            for (size_t at; (at = message.find('\n')) != std::string::npos;) message.replace(at, 1, "\\n");
            AddLine("ERROR " + r.function + ": " + message + (open[2].text == "\n" ? "" : " (not ended)"));
            open.clear();
        }
    } else if (r.iLevel == 5 && AddEntryOrExit(r)) {
    } else {
        AddLine((r.iLevel == 1   ? "error "
                 : r.iLevel == 5 ? "log "
                                 : Format("level %d ", r.iLevel)) +
                r.function + ": " + OneLine(r.text));
    }
    if (!r.bDefaultCategory) AddLine("to another category");
}

} // namespace fake

// --------------------------------------------------------------------------------------- what is exported

struct KovaDebugCategory {
    std::string name, description;
    unsigned uiColour;
};

static KovaDebugCategory s_default = {"default", "", 0};

static void TellHook(const char *pcCall, const void *pObject)
{
    if (!fake::State().bHooked) return;
    if (const auto hook = std::atomic_load(&fake::State().hook)) (*hook)(pcCall, pObject);
}

// What dlerror will say, once. The null it gives is what the failing call gives.
static void *SetDlError(const std::string &error)
{
    fake::State().dlError = error;
    fake::State().bDlError = true;
    return nullptr;
}

extern "C" {
KovaDebugCategory *KOVA_CAT_DEFAULT = &s_default;
int __kova_debug_min = 5;

KovaDebugCategory *kova_debug_category_new(const char *name, unsigned int colour, const char *description)
{
    fake::Note(fake::Format("kova_debug_category_new \"%s\" %u \"%s\"", name, colour, description));
    return new KovaDebugCategory{name, description, colour};
}

void kova_debug_log(KovaDebugCategory *category, int level, const char *file, const char *function, int line,
                    const char *format, ...)
{
    char acText[4096];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(acText, sizeof acText, format, arguments);
    va_end(arguments);
    fake::Log(
        {category == KOVA_CAT_DEFAULT, level, file, function, line, format, acText, fake::IsMainThread()});
}

DFBResult DirectFBInit(int *argc, char ***argv)
{
    return fake::Called("DirectFBInit", "DirectFBInit",
                        fake::Format("%s,%s", argc ? "argc" : "null", argv ? "argv" : "null"));
}

DFBResult DirectFBCreate(IDirectFB **ppDfb)
{
    bool bNothing = false;
    const DFBResult eResult = fake::Called("DirectFBCreate", "DirectFBCreate", "", &bNothing);
    if (eResult == DFB_OK) *ppDfb = bNothing ? nullptr : fake::MakeDfb();
    return eResult;
}

DFBResult DirectFBErrorFatal(const char *msg, DFBResult result)
{
    fake::Note(fake::Format("DirectFBErrorFatal %s %#x", msg, unsigned(result)));
    return result;
}

// The C library's services as the library under test calls them: it is linked so that its NAME is
// __wrap_NAME here. Nobody else's calls come by.
// NOLINTBEGIN(bugprone-reserved-identifier): the linker makes these names

int __wrap_gettimeofday(struct timeval *tv, void *)
{
    if (fake::State().bRealClock) {
        gettimeofday(tv, nullptr);
    } else {
        *tv = fake::Now();
    }
    fake::s_asked = *tv;
    return 0;
}

int __wrap_usleep(useconds_t usec)
{
    fake::Sleep(long(usec));
    return 0;
}

void *__wrap_calloc(size_t nmemb, size_t size)
{
    if (!fake::State().bFailAllocation) return calloc(nmemb, size);
    fake::State().bFailAllocation = false;
    return nullptr;
}

int __wrap_pthread_mutex_init(pthread_mutex_t *mutex, const pthread_mutexattr_t *attr)
{
    const int iError = fake::State().iInitError;
    return iError ? iError : pthread_mutex_init(mutex, attr);
}

int __wrap_pthread_cond_init(pthread_cond_t *cond, const pthread_condattr_t *attr)
{
    const int iError = fake::State().iInitError;
    return iError ? iError : pthread_cond_init(cond, attr);
}

int __wrap_pthread_mutex_lock(pthread_mutex_t *mutex)
{
    TellHook("pthread_mutex_lock", mutex);
    return pthread_mutex_lock(mutex);
}

int __wrap_pthread_mutex_unlock(pthread_mutex_t *mutex)
{
    fake::BeforeUnlock();
    return pthread_mutex_unlock(mutex);
}

int __wrap_pthread_cond_wait(pthread_cond_t *cond, pthread_mutex_t *mutex)
{
    TellHook("pthread_cond_wait", cond);
    return pthread_cond_wait(cond, mutex);
}

int __wrap_pthread_cond_signal(pthread_cond_t *cond)
{
    TellHook("pthread_cond_signal", cond);
    return pthread_cond_signal(cond);
}

int __wrap_pthread_create(pthread_t *thread, const pthread_attr_t *attr, void *(*start)(void *), void *arg)
{
    fake::Note("pthread_create");
    const int iError = fake::State().iThreadError;
    return iError ? iError : pthread_create(thread, attr, start, arg);
}

int __wrap_pthread_join(pthread_t thread, void **result)
{
    fake::Note("pthread_join");
    TellHook("pthread_join", nullptr);
    return pthread_join(thread, result);
}

void *__wrap_dlopen(const char *file, int mode)
{
    fake::Note(
        fake::Format("dlopen %s %s", file, mode == (RTLD_NOW | RTLD_GLOBAL) ? "NOW|GLOBAL" : "other flags"));
    return fake::State().loadError.empty() ? dlopen(file, mode) : SetDlError(fake::State().loadError);
}

void *__wrap_dlsym(void *handle, const char *name)
{
    fake::Note(fake::Format("dlsym %s", name));
    return fake::State().symbol == name ? SetDlError(fake::State().symbolError) : dlsym(handle, name);
}

char *__wrap_dlerror()
{
    if (!fake::State().bDlError) return dlerror();
    fake::State().bDlError = false;
    return const_cast<char *>(fake::State().dlError.c_str());
}

int __wrap_dlclose(void *handle)
{
    fake::Note("dlclose");
    return dlclose(handle);
}
}
// NOLINTEND(bugprone-reserved-identifier)
