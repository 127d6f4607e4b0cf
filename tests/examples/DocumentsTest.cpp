#include <filesystem>
#include <regex>
#include <set>

#include "structure/CDEStructureDataHelper.h"
#include "tests/structure/SampleUnit.h"
#include "tests/support/Rows.h"
#include "tests/support/SameDocument.h"

// The documentation matches the code: quoted code is that of the examples, and the bytes shown
// decode to the document shown.

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

TEST(Pages, QuoteTheExamples) {
    std::set<std::string> quotations;
    for (const auto& example : std::filesystem::directory_iterator(SOURCE_DIRECTORY "/examples"))
        if (example.is_regular_file())
            quotations.insert(
                Between(FileText(example.path().string()), "// [quoted]\n", "// [end]"));
    for (const std::string page : {"README.md", "docs/catalogue.md"})
        for (const std::string& code : Matches(Page(page), "```cpp\n([^`]+)```"))
            EXPECT_EQ(quotations.count(code), 1) << page << code;
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
