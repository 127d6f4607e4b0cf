#pragma once

#include <endian.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "vxutil/detail/Container.h"
#include "vxutil/detail/ParsedMembers.h"

namespace vxJson::detail {

/// A member of an object. A copy is shallow: it borrows the container that its value holds, if any.
struct Member {
    explicit Member(std::string_view name, Value&& content = Value())
        : key(name), value(std::move(content)) {}
    Member(const Member& other) : key(other.key) { value.Borrow(other.value); }
    Member& operator=(const Member&) = delete;
    ~Member() = default;

    std::string key;
    Value value;
};

inline std::uint64_t LoadFour(const char* bytes) noexcept {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes, sizeof number);
    return be32toh(number);
}

/// Returns the prefix of a key, see KeyHead. Shorter keys are assembled from overlapping loads.
inline std::uint64_t KeyPrefix(std::string_view key) noexcept {
    const std::size_t size = key.size();
    const char* const bytes = key.data();
    if (size >= 8) return LoadFour(bytes) << 32 | (LoadFour(bytes + 4) & 0xffffff00) | 8;
    if (size >= 4) {
        return LoadFour(bytes) << 32 | LoadFour(bytes + size - 4) << (64 - 8 * size) | size;
    }
    if (size == 0) return 0;
    const auto at = [bytes](std::size_t i) {
        return std::uint64_t{static_cast<unsigned char>(bytes[i])} << (56 - 8 * i);
    };
    return at(0) | at(size / 2) | at(size - 1) | size;
}

/// An object: members in blocks that never move, and an index of them in the order of their keys.
///
/// 1. A member keeps its address until it is removed. The slots of removed members are chained from
///    `link` and reused; the `unusedCount_` slots from `unused_` on were never used.
/// 2. The index has one entry per member, in ascending order of keys within a chunk and from chunk
///    to chunk. No two keys are equal.
/// 3. A chunk has at most kChunkEntries entries, and at least one, except for the first chunk of an
///    empty object. An insertion thus moves a bounded number of entries.
/// 4. The entries of the first chunk are part of the object's own allocation or of a block. Those
///    of the other chunks are allocated separately, and always with kChunkEntries entries.
/// 5. While the first chunk has a capacity of at most kTags entries, it is the only one, and
///    `tags_[i]` is the tag of entry i.
/// 6. Until the first chunk is split, there are as many slots as entries: both grow in one
///    allocation, and an object created with its number of members needs no further one.
class Object : public Container {
  public:
    /// A member's entry in the index.
    struct Entry {
        std::uint64_t prefix;
        Member* member;
    };
    /// A part of the index.
    struct Chunk {
        Entry* entries;
        std::uint32_t count;
        std::uint32_t capacity;
    };
    static constexpr std::uint32_t kChunkEntries = 256;

    /// The capacity of an object that is created for its first member. Small, because objects of
    /// one member are the input that takes most memory per byte.
    static constexpr std::uint32_t kFirstMembers = 3;

    /// Creates an empty object with memory for `capacity` members, at most kChunkEntries.
    static std::unique_ptr<Object> Make(std::size_t capacity);

    /// Returns a copy in which all containers are borrowed.
    static std::unique_ptr<Object> MakeShallow(const Object& other);

    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    /// Destroys all members. Does not recurse if no member holds a container.
    ~Object();

    std::size_t GetChunkCount() const noexcept { return more_ == nullptr ? 1 : 1 + more_->size(); }
    const Chunk& GetChunk(std::size_t i) const noexcept {
        return i == 0 ? first_ : (*more_)[i - 1];
    }

    /// Returns the value of the member for `key`, or `absent` if there is none. `head` is that of
    /// the key. Complexity: logarithmic.
    // Calls Search, as its last action, only if the object is large, two keys have one tag or the
    // key is long. Otherwise it would have to save registers, and take 1.1 times as long.
    const Value& Find(KeyHead head, std::string_view key, const Value& absent) const noexcept {
        if (first_.capacity <= kTags) {
            std::uint64_t tags[2];
            std::memcpy(tags, tags_, kTags);
            // Bits 6 and 7 of byte i are those of tags i and i + 8.
            const std::uint64_t equal = ZeroBytes(le64toh(tags[0]) ^ head.tags) >> 1 |
                                        ZeroBytes(le64toh(tags[1]) ^ head.tags);
            if (equal == 0) return absent;
            const auto bit = static_cast<std::uint32_t>(__builtin_ctzll(equal));
            const std::uint32_t i = bit / 8 + (bit & 1) * 8;
            const Entry& entry = first_.entries[i];
            if (i < size && entry.prefix == head.prefix) {
                // Only a key that is longer than the prefix is compared. Of at most 15 bytes, the
                // last eight contain all that the prefix lacks.
                const std::size_t length = key.size();
                const std::string& found = entry.member->key;
                if (length < 8 || (length <= 15 && length == found.size() &&
                                   std::memcmp(&found[length - 8], &key[length - 8], 8) == 0)) {
                    return entry.member->value;
                }
            }
        }
        return Search(head.prefix, key, absent);
    }

