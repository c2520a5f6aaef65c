// SPDX-License-Identifier: MIT
// The caption service descriptor (ATSC A/65, 6.9.2).
#include "bytes.h"

#include <string.h>

namespace captions
{

KovaCaptionsServiceInfo ReadService(Bytes bytes)
{
    const uint8_t number = bytes.At(3);
    const uint8_t flags = bytes.At(4);
    KovaCaptionsServiceInfo info = {};

    memcpy(info.language, bytes.data, 3);
    info.digital = number >> 7;
    info.number = uint8_t(info.digital ? number & 0x3F : 0);
    info.field = uint8_t(info.digital ? 0 : 1 + (number & 1));
    info.easy_reader = flags >> 7;
    info.wide_aspect_ratio = flags >> 6 & 1;
    info.first_reserved = flags >> 5 & 1;
    return info;
}

} // namespace captions

using namespace captions;

int Kova_Captions_ReadServiceDescriptor(const uint8_t *data, size_t size, KovaCaptionsServiceList *services)
{
    if (!services) return -1;
    memset(services, 0, sizeof *services);
    if (!IsUsable(data, size) || size == 0) return -1;
    const Bytes body = {data, size};
    const unsigned count = body.At(0) & 0x1F;
    if (size != 1 + SERVICE_BYTES * count) return -1;
    for (unsigned i = 0; i < count; i++) {
        services->services[i] = ReadService(body.From(1 + SERVICE_BYTES * i));
    }
    services->count = count;
    return int(count);
}
