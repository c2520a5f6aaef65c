// SPDX-License-Identifier: MIT
// What was decoded, as events and as lines for people.
#include "driver.h"

#include <cstdio>

// The lines of one source, each with its source's name before it.
static std::string EventsOf(const Pairs &pairs, unsigned field = 1)
{
    Driver decoder(WithEvents());

    decoder.Send(field, pairs);
    return decoder.Events();
}

static std::string EventsOf(const ByteString &bytes)
{
    Driver decoder(WithEvents());

    decoder.SendService(1, bytes);
    return decoder.Events();
}

TEST(Events608, NameEveryCode)
{
    const struct {
        Pairs pairs;
        const char *line;
    } cases[] = {
        {Code(RCL), "cc1 ResumeCaptionLoading\n"},
        {Code(BS), "cc1 Backspace\n"},
        {Code(AOF), "cc1 AlarmOff\n"},
        {Code(AON), "cc1 AlarmOn\n"},
        {Code(DER), "cc1 DeleteToEndOfRow\n"},
        {Code(RU2), "cc1 RollUp rows=2\n"},
        {Code(RU3), "cc1 RollUp rows=3\n"},
        {Code(RU4), "cc1 RollUp rows=4\n"},
        {Code(FON), "cc1 FlashOn\n"},
        {Code(RDC), "cc1 ResumeDirectCaptioning\n"},
        {Code(TR), "t1 TextRestart\n"},
        {Code(RTD), "t1 ResumeTextDisplay\n"},
        {Code(EDM), "cc1 EraseDisplayedMemory\n"},
        {Code(CR), "cc1 CarriageReturn\n"},
        {Code(ENM), "cc1 EraseNonDisplayedMemory\n"},
        {Code(EOC), "cc1 EndOfCaption\n"},
        {Tab(2), "cc1 TabOffset columns=2\n"},
        {PacIndent(15, 4), "cc1 Preamble row=15 indent=4 color=white underline=0\n"},
        {Pac(1, GREEN, true), "cc1 Preamble row=1 indent=0 color=green underline=1\n"},
        {Pac(11, ITALICS), "cc1 Preamble row=11 indent=0 color=white italics=1 underline=0\n"},
        {MidRow(GREEN), "cc1 MidRow color=green italics=0 underline=0\n"},
        {MidRow(ITALICS, true), "cc1 MidRow italics=1 underline=1\n"},
        {Twice(0x10, 0x24), "cc1 BackgroundAttributes color=blue opacity=solid\n"},
        {Twice(0x10, 0x2F), "cc1 BackgroundAttributes color=black opacity=semi-transparent\n"},
        {Twice(0x17, 0x2D), "cc1 BackgroundAttributes opacity=transparent\n"},
        {Twice(0x17, 0x2F), "cc1 BlackForeground underline=1\n"},
        {Twice(0x11, 0x39), "cc1 TransparentSpace\n"},
        {Twice(0x17, 0x24), "cc1 CharacterSet set=0x24\n"},
        {Twice(0x17, 0x2A), "cc1 CharacterSet set=0x2a\n"},
        {Twice(0x10, 0x3F), "cc1 UnknownCode code=0x103f\n"},
    };

    // Codes are reported whether they have an effect or not, and the repetition is not.
    for (const auto &each : cases) EXPECT_EQ(EventsOf(each.pairs), each.line);
}

// The codes of channel 1 that the standard assigns.
static bool IsAssigned(unsigned first, unsigned second)
{
    const bool preamble = second >= 0x40 && (first > 0x10 || second < 0x60);

    switch (first) {
    case 0x10:
        return preamble || second < 0x30;
    case 0x11:
    case 0x12:
    case 0x13:
        return true;
    case 0x14:
    case 0x15:
        return preamble || second < 0x30;
    case 0x17:
        return preamble || (second >= 0x21 && second <= 0x2A) || (second >= 0x2D && second <= 0x2F);
    default:
        return preamble;
    }
}

