// SPDX-License-Identifier: MIT
// A soak test: captions, context switches and plane resizes on real DirectFB at 500 operations per second.
// Prints a table, and fails if memory or descriptors have grown past a bound.
//
// usage: kova_soak [--seconds N] [--layer 1|2|3] [--palette]
//
// Every 40 ms there is a burst of twenty operations; the last one is a line, whose latency to the screen is
// measured (watch.h). Every two seconds both contexts are activated once, and each plane is made smaller and
// large again. Memory is measured once in each such round, always at the same point.
#include "watch.h"

#include "kova/kova_textdisp.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <getopt.h>
#include <malloc.h>
#include <string>
#include <thread>
#include <unistd.h>

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

namespace soak
{

static constexpr milliseconds BURST_TIME(40);
static constexpr int ROUND = 50; // bursts
// The growth allowed after the warm-up, in KiB. The heap in use is exact; published DirectFB makes it grow by itself,
// also without the library: by some 50 KiB in 3000 activations, more and more slowly. Resident memory also
// includes the fragmentation of the heap. The part that grows allows a fifth of a byte (heap) and two bytes (resident)
// per operation.
static long HeapBound(uint64_t uiOperations)
{
    return 64 + long(uiOperations / 5 / 1024);
}
static long ResidentBound(uint64_t uiOperations)
{
    return 2048 + long(uiOperations * 2 / 1024);
}
static constexpr long DESCRIPTOR_BOUND = 0;

struct Plane_t {
    kova_uint32 uiWidth, uiHeight;
};
static constexpr Plane_t FULL[] = {{720, 480}, {640, 360}}, SMALL[] = {{480, 360}, {352, 288}};

struct Font_t {
    const char *pcFile;
    kova_uint32 uiHeight;
    kova_sint32 siFont;
};

struct Usage_t {
    long lResident, lHeap; // KiB
    long lDescriptors;
};

// The resident memory that this process wrote itself. Files and memory shared with others come and go with what else
// the machine does.
static long ResidentMemory()
{
    std::ifstream status("/proc/self/status");

    for (std::string word; status >> word;) {
        long lResident = 0;
        if (word == "RssAnon:" && status >> lResident) return lResident;
    }
    return 0;
}

static Usage_t Usage()
{
    namespace fs = std::filesystem;
    const struct mallinfo2 heap = mallinfo2();
    // The folder that is being read is open too.
    const auto descriptors =
        std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()) - 1;
    return {ResidentMemory(), long((heap.uordblks + heap.hblkhd) / 1024), long(descriptors)};
}

