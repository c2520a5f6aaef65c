// SPDX-License-Identifier: MIT
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/tool.h"

namespace
{

struct Refusal {
    const char *name;
    std::string arguments; // %s is the folder
    int exit;
    const char *words; // that the line holds
};

class RefusedGenerate : public testing::TestWithParam<Refusal>
{
};

} // namespace

static std::string Contents(const std::string &file)
{
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

static std::string InFolder(std::string arguments, const Folder &folder)
{
    for (std::size_t at; (at = arguments.find("%s")) != std::string::npos;)
        arguments.replace(at, 2, folder / "");
    return arguments;
}

TEST_P(RefusedGenerate, SaysWhyInOneLineAndMakesNothing)
{
    const Refusal &refusal = GetParam();
    const Folder folder;
    folder.Write("a.srt", "1\n00:00:01,000 --> 00:00:02,000\nHello\n");
    folder.Write("late.srt", "1\n24:00:01,000 --> 24:00:02,000\nHello\n");

    const Outcome outcome = RunTool("generate " + InFolder(refusal.arguments, folder));

    EXPECT_EQ(outcome.exit, refusal.exit);
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find(refusal.words), std::string::npos) << outcome.err;
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    EXPECT_EQ(folder.Names(), (std::vector<std::string>{"a.srt", "late.srt"})) << "something was made";
}

INSTANTIATE_TEST_SUITE_P(
    Tool, RefusedGenerate,
    testing::Values(
        Refusal{"Nothing", "", 2, "nothing to generate; give a PATTERN, --from FILE, or --list"},
        Refusal{"NoFile", "anchors", 2, "-o FILE is required"},
        Refusal{"UnknownPattern", "anker -o '%sa.ccd'", 2,
                "anker: no such pattern; kova-caption generate --list names all of them"},
        Refusal{"UnknownFormat", "anchors -o '%sa.mp4'", 2,
                "a.mp4: the name must end in .ts, .mcc, .scc or .ccd"},
        Refusal{"NoExtension", "anchors -o '%sa'", 2, "the name must end in"},
        Refusal{
            "SccOf708", "anchors -o '%sa.scc'", 1,
            "a.scc: .scc holds field 1 of CEA-608 only, and anchors has CEA-708; choose .ts, .mcc or .ccd"},
        Refusal{"SccOfField2", "channels-608 -o '%sa.scc'", 1,
                "channels-608 has field 2 of CEA-608 (CC3, CC4, T3, T4)"},
        Refusal{"PatternAndSource", "anchors --from '%sa.srt' -o '%sa.ccd'", 2, "excludes"},
        Refusal{"ListAndFile", "--list -o '%sa.ccd'", 2, "excludes"},
        Refusal{"JsonWithoutList", "anchors --json -o '%sa.ccd'", 2, "requires"},
        Refusal{"CharsetWithoutSource", "anchors --charset UTF-8 -o '%sa.ccd'", 2, "requires"},
        Refusal{"MissingSource", "--from '%snone.srt' -o '%sa.ccd'", 1, "none.srt: cannot be read"},
        Refusal{"TooLate", "--from '%slate.srt' -o '%sa.ccd'", 1,
                "captions after 24 hours cannot be written"},
        Refusal{"NoText", "--from '" KOVA_CAPTION_SAMPLES "/pictures.sup' -o '%sa.ccd'", 1, "no text"},
        Refusal{"MissingFolder", "anchors -o '%snone/a.ccd'", 1,
                "none/a.ccd: cannot be written (No such file or directory); choose another path with -o"}),
    [](const testing::TestParamInfo<Refusal> &row) { return row.param.name; });

TEST(Generate, WritesThePatternAndNamesTheFile)
{
    const Folder folder;
    const std::string file = folder / "a.scc";
    const Outcome outcome = RunTool("generate pop-on -o '" + file + "'");

    EXPECT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_EQ(outcome.out, file + "\n");
    EXPECT_EQ(outcome.err, "");
    // After a second: RCL and ENM twice, row 14 column 8, "PO".
    EXPECT_EQ(Contents(file).substr(0, 76),
              "Scenarist_SCC V1.0\n\n00:00:01;00\t9420 9420 94ae 94ae 9454 9454 d04f d0ad 4fce")
        << Contents(file);
    EXPECT_EQ(RunTool("list '" + file + "'").exit, 0);
}

TEST(Generate, ConvertsSubtitles)
{
    const Folder folder;
    const std::string file = folder / "a.mcc";
    const Outcome outcome = RunTool("generate --from '" KOVA_CAPTION_SAMPLES "/demo.vtt' -o '" + file + "'");
    const nlohmann::json source =
        nlohmann::json::parse(RunTool("list '" KOVA_CAPTION_SAMPLES "/demo.vtt' --json").out);
    const nlohmann::json made = nlohmann::json::parse(RunTool("list '" + file + "' --service s1 --json").out);

    EXPECT_EQ(outcome.exit, 0) << outcome.err;
    ASSERT_FALSE(made["cues"].empty());
    EXPECT_NEAR(double(made["cues"][0]["start_ms"]), double(source["cues"][0]["start_ms"]), 17);
}

// docs/test_streams.md has the list, pattern by pattern.
TEST(Generate, IsDocumentedPatternByPattern)
{
    const nlohmann::json list = nlohmann::json::parse(RunTool("generate --list --json").out);
    const std::string page = Contents(KOVA_CAPTION_SAMPLES "/../../docs/test_streams.md");
    const std::string begin = "| pattern | shows | must be seen |\n| --- | --- | --- |\n";
    const std::size_t at = page.find(begin);
    std::string table;

    for (const auto &pattern : list["patterns"]) {
        table += "| `" + std::string(pattern["name"]) + "` | " + std::string(pattern["purpose"]) + " | " +
                 std::string(pattern["seen"]) + " |\n";
    }
    ASSERT_NE(at, std::string::npos);
    EXPECT_EQ(page.substr(at + begin.size(), page.find("\n\n", at) + 1 - at - begin.size()), table);
}

TEST(Generate, ListsEveryPatternForPeople)
{
    const Outcome text = RunTool("generate --list");
    const nlohmann::json list = nlohmann::json::parse(RunTool("generate --list --json").out);
    std::size_t names = 0;

    EXPECT_EQ(text.exit, 0);
    for (const auto &pattern : list["patterns"]) {
        const std::string head = std::string(pattern["name"]) + ": " + std::string(pattern["purpose"]) + "\n";
        names += ("\n" + text.out).find("\n" + head) != std::string::npos;
    }
    EXPECT_EQ(names, list["patterns"].size());
    std::istringstream lines(text.out);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 100u) << line;
}