TEST(Events608, CallEveryCodeUnknownThatIsNotAssigned)
{
    for (unsigned first = 0x10; first < 0x18; first++) {
        for (unsigned second = 0x20; second < 0x80; second++) {
            char unknown[64];
            snprintf(unknown, sizeof unknown, "cc1 UnknownCode code=0x%02x%02x\n", first, second);
            const std::string events = EventsOf(Twice(first, second));
            EXPECT_EQ(events == unknown, !IsAssigned(first, second)) << unknown << events;
        }
    }
}

TEST(Events608, GiveTheBytesOfPairsWithAParityError)
{
    const Pairs bad = {{0x14, 0xA0}};

    EXPECT_EQ(EventsOf(bad), "- ParityError field=1 first=0x14 second=0xa0\n");
    EXPECT_EQ(EventsOf(bad, 2), "- ParityError field=2 first=0x14 second=0xa0\n");
}

TEST(Events608, NameTheFieldWhoseDataIsInvalid)
{
    KovaCaptionsOptions options = WithEvents();
    options.event_capacity = 100;

    for (const unsigned field : {1u, 2u}) {
        Driver decoder(options);
        decoder.Send(field, Times(44, {{0x14, 0xA0}}));
        decoder.Events();
        decoder.Send(field, {{0x14, 0xA0}});
        const std::string name = std::to_string(field);
        EXPECT_EQ(decoder.Events(), "- ParityError field=" + name +
                                        " first=0x14 second=0xa0\n- InvalidData field=" + name + "\n");
    }
}

TEST(Events608, NameTheirChannel)
{
    EXPECT_EQ(EventsOf(Code(RCL, 2)), "cc2 ResumeCaptionLoading\n");
    EXPECT_EQ(EventsOf(Code(RCL, 3), 2), "cc3 ResumeCaptionLoading\n");
    EXPECT_EQ(EventsOf(Code(TR, 4), 2), "t4 TextRestart\n");
}

TEST(Events608, PutCharactersIntoRuns)
{
    Driver decoder(WithEvents());
    KovaCaptionsEvent event;
    decoder.Send(Code(RCL));
    decoder.Events();

    const int64_t start = decoder.Now();
    decoder.Send(Text("AB\"\\"));
    decoder.Send(Twice(0x11, 0x37) + Text("eX") + Twice(0x12, 0x21) + Code(CR) + Text("C"));
    ASSERT_EQ(Kova_Captions_NextEvent(*decoder, &event), 1);

    // A backslash in the basic set is é, and so it is one in a run; an extended character replaces its stand-in.
    char line[KOVA_CAPTIONS_LINE];
    EXPECT_GT(Kova_Captions_FormatEvent(&event, line, sizeof line), 0);
    EXPECT_STREQ(line, "Text \"AB\\\"é♪eÉ\"");
    EXPECT_EQ(event.time, start);
    EXPECT_EQ(decoder.Events(), "cc1 CarriageReturn\ncc1 Text \"C\"\n");
}

TEST(Events608, EndARunAtATransparentSpace)
{
    Driver decoder(WithEvents());

    decoder.Send(Code(RDC) + Text("AB") + Twice(0x11, 0x39) + Text("CD"));

    EXPECT_EQ(decoder.Events(),
              "cc1 ResumeDirectCaptioning\ncc1 Text \"AB\"\ncc1 TransparentSpace\ncc1 Text \"CD\"\n");
}

TEST(EventsOfTimeouts, NameTheSourceThatWasBlanked)
{
    Driver decoder(WithEvents());
    decoder.Send(2, Code(RDC, 4) + Pac(15, WHITE, false, 4) + Text("HI"));
    decoder.SendService(2, Define(Window(0)) + Ascii("HI"));
    decoder.Events();

    decoder.Wait(17 * SECOND);

    const std::string events = decoder.Events();
    EXPECT_NE(events.find("cc4 Timeout\n"), std::string::npos) << events;
    EXPECT_NE(events.find("s2 Timeout\n"), std::string::npos) << events;
}