class Soak
{
public:
    Soak(KovaGraphicLayer_e eLayer, bool bPalette)
    {
        KovaTextInitParam_t param = {};
        KovaTextColor_t colors[256] = {};

        param.eLayer = eLayer;
        param.uiPlaneWidth = FULL[0].uiWidth;
        param.uiPlaneHeight = FULL[0].uiHeight;
        param.bTextDisp_Palette = bPalette;
        Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);
        m_p = Kova_TextDisp_GetDisplayByID(0);
        if (!m_p)
            Fail("no display: is libdirectfb-dev installed, and does DFBARGS name a system and a mode?");
        for (const Plane_t &plane : FULL) {
            KovaTextContextParam_t context = {};
            context.uiPlaneWidth = plane.uiWidth;
            context.uiPlaneHeight = plane.uiHeight;
            if (Kova_TextDisp_CreateContext(m_p, &context) < 0) Fail("no context");
        }
        Activate(0);
        for (unsigned i = 1; i < 256; i++)
            colors[i] = {kova_uint8(i * 37), kova_uint8(i * 91), kova_uint8(i * 173), 255};
        Expect(m_p->SetPalette(m_p, m_scContext, colors, 256, 0));
        for (Font_t &font : m_fonts) {
            Expect(m_p->CreateFont(m_p, m_scContext, font.pcFile, font.uiHeight, KOVA_FONTATTR_NONE,
                                   &font.siFont));
            if (font.siFont < 0) Fail(std::string("no font: ") + font.pcFile);
        }
    }
    ~Soak()
    {
        for (const kova_sint8 scContext : {kova_sint8(0), kova_sint8(1)})
            Kova_TextDisp_DestroyContext(m_p, scContext);
        Kova_TextDisp_Destroy(0);
    }
    Soak(const Soak &) = delete;
    Soak &operator=(const Soak &) = delete;

    // Burst i of a round; contexts and planes change at the start of the round.
    void Burst(int i)
    {
        switch (i) {
        case 0:
            Activate(0);
            break;
        case 10:
            Resize(SMALL[0]);
            break;
        case 20:
            Resize(FULL[0]);
            break;
        case 25:
            Activate(1);
            break;
        case 35:
            Resize(SMALL[1]);
            break;
        case 45:
            Resize(FULL[1]);
            break;
        default:
            break;
        }
        Caption();
    }

    uint64_t Operations() const
    {
        return m_uiOperations;
    }
    uint64_t Refused() const
    {
        return m_uiRefused;
    }
    uint64_t Changes() const
    {
        return m_uiChanges;
    }

    [[noreturn]] static void Fail(const std::string &what)
    {
        fprintf(stderr, "kova_soak: %s\n", what.c_str());
        _exit(1);
    }

private:
    void Expect(int iResult)
    {
        m_uiOperations++;
        if (iResult != 0) m_uiRefused++;
    }

    void Activate(kova_sint8 scContext)
    {
        Kova_TextDisp_SetActive(m_p, scContext, 1);
        m_p->Show(m_p, scContext);
        m_scContext = scContext;
        m_uiOperations += 2;
        m_uiChanges++;
    }

    void Resize(const Plane_t &plane)
    {
        Expect(m_p->SetPlane(m_p, m_scContext, 0, 0, plane.uiWidth, plane.uiHeight));
        m_uiChanges++;
    }

    void Line(const std::string &text, kova_uint32 uiY, const Font_t &font)
    {
        static const KovaTextEdgeType_e EDGES[] = {KOVA_TEXT_ENONE,           KOVA_TEXT_ERAISED,
                                                   KOVA_TEXT_EDEPRESSED,      KOVA_TEXT_EUNIFORM,
                                                   KOVA_TEXT_ELEFTDROPSHADOW, KOVA_TEXT_ERIGTHDROPSHADOW};
        const void *const pText = text.data();
        const auto *const pusText =
            static_cast<const unsigned short *>(pText); // the same parameter takes UTF-8
        const auto ucBytes = kova_uint8(text.size());
        kova_uint32 uiWidth = 0;

        Expect(m_p->SetFont(m_p, m_scContext, font.siFont, font.uiHeight, KOVA_FONTATTR_NONE));
        Expect(m_p->SetEdgeType(m_p, m_scContext, EDGES[m_uiCaptions % 6]));
        Expect(m_p->SetEdgeColor(m_p, m_scContext, 2));
        Expect(m_p->SetTextForeColor(m_p, m_scContext, kova_uint32(m_uiCaptions % 255 + 1)));
        Expect(m_p->GetStringWidth(m_p, m_scContext, pusText, ucBytes, KOVA_TEXT_UTF8, &uiWidth));
        Expect(
            m_p->DrawString(m_p, m_scContext, pusText, ucBytes, 20, uiY, KOVA_TEXT_UTF8, KOVA_TEXT_TOPLEFT));
        if (uiWidth == 0) m_uiRefused++;
    }

    // Twenty operations; the last is a line.
    void Caption()
    {
        static kova_uint8 s_aucBits[8] = {0x3C, 0x42, 0xA5, 0x81, 0xA5, 0x99, 0x42, 0x3C},
                          s_aucPixels[16 * 16];
        KovaTextRect_t whole = {0, 200, 352, 80};

        m_uiCaptions++;
        Expect(m_p->SetClip(m_p, m_scContext, nullptr));
        Expect(m_p->FillRect(m_p, m_scContext, &whole, 0));
        Line("Caption number " + std::to_string(m_uiCaptions), 210, m_fonts[0]);
        Line("\xE2\x99\xAA what stays is seen at the end \xE2\x99\xAA", 240, m_fonts[1]);
        Expect(m_p->DrawPixel(m_p, m_scContext, s_aucPixels, 280, 250, 16, 16, 16));
        Expect(
            m_p->DrawPixelExpand(m_p, m_scContext, s_aucBits, 300, 250, 8, 8, 1, 1, 3, 0, KOVA_EXPAND_2X2Y));
        Expect(m_p->SetDrawingFlags(m_p, m_scContext, KOVA_DSDRAW_NOFX));
        Expect(m_p->SetBlittingFlags(m_p, m_scContext, KOVA_DSBLIT_NOFX));
        Expect(m_p->Flip(m_p, m_scContext));
        Expect(m_p->DrawLine(m_p, m_scContext, 20, 270, 320, 270, 5)); // flips, or defers the flip
    }

    pKovaITextDisplay_t m_p = nullptr;
    kova_sint8 m_scContext = 0;
    Font_t m_fonts[2] = {{"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", 24, -1},
                         {"/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf", 20, -1}};
    uint64_t m_uiOperations = 0, m_uiRefused = 0, m_uiChanges = 0, m_uiCaptions = 0;
};

