// SPDX-License-Identifier: MIT
// Fault injection: every DirectFB call of every operation fails once with every result, or returns DFB_OK
// without an object; so do the services that creation uses. oracle.cpp derives the expected behaviour.
// Without arguments the program ends with a summary, one line per operation.
#include "oracle.h"

#include "expect.h"
#include "watchdog.h"

#include <fcntl.h>
#include <optional>
#include <unistd.h>

using namespace test;

namespace
{

#define RESULT(name)                                                                                         \
    {                                                                                                        \
        DFB_##name, "DFB_" #name                                                                             \
    }
const struct {
    DFBResult eResult;
    const char *pcName;
} RESULTS[] = {
    RESULT(FAILURE),
    RESULT(TEMPUNAVAIL),
    RESULT(DESTROYED),
    RESULT(BUSY),
    RESULT(UNSUPPORTED),
    RESULT(NOSYSTEMMEMORY),
    RESULT(INIT),
    RESULT(BUG),
    RESULT(DEAD),
    RESULT(UNIMPLEMENTED),
    RESULT(ACCESSDENIED),
    RESULT(INVAREA),
    RESULT(INVARG),
    RESULT(NOSHAREDMEMORY),
    RESULT(LOCKED),
    RESULT(BUFFEREMPTY),
    RESULT(FILENOTFOUND),
    RESULT(IO),
    RESULT(NOIMPL),
    RESULT(TIMEOUT),
    RESULT(THIZNULL),
    RESULT(IDNOTFOUND),
    RESULT(FUSION),
    RESULT(BUFFERTOOLARGE),
    RESULT(INTERRUPTED),
    RESULT(NOCONTEXT),
    RESULT(LIMITEXCEEDED),
    RESULT(NOSUCHMETHOD),
    RESULT(NOSUCHINSTANCE),
    RESULT(ITEMNOTFOUND),
    RESULT(VERSIONMISMATCH),
    RESULT(EOF),
    RESULT(SUSPENDED),
    RESULT(INCOMPLETE),
    RESULT(NOCORE),
};
// All results on one layer and in one colour mode, a few elsewhere. For the thread sanitizer one is enough.
#ifdef __SANITIZE_THREAD__
enum { ALL_RESULTS = 1, FEW_RESULTS = 1 };
#else
enum { ALL_RESULTS = sizeof RESULTS / sizeof RESULTS[0], FEW_RESULTS = 3 };
#endif

const KovaGraphicLayer_e LAYERS[] = {KOVA_GRAPHIC_LAYER1, KOVA_GRAPHIC_LAYER2, KOVA_GRAPHIC_LAYER3};
const ColorMode_e MODES[] = {INDEX_COLORS, PALETTE_COLORS, PACKED_COLORS};

using Given_t = pKovaITextDisplay_t (*)(KovaGraphicLayer_e eLayer, ColorMode_e eMode);
using When_t = std::string (*)(pKovaITextDisplay_t pDisplay);

struct Case_t {
    const char *pcOperation, *pcVariant;
    Given_t given;
    When_t when;
    const char *pcUnchanged = "";
    bool bThread = false; // the calls are made by the flip thread

    friend void PrintTo(const Case_t &one, std::ostream *pOut)
    {
        *pOut << one.pcOperation << " " << one.pcVariant;
    }
};

// ---- displays

template <typename Interface> void Take(Interface *&pObject)
{
    if (pObject) pObject->Release(pObject);
    pObject = nullptr;
    ClearTrace();
}

pKovaITextDisplay_t Shown(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    return GivenShownDisplay(eLayer, eMode, NO_CONTEXT);
}

pKovaITextDisplay_t Hidden(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    return GivenHiddenDisplay(eLayer, eMode, NO_CONTEXT);
}

pKovaITextDisplay_t WithFont(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    pKovaITextDisplay_t pDisplay = Shown(eLayer, eMode);
    GivenFont(pDisplay);
    return pDisplay;
}

template <KovaTextEdgeType_e eEdge> pKovaITextDisplay_t WithEdge(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    pKovaITextDisplay_t pDisplay = WithFont(eLayer, eMode);
    pDisplay->SetEdgeType(pDisplay, 0, eEdge);
    ClearTrace();
    return pDisplay;
}

// Has a font and colours to carry over.
pKovaITextDisplay_t WithBackup(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    pKovaITextDisplay_t pDisplay = WithFont(eLayer, eMode);
    std::vector<KovaTextColor_t> colors(MAX_PALETTE_COLOR, KovaTextColor_t{1, 2, 3, 4});
    GivenBackupSurface(pDisplay);
    pDisplay->SetPalette(pDisplay, 0, colors.data(), MAX_PALETTE_COLOR, 0);
    ClearTrace();
    return pDisplay;
}

pKovaITextDisplay_t OnBackup(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    pKovaITextDisplay_t pDisplay = WithBackup(eLayer, eMode);
    pDisplay->UseBackupSurface(pDisplay, 0, 1);
    ClearTrace();
    return pDisplay;
}

// Has contexts 0 and 1, and a font; the flip thread waits.
template <int iActive> pKovaITextDisplay_t WithContexts(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    pKovaITextDisplay_t pDisplay = WithFont(eLayer, eMode);
    KovaTextContextParam_t param = ContextParam();
    EXPECT_EQ(Kova_TextDisp_CreateContext(pDisplay, &param), 0);
    EXPECT_EQ(Kova_TextDisp_CreateContext(pDisplay, &param), 1);
    if (iActive != NO_CONTEXT) Kova_TextDisp_SetActive(pDisplay, iActive, 1);
    ClearTrace();
    return pDisplay;
}

pKovaITextDisplay_t Deactivated(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    pKovaITextDisplay_t pDisplay = WithContexts<0>(eLayer, eMode);
    Kova_TextDisp_SetActive(pDisplay, 0, 0);
    ClearTrace();
    return pDisplay;
}

pKovaITextDisplay_t After32BitPlane(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    pKovaITextDisplay_t pDisplay = WithFont(eLayer, eMode);
    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, PLANE_WIDTH, PLANE_HEIGHT), 0);
    ClearTrace();
    return pDisplay;
}

