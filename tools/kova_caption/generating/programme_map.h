// SPDX-License-Identifier: MIT
// Announces caption services in the programme map (PMT) of a transport stream, which libavformat cannot.
#ifndef KOVA_CAPTION_GENERATING_PROGRAMME_MAP_H
#define KOVA_CAPTION_GENERATING_PROGRAMME_MAP_H

#include <cstddef>
#include <cstdint>

#include "generating/bytes.h"
#include "generating/recording.h"

namespace caption
{

inline constexpr std::size_t g_transportPacket = 188; // bytes

// The body of a caption service descriptor for everything that the recording sends.
encoding::ByteString ServiceDescriptor(const Recording &recording);

// If the packet holds the programme map as libavformat writes it, in one section on PID 1000 (hexadecimal), adds a
// caption service descriptor to its first stream.
void AnnounceServices(std::uint8_t *packet, const encoding::ByteString &descriptor);

} // namespace caption

#endif
