// SPDX-License-Identifier: MIT
// The refusals of all 34 operations, slot by slot: which checks, in which order, with which message. Each row
// lists the checks of an operation as documented. The test tries every set of simultaneous faults, so it
// proves the order and not only each check. The orders intentionally differ between operations.
#include "expect.h"
#include "support.h"

#include <cstring>
#include <map>
#include <stdexcept>
#include <string>

using namespace test;

// ---- faults

enum Fault_e : unsigned {
    NULL_DISPLAY = 1 << 0,
    BAD_CONTEXT = 1 << 1,
    HIDDEN = 1 << 2,
    INACTIVE = 1 << 3,      // another context is active, or none because the layer was released
    NO_FONT = 1 << 4,       // no font is selected
    EMPTY_SLOT = 1 << 5,    // the selected slot is empty
    NULL_POINTER = 1 << 6,  // the first pointer argument
    NULL_POINTER2 = 1 << 7, // the second
    LIMIT = 1 << 8,         // the first limited argument is past its limit
    LIMIT2 = 1 << 9,
    LIMIT3 = 1 << 10,
    NO_LAYER = 1 << 11,
    NO_SURFACE = 1 << 12, // no active surface
    NO_BASE = 1 << 13,
    NO_BACKUP = 1 << 14,
    UNCHANGED = 1 << 15, // the requested values are already set
    NOT_PACKED = 1 << 16,
    ALL_FAULTS = 17
};

// ---- the steps of an operation before it acts

struct Step_t {
    enum { ENTER, TRACE, LOCK, REFUSE, ANSWER, SAY } eKind;
    unsigned uiFault;
    std::string text;         // the entry trace, the message, or whole lines
    bool bExit = false;       // whether the exit trace follows
    int iResult = 0;          // for a return
    unsigned uiOtherwise = 0; // faults that change the entry trace
    std::string otherwise;
};

static Step_t Enter(const std::string &text = "", unsigned uiOtherwise = 0, const std::string &otherwise = "")
{
    return {Step_t::ENTER, 0, text, false, 0, uiOtherwise, otherwise};
}

static Step_t Traces(const std::string &line)
{
    return {Step_t::TRACE, 0, line, false, 0, 0, ""};
}

static Step_t Locks()
{
    return {Step_t::LOCK, 0, "", false, 0, 0, ""};
}

// The three records of an error, and -1; no exit trace follows.
static Step_t Refuses(unsigned uiFault, const std::string &message)
{
    return {Step_t::REFUSE, uiFault, message, false, -1, 0, ""};
}

enum Exit_e { WITHOUT_EXIT, WITH_EXIT };

// The end of the call without the three records. Lines before the exit trace are given in full.
static Step_t Answers(unsigned uiFault, int iResult, Exit_e eExit = WITH_EXIT, const std::string &lines = "")
{
    return {Step_t::ANSWER, uiFault, lines, eExit == WITH_EXIT, iResult, 0, ""};
}

// A report that does not end the call.
static Step_t Says(unsigned uiFault, const std::string &line)
{
    return {Step_t::SAY, uiFault, line, false, 0, 0, ""};
}

static Step_t NullDisplay()
{
    return Refuses(NULL_DISPLAY, "NULL Pointer!");
}
static Step_t Context()
{
    return Refuses(BAD_CONTEXT, "Invalid context ID!");
}
static Step_t Inactive()
{
    return Refuses(INACTIVE, "Inactive context!");
}
static Step_t Pointer()
{
    return Refuses(NULL_POINTER, "NULL Pointer!");
}
static Step_t Pointer2()
{
    return Refuses(NULL_POINTER2, "NULL Pointer!");
}
static Step_t FontSelected()
{
    return Refuses(NO_FONT, "Only can support max 8 fonts!");
}
static Step_t SlotFilled(const char *pcMessage)
{
    return Refuses(EMPTY_SLOT, pcMessage);
}
static Step_t Shown(Exit_e eExit = WITH_EXIT)
{
    return Answers(HIDDEN, 0, eExit);
}

// ---- the arguments

static KovaTextRect_t s_rect;
static KovaTextColor_t s_colors[257];
static kova_uint8 s_pixels[64];
static kova_sint32 s_siOut, s_siOut2;
static kova_uint32 s_uiOut;
static const unsigned short s_text[] = {'a', 'b'};
static Surface_OsdScaleInfo s_scale;
static kova_uint8 *s_apGlyphs[101];
static kova_uint32 s_aui[101], s_auiWidth[101], s_auiHeight[101];
static kova_sint32 s_asi[101];
static KovaTextExpand_e s_aeExpand[101];

static const kova_sint32 UNTOUCHED = 77;