TEST(Events708, NameEveryCommand)
{
    WindowAttributes attributes;
    attributes.fillOpacity = 2;
    attributes.border = 5;
    attributes.borderColor = 0x1B;
    attributes.effect = 2;
    attributes.effectDirection = 1;
    attributes.effectSpeed = 3;
    const struct {
        ByteString bytes;
        const char *line;
    } cases[] = {
        {Bytes({ETX}), "s1 EndOfText\n"},
        {Bytes({BS708}), "s1 Backspace\n"},
        {Bytes({FF}), "s1 FormFeed\n"},
        {Bytes({CR708}), "s1 CarriageReturn\n"},
        {Bytes({HCR}), "s1 HorizontalCarriageReturn\n"},
        {SetCurrentWindow(5), "s1 SetCurrentWindow window=5\n"},
        {ClearWindows(0x01), "s1 ClearWindows windows=0x01\n"},
        {DisplayWindows(0xFF), "s1 DisplayWindows windows=0xff\n"},
        {HideWindows(0x80), "s1 HideWindows windows=0x80\n"},
        {ToggleWindows(0x03), "s1 ToggleWindows windows=0x03\n"},
        {DeleteWindows(0x10), "s1 DeleteWindows windows=0x10\n"},
        {Delay(0), "s1 Delay tenths=0\n"},
        {Bytes({DLC}), "s1 DelayCancel\n"},
        {Bytes({RST}), "s1 Reset\n"},
        {SetPenLocation(0, 3), "s1 SetPenLocation row=0 column=3\n"},
        {Define(Window(0).Rows(2).Anchor(7, 62, 35).Styles(1, 1)),
         "s1 DefineWindow window=0 visible=1 rowlock=1 collock=1 priority=0 relative=0 anchor_v=62 "
         "anchor_h=35 anchor=7 "
         "rows=2 columns=32 window_style=1 pen_style=1\n"},
        {Hex("9d 15 a3 4d 82 11 2b"), "s1 DefineWindow window=5 visible=0 rowlock=1 collock=0 priority=5 "
                                      "relative=1 anchor_v=35 anchor_h=77 anchor=8 "
                                      "rows=3 columns=18 window_style=5 pen_style=3\n"},
        // tag 5, offset 2, size 0; italics, edge 3, font 4
        {Hex("90 58 9c"), "s1 SetPenAttributes tag=5 offset=superscript size=small italics=1 underline=0 "
                          "edge=uniform font=4\n"},
        // foreground 1, (3,1,2); background 2, (0,2,1); edge (1,3,0)
        {Hex("91 76 89 1c"), "s1 SetPenColor foreground=3,1,2 foreground_opacity=flash background=0,2,1 "
                             "background_opacity=translucent edge=1,3,0\n"},
        // fill 1, (1,2,3); border 01 (3,2,1); border bit 2, no wrap, print 3, scroll 1, justify 2; speed 9, direction 2,
        // effect 1
        {Hex("97 5b 79 b6 99"), "s1 SetWindowAttributes fill=1,2,3 fill_opacity=flash border=shadow-right "
                                "border_color=3,2,1 wordwrap=0 print=bottom-to-top scroll=right-to-left "
                                "justify=center effect=fade effect_direction=top-to-bottom effect_speed=9\n"},
        {Hex("93"), "s1 UnknownCode code=0x0093\n"},
        {Hex("10 90 00"), "s1 UnknownCode code=0x1090\n"},
        {Ascii("HELLO"), "s1 Text \"HELLO\"\n"},
        {Hex("10 20"), "s1 TransparentSpace\n"},
    };

    for (const auto &each : cases) EXPECT_EQ(EventsOf(each.bytes), each.line);
    EXPECT_EQ(EventsOf(Define(Window(0)) + SetWindowAttributes(attributes)).find("SetWindowAttributes fill="),
              EventsOf(Define(Window(0))).size() + 3);
}

TEST(Events708, EndARunBeforeTheCodeThatEndsIt)
{
    EXPECT_EQ(EventsOf(Ascii("AB") + Bytes({0x93}) + Ascii("CD")),
              "s1 Text \"AB\"\ns1 UnknownCode code=0x0093\ns1 Text \"CD\"\n");
    EXPECT_EQ(EventsOf(Ascii("AB") + Bytes({BS708}) + Ascii("CD")),
              "s1 Text \"AB\"\ns1 Backspace\ns1 Text \"CD\"\n");
}

