// SPDX-License-Identifier: MIT
// What changed since somebody looked: revisions, times, activity; and arguments that cannot be used.
#include "driver.h"

static KovaCaptionsStatus Status(const Driver &decoder, unsigned source)
{
    KovaCaptionsStatus status = {};

    EXPECT_EQ(Kova_Captions_GetStatus(*decoder, uint8_t(source), &status), 0);
    return status;
}

// Whether an action changes anything, and anything visible, of a source.
struct Changes {
    bool any, visible;
};

template <typename Action> static Changes ChangesOf(Driver &decoder, unsigned source, Action action)
{
    const KovaCaptionsStatus before = Status(decoder, source);
    const int64_t time = decoder.Now();

    action();
    const KovaCaptionsStatus after = Status(decoder, source);
    const bool visible = after.visible_revision != before.visible_revision;
    EXPECT_TRUE(visible ? after.visible_since >= time : after.visible_since == before.visible_since);
    return {after.revision != before.revision, visible};
}

TEST(Revisions, OfPopOnCaptionsCountAsVisibleWhatIsOnDisplay)
{
    Driver decoder;
    const auto send = [&](const Pairs &pairs) {
        return ChangesOf(decoder, KOVA_CAPTIONS_CC1, [&] { decoder.Send(pairs); });
    };

    const Changes loading = send(Code(RCL) + Pac(15) + Text("HI"));
    EXPECT_TRUE(loading.any);
    EXPECT_FALSE(loading.visible);
    EXPECT_TRUE(send(Code(EOC)).visible);
    EXPECT_FALSE(send(Code(RCL) + Pac(1) + Text("NEXT")).visible);
    EXPECT_FALSE(send(Code(ENM)).visible);
    EXPECT_TRUE(send(Code(EDM)).visible);
    // nothing was left to erase
    EXPECT_FALSE(send(NULL_PAIR + Code(AOF) + Code(EDM)).visible);
    EXPECT_FALSE(send(NULL_PAIR).any);
}

TEST(Revisions, OfAChannelStayWhileOthersReceive)
{
    Driver decoder;
    decoder.Send(Code(RDC) + Pac(15) + Text("HI"));

    const Changes changes = ChangesOf(decoder, KOVA_CAPTIONS_CC1, [&] {
        decoder.Send(Code(RDC, 2) + Pac(15, WHITE, false, 2) + Text("HI"));
        decoder.SendService(1, Define(Window(0)) + Ascii("HI"));
    });

    EXPECT_FALSE(changes.any);
}

TEST(Revisions, OfRowsChangeWithTheirRowAlone)
{
    Driver decoder;
    decoder.Send(Code(RDC) + Pac(3) + Text("THREE") + Pac(9) + Text("NINE"));
    const auto before = decoder.Channel(KOVA_CAPTIONS_CC1);

    decoder.Send(Text("!"));

    const auto after = decoder.Channel(KOVA_CAPTIONS_CC1);
    for (int row = 0; row < KOVA_CAPTIONS_CHANNEL_ROWS; row++) {
        EXPECT_EQ(after->row_revision[row] != before->row_revision[row], row == 8) << row;
    }
}

TEST(Revisions, OfARowChangeWhenSomethingIsErasedFromIt)
{
    for (const Misc code : {BS, DER}) {
        Driver decoder;
        decoder.Send(Code(RDC) + Pac(3) + Text("THREE") + Pac(9) + Text("NINE") + PacIndent(9, 0) + Tab(2));
        const auto before = decoder.Channel(KOVA_CAPTIONS_CC1);

        decoder.Send(Code(code));

        const auto after = decoder.Channel(KOVA_CAPTIONS_CC1);
        EXPECT_NE(decoder.Displayed(), "3 THREE|9 NINE");
        for (int row = 0; row < KOVA_CAPTIONS_CHANNEL_ROWS; row++) {
            EXPECT_EQ(after->row_revision[row] != before->row_revision[row], row == 8) << row;
        }
    }
}

