// SPDX-License-Identifier: MIT
// Captions on a timeline of video frames, and what the picture shows beside them. There are 30000/1001 frames a
// second.
#ifndef KOVA_CAPTION_GENERATING_RECORDING_H
#define KOVA_CAPTION_GENERATING_RECORDING_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/color.h"
#include "generating/encoder608.h"
#include "generating/encoder708.h"

namespace caption
{

// The 9600 bit/s of captions are 20 triplets a frame: one for each field of CEA-608, 18 for CEA-708. [CTA-708 4.3]
inline constexpr std::size_t g_frameTriplets = 20;
inline constexpr std::size_t g_packetTriplets = 18;

struct Frame {
    std::array<std::optional<encoding::Pair>, 2>
        fields;                   // CEA-608, a pair of each field; none: nothing is sent
    encoding::ByteString packets; // triplets of CEA-708, g_packetTriplets at most
};

// A rectangle of the picture, drawn by its outline or filled. The safe title area is (0, 0) to (1, 1).
struct Box {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    std::optional<Color> fill = {};
};

// What the picture shows: text above and below the safe title area, where no caption covers it, and rectangles that
// captions must match.
struct Scene {
    std::string text;
    std::vector<Box> boxes = {};
};

struct Recording {
    std::string title;
    std::vector<Frame> frames;
    std::vector<std::pair<std::size_t, Scene>> scenes; // each with its first frame, in order
    std::set<unsigned> services;                       // of CEA-708
    std::string language = "und";                      // ISO 639-2
};

std::int64_t FrameTime(std::size_t frame); // microseconds
std::size_t NearestFrame(std::int64_t microseconds);

// The triplets of a frame: those that carry something, or all that the bandwidth has, with fillers.
encoding::ByteString SentTriplets(const Frame &frame);
encoding::ByteString AllTriplets(const Frame &frame);

// Where a window of a picture of 16:9 lies [CTA-708 8.2], and the cells of CEA-608: a row from 1, a column from 0.
Box BoxOf(const encoding::Window &window);
Box BoxOfCells(unsigned row, unsigned column, unsigned columns);

// Writes a recording in the order of time.
class Script
{
public:
    explicit Script(const std::string &title)
    {
        recording_.title = title;
        recording_.language = "eng";
    }

    // Each sends from the present frame on, a pair or a packet a frame, and ends at the frame after the last.
    void Send(const encoding::Pairs &pairs, unsigned field = 1);
    void SendService(const encoding::ByteString &bytes,
                     unsigned service = 1);                  // in as many packets as it takes
    void SendBlocks(const encoding::ByteString &blocks);     // in one packet
    void SendTriplets(const encoding::ByteString &triplets); // as they are

    // Loads hidden windows of service 1 in place of all others, shows them at once, and holds them.
    void ShowPage(Scene scene, const encoding::ByteString &windows, double seconds);

    // The number that the next packet gets. Setting it makes a gap.
    unsigned sequence() const
    {
        return sequence_;
    }
    void SetSequence(unsigned sequence)
    {
        sequence_ = sequence;
    }

    void Show(Scene scene);
    void Hold(double seconds);

    Recording Finish();

private:
    Frame &Present();

    Recording recording_;
    std::size_t now_ = 0;
    unsigned sequence_ = 0;
};

} // namespace caption

#endif