static void ResetArguments(unsigned uiFaults)
{
    s_rect = {10, 20, 100, 50};
    s_scale = {1, 2, 3, 4, 9, 9, 5, 6, 7, 8};
    s_siOut = s_siOut2 = UNTOUCHED;
    s_uiOut = kova_uint32(UNTOUCHED);
    for (int i = 0; i < 101; i++) {
        s_apGlyphs[i] = s_pixels;
        s_aui[i] = 1;
        s_asi[i] = 1;
        s_auiWidth[i] = s_auiHeight[i] = 8;
    }
    if (uiFaults & LIMIT2) s_auiWidth[1] = 49;
    if (uiFaults & LIMIT3) s_auiHeight[0] = 49; // the height of an earlier bitmap would be found first
    if (uiFaults & LIMIT3 && uiFaults & LIMIT2) s_auiHeight[0] = 8, s_auiHeight[1] = 49;
}

// ---- the operations

struct Call_t {
    pKovaITextDisplay_t p, pThiz; // the table's display, and the argument
    kova_sint8 sc;
    unsigned uiFaults;

    bool Has(unsigned uiFault) const
    {
        return uiFaults & uiFault;
    }
    template <typename Pointer> Pointer Unless(unsigned uiFault, Pointer pointer) const
    {
        return Has(uiFault) ? nullptr : pointer;
    }
};

struct Operation_t {
    const char *pcName; // in the records
    bool bVoid;
    std::vector<Step_t> steps;
    const char *pcActs; // text in the trace of a call that acts; null if it only changes the record
    int (*call)(const Call_t &c);
};

static std::string Banner(const std::string &name)
{
    const std::string hashes(27, '#'), more(34, '#');
    return "log " + name + ": \\n\\n" + hashes + " Enter " + name + "! width:720,height:480 " + more + "\\n";
}

