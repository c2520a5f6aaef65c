// SPDX-License-Identifier: MIT
#include "oracle.h"

#include "expect.h"

#include <regex>

namespace test
{

// How a result other than DFB_OK is reported on standard error.
enum Form_e {
    CHECK, // DFB_CHECK, with the result
    BRIEF, // DFB_CHECK_BRIEF, without it
    SILENT
};

#ifdef KOVA_VENDOR_HEADER
static const bool IS_PUBLISHED = false;
#else
static const bool IS_PUBLISHED = true;
#endif

enum { LAYER_1 = 1, LAYERS_2_3 = 2, ANY_LAYER = 3 };

// What the failure of a call causes. A call without a rule is reported by DFB_CHECK, and its failure changes nothing
// else, except that calls on an object that was not given are not made: on a palette or a font they are left out, as is a
// Release; on anything else they count as failed with DFB_DESTROYED.
struct Rule_t {
    // Each between bars, or null for any; "UseBackupSurface.Off" is a variant.
    const char *pcOperations = nullptr;
    int iLayers = ANY_LAYER;
    // "Surface.Clear", or "base.Clear" to name the object.
    const char *pcCall = "";
    Form_e eForm = CHECK;
    bool bLate = false;
    const char *pcReport = nullptr, *pcNullReport = nullptr, *pcAbsentReport = nullptr;
    const char *pcGone = nullptr, *pcAnswer = nullptr, *pcLeft = "";
    bool bRecordLost = false;
    const char *pcOther = nullptr, *pcBecomes = nullptr;