pKovaITextDisplay_t ReleasedPlane(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    pKovaITextDisplay_t pDisplay = After32BitPlane(eLayer, eMode);
    EXPECT_EQ(pDisplay->Release32BitPlane(pDisplay), 0);
    ClearTrace();
    return pDisplay;
}

// The state after a layer was not available: the context counts as active anyway. On layer 1 the window is
// released before the layer is requested.
template <Given_t given> pKovaITextDisplay_t WithoutLayer(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    pKovaITextDisplay_t pDisplay = given(eLayer, eMode);
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);

    if (eLayer == KOVA_GRAPHIC_LAYER1) {
        pRecord->pActiveSurface = nullptr;
        Take(pRecord->pBaseSurface);
        Take(pRecord->pWindow);
    }
    Take(pRecord->pLayer);
    return pDisplay;
}

pKovaITextDisplay_t FlippingOff(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    pKovaITextDisplay_t pDisplay = Shown(eLayer, eMode);
    pDisplay->SetFlip(pDisplay, 0);
    ClearTrace();
    return pDisplay;
}

// A flip has just been made, and the clock stands still. On layer 1 only another display stores the time.
pKovaITextDisplay_t JustFlipped(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    pKovaITextDisplay_t pDisplay = Shown(eLayer, eMode);
    pDisplay->Flip(pDisplay, 0);
    ClearTrace();
    return pDisplay;
}

// The thread sleeps before a deferred flip.
pKovaITextDisplay_t Deferred(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    pKovaITextDisplay_t pDisplay = WithContexts<0>(eLayer, eMode);
    TurnClock(1000000);
    pDisplay->Flip(pDisplay, 0);
    pDisplay->Flip(pDisplay, 0);
    EXPECT_TRUE(AwaitSleeper());
    RecordOf(pDisplay)->flip_clip = {0, 0, 9, 9}; // to distinguish it from the clip that is restored
    ClearTrace();
    return pDisplay;
}

pKovaITextDisplay_t NoDisplay(KovaGraphicLayer_e, ColorMode_e)
{
    WatchLock(nullptr);
    return nullptr;
}

// ---- operations; their results as text

std::string Text(int iResult)
{
    return std::to_string(iResult);
}

std::string Active(pKovaITextDisplay_t pDisplay)
{
    return "active " + Text(RecordOf(pDisplay)->scActiveContextID);
}

KovaTextRect_t s_rect = {10, 20, 30, 40};
KovaTextColor_t s_colors[] = {{1, 2, 3, 4}, {5, 6, 7, 8}};
kova_uint8 s_pixels[64] = {1, 2, 3};
const unsigned short s_abc[] = {'a', 'b', 'c'};
KovaGraphicLayer_e s_eLayer; // the layer of the display to create
ColorMode_e s_eMode;

std::string CreateDisplay(pKovaITextDisplay_t)
{
    KovaTextInitParam_t param = InitParam(s_eLayer, s_eMode);
    EXPECT_EQ(Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param), 0);
    return Kova_TextDisp_GetDisplayByID(0) ? "display" : "null";
}

std::string DestroyDisplay(pKovaITextDisplay_t)
{
    WatchLock(nullptr);
    Kova_TextDisp_Destroy(0);
    return "";
}

std::string Drawn(pKovaITextDisplay_t p)
{
    return Text(p->DrawString(p, 0, s_abc, sizeof s_abc, 100, 200, KOVA_TEXT_UNICODE, KOVA_TEXT_LEFT));
}

std::string DrawBatch(pKovaITextDisplay_t p)
{
    kova_uint8 *apucPixel[] = {s_pixels, s_pixels};
    kova_uint32 auiX[] = {1, 20}, auiY[] = {2, 30}, auiSize[] = {8, 8}, auiRow[] = {1, 1}, auiBit[] = {0, 0};
    kova_sint32 asiColor[] = {1, 2};
    KovaTextExpand_e aeExpand[] = {KOVA_EXPAND_1X1Y, KOVA_EXPAND_2X2Y};
    return Text(p->BatchDrawPixelExpand(p, 0, apucPixel, auiX, auiY, auiSize, auiSize, auiRow, asiColor,
                                        asiColor, auiBit, aeExpand, 2));
}

