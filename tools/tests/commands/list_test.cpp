// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "captions/encoder.h"
#include "support/tool.h"

using Json = nlohmann::json;

// A line of a file of raw triplets.
static std::string Line(const std::string &time, const ByteString &triplets)
{
    return time + " " + ToHex(triplets.data(), triplets.size()) + "\n";
}

// A packet with what a service gets.
static ByteString Service(unsigned sequence, const ByteString &bytes, unsigned service = 1)
{
    return PacketTriplets(Packet(sequence, Blocks(service, bytes)));
}

static Json ListJson(const std::string &file, const std::string &options = "")
{
    const Outcome run = RunTool("list '" + file + "' --json " + options);

    EXPECT_EQ(run.exit, 0) << run.err;
    return Json::parse(run.out, nullptr, false);
}

TEST(List, PrintsOneObjectWithTheStatesOfAService)
{
    const Folder folder;
    const std::string file = folder.Write(
        "a.ccd",
        Line("00:00:01.234", Service(0, Define(Window(2).Rows(2).Hidden()) + SetPenLocation(0, 3) +
                                            Ascii("  HELLO ") + SetPenLocation(1, 0) + Ascii("WORLD"))) +
            Line("2000", Service(1, DisplayWindows(4))) + Line("3500", Service(2, ClearWindows(4))) +
            Line("4000", Service(3, Ascii("AGAIN"))));

    EXPECT_EQ(ListJson(file), Json::parse(R"({"service": "s1", "cues": [
        {"start_ms": 2000, "end_ms": 3500, "text": "HELLO\nWORLD",
         "blocks": [{"window": 2, "row": 0, "column": 5, "text": "HELLO"},
                    {"window": 2, "row": 1, "column": 0, "text": "WORLD"}]},
        {"start_ms": 4000, "end_ms": null, "text": "AGAIN",
         "blocks": [{"window": 2, "row": 0, "column": 0, "text": "AGAIN"}]}]})"));
}

TEST(List, CountsTheRowsOfLine21FromOne)
{
    const Folder folder;
    const std::string file = folder.Write(
        "a.ccd", Line("0", ToTriplets(1, Code(RCL) + PacIndent(14, 4) + MidRow(YELLOW) + Text("up") +
                                             PacIndent(15, 8) + Text("down"))) +
                     Line("1000", ToTriplets(1, Code(EOC))) + Line("2000", ToTriplets(1, Code(EDM))));

    EXPECT_EQ(ListJson(file), Json::parse(R"({"service": "cc1", "cues": [
        {"start_ms": 1000, "end_ms": 2000, "text": "up\ndown",
         "blocks": [{"row": 14, "column": 5, "text": "up"}, {"row": 15, "column": 8, "text": "down"}]}]})"))
        << "the mid-row code takes column 4 and is no character";
}

TEST(List, OrdersWindowsFromTheTopOfTheScreen)
{
    const Folder folder;
    // Both anchors name bottom edges: of a window of one row at 70 of 75, and of one of three rows at 74. The
    // third window lies beside the second, to its right.
    const Window low = Window(0).Anchor(6, 70, 0).Rows(1).Columns(10);
    const Window high = Window(1).Anchor(6, 74, 0).Rows(3).Columns(10);
    const Window right = Window(2).Anchor(6, 74, 105).Rows(3).Columns(10);
    const std::string file =
        folder.Write("a.ccd", Line("0", Service(0, Define(low) + Ascii("low") + Define(right) +
                                                       Ascii("right") + Define(high) + Ascii("high"))));

    EXPECT_EQ(ListJson(file)["cues"][0]["text"], "high\nright\nlow");
}

TEST(List, EndsCuesByTimeouts)
{
    const Folder folder;
    const std::string line21 = folder.Write(
        "a.ccd", Line("0", ToTriplets(1, Code(RDC) + PacIndent(15, 0) + Text("text"))) + "00:01:00.000\n");
    const std::string service =
        folder.Write("b.ccd", Line("0", Service(0, Define(Window(0)) + Ascii("text"))) + "00:01:00.000\n");

    EXPECT_EQ(ListJson(line21)["cues"][0]["end_ms"], 16000);
    EXPECT_EQ(ListJson(service)["cues"][0]["end_ms"], 16000);
}

TEST(List, HoldsNothingBackForADelayedService)
{
    const Folder folder;
    const std::string file = folder.Write(
        "a.ccd", Line("0", Service(0, Define(Window(0)) + Delay(15) + Ascii("late"))) + "00:00:05.000\n");

    EXPECT_EQ(ListJson(file)["cues"][0]["start_ms"], 1500) << "no bytes come then, but the delay is over";
}