static const std::vector<Operation_t> &Operations()
{
    static const std::vector<Operation_t> operations = {
        {"Show",
         true,
         {Enter(), NullDisplay(), Context(), Locks(), Inactive()},
         ".FillRectangle 0,0 720x480",
         [](const Call_t &c) { return c.p->Show(c.pThiz, c.sc), 0; }},
        {"Hide",
         true,
         {Enter(), NullDisplay(), Context(), Shown(), Locks(), Inactive()},
         ".FillRectangle 0,0 720x480",
         [](const Call_t &c) { return c.p->Hide(c.pThiz, c.sc), 0; }},
        {"SetTextWindowSize",
         false,
         {Enter(), NullDisplay(), Context(), Locks(), Inactive()},
         nullptr,
         [](const Call_t &c) { return c.p->SetTextWindowSize(c.pThiz, c.sc, 30, 40); }},
        {"SetPlane",
         false,
         {Enter(), Traces(Banner("SetPlane")), NullDisplay(), Refuses(NO_LAYER, "pLayer is NULL!"), Context(),
          Locks(), Inactive()},
         ".SetConfiguration",
         [](const Call_t &c) { return c.p->SetPlane(c.pThiz, c.sc, 1, 2, 720, 480); }},
        {"SetDisplayWindow",
         false,
         {Enter(), NullDisplay(), Context(), Answers(UNCHANGED, 0), Locks(), Inactive()},
         nullptr,
         [](const Call_t &c) { return c.p->SetDisplayWindow(c.pThiz, c.sc, 1, 2, 3, 4); }},
        {"SetPalette",
         false,
         {Enter(), NullDisplay(), Context(), Pointer(),
          Refuses(LIMIT, "Palette length should be less than MAX_PALETTE_COLOR!"), Locks(), Inactive(),
          Refuses(NO_SURFACE, "Inactive context!")},
         ".SetEntries 256 at 0",
         [](const Call_t &c) {
             return c.p->SetPalette(c.pThiz, c.sc, c.Unless(NULL_POINTER, &s_colors[0]),
                                    c.Has(LIMIT) ? 257 : 256, 0);
         }},
        {"FillRect",
         false,
         {Enter("(10x20)--(110x70)", NULL_POINTER, "pRect:NULL"), NullDisplay(), Context(), Shown(),
          Pointer(), Locks(), Inactive()},
         ".FillRectangle 10,20 100x50",
         [](const Call_t &c) { return c.p->FillRect(c.pThiz, c.sc, c.Unless(NULL_POINTER, &s_rect), 7); }},
        {"DrawPixel",
         false,
         {Enter(), NullDisplay(), Pointer(), Context(), Shown(), Answers(UNCHANGED, 0, WITHOUT_EXIT), Locks(),
          Inactive()},
         ".Lock WRITE",
         [](const Call_t &c) {
             return c.p->DrawPixel(c.pThiz, c.sc, c.Unless(NULL_POINTER, &s_pixels[0]),
                                   c.Has(UNCHANGED) ? 5000 : 0, 0, 8, 8, 8);
         }},
        {"Flip",
         false,
         {Enter(), NullDisplay(), Context(), Shown(), Locks(), Inactive()},
         ".Flip all",
         [](const Call_t &c) { return c.p->Flip(c.pThiz, c.sc); }},
        {"SetBlittingFlags",
         false,
         {Enter(), NullDisplay(), Context(), Shown(), Locks(), Inactive()},
         ".SetBlittingFlags SRC_COLORKEY",
         [](const Call_t &c) { return c.p->SetBlittingFlags(c.pThiz, c.sc, KOVA_DSBLIT_SRC_COLORKEY); }},
        {"SetDrawingFlags",
         false,
         {Enter(), NullDisplay(), Context(), Shown(), Locks(), Inactive()},
         ".SetDrawingFlags DST_COLORKEY",
         [](const Call_t &c) { return c.p->SetDrawingFlags(c.pThiz, c.sc, KOVA_DSDRAW_DST_COLORKEY); }},
        {"SetDstColorKey",
         false,
         {Enter("color:0x00000007"), NullDisplay(), Context(), Shown(), Locks(), Inactive()},
         ".SetDstColorKeyIndex 7",
         [](const Call_t &c) { return c.p->SetDstColorKey(c.pThiz, c.sc, 7); }},
        {"SetClip",
         false,
         {Enter("(10x20)--(110x70)", NULL_POINTER, "pRect:NULL"), NullDisplay(), Context(), Shown(), Locks(),
          Inactive()},
         ".SetClip",
         [](const Call_t &c) { return c.p->SetClip(c.pThiz, c.sc, c.Unless(NULL_POINTER, &s_rect)); }},
        {"DrawPixelExpand",
         false,
         {Enter(), NullDisplay(), Context(), Pointer(),
          Refuses(LIMIT, "Can't support DrawPixelExpand with this width!"),
          Refuses(LIMIT2, "Can't support DrawPixelExpand with this height!"), Shown(), Locks(), Inactive()},
         ".DrawMonoGlyph 48x48",
         [](const Call_t &c) {
             return c.p->DrawPixelExpand(c.pThiz, c.sc, c.Unless(NULL_POINTER, &s_pixels[0]), 0, 0,
                                         c.Has(LIMIT) ? 49 : 48, c.Has(LIMIT2) ? 49 : 48, 6, 0, 1, 0,
                                         KOVA_EXPAND_1X1Y);
         }},
        {"CreateFont",
         false,
         {NullDisplay(), Context(), Enter("height:24 other.ttf", NULL_POINTER, "height:24 (null)"), Locks(),
          Inactive(), Answers(NULL_POINTER, 0, WITH_EXIT, "  ERROR CreateFontInternal: NULL Pointer!\n"),
          Answers(NULL_POINTER2, 0, WITH_EXIT, "  ERROR CreateFontInternal: NULL Pointer!\n")},
         ".CreateFont other.ttf",
         [](const Call_t &c) {
             return c.p->CreateFont(c.pThiz, c.sc, c.Unless<const char *>(NULL_POINTER, "other.ttf"), 24,
                                    KOVA_FONTATTR_NONE, c.Unless(NULL_POINTER2, &s_siOut));
         }},
        {"SetFont",
         false,
         {NullDisplay(), Locks(), Context(), Refuses(LIMIT, "Only can support max 8 fonts!"),
          SlotFilled("Invalid Font id!"), Refuses(LIMIT2, "Height should be bigger than 0!\\n"),
          Enter("FontNumb:0 height:24"), Inactive()},
         ".SetFont font",
         [](const Call_t &c) {
             return c.p->SetFont(c.pThiz, c.sc, c.Has(LIMIT) ? 8 : 0, c.Has(LIMIT2) ? 0 : 24,
                                 KOVA_FONTATTR_NONE);
         }},
        {"DrawString",
         false,
         {Enter("string len:4 eEncoding:1, eFlag:5"), NullDisplay(), Locks(), Context(), Shown(),
          Refuses(NO_SURFACE, "NULL Pointer!"), FontSelected(), SlotFilled("NULL POINTER!"),
          Says(NULL_POINTER, "  ERROR ConvertUnicode2UTF8: NULL Pointer!\n"), Inactive()},
         ".DrawString \"",
         [](const Call_t &c) {
             return c.p->DrawString(c.pThiz, c.sc, c.Unless(NULL_POINTER, &s_text[0]), 4, 1, 2,
                                    KOVA_TEXT_UNICODE, KOVA_TEXT_TOPCENTER);
         }},
        {"GetStringWidth",
         false,
         {Enter(), NullDisplay(), Locks(), Context(), Shown(), Pointer(), Pointer2(), FontSelected(),
          SlotFilled("NULL POINTER!"), Inactive()},
         ".GetStringWidth \"ab\"",
         [](const Call_t &c) {
             return c.p->GetStringWidth(c.pThiz, c.sc, c.Unless(NULL_POINTER, &s_text[0]), 4,
                                        KOVA_TEXT_UNICODE, c.Unless(NULL_POINTER2, &s_uiOut));
         }},
        {"GetUnderlineInfo",
         false,
         {Enter(), NullDisplay(), Locks(), Context(), Pointer(), Pointer2(), FontSelected(),
          SlotFilled("NULL POINTER!"), Shown(WITHOUT_EXIT), Inactive()},
         ".GetUnderline",
         [](const Call_t &c) {
             return c.p->GetUnderlineInfo(c.pThiz, c.sc, 0, 24, 0, c.Unless(NULL_POINTER, &s_siOut),
                                          c.Unless(NULL_POINTER2, &s_siOut2));
         }},
        {"SetEdgeType",
         false,
         {Enter(), NullDisplay(), Context(), Shown(), Locks(), Inactive()},
         nullptr,
         [](const Call_t &c) { return c.p->SetEdgeType(c.pThiz, c.sc, KOVA_TEXT_ERAISED); }},
        {"SetEdgeColor",
         false,
         {Enter(), NullDisplay(), Locks(), Context(), FontSelected(), SlotFilled("NULL POINTER!"),
          Shown(WITHOUT_EXIT), Inactive()},
         nullptr,
         [](const Call_t &c) { return c.p->SetEdgeColor(c.pThiz, c.sc, 7); }},
        {"SetTextForeColor",
         false,
         {Enter("color:7"), NullDisplay(), Context(), Shown(), Locks(), Inactive()},
         nullptr,
         [](const Call_t &c) { return c.p->SetTextForeColor(c.pThiz, c.sc, 7); }},
        {"Blit",
         false,
         {Enter(), NullDisplay(), Context(), Pointer(), Shown(), Locks(), Inactive()},
         ".Blit ",
         [](const Call_t &c) { return c.p->Blit(c.pThiz, c.sc, c.Unless(NULL_POINTER, &s_rect), 1, 2); }},
        {"ScaleFontWidth",
         false,
         {NullDisplay(), Locks(), Context(), FontSelected(), SlotFilled("Invalid Font id!"), Enter(), Shown(),
          Inactive()},
         "width 24",
         [](const Call_t &c) { return c.p->ScaleFontWidth(c.pThiz, c.sc, 1, 65536); }},
        {"GetFontHeight",
         false,
         {Enter("input pHeight:77"), NullDisplay(), Locks(), Context(), FontSelected(),
          SlotFilled("NULL POINTER!"), Answers(HIDDEN, 0, WITH_EXIT, "enter GetFontHeight return height:0\n"),
          Inactive()},
         ".GetHeight",
         [](const Call_t &c) { return c.p->GetFontHeight(c.pThiz, c.sc, &s_siOut); }},
        {"BatchDrawPixelExpand",
         false,
         {Enter(), NullDisplay(), Context(), Pointer(),
          Refuses(LIMIT, "Can't draw so many characters at one time!"),
          Refuses(LIMIT2, "Can't support DrawPixelExpand with this width!"),
          Refuses(LIMIT3, "Can't support DrawPixelExpand with this height!"), Shown(), Locks(), Inactive()},
         ".BatchDrawMonoGlyph 100",
         [](const Call_t &c) {
             return c.p->BatchDrawPixelExpand(c.pThiz, c.sc, c.Unless(NULL_POINTER, &s_apGlyphs[0]), s_aui,
                                              s_aui, s_auiWidth, s_auiHeight, s_aui, s_asi, s_asi, s_aui,
                                              s_aeExpand, c.Has(LIMIT) ? 101 : 100);
         }},
        {"UseBackupSurface",
         false,
         {Enter(), NullDisplay(), Locks(), Context(), Inactive(), Answers(UNCHANGED, 0, WITHOUT_EXIT)},
         nullptr,
         [](const Call_t &c) { return c.p->UseBackupSurface(c.pThiz, c.sc, 1); }},
        {"BlitBackupSurface",
         false,
         {Enter(), NullDisplay(), Context(), Pointer(), FontSelected(), Refuses(NO_BASE, "NULL Pointer!"),
          Refuses(NO_BACKUP, "NULL Pointer!"), Shown(), Locks(), Inactive()},
         ".Blit backup",
         [](const Call_t &c) {
             return c.p->BlitBackupSurface(c.pThiz, c.sc, c.Unless(NULL_POINTER, &s_rect), 1, 2);
         }},
        {"DrawLine",
         false,
         {Enter(), NullDisplay(), Context(), Locks(), Shown()},
         ".DrawLine 1,2 3,4",
         [](const Call_t &c) { return c.p->DrawLine(c.pThiz, c.sc, 1, 2, 3, 4, 7); }},
        {"Create32BitPlane",
         false,
         {Enter(), Answers(NULL_DISPLAY, -1), Locks()},
         ".SetConfiguration",
         [](const Call_t &c) { return c.p->Create32BitPlane(c.pThiz, c.sc, 1, 2, 720, 480); }},
        {"Release32BitPanle",
         false,
         {Enter(), Answers(NULL_DISPLAY, -1),
          Answers(NOT_PACKED, -1, WITH_EXIT, "error Release32BitPanle: Not a 32 bit plane, can't release!\n"),
          Locks()},
         ".Release",
         [](const Call_t &c) { return c.p->Release32BitPlane(c.pThiz); }},
        {"SetFlip",
         false,
         {Enter("Flip:true"), Answers(NULL_DISPLAY, -1), Locks()},
         nullptr,
         [](const Call_t &c) { return c.p->SetFlip(c.pThiz, 1); }},
        {"SetSurface_OsdScaleInfo",
         true,
         {Enter("Plane:(1x2)(3x4) Crop:(5x6)(7x8)", NULL_POINTER, "Plane:(0x0)(0x0) Crop:(0x0)(0x0)"),
          Answers(NULL_DISPLAY, 0), Answers(NO_SURFACE, 0), Answers(NULL_POINTER, 0)},
         ".SetOSDScaleInfo plane 1,2 3x4",
         [](const Call_t &c) {
             return c.p->SetSurface_OsdScaleInfo(c.pThiz, c.Unless(NULL_POINTER, &s_scale)), 0;
         }},
        {"AdjustDisplaySize",
         false,
         {Enter(), Traces(Banner("AdjustDisplaySize")), NullDisplay(), Refuses(NO_LAYER, "pLayer is NULL!"),
          Context(), Locks(), Inactive()},
         ".SetConfiguration WIDTH|HEIGHT 720x480",
         [](const Call_t &c) { return c.p->AdjustDisplaySize(c.pThiz, c.sc, 1, 2, 720, 480); }},
    };
    return operations;
}