    constexpr Rule_t(const char *pcOf, const char *pcFailing) : pcOperations(pcOf), pcCall(pcFailing)
    {
    }
    constexpr Rule_t OnLayer1() const
    {
        return With([](Rule_t &rule) { rule.iLayers = LAYER_1; });
    }
    constexpr Rule_t OnLayers2And3() const
    {
        return With([](Rule_t &rule) { rule.iLayers = LAYERS_2_3; });
    }
    // Reported by DFB_CHECK_BRIEF, by nothing, or by DFB_CHECK after the call that follows.
    constexpr Rule_t Brief() const
    {
        return With([](Rule_t &rule) { rule.eForm = BRIEF; });
    }
    constexpr Rule_t Silent() const
    {
        return With([](Rule_t &rule) { rule.eForm = SILENT; });
    }
    constexpr Rule_t Late() const
    {
        return With([](Rule_t &rule) { rule.bLate = true; });
    }
    // The line of the log that follows; %d is the result.
    constexpr Rule_t Logs(const char *pcLine) const
    {
        return With([=](Rule_t &rule) { rule.pcReport = pcLine; });
    }
    // The same for a call that gives nothing, and where the object of the call itself is absent, if they differ.
    constexpr Rule_t LogsForNothing(const char *pcLine) const
    {
        return With([=](Rule_t &rule) { rule.pcNullReport = pcLine; });
    }
    constexpr Rule_t LogsWhereAbsent(const char *pcLine) const
    {
        return With([=](Rule_t &rule) { rule.pcAbsentReport = pcLine; });
    }
    // Everything up to and with this call is left out, or ALL, or END.
    constexpr Rule_t Skips(const char *pcUpTo) const
    {
        return With([=](Rule_t &rule) { rule.pcGone = pcUpTo; });
    }
    constexpr Rule_t Returns(const char *pcText) const
    {
        return With([=](Rule_t &rule) { rule.pcAnswer = pcText; });
    }
    // Objects that nobody releases any more.
    constexpr Rule_t Leaves(const char *pcObjects) const
    {
        return With([=](Rule_t &rule) { rule.pcLeft = pcObjects; });
    }
    constexpr Rule_t LosesTheRecord() const
    {
        return With([](Rule_t &rule) { rule.bRecordLost = true; });
    }
    // A text of later lines changes, to several lines if need be.
    constexpr Rule_t Changes(const char *pcText, const char *pcInto) const
    {
        return With([=](Rule_t &rule) { rule.pcOther = pcText, rule.pcBecomes = pcInto; });
    }

private:
    template <typename Change> constexpr Rule_t With(Change change) const
    {
        Rule_t rule = *this;
        change(rule);
        return rule;
    }
};

static const char ALL[] = "all"; // except for the exit trace
static const char END[] = "end"; // the exit trace too

#define OSD1 "|Create|CreateContext|SetActive|SetPlane|"
#define FLIPPING "|Flip|SetFlip|DrawLine|DrawPixel|Blit|DrawString|"
#define RECREATING "|SetActive|SetPlane|CreateContext|"
#define OSD1_END "Surface.SetBlittingFlags"
#define NO_FONT "ERROR CreateFontInternal: Can only support max 8 fonts!"
#define LAYER_RESULT "GetDisplayLayer result = %d"
#define LAYER_NULL "Display layer = NULL after GetDisplayLayer"

// clang-format off
static const Rule_t s_rules[] = {
    // A layer is asked for again while it is temporarily unavailable (below), and the log alone reports it.
    Rule_t("|Create|", "Dfb.GetDisplayLayer").OnLayers2And3().Silent()
        .Logs("error Kova_TextDFBDisp_Create: GetDisplayLayer(layer:%L) failed.")
        .Skips(ALL).Returns("null").Leaves("dfb").LosesTheRecord(),
    Rule_t(OSD1, "Dfb.GetDisplayLayer").OnLayer1().Silent()
        .Logs("ERROR CreateOSD1Window: pLayer is NULL!").LogsWhereAbsent("ERROR CreateOSD1Window: NULL Pointer!")
        .Skips(OSD1_END),
    Rule_t("|SetActive|", "Dfb.GetDisplayLayer").OnLayers2And3().Silent()
        .Logs("error Kova_TextDFBDisp_SetActive: " LAYER_RESULT)
        .LogsForNothing("error Kova_TextDFBDisp_SetActive: " LAYER_NULL)
        .Skips(ALL).Returns("active -2"),
    Rule_t("|Create32BitPlane|", "Dfb.GetDisplayLayer").Silent()
        .Logs("error Create32BitPlane: " LAYER_RESULT).LogsForNothing("error Create32BitPlane: " LAYER_NULL)
        .Skips(ALL).Returns("-1 active -2"),

    // The window of layer 1. Its size is the layer's, which is 0 by 0 when it cannot be read.
    Rule_t(OSD1, "Layer.SetCooperativeLevel").OnLayer1().Brief(),
    Rule_t(OSD1, "Layer.GetConfiguration").OnLayer1().Changes("SetBounds 0,0 1920x1080", "SetBounds 0,0 0x0"),
    Rule_t(OSD1, "Layer.CreateWindow").OnLayer1()
        .Logs("ERROR CreateOSD1Window: Fail to create window from layer!").Skips(OSD1_END),
    Rule_t(OSD1, "Window.GetSurface").OnLayer1()
        .Logs("ERROR CreateOSD1Window: Fail to get surface from window!").Skips(OSD1_END),

    // Creation of layers 2 and 3 ends without a surface, and releases nothing.
    Rule_t("|Create|", "Layer.GetSurface").OnLayers2And3()
        .Logs("ERROR Kova_TextDFBDisp_Create: Fail to get surface from layer!")
        .Skips(END).Returns("null").Leaves("dfb layer").LosesTheRecord(),

    // Rebuilding a plane reports less than creating one, and so does giving it back.
    Rule_t("|SetActive|", "Layer.SetCooperativeLevel").OnLayers2And3().Brief(),
    Rule_t("|SetActive|", "Layer.GetConfiguration").OnLayers2And3().Brief(),
    Rule_t("|SetActive|", "Layer.SetConfiguration").OnLayers2And3().Brief(),
    Rule_t("|SetActive|", "Layer.GetSurface").OnLayers2And3().Brief(),
    Rule_t("|SetActive.Off|", "Surface.Release").OnLayers2And3().Brief(),
    Rule_t("|SetActive.Off|", "Layer.Release").OnLayers2And3().Brief(),
    Rule_t("|Create32BitPlane|", "Layer.SetCooperativeLevel").Brief(),
    Rule_t("|Create32BitPlane|", "Layer.GetConfiguration").Brief(),
    Rule_t("|Create32BitPlane|", "Layer.SetConfiguration").Brief(),
    Rule_t("|Create32BitPlane|", "Layer.GetSurface").Brief(),
    Rule_t("|Release32BitPlane|", "Surface.Release").Brief(),
    Rule_t("|Release32BitPlane|", "Layer.Release").Brief(),

    // What is not known to be back-buffered is not flipped. The thread's pass restores the clip that it read.
    Rule_t(FLIPPING, "Layer.GetConfiguration").OnLayers2And3().Skips("Surface.Flip"),
    Rule_t("|Flip_last_frame_Thread|", "Layer.GetConfiguration").OnLayers2And3().Skips(ALL),
    Rule_t("|Flip_last_frame_Thread|", "Surface.GetClip").OnLayers2And3()
        .Changes("SetClip 0,0 719,479", "SetClip 0,0 0,0"),

    // Pixels: no surface memory, no result.
    Rule_t("|DrawPixel|", "Surface.Lock").Silent().Skips(ALL).Returns("-1"),
    Rule_t("|DrawPixel|", "Surface.Unlock").Silent().Skips(ALL).Returns("-1"),

    // Fonts are judged by whether there is one. A re-created font that is missing is selected all the same: from its
    // empty slot, which has no name.
    Rule_t("|CreateFont|", "Dfb.CreateFont").Logs(NO_FONT).Returns("0 font -7"),
    Rule_t("|SetFont|", "Font.Release").Silent(),
    Rule_t("|SetFont|ScaleFontWidth|", "Dfb.CreateFont").Skips(ALL),
    Rule_t(RECREATING, "Dfb.CreateFont").Logs(NO_FONT)
        .Changes(".SetFont ", "dfb.CreateFont null ATTRIBUTES|HEIGHT attributes 0 height 24\nfont.EnumEncodings\n"),
    Rule_t("|GetFontHeight|", "Font.GetHeight").Returns("0 height 0").Changes("height:30", "height:0"),
    Rule_t("|GetUnderlineInfo|", "Font.GetUnderline").Returns("0 at -7 thick -7"),
    Rule_t("|GetStringWidth|", "Font.GetStringWidth").Returns("0 width 0")
        .Changes("return width:30", "return width:0"),

    // The colours go over from one palette to the other, or not at all.
    Rule_t("|UseBackupSurface.On|", "base.GetPalette").Changes("backup.GetPalette", ""),
    Rule_t("|UseBackupSurface.Off|", "backup.GetPalette").Changes("base.GetPalette", ""),
    Rule_t("|UseBackupSurface|", "Palette.GetEntries")
        .Changes(": 1,2,3,4 1,2,3,4 1,2,3,4 1,2,3,4", ": 0,0,0,0 0,0,0,0 0,0,0,0 0,0,0,0"),

#ifndef KOVA_VENDOR_HEADER
    // The library draws glyphs itself, in memory that it could measure and lock.
    Rule_t("|DrawPixelExpand|BatchDrawPixelExpand|", "Surface.GetPixelFormat").Skips("Surface.Unlock"),
    Rule_t("|DrawPixelExpand|BatchDrawPixelExpand|", "Surface.GetSize").Skips("Surface.Unlock"),
    Rule_t("|DrawPixelExpand|BatchDrawPixelExpand|", "Surface.GetClip").Skips("Surface.Unlock"),
    Rule_t("|DrawPixelExpand|BatchDrawPixelExpand|", "Surface.Lock").Skips("Surface.Unlock"),
    // Both rectangles are set, and the first failure is reported.
    Rule_t("|SetSurface_OsdScaleInfo|", "Layer.SetSourceRectangle").Late(),
    // The former surface of a layer is released when there is a new one.
    Rule_t("|SetActive|Create32BitPlane|", "Surface.Release").OnLayers2And3().Brief(),
#endif
};
// clang-format on

// The early return of an operation on a display with a missing object, before any call.
static const struct {
    const char *pcOperation, *pcAbsent;
    const char *pcReport; // null: it returns as if successful
    bool bLocked;         // whether it reports under the lock
} s_refusals[] = {
    {"|SetPalette|", "base", "ERROR SetPalette: Inactive context!", true},
    {"|DrawString|", "base", "ERROR DrawString: NULL Pointer!", true},
    {"|SetSurface_OsdScaleInfo|", "base", nullptr, false},
    {"|BlitBackupSurface|", "base", "ERROR BlitBackupSurface: NULL Pointer!", false},
    {"|UseBackupSurface|", "base", nullptr, false}, // nothing to carry over
    {"|SetPlane|", "layer", "ERROR SetPlane: pLayer is NULL!", false},
    {"|AdjustDisplaySize|", "layer", "ERROR AdjustDisplaySize: pLayer is NULL!", false},
};

static bool Names(const char *pcOperations, const Scenario_t &scenario)
{
    const std::string operation = std::string("|") + scenario.pcOperation;
    return !pcOperations || Contains(pcOperations, operation + "|") ||
           (*scenario.pcVariant && Contains(pcOperations, operation + "." + scenario.pcVariant + "|"));
}

static bool OnLayer(int iLayers, const Scenario_t &scenario)
{
    return iLayers & (scenario.eLayer == KOVA_GRAPHIC_LAYER1 ? LAYER_1 : LAYERS_2_3);
}

static std::string ObjectOf(const Line_t &line)
{
    return line.text.substr(0, line.text.find('.'));
}

static std::string KindOf(const std::string &object)
{
    return object.substr(0, object.find_first_of("0123456789"));
}

static bool IsCall(const Line_t &line, const char *pcCall)
{
    const size_t dot = line.text.find('.');
    if (line.method == pcCall) return true;
    return dot != std::string::npos &&
           KindOf(ObjectOf(line)) + line.text.substr(dot, line.text.find(' ') - dot) == pcCall;
}

static Rule_t RuleFor(const Scenario_t &scenario, const Line_t &line)
{
    for (const Rule_t &rule : s_rules) {
        if (Names(rule.pcOperations, scenario) && OnLayer(rule.iLayers, scenario) &&
            IsCall(line, rule.pcCall))
            return rule;
    }
    return {nullptr, ""};
}

static bool IsCheck(const Line_t &line)
{
    return line.text.compare(0, 9, "DFB_CHECK") == 0;
}

std::string Unnumbered(const std::string &names)
{
    static const std::regex s_numbers("(palette|font)[0-9]+");
    return std::regex_replace(names, s_numbers, "$1");
}

std::string Comparable(const std::vector<Line_t> &lines)
{
    std::string text;

    for (const Line_t &line : lines) {
        if (line.text.compare(0, 30, "log SetPaletteInternal: colors") == 0) continue;
        if (line.text.compare(0, 25, "log encoding_callback: id") == 0) continue;
        text += (line.bLocked && !IsCheck(line) ? "  " : "") + line.text + "\n";
    }
    return Unnumbered(text);
}

static std::string Hex(DFBResult eResult)
{
    const std::string line = CheckLine(eResult);
    return line.substr(10, line.size() - 11);
}

static Line_t LineOf(const std::string &text, bool bLocked)
{
    return {text, true, bLocked, "", ""};
}

static std::string Formatted(const char *pcReport, const Scenario_t &scenario, DFBResult eResult)
{
    std::string text = pcReport;
    const auto put = [&](const char *pcMark, int iValue) {
        const size_t at = text.find(pcMark);
        if (at != std::string::npos) text.replace(at, 2, std::to_string(iValue));
    };
    put("%d", int(eResult));
    put("%L", int(scenario.eLayer));
    return text;
}

// The operation, line by line.
class Walk_t
{
public:
    Walk_t(const Scenario_t &scenario, const std::vector<Line_t> &clean, const std::string &answer,
           const Fault_t &fault)
        : m_scenario(scenario), m_clean(clean), m_fault(fault)
    {
        m_run.answer = answer;
        m_run.bSameState = scenario.absent.empty();
    }