TEST(List, TakesServicesBeforeChannelsUnlessOneIsAskedFor)
{
    const Folder folder;
    const std::string file =
        folder.Write("a.ccd", Line("0", ToTriplets(1, Code(RDC) + PacIndent(15, 0) + Text("line"))) +
                                  Line("0", Service(0, Define(Window(0)) + Ascii("seven"), 7)) +
                                  Line("0", Service(1, Define(Window(0)) + Ascii("two"), 2)) +
                                  Line("0", Service(2, Define(Window(0).Hidden()) + Ascii("hidden"), 1)));

    EXPECT_EQ(ListJson(file)["service"], "s2") << "service 1 shows nothing";
    EXPECT_EQ(ListJson(file, "--service s7")["cues"][0]["text"], "seven");
    EXPECT_EQ(ListJson(file, "--service CC1")["cues"][0]["text"], "line");
    const Outcome none = RunTool("list '" + file + "' --service s1");
    EXPECT_EQ(none.exit, 1);
    EXPECT_EQ(none.err,
              "kova-caption: --service s1: " + file + ": no captions there; captions are in s2, s7, cc1.\n");
    EXPECT_EQ(RunTool("list '" + file + "' --service s64").exit, 2);
    EXPECT_EQ(RunTool("list '" + file + "' --service cc5").exit, 2);
    EXPECT_EQ(RunTool("list '" + file + "' --service xds").exit, 2);
}

TEST(List, PrintsOneLineACueForPeople)
{
    const Folder folder;
    const std::string file =
        folder.Write("a.ccd", Line("1000", Service(0, Define(Window(0).Rows(2)) + Ascii("one") +
                                                          SetPenLocation(1, 0) + Ascii("two"))));

    const Outcome run = RunTool("list '" + file + "'");

    EXPECT_EQ(run.exit, 0) << run.err;
    EXPECT_EQ(run.out, "00:00:01.000 --> -             one / two\n");
}

TEST(List, KeepsCharactersThatCommandATerminalFromIt)
{
    const Folder folder;
    const std::string file = folder.Write(
        "a.ccd",
        Line("0", Service(0, Define(Window(0)) + Ascii("a") + Wide(0x9B) + Wide(0x202E) + Ascii("b"))));

    EXPECT_EQ(RunTool("list '" + file + "'").out, "00:00:00.000 --> -             a\uFFFD\uFFFDb\n");
    EXPECT_EQ(ListJson(file)["cues"][0]["text"], "a\u009B\u202Eb") << "as it is";
}

TEST(List, PrintsTheDecodedCommandsOfAService)
{
    const Folder folder;
    const std::string file = folder.Write(
        "a.ccd", Line("1234", Service(0, Define(Window(0).Anchor(7, 62, 35).Rows(2)) + SetPenLocation(0, 3) +
                                             Ascii("HELLO") + ClearWindows(1) + Bytes({ETX}))) +
                     Line("2000", ToTriplets(1, Code(RCL) + PacIndent(15, 4) + Text("Hi") + Code(EOC))));

    const Outcome service = RunTool("list '" + file + "' --service s1 --commands");
    const Outcome channel = RunTool("list '" + file + "' --service cc1 --commands");

    EXPECT_EQ(service.out,
              "00:00:01.234 s1 DefineWindow window=0 visible=1 rowlock=1 collock=1 priority=0 relative=0 "
              "anchor_v=62 anchor_h=35 anchor=7 rows=2 columns=32 window_style=1 pen_style=1\n"
              "00:00:01.234 s1 SetPenLocation row=0 column=3\n"
              "00:00:01.234 s1 Text \"HELLO\"\n"
              "00:00:01.234 s1 ClearWindows windows=0x01\n"
              "00:00:01.234 s1 EndOfText\n");
    EXPECT_EQ(channel.out, "00:00:02.000 cc1 ResumeCaptionLoading\n"
                           "00:00:02.000 cc1 Preamble row=15 indent=4 color=white underline=0\n"
                           "00:00:02.000 cc1 Text \"Hi\"\n"
                           "00:00:02.000 cc1 EndOfCaption\n");
}

TEST(List, NamesTheLineOfAFileThatIsWrong)
{
    const Folder folder;
    const std::string file = folder.Write("a.ccd", "# fine\n0 fc9420\n1000 fc94\n");
    const Outcome run = RunTool("list '" + file + "'");

    EXPECT_EQ(run.exit, 1);
    EXPECT_EQ(run.err.rfind("kova-caption: " + file + ": line 3: ", 0), 0u) << run.err;
}

TEST(List, ListsSubtitlesOfOtherKinds)
{
    const Folder folder;
    const std::string file = folder.Write("a.srt", "1\n00:00:01,000 --> 00:00:02,500\nfirst\nsecond\n");

    EXPECT_EQ(ListJson(file), Json::parse(R"({"service": null, "cues": [
        {"start_ms": 1000, "end_ms": 2500, "text": "first\nsecond",
         "blocks": [{"text": "first"}, {"text": "second"}]}]})"));
    const Outcome commands = RunTool("list '" + file + "' --commands");
    EXPECT_EQ(commands.exit, 1);
    EXPECT_NE(commands.err.find("no closed captions"), std::string::npos) << commands.err;
    const Outcome service = RunTool("list '" + file + "' --service s1");
    EXPECT_EQ(service.exit, 1);
    EXPECT_NE(service.err.find("closed captions"), std::string::npos) << service.err;
}

TEST(List, FailsWhereNothingIsShown)
{
    const Folder folder;
    const Outcome run = RunTool("list '" + folder.Write("a.ccd", "0 fc8080\n") + "' --json");

    EXPECT_EQ(run.exit, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find("no captions"), std::string::npos) << run.err;
}