template <kova_uint32 uiHeight> std::string CreateFontAt(pKovaITextDisplay_t p)
{
    kova_sint32 siFont = -7;
    const int iResult = p->CreateFont(p, 0, "sans.ttf", uiHeight, KOVA_FONTATTR_NONE, &siFont);
    return Text(iResult) + " font " + Text(siFont);
}

std::string CreatePlane(pKovaITextDisplay_t p)
{
    const int iResult = p->Create32BitPlane(p, 0, 0, 0, PLANE_WIDTH, PLANE_HEIGHT);
    return Text(iResult) + " " + Active(p);
}

std::string ReleasePlane(pKovaITextDisplay_t p)
{
    const int iResult = p->Release32BitPlane(p);
    return Text(iResult) + " " + Active(p);
}

template <int iContext, int iActive> std::string Activate(pKovaITextDisplay_t p)
{
    Kova_TextDisp_SetActive(p, iContext, iActive);
    return Active(p);
}

std::string ThreadPass(pKovaITextDisplay_t pDisplay)
{
    LetSleeperGo();
    EXPECT_TRUE(AwaitIdleThread(pDisplay));
    return "";
}

const Case_t CASES[] = {
    {"Show", "", Hidden, [](pKovaITextDisplay_t p) { return p->Show(p, 0), Text(RecordOf(p)->bShow); }},
    {"Hide", "", Shown, [](pKovaITextDisplay_t p) { return p->Hide(p, 0), Text(RecordOf(p)->bShow); }},
    {"SetTextWindowSize", "", Shown,
     [](pKovaITextDisplay_t p) { return Text(p->SetTextWindowSize(p, 0, 100, 50)); }},
    {"SetPlane", "", WithFont,
     [](pKovaITextDisplay_t p) { return Text(p->SetPlane(p, 0, 0, 0, PLANE_WIDTH, 400)); }},
    {"SetPlane", "Hidden", Hidden,
     [](pKovaITextDisplay_t p) { return Text(p->SetPlane(p, 0, 0, 0, 640, PLANE_HEIGHT)); }},
    {"SetDisplayWindow", "", Shown,
     [](pKovaITextDisplay_t p) { return Text(p->SetDisplayWindow(p, 0, 1, 2, 3, 4)); }},
    {"SetPalette", "", Shown,
     [](pKovaITextDisplay_t p) { return Text(p->SetPalette(p, 0, s_colors, 2, 7)); }},
    {"FillRect", "", Shown, [](pKovaITextDisplay_t p) { return Text(p->FillRect(p, 0, &s_rect, 5)); }},
    {"DrawPixel", "", Shown,
     [](pKovaITextDisplay_t p) { return Text(p->DrawPixel(p, 0, s_pixels, 3, 4, 8, 8, 8)); }},
    {"Flip", "", Shown, [](pKovaITextDisplay_t p) { return Text(p->Flip(p, 0)); }},
    {"Flip", "Deferred", JustFlipped, [](pKovaITextDisplay_t p) { return Text(p->Flip(p, 0)); }},
    {"SetBlittingFlags", "", Shown,
     [](pKovaITextDisplay_t p) { return Text(p->SetBlittingFlags(p, 0, KOVA_DSBLIT_SRC_COLORKEY)); }},
    {"SetDrawingFlags", "", Shown,
     [](pKovaITextDisplay_t p) { return Text(p->SetDrawingFlags(p, 0, KOVA_DSDRAW_DST_COLORKEY)); }},
    {"SetDstColorKey", "", Shown, [](pKovaITextDisplay_t p) { return Text(p->SetDstColorKey(p, 0, 3)); }},
    {"SetClip", "", Shown, [](pKovaITextDisplay_t p) { return Text(p->SetClip(p, 0, &s_rect)); }},
    {"SetClip", "Lifted", Shown, [](pKovaITextDisplay_t p) { return Text(p->SetClip(p, 0, nullptr)); }},
    {"DrawPixelExpand", "", Shown,
     [](pKovaITextDisplay_t p) {
         return Text(p->DrawPixelExpand(p, 0, s_pixels, 1, 2, 8, 8, 1, 3, 4, 0, KOVA_EXPAND_2X2Y));
     }},
    {"CreateFont", "", Shown, CreateFontAt<24>},
    {"CreateFont", "OtherHeight", WithFont, CreateFontAt<30>},
    {"CreateFont", "Known", WithFont, CreateFontAt<24>},
    {"SetFont", "", WithFont,
     [](pKovaITextDisplay_t p) { return Text(p->SetFont(p, 0, 0, 24, KOVA_FONTATTR_NONE)); }},
    {"SetFont", "Reopened", WithFont,
     [](pKovaITextDisplay_t p) { return Text(p->SetFont(p, 0, 0, 30, KOVA_FONTATTR_ITALIC)); }},
    {"DrawString", "", WithFont, Drawn},
    {"DrawString", "Plain", WithEdge<KOVA_TEXT_ENONE>, Drawn},
    {"DrawString", "Raised", WithEdge<KOVA_TEXT_ERAISED>, Drawn},
    {"DrawString", "Depressed", WithEdge<KOVA_TEXT_EDEPRESSED>, Drawn},
    {"DrawString", "Uniform", WithEdge<KOVA_TEXT_EUNIFORM>, Drawn},
    {"DrawString", "LeftShadow", WithEdge<KOVA_TEXT_ELEFTDROPSHADOW>, Drawn},
    {"DrawString", "RightShadow", WithEdge<KOVA_TEXT_ERIGTHDROPSHADOW>, Drawn},
    {"GetStringWidth", "", WithFont,
     [](pKovaITextDisplay_t p) {
         kova_uint32 uiWidth = 99;
         const int iResult = p->GetStringWidth(p, 0, s_abc, sizeof s_abc, KOVA_TEXT_UNICODE, &uiWidth);
         return Text(iResult) + " width " + Text(int(uiWidth));
     }},
    {"GetUnderlineInfo", "", WithFont,
     [](pKovaITextDisplay_t p) {
         kova_sint32 siAt = -7, siThick = -7;
         const int iResult = p->GetUnderlineInfo(p, 0, 0, 24, 0, &siAt, &siThick);
         return Text(iResult) + " at " + Text(siAt) + " thick " + Text(siThick);
     }},
    {"SetEdgeType", "", Shown,
     [](pKovaITextDisplay_t p) { return Text(p->SetEdgeType(p, 0, KOVA_TEXT_EUNIFORM)); }},
    {"SetEdgeColor", "", WithFont, [](pKovaITextDisplay_t p) { return Text(p->SetEdgeColor(p, 0, 9)); }},
    {"SetTextForeColor", "", Shown, [](pKovaITextDisplay_t p) { return Text(p->SetTextForeColor(p, 0, 9)); }},
    {"Blit", "", Shown, [](pKovaITextDisplay_t p) { return Text(p->Blit(p, 0, &s_rect, 50, 60)); }},
    {"ScaleFontWidth", "", WithFont,
     [](pKovaITextDisplay_t p) { return Text(p->ScaleFontWidth(p, 0, 1, 32768)); }},
    {"GetFontHeight", "", WithFont,
     [](pKovaITextDisplay_t p) {
         kova_sint32 siHeight = 99;
         const int iResult = p->GetFontHeight(p, 0, &siHeight);
         return Text(iResult) + " height " + Text(siHeight);
     }},
    {"BatchDrawPixelExpand", "", Shown, DrawBatch},
    {"UseBackupSurface", "On", WithBackup,
     [](pKovaITextDisplay_t p) { return Text(p->UseBackupSurface(p, 0, 1)); }},
    {"UseBackupSurface", "Off", OnBackup,
     [](pKovaITextDisplay_t p) { return Text(p->UseBackupSurface(p, 0, 0)); }},
    {"BlitBackupSurface", "", WithBackup,
     [](pKovaITextDisplay_t p) { return Text(p->BlitBackupSurface(p, 0, &s_rect, 50, 60)); }},
    {"DrawLine", "", Shown, [](pKovaITextDisplay_t p) { return Text(p->DrawLine(p, 0, 1, 2, 3, 4, 5)); }},
    {"Create32BitPlane", "", WithFont, CreatePlane},
    {"Create32BitPlane", "Again", ReleasedPlane, CreatePlane},
    {"Create32BitPlane", "WithoutLayer", WithoutLayer<WithFont>, CreatePlane},
    {"Release32BitPlane", "", After32BitPlane, ReleasePlane},
    {"SetFlip", "", FlippingOff, [](pKovaITextDisplay_t p) { return Text(p->SetFlip(p, 1)); }},
    {"SetSurface_OsdScaleInfo", "", Shown,
     [](pKovaITextDisplay_t p) {
         Surface_OsdScaleInfo info = {0, 0, 720, 480, 0, 0, 10, 10, 700, 460};
         return p->SetSurface_OsdScaleInfo(p, &info), std::string();
     }},
    {"AdjustDisplaySize", "", WithFont,
     [](pKovaITextDisplay_t p) { return Text(p->AdjustDisplaySize(p, 0, 0, 0, 640, 400)); }},

    // Creation, contexts and destruction.
    {"Create", "", NoDisplay, CreateDisplay},
    {"CreateContext", "", WithFont,
     [](pKovaITextDisplay_t p) {
         KovaTextContextParam_t param = ContextParam(640, 400);
         return Text(Kova_TextDisp_CreateContext(p, &param));
     }},
    {"SetActive", "", WithContexts<NO_CONTEXT>, Activate<0, 1>, "active -1"},
    {"SetActive", "Switch", WithContexts<1>, Activate<0, 1>, "active 1"},
    {"SetActive", "Same", WithContexts<0>, Activate<0, 1>, "active 0"},
    {"SetActive", "Off", WithContexts<0>, Activate<0, 0>, "active 0"},
    {"SetActive", "Regain", Deactivated, Activate<0, 1>, "active -2"},
    {"SetActive", "WithoutLayer", WithoutLayer<WithContexts<1>>, Activate<0, 1>, "active 1"},
    {"Flip_last_frame_Thread", "", Deferred, ThreadPass, "", true},
    {"Destroy", "", WithBackup, DestroyDisplay},
};

