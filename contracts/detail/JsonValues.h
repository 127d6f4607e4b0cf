#pragma once

#include <VxUtil/vxJson.h>

#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#ifdef DATAENGINE_EXTERNAL_VXUTIL
#include "contracts/detail/rapidjson/ParseJson.h"
#endif

// JSON values in the operations that every VxUtil has, and everything in which the bundled VxUtil
// and a platform's own differ. No other code distinguishes the two.

namespace dataengine::detail {

// The two kinds of vxJson::Value that the library passes by number.
constexpr auto kNullType = static_cast<vxJson::ValueType>(0);
constexpr auto kBinaryType = static_cast<vxJson::ValueType>(110);

inline vxJson::Value NullValue() {
    return vxJson::Value(kNullType, false);
}

inline vxJson::Value BinaryValue(const std::string& bytes) {
    return vxJson::Value(bytes, kBinaryType);
}

/// Passes a time bit for bit; asTime returns the signed number again.
inline vxJson::Value TimeValue(long long time) {
    return vxJson::Value(static_cast<unsigned long long>(time), false);
}

/// Parses a JSON text, Extended JSON included, as vxJson::Reader does. Returns false if it is not
/// JSON.
inline bool ParseValue(const std::string& text, vxJson::Value& value) {
    std::istringstream stream(text);
    return vxJson::Reader().parse(stream, value, true);
}

// The rest exists in two versions.
//
//   Error            the exception for bad input: vxJson::Error, or its base class if a platform's
//                    VxUtil need not have that
//   BoolValue, EmptyArray, EmptyObject
//                    values that no assignment makes
//   OwnText          the string of a value where it is stored, or null if the value is of another
//                    kind or its VxUtil lends no strings
//   VisitValue       reports the parts of a value to a visitor, in order, keys before their values.
//                    Depth is bounded by memory only. The visitor has these members:
//
//     void Nil(), Bool(bool), Unsigned(std::uint64_t), Integer(std::int64_t), Double(double)
//     void Str(std::string_view), Bin(std::string_view), Time()
//     void Array(std::size_t count)    as many values follow
//     void Map(std::size_t count)      as many pairs of Str and a value follow

#ifndef DATAENGINE_EXTERNAL_VXUTIL

using Error = vxJson::Error;

inline vxJson::Value BoolValue(bool value) {
    return vxJson::Value(value);
}
inline vxJson::Value EmptyArray() {
    return vxJson::Value(vxJson::arrayKind, false);
}
inline vxJson::Value EmptyObject() {
    return vxJson::Value(vxJson::objectKind, false);
}

inline const std::string* OwnText(const vxJson::Value& value) {
    return value.isString() ? &value.asBinary() : nullptr;
}

/// An array or object in the course of a visit.
struct VisitedContainer {
    const vxJson::Value& value;
    std::uint32_t count;
    std::uint32_t next = 0;
    vxJson::ValueConstIterator member = {};  // of an object
};

template <typename Visitor>
void VisitScalar(const vxJson::Value& value, Visitor& visitor) {
    if (value.isString()) {
        visitor.Str(value.asBinary());
    } else if (value.isInteger()) {
        const long long number = value.asInt64();
        // The low 64 bits of an unsigned integer may look negative.
        if (number >= 0 || value.asDouble() > 0) {
            visitor.Unsigned(static_cast<std::uint64_t>(number));
        } else {
            visitor.Integer(number);
        }
    } else if (value.isDouble()) {
        visitor.Double(value.asDouble());
    } else if (value.isBool()) {
        visitor.Bool(value.asBool());
    } else if (value.isBinary()) {
        visitor.Bin(value.asBinary());
    } else if (value.isTime()) {
        visitor.Time();
    } else {
        visitor.Nil();
    }
}

template <typename Visitor>
void VisitValue(const vxJson::Value& root, Visitor& visitor) {
    std::vector<VisitedContainer> open;
    const vxJson::Value* value = &root;
    for (;;) {
        if (value->isArray()) {
            visitor.Array(value->size());
            open.push_back({*value, value->size()});
        } else if (value->isObject()) {
            visitor.Map(value->size());
            open.push_back({*value, value->size(), 0, value->begin()});
        } else {
            VisitScalar(*value, visitor);
        }
        while (!open.empty() && open.back().next == open.back().count) open.pop_back();
        if (open.empty()) return;

        VisitedContainer& top = open.back();
        if (top.value.isArray()) {
            value = &top.value[static_cast<int>(top.next)];
        } else {
            if (top.next != 0) top.member.increment();
            visitor.Str(top.member.key());
            value = &top.member.deref();
        }
        ++top.next;
    }
}

#else

using Error = std::runtime_error;

inline vxJson::Value BoolValue(bool value) {
    vxJson::Value parsed = NullValue();
    ParseValue(value ? "true" : "false", parsed);
    return parsed;
}
inline vxJson::Value EmptyArray() {
    vxJson::Value parsed = NullValue();
    ParseValue("[]", parsed);
    return parsed;
}
inline vxJson::Value EmptyObject() {
    vxJson::Value parsed = NullValue();
    ParseValue("{}", parsed);
    return parsed;
}

inline const std::string* OwnText(const vxJson::Value&) {
    return nullptr;
}

/// An array or object in the course of a visit, and the parsed form of its text.
struct VisitedContainer {
    const vxJson::Value& value;
    const rapidjson::Value& printed;
    rapidjson::SizeType count;
    rapidjson::SizeType next = 0;
};

template <typename Visitor>
void VisitNumber(const rapidjson::Value& number, Visitor& visitor) {
    if (number.IsUint64()) {
        visitor.Unsigned(number.GetUint64());
    } else if (number.IsInt64()) {
        visitor.Integer(number.GetInt64());
    } else {
        visitor.Double(number.GetDouble());
    }
}

/// Visits a value except the elements of a container, which is added to `open`. Strings, binaries
/// and containers are taken from the value, so that an object that looks like a printed binary
/// stays an object.
template <typename Visitor>
void VisitNode(const vxJson::Value& value, const rapidjson::Value& printed, Visitor& visitor,
               std::vector<VisitedContainer>& open) {
    if (value.isArray() && printed.IsArray() && printed.Size() == value.size()) {
        visitor.Array(printed.Size());
        open.push_back({value, printed, printed.Size()});
    } else if (value.isObject() && printed.IsObject()) {
        visitor.Map(printed.MemberCount());
        open.push_back({value, printed, printed.MemberCount()});
    } else if (value.isString()) {
        visitor.Str(value.asString());
    } else if (printed.IsObject() && printed.HasMember("$date")) {
        visitor.Time();
    } else if (printed.IsObject() || printed.IsString()) {
        visitor.Bin(value.asBinary());
    } else if (printed.IsNumber()) {
        VisitNumber(printed, visitor);
    } else if (printed.IsBool()) {
        visitor.Bool(printed.GetBool());
    } else {
        visitor.Nil();
    }
}

/// Walks the value together with the parsed form of its text, which supplies the keys of objects
/// and the kinds of scalars: the value has no operations for them.
template <typename Visitor>
void VisitValue(const vxJson::Value& root, Visitor& visitor) {
    JsonPool pool;
    rapidjson::Value printed;
    if (ParseJson<rapidjson::kParseFullPrecisionFlag>(root.toString(false).c_str(), printed, pool)
            .IsError())
        throw Error("does not print as JSON");

    std::vector<VisitedContainer> open;
    VisitNode(root, printed, visitor, open);
    while (!open.empty()) {
        VisitedContainer& top = open.back();
        if (top.next == top.count) {
            open.pop_back();
            continue;
        }
        const rapidjson::SizeType next = top.next++;
        if (top.printed.IsArray()) {
            VisitNode(top.value[static_cast<int>(next)], top.printed[next], visitor, open);
        } else {
            const auto& [name, value] = top.printed.MemberBegin()[next];
            const std::string key(name.GetString(), name.GetStringLength());
            visitor.Str(key);
            VisitNode(top.value[key], value, visitor, open);
        }
    }
}

#endif

}  // namespace dataengine::detail