TEST(Events708, CallEveryCodeUnknownThatIsNotAssigned)
{
    for (unsigned code = 0; code < 0xA0; code++) {
        if (code >= 0x20 && code < 0x80) continue;
        const bool nothing = code == 0x00, extended = code == 0x10;
        const bool assigned = code == ETX || code == BS708 || code == FF || code == CR708 || code == HCR ||
                              code == P16 || (code >= 0x80 && code <= 0x92) || code >= 0x97;
        // parameters enough for any
        const std::string events = EventsOf(Bytes({code, 0, 0, 0, 0, 0, 0}));
        char unknown[64];
        snprintf(unknown, sizeof unknown, "s1 UnknownCode code=0x%04x\n", code);
        if (nothing) {
            EXPECT_EQ(events, "");
        }
        if (!nothing && !extended) {
            EXPECT_EQ(events == unknown, !assigned) << unknown << events;
        }
    }
}

TEST(EventsOfTheTransport, TellWhatIsWrong)
{
    const struct {
        const char *triplets, *lines;
    } cases[] = {
        // packet 0, then packet 2
        {"ff 01 00  ff 81 00", "- SequenceGap expected=1 received=2\n"},
        // two of four bytes, then the next packet
        {"ff 02 00  ff 41 00", "- ShortPacket bytes=2 announced=4\n"},
        {"fe 41 42", "- StrayData\n"},
        // a block of one byte with the extended number 5, which is none
        {"ff 02 e1  fe 05 00", "- BadServiceBlock header=0x05\n"},
        // P16 with one byte of two
        {"ff 02 22  fe 18 26", "s1 CutElement bytes=2\n"},
    };
    for (const auto &each : cases) {
        Driver decoder(WithEvents());
        decoder.SendTriplets(Hex(each.triplets));
        EXPECT_EQ(decoder.Events(), each.lines);
    }

    Driver decoder(WithEvents());
    const ByteString data = Hex("43 ff  fc 80 80");
    Kova_Captions_PushCcData(*decoder, decoder.Now(), data.data(), data.size());
    decoder.Discontinuity();
    EXPECT_EQ(decoder.Events(), "- CutCcData count=3 present=1\n- Discontinuity\n");

    decoder.SendService(1, Delay(255) + Ascii(std::string(100, 'A')));
    decoder.SendService(1, Ascii(std::string(29, 'B')));
    EXPECT_EQ(decoder.Events(), "s1 Delay tenths=255\ns1 BufferFull\ns1 Text \"" + std::string(64, 'A') +
                                    "\"\ns1 Text \"" + std::string(36, 'A') + std::string(28, 'B') +
                                    "\"\ns1 Text \"B\"\n");
}

TEST(Events708, AreReportedWhenTheyTakeEffect)
{
    Driver decoder(WithEvents());
    KovaCaptionsEvent event;
    const int64_t start = decoder.Now();

    decoder.SendService(1, Define(Window(0)) + Delay(10) + DisplayWindows(0x01));
    decoder.Wait(2 * SECOND);

    int64_t last = 0;
    while (Kova_Captions_NextEvent(*decoder, &event) == 1) last = event.time;
    EXPECT_EQ(event.code, KOVA_CAPTIONS_EVENT_DISPLAY_WINDOWS);
    EXPECT_EQ(last, start + SECOND);
}

TEST(EventsXds, GiveNameAndRating)
{
    Driver decoder(WithEvents());

    decoder.Send(2, Xds(1, 3, "NEWS") + Xds(1, 5, "\x68\x6D") + Xds(5, 2, "WXYZ"));

    EXPECT_EQ(decoder.Events(),
              "xds ProgramName \"NEWS\"\n"
              "xds ContentAdvisory system=us-tv rating=5 violence=1 sex=0 language=1 dialog=1\n"
              "xds CallLetters \"WXYZ\"\n");
}

