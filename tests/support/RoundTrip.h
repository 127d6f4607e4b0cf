#pragma once

#include <exception>
#include <string>

#include "structure/CDEStructureDataHelper.h"
#include "structure/PackedFrameWriter.h"
#include "tests/support/SameDocument.h"
#include "tests/support/Texts.h"

/// Decodes all items of the frame that `writer` holds.
inline rapidjson::Document DecodedWhole(const dataengine::PackedFrameWriter& writer) {
    const std::string frame = writer.Frame();
    std::string name;
    vxJson::Value schema;
    int header = 0;
    rapidjson::Document document;
    CDEStructureDataHelper::GetBinaryDataInfo(frame, name, schema, header);
    EXPECT_EQ(header, writer.HeaderLength());
    const std::vector<char> payload = ExactBuffer(frame.substr(static_cast<std::size_t>(header)));
    EXPECT_TRUE(CDEStructureDataHelper::ParseBinaryDataToJson(
        payload.data(), static_cast<int>(payload.size()), schema, writer.Offsets(), vxJson::Value(),
        document));
    return document;
}

/// Succeeds if a frame of the items of `document` decodes to `document` again.
inline testing::AssertionResult RoundTrips(const rapidjson::Value& document) {
    testing::AssertionResult result = testing::AssertionSuccess();
    try {
        dataengine::PackedFrameWriter writer("unit");
        writer.AddItems(document);
        result = SameDocument(DecodedWhole(writer), document);
    } catch (const std::exception& error) {
        result = testing::AssertionFailure() << error.what();
    }
    return result ? result : result << "\nin " << Text(document);
}
