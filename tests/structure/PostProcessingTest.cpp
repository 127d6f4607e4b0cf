#include <gtest/gtest.h>

#include <limits>

#include "structure/CDEStructureDataHelper.h"
#include "tests/support/Rows.h"
#include "tests/support/Texts.h"

namespace {

using Items = std::vector<std::string>;

/// Returns the mapping of a text: [[wanted parser path, wanted name, parser path, name], ...].
std::map<DDKey, DDKey> Mapping(const std::string& text) {
    std::map<DDKey, DDKey> mapping;
    const vxJson::Value rows = Json(text);
    for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
        mapping[DDKey(rows[i][0].asString(), rows[i][1].asString())] =
            DDKey(rows[i][2].asString(), rows[i][3].asString());
    }
    return mapping;
}

TEST(PostProcessing, RenamesAndRenders) {
    for (const auto& row : RowsOf(TEST_DATA "/renamings.txt")) {
        SCOPED_TRACE(row[0]);
        rapidjson::Document document;
        document.Parse(row[2].c_str());
        Items items;
        CDEStructureDataHelper::PostDataProcessing(Mapping(row[1]), "p", document, items);
        std::string list;
        for (const std::string& item : items) list += (list.empty() ? "" : ",") + item;
        EXPECT_EQ("[" + list + "]", row[3]);
    }
}

TEST(PostProcessing, RenamesInPlaceAndAppends) {
    rapidjson::Document document;
    document.Parse(R"([{"name":"a"}])");
    Items items = {"one", "two"};
    const auto mapping = Mapping(R"([["","b","p","a"],["","c","p","b"]])");
    EXPECT_TRUE(CDEStructureDataHelper::PostDataProcessing(mapping, "p", document, items));
    CDEStructureDataHelper::PostDataProcessing(mapping, "p", document, items);
    EXPECT_EQ(items, (Items{"one", "two", R"({"name":"b"})", R"({"name":"c"})"}));
    EXPECT_EQ(Text(document), R"([{"name":"c"}])");
}

TEST(PostProcessing, AppendsTheWrittenPartOfARejectedItem) {
    rapidjson::Document document;
    document.Parse(R"([{"a":1,"v":0,"b":2},{"c":[{}]}])");
    document[0]["v"].SetDouble(std::numeric_limits<double>::quiet_NaN());
    Items items;
    CDEStructureDataHelper::PostDataProcessing({}, "p", document, items);
    EXPECT_EQ(items, (Items{R"({"a":1,"v":)", R"({"c":[{}]})"}));
}

}  // namespace
