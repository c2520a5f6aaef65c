// SPDX-License-Identifier: MIT
#include "reading/closed_captions.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <string>
#include <utility>

namespace caption
{

// The 32 columns and 15 rows take the inner four fifths of the canvas. libzvbi has an empty column on each
// side.
static const CellGrid g_grid = {0, 1, 32, 15, 0.1, 0.1, 0.8 / 32, 0.8 / 15};

static const double g_frame = 1001.0 / 30; // milliseconds

// Letters that come this soon after one another, in milliseconds, come at once.
static const double g_burst = 500;

ClosedCaptions::ClosedCaptions(Notices &notices)
    : notices_(notices), vbi_(vbi_decoder_new(), vbi_decoder_delete)
{
    if (!vbi_ || !vbi_event_handler_register(vbi_.get(), VBI_EVENT_CAPTION, OnEvent, this)) {
        throw std::bad_alloc();
    }
}

void ClosedCaptions::OnEvent(vbi_event *event, void *captions)
{
    static_cast<ClosedCaptions *>(captions)->arrived_.insert(event->ev.caption.pgno);
}

void ClosedCaptions::Take(const std::uint8_t *data, std::size_t size, std::int64_t time)
{
    enum { VALID = 4, KIND = 3, SECOND_FIELD = 1 };
    std::array<int, 2> frames = {};

    for (; size >= 3; data += 3, size -= 3) {
        const unsigned kind = data[0] & KIND;
        if (!(data[0] & VALID) || kind > SECOND_FIELD) continue;
        const double start = double(time) + g_frame * frames[kind]++;
        if (start > time_ + 1.5 * g_frame) Rest();
        time_ = std::max(time_, start);
        Feed(kind == SECOND_FIELD, data[1], data[2]);
    }
}

// Frames without text, which a source may leave out. libzvbi keeps a word back until it is over.
void ClosedCaptions::Rest()
{
    const std::uint8_t nothing = 0x80;

    for (const bool secondField : {false, true}) {
        for (int frame = 0; frame < 3; ++frame) Feed(secondField, nothing, nothing);
    }
}

// Which way text comes on is no part of a page.
void ClosedCaptions::FollowMode(bool secondField, int code, int command)
{
    enum { RESUME_LOADING = 0x20, ROLL_UP_2 = 0x25, ROLL_UP_4 = 0x27, RESUME_DIRECT = 0x29 };

    // 0x14 for the first of a field's two channels, 0x1C for the second; the second field has 0x15 and 0x1D
    // too.
    if ((code & 0x76) != 0x14 || (command & 0x70) != 0x20) return;
    Channel &channel = channels_[(secondField ? 2u : 0u) + (code & 8 ? 1u : 0u)];
    if (command == RESUME_LOADING || command == RESUME_DIRECT) {
        channel.mode = command == RESUME_LOADING ? Mode::POP_ON : Mode::PAINT_ON;
        channel.rollUp = 0;
    }
    if (command >= ROLL_UP_2 && command <= ROLL_UP_4) {
        channel.mode = Mode::ROLL_UP;
        channel.rollUp = command - ROLL_UP_2 + 2;
    }
}

void ClosedCaptions::Feed(bool secondField, std::uint8_t first, std::uint8_t second)
{
    vbi_sliced line = {};

    line.id = secondField ? VBI_SLICED_CAPTION_525_F2 : VBI_SLICED_CAPTION_525_F1;
    line.line = secondField ? 284 : 21;
    line.data[0] = first;
    line.data[1] = second;
    FollowMode(secondField, first & 0x7F, second & 0x7F);
    clock_ += g_frame / 1000; // libzvbi starts anew where a frame seems to be missing
    vbi_decode(vbi_.get(), &line, 1, clock_);
    for (const int channel : std::exchange(arrived_, {})) {
        if (channel >= 1 && channel <= int(channels_.size())) Show(channel);
    }
}

// Whether letters only came to those that are there.
static bool Extends(const std::vector<PageRow> &rows, const std::vector<PageRow> &shown)
{
    return std::all_of(shown.begin(), shown.end(), [&](const PageRow &old) {
        const std::string text = PlainText(old.line);
        return std::any_of(rows.begin(), rows.end(), [&](const PageRow &row) {
            return row.row == old.row && row.first == old.first &&
                   PlainText(row.line).compare(0, text.size(), text) == 0;
        });
    });
}

void ClosedCaptions::Show(int number)
{
    Channel &channel = channels_[std::size_t(number - 1)];
    vbi_page page;

    if (!vbi_fetch_cc_page(vbi_.get(), &page, number, TRUE)) return;
    std::vector<PageRow> rows = ReadRows(page, g_grid, notices_);
    vbi_unref_page(&page);
    if (rows == channel.shown) return;

    Cue cue;
    cue.start = std::llround(time_);
    cue.blocks =
        Blocks(rows, g_grid, channel.mode == Mode::POP_ON ? RowAlignment::AS_THEY_LIE : RowAlignment::LEFT);
    for (Block &block : cue.blocks) block.rollUp = channel.rollUp;
    const bool more =
        channel.mode != Mode::POP_ON && time_ - channel.changed <= g_burst && Extends(rows, channel.shown);
    Cue *const current = channel.timeline.Current();
    if (rows.empty()) {
        channel.timeline.Clear(cue.start);
    } else if (more && current) {
        current->blocks = std::move(cue.blocks);
    } else {
        channel.timeline.Show(std::move(cue), std::nullopt);
    }
    channel.shown = std::move(rows);
    channel.changed = time_;
}

std::vector<Cue> ClosedCaptions::Finish(std::int64_t endOfSource)
{
    std::vector<Cue> chosen;

    Rest();
    for (std::size_t i = 0; i < channels_.size(); ++i) {
        std::vector<Cue> cues = channels_[i].timeline.Finish(endOfSource);
        const std::string name = (i < 4 ? "CC" : "T") + std::to_string(i % 4 + 1);
        if (cues.empty()) continue;
        if (!chosen.empty()) notices_.Say("its captions of channel " + name + " are left out");
        if (chosen.empty() && i > 0) notices_.Say("its captions are those of channel " + name);
        if (chosen.empty()) chosen = std::move(cues);
    }
    return chosen;
}

} // namespace caption