TEST(Revisions, OfWindowsCountAsVisibleWhatIsOnDisplay)
{
    Driver decoder;
    const auto send = [&](const ByteString &bytes) {
        return ChangesOf(decoder, 1, [&] { decoder.SendService(1, bytes); });
    };

    const Changes hidden = send(Define(Window(0).Hidden()) + Ascii("HIDDEN"));
    EXPECT_TRUE(hidden.any);
    EXPECT_FALSE(hidden.visible);
    EXPECT_TRUE(send(DisplayWindows(0x01)).visible);
    EXPECT_FALSE(send(DisplayWindows(0x01)).visible);
    const Changes pen = send(SetPenLocation(0, 0));
    EXPECT_TRUE(pen.any);
    EXPECT_FALSE(pen.visible);
    EXPECT_FALSE(send(SetPenAttributes({})).visible);
    EXPECT_TRUE(send(Ascii("x")).visible);
    EXPECT_FALSE(send(Define(Window(1).Hidden())).visible);
    EXPECT_FALSE(send(DeleteWindows(0x02)).visible);
    // encoders repeat definitions
    EXPECT_FALSE(send(Define(Window(0)) + Bytes({ETX})).visible);
    EXPECT_TRUE(send(ClearWindows(0x01)).visible);
    EXPECT_FALSE(send(ClearWindows(0x01)).visible);
    EXPECT_TRUE(send(HideWindows(0x01)).visible);
    EXPECT_FALSE(send(Bytes({RST})).visible);
}

TEST(Revisions, OfADefinitionCountAsVisibleWhatItChangesOnDisplay)
{
    Driver decoder;
    const auto define = [&](const Window &window) {
        return ChangesOf(decoder, 1, [&] { decoder.SendService(1, Define(window)); });
    };
    decoder.SendService(1, Define(Window(0).Hidden()) + Ascii("TEXT") + DisplayWindows(0x01));

    const Changes shown = define(Window(0));
    EXPECT_TRUE(shown.any);
    EXPECT_FALSE(shown.visible) << "the window was visible, though its definition had said hidden";
    EXPECT_FALSE(define(Window(0)).visible);
    EXPECT_FALSE(define(Window(0).Locks(0, 0)).visible);
    EXPECT_FALSE(define(Window(0).Styles(0, 2)).visible) << "a pen shows with the next character";
    EXPECT_TRUE(define(Window(0).Styles(2, 1)).visible);
    EXPECT_TRUE(define(Window(0)).visible);
    EXPECT_TRUE(define(Window(0).Priority(1)).visible);
    EXPECT_TRUE(define(Window(0).Priority(1).Relative()).visible);
    EXPECT_TRUE(define(Window(0).Anchor(1, 0, 0)).visible);
    EXPECT_TRUE(define(Window(0).Anchor(1, 2, 0)).visible);
    EXPECT_TRUE(define(Window(0).Anchor(1, 2, 3)).visible);
    EXPECT_TRUE(define(Window(0).Anchor(1, 2, 3).Rows(2)).visible);
    EXPECT_TRUE(define(Window(0).Anchor(1, 2, 3).Rows(2).Columns(30)).visible);
    EXPECT_TRUE(define(Window(0).Anchor(1, 2, 3).Rows(2).Columns(30).Hidden()).visible);
    EXPECT_FALSE(define(Window(0).Hidden()).visible);
}

TEST(Revisions, OfWindowRowsChangeWithTheirRowAlone)
{
    Driver decoder;
    decoder.SendService(1, Define(Window(0).Rows(4)) + Ascii("A\rB\rC"));
    const auto before = decoder.Window(0);

    decoder.SendService(1, SetPenLocation(1, 0) + Ascii("x"));

    const auto after = decoder.Window(0);
    EXPECT_NE(after->revision, before->revision);
    for (int row = 0; row < KOVA_CAPTIONS_WINDOW_ROWS; row++) {
        EXPECT_EQ(after->row_revision[row] != before->row_revision[row], row == 1) << row;
    }
}