// Returns the row of this name; fails if there is none.
static const Operation_t &OperationNamed(const char *pcName)
{
    for (const Operation_t &operation : Operations()) {
        if (strcmp(operation.pcName, pcName) == 0) return operation;
    }
    throw std::out_of_range(std::string("no operation ") + pcName);
}

// ---- expectations

struct Expected_t {
    bool bEnds;      // before the operation acts
    unsigned uiEnds; // the fault that ends it
    int iResult;
    std::string trace;
};

static Expected_t Expect(const Operation_t &operation, unsigned uiFaults)
{
    const std::string name = operation.pcName;
    std::string trace;
    bool bLocked = false;

    for (const Step_t &step : operation.steps) {
        const std::string indent = bLocked ? "  " : "";
        const bool bHit = uiFaults & step.uiFault;
        const int iResult = operation.bVoid ? 0 : step.iResult;
        const std::string exit = step.bExit ? "exit " + name + "\n" : "";
        const std::string &entry = uiFaults & step.uiOtherwise ? step.otherwise : step.text;

        switch (step.eKind) {
        case Step_t::ENTER:
            trace += indent + "enter " + name + (entry.empty() ? "" : " ") + entry + "\n";
            break;
        case Step_t::TRACE:
            trace += indent + step.text + "\n";
            break;
        case Step_t::LOCK:
            bLocked = true;
            break;
        case Step_t::REFUSE:
            if (bHit)
                return {true, step.uiFault, iResult,
                        trace + indent + "ERROR " + name + ": " + step.text + "\n"};
            break;
        case Step_t::ANSWER:
            if (bHit) return {true, step.uiFault, iResult, trace + step.text + exit};
            break;
        case Step_t::SAY:
            if (bHit) trace += step.text;
            break;
        }
    }
    return {false, 0, 0, trace};
}