    /// Returns the value of the member for `key`, which is added as null if there is none.
    Value& FindOrAdd(std::string_view key);

    /// Adds the members [first, last) of `parsed`, whose values are moved from, to an object that
    /// was created for their number and has no members yet. Of equal keys the last one wins.
    void Fill(ParsedMembers& parsed, std::size_t first, std::size_t last);

    /// Removes the member for `key`. Returns whether there was one.
    bool Remove(std::string_view key) noexcept;

    /// Calls `visit(Member&)` for each member in the order of their keys.
    template <typename Visit>
    void ForEach(Visit visit) const {
        for (std::size_t i = 0; i < GetChunkCount(); ++i) {
            const Chunk& chunk = GetChunk(i);
            for (std::uint32_t k = 0; k < chunk.count; ++k) visit(*chunk.entries[k].member);
        }
    }

    // NOLINTNEXTLINE(misc-new-delete-overloads): belongs to the operator new with a capacity
    static void operator delete(void* object) { ::operator delete(object); }

  private:
    /// Memory for a member, or a link in the chain of free slots.
    union MemberSlot {
        MemberSlot() noexcept {}
        ~MemberSlot() {}

        Member member;
        MemberSlot* nextFree;
    };
    /// The head of an allocation of entries and slots, which follow it.
    struct Block {
        Block* next;
    };
    /// The position of a key in the index, or the one where it belongs.
    struct Position {
        std::uint32_t chunk;
        std::uint32_t entry;
        bool isFound;
    };

    static constexpr std::uint32_t kTags = 16;

    explicit Object(std::uint32_t capacity) noexcept;
    static void* operator new(std::size_t size, std::uint32_t capacity);
    static void operator delete(void* object, std::uint32_t) { ::operator delete(object); }
    Chunk& GetMutableChunk(std::size_t i) noexcept { return i == 0 ? first_ : (*more_)[i - 1]; }
    Entry& EntryAt(Position position) const noexcept {
        return GetChunk(position.chunk).entries[position.entry];
    }

    /// Returns the top bit of each byte of `number` that is zero, and perhaps of bytes above those.
    static std::uint64_t ZeroBytes(std::uint64_t number) noexcept {
        return (number - 0x0101010101010101) & ~number & 0x8080808080808080;
    }

    static int Order(const Entry& entry, std::uint64_t prefix, std::string_view key) noexcept {
        if (entry.prefix != prefix) return entry.prefix < prefix ? -1 : 1;
        if (key.size() < 8) return 0;
        return std::string_view(entry.member->key).compare(key);
    }

    Position Seek(std::uint64_t prefix, std::string_view key) const noexcept;
    const Value& Search(std::uint64_t prefix, std::string_view key,
                        const Value& absent) const noexcept;
    template <typename... From>
    void Append(From&&... from);
    template <typename... From>
    Value& Insert(Position position, std::uint64_t prefix, From&&... from);
    void MakeRoom(Position& position);
    void Split(Position& position);
    Entry* AddBlock(std::uint32_t entries, std::uint32_t slots);
    void RemoveChunk(std::uint32_t i) noexcept;
    void Release(Member& member) noexcept;
    void SortFirstChunk() noexcept;
    /// Sets the tags of the entries from the i-th one on.
    void UpdateTags(std::uint32_t i) noexcept {
        if (first_.capacity > kTags) return;
        for (; i < first_.count; ++i) {
            tags_[i] = static_cast<unsigned char>(KeyHead(first_.entries[i].prefix).tags);
        }
    }

    MemberSlot* FirstFree() const noexcept { return static_cast<MemberSlot*>(link); }

    // First, where it fits into the padding of the base.
    std::uint16_t unusedCount_;
    unsigned char tags_[kTags] = {};
    Chunk first_;
    std::unique_ptr<std::vector<Chunk>> more_;
    MemberSlot* unused_;
    Block* blocks_ = nullptr;
};
static_assert(sizeof(Object) == 72);

}  // namespace vxJson::detail
