// SPDX-License-Identifier: MIT
// tools/README.md describes each field of the tool's JSON, and no other.
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/tool.h"

using Fields = std::set<std::string>;

// The paths of all fields: "pictures[].blocks[].x".
static void Collect(const nlohmann::json &value, const std::string &path, Fields &fields)
{
    if (value.is_array()) {
        for (const auto &element : value) Collect(element, path + "[]", fields);
        return;
    }
    if (!value.is_object()) return;
    for (const auto &[name, member] : value.items()) {
        const std::string field = path.empty() ? name : path + "." + name;
        fields.insert(field);
        Collect(member, field, fields);
    }
}

static Fields FieldsOf(const std::string &command)
{
    const Outcome outcome = RunTool(command);
    Fields fields;

    EXPECT_EQ(outcome.exit, 0) << outcome.err;
    Collect(nlohmann::json::parse(outcome.out), "", fields);
    return fields;
}

// The first column of the table below "### COMMAND".
static Fields Documented(const std::string &command)
{
    std::ostringstream page;
    page << std::ifstream(KOVA_CAPTION_SAMPLES "/../README.md").rdbuf();
    const std::string text = page.str();
    const std::size_t begin = text.find("\n### `" + command + " --json`\n");
    if (begin == std::string::npos) return {};
    const std::string section = text.substr(begin, text.find("\n#", begin + 1) - begin);
    static const std::regex row("\n\\| `([^`]+)` \\|");
    Fields fields;

    for (std::sregex_iterator field(section.begin(), section.end(), row); field != std::sregex_iterator();
         ++field) {
        fields.insert((*field)[1]);
    }
    return fields;
}

static void ExpectSnakeCase(const Fields &fields)
{
    static const std::regex form("[a-z0-9_.\\[\\]]+");

    for (const std::string &field : fields) EXPECT_TRUE(std::regex_match(field, form)) << field;
}

// One source with text, one with bitmaps, so that every list has an element.
TEST(Json, OfSnapshotHasTheDocumentedFields)
{
    const Folder folder;
    Fields fields =
        FieldsOf("snapshot '" KOVA_CAPTION_SAMPLES "/demo.vtt' --json -o '" + folder / "text" + "'");
    fields.merge(
        FieldsOf("snapshot '" KOVA_CAPTION_SAMPLES "/pictures.sup' --json -o '" + folder / "bitmaps" + "'"));

    EXPECT_EQ(fields, Documented("snapshot"));
    ExpectSnakeCase(fields);
}

// Text alone, the rows of CEA-608, the windows of CEA-708, and bitmaps.
TEST(Json, OfListHasTheDocumentedFields)
{
    const Folder folder;
    // A packet of 12 bytes with two blocks of service 1: DefineWindow 0, visible, and "Hi".
    const std::string windows =
        folder.Write("a.ccd", "1000 ff0627 fe9838 fe3020 fe011f fe0922 fe4869\n3000\n");
    Fields fields = FieldsOf("list '" KOVA_CAPTION_SAMPLES "/demo.vtt' --json");
    fields.merge(FieldsOf("list '" KOVA_CAPTION_SAMPLES "/roll_up.scc' --json"));
    fields.merge(FieldsOf("list '" KOVA_CAPTION_SAMPLES "/pictures.sup' --json"));
    fields.merge(FieldsOf("list '" + windows + "' --json"));

    EXPECT_EQ(fields, Documented("list"));
    ExpectSnakeCase(fields);
}

TEST(Json, OfGenerateHasTheDocumentedFields)
{
    const Fields fields = FieldsOf("generate --list --json");

    EXPECT_EQ(fields, Documented("generate --list"));
    ExpectSnakeCase(fields);
}

TEST(Json, OfBenchHasTheDocumentedFields)
{
    const Fields fields = FieldsOf("bench --headless --plane 160x90 --time 1 --json");

    EXPECT_EQ(fields, Documented("bench"));
    ExpectSnakeCase(fields);
}
