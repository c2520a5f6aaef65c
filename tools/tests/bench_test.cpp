#include <regex>

#include <gtest/gtest.h>

#include "tool.h"

// A name of the table or of the JSON, then a figure for each of the three colour modes.
static void ExpectFigures(const std::string &text, const std::string &name, const std::string &between)
{
    const std::string figure = "([0-9]+\\.[0-9]+)";
    std::smatch parts;

    ASSERT_TRUE(std::regex_search(text, parts,
                                  std::regex(name + between + figure + between + figure + between + figure)))
        << name << " in\n"
        << text;
    for (std::size_t i = 1; i <= 3; ++i) EXPECT_GT(std::stod(parts[i]), 0) << name;
}

TEST(Bench, MeasuresEveryEdgeInEveryColourMode)
{
    const Outcome table = RunTool("bench --headless --plane 320x180 --time 5");
    const Outcome json = RunTool("bench --headless --plane 320x180 --time 5 --json");

    ASSERT_EQ(table.exit, 0) << table.err;
    EXPECT_NE(table.out.find("320x180"), std::string::npos) << table.out;
    EXPECT_TRUE(std::regex_search(table.out, std::regex("captions per second +index +palette +argb\n")));
    ASSERT_EQ(json.exit, 0) << json.err;
    EXPECT_EQ(json.out.rfind("{\n  \"plane\": \"320x180\",\n  \"height\": 12,\n", 0), 0u) << json.out;
    for (const std::string edge : {"none", "raised", "depressed", "uniform", "left-shadow", "right-shadow"}) {
        ExpectFigures(table.out, "\n" + edge, " +");
        ExpectFigures(table.out, "\ndraw a line, " + edge, " +");
        ExpectFigures(json.out, "\"" + edge + "\": \\{", "[\", a-z:]+");
        ExpectFigures(json.out, "\"draw a line, " + edge + "\": \\{", "[\", a-z:]+");
    }
    for (const std::string operation : {"clear the plane", "measure a line", "flip", "lay a caption out"}) {
        ExpectFigures(table.out, "\n" + operation, " +");
        ExpectFigures(json.out, "\"" + operation + "\": \\{", "[\", a-z:]+");
    }
}
