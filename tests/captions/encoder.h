// SPDX-License-Identifier: MIT
// The encoder of `kova-caption generate`, and what only tests encode: extended data, and the carriers in video.
// encoder_test.cpp compares both with bytes written by hand.
#ifndef KOVA_TESTS_CAPTIONS_ENCODER_H
#define KOVA_TESTS_CAPTIONS_ENCODER_H

#include "triplet_list.h"

#include "generating/encoder608.h"
#include "generating/encoder708.h"

#include <string>

using namespace caption::encoding;

// A packet of extended data: start, content, end with its checksum.
Pairs Xds(unsigned classCode, unsigned type, const std::string &content);
uint8_t XdsChecksum(unsigned classCode, unsigned type, const std::string &content);

ByteString CcData(const ByteString &triplets);
ByteString UserData(const ByteString &triplets);
ByteString Mpeg2Picture(const ByteString &triplets);
// A NAL unit of H.264, emulation prevention bytes put in.
ByteString H264Sei(const ByteString &triplets);

#endif
