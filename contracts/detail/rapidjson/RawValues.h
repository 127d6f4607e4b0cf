#pragma once

#include <rapidjson/document.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <string_view>

namespace dataengine::detail {

using JsonPool = rapidjson::MemoryPoolAllocator<rapidjson::CrtAllocator>;

/// Tag in place of a document's stack allocator that selects the specialization below.
struct RawAccess;

}  // namespace dataengine::detail

RAPIDJSON_NAMESPACE_BEGIN

/// Writes the storage of rapidjson values directly. An access trick: rapidjson's values befriend
/// GenericDocument, and this specialization is not a document but a set of static functions that
/// use that friendship.
///
/// A rapidjson document gathers elements on a stack and copies them into the pool when a container
/// ends. Packed data declares every size in advance, so these functions take the final storage from
/// the pool once and return it to be filled. They throw std::bad_alloc where rapidjson would write
/// through a null pointer.
template <>
class GenericDocument<UTF8<>, dataengine::detail::JsonPool, dataengine::detail::RawAccess> {
  public:
    using Pool = dataengine::detail::JsonPool;

    static_assert(sizeof(Value::Member) == 2 * sizeof(Value), "a member is a name and a value");

    /// Makes `value` an array of `count` elements and returns the first, to be filled one by one.
    static Value* MakeArray(Value& value, SizeType count, Pool& pool) {
        auto* elements = static_cast<Value*>(Take(pool, count * sizeof(Value)));
        value.SetElementsPointer(elements);
        value.data_.f.flags = Value::kArrayFlag;
        value.data_.a.size = value.data_.a.capacity = count;
        return elements;
    }

    /// Makes `value` an object of `count` members and returns the first name, to be filled with
    /// names and values in turn.
    static Value* MakeObject(Value& value, SizeType count, Pool& pool) {
        auto* members = static_cast<Value::Member*>(Take(pool, count * sizeof(Value::Member)));
        value.SetMembersPointer(members);
        value.data_.f.flags = Value::kObjectFlag;
        value.data_.o.size = value.data_.o.capacity = count;
        return reinterpret_cast<Value*>(members);
    }

    /// Makes `value` the integer `number`, which is in two's complement if `isNegative` is set. The
    /// flags for the types that hold it come from a table instead of branches, because the sizes of
    /// the counters in a column follow no pattern.
    static void MakeInteger(Value& value, std::uint64_t number, bool isNegative) {
        const std::uint64_t magnitude = isNegative ? ~number : number;
        const unsigned width = unsigned{magnitude > kMost<std::int32_t>} +
                               unsigned{magnitude > kMost<std::uint32_t>} +
                               unsigned{magnitude > kMost<std::int64_t>};
        value.data_.n.u64 = number;
        value.data_.f.flags = kIntegerFlags[4 * std::size_t{isNegative} + width];
    }

    /// Makes `value` a string of `size` bytes, copied.
    static void MakeString(Value& value, const char* bytes, SizeType size, Pool& pool) {
        char* text = StringOf(value, size, pool);
        std::memcpy(text, bytes, size);
        text[size] = '\0';
    }

    /// Makes `value` a string if its bytes fit into the value itself. Returns whether they do.
    static bool MakeStringInCell(Value& value, std::string_view text) {
        const auto size = static_cast<SizeType>(text.size());
        if (!Value::ShortString::Usable(size) || size != text.size()) return false;
        value.data_.f.flags = Value::kShortStringFlag;
        value.data_.ss.SetLength(size);
        text.copy(value.data_.ss.str, size);  // the empty text may have no address
        value.data_.ss.str[size] = '\0';
        return true;
    }

    /// Copies `count` values that own no memory to uninitialized ones.
    static void Copy(const Value* from, std::size_t count, Value* to) {
        std::memcpy(static_cast<void*>(to), static_cast<const void*>(from), count * sizeof(Value));
    }

    static constexpr std::size_t kBlock = 16;

    /// Does the same for at most 2 * kBlock bytes; kBlock bytes must be readable even if `size` is
    /// smaller. Copies of fixed size make a route table decode 1.3 times as fast.
    static void MakeShortString(Value& value, const char* bytes, SizeType size, Pool& pool) {
        if (Value::ShortString::Usable(size)) {
            // A value is a block or more; its length and flags at the end are written afterwards.
            static_assert(sizeof(Value) >= kBlock);
            CopyBlocks(&value, bytes, size);
            StringOf(value, size, pool)[size] = '\0';
            return;
        }
        char* text = StringOf(value, size, pool);
        CopyBlocks(text, bytes, size);
        text[size] = '\0';
    }

    /// Makes `value` an empty array with space for `count` elements.
    static void Reserve(Value& value, SizeType count, Pool& pool) {
        MakeArray(value, count, pool);
        value.data_.a.size = 0;
    }

    /// Returns the uninitialized element after the last one of an array that has space for it.
    static Value& NextElement(Value& array) {
        return array.GetElementsPointer()[array.data_.a.size];
    }
    /// Adds the next element, which has been initialized, to the array.
    static void AddElement(Value& array) { ++array.data_.a.size; }

  private:
    static constexpr unsigned kInt64 = Value::kNumberInt64Flag;
    static constexpr unsigned kUint64 = Value::kNumberUint64Flag;
    static constexpr std::uint16_t kIntegerFlags[] = {
        kUint64 | kInt64 | Value::kUintFlag | Value::kIntFlag,
        kUint64 | kInt64 | Value::kUintFlag,
        kUint64 | kInt64,
        kUint64,
        kInt64 | Value::kIntFlag,
        kInt64,
        kInt64,
        kInt64};

    template <typename Integer>
    static constexpr std::uint64_t kMost = std::uint64_t{std::numeric_limits<Integer>::max()};

    /// Copies `size` bytes, at most 2 * kBlock and at least kBlock.
    static void CopyBlocks(void* to, const char* bytes, SizeType size) {
        std::memcpy(to, bytes, kBlock);
        if (size <= kBlock) return;
        const std::size_t rest = size - kBlock;
        std::memcpy(static_cast<char*>(to) + rest, bytes + rest, kBlock);
    }

    /// Makes `value` a string of `size` bytes and returns their address.
    static char* StringOf(Value& value, SizeType size, Pool& pool) {
        if (Value::ShortString::Usable(size)) {
            value.data_.f.flags = Value::kShortStringFlag;
            value.data_.ss.SetLength(size);
            return value.data_.ss.str;
        }
        auto* text = static_cast<char*>(Take(pool, std::max(std::size_t{size} + 1, kBlock)));
        value.SetStringPointer(text);
        value.data_.s.length = size;
        value.data_.f.flags = Value::kCopyStringFlag;
        return text;
    }

    static void* Take(Pool& pool, std::size_t size) {
        void* block = pool.Malloc(size);
        if (block == nullptr && size != 0) throw std::bad_alloc();
        return block;
    }
};

RAPIDJSON_NAMESPACE_END

namespace dataengine::detail {

using RawValues = rapidjson::GenericDocument<rapidjson::UTF8<>, JsonPool, RawAccess>;

}  // namespace dataengine::detail
