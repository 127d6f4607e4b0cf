#include "tests/support/BothDecoders.h"

#include "structure/CDEStructureDataHelper.h"
#include "tests/support/SameDocument.h"
#include "tests/support/TextRoute.h"
#include "tests/support/Texts.h"

namespace {

/// Fails with the message unless the outputs are equal.
testing::AssertionResult Same(const char* what, bool equal, const std::string& library,
                              const std::string& text) {
    if (equal) return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << what << " is " << library << ", and by way of text " << text;
}

testing::AssertionResult Same(const char* what, const std::string& library,
                              const std::string& text) {
    return Same(what, library == text, library, text);
}

std::string InHex(const std::string& bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string hex;
    for (const char byte : bytes) {
        hex += kDigits[static_cast<unsigned char>(byte) / 16];
        hex += kDigits[static_cast<unsigned char>(byte) % 16];
    }
    return hex;
}

template <typename Read>
Header HeaderBy(const Read& read, const std::string& blob) {
    Header header;
    header.ending = EndingOf([&] { return read(blob, header.name, header.schema, header.offset); });
    return header;
}

}  // namespace

Header ReadHeader(const std::string& blob) {
    return HeaderBy(CDEStructureDataHelper::GetBinaryDataInfo, blob);
}

testing::AssertionResult SameHeaderOnBothDecoders(const std::string& blob) {
    const Header library = ReadHeader(blob), text = HeaderBy(TextRoute::GetBinaryDataInfo, blob);
    auto same = Same("ending", library.ending, text.ending);
    if (same) same = Same("name", library.name, text.name);
    if (same) same = Same("offset", std::to_string(library.offset), std::to_string(text.offset));
    if (same)
        same = Same("schema", library.schema == text.schema, library.schema.toString(false),
                    text.schema.toString(false));
    return same ? same : same << "\nof the bytes " << InHex(blob);
}

testing::AssertionResult SameDecodingOnBothDecoders(const std::string& buffer,
                                                    const vxJson::Value& schema,
                                                    const vxJson::Value& offsets,
                                                    const vxJson::Value& fields) {
    const auto endingBy = [&](const auto& parse, rapidjson::Document& out) {
        out.SetInt(kUntouched);
        return EndingOf([&] {
            return parse(buffer.data(), static_cast<int>(buffer.size()), schema, offsets, fields,
                         out);
        });
    };
    rapidjson::Document library, text;
    auto same = Same("ending", endingBy(CDEStructureDataHelper::ParseBinaryDataToJson, library),
                     endingBy(TextRoute::ParseBinaryDataToJson, text));
    if (same) same = SameDocument(library, text);
    if (same) return same;
    return same << "\nof the bytes " << InHex(buffer) << "\nwith the schema "
                << schema.toString(false) << "\nthe offsets " << offsets.toString(false)
                << "\nand the selection " << fields.toString(false);
}

testing::AssertionResult SameValueOnBothDecoders(const std::string& packed) {
    static const vxJson::Value kSchema = Json(R"([{"name": "leaf", "type": 1, "index": 0}])");
    static const vxJson::Value kOffsets = Json("[0]");
    return SameDecodingOnBothDecoders(packed, kSchema, kOffsets, vxJson::Value());
}

testing::AssertionResult SameRenamingOnBothDecoders(const std::map<DDKey, DDKey>& mapping,
                                                    const std::string& parserPath,
                                                    const rapidjson::Value& document) {
    std::vector<std::string> libraryItems = {"first"}, textItems = libraryItems;
    const auto endingBy = [&](const auto& process, rapidjson::Document& renamed, auto& items) {
        renamed.CopyFrom(document, renamed.GetAllocator());
        return EndingOf([&] { return process(mapping, parserPath, renamed, items); });
    };
    rapidjson::Document library, text;
    auto same =
        Same("ending", endingBy(CDEStructureDataHelper::PostDataProcessing, library, libraryItems),
             endingBy(TextRoute::PostDataProcessing, text, textItems));
    if (same) same = SameDocument(library, text);
    if (same)
        same = Same("list of items", libraryItems == textItems,
                    testing::PrintToString(libraryItems), testing::PrintToString(textItems));
    return same;
}
