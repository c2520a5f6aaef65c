// SPDX-License-Identifier: MIT
// The stub logging library, tested in separate processes, because it reads its environment when it is loaded.
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <stdio.h>
#include <string>
#include <vector>

using Lines = std::vector<std::string>;

// Returns what the probe prints to both streams in one scene. With a null threshold KOVA_DEBUG is not set.
static Lines Probe(const char *pcThreshold, const std::string &scene)
{
    const std::string environment =
        pcThreshold ? "KOVA_DEBUG='" + std::string(pcThreshold) + "'" : "-u KOVA_DEBUG";
    const std::string command = "env " + environment + " '" KOVA_PROBE "' '" + scene + "' 2>&1";
    Lines lines;
    std::string line;

    FILE *const pOutput = popen(command.c_str(), "r");
    if (!pOutput) return ADD_FAILURE() << "popen failed", lines;
    for (int c; (c = fgetc(pOutput)) != EOF;) {
        if (c == '\n') {
            lines.push_back(line);
            line.clear();
        } else {
            line.push_back(char(c));
        }
    }
    EXPECT_EQ(line, "") << "the output does not end with a line's end";
    EXPECT_EQ(pclose(pOutput), 0) << scene;
    return lines;
}

static void ExpectLines(const Lines &lines, const Lines &patterns)
{
    ASSERT_EQ(lines.size(), patterns.size()) << testing::PrintToString(lines);
    for (size_t i = 0; i < lines.size(); i++) {
        EXPECT_TRUE(std::regex_match(lines[i], std::regex(patterns[i]))) << lines[i] << "\nis not\n"
                                                                         << patterns[i];
    }
}

// Level, category, file, function, line, thread; then the record that repeats the location.
static std::string ErrorLine(const std::string &message)
{
    return R"(ERROR +default File Error:7 \[[0-9a-f]+\] \[File:File Function:Error Line:7\]:)" + message;
}

static const char *const BEGUN = R"(WARNING default File Unfinished:9 \[[0-9a-f]+\] begun)";

TEST(KovaDebug, ReportsOnlyErrorsWithoutAThreshold)
{
    EXPECT_EQ(Probe(nullptr, "threshold"), Lines{"1"});
}

TEST(KovaDebug, TakesTheThresholdFromTheEnvironment)
{
    for (const char *pcThreshold : {"0", "1", "2", "3", "4", "5"}) {
        EXPECT_EQ(Probe(pcThreshold, "threshold"), Lines{pcThreshold});
    }
}

TEST(KovaDebug, ReportsAnInvalidThresholdAndKeepsItsOwn)
{
    for (const char *pcThreshold : {"6", "-1", "55", "all", "1 ", ""}) {
        const Lines lines = Probe(pcThreshold, "threshold");
        ASSERT_EQ(lines.size(), 2u) << pcThreshold;
        EXPECT_EQ(lines[0].find("KOVA_DEBUG=" + std::string(pcThreshold) + " "), 0u) << lines[0];
        EXPECT_NE(lines[0].find("0 (nothing) to 5 (everything)"), std::string::npos) << lines[0];
        EXPECT_EQ(lines[1], "1");
    }
}

TEST(KovaDebug, PutsTheThreeRecordsOfAnErrorOnOneLine)
{
    ExpectLines(Probe("1", "error"), {ErrorLine("what")});
}

TEST(KovaDebug, KeepsErrorsOnSeparateLinesWhileEightThreadsWrite)
{
    const Lines lines = Probe("1", "threads");
    const std::regex pattern(ErrorLine("([0-9]+)/([0-9]+)\\."));
    std::map<std::string, int> next; // per thread: the number of its next error

    for (const std::string &line : lines) {
        std::smatch match;
        ASSERT_TRUE(std::regex_match(line, match, pattern)) << line;
        EXPECT_EQ(match[2], std::to_string(next[match[1]]++)) << line;
    }
    EXPECT_EQ(next.size(), 8u);
    EXPECT_EQ(lines.size(), 2000u);
}

TEST(KovaDebug, PrintsABannerWithoutTheEmptyLinesAroundIt)
{
    ExpectLines(Probe("5", "banner"), {R"(LOG +default File Banner:8 \[[0-9a-f]+\] #### banner ####)"});
}

TEST(KovaDebug, EndsALineAtARecordFromAnotherPlace)
{
    ExpectLines(Probe("2", "interrupted"), {BEGUN, ErrorLine("what")});
}

TEST(KovaDebug, EndsALineWhenTheProgramOrItsThreadEnds)
{
    ExpectLines(Probe("2", "unfinished"), {BEGUN});
    ExpectLines(Probe("2", "ended thread"), {BEGUN, ErrorLine("what")});
}

TEST(KovaDebug, TruncatesALongRecordAndStillEndsItsLine)
{
    ExpectLines(Probe("1", "long"), {ErrorLine("x{900,5000}"), ErrorLine("what")});
    const std::string trace = R"(LOG +default File main:11 \[[0-9a-f]+\] x{900,5000})";
    ExpectLines(Probe("5", "long traces"), {trace, trace});
}

TEST(KovaDebug, NamesACategory)
{
    ExpectLines(Probe("3", "category"), {R"(INFO +Name File main:10 \[[0-9a-f]+\] text)"});
}

TEST(KovaDebug, GatesTheLibraryByTheThreshold)
{
    const std::string line =
        R"(ERROR +default Src/kova_textdisp_api Kova_TextDisp_Create:[0-9]+ \[[0-9a-f]+\] )"
        R"(\[File:Src/kova_textdisp_api Function:Kova_TextDisp_Create Line:[0-9]+\]:)"
        "Plane Width is 0!";
    ExpectLines(Probe("1", "library"), {line});
    ExpectLines(Probe("0", "library"), {});
}