static bool PrintGrowth(FILE *pTable, const char *pcWhat, long lStart, long lEnd, long lBound)
{
    fprintf(pTable, "%-26s %12ld %12ld %+12ld %12ld%s\n", pcWhat, lStart, lEnd, lEnd - lStart, lBound,
            lEnd - lStart > lBound ? "  TOO MUCH" : "");
    return lEnd - lStart <= lBound;
}

static int Run(FILE *pTable, KovaGraphicLayer_e eLayer, bool bPalette, int iSeconds)
{
    // A quarter of the time, at most a minute, in whole rounds.
    const int iRounds = std::max(2, int(iSeconds * milliseconds(1000) / BURST_TIME / ROUND));
    const int iWarmUp = std::clamp(iRounds / 4, 1, 30);
    Usage_t start = {}, end = {};
    uint64_t uiOperations = 0, uiChanges = 0, uiFlips, uiRefused, uiMissed = 0;
    double dSeconds;

    if (!WatchDirectFB()) Soak::Fail("no DirectFB: is libdirectfb-dev installed?");
    {
        Soak display(eLayer, bPalette);
        Clock::time_point next = Clock::now(), started = next;

        for (int i = 0; i < iRounds * ROUND; i++) {
            std::this_thread::sleep_until(next);
            next += BURST_TIME;
            if (i == iWarmUp * ROUND) {
                StartMeasuring(size_t((iRounds - iWarmUp) * ROUND));
                started = Clock::now();
                uiOperations = display.Operations();
                uiChanges = display.Changes();
            }
            display.Burst(i % ROUND);
            if (i % ROUND == 5) end = Usage();
            if (i == iWarmUp * ROUND + 5) start = end;
        }
        dSeconds = std::chrono::duration<double>(Clock::now() - started).count();
        uiFlips = Flips();
        uiOperations = display.Operations() - uiOperations;
        uiChanges = display.Changes() - uiChanges;
        uiRefused = display.Refused();
        // A frame that never comes is waited for in vain; how late it comes decides nothing.
        for (int i = 0; i < 6000 && IsFramePending(); i++) std::this_thread::sleep_for(milliseconds(10));
        uiMissed = IsFramePending();
    }
    if (start.lResident == 0 || end.lResident == 0) Soak::Fail("no RssAnon in /proc/self/status");
    std::vector<std::chrono::microseconds> latencies = Latencies();
    if (latencies.empty()) Soak::Fail("no line was ever flipped");
    std::sort(latencies.begin(), latencies.end());
    const auto percentile = [&](double d) {
        return double(latencies[size_t(d * double(latencies.size() - 1))].count()) / 1000;
    };

    fprintf(pTable, "layer %d, %s, %.0f seconds after %d of warm-up\n", eLayer + 1,
            bPalette ? "palette" : "index", dSeconds, int(iWarmUp * ROUND * BURST_TIME / milliseconds(1000)));
    fprintf(pTable, "%-26s %12llu %12.1f a second\n", "operations", (unsigned long long)uiOperations,
            double(uiOperations) / dSeconds);
    fprintf(pTable, "%-26s %12llu\n", "  refused", (unsigned long long)uiRefused);
    fprintf(pTable, "%-26s %12llu\n", "activations, resizes", (unsigned long long)uiChanges);
    fprintf(pTable, "%-26s %12llu %12.1f a second\n", "flips", (unsigned long long)uiFlips,
            double(uiFlips) / dSeconds);
    fprintf(pTable, "%-26s %12s %12s %12s\n", "last frame of a burst", "median", "p99", "max");
    fprintf(pTable, "%-26s %12.2f %12.2f %12.2f\n", "  drawn to flipped, ms", percentile(0.5),
            percentile(0.99), percentile(1));
    fprintf(pTable, "%-26s %12s %12s %12s %12s\n", "", "start", "end", "growth", "bound");
    bool bGood = PrintGrowth(pTable, "resident memory, KiB", start.lResident, end.lResident,
                             ResidentBound(uiOperations));
    bGood &= PrintGrowth(pTable, "heap in use, KiB", start.lHeap, end.lHeap, HeapBound(uiOperations));
    bGood &= PrintGrowth(pTable, "open descriptors", start.lDescriptors, end.lDescriptors, DESCRIPTOR_BOUND);
    if (uiMissed) fprintf(pTable, "The last frame never reached the screen.\n");
    return bGood && !uiRefused && !uiMissed ? 0 : 1;
}

} // namespace soak