// ---- the sweep

// The banners of activations are not part of the report.
class QuietOutput_t
{
public:
    QuietOutput_t() : m_iOld(dup(STDOUT_FILENO))
    {
        fflush(stdout);
        const int iNull = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(iNull, STDOUT_FILENO);
        close(iNull);
    }
    ~QuietOutput_t()
    {
        fflush(stdout);
        dup2(m_iOld, STDOUT_FILENO);
        close(m_iOld);
    }
    QuietOutput_t(const QuietOutput_t &) = delete;
    QuietOutput_t &operator=(const QuietOutput_t &) = delete;

private:
    const int m_iOld;
};

struct Tally_t {
    int iSites = 0, iFaults = 0;
};

std::map<std::string, Tally_t> &Tallies()
{
    static std::map<std::string, Tally_t> tallies;
    return tallies;
}

class PrintTallies_t : public testing::Environment
{
    void TearDown() override
    {
        Tally_t total;
        for (const auto &entry : Tallies()) {
            printf("%-24s %5d sites %7d faults\n", entry.first.c_str(), entry.second.iSites,
                   entry.second.iFaults);
            total.iSites += entry.second.iSites;
            total.iFaults += entry.second.iFaults;
        }
        printf("%-24s %5d sites %7d faults\n", "total", total.iSites, total.iFaults);
    }
};

