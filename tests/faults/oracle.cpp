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

enum { LAYER_1 = 1, LAYERS_2_3 = 2, ANY_LAYER = 3 };

// The effect of a failed call. A call that is not in the table is reported by DFB_CHECK and changes nothing
// else, except that calls on an object that was not returned are not made: on a palette or a font they are
// skipped, as is Release; on anything else they fail with DFB_DESTROYED.
struct Rule_t {
    const char *pcOperations; // each between bars; null means any; "UseBackupSurface.Off" is a variant
    int iLayers;
    const char *pcCall; // "Surface.Clear", or "base.Clear" to name the object
    Form_e eForm;
    const char *pcReport = nullptr;     // the log line that follows; %d is the result
    const char *pcNullReport = nullptr; // the same for a call that returns no object, if it differs
    const char *pcGone =
        nullptr; // the steps skipped: everything up to and including this call, or ALL, or END
    const char *pcAnswer = nullptr;  // null: the same as without the failure
    const char *pcLeft = "";         // objects that are never released
    bool bRecordLost = false;        // and the record too
    const char *pcOther = nullptr;   // text of later lines ...
    const char *pcBecomes = nullptr; // ... that changes, to several lines if need be
    const char *pcAbsentReport =
        nullptr; // the report if the object of the call itself is missing, if it differs
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

static const Rule_t s_rules[] = {
    // A layer is requested again while it is temporarily unavailable (below); only the log reports it.
    {"|Create|", LAYERS_2_3, "Dfb.GetDisplayLayer", SILENT,
     "error Kova_TextDFBDisp_Create: GetDisplayLayer(layer:%L) failed.", nullptr, ALL, "null", "dfb", true},
    {OSD1, LAYER_1, "Dfb.GetDisplayLayer", SILENT, "ERROR CreateOSD1Window: pLayer is NULL!", nullptr,
     OSD1_END, nullptr, "", false, nullptr, nullptr, "ERROR CreateOSD1Window: NULL Pointer!"},
    {"|SetActive|", LAYERS_2_3, "Dfb.GetDisplayLayer", SILENT,
     "error Kova_TextDFBDisp_SetActive: " LAYER_RESULT, "error Kova_TextDFBDisp_SetActive: " LAYER_NULL, ALL,
     "active -2"},
    {"|Create32BitPlane|", ANY_LAYER, "Dfb.GetDisplayLayer", SILENT, "error Create32BitPlane: " LAYER_RESULT,
     "error Create32BitPlane: " LAYER_NULL, ALL, "-1 active -2"},

    // The window of layer 1. Its size is the layer's, which is 0 if it cannot be read.
    {"|Create|SetActive|SetPlane|CreateContext|", LAYER_1, "Layer.SetCooperativeLevel", BRIEF},
    {OSD1, LAYER_1, "Layer.GetConfiguration", CHECK, nullptr, nullptr, nullptr, nullptr, "", false,
     "SetBounds 0,0 1920x1080", "SetBounds 0,0 0x0"},
    {OSD1, LAYER_1, "Layer.CreateWindow", CHECK, "ERROR CreateOSD1Window: Fail to create window from layer!",
     nullptr, OSD1_END},
    {OSD1, LAYER_1, "Window.GetSurface", CHECK, "ERROR CreateOSD1Window: Fail to get surface from window!",
     nullptr, OSD1_END},

    // Creation of layers 2 and 3 ends without a surface and releases nothing.
    {"|Create|", LAYERS_2_3, "Layer.GetSurface", CHECK,
     "ERROR Kova_TextDFBDisp_Create: Fail to get surface from layer!", nullptr, END, "null", "dfb layer",
     true},

    // Rebuilding and releasing a plane report less than its creation.
    {"|SetActive|", LAYERS_2_3, "Layer.SetCooperativeLevel", BRIEF},
    {"|SetActive|", LAYERS_2_3, "Layer.GetConfiguration", BRIEF},
    {"|SetActive|", LAYERS_2_3, "Layer.SetConfiguration", BRIEF},
    {"|SetActive|", LAYERS_2_3, "Layer.GetSurface", BRIEF},
    {"|SetActive.Off|", LAYERS_2_3, "Surface.Release", BRIEF},
    {"|SetActive.Off|", LAYERS_2_3, "Layer.Release", BRIEF},
    {"|Create32BitPlane|", ANY_LAYER, "Layer.SetCooperativeLevel", BRIEF},
    {"|Create32BitPlane|", ANY_LAYER, "Layer.GetConfiguration", BRIEF},
    {"|Create32BitPlane|", ANY_LAYER, "Layer.SetConfiguration", BRIEF},
    {"|Create32BitPlane|", ANY_LAYER, "Layer.GetSurface", BRIEF},
    {"|Release32BitPlane|", ANY_LAYER, "Surface.Release", BRIEF},
    {"|Release32BitPlane|", ANY_LAYER, "Layer.Release", BRIEF},

    // There is no flip unless a back buffer is reported. The thread restores the clip that it read.
    {FLIPPING, LAYERS_2_3, "Layer.GetConfiguration", CHECK, nullptr, nullptr, "Surface.Flip"},
    {"|Flip_last_frame_Thread|", LAYERS_2_3, "Layer.GetConfiguration", CHECK, nullptr, nullptr, ALL},
    {"|Flip_last_frame_Thread|", LAYERS_2_3, "Surface.GetClip", CHECK, nullptr, nullptr, nullptr, nullptr, "",
     false, "SetClip 0,0 719,479", "SetClip 0,0 0,0"},

    // Pixels: without surface memory the operation fails.
    {"|DrawPixel|", ANY_LAYER, "Surface.Lock", SILENT, nullptr, nullptr, ALL, "-1"},
    {"|DrawPixel|", ANY_LAYER, "Surface.Unlock", SILENT, nullptr, nullptr, ALL, "-1"},

    // For fonts only the pointer counts. A font that could not be opened again is selected anyway, from its
    // empty slot, which has no name.
    {"|CreateFont|", ANY_LAYER, "Dfb.CreateFont", CHECK, NO_FONT, nullptr, nullptr, "0 font -7"},
    {"|SetFont|", ANY_LAYER, "Font.Release", SILENT},
    {"|SetFont|ScaleFontWidth|", ANY_LAYER, "Dfb.CreateFont", CHECK, nullptr, nullptr, ALL},
    {RECREATING, ANY_LAYER, "Dfb.CreateFont", CHECK, NO_FONT, nullptr, nullptr, nullptr, "", false,
     ".SetFont ", "dfb.CreateFont null ATTRIBUTES|HEIGHT attributes 0 height 24\nfont.EnumEncodings\n"},
    {"|GetFontHeight|", ANY_LAYER, "Font.GetHeight", CHECK, nullptr, nullptr, nullptr, "0 height 0", "",
     false, "height:30", "height:0"},
    {"|GetUnderlineInfo|", ANY_LAYER, "Font.GetUnderline", CHECK, nullptr, nullptr, nullptr,
     "0 at -7 thick -7"},
    {"|GetStringWidth|", ANY_LAYER, "Font.GetStringWidth", CHECK, nullptr, nullptr, nullptr, "0 width 0", "",
     false, "return width:30", "return width:0"},

    // The colours are copied from one palette to the other, or not at all.
    {"|UseBackupSurface.On|", ANY_LAYER, "base.GetPalette", CHECK, nullptr, nullptr, nullptr, nullptr, "",
     false, "backup.GetPalette", ""},
    {"|UseBackupSurface.Off|", ANY_LAYER, "backup.GetPalette", CHECK, nullptr, nullptr, nullptr, nullptr, "",
     false, "base.GetPalette", ""},
    {"|UseBackupSurface|", ANY_LAYER, "Palette.GetEntries", CHECK, nullptr, nullptr, nullptr, nullptr, "",
     false, ": 1,2,3,4 1,2,3,4 1,2,3,4 1,2,3,4", ": 0,0,0,0 0,0,0,0 0,0,0,0 0,0,0,0"},
};

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
    return {nullptr, ANY_LAYER, "", CHECK};
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
            char acLine[32];
            snprintf(acLine, sizeof acLine, "DFB_CHECK %#x", unsigned(eResult));
            m_lines.push_back(LineOf(acLine, false));
        } else if (eResult != DFB_OK && rule.eForm == BRIEF) {
            m_lines.push_back(LineOf("DFB_CHECK_BRIEF", false));
        }
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

    // The operation already has this failure; the injected one replaces it.
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
    std::string m_gone, m_other, m_becomes;
    size_t m_at = 0;
};

Run_t Expected(const Scenario_t &scenario, const std::vector<Line_t> &clean, const std::string &answer,
               const Fault_t &fault)
{
    return Walk_t(scenario, clean, answer, fault).Go();
}

} // namespace test
