#pragma once

#include <endian.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "Container.h"

namespace vxJson::detail {

inline std::uint64_t LoadFour(const char* bytes) noexcept {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes, sizeof number);
    return be32toh(number);
}

/// Returns the first eight bytes of a key as a big-endian number, padded with zeros: where the
/// prefixes of two keys differ, they order as the keys do. Shorter keys are assembled from
/// overlapping loads.
inline std::uint64_t KeyPrefix(std::string_view key) noexcept {
    const std::size_t size = key.size();
    const char* const bytes = key.data();
    if (size >= 8) return LoadFour(bytes) << 32 | LoadFour(bytes + 4);
    if (size >= 4) return LoadFour(bytes) << 32 | LoadFour(bytes + size - 4) << (64 - 8 * size);
    if (size == 0) return 0;
    const auto at = [bytes](std::size_t i) {
        return std::uint64_t{static_cast<unsigned char>(bytes[i])} << (56 - 8 * i);
    };
    return at(0) | at(size / 2) | at(size - 1);
}

/// Returns whether two keys with the same prefix are equal.
inline bool HasEqualRest(std::string_view a, std::string_view b) noexcept {
    const std::size_t size = a.size();
    if (size != b.size()) return false;
    if (size <= 8) return true;
    if (size > 16) return std::memcmp(a.data() + 8, b.data() + 8, size - 8) == 0;
    return std::memcmp(a.data() + size - 8, b.data() + size - 8, 8) == 0;
}

/// A member of an object that is being read; the key is part of the text.
struct ParsedMember {
    std::string_view key;
    Value value;
};

/// A member of an object.
struct Member {
    std::string key;
    Slot slot;
};

/// An object: members in blocks that never move, and an index of them in the order of their keys.
///
/// 1. A member keeps its address until it is removed. The places of removed members are chained
/// from
///    `free_` and reused; those in [unused_, unusedEnd_) were never used.
/// 2. The index has one entry per member, in ascending order of keys within a chunk and from chunk
///    to chunk. No two keys are equal.
/// 3. A chunk has at most kChunkEntries entries, and at least one, except for the first chunk of an
///    empty object. An insertion thus moves a bounded number of entries.
/// 4. The entries of the first chunk and the first block may be part of the object's own
///    allocation: an object created with its number of members needs no other one.
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

    /// Creates an empty object with memory for `capacity` members, at most kChunkEntries.
    static std::unique_ptr<Object> Make(std::size_t capacity);

    /// Creates an object of `count` members, whose values are moved from. Of equal keys the last
    /// one wins.
    static std::unique_ptr<Object> Make(ParsedMember* members, std::size_t count);

    /// Returns a copy in which all containers are borrowed.
    static std::unique_ptr<Object> MakeShallow(const Object& other);

    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    /// Destroys all members. Does not recurse if no member holds a container.
    ~Object();

    std::size_t Size() const noexcept { return size_; }
    std::size_t ChunkCount() const noexcept { return 1 + more_.size(); }
    const Chunk& GetChunk(std::size_t i) const noexcept { return i == 0 ? first_ : more_[i - 1]; }

    /// Returns the value of the member for `key`, or null if there is none.
    const Value* Find(std::string_view key) const noexcept {
        const std::uint64_t prefix = KeyPrefix(key);
        if (!more_.empty()) return FindByPosition(prefix, key);
        const Entry* const entry = LowerBound(first_, prefix);
        if (entry == first_.entries + first_.count || entry->prefix != prefix) return nullptr;
        if (!HasEqualRest(entry->member->key, key)) return FindByPosition(prefix, key);
        return &entry->member->slot.value;
    }

    /// Returns the value of the member for `key`, which is added as null if there is none.
    Value& FindOrAdd(std::string_view key);

    /// Removes the member for `key`. Returns whether there was one.
    bool Remove(std::string_view key) noexcept;

    /// Calls `visit(Member&)` for each member in the order of their keys.
    template <typename Visit>
    void ForEach(Visit visit) const {
        for (std::size_t i = 0; i < ChunkCount(); ++i) {
            const Chunk& chunk = GetChunk(i);
            for (std::uint32_t k = 0; k < chunk.count; ++k) visit(*chunk.entries[k].member);
        }
    }

    // NOLINTNEXTLINE(misc-new-delete-overloads): belongs to the operator new with a capacity
    static void operator delete(void* object) { ::operator delete(object); }

  private:
    /// Memory for a member, or a link in the chain of free places.
    union Place {
        Place() noexcept {}
        ~Place() {}

        Member member;
        Place* nextFree;
    };
    /// A position in the index.
    struct Position {
        std::size_t chunk;
        std::uint32_t entry;
    };

    explicit Object(std::uint32_t capacity) noexcept;
    static void* operator new(std::size_t size, std::uint32_t capacity);
    static void operator delete(void* object, std::uint32_t) { ::operator delete(object); }
    Entry* OwnEntries() noexcept { return reinterpret_cast<Entry*>(this + 1); }
    Chunk& ChunkAt(std::size_t i) noexcept { return i == 0 ? first_ : more_[i - 1]; }

    /// Returns the first entry of a chunk whose prefix is not less than `prefix`. Does not branch
    /// on keys, which are unpredictable.
    static Entry* LowerBound(const Chunk& chunk, std::uint64_t prefix) noexcept {
        Entry* from = chunk.entries;
        for (std::size_t count = chunk.count; count > 0;) {
            const std::size_t half = (count + 1) / 2;
            from += half * static_cast<std::size_t>(from[half - 1].prefix < prefix);
            count -= half;
        }
        return from;
    }
    static const Entry* LowerBound(const Entry* from, const Entry* to, std::uint64_t prefix,
                                   std::string_view key) noexcept;
    std::size_t FindChunk(std::uint64_t prefix, std::string_view key) const noexcept;
    Position FindPosition(std::uint64_t prefix, std::string_view key) const noexcept;
    const Value* FindByPosition(std::uint64_t prefix, std::string_view key) const noexcept;
    Value* At(Position position, std::uint64_t prefix, std::string_view key) const noexcept;
    template <typename... From>
    void Append(From&&... from);
    Value& Insert(Position position, std::uint64_t prefix, Member&& from);
    void MakeRoom(Position& position);
    void Split(Position& position);
    Place* MakePlace();
    void Release(Member& member) noexcept;
    void SortFirstChunk() noexcept;
    void FreeEntries(const Chunk& chunk) noexcept;

    Chunk first_;
    std::vector<Chunk> more_;
    std::uint32_t size_ = 0;
    Place* unused_;
    Place* unusedEnd_;
    Place* free_ = nullptr;
    std::vector<std::unique_ptr<Place[]>> blocks_;
};

}  // namespace vxJson::detail