    Run_t Go()
    {
        int iCall = 0;

        for (m_at = 0; m_at < m_clean.size(); m_at++) {
            const Line_t &line = m_clean[m_at];
            const bool bFaulted = !line.method.empty() && ++iCall == m_fault.iCall;
            if (IsGone(line)) continue;
            if (line.method.empty()) {
                Emit(line);
                if (line.text.compare(0, 6, "enter ") == 0) Refuse();
            } else {
                Call(line, bFaulted);
            }
        }
        m_run.trace = Comparable(m_lines);
        return m_run;
    }

private:
    // Objects missing from the start are identified by kind, objects that were not returned by name.
    bool IsAbsent(const std::string &object) const
    {
        return m_absent.count(object) || (m_scenario.absent.count(KindOf(object)) && !m_made.count(object));
    }

    bool IsGone(const Line_t &line)
    {
        if (m_gone.empty()) return false;
        const bool bStays =
            m_gone == ALL && m_at + 1 == m_clean.size() && line.text.compare(0, 5, "exit ") == 0;
        if (!line.made.empty()) m_absent.insert(line.made);
        if (IsCall(line, m_gone.c_str())) m_gone.clear();
        return !bStays;
    }

    void Emit(const Line_t &line)
    {
        Line_t changed = line;
        const size_t at = m_other.empty() ? std::string::npos : line.text.find(m_other);
        if (at != std::string::npos) changed.text.replace(at, m_other.size(), m_becomes);
        m_lines.push_back(changed);
    }

