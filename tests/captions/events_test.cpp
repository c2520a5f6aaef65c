// SPDX-License-Identifier: MIT
// What was decoded, as events and as lines for people.
#include "driver.h"

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
        {Hex("93"), "s1 UnknownCode code=0x0093\n"},
        {Hex("10 90 00"), "s1 UnknownCode code=0x1090\n"},
        {Ascii("HELLO"), "s1 Text \"HELLO\"\n"},
        {Hex("10 20"), "s1 TransparentSpace\n"},
    };

    for (const auto &each : cases) EXPECT_EQ(EventsOf(each.bytes), each.line);
    EXPECT_EQ(EventsOf(Define(Window(0)) + SetWindowAttributes(attributes)).find("SetWindowAttributes fill="),
              EventsOf(Define(Window(0))).size() + 3);
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
