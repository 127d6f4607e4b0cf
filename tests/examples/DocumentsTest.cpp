#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "descriptors/CDEDeviceInfo.h"
#include "descriptors/CDEDeviceMetadata.h"
#include "query/CDEDeviceDataQueryInfo.h"
#include "query/CDEQueryResultRawDataPlusMetaData.h"
#include "query/CDEQueryResultStructureData.h"
#include "query/CDEStructureQueryInfo.h"
#include "query/CDETableQueryInfo.h"
#include "records/CDEDataShowCommand.h"
#include "structure/CDEStructureDataHelper.h"
#include "tests/support/Rows.h"
#include "tests/support/Texts.h"

// The pages of the repository say what is so: their code is the examples' code, their bytes decode,
// their keys are those of the classes, their links lead somewhere.

namespace {

std::string page(const std::string& path) {
    return FileText(SOURCE_DIRECTORY "/" + path);
}

/// What stands in `text` between `from` and `to`; empty if they don't stand there.
std::string between(const std::string& text, const std::string& from, const std::string& to) {
    const std::size_t begin = text.find(from);
    const std::size_t end = text.find(to, begin + from.size());
    if (begin == std::string::npos || end == std::string::npos) return "";
    return text.substr(begin + from.size(), end - begin - from.size());
}

/// What a pattern finds in `text`: the first group of each match.
std::vector<std::string> found(const std::string& text, const std::string& pattern) {
    const std::regex regex(pattern);
    std::vector<std::string> groups;
    for (std::sregex_iterator i(text.begin(), text.end(), regex), end; i != end; ++i)
        groups.push_back((*i)[1]);
    return groups;
}

TEST(Readme, ShowsTheCodeOfTheExamples) {
    const std::string readme = page("README.md");
    for (const auto& row : Rows(R"(
        record_to_store   | // [a record into the store]
        answer_from_store | // [a structured answer out of the store])")) {
        const std::string source = page("examples/" + row[0] + ".cpp");
        const std::string code = between(source, row[1] + "\n", "// [end]");
        ASSERT_NE(code, "") << row[0];
        EXPECT_NE(readme.find("```cpp\n" + code + "```"), std::string::npos) << row[0];
    }
}

TEST(Pages, LinkToWhatIsThere) {
    for (const std::string name :
         {"README.md", "CHANGELOG.md", "docs/packed-format.md", "docs/json-forms.md",
          "docs/stability.md", "docs/catalogue.md"}) {
        const std::string text = page(name);
        EXPECT_NE(text, "") << name;
        const auto folder = std::filesystem::path(SOURCE_DIRECTORY "/" + name).parent_path();
        for (const std::string& link : found(text, "\\]\\(([^)#:]+)[)#]"))
            EXPECT_TRUE(std::filesystem::exists(folder / link)) << name << ": " << link;
    }
}

TEST(PackedFormat, ShowsAFrameThatDecodes) {
    const std::string text = page("docs/packed-format.md");
    // Bytes stand one or two blanks apart, and further from the comment behind them.
    std::string frame;
    for (const std::string& bytes :
         found(between(text, "```hex", "```"), "\n((?:[0-9a-f]{2}(?: {1,2}|(?=\n)))+)"))
        frame += Hex(bytes);
    std::string name;
    vxJson::Value schema;
    int header = 0;
    ASSERT_TRUE(CDEStructureDataHelper::GetBinaryDataInfo(frame, name, schema, header));
    EXPECT_EQ(name, "demo");
    EXPECT_EQ(header, 186);

    rapidjson::Document decoded;
    ASSERT_TRUE(CDEStructureDataHelper::ParseBinaryDataToJson(
        frame.data() + header, static_cast<int>(frame.size()) - header, schema,
        Json(between(text, "```json offsets\n", "```")),
        Json(between(text, "```json selection\n", "```")), decoded));
    rapidjson::Document shown;
    shown.Parse(between(text, "```json document\n", "```").c_str());
    EXPECT_TRUE(decoded == shown);
}

template <class Class>
vxJson::Value saved() {
    vxJson::Value json;
    Class().SaveToJson(json);
    return json;
}

TEST(JsonForms, ShowTheKeysThatTheClassesWrite) {
    CDEDataShowCommand record;
    record.SetErrorLog("log");
    record.SetParam(vxJson::Value(1));
    record.SetProperties(vxJson::Value(1));
    vxJson::Value status;
    record.GetDEStatus(status);
    const std::unique_ptr<vxJson::Value> deviceData(record.GetDeviceDataJSon());

    const std::pair<std::string, vxJson::Value> rows[] = {
        {"GetDEStatus", status},
        {"GetODJson", record.GetODJson()},
        {"GetDeviceDataJSon", *deviceData},
        {"CDEDeviceDataQueryInfo", saved<CDEDeviceDataQueryInfo>()},
        {"CDETableQueryInfo", saved<CDETableQueryInfo>()},
        {"CDEStructureQueryInfo", saved<CDEStructureQueryInfo>()},
        {"CDEQueryResultRawData", saved<CDEQueryResultRawData>()},
        {"CDEQueryResultMetaDataOnly", saved<CDEQueryResultMetaDataOnly>()},
        {"CDEQueryResultRawDataPlusMetaData", saved<CDEQueryResultRawDataPlusMetaData>()},
        {"CDEQueryResultStructureData", saved<CDEQueryResultStructureData>()},
        {"CDEDeviceDataLocation", saved<CDEDeviceDataLocation>()},
        {"CDEDeviceMetadata", saved<CDEDeviceMetadata>()},
        {"CDEDeviceInfo", saved<CDEDeviceInfo>()},
    };
    const std::string text = page("docs/json-forms.md");
    for (const auto& [heading, json] : rows) {
        rapidjson::Document document;
        document.Parse(json.toString(false).c_str());
        std::set<std::string> keys;
        for (const auto& member : document.GetObject()) keys.insert(member.name.GetString());
        // The first column of the table below a heading, but for what is only read.
        const std::string table = between(text, "### `" + heading + "`\n", "\n#");
        const auto shown = found(table, "\n\\| `(\\w+)` \\|(?!.*\\| never)");
        EXPECT_EQ(std::set<std::string>(shown.begin(), shown.end()), keys) << heading;
    }
}

}  // namespace