    // An operation that ends because of a missing object.
    void Refuse()
    {
        for (const auto &refusal : s_refusals) {
            if (!Names(refusal.pcOperation, m_scenario) || !m_scenario.absent.count(refusal.pcAbsent))
                continue;
            // After a banner.
            for (; m_at + 1 < m_clean.size() && m_clean[m_at + 1].text.compare(0, 4, "log ") == 0; m_at++) {
                Emit(m_clean[m_at + 1]);
            }
            if (refusal.pcReport) m_lines.push_back(LineOf(refusal.pcReport, refusal.bLocked));
            if (refusal.pcReport) m_run.answer = "-1";
            m_gone = refusal.pcReport ? END : ALL;
        }
    }

    void Call(const Line_t &line, bool bFaulted)
    {
        const std::string object = ObjectOf(line), kind = KindOf(object);
        const bool bOnAbsent = line.text.find('.') != std::string::npos && IsAbsent(object);
        const Rule_t rule = RuleFor(m_scenario, line);

        if (!m_other.empty() && m_other[0] == '.' && Contains(line.text, m_other)) return Instead(line);
        if (!m_other.empty() && m_becomes.empty() && Contains(line.text, m_other)) return Forget(line);
        if (bOnAbsent && (kind == "palette" || kind == "font" || IsCall(line, (kind + ".Release").c_str())))
            return Forget(line);
        if (!bOnAbsent && TakesWhatIsAbsent(line)) return Forget(line);
        if (!bOnAbsent) Emit(line);
        if (!m_late.empty()) return m_lines.push_back(LineOf(m_late, false)), m_late.clear();
        if (m_bNoPalettes && line.method == "Surface.GetPalette") {
            m_absent.insert(line.made);
            return m_lines.push_back(LineOf("DFB_CHECK " + Hex(DFB_UNSUPPORTED), false));
        }
        if (!bOnAbsent && !bFaulted) {
            if (!line.made.empty()) m_made.insert(line.made);
            return;
        }
        Fail(line, rule, bOnAbsent, bOnAbsent ? DFB_DESTROYED : m_fault.eResult);
    }

