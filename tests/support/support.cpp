// SPDX-License-Identifier: MIT
#include "support.h"

#include <chrono>
#include <sstream>
#include <thread>

// Defined by the leak sanitizer only.
// NOLINTBEGIN(bugprone-reserved-identifier): its names
extern "C" void __lsan_disable() __attribute__((weak));
extern "C" void __lsan_enable() __attribute__((weak));
// NOLINTEND(bugprone-reserved-identifier)

namespace test
{

KovaDFBDisplay_t *RecordOf(pKovaITextDisplay_t pDisplay)
{
    return reinterpret_cast<KovaDFBDisplay_t *>(pDisplay);
}

KovaTextInitParam_t InitParam(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    KovaTextInitParam_t param = {};

    param.eLayer = eLayer;
    param.uiPlaneWidth = PLANE_WIDTH;
    param.uiPlaneHeight = PLANE_HEIGHT;
    param.bColor32Bit = eMode == PACKED_COLORS;
    param.bTextDisp_Palette = eMode == PALETTE_COLORS;
    return param;
}

KovaTextContextParam_t ContextParam(kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    return {uiWidth, uiHeight, 300, 200, 10, 20, 320, 240};
}

template <typename Condition> static bool Await(Condition condition)
{
    for (int i = 0; i < 60000; i++) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
}

bool AwaitThreadTrace(const std::string &text)
{
    return Await([&] { return ThreadTrace().find(text) != std::string::npos; });
}

bool AwaitIdleThread(pKovaITextDisplay_t pDisplay)
{
    const KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);

    return Await([&] {
        return !__atomic_load_n(&pRecord->has_flipping_req, __ATOMIC_RELAXED) &&
               !__atomic_load_n(&pRecord->bFlipPosted, __ATOMIC_RELAXED);
    });
}

static void BeginAfresh()
{
    TurnClock(1000000);
    ClearTrace();
}

pKovaITextDisplay_t GivenDisplay(KovaGraphicLayer_e eLayer, ColorMode_e eMode)
{
    KovaTextInitParam_t param = InitParam(eLayer, eMode);

    EXPECT_EQ(Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param), 0);
    pKovaITextDisplay_t pDisplay = Kova_TextDisp_GetDisplayByID(0);
    EXPECT_NE(pDisplay, nullptr);
    WatchLock(&RecordOf(pDisplay)->display_mutex);
    BeginAfresh();
    return pDisplay;
}

pKovaITextDisplay_t GivenHiddenDisplay(KovaGraphicLayer_e eLayer, ColorMode_e eMode, int iActive)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(eLayer, eMode);
    KovaTextContextParam_t param = ContextParam();

    testing::internal::CaptureStdout(); // an activation prints a banner
    for (int i = 0; i <= iActive; i++) EXPECT_EQ(Kova_TextDisp_CreateContext(pDisplay, &param), i);
    if (iActive != NO_CONTEXT) {
        EXPECT_TRUE(AwaitThreadTrace("enter Flip_last_frame_Thread"));
        Kova_TextDisp_SetActive(pDisplay, kova_sint8(iActive), 1);
    }
    testing::internal::GetCapturedStdout();
    RecordOf(pDisplay)->bColor32 = eMode == PACKED_COLORS;
    BeginAfresh();
    return pDisplay;
}

pKovaITextDisplay_t GivenShownDisplay(KovaGraphicLayer_e eLayer, ColorMode_e eMode, int iActive)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(eLayer, eMode, iActive);

    pDisplay->Show(pDisplay, kova_sint8(iActive == NO_CONTEXT ? 0 : iActive));
    EXPECT_EQ(RecordOf(pDisplay)->bShow, 1);
    BeginAfresh();
    return pDisplay;
}

static kova_sint8 AnyContext(pKovaITextDisplay_t pDisplay)
{
    const kova_sint8 scActive = RecordOf(pDisplay)->scActiveContextID;
    return scActive < 0 ? kova_sint8(0) : scActive;
}

void GivenFont(pKovaITextDisplay_t pDisplay, kova_uint32 uiHeight, const char *pcName)
{
    const kova_sint8 scContext = AnyContext(pDisplay);
    kova_sint32 siFont = -1;

    EXPECT_EQ(pDisplay->CreateFont(pDisplay, scContext, pcName, uiHeight, KOVA_FONTATTR_NONE, &siFont), 0);
    EXPECT_GE(siFont, 0);
    EXPECT_EQ(pDisplay->SetFont(pDisplay, scContext, siFont, uiHeight, KOVA_FONTATTR_NONE), 0);
    EXPECT_EQ(RecordOf(pDisplay)->scActiveFontID, siFont);
    BeginAfresh();
}

IDirectFBSurface *GivenBackupSurface(pKovaITextDisplay_t pDisplay)
{
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    const bool bArgb = pRecord->bColor32 || pRecord->bTextDisp_Palette;

    pRecord->pBackupSurface = MakeSurface("backup", int(pRecord->uiPlaneWidth), int(pRecord->uiPlaneHeight),
                                          bArgb ? DSPF_ARGB : DSPF_LUT8);
    return pRecord->pBackupSurface;
}

void Destroy(pKovaITextDisplay_t pDisplay, const std::string &left)
{
    HoldSleeps(false);
    for (int i = 0; i < MAX_CONTEXTS; i++) {
        if (RecordOf(pDisplay)->ucContextMask >> i & 1) Kova_TextDisp_DestroyContext(pDisplay, kova_sint8(i));
    }
    WatchLock(nullptr);
    Kova_TextDisp_Destroy(0);
    EXPECT_EQ(LiveObjectNames(), left);
    DropObjects();
}

void DestroyUnlocked(pKovaITextDisplay_t pDisplay)
{
    EXPECT_FALSE(HoldsLock());
    Destroy(pDisplay);
}

std::string CallsOnly(const std::string &trace)
{
    std::istringstream lines(trace);
    std::string line, calls;

    while (std::getline(lines, line)) {
        const std::string text = line.substr(line.find_first_not_of(' '));
        if (text.rfind("enter ", 0) == 0 || text.rfind("exit ", 0) == 0 || text.rfind("log ", 0) == 0)
            continue;
        calls += text + "\n";
    }
    return calls;
}

LeaksAreMeant_t::LeaksAreMeant_t()
{
    if (__lsan_disable) __lsan_disable();
}

LeaksAreMeant_t::~LeaksAreMeant_t()
{
    if (__lsan_enable) __lsan_enable();
}

std::string RecordText(size_t i)
{
    const std::vector<Record_t> records = Records();
    if (i >= records.size()) return "no such record";
    const size_t at = records[i].text.find("tpid:0x");
    return at == std::string::npos ? records[i].text
                                   : records[i].text.substr(records[i].text.find(' ', at) + 1);
}

std::string CheckLine(DFBResult eResult)
{
    char acLine[32];

    snprintf(acLine, sizeof acLine, "DFB_CHECK %#x\n", unsigned(eResult));
    return acLine;
}

} // namespace test