static unsigned FaultsOf(const Operation_t &operation)
{
    unsigned uiFaults = 0;

    for (const Step_t &step : operation.steps) uiFaults |= step.uiFault;
    return uiFaults;
}

// ---- a display with faults

// Shown, on layer 2, without a flip thread, with a selected font and a backup surface.
static pKovaITextDisplay_t GivenReadyDisplay(const Operation_t &operation)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, NO_CONTEXT);

    GivenFont(pDisplay);
    GivenBackupSurface(pDisplay);
    RecordOf(pDisplay)->scActiveContextID = 0;
    RecordOf(pDisplay)->eEdge = KOVA_TEXT_ENONE;
    RecordOf(pDisplay)->bColor32 = (FaultsOf(operation) & NOT_PACKED) != 0;
    return pDisplay;
}

struct Variant_t {
    kova_sint8 scBadContext, scActive, scFont;
};

static void Spoil(KovaDFBDisplay_t *pRecord, unsigned uiFaults, const Variant_t &variant)
{
    if (uiFaults & HIDDEN) pRecord->bShow = 0;
    if (uiFaults & INACTIVE) pRecord->scActiveContextID = variant.scActive;
    if (uiFaults & NO_FONT) pRecord->scActiveFontID = variant.scFont;
    if (uiFaults & EMPTY_SLOT) pRecord->font[0].pFont = nullptr;
    if (uiFaults & UNCHANGED) {
        pRecord->pActiveSurface = pRecord->pBackupSurface;
        pRecord->context[0].uiDisplayWindowX = 1;
        pRecord->context[0].uiDisplayWindowY = 2;
        pRecord->context[0].uiDisplayWindowWidth = 3;
        pRecord->context[0].uiDisplayWindowHeight = 4;
    }
    if (uiFaults & NO_LAYER) pRecord->pLayer = nullptr;
    if (uiFaults & NO_SURFACE) pRecord->pActiveSurface = nullptr;
    if (uiFaults & NO_BASE) pRecord->pBaseSurface = nullptr;
    if (uiFaults & NO_BACKUP) pRecord->pBackupSurface = nullptr;
    if (uiFaults & NOT_PACKED) pRecord->bColor32 = 0;
}

