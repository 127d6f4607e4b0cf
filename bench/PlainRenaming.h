#pragma once

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <map>
#include <string>
#include <vector>

#include "variables/DDKey.h"

/// Does the same as PostDataProcessing, step by step with an ordered map of copied keys: the
/// baseline of its benchmark and the reference of its fuzz target.
class PlainRenaming {
  public:
    static bool Run(const std::map<DDKey, DDKey>& mapping, const std::string& parserPath,
                    rapidjson::Document& document, std::vector<std::string>& items) {
        std::map<DDKey, DDKey> inverse;
        for (const auto& [key, variable] : mapping) inverse[variable] = key;
        if (!document.IsArray()) return true;
        for (rapidjson::Value& item : document.GetArray()) {
            const rapidjson::Value* type = Find(item, "type");
            if (type != nullptr && type->IsInt() && type->GetInt() == 11) {
                RenameTable(inverse, parserPath, item, document.GetAllocator());
            } else if (const auto hit = inverse.find(DDKey(parserPath, TextOf(item)));
                       hit != inverse.end()) {
                SetText(item, hit->second.GetVarFullName(), document.GetAllocator());
            }
            rapidjson::StringBuffer buffer;
            rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
            item.Accept(writer);
            items.emplace_back(buffer.GetString());
        }
        return true;
    }

  private:
    using Pool = rapidjson::Document::AllocatorType;

    static rapidjson::Value* Find(rapidjson::Value& object, const char* key) {
        if (!object.IsObject()) return nullptr;
        const auto member = object.FindMember(key);
        return member == object.MemberEnd() ? nullptr : &member->value;
    }

    static std::string TextOf(rapidjson::Value& object) {
        const rapidjson::Value* name = Find(object, "name");
        return name != nullptr && name->IsString() ? name->GetString() : std::string();
    }

    static void SetText(rapidjson::Value& object, const std::string& text, Pool& pool) {
        if (rapidjson::Value* name = Find(object, "name")) name->SetString(text.c_str(), pool);
    }

    static void RenameTable(const std::map<DDKey, DDKey>& inverse, const std::string& parserPath,
                            rapidjson::Value& table, Pool& pool) {
        const std::string tableName = TextOf(table);
        rapidjson::Value* columns = Find(table, "column");
        if (columns == nullptr || !columns->IsArray()) return;
        for (rapidjson::Value& column : columns->GetArray()) {
            const auto hit = inverse.find(DDKey(parserPath, tableName + "." + TextOf(column)));
            if (hit == inverse.end()) continue;
            const std::string wanted = hit->second.GetVarFullName();
            const std::size_t dot = wanted.find('.');
            if (dot == std::string::npos) continue;
            SetText(table, wanted.substr(0, dot), pool);
            SetText(column, wanted.substr(dot + 1), pool);
        }
    }
};
