#pragma once

#include <VxUtil/vxJson.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "structure/detail/PackedBytes.h"

namespace dataengine::detail {

/// Builds a packed schema as the JSON value that printing the schema and parsing the text would
/// yield. A handler of PackedWalk.
///
/// Only nil, bool, integers, str, arrays and maps are built, which is what schemas consist of. The
/// walk ends at anything else: a float, a bin, an ext, a map key that is not a str, or one that
/// begins with '$', which the JSON reader may give a meaning of its own. The value is then
/// incomplete.
///
/// The value grows as its elements are read, so a declared count allocates nothing.
class SchemaBuilder {
  public:
    /// `root` must be null.
    explicit SchemaBuilder(vxJson::Value& root) : slot_(&root) {}

    std::uint64_t TakeScalars(PackedBytes&, std::uint64_t, bool) { return 0; }
    bool Element();
    bool Key(PackedKind kind) {
        isKey_ = kind == PackedKind::kStr;
        return isKey_;
    }
    bool Value() { return true; }

    bool Nil() { return true; }
    bool Boolean(bool value);
    bool Integer(PackedInteger integer);
    bool Float(double) { return false; }
    bool Str(const char* bytes, std::size_t size);
    bool Bin(const char*, std::size_t) { return false; }
    bool Ext() { return false; }

    using Context = vxJson::Value*;  // the container around a container
    Context BeginArray(std::uint32_t count);
    Context BeginMap(std::uint32_t count);
    void EndArray(Context around) { container_ = around; }
    void EndMap(Context around) { container_ = around; }

  private:
    vxJson::Value* slot_;  // a null value, which the next element becomes
    vxJson::Value* container_ = nullptr;
    bool isKey_ = false;  // whether the next str is a key
};

}  // namespace dataengine::detail