// The record as bytes, without its lock.
static std::string BytesOf(const KovaDFBDisplay_t *pRecord)
{
    std::string bytes(reinterpret_cast<const char *>(pRecord), sizeof *pRecord);

    bytes.replace(offsetof(KovaDFBDisplay_t, display_mutex), sizeof pRecord->display_mutex, "");
    return bytes;
}

static std::string NamesOf(unsigned uiFaults)
{
    static const char *const s_apcNames[ALL_FAULTS] = {
        "null display", "bad context",     "hidden",    "inactive",  "no font",   "empty slot",
        "null pointer", "null pointer 2",  "limit",     "limit 2",   "limit 3",   "no layer",
        "no surface",   "no base surface", "no backup", "unchanged", "not 32 bit"};
    std::string names;

    for (unsigned i = 0; i < ALL_FAULTS; i++) {
        if (uiFaults >> i & 1) names += std::string(names.empty() ? "" : " and ") + s_apcNames[i];
    }
    return names;
}

class Guards : public testing::TestWithParam<size_t>
{
protected:
    const Operation_t &operation = Operations()[GetParam()];

    void Refuse(pKovaITextDisplay_t pDisplay, unsigned uiFaults, const Variant_t &variant);

    // The source line that reports each fault on its own. If two faults have the same message, the line shows
    // which of them was found.
    std::map<std::pair<unsigned, bool>, int> m_lines;
};

// The line of the last error, or of the last record if there is none.
static int LineOfReport()
{
    int iLine = 0, iErrorLine = 0;

    for (const Record_t &record : Records()) {
        iLine = record.iLine;
        if (record.iLevel == 1) iErrorLine = iLine;
    }
    return iErrorLine ? iErrorLine : iLine;
}

void Guards::Refuse(pKovaITextDisplay_t pDisplay, unsigned uiFaults, const Variant_t &variant)
{
    SCOPED_TRACE(std::string(operation.pcName) + " with " + NamesOf(uiFaults));
    SCOPED_TRACE("context " + std::to_string(variant.scBadContext) + ", active " +
                 std::to_string(variant.scActive) + ", font " + std::to_string(variant.scFont));
    const Expected_t expected = Expect(operation, uiFaults);
    if (!expected.bEnds) return;
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    const KovaDFBDisplay_t whole = *pRecord;
    Spoil(pRecord, uiFaults, variant);
    const std::string before = BytesOf(pRecord);
    const kova_sint8 scContext = uiFaults & BAD_CONTEXT ? variant.scBadContext : kova_sint8(0);
    ResetArguments(uiFaults);
    ClearTrace();

    const int iResult =
        operation.call({pDisplay, uiFaults & NULL_DISPLAY ? nullptr : pDisplay, scContext, uiFaults});

    EXPECT_EQ(Trace(), expected.trace);
    EXPECT_EQ(iResult, expected.iResult);
    const int iLine = LineOfReport();
    EXPECT_EQ(m_lines.insert({{expected.uiEnds, variant.scActive == -2}, iLine}).first->second, iLine);
    EXPECT_FALSE(HoldsLock());
    EXPECT_TRUE(LockIsFree(pDisplay));
    EXPECT_EQ(s_siOut, strcmp(operation.pcName, "GetFontHeight") == 0 ? 0 : UNTOUCHED);
    EXPECT_EQ(s_siOut2, UNTOUCHED);
    EXPECT_EQ(s_uiOut, kova_uint32(UNTOUCHED));
    // Without a layer the size is stored for a later activation, although the call is refused.
    if (strstr("SetPlane AdjustDisplaySize", operation.pcName) && variant.scActive == -2) {
        if (Contains(expected.trace, "Inactive context!")) {
            EXPECT_EQ(pRecord->context[0].uiPlaneWidth, 720u);
            EXPECT_EQ(pRecord->context[0].uiPlaneHeight, 480u);
            pRecord->context[0] = whole.context[0];
        }
    }
    EXPECT_TRUE(BytesOf(pRecord) == before) << "the record was changed";

    const pthread_mutex_t mutex = pRecord->display_mutex;
    *pRecord = whole;
    pRecord->display_mutex = mutex;
}

