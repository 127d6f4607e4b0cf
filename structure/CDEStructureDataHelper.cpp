#include "structure/CDEStructureDataHelper.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "contracts/detail/rapidjson/RenderJson.h"
#include "structure/detail/DocumentBuilder.h"
#include "structure/detail/FrameHeader.h"
#include "structure/detail/ItemList.h"
#include "structure/detail/Renaming.h"
#include "structure/detail/SelectionWalk.h"

bool CDEStructureDataHelper::GetBinaryDataInfo(const std::string& blob, std::string& name,
                                               vxJson::Value& schema, int& offset) {
    // The name is replaced while the rest of the frame is read.
    const std::string copy = &blob == &name ? blob : std::string();
    const std::string& frame = &blob == &name ? copy : blob;
    std::size_t length = 0;
    if (!dataengine::detail::ReadHeader(frame, name, schema, length)) return false;
    offset = static_cast<int>(length);
    return true;
}

bool CDEStructureDataHelper::ParseBinaryDataToJson(const char* buf, int len,
                                                   const vxJson::Value& schema,
                                                   const vxJson::Value& offsets,
                                                   const vxJson::Value& fields,
                                                   rapidjson::Document& out) {
    if (!schema.isArray() || !offsets.isArray()) return false;
    const auto size = static_cast<std::size_t>(std::max(len, 0));
    dataengine::detail::DocumentBuilder builder(buf, size, offsets, out);
    return dataengine::detail::SelectionWalk(schema, builder).Run(fields);
}

const vxJson::Value* CDEStructureDataHelper::GetChildItemByName(const std::string& name,
                                                                const vxJson::Value& list) {
    const dataengine::detail::ItemList items(list);
    const auto found = items.FindOnce(name);
    return found ? &items[*found] : nullptr;
}

bool CDEStructureDataHelper::PostDataProcessing(const std::map<DDKey, DDKey>& mapping,
                                                const std::string& parserPath,
                                                rapidjson::Document& document,
                                                std::vector<std::string>& items) {
    std::vector<dataengine::detail::WantedName> names;
    for (const auto& [key, variable] : mapping) {
        if (variable.parserPath_ == parserPath)
            names.emplace_back(variable.varFullName_, key.varFullName_, names.size());
    }
    const dataengine::detail::Renaming renaming(std::move(names));
    if (!document.IsArray()) return true;

    dataengine::detail::JsonBuffer buffer;
    dataengine::detail::JsonWriter writer(buffer);
    for (rapidjson::Value& item : document.GetArray()) {
        renaming.Apply(item, document.GetAllocator());
        buffer.Clear();
        writer.Reset(buffer);
        dataengine::detail::RenderJson(item, writer);
        items.emplace_back(buffer.GetString(), buffer.GetSize());
    }
    return true;
}
