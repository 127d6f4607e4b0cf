#include "vxutil/detail/Object.h"

#include <limits>

namespace vxJson::detail {

namespace {

// The number of entries after the first growth beyond kFirstMembers, enough for most records.
constexpr std::uint32_t kRecordEntries = 8;
constexpr std::uint32_t kLargestBlock = 1024;
constexpr std::uint32_t kMostMembers = std::numeric_limits<std::uint32_t>::max();

}  // namespace

void* Object::operator new(std::size_t size, std::uint32_t capacity) {
    return ::operator new(size + capacity * (sizeof(Entry) + sizeof(MemberSlot)));
}

Object::Object(std::uint32_t capacity) noexcept
    : Container(true),
      unusedCount_(static_cast<std::uint16_t>(capacity)),
      first_{reinterpret_cast<Entry*>(this + 1), 0, capacity},
      unused_(reinterpret_cast<MemberSlot*>(first_.entries + capacity)) {}

Object::~Object() {
    ForEach([](Member& member) { member.~Member(); });
    for (std::size_t i = 1; i < GetChunkCount(); ++i) delete[] GetChunk(i).entries;
    while (blocks_ != nullptr) ::operator delete(std::exchange(blocks_, blocks_->next));
}

std::unique_ptr<Object> Object::Make(std::size_t capacity) {
    const auto room = static_cast<std::uint32_t>(std::min<std::size_t>(capacity, kChunkEntries));
    return std::unique_ptr<Object>(new (room) Object(room));
}

// Adds a member after those of the first chunk, in which there is room.
template <typename... From>
void Object::Append(From&&... from) {
    auto* const member = ::new (static_cast<void*>(unused_)) Member(std::forward<From>(from)...);
    ++unused_;
    --unusedCount_;
    ++size;
    first_.entries[first_.count++] = {KeyPrefix(member->key), member};
}

// Adds a member that is constructed from `from`.
template <typename... From>
Value& Object::Insert(Position position, std::uint64_t prefix, From&&... from) {
    MakeRoom(position);
    MemberSlot* const free = FirstFree();
    MemberSlot* const nextFree = free == nullptr ? nullptr : free->nextFree;
    void* const slot = free == nullptr ? unused_ : free;
    Member* member = nullptr;
    try {
        member = ::new (slot) Member(std::forward<From>(from)...);
    } catch (...) {
        if (free != nullptr) free->nextFree = nextFree;
        throw;
    }
    if (free == nullptr) {
        ++unused_;
        --unusedCount_;
    } else {
        link = nextFree;
    }
    Chunk& chunk = GetMutableChunk(position.chunk);
    Entry* const entry = chunk.entries + position.entry;
    std::copy_backward(entry, chunk.entries + chunk.count, chunk.entries + chunk.count + 1);
    *entry = {prefix, member};
    ++chunk.count;
    ++size;
    UpdateTags(position.entry);
    return member->value;
}

std::unique_ptr<Object> Object::MakeShallow(const Object& other) {
    std::unique_ptr<Object> object = Make(other.size);
    other.ForEach([&object](const Member& member) {
        if (object->size < kChunkEntries) {
            object->Append(member);
        } else {
            const auto last = static_cast<std::uint32_t>(object->GetChunkCount() - 1);
            object->Insert({last, object->GetChunk(last).count, false}, KeyPrefix(member.key),
                           member);
        }
    });
    object->UpdateTags(0);
    return object;
}

// Finds the position of a key: its chunk, the first entry there whose prefix is not less, and from
// there on, among entries with equal prefixes, the first one whose key is not less.
Object::Position Object::Seek(std::uint64_t prefix, std::string_view key) const noexcept {
    std::size_t i = 0;
    if (more_ != nullptr) {
        const auto after = std::partition_point(
            more_->begin(), more_->end(),
            [=](const Chunk& chunk) { return Order(*chunk.entries, prefix, key) <= 0; });
        i = static_cast<std::size_t>(after - more_->begin());
    }
    const Chunk& chunk = GetChunk(i);
    const Entry* const end = chunk.entries + chunk.count;
    const Entry* at = chunk.entries;
    // Does not branch on keys, which are unpredictable.
    for (std::size_t count = chunk.count; count > 0;) {
        const std::size_t half = (count + 1) / 2;
        at += half * static_cast<std::size_t>(at[half - 1].prefix < prefix);
        count -= half;
    }
    if (at != end && at->prefix == prefix) {
        at = std::partition_point(
            at, end, [=](const Entry& entry) { return Order(entry, prefix, key) < 0; });
    }
    const bool isFound = at != end && Order(*at, prefix, key) == 0;
    return {static_cast<std::uint32_t>(i), static_cast<std::uint32_t>(at - chunk.entries), isFound};
}

const Value& Object::Search(std::uint64_t prefix, std::string_view key,
                            const Value& absent) const noexcept {
    const Position position = Seek(prefix, key);
    return position.isFound ? EntryAt(position).member->value : absent;
}

void Object::Fill(ParsedMembers& parsed, std::size_t first, std::size_t last) {
    if (last - first > kChunkEntries) {
        for (; first != last; ++first)
            FindOrAdd(parsed[first].key) = std::move(parsed[first].value);
        return;
    }
    for (; first != last; ++first) {
        Append(parsed[first].key, std::move(parsed[first].value));
    }
    SortFirstChunk();
}

Value& Object::FindOrAdd(std::string_view key) {
    const std::uint64_t prefix = KeyPrefix(key);
    const Position position = Seek(prefix, key);
    if (position.isFound) return EntryAt(position).member->value;
    return Insert(position, prefix, key);
}

bool Object::Remove(std::string_view key) noexcept {
    const Position position = Seek(KeyPrefix(key), key);
    if (!position.isFound) return false;
    Chunk& chunk = GetMutableChunk(position.chunk);
    Entry* const entry = chunk.entries + position.entry;
    Release(*entry->member);
    std::copy(entry + 1, chunk.entries + chunk.count, entry);
    if (--chunk.count == 0 && GetChunkCount() > 1) RemoveChunk(position.chunk);
    UpdateTags(position.entry);
    return true;
}

// Removes an empty chunk. The memory of the first one stays; it takes the entries of the second.
void Object::RemoveChunk(std::uint32_t i) noexcept {
    const auto removed = more_->begin() + static_cast<std::ptrdiff_t>(std::max(i, 1u) - 1);
    if (i == 0) {
        std::copy_n(removed->entries, removed->count, first_.entries);
        first_.count = removed->count;
    }
    delete[] removed->entries;
    more_->erase(removed);
    if (more_->empty()) more_ = nullptr;
}

void Object::Release(Member& member) noexcept {
    auto* const slot = reinterpret_cast<MemberSlot*>(&member);
    member.~Member();
    slot->nextFree = FirstFree();
    link = slot;
    --size;
}

// Ensures a slot and an entry for one more member at `position`, which is updated if its chunk is
// split.
void Object::MakeRoom(Position& position) {
    const Chunk& chunk = GetChunk(position.chunk);
    if (chunk.count == kChunkEntries) {
        Split(position);
    } else if (chunk.count == chunk.capacity) {
        const std::uint32_t capacity =
            chunk.capacity == 0 ? kFirstMembers
                                : std::clamp(2 * chunk.capacity, kRecordEntries, kChunkEntries);
        Entry* const entries = AddBlock(capacity, capacity - chunk.capacity);
        std::copy_n(first_.entries, first_.count, entries);
        first_ = {entries, first_.count, capacity};
    }
    if (link == nullptr && unusedCount_ == 0) {
        if (size > kMostMembers - kLargestBlock) throw std::bad_alloc();
        AddBlock(0, std::min(size / 2, kLargestBlock));
    }
}

// Halves a full chunk, but leaves it full if the object grows at its end, as with ascending keys.
void Object::Split(Position& position) {
    if (more_ == nullptr) more_ = std::make_unique<std::vector<Chunk>>();
    const std::uint32_t count = kChunkEntries;
    const bool atEnd = position.entry == count && position.chunk == more_->size();
    const std::uint32_t kept = atEnd ? count - 1 : count / 2;
    std::unique_ptr<Entry[]> entries(new Entry[kChunkEntries]);
    more_->insert(more_->begin() + static_cast<std::ptrdiff_t>(position.chunk),
                  {entries.get(), count - kept, kChunkEntries});
    Chunk& chunk = GetMutableChunk(position.chunk);
    std::copy(chunk.entries + kept, chunk.entries + count, entries.release());
    chunk.count = kept;
    if (position.entry > kept) position = {position.chunk + 1, position.entry - kept, false};
}

// Adds memory for entries, which is returned, and for slots; all earlier slots must be in use.
Object::Entry* Object::AddBlock(std::uint32_t entries, std::uint32_t slots) {
    const std::size_t bytes = sizeof(Block) + entries * sizeof(Entry) + slots * sizeof(MemberSlot);
    blocks_ = ::new (::operator new(bytes)) Block{blocks_};
    auto* const first = reinterpret_cast<Entry*>(blocks_ + 1);
    unused_ = reinterpret_cast<MemberSlot*>(first + entries);
    unusedCount_ = static_cast<std::uint16_t>(slots);
    return first;
}

// Members were added in the order of their addresses, so the last of equal keys has the highest
// one.
void Object::SortFirstChunk() noexcept {
    Entry* const end = first_.entries + first_.count;
    std::sort(first_.entries, end, [](const Entry& a, const Entry& b) {
        const int order = Order(a, b.prefix, b.member->key);
        return order != 0 ? order < 0 : a.member < b.member;
    });
    Entry* kept = first_.entries;
    for (Entry* entry = first_.entries; entry != end; ++entry) {
        if (entry + 1 != end && Order(*entry, entry[1].prefix, entry[1].member->key) == 0) {
            Release(*entry->member);
        } else {
            *kept++ = *entry;
        }
    }
    first_.count = static_cast<std::uint32_t>(kept - first_.entries);
    UpdateTags(0);
}

}  // namespace vxJson::detail
