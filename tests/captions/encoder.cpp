// SPDX-License-Identifier: MIT
#include "encoder.h"

#include <cstdlib>

// What a test asks for by mistake ends it.
static void Demand(bool condition)
{
    if (!condition) abort();
}

uint8_t XdsChecksum(unsigned classCode, unsigned type, const std::string &content)
{
    unsigned sum = classCode + type + 0x0F;

    for (const char character : content) sum += uint8_t(character);
    return uint8_t(0x80 - sum % 0x80) & 0x7F;
}

Pairs Xds(unsigned classCode, unsigned type, const std::string &content)
{
    return Raw(classCode, type) + Text(content) + Raw(0x0F, XdsChecksum(classCode, type, content));
}

ByteString CcData(const ByteString &triplets)
{
    Demand(triplets.size() % 3 == 0 && triplets.size() <= 93);
    return Bytes({0xC0 | unsigned(triplets.size()) / 3, 0xFF}) + triplets + Byte(0xFF);
}

ByteString UserData(const ByteString &triplets)
{
    return Ascii("GA94") + Byte(3) + CcData(triplets);
}

ByteString Mpeg2Picture(const ByteString &triplets)
{
    return Bytes({0, 0, 1, 0, 0, 0x0F, 0xFF, 0xF8, 0, 0, 1, 0xB2}) + UserData(triplets) +
           Bytes({0, 0, 1, 1, 0x13, 0xFA});
}

ByteString H264Sei(const ByteString &triplets)
{
    const ByteString payload = Bytes({0xB5, 0x00, 0x31}) + UserData(triplets);
    const ByteString plain = Bytes({4, unsigned(payload.size())}) + payload + Byte(0x80);
    ByteString nal = Byte(6);
    unsigned zeros = 0;

    for (const uint8_t byte : plain) {
        if (zeros == 2 && byte <= 3) {
            nal.push_back(3);
            zeros = 0;
        }
        nal.push_back(byte);
        zeros = byte == 0 ? zeros + 1 : 0;
    }
    return nal;
}
