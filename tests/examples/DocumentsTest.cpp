#include <filesystem>
#include <regex>

#include "structure/CDEStructureDataHelper.h"
#include "tests/structure/SampleUnit.h"
#include "tests/support/Rows.h"
#include "tests/support/SameDocument.h"

// The documentation matches the code: links point to existing files, quoted code is that of the
// examples, and the bytes shown decode to the document shown.

namespace {

std::string Page(const std::string& path) {
    return FileText(SOURCE_DIRECTORY "/" + path);
}

/// Returns the part of `text` between `from` and `to`; empty if `text` does not contain both.
std::string Between(const std::string& text, const std::string& from, const std::string& to) {
    const std::size_t begin = text.find(from);
    const std::size_t end = text.find(to, begin + from.size());
    if (begin == std::string::npos || end == std::string::npos) return "";
    return text.substr(begin + from.size(), end - begin - from.size());
}

/// Returns the first group of each match of `pattern` in `text`.
std::vector<std::string> Matches(const std::string& text, const std::string& pattern) {
    const std::regex regex(pattern);
    return {std::sregex_token_iterator(text.begin(), text.end(), regex, 1), {}};
}

TEST(Pages, QuoteTheExamplesAndLinkToFiles) {
    for (const char* example : {"store_a_record.cpp", "read_a_frame.cpp"}) {
        const std::string code =
            Between(Page(std::string("examples/") + example), "store]\n", "// [end]");
        EXPECT_NE(code, "") << example;
        EXPECT_NE(Page("README.md").find("```cpp\n" + code + "```"), std::string::npos) << example;
    }
    for (const std::string name :
         {"README.md", "CHANGELOG.md", "docs/catalogue.md", "docs/json-forms.md",
          "docs/packed-format.md", "docs/stability.md"}) {
        const auto folder = std::filesystem::path(SOURCE_DIRECTORY "/" + name).parent_path();
        EXPECT_NE(Page(name), "") << name;
        for (const std::string& link : Matches(Page(name), "\\]\\(([^)#:]+)[)#]"))
            EXPECT_TRUE(std::filesystem::exists(folder / link)) << name << ": " << link;
    }
}

TEST(PackedFormat, ShowsTheSampleUnit) {
    const std::string page = Page("docs/packed-format.md");
    // One or two blanks separate the bytes; more separate them from the comment that follows.
    std::string frame;
    for (const std::string& bytes :
         Matches(Between(page, "```hex", "```"), "\n((?:[0-9a-f]{2}(?: {1,2}|(?=\n)))+)"))
        frame += Hex(bytes);
    EXPECT_EQ(frame, SampleUnit::Header() + SampleUnit::Payload());

    const std::string payload = SampleUnit::Payload();
    rapidjson::Document decoded, shown;
    EXPECT_TRUE(CDEStructureDataHelper::ParseBinaryDataToJson(
        payload.data(), static_cast<int>(payload.size()), Json(SampleUnit::kSchema),
        Json(Between(page, "```json offsets\n", "```")),
        Json(Between(page, "```json selection\n", "```")), decoded));
    shown.Parse(Between(page, "```json document\n", "```").c_str());
    EXPECT_TRUE(SameDocument(decoded, shown));
}

}  // namespace