static constexpr kova_sint8 s_ascContexts[] = {0, 1, 2, 3};
static constexpr kova_sint8 s_ascBad[] = {4, -1, 127, -56, -128}; // -56 is 200 as a byte
static constexpr kova_sint8 s_ascActive[] = {1, 3, -2};
static constexpr kova_sint8 s_ascFont[] = {-1, 8, 127, -128};

TEST_P(Guards, RefuseInTheirOrderWithTheirWords)
{
    pKovaITextDisplay_t pDisplay = GivenReadyDisplay(operation);
    const unsigned uiOwn = FaultsOf(operation);
    int iCases = 0;

    for (unsigned uiFaults = 1; uiFaults < 1u << ALL_FAULTS; uiFaults++) {
        if (uiFaults & ~uiOwn) continue;
        for (const kova_sint8 scBad : s_ascBad) {
            if (!(uiFaults & BAD_CONTEXT) && scBad != 4) continue;
            for (const kova_sint8 scActive : s_ascActive) {
                if (!(uiFaults & INACTIVE) && scActive != 1) continue;
                for (const kova_sint8 scFont : s_ascFont) {
                    if (!(uiFaults & NO_FONT) && scFont != -1) continue;
                    // Single faults in every variant; for sets of faults each variant once is enough.
                    if (uiFaults & (uiFaults - 1) && scBad != 4 && scFont != -1) continue;
                    Refuse(pDisplay, uiFaults, {scBad, scActive, scFont});
                    iCases++;
                    if (HasFailure()) FAIL() << "and no further sets are tried";
                }
            }
        }
    }

    EXPECT_GT(iCases, 0);
    Destroy(pDisplay);
}

// ---- valid calls

static void ExpectActs(const Operation_t &operation, unsigned uiFaults, kova_sint8 scActive,
                       kova_sint8 scContext)
{
    SCOPED_TRACE(std::string(operation.pcName) + " with " + NamesOf(uiFaults));
    SCOPED_TRACE("context " + std::to_string(scContext) + ", active " + std::to_string(scActive));
    pKovaITextDisplay_t pDisplay = GivenReadyDisplay(operation);
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    IDirectFBFont *const pFont = pRecord->font[0].pFont;
    pRecord->scActiveContextID = scActive;
    Spoil(pRecord, uiFaults & ~INACTIVE, {4, 1, -1});
    pRecord->bFlip = strcmp(operation.pcName, "SetFlip") != 0;
    ResetArguments(uiFaults);
    ClearTrace();
    const std::string before = BytesOf(pRecord);

    EXPECT_EQ(operation.call({pDisplay, pDisplay, scContext, uiFaults}), 0);

    const std::string trace = Trace(), name = operation.pcName;
    const Expected_t expected = Expect(operation, uiFaults);
    EXPECT_EQ(trace.substr(0, expected.trace.size()), expected.trace);
    if (operation.pcActs) {
        EXPECT_TRUE(Contains(trace, operation.pcActs)) << trace;
    } else {
        EXPECT_TRUE(BytesOf(pRecord) != before) << "nothing was stored";
    }
    EXPECT_FALSE(Contains(trace, "ERROR " + name)) << trace;
    EXPECT_FALSE(Contains(trace, "error " + name)) << trace;
    const std::string last = trace.substr(trace.rfind('\n', trace.size() - 2) + 1);
    EXPECT_EQ(last.rfind("exit " + name, 0), 0u) << trace;
    EXPECT_TRUE(LockIsFree(pDisplay));
    if (uiFaults & EMPTY_SLOT) pFont->Release(pFont);
    Destroy(pDisplay);
}

TEST_P(Guards, LetTheActiveContextAct)
{
    for (const kova_sint8 sc : s_ascContexts) ExpectActs(operation, 0, sc, sc);
}

TEST_P(Guards, LetEveryContextActWhileNoneIsActive)
{
    for (const kova_sint8 sc : s_ascContexts) ExpectActs(operation, 0, -1, sc);
}

TEST_P(Guards, CheckNothingElse)
{
    static const unsigned s_auiLookedAtBySome[] = {BAD_CONTEXT, HIDDEN, INACTIVE, NO_FONT, EMPTY_SLOT};
    bool bAny = false;

    for (const unsigned uiFault : s_auiLookedAtBySome) {
        if (uiFault & FaultsOf(operation)) continue;
        ExpectActs(operation, uiFault, uiFault == INACTIVE ? 1 : 0,
                   uiFault == BAD_CONTEXT ? kova_sint8(4) : kova_sint8(0));
        bAny = true;
    }
    if (!bAny) GTEST_SKIP() << "it looks at everything";
}

INSTANTIATE_TEST_SUITE_P(Of, Guards, testing::Range<size_t>(0, 34), [](const auto &row) {
    return std::to_string(row.param + 1) + "_" + Operations()[row.param].pcName;
});