TEST(Revisions, OfTheDecoderChangeWithAnySource)
{
    Driver decoder;
    const auto changes = [&](const ByteString &triplets) {
        const uint32_t before = Kova_Captions_Revision(*decoder);
        decoder.SendTriplets(triplets);
        return Kova_Captions_Revision(*decoder) != before;
    };

    EXPECT_TRUE(changes(ToTriplets(1, Raw(0x14, RDC))));
    EXPECT_TRUE(changes(ToTriplets(1, Text("A"))));
    EXPECT_TRUE(changes(PacketTriplets(Packet(0, Block(9, Define(Window(0)))))));
    EXPECT_TRUE(changes(ToTriplets(2, Xds(1, 3, "NAME"))));
    EXPECT_FALSE(changes(Hex("fa 00 00  fc 80 80  f9 80 80")));
    EXPECT_EQ(Kova_Captions_Revision(nullptr), 0u);
}

TEST(FlashSince, TellsWhetherSomethingVisibleFlashes)
{
    PenColor foreground, background;
    foreground.foregroundOpacity = KOVA_CAPTIONS_FLASH;
    background.backgroundOpacity = KOVA_CAPTIONS_FLASH;
    WindowAttributes fill;
    fill.fillOpacity = KOVA_CAPTIONS_FLASH;
    const ByteString looks[] = {SetPenColor(foreground), SetPenColor(background), SetWindowAttributes(fill)};

    for (const ByteString &look : looks) {
        Driver decoder;
        decoder.SendService(1, Define(Window(0).Hidden()) + look + Ascii("A"));
        EXPECT_EQ(Status(decoder, 1).flash_since, KOVA_CAPTIONS_NO_TIME);
        const int64_t shown = decoder.Now();
        decoder.SendService(1, DisplayWindows(0x01));
        EXPECT_EQ(Status(decoder, 1).flash_since, shown);
        EXPECT_EQ(Kova_Captions_NextChange(*decoder, 1, KOVA_CAPTIONS_CHANGE_FLASH),
                  shown + KOVA_CAPTIONS_FLASH_HALF);
        EXPECT_EQ(Kova_Captions_NextChange(*decoder, 2, KOVA_CAPTIONS_CHANGE_FLASH), KOVA_CAPTIONS_NEVER);
        decoder.SendService(1, HideWindows(0x01));
        EXPECT_EQ(Status(decoder, 1).flash_since, KOVA_CAPTIONS_NO_TIME);
    }
}

TEST(FlashSince, TellsWhetherACodeOfLine21LetsSomethingFlash)
{
    Driver decoder;
    const auto flashSince = [&] { return Status(decoder, KOVA_CAPTIONS_CC1).flash_since; };

    decoder.Send(Code(RDC) + Pac(15) + Text("AB "));
    decoder.Send(Code(FON));
    EXPECT_EQ(flashSince(), KOVA_CAPTIONS_NO_TIME) << "nothing is to the right of the code";
    decoder.Send(Pac(14) + Text("CD"));
    EXPECT_EQ(flashSince(), KOVA_CAPTIONS_NO_TIME) << "the other row does not flash";

    // the code takes the place of the C, and D is to the right of it
    decoder.Send(Pac(14));
    const int64_t code = decoder.Now();
    decoder.Send(Code(FON));
    EXPECT_EQ(flashSince(), code);

    EXPECT_EQ(Kova_Captions_Select(*decoder, KOVA_CAPTIONS_CC1, 0), 0);
    EXPECT_EQ(flashSince(), KOVA_CAPTIONS_NO_TIME) << "the viewer's choice erased it";
}

TEST(FlashSince, TellsOfACodeThatIsPutBeforeText)
{
    Driver decoder;
    decoder.Send(Code(RDC) + Pac(14) + Text("CD") + Pac(14));
    const int64_t code = decoder.Now();

    decoder.Send(Code(FON));

    EXPECT_EQ(Status(decoder, KOVA_CAPTIONS_CC1).flash_since, code);
}