testing::Environment *const s_pTallies = testing::AddGlobalTestEnvironment(new PrintTallies_t);

// The clock never goes back: the time of the last flip belongs to the process.
void BeginAgain()
{
    static long s_lSeconds = 1000000;

    Reset();
    SetClock(s_lSeconds += 100, 0);
    HoldSleeps(true);
}

// The plane, the contexts and the drawing state in the record.
std::string StateOf(const KovaDFBDisplay_t &r)
{
    std::string state = "shown " + Text(r.bShow) + " mask " + Text(r.ucContextMask) + " active " +
                        Text(r.scActiveContextID) + " font " + Text(r.scActiveFontID) + " plane " +
                        Text(int(r.uiPlaneWidth)) + "x" + Text(int(r.uiPlaneHeight)) + " clip " +
                        Text(r.clip.x1) + "," + Text(r.clip.y1) + " " + Text(r.clip.x2) + "," +
                        Text(r.clip.y2) + " color32 " + Text(r.bColor32) + " flip " + Text(r.bFlip) +
                        " changed " + Text(r.blast_frame_changed) + " backup " +
                        Text(r.pActiveSurface && r.pActiveSurface == r.pBackupSurface);
    for (const KovaDFBContext_t &context : r.context)
        state += " " + Text(int(context.uiPlaneWidth)) + "x" + Text(int(context.uiPlaneHeight));
    for (const KovaDFBFont_t &font : r.font)
        state += " " + Text(font.pFont != nullptr) + ":" + Text(int(font.ucHeight)) + "x" +
                 Text(int(font.ucWidth));
    for (const KovaTextColor_t &c : r.palette)
        state += " " + Text(c.r) + "," + Text(c.g) + "," + Text(c.b) + "," + Text(c.a);
    return state;
}

// Calls every operation once in the state that the fault left. It must return; the result names the
// operations that kept the lock.
std::string PlayEverything(pKovaITextDisplay_t pDisplay)
{
    std::string keepers;

    SetThreshold(0);
    HoldSleeps(false);
    for (const Case_t &one : CASES) {
        if (one.bThread || one.when == CreateDisplay || one.when == DestroyDisplay) continue;
        TurnClock(1000000);
        one.when(pDisplay);
        if (HoldsLock()) keepers += std::string(one.pcOperation) + " ";
    }
    return keepers;
}

void End(pKovaITextDisplay_t pDisplay)
{
    HoldSleeps(false);
    if (!pDisplay) return;
    for (int i = 0; i < MAX_CONTEXTS; i++) {
        if (RecordOf(pDisplay)->ucContextMask >> i & 1) Kova_TextDisp_DestroyContext(pDisplay, kova_sint8(i));
    }
    WatchLock(nullptr);
    Kova_TextDisp_Destroy(0);
}

class Sweep_t
{
public:
    Sweep_t(const Case_t &one, KovaGraphicLayer_e eLayer, ColorMode_e eMode)
        : m_case(one), m_scenario{one.pcOperation, one.pcVariant, eLayer, one.pcUnchanged, {}, false},
          m_eMode(eMode)
    {
        m_name = std::string(one.pcOperation) + (*one.pcVariant ? "." : "") + one.pcVariant + " on layer " +
                 Text(eLayer + 1) + ", colour mode " + Text(eMode);
        m_scenario.bArgbBefore = eMode == PACKED_COLORS && one.given == WithContexts<NO_CONTEXT>;
        // A display on layer 1 does not release its backup surface, which no operation makes.
        if (eLayer == KOVA_GRAPHIC_LAYER1 && (one.given == WithBackup || one.given == OnBackup))
            m_kept = "backup";
    }

