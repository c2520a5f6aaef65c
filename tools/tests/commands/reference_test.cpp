// SPDX-License-Identifier: MIT
// The manual page and the completion agree with --help, and the examples in it work.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <regex>
#include <sstream>

#include <gtest/gtest.h>

#include "support/tool.h"

static std::string Help(const std::string &command = "")
{
    return RunTool(command + " --help").out;
}

static std::vector<std::string> LinesAfter(const std::string &heading, const std::string &help)
{
    std::istringstream text(help.substr(std::min(help.find("\n" + heading + ":\n"), help.size())));
    std::vector<std::string> lines;
    std::string line;

    std::getline(text, line);
    std::getline(text, line);
    while (std::getline(text, line) && line.rfind("  ", 0) == 0) lines.push_back(line.substr(2));
    return lines;
}

static std::vector<std::string> Commands()
{
    std::vector<std::string> names;

    for (const std::string &line : LinesAfter("Subcommands", Help())) {
        if (line[0] != ' ') names.push_back(line.substr(0, line.find(' ')));
    }
    return names;
}

static std::vector<std::string> OptionsIn(const std::string &help)
{
    static const std::regex form("^(?:(-[a-z]),?)?(--[a-z-]+)?(?: |$).*");
    std::vector<std::string> names;

    for (const std::string &line : LinesAfter("Options", help)) {
        std::smatch parts;
        if (line[0] != '-') continue;
        EXPECT_TRUE(std::regex_match(line, parts, form)) << line;
        for (const std::string &name : {parts[1].str(), parts[2].str()}) {
            if (!name.empty()) names.push_back(name);
        }
    }
    return names;
}

// What bash offers for a command line whose last word is being typed.
static std::vector<std::string> Completions(const std::vector<std::string> &words, const Folder &folder)
{
    std::string list;

    for (const std::string &word : words) list += " '" + word + "'";
    folder.Write("completion", RunTool("completion bash").out);
    folder.Write("ask", "cd '" + folder / "" + "'; . ./completion; COMP_WORDS=(kova-caption" + list + ")\n" +
                            "COMP_CWORD=" + std::to_string(words.size()) +
                            "\n_kova_caption; printf '%s\\n' \"${COMPREPLY[@]}\"\n");
    std::FILE *const bash = popen(("bash '" + folder / "ask" + "'").c_str(), "r");
    std::string text;
    for (int byte; (byte = std::fgetc(bash)) != EOF;) text += char(byte);
    EXPECT_EQ(pclose(bash), 0);
    std::istringstream lines(text);
    std::vector<std::string> offered;
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty()) offered.push_back(line);
    }
    return offered;
}

using Words = std::vector<std::string>;

TEST(Completion, OffersEveryCommandAndEveryOption)
{
    const Folder folder;
    const Words commands = Commands();
    ASSERT_GE(commands.size(), 7u);

    Words first = commands;
    for (const std::string &option : OptionsIn(Help())) first.push_back(option);
    EXPECT_EQ(Completions({""}, folder), first);
    for (const std::string &command : commands) {
        const Words options = OptionsIn(Help(command));
        EXPECT_GE(options.size(), 2u) << command;
        EXPECT_EQ(Completions({command, "-"}, folder), options) << command;
    }
}

TEST(Completion, OffersWordsFilesAndFolders)
{
    const Folder folder;
    folder.Write("a film.srt", "");
    std::filesystem::create_directory(folder / "a folder");

    EXPECT_EQ(Completions({"sn"}, folder), Words{"snapshot"});
    EXPECT_EQ(Completions({"snapshot", "--layer", ""}, folder), (Words{"1", "2", "3"}));
    EXPECT_EQ(Completions({"snapshot", "x.srt", "--mode", "=", "pa"}, folder), Words{"palette"});
    EXPECT_EQ(Completions({"snapshot", "--mode", "="}, folder), (Words{"index", "palette", "argb"}));
    EXPECT_EQ(Completions({"play", "--start", "1"}, folder), Words{});
    EXPECT_EQ(Completions({"play", "a fi"}, folder), Words{"a film.srt"});
    EXPECT_EQ(Completions({"play", "--font", "a fi"}, folder), Words{"a film.srt"});
    EXPECT_EQ(Completions({"snapshot", "-o", "a f"}, folder), Words{"a folder"});
    EXPECT_EQ(Completions({"completion", ""}, folder), Words{"bash"});
}

