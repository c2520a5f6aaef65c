// SPDX-License-Identifier: MIT
#include "generating/recording.h"

#include <algorithm>
#include <cmath>

#include "kova/kova_captions_carriage.h"

namespace caption
{

using namespace encoding;

std::int64_t FrameTime(std::size_t frame)
{
    return Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_29_97, std::int64_t(frame));
}

std::size_t NearestFrame(std::int64_t microseconds)
{
    return std::size_t(std::llround(double(std::max<std::int64_t>(microseconds, 0)) * 30000 / 1001e6));
}

ByteString SentTriplets(const Frame &frame)
{
    ByteString triplets;

    for (unsigned field = 0; field < 2; ++field) {
        if (frame.fields[field]) triplets = triplets + ToTriplets(field + 1, {*frame.fields[field]});
    }
    return triplets + frame.packets;
}

ByteString AllTriplets(const Frame &frame)
{
    const Pair null = NULL_PAIR.front();
    ByteString triplets = ToTriplets(1, {frame.fields[0].value_or(null)}) +
                          ToTriplets(2, {frame.fields[1].value_or(null)}) + frame.packets;

    while (triplets.size() < 3 * g_frameTriplets) triplets = triplets + ByteString{0xFA, 0x00, 0x00};
    return triplets;
}

Box BoxOf(const Window &window)
{
    const double width = window.columns / 42.0;
    const double height = window.rows / 15.0;
    const double x = window.horizontal / (window.relative ? 100.0 : 210.0);
    const double y = window.vertical / (window.relative ? 100.0 : 75.0);
    // The anchor point in steps of half the window's size.
    const unsigned right = window.point % 3;
    const unsigned down = window.point / 3;
    // Windows that hang over the area are moved inside.
    const double left = std::clamp(x - right * width / 2, 0.0, 1 - width);
    const double top = std::clamp(y - down * height / 2, 0.0, 1 - height);

    return {left, top, left + width, top + height};
}

Box BoxOfCells(unsigned row, unsigned column, unsigned columns)
{
    return {column / 32.0, (row - 1) / 15.0, (column + columns) / 32.0, row / 15.0};
}

Frame &Script::Present()
{
    if (recording_.frames.size() <= now_) recording_.frames.resize(now_ + 1);
    return recording_.frames[now_];
}

void Script::Send(const Pairs &pairs, unsigned field)
{
    for (const Pair pair : pairs) {
        Present().fields[field - 1] = pair;
        ++now_;
    }
}

void Script::SendService(const ByteString &bytes, unsigned service)
{
    recording_.services.insert(service);
    for (const ByteString &part : BlockParts(bytes)) SendBlocks(Block(service, part));
}

void Script::SendBlocks(const ByteString &blocks)
{
    SendTriplets(PacketTriplets(Packet(sequence_, blocks)));
    sequence_ = (sequence_ + 1) % 4;
}

void Script::SendTriplets(const ByteString &triplets)
{
    const std::size_t size = 3 * g_packetTriplets;

    for (std::size_t at = 0; at < triplets.size(); at += size, ++now_) {
        const std::size_t end = std::min(at + size, triplets.size());
        Present().packets.assign(triplets.begin() + std::ptrdiff_t(at),
                                 triplets.begin() + std::ptrdiff_t(end));
    }
}

void Script::Show(Scene scene)
{
    recording_.scenes.emplace_back(now_, std::move(scene));
}

void Script::Hold(double seconds)
{
    now_ += NearestFrame(std::llround(seconds * 1e6));
}

void Script::ShowPage(Scene scene, const ByteString &windows, double seconds)
{
    const unsigned all = 0xFF;

    SendService(DeleteWindows(all) + windows);
    Show(std::move(scene));
    SendService(DisplayWindows(all));
    Hold(seconds);
}

Recording Script::Finish()
{
    Present();
    return std::move(recording_);
}

} // namespace caption