    void Go(int iResults)
    {
        const Run_t first = Clean();
        int iCall = 0;

        for (const Line_t &line : m_clean) {
            if (line.method.empty()) continue;
            iCall++;
            m_tally.iSites++;
            for (int i = 0; i < iResults; i++) Try({iCall, RESULTS[i].eResult}, line, RESULTS[i].pcName);
            if (!line.made.empty()) Try({iCall, DFB_OK}, line, "nothing given");
        }
        const Run_t last = Clean();
        EXPECT_EQ(last.trace, first.trace) << "no state may reach the next run: " << m_name;
        EXPECT_EQ(last.left, m_kept);
        Book();
    }

    // The operation on a display with a missing object.
    void GoWithout(const std::set<std::string> &absent, void (*take)(KovaDFBDisplay_t *))
    {
        Clean();
        m_scenario.absent = absent;
        m_take = take;
        m_name += " without " + *absent.begin();
        m_tally.iSites++;
        Try({0, DFB_OK}, {"", true, false, "", ""}, "absent");
        Book();
    }

private:
    Run_t Clean()
    {
        Run_t run = Do({0, DFB_OK});

        m_clean = m_lines;
        m_answer = run.answer;
        m_state = run.state;
        return run;
    }

    Run_t Do(const Fault_t &fault)
    {
        Run_t run;

        BeginAgain();
        Meet(fault, &run);
        m_lines.clear();
        for (const Line_t &line : Lines()) {
            const bool bOurs =
                line.bMainThread != m_case.bThread && line.text.find("Flip_last_frame") == std::string::npos;
            if (bOurs || line.text.compare(0, 9, "DFB_CHECK") == 0) m_lines.push_back(line);
        }
        run.trace = Comparable(m_lines);
        // After one of the faults at each call all other operations follow; after the others objects are
        // counted.
        pKovaITextDisplay_t pDisplay = Kova_TextDisp_GetDisplayByID(0);
        m_bPlayed = pDisplay && fault.iCall && fault.eResult == DFB_FAILURE;
        if (m_bPlayed) run.keepers += Played(pDisplay);
        End(pDisplay);
        if (!m_bPlayed) run.left = Unnumbered(LiveObjectNames());
        DropObjects();
        return run;
    }

    void Meet(const Fault_t &fault, Run_t *pRun)
    {
        const QuietOutput_t quiet;

        s_eLayer = m_scenario.eLayer;
        s_eMode = m_eMode;
        pKovaITextDisplay_t pDisplay = m_case.given(m_scenario.eLayer, m_eMode);
        if (m_take) m_take(RecordOf(pDisplay));
        if (fault.iCall && fault.eResult == DFB_OK) GiveNothingAtCall(CallCount() + fault.iCall);
        if (fault.iCall && fault.eResult != DFB_OK) FailCall(CallCount() + fault.iCall, fault.eResult);
        pRun->answer = m_case.when(pDisplay);
        FailCall(0, DFB_OK);
        if (HoldsLock()) pRun->keepers = "itself ";
        pDisplay = Kova_TextDisp_GetDisplayByID(0);
        if (pDisplay) pRun->state = StateOf(*RecordOf(pDisplay));
    }

    static std::string Played(pKovaITextDisplay_t pDisplay)
    {
        const QuietOutput_t quiet;
        return PlayEverything(pDisplay);
    }

    void Try(const Fault_t &fault, const Line_t &line, const char *pcResult)
    {
        const Run_t expected = Expected(m_scenario, m_clean, m_answer, fault);
        Run_t seen;

        m_tally.iFaults++;
        m_watchdog.Progress(m_name + ", " + pcResult + " at " + line.text);
        if (expected.bRecordLost) {
            const LeaksAreMeant_t leaks;
            seen = Do(fault);
        } else {
            seen = Do(fault);
        }
        const std::string left = m_bPlayed ? "" : Joined(m_kept, expected.left);
        if (seen.trace == expected.trace && seen.answer == expected.answer && seen.left == left &&
            seen.keepers.empty() && (!expected.bSameState || seen.state == m_state))
            return;
        if (++s_iWrong > ENOUGH) return;
        EXPECT_EQ(seen.trace, expected.trace);
        EXPECT_EQ(seen.answer, expected.answer);
        EXPECT_EQ(seen.left, left);
        EXPECT_EQ(seen.keepers, "");
        EXPECT_TRUE(!expected.bSameState || seen.state == m_state) << seen.state << "\nnot\n" << m_state;
        ADD_FAILURE() << "with " << pcResult << " at call " << fault.iCall << " (" << line.text << ") of "
                      << m_name;
    }

    static std::string Joined(const std::string &a, const std::string &b)
    {
        return a + (a.empty() || b.empty() ? "" : " ") + b;
    }