TEST(EventLines, AreCutAtAWholeCharacter)
{
    Driver decoder(WithEvents());
    KovaCaptionsEvent event;
    char line[16];
    decoder.SendService(1, Define(Window(0)) + Ascii("ABCD") + Wide(0x266A) + Wide(0x266A));
    Kova_Captions_EndRuns(*decoder);
    while (Kova_Captions_NextEvent(*decoder, &event) == 1) {
    }

    // Text "ABCD and two notes of three bytes and a quote: 10 + 6 + 1
    EXPECT_EQ(Kova_Captions_FormatEvent(&event, line, sizeof line), 17);
    EXPECT_STREQ(line, "Text \"ABCD♪");
    EXPECT_EQ(Kova_Captions_FormatEvent(&event, nullptr, 0), 17);
    EXPECT_EQ(Kova_Captions_FormatEvent(nullptr, line, sizeof line), -1);
}

TEST(Events, AreLostAndCountedWhenNobodyReadsThem)
{
    KovaCaptionsOptions options;
    Kova_Captions_GetDefaults(&options);
    options.event_capacity = 3;
    Driver decoder(options);

    for (int i = 0; i < 5; i++) decoder.SendService(1, SetPenLocation(0, unsigned(i)));

    EXPECT_EQ(decoder.Events(), "s1 SetPenLocation row=0 column=0\ns1 SetPenLocation row=0 column=1\n"
                                "s1 SetPenLocation row=0 column=2\n");
    EXPECT_EQ(decoder.Counters().lost_events, 2u);
}

TEST(SourceNames, AreReadAndWritten)
{
    for (unsigned source = KOVA_CAPTIONS_S1; source <= KOVA_CAPTIONS_XDS; source++) {
        EXPECT_EQ(Kova_Captions_SourceByName(Kova_Captions_SourceName(uint8_t(source))), source);
    }
    EXPECT_STREQ(Kova_Captions_SourceName(KOVA_CAPTIONS_S1), "s1");
    EXPECT_STREQ(Kova_Captions_SourceName(KOVA_CAPTIONS_S63), "s63");
    EXPECT_STREQ(Kova_Captions_SourceName(KOVA_CAPTIONS_CC3), "cc3");
    EXPECT_STREQ(Kova_Captions_SourceName(KOVA_CAPTIONS_T2), "t2");
    EXPECT_STREQ(Kova_Captions_SourceName(0), "-");
    EXPECT_STREQ(Kova_Captions_SourceName(200), "-");
    EXPECT_EQ(Kova_Captions_SourceByName("CC4"), KOVA_CAPTIONS_CC4);
    for (const char *const name : {"", "s0", "s64", "cc0", "cc5", "t5", "s", "s1 ", "s01", "x", "-"}) {
        EXPECT_EQ(Kova_Captions_SourceByName(name), KOVA_CAPTIONS_NONE) << name;
    }
    EXPECT_EQ(Kova_Captions_SourceByName(nullptr), KOVA_CAPTIONS_NONE);
}

TEST(EventNames, BelongToEveryEvent)
{
    EXPECT_STREQ(Kova_Captions_EventName(KOVA_CAPTIONS_EVENT_DEFINE_WINDOW), "DefineWindow");
    EXPECT_STREQ(Kova_Captions_EventName(KOVA_CAPTIONS_EVENT_DISCONTINUITY), "Discontinuity");
    EXPECT_STREQ(Kova_Captions_EventName(0), "Unknown");
    EXPECT_STREQ(Kova_Captions_EventName(KOVA_CAPTIONS_EVENT_DISCONTINUITY + 1), "Unknown");
    EXPECT_STREQ(Kova_Captions_EventName(255), "Unknown");
    EXPECT_STREQ(Kova_Captions_ArgumentName(KOVA_CAPTIONS_EVENT_DEFINE_WINDOW, 12), "pen_style");
    EXPECT_EQ(Kova_Captions_ArgumentName(KOVA_CAPTIONS_EVENT_DEFINE_WINDOW, 13), nullptr);
    EXPECT_EQ(Kova_Captions_ArgumentName(KOVA_CAPTIONS_EVENT_TEXT, 0), nullptr);
    EXPECT_EQ(Kova_Captions_ArgumentName(255, 0), nullptr);
}