TEST(NextChange, IsTheOneOfTheChannelAskedFor)
{
    Driver decoder;
    decoder.Send(Code(RDC, 2) + Pac(15, WHITE, false, 2) + Text("A"));
    const int64_t last = decoder.Now() - FRAME;

    EXPECT_EQ(Kova_Captions_NextChange(*decoder, KOVA_CAPTIONS_CC2, KOVA_CAPTIONS_CHANGE_STATE),
              last + 16 * SECOND);
    EXPECT_EQ(Kova_Captions_NextChange(*decoder, KOVA_CAPTIONS_CC1, KOVA_CAPTIONS_CHANGE_STATE),
              KOVA_CAPTIONS_NEVER);
    EXPECT_EQ(Kova_Captions_NextChange(*decoder, KOVA_CAPTIONS_CC3, KOVA_CAPTIONS_CHANGE_STATE),
              KOVA_CAPTIONS_NEVER);
}

TEST(VisibleSince, IsTheTimeOfTheLastVisibleChange)
{
    Driver decoder;
    EXPECT_EQ(Status(decoder, KOVA_CAPTIONS_CC1).visible_since, KOVA_CAPTIONS_NO_TIME);
    EXPECT_EQ(Status(decoder, 1).visible_since, KOVA_CAPTIONS_NO_TIME);

    decoder.Send(Code(RDC) + Pac(15));
    const int64_t text = decoder.Now();
    decoder.Send(Text("A"));
    decoder.Wait(SECOND);
    EXPECT_EQ(Status(decoder, KOVA_CAPTIONS_CC1).visible_since, text);

    // a timeout counts from when it was due, not from when somebody asked
    decoder.Wait(100 * SECOND);
    EXPECT_EQ(Status(decoder, KOVA_CAPTIONS_CC1).visible_since, text + 16 * SECOND);
}

TEST(Time, ThatGoesBackALittleCountsAsTheLatest)
{
    Driver decoder;
    const ByteString triplet = ToTriplets(1, Text("AB"));
    decoder.Send(Code(RDC) + Pac(15));
    const int64_t latest = decoder.Now();
    decoder.Wait(0);

    EXPECT_EQ(Kova_Captions_PushTriplets(*decoder, latest - SECOND / 2, triplet.data(), 1), 0);

    EXPECT_EQ(decoder.Displayed(), "15 AB");
    EXPECT_EQ(Status(decoder, KOVA_CAPTIONS_CC1).visible_since, latest);
}

TEST(Activity, TellsWhatCarriesCaptions)
{
    Driver decoder;
    KovaCaptionsActivity activity;
    ASSERT_EQ(Kova_Captions_GetActivity(*decoder, &activity), 0);
    EXPECT_EQ(activity.services_with_data + activity.services_with_text + activity.channels_with_data +
                  activity.channels_with_text,
              0u);

    decoder.SendBlocks(Block(1, Define(Window(0)) + Ascii("A")) + Block(2, Define(Window(0))) +
                       Block(63, Ascii("A")) + Byte(0x60));
    decoder.Send(1, Code(RDC, 1) + Text("A"));
    decoder.Send(1, Code(RCL, 2));
    decoder.Send(2, Code(TR, 4) + Text("A") + NULL_PAIR);

    ASSERT_EQ(Kova_Captions_GetActivity(*decoder, &activity), 0);
    // service 3 had an empty block
    EXPECT_EQ(activity.services_with_data, uint64_t(1) << 63 | 0x06);
    EXPECT_EQ(activity.services_with_text, uint64_t(1) << 63 | 0x02);
    EXPECT_EQ(activity.channels_with_data, 0x83);
    EXPECT_EQ(activity.channels_with_text, 0x81);
}

TEST(Activity, TellsThatCharactersOfTwoBytesAreText)
{
    // a special character and an extended one
    for (const Pairs &character : {Twice(0x11, 0x37), Twice(0x12, 0x21)}) {
        Driver decoder;
        KovaCaptionsActivity activity;
        decoder.Send(Code(RDC) + character);
        ASSERT_EQ(Kova_Captions_GetActivity(*decoder, &activity), 0);
        EXPECT_EQ(activity.channels_with_text, 0x01);
    }
}