    void Book()
    {
        Tally_t &tally = Tallies()[m_scenario.pcOperation];
        tally.iSites += m_tally.iSites;
        tally.iFaults += m_tally.iFaults;
    }

    const Case_t &m_case;
    Scenario_t m_scenario;
    const ColorMode_e m_eMode;
    std::string m_name, m_answer, m_state, m_kept;
    std::vector<Line_t> m_clean, m_lines;
    Tally_t m_tally;
    void (*m_take)(KovaDFBDisplay_t *) = nullptr;
    bool m_bPlayed = false;
    enum { ENOUGH = 5 }; // reported in full
    static inline int s_iWrong = 0;
    Watchdog_t m_watchdog{std::chrono::seconds(60)};
};

// One test per case, so that each runs in a separate process.
class EachCall : public testing::TestWithParam<Case_t>
{
};

// The first display of a process creates the log category.
void MakeFirstDisplay()
{
    CreateDisplay(nullptr);
    End(Kova_TextDisp_GetDisplayByID(0));
}

TEST_P(EachCall, FailsOnceWithEveryResult)
{
    const Case_t &one = GetParam();

    MakeFirstDisplay();
    for (const KovaGraphicLayer_e eLayer : LAYERS) {
        for (const ColorMode_e eMode : MODES) {
            // On layer 1 flips are deferred only after a flip of another display.
            if (one.bThread && eLayer == KOVA_GRAPHIC_LAYER1) continue;
            const bool bAll = eLayer == KOVA_GRAPHIC_LAYER2 && eMode == INDEX_COLORS;
            Sweep_t(one, eLayer, eMode).Go(bAll ? ALL_RESULTS : FEW_RESULTS);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Operation, EachCall, testing::ValuesIn(CASES), [](const auto &one) {
    return std::string(one.param.pcOperation) + one.param.pcVariant;
});

// ---- displays with a missing object: every call on it counts as a call on a destroyed object

void TakeSurface(KovaDFBDisplay_t *pRecord)
{
    Take(pRecord->pBaseSurface);
    pRecord->pActiveSurface = nullptr;
}

void TakeLayer(KovaDFBDisplay_t *pRecord)
{
    Take(pRecord->pLayer);
}

void TakeMainInterface(KovaDFBDisplay_t *pRecord)
{
    Take(pRecord->pDfb);
}

// Whether the operation makes the same steps without the object. The others obtain one first.
bool IsSameWithout(const Case_t &one, const std::string &object)
{
    const std::string operation = one.pcOperation, variant = one.pcVariant;

    if (one.bThread || operation == "Create" || operation == "CreateContext") return false;
    if (operation == "SetActive") return variant == "Same" || variant == "Off";
    if (operation == "Create32BitPlane") return object == "dfb" && variant.empty();
    if (one.given == OnBackup) return object != "base";
    return object != "dfb" || operation != "SetPlane";
}

class EachOperation : public testing::TestWithParam<const char *>
{
};

TEST_P(EachOperation, TreatsAnAbsentObjectAsAFailedCall)
{
    const std::string object = GetParam();
    void (*const take)(KovaDFBDisplay_t *) = object == "base"    ? TakeSurface
                                             : object == "layer" ? TakeLayer
                                                                 : TakeMainInterface;
    MakeFirstDisplay();
    for (const Case_t &one : CASES) {
        if (!IsSameWithout(one, object)) continue;
        for (const KovaGraphicLayer_e eLayer : LAYERS) {
            for (const ColorMode_e eMode : MODES) Sweep_t(one, eLayer, eMode).GoWithout({object}, take);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Without, EachOperation, testing::Values("base", "layer", "dfb"),
                         [](const auto &one) { return std::string(one.param); });

// ---- services: memory, dynamic loader, threads

// Expects a working display: contexts, a deferred flip, destruction.
void ExpectWorkingDisplay(KovaGraphicLayer_e eLayer)
{
    const QuietOutput_t quiet;

    BeginAgain();
    pKovaITextDisplay_t pDisplay = Deferred(eLayer, INDEX_COLORS);
    EXPECT_EQ(ThreadPass(pDisplay), "");
    EXPECT_EQ(CountOf(ThreadTrace(), ".Flip all"), 1);
    End(pDisplay);
    EXPECT_EQ(LiveObjectNames(), "");
}

struct Service_t {
    const char *pcName;
    void (*fail)();
    const char *pcTrace; // the trace between entry and exit of the creation
    bool bEntered;
};

const Service_t SERVICES[] = {
    {"calloc", FailAllocation, "ERROR Kova_TextDFBDisp_Create: Malloc Fail!\n", false},
    {"dlopen", [] { FailLoading("no such file"); },
     "dlopen libdirectfb.so NOW|GLOBAL\n"
     "error TextDisplayLoadLibrary: Load libdirectfb.so error:no such file\n",
     true},
    {"dlsym 1", [] { FailSymbol("DirectFBInit", "no such symbol"); },
     "dlopen libdirectfb.so NOW|GLOBAL\n"
     "dlsym DirectFBInit\n"
     "error TextDisplayLoadLibrary: Load libdirectfb.so error:no such symbol\n"
     "dlclose\n",
     true},
    {"dlsym 2", [] { FailSymbol("DirectFBCreate", "no such symbol"); },
     "dlopen libdirectfb.so NOW|GLOBAL\n"
     "dlsym DirectFBInit\n"
     "dlsym DirectFBCreate\n"
     "error TextDisplayLoadLibrary: Load libdirectfb.so error:no such symbol\n"
     "dlclose\n",
     true},
    {"dlsym 3", [] { FailSymbol("DirectFBErrorFatal", "no such symbol"); },
     "dlopen libdirectfb.so NOW|GLOBAL\n"
     "dlsym DirectFBInit\n"
     "dlsym DirectFBCreate\n"
     "dlsym DirectFBErrorFatal\n"
     "error TextDisplayLoadLibrary: Load libdirectfb.so error:no such symbol\n"
     "dlclose\n",
     true},
};

TEST(Service, ThatFailsLeavesNoDisplayAndTheNextOneWorks)
{
    MakeFirstDisplay();
    for (const Service_t &service : SERVICES) {
        for (const KovaGraphicLayer_e eLayer : LAYERS) {
            SCOPED_TRACE(service.pcName);
            BeginAgain();
            s_eLayer = eLayer;
            service.fail();
            {
                std::optional<LeaksAreMeant_t> leaks; // the record is not freed after this failure
                if (service.bEntered) leaks.emplace();
                EXPECT_EQ(CreateDisplay(nullptr), "null");
            }
            const std::string trace = service.pcTrace;
            EXPECT_EQ(Trace(), service.bEntered ? "enter Kova_TextDFBDisp_Create\n" + trace +
                                                      "exit Kova_TextDFBDisp_Create\n"
                                                : trace);
            EXPECT_EQ(CallCount(), 0);
            ExpectWorkingDisplay(eLayer == KOVA_GRAPHIC_LAYER1 ? KOVA_GRAPHIC_LAYER2 : eLayer);
            Tallies()["(services)"].iFaults++;
        }
        Tallies()["(services)"].iSites++;
    }
}

TEST(Service, ThatStartsNoThreadLeavesAContextThatDrawsAndFlips)
{
    MakeFirstDisplay();
    for (const KovaGraphicLayer_e eLayer : {KOVA_GRAPHIC_LAYER2, KOVA_GRAPHIC_LAYER3}) {
        for (const int iError : {EAGAIN, EINVAL, EPERM}) {
            BeginAgain();
            pKovaITextDisplay_t pDisplay = Shown(eLayer, INDEX_COLORS);
            KovaTextContextParam_t param = ContextParam();
            FailThreadStart(iError);

            EXPECT_EQ(Kova_TextDisp_CreateContext(pDisplay, &param), -1);

            EXPECT_EQ(
                CallsOnly(Trace()),
                "pthread_create\nerror Kova_TextDFBDisp_CreateContext: pthread_create() failed. return:" +
                    Text(iError) + "\n");
            EXPECT_EQ(TraceOf("exit"), "exit Kova_TextDFBDisp_CreateContext\n");
            EXPECT_FALSE(HoldsLock());
            EXPECT_EQ(RecordOf(pDisplay)->ucContextMask, 1);
            EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 0u);
            ClearTrace();
            EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
            EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0); // deferred, but there is no thread to wake
            EXPECT_EQ(CallsOnly(Trace()), "layer.GetConfiguration\n"
                                          "base.Flip all WAIT|BLIT|ONSYNC\n"
                                          "base.GetClip\n");
            FailThreadStart(0);
            EXPECT_EQ(Kova_TextDisp_CreateContext(pDisplay, &param), 1); // this one starts it
            EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 1u);
            End(pDisplay);
            EXPECT_EQ(LiveObjectNames(), "");
            ExpectWorkingDisplay(eLayer);
            Tallies()["(services)"].iFaults++;
        }
        Tallies()["(services)"].iSites++;
    }
}

// Their results are not checked; zero-filled memory works as initialised. The record's own lock is excluded:
// without initialisation it would not be recursive.
TEST(Service, ThatInitializesNoMutexAndNoConditionLeavesAWorkingThread)
{
    MakeFirstDisplay();
    for (const int iError : {ENOMEM, EAGAIN, EPERM}) {
        Watchdog_t watchdog(std::chrono::seconds(60), "a flip thread whose mutex was not initialized");
        BeginAgain();
        pKovaITextDisplay_t pDisplay = Shown(KOVA_GRAPHIC_LAYER2, INDEX_COLORS);
        KovaTextContextParam_t param = ContextParam();
        HoldSleeps(false);
        FailInitialization(iError);
        EXPECT_EQ(Kova_TextDisp_CreateContext(pDisplay, &param), 0);
        FailInitialization(0);
        EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
        EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
        EXPECT_TRUE(AwaitThreadTrace("base.Flip"));
        End(pDisplay);
        EXPECT_EQ(LiveObjectNames(), "");
        Tallies()["(services)"].iFaults++;
    }
    Tallies()["(services)"].iSites++;
}

} // namespace
