#include "tests/support/BothDecoders.h"

#include "structure/CDEStructureDataHelper.h"
#include "tests/support/SameDocument.h"
#include "tests/support/TextRoute.h"
#include "tests/support/Texts.h"

Header ReadHeader(const std::string& blob) {
    Header header;
    header.ending = EndingOf([&] {
        return CDEStructureDataHelper::GetBinaryDataInfo(blob, header.name, header.schema,
                                                         header.offset);
    });
    return header;
}

testing::AssertionResult SameDecodingOnBothDecoders(const std::string& buffer,
                                                    const vxJson::Value& schema,
                                                    const vxJson::Value& offsets,
                                                    const vxJson::Value& fields) {
    const std::vector<char> exact = ExactBuffer(buffer);
    const auto endingBy = [&](const auto& parse, rapidjson::Document& out) {
        out.SetInt(kUntouched);
        return EndingOf([&] {
            return parse(exact.data(), static_cast<int>(exact.size()), schema, offsets, fields,
                         out);
        });
    };
    rapidjson::Document library, text;
    const std::string libraryEnding =
        endingBy(CDEStructureDataHelper::ParseBinaryDataToJson, library);
    const std::string textEnding = endingBy(TextRoute::ParseBinaryDataToJson, text);
    auto same = libraryEnding == textEnding ? SameDocument(library, text)
                                            : testing::AssertionFailure()
                                                  << "ends with " << libraryEnding
                                                  << ", the text route with " << textEnding;
    if (same) return same;
    return same << "\nof the bytes " << HexText(buffer) << "\nwith the schema "
                << schema.toString(false) << "\nthe offsets " << offsets.toString(false)
                << "\nand the selection " << fields.toString(false);
}

testing::AssertionResult SameValueOnBothDecoders(const std::string& packed) {
    static const vxJson::Value kSchema = Json(R"([{"name": "leaf", "type": 1, "index": 0}])");
    static const vxJson::Value kOffsets = Json("[0]");
    return SameDecodingOnBothDecoders(packed, kSchema, kOffsets, vxJson::Value());
}