int main(int argc, char **argv)
{
    static const option OPTIONS[] = {{"seconds", required_argument, nullptr, 's'},
                                     {"layer", required_argument, nullptr, 'l'},
                                     {"palette", no_argument, nullptr, 'p'},
                                     {}};
    int iSeconds = 1800, iLayer = 1;
    bool bPalette = false, bUsage = false;

    for (int c; (c = getopt_long(argc, argv, "", OPTIONS, nullptr)) != -1;) {
        if (c == 's') {
            iSeconds = atoi(optarg);
        } else if (c == 'l') {
            iLayer = atoi(optarg);
        } else if (c == 'p') {
            bPalette = true;
        } else {
            bUsage = true;
        }
    }
    if (bUsage || optind != argc || iSeconds < 4 || iLayer < 1 || iLayer > 3) {
        fprintf(stderr,
                "usage: kova_soak [--seconds N] [--layer 1|2|3] [--palette]    N: 4 or more, default 1800\n");
        return 2;
    }
    const std::string system = iLayer == 1 ? "dummy" : "x11"; // the dummy system has one layer
    setenv("DFBARGS", ("system=" + system + ",mode=720x480,no-sighandler,no-banner,quiet").c_str(), 0);
    // The library prints a banner to standard output at each activation of a layer; only the table should
    // appear there.
    FILE *const pTable = fdopen(dup(STDOUT_FILENO), "w");
    if (!pTable || !freopen("/dev/null", "w", stdout)) soak::Soak::Fail("no standard output");
    const int iResult = soak::Run(pTable, KovaGraphicLayer_e(iLayer - 1), bPalette, iSeconds);
    fclose(pTable);
    return iResult;
}
