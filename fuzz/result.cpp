// Loads the document of a structured result from text and saves it again.

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "fuzz/Fuzz.h"
#include "query/CDEQueryResultStructureData.h"
#include "tests/support/SameDocument.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = InputText(data, size);
    if (!IsShallow(text)) return 0;
    rapidjson::Document expected;
    expected.Parse(text.c_str());

    vxJson::Value saved;
    saved["data"] = vxJson::Value(text.data(), static_cast<int>(text.size()));
    CDEQueryResultStructureData result;
    Require(result.LoadFromJson(saved), "a load fails");
    const rapidjson::Document& loaded = result.GetData_RO();
    Require(loaded.GetParseError() == expected.GetParseError() &&
                loaded.GetErrorOffset() == expected.GetErrorOffset(),
            "the parse error differs");
    Require(SameDocument(loaded, expected));

    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    loaded.Accept(writer);
    Require(result.SaveToJson(saved), "a save fails");
    Require(saved["data"].asBinary() == std::string(buffer.GetString(), buffer.GetSize()),
            "saved as " + saved["data"].asBinary());
    return 0;
}
