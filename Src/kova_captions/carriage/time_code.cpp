// SPDX-License-Identifier: MIT
// Frame rates and time codes (SMPTE ST 12-1).
#include "bytes.h"

namespace captions
{

namespace
{

struct Rate {
    // Frames that a second of the time code counts.
    uint8_t nominal;
    // Labels that drop-frame counting leaves out of a minute; 0: there is no such counting at this rate.
    uint8_t dropped;
    // Microseconds a frame, times `nominal`.
    int64_t microseconds;
};

} // namespace

// By KovaCaptionsFrameRate.
static const Rate RATES[] = {{0, 0, 0},        {24, 0, 1001000}, {24, 0, 1000000},
                             {25, 0, 1000000}, {30, 2, 1001000}, {30, 2, 1000000},
                             {50, 0, 1000000}, {60, 4, 1001000}, {60, 4, 1000000}};

static const Rate &RateOf(KovaCaptionsFrameRate rate)
{
    return RATES[unsigned(rate) <= KOVA_CAPTIONS_RATE_60 ? unsigned(rate) : 0];
}

} // namespace captions

using namespace captions;

int64_t Kova_Captions_CountFrames(KovaCaptionsFrameRate rate, const KovaCaptionsTimeCode *timeCode)
{
    if (!timeCode) return -1;
    const Rate &counting = RateOf(rate);
    const int64_t hours = timeCode->hours, minutes = timeCode->minutes, seconds = timeCode->seconds;
    int64_t frames = timeCode->frames;
    if (hours > 99 || minutes > 59 || seconds > 59 || frames >= counting.nominal) return -1;
    if (timeCode->drop && counting.dropped == 0) return -1;
    const int64_t allMinutes = 60 * hours + minutes;
    const int64_t dropped = timeCode->drop ? counting.dropped : 0;
    if (minutes % 10 && seconds == 0 && frames < dropped) frames = dropped;
    return (60 * allMinutes + seconds) * counting.nominal + frames - dropped * (allMinutes - allMinutes / 10);
}

int64_t Kova_Captions_FramesToTime(KovaCaptionsFrameRate rate, int64_t frames)
{
    constexpr int64_t MOST_FRAMES = int64_t(1) << 40;
    const Rate &counting = RateOf(rate);

    if (counting.nominal == 0 || frames < 0 || frames > MOST_FRAMES) return -1;
    return (frames * counting.microseconds + counting.nominal / 2) / counting.nominal;
}
