#include "FlatObject.h"

namespace vxJson::detail {

namespace {

constexpr std::uint32_t kFirstEntries = 4;
constexpr std::uint32_t kSmallestBlock = 4;
constexpr std::uint32_t kLargestBlock = 1024;

int Order(const Object::Entry& entry, std::uint64_t prefix, std::string_view key) noexcept {
    if (entry.prefix != prefix) return entry.prefix < prefix ? -1 : 1;
    return std::string_view(entry.member->key).compare(key);
}

bool IsEqual(const Object::Entry& a, const Object::Entry& b) noexcept {
    return a.prefix == b.prefix && a.member->key == b.member->key;
}

}  // namespace

void* Object::operator new(std::size_t size, std::uint32_t capacity) {
    return ::operator new(size + capacity * (sizeof(Entry) + sizeof(Place)));
}

Object::Object(std::uint32_t capacity) noexcept
    : Container(true),
      first_{OwnEntries(), 0, capacity},
      unused_(reinterpret_cast<Place*>(OwnEntries() + capacity)),
      unusedEnd_(unused_ + capacity) {}

Object::~Object() {
    ForEach([](Member& member) { member.~Member(); });
    for (std::size_t i = 0; i < ChunkCount(); ++i) FreeEntries(GetChunk(i));
}

std::unique_ptr<Object> Object::Make(std::size_t capacity) {
    const auto room = static_cast<std::uint32_t>(std::min<std::size_t>(capacity, kChunkEntries));
    return std::unique_ptr<Object>(new (room) Object(room));
}

std::unique_ptr<Object> Object::Make(ParsedMember* members, std::size_t count) {
    std::unique_ptr<Object> object = Make(count);
    ParsedMember* const end = members + count;
    if (count <= kChunkEntries) {
        for (ParsedMember* from = members; from != end; ++from) {
            object->Append(std::string(from->key), Slot(std::move(from->value)));
        }
        object->SortFirstChunk();
    } else {
        for (ParsedMember* from = members; from != end; ++from) {
            object->FindOrAdd(from->key) = std::move(from->value);
        }
    }
    return object;
}

std::unique_ptr<Object> Object::MakeShallow(const Object& other) {
    std::unique_ptr<Object> object = Make(other.size_);
    other.ForEach([&object](const Member& member) {
        if (object->size_ < kChunkEntries) {
            object->Append(member);
        } else {
            const std::size_t last = object->more_.size();
            object->Insert({last, object->GetChunk(last).count}, KeyPrefix(member.key),
                           Member(member));
        }
    });
    return object;
}

Value& Object::FindOrAdd(std::string_view key) {
    const std::uint64_t prefix = KeyPrefix(key);
    const Position position = FindPosition(prefix, key);
    if (Value* const present = At(position, prefix, key)) return *present;
    return Insert(position, prefix, Member{std::string(key), Slot()});
}

bool Object::Remove(std::string_view key) noexcept {
    const std::uint64_t prefix = KeyPrefix(key);
    const Position position = FindPosition(prefix, key);
    if (At(position, prefix, key) == nullptr) return false;
    Chunk& chunk = ChunkAt(position.chunk);
    Entry* const entry = chunk.entries + position.entry;
    Release(*entry->member);
    std::copy(entry + 1, chunk.entries + chunk.count, entry);
    --chunk.count;
    if (chunk.count == 0 && !more_.empty()) {
        FreeEntries(chunk);
        if (position.chunk == 0) first_ = more_.front();
        more_.erase(more_.begin() +
                    static_cast<std::ptrdiff_t>(std::max<std::size_t>(position.chunk, 1) - 1));
    }
    return true;
}

void Object::Release(Member& member) noexcept {
    auto* const place = reinterpret_cast<Place*>(&member);
    member.~Member();
    place->nextFree = free_;
    free_ = place;
    --size_;
}

// Checks the first entry before a binary search: only keys with equal prefixes need the search.
const Object::Entry* Object::LowerBound(const Entry* from, const Entry* to, std::uint64_t prefix,
                                        std::string_view key) noexcept {
    if (from == to || Order(*from, prefix, key) >= 0) return from;
    return std::partition_point(
        from + 1, to, [prefix, key](const Entry& entry) { return Order(entry, prefix, key) < 0; });
}

std::size_t Object::FindChunk(std::uint64_t prefix, std::string_view key) const noexcept {
    const auto isNotAfter = [prefix, key](const Chunk& chunk) {
        return Order(*chunk.entries, prefix, key) <= 0;
    };
    const auto after = std::partition_point(more_.begin(), more_.end(), isNotAfter);
    return static_cast<std::size_t>(after - more_.begin());
}

Object::Position Object::FindPosition(std::uint64_t prefix, std::string_view key) const noexcept {
    const std::size_t i = more_.empty() ? 0 : FindChunk(prefix, key);
    const Chunk& chunk = GetChunk(i);
    const Entry* const entry =
        LowerBound(LowerBound(chunk, prefix), chunk.entries + chunk.count, prefix, key);
    return {i, static_cast<std::uint32_t>(entry - chunk.entries)};
}

const Value* Object::FindByPosition(std::uint64_t prefix, std::string_view key) const noexcept {
    return At(FindPosition(prefix, key), prefix, key);
}

Value* Object::At(Position position, std::uint64_t prefix, std::string_view key) const noexcept {
    const Chunk& chunk = GetChunk(position.chunk);
    if (position.entry == chunk.count) return nullptr;
    const Entry& entry = chunk.entries[position.entry];
    return Order(entry, prefix, key) == 0 ? &entry.member->slot.value : nullptr;
}

template <typename... From>
void Object::Append(From&&... from) {
    auto* const member = ::new (static_cast<void*>(unused_)) Member{std::forward<From>(from)...};
    ++unused_;
    ++size_;
    first_.entries[first_.count++] = {KeyPrefix(member->key), member};
}

Value& Object::Insert(Position position, std::uint64_t prefix, Member&& from) {
    MakeRoom(position);
    auto* const member = ::new (static_cast<void*>(MakePlace())) Member(std::move(from));
    ++size_;
    Chunk& chunk = ChunkAt(position.chunk);
    Entry* const entry = chunk.entries + position.entry;
    std::copy_backward(entry, chunk.entries + chunk.count, chunk.entries + chunk.count + 1);
    *entry = {prefix, member};
    ++chunk.count;
    return member->slot.value;
}

// Returns uninitialised memory for a member.
Object::Place* Object::MakePlace() {
    if (free_ != nullptr) return std::exchange(free_, free_->nextFree);
    if (unused_ == unusedEnd_) {
        const std::uint32_t count = std::clamp(size_ / 2, kSmallestBlock, kLargestBlock);
        std::unique_ptr<Place[]> block(new Place[count]);
        blocks_.push_back(std::move(block));
        unused_ = blocks_.back().get();
        unusedEnd_ = unused_ + count;
    }
    return unused_++;
}

// Ensures that a chunk can take one more entry at `position`, which is updated if the chunk is
// split.
void Object::MakeRoom(Position& position) {
    const Chunk& chunk = GetChunk(position.chunk);
    if (chunk.count < chunk.capacity) return;
    if (chunk.capacity == kChunkEntries) {
        Split(position);
        return;
    }
    // All chunks but the first are created with the full capacity.
    const std::uint32_t capacity = std::clamp(2 * first_.capacity, kFirstEntries, kChunkEntries);
    const Chunk larger{new Entry[capacity], first_.count, capacity};
    std::copy_n(first_.entries, first_.count, larger.entries);
    FreeEntries(first_);
    first_ = larger;
}

// Halves a full chunk, but leaves it full if the object grows at its end, as with ascending keys.
void Object::Split(Position& position) {
    const std::uint32_t count = GetChunk(position.chunk).count;
    const bool atEnd = position.entry == count && position.chunk == more_.size();
    const std::uint32_t kept = atEnd ? count - 1 : count / 2;
    std::unique_ptr<Entry[]> entries(new Entry[kChunkEntries]);
    more_.insert(more_.begin() + static_cast<std::ptrdiff_t>(position.chunk),
                 {entries.get(), count - kept, kChunkEntries});
    Chunk& chunk = ChunkAt(position.chunk);
    std::copy(chunk.entries + kept, chunk.entries + count, entries.release());
    chunk.count = kept;
    if (position.entry > kept) position = {position.chunk + 1, position.entry - kept};
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
        if (entry + 1 != end && IsEqual(*entry, entry[1])) {
            Release(*entry->member);
        } else {
            *kept++ = *entry;
        }
    }
    first_.count = static_cast<std::uint32_t>(kept - first_.entries);
}

void Object::FreeEntries(const Chunk& chunk) noexcept {
    if (chunk.entries != OwnEntries()) delete[] chunk.entries;
}

}  // namespace vxJson::detail
