#include "tests/support/BothRoads.h"

#include <exception>
#include <msgpack.hpp>
#include <typeinfo>
#include <vector>

#include "structure/CDEStructureDataHelper.h"
#include "tests/support/SameDocument.h"
#include "tests/support/TextRoad.h"
#include "tests/support/Texts.h"

namespace {

/// How a call ended, in words: its result, or what it threw.
template <typename Call>
std::string EndingOf(const Call& call) {
    try {
        return call() ? "true" : "false";
    } catch (const msgpack::insufficient_bytes&) {
        return "msgpack::insufficient_bytes";
    } catch (const msgpack::parse_error&) {
        return "msgpack::parse_error";
    } catch (const msgpack::type_error&) {
        return "msgpack::type_error";
    } catch (const vxJson::Error& error) {
        return std::string("vxJson::Error: ") + error.what();
    } catch (const std::exception& error) {
        return typeid(error).name() + std::string(": ") + error.what();
    }
}

testing::AssertionResult SameText(const char* what, const std::string& library,
                                  const std::string& text) {
    if (library == text) return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << what << " is " << library << ", and by way of text " << text;
}

testing::AssertionResult SameValue(const vxJson::Value& library, const vxJson::Value& text) {
    if (library == text) return testing::AssertionSuccess();
    return SameText("value", library.toString(false), text.toString(false));
}

std::string InHex(const std::string& bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string hex;
    for (const char byte : bytes) {
        const unsigned code = static_cast<unsigned char>(byte);
        hex += kDigits[code / 16];
        hex += kDigits[code % 16];
    }
    return hex;
}

/// What the outputs hold before a call, so that an output left alone can be told.
constexpr int kUntouched = 4711;

}  // namespace

testing::AssertionResult SameHeaderOnBothRoads(const std::string& blob) {
    std::string libraryName = "untouched", textName = libraryName;
    vxJson::Value librarySchema(kUntouched), textSchema(kUntouched);
    int libraryOffset = kUntouched, textOffset = kUntouched;
    const std::string libraryEnding = EndingOf([&] {
        return CDEStructureDataHelper::GetBinaryDataInfo(blob, libraryName, librarySchema,
                                                         libraryOffset);
    });
    const std::string textEnding = EndingOf(
        [&] { return TextRoad::GetBinaryDataInfo(blob, textName, textSchema, textOffset); });

    testing::AssertionResult same = SameText("ending", libraryEnding, textEnding);
    if (same) same = SameText("name", libraryName, textName);
    if (same) same = SameText("offset", std::to_string(libraryOffset), std::to_string(textOffset));
    if (same) same = SameValue(librarySchema, textSchema);
    return same ? same : same << "\nof the bytes " << InHex(blob);
}

testing::AssertionResult SameDecodingOnBothRoads(const std::string& buffer,
                                                 const vxJson::Value& schema,
                                                 const vxJson::Value& offsets,
                                                 const vxJson::Value& fields) {
    rapidjson::Document library, text;
    library.SetInt(kUntouched);
    text.SetInt(kUntouched);
    const int length = static_cast<int>(buffer.size());
    const std::string libraryEnding = EndingOf([&] {
        return CDEStructureDataHelper::ParseBinaryDataToJson(buffer.data(), length, schema, offsets,
                                                             fields, library);
    });
    const std::string textEnding = EndingOf([&] {
        return TextRoad::ParseBinaryDataToJson(buffer.data(), length, schema, offsets, fields,
                                               text);
    });

    testing::AssertionResult same = SameText("ending", libraryEnding, textEnding);
    if (same) same = SameDocument(library, text);
    if (same) return same;
    return same << "\nof the bytes " << InHex(buffer) << "\nwith the schema "
                << schema.toString(false) << "\nthe offsets " << offsets.toString(false)
                << "\nand the selection " << fields.toString(false);
}

testing::AssertionResult SameValueOnBothRoads(const std::string& packed) {
    static const vxJson::Value kSchema = Json(R"([{"name": "leaf", "type": 1, "index": 0}])");
    static const vxJson::Value kOffsets = Json("[0]");
    static const vxJson::Value kEverything;
    return SameDecodingOnBothRoads(packed, kSchema, kOffsets, kEverything);
}

testing::AssertionResult SameRenamingOnBothRoads(const std::map<DDKey, DDKey>& mapping,
                                                 const std::string& parserPath,
                                                 const rapidjson::Value& document) {
    rapidjson::Document library, text;
    library.CopyFrom(document, library.GetAllocator());
    text.CopyFrom(document, text.GetAllocator());
    std::vector<std::string> libraryItems = {"first"}, textItems = libraryItems;
    const std::string libraryEnding = EndingOf([&] {
        return CDEStructureDataHelper::PostDataProcessing(mapping, parserPath, library,
                                                          libraryItems);
    });
    const std::string textEnding = EndingOf(
        [&] { return TextRoad::PostDataProcessing(mapping, parserPath, text, textItems); });

    testing::AssertionResult same = SameText("ending", libraryEnding, textEnding);
    if (same) same = SameDocument(library, text);
    if (same)
        same = SameText("number of items", std::to_string(libraryItems.size()),
                        std::to_string(textItems.size()));
    for (std::size_t i = 0; same && i < libraryItems.size(); ++i)
        same = SameText("item", libraryItems[i], textItems[i]);
    return same;
}