TEST(ManualPage, NamesEveryCommandOfCaptionsWithItsArguments)
{
    const std::string page = std::regex_replace(RunTool("man").out, std::regex(R"(\\-)"), "-");
    const std::string help = Help("list");

    for (const std::string text : {"CarriageReturn", "Text \"characters\"", "SetPenLocation row= column=",
                                   "TabOffset columns=", "RollUp rows=", "ClearWindows windows=", "EndOfText",
                                   "EndOfCaption", "BackgroundAttributes color= opacity="}) {
        EXPECT_NE(page.find("\n" + text + "\n"), std::string::npos) << text;
        EXPECT_NE(help.find("\n  " + text + "\n"), std::string::npos) << text;
    }
    EXPECT_EQ(page.find("ProgramName"), std::string::npos) << "of extended data, which is no service's";
}

TEST(ManualPage, DescribesEveryCommandAndEveryOption)
{
    std::string page = RunTool("man").out;
    page = std::regex_replace(page, std::regex(R"(\\-)"), "-");
    page = std::regex_replace(page, std::regex(R"(\\f[BIR])"), "");

    EXPECT_NE(page.find("\n.SH EXIT STATUS\n"), std::string::npos);
    EXPECT_NE(page.find("\n.SH ENVIRONMENT\n"), std::string::npos);
    for (const std::string &command : Commands()) {
        const std::size_t begin = page.find("\n.SS " + command + "\n");
        ASSERT_NE(begin, std::string::npos) << command;
        const std::string section = page.substr(begin, page.find("\n.S", begin + 1) - begin);
        for (const std::string &option : OptionsIn(Help(command))) {
            EXPECT_TRUE(std::regex_search(section, std::regex("\n\\.TP\n(-[a-z], )?" + option + "[ ,\n]")))
                << command << " " << option;
        }
        for (const std::string &example : LinesAfter("Examples", Help(command))) {
            EXPECT_NE(section.find("\n" + example + "\n"), std::string::npos) << example;
        }
    }
}

TEST(ManualPage, IsWellFormed)
{
    const Folder folder;
    const std::string page = folder.Write("kova-caption.1", RunTool("man").out);

    EXPECT_EQ(std::system(("mandoc -T lint '" + page + "'").c_str()), 0);
}

namespace
{

class Examples : public testing::TestWithParam<const char *>
{
};

} // namespace

static const char *const g_commands[] = {"play",     "snapshot", "sheet",     "info",     "list",
                                         "coverage", "edges",    "preview",   "settings", "generate",
                                         "bench",    "man",      "completion"};

TEST(ExamplesOfAllCommands, AreTested)
{
    EXPECT_EQ(Commands(), Words(std::begin(g_commands), std::end(g_commands)));
}

// As the help gives them, in a folder with a film.srt, a film.scc, settings and a font of a device, under an X server.
TEST_P(Examples, DoWhatTheySay)
{
    const std::string command = GetParam();
    const Folder folder;
    std::string script = "set -e\ncd '" + folder / "" +
                         "'\nmkdir bin sets\nln -s \"$TOOL\" bin/kova-caption\n" + "PATH=$PWD/bin:$PATH\n" +
                         "export XDG_CONFIG_HOME=$PWD/config\n" +
                         "ln -s /usr/share/fonts/truetype/dejavu/DejaVuSans.ttf sets/Sans.ttf\n";
    folder.Write("film.srt", "1\n00:00:00,700 --> 00:00:00,900\nGood evening.\n\n"
                             "2\n00:00:02,100 --> 00:00:02,300\n<i>Good</i> night.\n");
    std::filesystem::copy_file(KOVA_CAPTION_SAMPLES "/roll_up.scc", folder / "film.scc");
    folder.Write("viewer.txt", "size = 150\n");

    const auto examples = LinesAfter("Examples", Help(command));
    EXPECT_FALSE(examples.empty());
    for (const std::string &example : examples) {
        EXPECT_NE(example.find("kova-caption " + command), std::string::npos) << example;
        script += "echo 'example: " + example + "'\n";
        // The menu stays until the viewer leaves it.
        const bool menu = example == "kova-caption settings";
        script +=
            menu ? "(while sleep 0.3; do xdotool key Escape; done) & keys=$!\n" + example + "\nkill $keys\n"
                 : example + "\n";
    }
    folder.Write("examples", script);
    const Outcome outcome = RunScriptUnderX("bash '" + folder / "examples" + "'\n");

    EXPECT_EQ(outcome.exit, 0) << outcome.out << outcome.err;
    EXPECT_EQ(outcome.err.find("kova-caption: "), std::string::npos) << outcome.err;
}

INSTANTIATE_TEST_SUITE_P(Command, Examples, testing::ValuesIn(g_commands),
                         [](const auto &command) { return std::string(command.param); });
