#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>
#include <rapidjson/istreamwrapper.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

namespace vxJson {

struct Text {
    using Kind = Value::Kind;

    static void Load(const rapidjson::Value& source, Value& target) {
        if (source.IsBool()) target = source.GetBool() ? 1 : 0;
        if (source.IsNumber()) target = static_cast<long long>(source.GetDouble());
        if (source.IsString()) target = std::string(source.GetString(), source.GetStringLength());
        if (source.IsArray()) {
            target.kind_ = Kind::array;
            for (const auto& element : source.GetArray())
                Load(element, target.append(Value::Null()));
        }
        if (source.IsObject()) {
            target.kind_ = Kind::object;
            for (const auto& member : source.GetObject()) {
                Load(member.value, target[member.name.GetString()]);
            }
        }
    }

    template <class Writer>
    static void Write(const Value& value, Writer& writer) {
        if (value.isNull()) {
            writer.Null();
        } else if (value.isArray()) {
            writer.StartArray();
            for (const auto& element : value.elements_) Write(element, writer);
            writer.EndArray();
        } else if (value.isObject()) {
            writer.StartObject();
            for (const auto& [key, member] : value.members_) {
                writer.Key(key.c_str());
                Write(member, writer);
            }
            writer.EndObject();
        } else if (value.kind_ == Kind::text || value.kind_ == Kind::binary) {
            writer.String(value.text_.c_str());
        } else {
            writer.Int64(value.number_);
        }
    }

    template <class Writer>
    static std::string Of(const Value& value) {
        rapidjson::StringBuffer buffer;
        Writer writer(buffer);
        Write(value, writer);
        return buffer.GetString();
    }
};

std::string Value::toString(bool) const {
    return Text::Of<rapidjson::Writer<rapidjson::StringBuffer>>(*this);
}

std::string Value::toStyledString() const {
    return Text::Of<rapidjson::PrettyWriter<rapidjson::StringBuffer>>(*this);
}

bool Reader::parse(std::istream& input, Value& root, bool) {
    rapidjson::IStreamWrapper stream(input);
    rapidjson::Document document;
    root = Value(ValueType(0), false);
    if (document.ParseStream(stream).HasParseError()) return false;
    Text::Load(document, root);
    return true;
}

}  // namespace vxJson
