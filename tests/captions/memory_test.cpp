// SPDX-License-Identifier: MIT
// Memory is taken once.
#include "allocations.h"
#include "driver.h"

#include <random>

TEST(Memory, IsTakenAtCreationAndNeverAgain)
{
    Requirement("A1");
    KovaCaptionsOptions options = WithEvents();
    std::mt19937 random(1);
    ByteString bytes(30000);
    for (uint8_t &byte : bytes) byte = uint8_t(random());
    static KovaCaptionsChannel channel;
    static KovaCaptionsService service;
    static KovaCaptionsWindow windows[KOVA_CAPTIONS_WINDOWS];
    KovaCaptionsEvent event;
    char line[KOVA_CAPTIONS_LINE];

    s_counts = true;
    KovaCaptions *const decoder = Kova_Captions_Create(&options);
    s_counts = false;
    EXPECT_GE(s_allocations, 1u);
    EXPECT_LE(s_bytes, Kova_Captions_GetMemorySize(&options));

    s_allocations = 0;
    s_counts = true;
    for (size_t i = 0; i + 300 <= bytes.size(); i += 300) {
        Kova_Captions_PushTriplets(decoder, int64_t(i) * 1000, bytes.data() + i, 100);
        Kova_Captions_PushCcData(decoder, int64_t(i) * 1000, bytes.data() + i, 90);
        Kova_Captions_PushPair(decoder, int64_t(i) * 1000, 1, bytes[i], bytes[i + 1]);
        Kova_Captions_Advance(decoder, int64_t(i) * 1000);
        Kova_Captions_GetChannel(decoder, KOVA_CAPTIONS_CC1, &channel);
        Kova_Captions_GetService(decoder, 1, &service, windows, 0xFF);
        Kova_Captions_NextChange(decoder, KOVA_CAPTIONS_NONE, 7);
        while (Kova_Captions_NextEvent(decoder, &event) == 1)
            Kova_Captions_FormatEvent(&event, line, sizeof line);
    }
    Kova_Captions_Select(decoder, KOVA_CAPTIONS_CC1, 0);
    Kova_Captions_EndRuns(decoder);
    Kova_Captions_Discontinuity(decoder);
    s_counts = false;
    EXPECT_EQ(s_allocations, 0u);

    Kova_Captions_Destroy(decoder);
}

TEST(Memory, IsNotTakenByTheCarriers)
{
    Requirement("A1");
    std::mt19937 random(2);
    ByteString bytes(3000);
    for (uint8_t &byte : bytes) byte = uint8_t(random());
    uint8_t room[300];
    KovaCaptionsTriplets triplets = {room, 100, 0, 0, 0};
    static KovaCaptionsPicture pictures[3], picture;
    KovaCaptionsReorder queue;
    KovaCaptionsCdp cdp;

    s_allocations = 0;
    s_counts = true;
    Kova_Captions_ReadMpeg2(bytes.data(), bytes.size(), &triplets);
    Kova_Captions_ReadAnnexB(KOVA_CAPTIONS_H264, bytes.data(), bytes.size(), &triplets);
    Kova_Captions_ReadCdp(bytes.data(), bytes.size(), &triplets, &cdp);
    Kova_Captions_ReadC608(bytes.data(), bytes.size(), &triplets);
    Kova_Captions_ReorderStart(&queue, pictures, 3);
    Kova_Captions_ReorderPush(&queue, 0, room, 10);
    Kova_Captions_ReorderPop(&queue, 1, &picture);
    s_counts = false;

    EXPECT_EQ(s_allocations, 0u);
}
