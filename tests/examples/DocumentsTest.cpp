#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>
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
#include "tests/examples/Files.h"

// The pages of the repository say what is so: their code is the examples' code, their bytes decode,
// their keys are those of the classes, their links lead somewhere.

namespace {

std::string page(const std::string& path) {
    return readFile(SOURCE_DIRECTORY "/" + path);
}

/// What stands in `text` between `from` and `to`; empty if they don't stand there.
std::string between(const std::string& text, const std::string& from, const std::string& to) {
    const std::size_t begin = text.find(from);
    if (begin == std::string::npos) return "";
    const std::size_t end = text.find(to, begin + from.size());
    return end == std::string::npos ? ""
                                    : text.substr(begin + from.size(), end - begin - from.size());
}

vxJson::Value parse(const std::string& text) {
    std::istringstream input(text);
    vxJson::Value value;
    EXPECT_TRUE(vxJson::Reader().parse(input, value, true)) << text;
    return value;
}

TEST(Readme, ShowsTheCodeOfTheExamples) {
    const std::string readme = page("README.md");
    const std::pair<std::string, std::string> rows[] = {
        {"record_to_store", "// [a record into the store]\n"},
        {"answer_from_store", "// [a structured answer out of the store]\n"}};
    for (const auto& [program, marker] : rows) {
        const std::string code = between(page("examples/" + program + ".cpp"), marker, "// [end]");
        ASSERT_NE(code, "") << program;
        EXPECT_NE(readme.find("```cpp\n" + code + "```"), std::string::npos) << program;
    }
}

TEST(Pages, LinkToWhatIsThere) {
    const std::regex link("\\]\\(([^)#:]+)[)#]");
    for (const std::string name :
         {"README.md", "CHANGELOG.md", "docs/packed-format.md", "docs/json-forms.md",
          "docs/stability.md", "docs/catalogue.md"}) {
        const std::string text = page(name);
        EXPECT_NE(text, "") << name;
        const std::filesystem::path folder =
            std::filesystem::path(SOURCE_DIRECTORY "/" + name).parent_path();
        for (std::sregex_iterator i(text.begin(), text.end(), link), end; i != end; ++i)
            EXPECT_TRUE(std::filesystem::exists(folder / (*i)[1].str())) << name << ": " << (*i)[1];
    }
}

TEST(PackedFormat, ShowsAFrameThatDecodes) {
    const std::string text = page("docs/packed-format.md");
    std::string frame;
    std::istringstream lines(between(text, "```hex\n", "```"));
    for (std::string line; std::getline(lines, line);) {
        // The bytes end where a comment begins, behind two blanks that no byte follows.
        std::istringstream words(line);
        for (std::string word; words >> word && std::regex_match(word, std::regex("[0-9a-f]{2}"));)
            frame += static_cast<char>(std::stoi(word, nullptr, 16));
    }
    std::string name;
    vxJson::Value schema;
    int header = 0;
    ASSERT_TRUE(CDEStructureDataHelper::GetBinaryDataInfo(frame, name, schema, header));
    EXPECT_EQ(name, "demo");
    EXPECT_EQ(header, 186);
    EXPECT_EQ(frame.size(), 186u + 34u);

    rapidjson::Document decoded;
    ASSERT_TRUE(CDEStructureDataHelper::ParseBinaryDataToJson(
        frame.data() + header, static_cast<int>(frame.size()) - header, schema,
        parse(between(text, "```json offsets\n", "```")),
        parse(between(text, "```json selection\n", "```")), decoded));
    rapidjson::Document shown;
    shown.Parse(between(text, "```json document\n", "```").c_str());
    EXPECT_FALSE(shown.HasParseError());
    EXPECT_TRUE(decoded == shown);
}

/// The keys in the first column of the table below a heading, but for those that are never written.
std::set<std::string> shownKeys(const std::string& text, const std::string& heading) {
    std::set<std::string> keys;
    std::istringstream lines(between(text, "### `" + heading + "`\n", "\n#"));
    const std::regex row("\\| `(\\w+)` \\|.*");
    std::smatch found;
    for (std::string line; std::getline(lines, line);)
        if (line.find("| never") == std::string::npos && std::regex_match(line, found, row))
            keys.insert(found[1]);
    return keys;
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
        const std::set<std::string> keys = shownKeys(text, heading);
        EXPECT_EQ(keys.size(), json.size()) << heading << ": " << json.toString(false);
        rapidjson::Document members;
        members.Parse(json.toString(false).c_str());
        for (const std::string& key : keys)
            EXPECT_TRUE(members.HasMember(key.c_str())) << heading << ": " << key;
    }
}

}  // namespace
