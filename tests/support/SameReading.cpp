#include "tests/support/SameReading.h"

#include <memory>
#include <utility>

#include "structure/CDEStructureDataHelper.h"
#include "tests/support/BothDecoders.h"
#include "tests/support/SameDocument.h"
#include "tests/support/Texts.h"

namespace {

/// Returns the class of an ending, without the text of an error.
std::string ClassOf(const std::string& ending) {
    return ending.substr(0, ending.find(':'));
}

/// Returns a selection in which plain names, which may name tables for a reader only, have the
/// object form.
vxJson::Value InObjectForm(vxJson::Value selection) {
    if (!selection.isArray()) return selection;
    for (vxJson::Value& entry : selection)
        if (entry.isString()) entry["table"] = std::exchange(entry, vxJson::Value());
    return selection;
}

}  // namespace

testing::AssertionResult SameReading(dataengine::PackedFrameReader& reader,
                                     const std::string& frame, const vxJson::Value& offsets,
                                     const vxJson::Value& selection) {
    const auto failure = [&] {
        return testing::AssertionFailure()
               << "frame " << HexText(frame) << "offsets " << offsets.toString(false)
               << " selection " << selection.toString(false) << ": ";
    };
    const auto bytes = ExactBuffer(frame);
    const Header header = ReadHeader(frame);
    const std::string opened = EndingOf([&] { return reader.Open({bytes.data(), frame.size()}); });
    if (ClassOf(opened) != ClassOf(header.ending))
        return failure() << "opens with " << opened << ", not " << header.ending;
    if (opened != "true") return testing::AssertionSuccess();
    if (reader.Name() != header.name || reader.Schema() != header.schema ||
        reader.HeaderLength() != header.offset)
        return failure() << "the headers differ";

    rapidjson::Document wanted(rapidjson::kTrueType), document(rapidjson::kTrueType);
    const std::string ending = EndingOf([&] {
        return CDEStructureDataHelper::ParseBinaryDataToJson(
            reader.Payload().data(), static_cast<int>(reader.Payload().size()), header.schema,
            offsets, InObjectForm(selection), wanted);
    });
    const std::string decoded = EndingOf([&] { return reader.Decode(offsets, document); });
    if (ClassOf(decoded) != ClassOf(ending))
        return failure() << "decodes with " << decoded << ", not " << ending;
    const testing::AssertionResult same = SameDocument(document, wanted);
    return same ? same : failure() << same.message();
}