    void Fail(const Line_t &line, const Rule_t &rule, bool bOnAbsent, DFBResult eResult)
    {
        if (eResult == DFB_TEMPUNAVAIL && line.method == "Dfb.GetDisplayLayer") return Retry(line, rule);
        DropCheck();
        if (eResult != DFB_OK && rule.eForm == CHECK) {
            m_late = "DFB_CHECK " + Hex(eResult);
            if (!rule.bLate) m_lines.push_back(LineOf(m_late, false)), m_late.clear();
        } else if (eResult != DFB_OK && rule.eForm == BRIEF) {
            m_lines.push_back(LineOf("DFB_CHECK_BRIEF", false));
        }
        if (KeepsFormer(line)) return;
        if (line.method == "Layer.SetConfiguration" && IS_PUBLISHED) m_bNoPalettes = m_scenario.bArgbBefore;
        if (!line.made.empty()) m_absent.insert(line.made);
        if (Contains(line.method, ".Release")) m_run.left = Unnumbered(ObjectOf(line));
        const char *const pcReport = eResult == DFB_OK && rule.pcNullReport ? rule.pcNullReport
                                     : bOnAbsent && rule.pcAbsentReport     ? rule.pcAbsentReport
                                                                            : rule.pcReport;
        if (pcReport) m_lines.push_back(LineOf(Formatted(pcReport, m_scenario, eResult), line.bLocked));
        // Without a palette the record still has the colours.
        if (pcReport || rule.pcGone || rule.pcAnswer ||
            (!line.made.empty() && KindOf(line.made) != "palette"))
            m_run.bSameState = false;
        if (rule.pcAnswer) m_run.answer = rule.pcAnswer;
        if (rule.pcGone) m_gone = rule.pcGone;
        if (rule.bRecordLost) m_run.bRecordLost = true;
        if (*rule.pcLeft) m_run.left = bOnAbsent ? "" : rule.pcLeft;
        if (rule.pcOther) m_other = rule.pcOther, m_becomes = rule.pcBecomes;
        // Without the window's layer the activation fails.
        if (line.method == "Dfb.GetDisplayLayer" && m_scenario.eLayer == KOVA_GRAPHIC_LAYER1 &&
            strcmp(m_scenario.pcOperation, "SetActive") == 0) {
            m_lines.push_back(
                LineOf("error Kova_TextDFBDisp_SetActive: Fail to create OSD1 Window!", line.bLocked));
            m_run.answer = m_scenario.unchanged;
            m_gone = ALL;
        }
    }