// ---- rules that the table cannot express

TEST(GuardTable, HasOneRowForEachSlot)
{
    EXPECT_EQ(Operations().size(), 34u);
    EXPECT_EQ(sizeof(KovaITextDisplay_t), offsetof(KovaITextDisplay_t, Show) + 34 * sizeof(void *));
}

TEST(GuardSetClip, TakesNoRectangleForTheWholeSurface)
{
    ExpectActs(OperationNamed("SetClip"), NULL_POINTER, 0, 0);
}

TEST(GuardDrawString, DrawsNothingForANullStringAndContinues)
{
    pKovaITextDisplay_t pDisplay = GivenReadyDisplay(OperationNamed("DrawString"));

    EXPECT_EQ(pDisplay->DrawString(pDisplay, 0, nullptr, 4, 1, 2, KOVA_TEXT_UNICODE, KOVA_TEXT_LEFT), 0);

    EXPECT_EQ(TraceOf("ERROR"), "  ERROR ConvertUnicode2UTF8: NULL Pointer!\n");
    const std::string call = NameOf(RecordOf(pDisplay)->pActiveSurface) + ".DrawString";
    EXPECT_EQ(TraceOf(call), "  " + call + " \"\" 1,2 TOPLEFT\n");
    Destroy(pDisplay);
}

TEST(GuardRelease32BitPlane, ReportsOnStandardOutputThatThereIsNoDisplay)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);

    testing::internal::CaptureStdout();
    EXPECT_EQ(pDisplay->Release32BitPlane(nullptr), -1);

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "keldrun: error \n");
    Destroy(pDisplay);
}

// Negative numbers exceed the limits like large ones.
TEST(GuardLimits, CompareWithoutSigns)
{
    pKovaITextDisplay_t pDisplay = GivenReadyDisplay(Operations()[0]);
    ResetArguments(0);
    static const char s_acFonts[] = "  ERROR SetFont: Only can support max 8 fonts!\n";

    for (const kova_sint32 siFont : {8, 255, 256, 2147483647, -1, -2147483647 - 1}) {
        ClearTrace();
        EXPECT_EQ(pDisplay->SetFont(pDisplay, 0, siFont, 24, KOVA_FONTATTR_NONE), -1);
        EXPECT_EQ(Trace(), s_acFonts);
    }
    ClearTrace();
    EXPECT_EQ(pDisplay->SetFont(pDisplay, 0, 7, 24, KOVA_FONTATTR_NONE), -1);
    EXPECT_EQ(Trace(), "  ERROR SetFont: Invalid Font id!\n");
    ClearTrace();
    EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, s_colors, 0xFFFFFFFF, 0), -1);
    EXPECT_EQ(
        pDisplay->DrawPixelExpand(pDisplay, 0, s_pixels, 0, 0, 0xFFFFFFFF, 8, 1, 0, 1, 0, KOVA_EXPAND_1X1Y),
        -1);
    EXPECT_EQ(
        pDisplay->DrawPixelExpand(pDisplay, 0, s_pixels, 0, 0, 8, 0x80000000, 1, 0, 1, 0, KOVA_EXPAND_1X1Y),
        -1);
    EXPECT_EQ(TraceOf("ERROR"), "ERROR SetPalette: Palette length should be less than MAX_PALETTE_COLOR!\n"
                                "ERROR DrawPixelExpand: Can't support DrawPixelExpand with this width!\n"
                                "ERROR DrawPixelExpand: Can't support DrawPixelExpand with this height!\n");
    Destroy(pDisplay);
}

// Sizes are checked bitmap by bitmap, the width of each before its height.
TEST(GuardBatchDrawPixelExpand, StopsAtTheFirstBitmapThatIsTooLarge)
{
    static const struct {
        int iWide, iHigh; // the index of the bitmap that is too wide, and of the one that is too high
        const char *pcMessage;
    } rows[] = {{0, 1, "width"}, {1, 0, "height"}, {5, 5, "width"}, {99, 98, "height"}, {98, 99, "width"}};
    pKovaITextDisplay_t pDisplay = GivenReadyDisplay(Operations()[0]);

    for (const auto &row : rows) {
        ResetArguments(0);
        s_auiWidth[row.iWide] = s_auiHeight[row.iHigh] = 49;
        ClearTrace();
        EXPECT_EQ(pDisplay->BatchDrawPixelExpand(pDisplay, 0, s_apGlyphs, s_aui, s_aui, s_auiWidth,
                                                 s_auiHeight, s_aui, s_asi, s_asi, s_aui, s_aeExpand, 100),
                  -1);
        EXPECT_EQ(Trace(),
                  std::string("enter BatchDrawPixelExpand\nERROR BatchDrawPixelExpand: Can't support "
                              "DrawPixelExpand with this ") +
                      row.pcMessage + "!\n");
    }
    Destroy(pDisplay);
}