TEST(Arguments, ThatCannotBeUsedAreRefused)
{
    Driver decoder;
    KovaCaptionsChannel channel;
    KovaCaptionsService service;
    KovaCaptionsStatus status;
    KovaCaptionsEvent event;
    const uint8_t triplet[] = {0xFC, 0x94, 0x20};

    EXPECT_EQ(Kova_Captions_PushTriplets(nullptr, 0, triplet, 1), -1);
    EXPECT_EQ(Kova_Captions_PushTriplets(*decoder, 0, nullptr, 1), -1);
    EXPECT_EQ(Kova_Captions_PushTriplets(*decoder, 0, nullptr, 0), 0);
    EXPECT_EQ(Kova_Captions_PushCcData(nullptr, 0, triplet, 3), -1);
    EXPECT_EQ(Kova_Captions_PushCcData(*decoder, 0, nullptr, 3), -1);
    EXPECT_EQ(Kova_Captions_PushPair(nullptr, 0, 1, 0x94, 0x20), -1);
    EXPECT_EQ(Kova_Captions_Advance(nullptr, 0), -1);
    EXPECT_EQ(Kova_Captions_Discontinuity(nullptr), -1);
    EXPECT_EQ(Kova_Captions_GetChannel(*decoder, 1, &channel), -1);
    EXPECT_EQ(Kova_Captions_GetChannel(*decoder, KOVA_CAPTIONS_XDS, &channel), -1);
    EXPECT_EQ(Kova_Captions_GetChannel(*decoder, KOVA_CAPTIONS_CC1, nullptr), -1);
    EXPECT_EQ(Kova_Captions_GetService(*decoder, 0, &service, nullptr, 0), -1);
    EXPECT_EQ(Kova_Captions_GetService(*decoder, 64, &service, nullptr, 0), -1);
    EXPECT_EQ(Kova_Captions_GetService(*decoder, 1, nullptr, nullptr, 1), -1);
    EXPECT_EQ(Kova_Captions_GetStatus(*decoder, KOVA_CAPTIONS_NONE, &status), -1);
    EXPECT_EQ(Kova_Captions_GetStatus(*decoder, 1, nullptr), -1);
    EXPECT_EQ(Kova_Captions_GetProgram(*decoder, nullptr), -1);
    EXPECT_EQ(Kova_Captions_GetCounters(*decoder, nullptr), -1);
    EXPECT_EQ(Kova_Captions_NextEvent(nullptr, &event), -1);
    EXPECT_EQ(Kova_Captions_NextEvent(*decoder, nullptr), -1);
    EXPECT_EQ(Kova_Captions_NextChange(nullptr, 0, 7), KOVA_CAPTIONS_NEVER);
    EXPECT_EQ(Kova_Captions_NextChange(*decoder, 200, 7), KOVA_CAPTIONS_NEVER);
    Kova_Captions_Destroy(nullptr);
}

TEST(Options, WithANegativeTimeoutAreRefused)
{
    for (const bool ofChannels : {false, true}) {
        KovaCaptionsOptions options;
        Kova_Captions_GetDefaults(&options);
        (ofChannels ? options.channel_timeout : options.service_timeout) = -1;
        EXPECT_EQ(Kova_Captions_Create(&options), nullptr);
        EXPECT_EQ(Kova_Captions_GetMemorySize(&options), 0u);
    }
}

TEST(Options, MayLeaveServicesOutToSaveMemory)
{
    KovaCaptionsOptions none, one, all;
    Kova_Captions_GetDefaults(&all);
    Kova_Captions_GetDefaults(&one);
    Kova_Captions_GetDefaults(&none);
    one.services = uint64_t(1) << 1;
    none.services = 0;

    EXPECT_EQ(Kova_Captions_GetMemorySize(nullptr), Kova_Captions_GetMemorySize(&all));
    const size_t service = Kova_Captions_GetMemorySize(&one) - Kova_Captions_GetMemorySize(&none);
    EXPECT_LE(service, 64u * 1024);
    EXPECT_GE(Kova_Captions_GetMemorySize(&all), Kova_Captions_GetMemorySize(&none) + 63 * service);

    // and CEA-608 is there without any
    Driver decoder(none);
    decoder.Send(Code(RDC) + Pac(15) + Text("HI"));
    decoder.SendService(1, Define(Window(0)) + Ascii("HI"));
    EXPECT_EQ(decoder.Displayed(), "15 HI");
}
