// SPDX-License-Identifier: MIT
#include "generating/from_cues.h"

#include <algorithm>
#include <set>

#include "base/failure.h"
#include "base/utf8.h"
#include "generating/caption_rows.h"
#include "generating/characters.h"
#include "generating/lane.h"
#include "kova/kova_captions.h"

namespace caption
{

using namespace encoding;

static const std::size_t g_rowsEveryDecoderShows = 4;
static const std::size_t g_mostNamed = 10;
static const std::int64_t g_longest = std::int64_t(24) * 3600 * 1000; // milliseconds
static const double g_afterLast = 2;                                  // seconds

namespace
{

// What was changed, for the notices.
struct Changes {
    std::set<char32_t> missing608;
    std::set<char32_t> missing708;
    std::size_t highPages = 0;
    std::size_t lostRows = 0;
};

} // namespace

/* ------------------------------------------------------------------------------------------------------------- 608 */

static std::size_t FirstRow(const CaptionPage &page, Vertical group)
{
    const std::size_t lowest = 15;
    const std::size_t top = page.groups[std::size_t(Vertical::TOP)].size();
    const std::size_t middle = page.groups[std::size_t(Vertical::MIDDLE)].size();
    const std::size_t bottom = page.groups[std::size_t(Vertical::BOTTOM)].size();

    if (group == Vertical::TOP) return 1;
    if (group == Vertical::BOTTOM) return lowest + 1 - bottom;
    return std::clamp(8 - middle / 2, top + 1, lowest + 1 - bottom - middle);
}

static std::size_t FirstColumn(Horizontal horizontal, std::size_t width)
{
    if (horizontal == Horizontal::LEFT) return 0;
    return horizontal == Horizontal::RIGHT ? g_columns - width : (g_columns - width) / 2;
}

static Pairs RowPairs(const CaptionRow &row, std::size_t number, std::set<char32_t> &missing)
{
    const std::vector<Item608> items = ItemsOf(row.cells, missing);
    PairWriter writer;

    for (const Item608 &item : items) {
        if (item.isCode) writer.Put(MidRow(item.code, item.underline));
        for (const char32_t character : item.text) writer.Put(character);
    }
    return MoveTo(unsigned(number), unsigned(FirstColumn(row.horizontal, WidthOf(items)))) + writer.Finish();
}

// The two transmissions of a control code stay together.
static std::vector<Pairs> Groups(const Pairs &pairs)
{
    std::vector<Pairs> groups;

    for (std::size_t i = 0; i < pairs.size(); ++i) {
        const bool twice = IsControl(pairs[i]) && i + 1 < pairs.size() && pairs[i + 1] == pairs[i];
        groups.push_back(twice ? Pairs{pairs[i], pairs[i]} : Pairs{pairs[i]});
        i += twice;
    }
    return groups;
}

// Each control code once, unless the same one stands next to it and would be taken for its repetition.
static std::vector<Pairs> Briefly(std::vector<Pairs> groups)
{
    const std::vector<Pairs> all = groups;

    for (std::size_t i = 0; i < all.size(); ++i) {
        const bool sameBefore = i > 0 && all[i - 1].front() == all[i].front();
        const bool sameAfter = i + 1 < all.size() && all[i + 1].front() == all[i].front();
        if (IsControl(all[i].front()) && !sameBefore && !sameAfter) groups[i].resize(1);
    }
    return groups;
}

static Lane<Pair>::Caption Caption608(const CaptionPage &page, Changes &changes)
{
    Lane<Pair>::Caption caption;
    Pairs load = Code(RCL) + Code(ENM);

    for (const Vertical group : {Vertical::TOP, Vertical::MIDDLE, Vertical::BOTTOM}) {
        std::size_t number = FirstRow(page, group);
        for (const CaptionRow &row : page.groups[std::size_t(group)]) {
            load = load + RowPairs(row, number++, changes.missing608);
        }
    }
    caption.load = Groups(load);
    caption.briefly = Briefly(caption.load);
    caption.show = Code(EOC);
    caption.erase = Code(EDM);
    return caption;
}

/* ------------------------------------------------------------------------------------------------------------- 708 */

static unsigned ColorOf(Color608 color)
{
    static const unsigned colors[] = {0x2A, 0x08, 0x02, 0x0A, 0x20, 0x28, 0x22};
    return colors[color];
}

static ByteString LookBytes(const PenLook &look)
{
    PenAttributes attributes;
    PenColor color;

    attributes.italics = look.italics;
    attributes.underline = look.underline;
    color.foreground = ColorOf(look.color);
    return SetPenAttributes(attributes) + SetPenColor(color);
}

// A hidden window with the rows of a group.
static ByteString WindowBytes(unsigned id, Vertical vertical, const std::vector<CaptionRow> &rows,
                              Changes &changes)
{
    static const unsigned justify[] = {KOVA_CAPTIONS_JUSTIFY_LEFT, KOVA_CAPTIONS_JUSTIFY_CENTER,
                                       KOVA_CAPTIONS_JUSTIFY_RIGHT};
    const auto horizontal = std::size_t(rows.front().horizontal);
    const auto place = std::size_t(vertical);
    std::size_t columns = 0;
    PenLook look;

    for (const CaptionRow &row : rows) columns = std::max(columns, row.cells.size());
    WindowAttributes attributes;
    attributes.fillOpacity = KOVA_CAPTIONS_TRANSPARENT;
    attributes.justify = justify[horizontal];
    ByteString bytes = Define(Window(id)
                                  .Hidden()
                                  .Anchor(unsigned(3 * place + horizontal), unsigned(37 * place),
                                          horizontal == 2 ? 209 : unsigned(105 * horizontal))
                                  .Rows(unsigned(rows.size()))
                                  .Columns(unsigned(columns))
                                  .Styles(2, 1)) +
                       SetWindowAttributes(attributes);
    for (std::size_t number = 0; number < rows.size(); ++number) {
        bytes = bytes + SetPenLocation(unsigned(number), 0);
        for (const CaptionCell &cell : rows[number].cells) {
            const auto text = In708(cell.code);
            if (!text) changes.missing708.insert(cell.code);
            if (!(cell.look == look)) bytes = bytes + LookBytes(cell.look);
            look = cell.look;
            bytes = bytes + text.value_or(Ascii("_"));
        }
    }
    return bytes;
}

// Windows 0, 2 and 4 take turns with 1, 3 and 5, so that one caption is loaded while the other one is shown.
static Lane<ByteString>::Caption Caption708(const CaptionPage &page, std::size_t number, Changes &changes)
{
    const auto turn = unsigned(number % 2);
    const unsigned others = turn == 0 ? 0x2A : 0x15;
    Lane<ByteString>::Caption caption;
    ByteString load;
    unsigned map = 0;

    for (unsigned group = 0; group < 3; ++group) {
        if (page.groups[group].empty()) continue;
        const unsigned id = 2 * group + turn;
        map |= 1u << id;
        load = load + WindowBytes(id, Vertical(group), page.groups[group], changes);
    }
    for (const ByteString &part : BlockParts(load)) caption.load.push_back({part});
    caption.briefly = caption.load;
    caption.show = {DisplayWindows(map) + DeleteWindows(others)};
    caption.erase = {DeleteWindows(map)};
    return caption;
}

/* --------------------------------------------------------------------------------------------------------- Notices */

static std::string Names(const std::set<char32_t> &characters)
{
    std::string names;
    std::size_t count = 0;

    for (const char32_t character : characters) {
        if (++count > g_mostNamed)
            return names + " and " + std::to_string(characters.size() - g_mostNamed) + " more";
        names += (names.empty() ? "" : ", ") + Utf8(character) + " (" + CodeName(character) + ")";
    }
    return names;
}

template <class Item>
static void SayLate(const Lane<Item> &lane, const std::string &standard, Notices &notices)
{
    if (lane.late() == 0) return;
    const auto milliseconds = FrameTime(lane.latest()) / 1000;
    notices.Say(standard + ": captions that appear late for lack of bandwidth: " +
                std::to_string(lane.late()) + ", by up to " + std::to_string(milliseconds) + " ms");
}

static void Say(const Changes &changes, Notices &notices)
{
    if (!changes.missing608.empty()) {
        notices.Say("characters that CEA-608 does not have are question marks there: " +
                    Names(changes.missing608));
    }
    if (!changes.missing708.empty()) {
        notices.Say("characters that CEA-708 does not have are underscores there: " +
                    Names(changes.missing708));
    }
    if (changes.highPages) {
        notices.Say("captions of more than four rows, which not every decoder shows: " +
                    std::to_string(changes.highPages));
    }
    if (changes.lostRows) {
        notices.Say("rows left out, because a screen has fifteen: " + std::to_string(changes.lostRows));
    }
}

/* ------------------------------------------------------------------------------------------------------- Recording */

static std::string TextOf(const CaptionPage &page)
{
    std::string text;

    for (const auto &group : page.groups) {
        for (const CaptionRow &row : group) {
            text += text.empty() ? "" : " / ";
            for (const CaptionCell &cell : row.cells) text += Utf8(cell.code);
        }
    }
    return text;
}

// In the order of their frames, which sequence numbers need.
static void AddPackets(Recording &recording, const Lane<ByteString> &lane)
{
    unsigned sequence = 0;

    for (const auto &[frame, bytes] : lane.items()) {
        recording.frames[frame].packets = PacketTriplets(Packet(sequence, encoding::Block(1, bytes)));
        sequence = (sequence + 1) % 4;
    }
    recording.services.insert(1);
}

Recording FromCues(const std::string &title, const std::vector<Cue> &cues, CaptionKinds kinds,
                   Notices &notices)
{
    Recording recording;
    Changes changes;
    Lane<Pair> line21;
    Lane<ByteString> service;
    std::size_t last = 0;

    recording.title = title;
    for (const Screen &screen : Screens(cues)) {
        std::vector<const Cue *> shown;
        for (const std::size_t cue : screen.cues) shown.push_back(&cues[cue]);
        const CaptionPage page = PageOf(shown);
        if (page.RowCount() == 0) continue;
        if (screen.end > g_longest)
            throw Failure("captions after 24 hours cannot be written; split the file");
        const std::size_t start = NearestFrame(screen.start * 1000);
        const std::size_t end = std::max(NearestFrame(screen.end * 1000), start + 1);
        changes.highPages += page.RowCount() > g_rowsEveryDecoderShows;
        changes.lostRows += page.lost;
        Lane<Pair>::Caption caption = Caption608(page, changes);
        caption.start = start;
        caption.end = end;
        line21.Add(caption);
        if (kinds == CaptionKinds::BOTH) {
            Lane<ByteString>::Caption windows = Caption708(page, service.shown().size(), changes);
            windows.start = start;
            windows.end = end;
            service.Add(windows);
        }
        if (last < start && last > 0) recording.scenes.emplace_back(last, Scene{});
        recording.scenes.emplace_back(start, Scene{TextOf(page)});
        last = end;
    }
    if (recording.scenes.empty()) throw Failure("no text to make captions of; give a source with text");
    const std::size_t finished = std::max(line21.Finish(), service.Finish());
    recording.scenes.emplace_back(last, Scene{});
    recording.frames.resize(finished + NearestFrame(std::int64_t(g_afterLast * 1e6)));
    for (const auto &[frame, pair] : line21.items()) recording.frames[frame].fields[0] = pair;
    if (kinds == CaptionKinds::BOTH) AddPackets(recording, service);
    SayLate(line21, "CEA-608", notices);
    SayLate(service, "CEA-708", notices);
    Say(changes, notices);
    return recording;
}

} // namespace caption
