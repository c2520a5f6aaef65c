// SPDX-License-Identifier: MIT
// Bytes as what carries captions. The first byte chooses the carrier; the second is the room for triplets.
#include "kova/kova_captions_carriage.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize);

static void Demand(bool bCondition, const char *pcWhat)
{
    if (bCondition) return;
    fprintf(stderr, "The carriage is wrong: %s\n", pcWhat);
    abort();
}

static int Read(unsigned uiCarrier, const uint8_t *pucData, size_t uiSize, KovaCaptionsTriplets *pTriplets)
{
    KovaCaptionsCdp cdp;

    switch (uiCarrier) {
    case 0:
        return Kova_Captions_ReadMpeg2(pucData, uiSize, pTriplets);
    case 1:
        return Kova_Captions_ReadAnnexB(KOVA_CAPTIONS_H264, pucData, uiSize, pTriplets);
    case 2:
        return Kova_Captions_ReadAnnexB(KOVA_CAPTIONS_H265, pucData, uiSize, pTriplets);
    case 3:
    case 4:
    case 5:
    case 6:
        return Kova_Captions_ReadLengthPrefixed(KOVA_CAPTIONS_H264, uiCarrier - 2, pucData, uiSize,
                                                pTriplets);
    case 7:
        return Kova_Captions_ReadNalUnit(KOVA_CAPTIONS_H264, pucData, uiSize, pTriplets);
    case 8:
        return Kova_Captions_ReadNalUnit(KOVA_CAPTIONS_H265, pucData, uiSize, pTriplets);
    case 9:
        return Kova_Captions_ReadSeiPayload(pucData, uiSize, pTriplets);
    case 10:
        return Kova_Captions_ReadUserData(pucData, uiSize, pTriplets);
    case 11:
        return Kova_Captions_ReadCcData(pucData, uiSize, pTriplets);
    case 12:
        return Kova_Captions_ReadCdp(pucData, uiSize, pTriplets, &cdp);
    case 13:
        return Kova_Captions_ReadAncillary(pucData, uiSize, pTriplets, &cdp);
    case 14:
        return Kova_Captions_ReadC608(pucData, uiSize, pTriplets);
    default:
        return Kova_Captions_ReadC708(pucData, uiSize, pTriplets, &cdp);
    }
}

static void Carry(unsigned uiCarrier, size_t uiRoom, const uint8_t *pucData, size_t uiSize)
{
    const std::unique_ptr<uint8_t[]> room(new uint8_t[3 * uiRoom]);
    KovaCaptionsTriplets triplets = {room.get(), uiRoom, 0, 0, 0};

    const int iFound = Read(uiCarrier, pucData, uiSize, &triplets);
    Demand(triplets.count <= uiRoom, "more triplets than there is room");
    Demand(iFound == (iFound < 0 ? -1 : int(triplets.count)), "a result that is not the number of triplets");
    Demand(iFound >= 0 || triplets.count + triplets.dropped == 0, "triplets of what is refused");
    // A triplet takes three bytes, and a pair of CEA-608 two, with an invalid triplet beside it.
    Demand(triplets.count + triplets.dropped <= uiSize, "more triplets than bytes");
    Demand(triplets.dropped == 0 || triplets.count == uiRoom, "a triplet dropped though there was room");
}

static void Describe(const uint8_t *pucData, size_t uiSize)
{
    KovaCaptionsServiceList services;
    const int iCount = Kova_Captions_ReadServiceDescriptor(pucData, uiSize, &services);

    Demand(iCount < 0 || (unsigned(iCount) == services.count && uiSize == 1 + 6 * services.count),
           "services that are not there");
    for (unsigned i = 0; i < services.count; i++)
        Demand(services.services[i].number < 64, "a service above 63");
}

// Every byte is a picture, 0 to 0.9 s after a time that steps on. What comes out is all that went in, and in order.
static void Reorder(size_t uiRoom, const uint8_t *pucData, size_t uiSize)
{
    const std::unique_ptr<KovaCaptionsPicture[]> pictures(new KovaCaptionsPicture[uiRoom]);
    KovaCaptionsReorder queue;
    KovaCaptionsPicture picture;
    uint64_t ulOut = 0;

    Demand(Kova_Captions_ReorderStart(&queue, pictures.get(), uiRoom) == 0, "a queue that does not start");
    for (size_t i = 0; i < uiSize; i++) {
        Demand(Kova_Captions_ReorderPush(&queue, int64_t(i) * 50000 + int64_t(pucData[i] % 10) * 100000,
                                         pucData + i, 0) == 0,
               "a queue that is full too soon");
        while (Kova_Captions_ReorderPop(&queue, 0, &picture) == 1) ulOut++;
        Demand(queue.count < uiRoom, "a queue that stays full");
    }
    int64_t lLast = INT64_MIN;
    while (Kova_Captions_ReorderPop(&queue, 1, &picture) == 1) {
        Demand(picture.time >= lLast, "pictures out of order");
        lLast = picture.time;
        ulOut++;
    }
    Demand(ulOut == uiSize, "a picture lost or made");
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize)
{
    if (uiSize < 2) return 0;
    const unsigned uiCarrier = pData[0] % 18;
    const size_t uiRoom = pData[1], uiBytes = uiSize - 2;
    // In a block of exactly its size, so that nothing before or after it is read unseen.
    const std::unique_ptr<uint8_t[]> bytes(new uint8_t[uiBytes]);
    memcpy(bytes.get(), pData + 2, uiBytes);

    if (uiCarrier < 16) Carry(uiCarrier, uiRoom, bytes.get(), uiBytes);
    if (uiCarrier == 16) Describe(bytes.get(), uiBytes);
    if (uiCarrier == 17) Reorder(1 + uiRoom % 20, bytes.get(), uiBytes);
    return 0;
}
