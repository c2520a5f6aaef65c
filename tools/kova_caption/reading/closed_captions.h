// SPDX-License-Identifier: MIT
// Closed captions as analogue television had them: two bytes in each field.
#ifndef KOVA_CAPTION_READING_CLOSED_CAPTIONS_H
#define KOVA_CAPTION_READING_CLOSED_CAPTIONS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <vector>

#include "base/notices.h"
#include "cues/timeline.h"
#include "reading/cell_page.h"

namespace caption
{

// Follows the channels of one source.
class ClosedCaptions
{
public:
    explicit ClosedCaptions(Notices &notices);
    ClosedCaptions(const ClosedCaptions &) = delete;
    ClosedCaptions &operator=(const ClosedCaptions &) = delete;

    // Threes of bytes: which field, and the two it carries. Each field has one of them in a frame, the first
    // one at this time in milliseconds.
    void Take(const std::uint8_t *data, std::size_t size, std::int64_t time);

    // The cues of the first channel that has any.
    std::vector<Cue> Finish(std::int64_t endOfSource);

private:
    enum class Mode { POP_ON, ROLL_UP, PAINT_ON };

    struct Channel {
        Mode mode = Mode::POP_ON;
        int rollUp = 0;
        std::vector<PageRow> shown;
        double changed = 0; // when it last was
        Timeline timeline;
    };

    static void OnEvent(vbi_event *event, void *captions);
    void Rest();
    void Feed(bool secondField, std::uint8_t first, std::uint8_t second);
    void FollowMode(bool secondField, int code, int command);
    void Show(int number);

    Notices &notices_;
    std::unique_ptr<vbi_decoder, void (*)(vbi_decoder *)> vbi_;
    std::array<Channel, 8> channels_; // four for captions, four for other text
    std::set<int> arrived_;           // numbers of channels that have changed, from 1
    double time_ = -1e15;
    double clock_ = 0; // what libzvbi is told, in seconds
};

} // namespace caption

#endif
