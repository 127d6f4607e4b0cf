#pragma once

#include <rapidjson/document.h>

namespace dataengine::detail {

/// Returns the first member of `object` with this name, or null if there is none or `object` is not
/// an object. `Value` is a rapidjson value, const or not.
template <typename Value>
Value* FindMember(Value& object, const char* name) {
    if (!object.IsObject()) return nullptr;
    const auto member = object.FindMember(name);
    const rapidjson::Value::ConstMemberIterator end = object.MemberEnd();  // unambiguous in C++20
    return member == end ? nullptr : &member->value;
}

}  // namespace dataengine::detail
