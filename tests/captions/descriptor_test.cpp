// SPDX-License-Identifier: MIT
#include "requirement.h"
#include "triplet_list.h"

static int Read(const ByteString &body, KovaCaptionsServiceList &services)
{
    return Kova_Captions_ReadServiceDescriptor(body.data(), body.size(), &services);
}

TEST(ServiceDescriptor, GivesLanguageAndFlagsOfEachService)
{
    Requirement("T29");
    KovaCaptionsServiceList services;

    // digital, service 1, wide; digital, service 6, easy reader; line 21, field 2
    ASSERT_EQ(Read(Hex("e3  65 6e 67 c1 7f ff  73 70 61 c6 bf ff  66 72 61 7f 3f ff"), services), 3);

    ASSERT_EQ(services.count, 3u);
    EXPECT_STREQ(services.services[0].language, "eng");
    EXPECT_EQ(services.services[0].digital, 1);
    EXPECT_EQ(services.services[0].number, 1);
    EXPECT_EQ(services.services[0].field, 0);
    EXPECT_EQ(services.services[0].easy_reader, 0);
    EXPECT_EQ(services.services[0].wide_aspect_ratio, 1);
    EXPECT_STREQ(services.services[1].language, "spa");
    EXPECT_EQ(services.services[1].number, 6);
    EXPECT_EQ(services.services[1].easy_reader, 1);
    EXPECT_EQ(services.services[1].wide_aspect_ratio, 0);
    EXPECT_STREQ(services.services[2].language, "fra");
    EXPECT_EQ(services.services[2].digital, 0);
    EXPECT_EQ(services.services[2].number, 0);
    EXPECT_EQ(services.services[2].field, 2);
}

TEST(ServiceDescriptor, TellsTheFieldOfLine21)
{
    Requirement("T29");
    KovaCaptionsServiceList services;

    // the five reserved bits 0 in the first, 1 in the second
    ASSERT_EQ(Read(Hex("e2  65 6e 67 00 00 00  65 6e 67 7e ff ff"), services), 2);

    EXPECT_EQ(services.services[0].field, 1);
    EXPECT_EQ(services.services[1].field, 1);
    EXPECT_EQ(services.services[1].easy_reader, 1);
}

TEST(ServiceDescriptor, HandsOnTheBitThatKoreanServicesUse)
{
    KovaCaptionsServiceList services;

    ASSERT_EQ(Read(Hex("e2  6b 6f 72 c1 5f ff  6b 6f 72 c2 7f ff"), services), 2);

    EXPECT_STREQ(services.services[0].language, "kor");
    EXPECT_EQ(services.services[0].first_reserved, 0);
    EXPECT_EQ(services.services[1].first_reserved, 1);
}

TEST(ServiceDescriptor, HoldsServiceNumbersUpTo63)
{
    KovaCaptionsServiceList services;

    ASSERT_EQ(Read(Hex("01  65 6e 67 ff 7f ff"), services), 1);

    EXPECT_EQ(services.services[0].number, 63);
}

TEST(ServiceDescriptor, MayAnnounceNone)
{
    KovaCaptionsServiceList services;

    EXPECT_EQ(Read(Hex("e0"), services), 0);
}

TEST(ServiceDescriptor, HoldsAsManyAsItsCountCanSay)
{
    KovaCaptionsServiceList services;
    ByteString body = Hex("ff");
    for (int i = 0; i < 31; i++) body = body + Hex("65 6e 67 c1 7f ff");

    EXPECT_EQ(Read(body, services), 31);
}

TEST(ServiceDescriptor, OfAnotherLengthIsRefused)
{
    Requirement("T29");
    KovaCaptionsServiceList services;

    EXPECT_EQ(Read(Hex("e2  65 6e 67 c1 7f ff"), services), -1);
    EXPECT_EQ(services.count, 0u);
    EXPECT_EQ(Read(Hex("e1  65 6e 67 c1 7f"), services), -1);
    EXPECT_EQ(Read(Hex("e1  65 6e 67 c1 7f ff 00"), services), -1);
    EXPECT_EQ(Read({}, services), -1);
    EXPECT_EQ(Kova_Captions_ReadServiceDescriptor(nullptr, 0, nullptr), -1);
}
