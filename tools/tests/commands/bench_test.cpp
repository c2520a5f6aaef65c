// SPDX-License-Identifier: MIT
#include <regex>
#include <set>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/tool.h"

// A row of the table: a figure for each of the three colour modes.
static void ExpectRow(const std::string &table, const std::string &name)
{
    const std::string figure = " +([0-9]+\\.[0-9])";
    std::smatch parts;

    ASSERT_TRUE(std::regex_search(table, parts, std::regex("\n" + name + figure + figure + figure + "\n")))
        << name << " in\n"
        << table;
    for (std::size_t i = 1; i <= 3; ++i) EXPECT_GT(std::stod(parts[i]), 0) << name;
}

// One figure for each of the three colour modes.
static void ExpectFigures(const nlohmann::json &list, const std::string &what, const std::string &name)
{
    std::set<std::string> modes;

    for (const auto &figure : list) {
        if (figure.at(what) != name) continue;
        modes.insert(figure.at("mode").get<std::string>());
        EXPECT_GT(figure.at("microseconds").get<double>(), 0) << name;
    }
    EXPECT_EQ(modes, (std::set<std::string>{"index", "palette", "argb"})) << name;
}

TEST(Bench, MeasuresEveryEdgeInEveryColourMode)
{
    const Outcome table = RunTool("bench --headless --plane 320x180 --time 5");
    const Outcome text = RunTool("bench --headless --plane 320x180 --time 5 --json");

    ASSERT_EQ(table.exit, 0) << table.err;
    EXPECT_NE(table.out.find("320x180"), std::string::npos) << table.out;
    EXPECT_TRUE(std::regex_search(table.out, std::regex("captions per second +index +palette +argb\n")));
    ASSERT_EQ(text.exit, 0) << text.err;
    const auto json = nlohmann::json::parse(text.out);
    EXPECT_EQ(json.at("plane").at("width"), 320);
    EXPECT_EQ(json.at("text_height"), 12);
    for (const std::string edge : {"none", "raised", "depressed", "uniform", "left-shadow", "right-shadow"}) {
        ExpectRow(table.out, edge);
        ExpectRow(table.out, "draw a line, " + edge);
        ExpectFigures(json.at("captions"), "edge", edge);
        ExpectFigures(json.at("operations"), "operation", "draw a line, " + edge);
    }
    for (const std::string operation : {"clear the plane", "measure a line", "flip", "lay out a caption"}) {
        ExpectRow(table.out, operation);
        ExpectFigures(json.at("operations"), "operation", operation);
    }
}
