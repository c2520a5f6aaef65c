// SPDX-License-Identifier: MIT
// Teletext subtitles of a broadcast.
#include <algorithm>
#include <cstdio>
#include <map>
#include <new>
#include <set>
#include <utility>

#include "cues/timeline.h"
#include "reading/cue_reader.h"
#include "reading/teletext_page.h"

namespace caption
{

// A cell lasts one of the 52 microseconds of a visible line, and a row takes 10 of the 288 lines of a field.
// The 25 rows and 40 columns are centred. The first row is the header.
static const CellGrid g_grid = {
    1, 0, 40, 24, 6.0 / 52, (19.0 + 10) / 288, 1.0 / 52, 10.0 / 288, (19.0 + 10 + 120) / 288};

namespace
{

class TeletextReader : public CueReader
{
public:
    explicit TeletextReader(const ReaderContext &context)
        : context_(context), vbi_(vbi_decoder_new(), vbi_decoder_delete),
          announced_(Announced(context.stream))
    {
        if (!vbi_ || !vbi_event_handler_register(vbi_.get(), VBI_EVENT_TTX_PAGE, OnEvent, this)) {
            throw std::bad_alloc();
        }
    }

    void Take(AVPacket &packet, const PacketTime &time) override
    {
        std::vector<vbi_sliced> lines = LinesOf(packet);

        if (lines.empty()) return;
        clock_ += 0.04; // the decoder resets itself after a missing field
        vbi_decode(vbi_.get(), lines.data(), int(lines.size()), clock_);
        for (const auto &page : std::exchange(arrived_, {})) Show(page.first, page.second, time.start);
    }

    // Each page is a language. The first announced page is read.
    std::vector<Cue> Finish(std::int64_t endOfSource) override
    {
        std::vector<Cue> chosen;
        int page = 0;

        for (auto &timeline : timelines_) {
            std::vector<Cue> cues = timeline.second.Finish(endOfSource);
            if (cues.empty()) continue;
            const bool first = chosen.empty();
            const bool better = !announced_.empty() && timeline.first == announced_.front();
            if (!first) {
                context_.notices.Say("teletext page " + PageName(better ? timeline.first : page) +
                                     " is drawn; other subtitle pages are ignored");
            }
            if (!first && !better) continue;
            chosen = std::move(cues);
            page = timeline.first;
        }
        return chosen;
    }

private:
    static void OnEvent(vbi_event *event, void *reader)
    {
        static_cast<TeletextReader *>(reader)->arrived_.insert(
            {event->ev.ttx_page.pgno, event->ev.ttx_page.subno});
    }

    static std::string PageName(int page)
    {
        char name[16];
        std::snprintf(name, sizeof name, "%x", unsigned(page));
        return name;
    }

    // Two bytes for each language: the type of the page, and its number.
    static std::vector<int> Announced(const AVStream &stream)
    {
        enum { SUBTITLES = 2, SUBTITLES_FOR_HARD_OF_HEARING = 5 };
        const AVCodecParameters &parameters = *stream.codecpar;
        std::vector<int> pages;

        for (int i = 0; i + 1 < parameters.extradata_size; i += 2) {
            const int kind = parameters.extradata[i] >> 3;
            const int magazine = parameters.extradata[i] & 7;
            if (kind != SUBTITLES && kind != SUBTITLES_FOR_HARD_OF_HEARING) continue;
            pages.push_back((magazine ? magazine : 8) << 8 | parameters.extradata[i + 1]);
        }
        return pages;
    }

    // The data units of a broadcast packet that contain lines of teletext, with the bits reversed.
    static std::vector<vbi_sliced> LinesOf(const AVPacket &packet)
    {
        enum { PLAIN = 2, SUBTITLE = 3, UNIT_SIZE = 44, FRAMING_CODE = 0xE4, LINE_SIZE = 42 };
        std::vector<vbi_sliced> lines;

        for (int at = 1; at + 2 <= packet.size;) {
            const std::uint8_t *const unit = packet.data + at;
            at += 2 + unit[1];
            if (at > packet.size || unit[1] < UNIT_SIZE || unit[3] != FRAMING_CODE) continue;
            if (unit[0] != PLAIN && unit[0] != SUBTITLE) continue;
            vbi_sliced line = {};
            const unsigned offset = unit[2] & 0x1Fu;
            line.id = VBI_SLICED_TELETEXT_B;
            line.line = offset == 0 ? 0 : offset + (unit[2] & 0x20 ? 0 : 313);
            for (int i = 0; i < LINE_SIZE; ++i) line.data[i] = std::uint8_t(vbi_rev8(unit[4 + i]));
            lines.push_back(line);
        }
        return lines;
    }

    bool IsWanted(int page)
    {
        if (!announced_.empty()) {
            return std::find(announced_.begin(), announced_.end(), page) != announced_.end();
        }
        return vbi_classify_page(vbi_.get(), page, nullptr, nullptr) == VBI_SUBTITLE_PAGE;
    }

    void Show(int pageNumber, int subpage, std::int64_t time)
    {
        vbi_page page;

        if (!IsWanted(pageNumber)) return;
        if (!vbi_fetch_vt_page(vbi_.get(), &page, pageNumber, subpage, VBI_WST_LEVEL_2p5, 25, FALSE)) return;
        // libzvbi makes black boxes half transparent, which is one way to show them.
        for (vbi_char &cell : page.text) {
            if (cell.opacity == VBI_SEMI_TRANSPARENT) cell.opacity = VBI_OPAQUE;
        }
        std::vector<PageRow> rows = ReadRows(page, g_grid, context_.notices);
        vbi_unref_page(&page);
        // Pages are repeated.
        if (rows == shown_[pageNumber]) return;
        Cue cue;
        cue.start = time;
        cue.blocks = Blocks(rows, g_grid, RowAlignment::AS_THEY_LIE);
        Timeline &timeline = timelines_[pageNumber];
        if (rows.empty()) {
            timeline.Clear(time);
        } else {
            timeline.Show(std::move(cue), std::nullopt);
        }
        shown_[pageNumber] = std::move(rows);
    }

    ReaderContext context_;
    std::unique_ptr<vbi_decoder, void (*)(vbi_decoder *)> vbi_;
    std::vector<int> announced_;
    std::set<std::pair<int, int>> arrived_;
    double clock_ = 0;
    std::map<int, Timeline> timelines_;
    std::map<int, std::vector<PageRow>> shown_;
};

} // namespace

std::unique_ptr<CueReader> ReadTeletext(const ReaderContext &context)
{
    return std::make_unique<TeletextReader>(context);
}

} // namespace caption