    // A layer's surface that replaces another, and is not given: the former one is not released, and drawn on.
    bool KeepsFormer(const Line_t &line)
    {
        if (line.method != "Layer.GetSurface" || m_at + 1 == m_clean.size()) return false;
        const Line_t &next = m_clean[m_at + 1];
        if (next.method != "Surface.Release") return false;
        m_other = line.made + ".";
        m_becomes = ObjectOf(next) + ".";
        m_gone = next.method;
        m_bNoPalettes = m_scenario.bArgbBefore;
        return true;
    }

    // The failure that the operation meets without ours, and that ours replaces.
    void DropCheck()
    {
        if (m_at + 1 < m_clean.size() && IsCheck(m_clean[m_at + 1])) m_at++;
    }

    void Retry(const Line_t &line, const Rule_t &rule)
    {
        const std::string report = rule.pcReport;
        const size_t name = report.find(' ') + 1;

        m_lines.push_back(LineOf("error " + report.substr(name, report.find(':') - name) +
                                     ": #################### DFB_TEMPUNAVAIL 0 #######################",
                                 line.bLocked));
        m_lines.push_back(LineOf("usleep 50000", line.bLocked));
        m_lines.push_back(line);
    }

    void Instead(const Line_t &line)
    {
        for (size_t at = 0, end; (end = m_becomes.find('\n', at)) != std::string::npos; at = end + 1) {
            m_lines.push_back(LineOf(m_becomes.substr(at, end - at), line.bLocked));
        }
        m_lines.push_back(line);
        m_other.clear();
    }

    void Forget(const Line_t &line)
    {
        // Destruction logs what it releases.
        if (!m_lines.empty() &&
            m_lines.back().text == "log Kova_TextDFBDisp_Destroy: Free " + ObjectOf(line) + "!")
            m_lines.pop_back();
        DropCheck();
        if (!line.made.empty()) m_absent.insert(line.made);
    }

    bool TakesWhatIsAbsent(const Line_t &line) const
    {
        return (line.method == "Surface.SetFont" || line.method == "Surface.SetPalette") &&
               m_absent.count(line.text.substr(line.text.find(' ') + 1));
    }

    const Scenario_t &m_scenario;
    const std::vector<Line_t> &m_clean;
    const Fault_t m_fault;
    Run_t m_run;
    std::vector<Line_t> m_lines;
    std::set<std::string> m_absent, m_made;
    std::string m_gone, m_other, m_becomes, m_late;
    bool m_bNoPalettes = false; // the surface is still ARGB
    size_t m_at = 0;
};

Run_t Expected(const Scenario_t &scenario, const std::vector<Line_t> &clean, const std::string &answer,
               const Fault_t &fault)
{
    return Walk_t(scenario, clean, answer, fault).Go();
}

} // namespace test
