#pragma once

#include <vector>

#include "Container.h"
#include "FlatObject.h"

namespace vxJson::detail {

using Elements = std::vector<Slot>;

struct Array : Container {
    Array() noexcept : Container(false) {}

    Elements elements;
};

template <typename Visit>
void VisitChildren(const Container& container, Visit visit) {
    if (container.isObject) {
        static_cast<const Object&>(container).ForEach(
            [&visit](Member& member) { visit(member.slot.value); });
    } else {
        for (const Slot& slot : static_cast<const Array&>(container).elements)
            visit(const_cast<Value&>(slot.value));
    }
}

/// A place in a walk over the elements of an array or the members of an object.
class Cursor {
  public:
    explicit Cursor(const Container& container) noexcept {
        if (container.isObject) {
            object_ = &static_cast<const Object&>(container);
            EnterChunk();
        } else {
            const Elements& elements = static_cast<const Array&>(container).elements;
            element_ = elements.data();
            elementEnd_ = element_ + elements.size();
        }
    }

    bool InObject() const noexcept { return object_ != nullptr; }
    bool AtEnd() const noexcept {
        return InObject() ? entry_ == entryEnd_ : element_ == elementEnd_;
    }
    const std::string& GetKey() const noexcept { return entry_->member->key; }
    const Value& GetValue() const noexcept {
        return InObject() ? entry_->member->slot.value : element_->value;
    }
    void Advance() noexcept {
        if (!InObject()) {
            ++element_;
        } else if (++entry_ == entryEnd_ && chunk_ + 1 < object_->ChunkCount()) {
            ++chunk_;
            EnterChunk();
        }
    }

  private:
    void EnterChunk() noexcept {
        const Object::Chunk& chunk = object_->GetChunk(chunk_);
        entry_ = chunk.entries;
        entryEnd_ = entry_ + chunk.count;
    }

    const Object* object_ = nullptr;
    std::size_t chunk_ = 0;
    union {
        const Object::Entry* entry_;
        const Slot* element_;
    };
    union {
        const Object::Entry* entryEnd_;
        const Slot* elementEnd_;
    };
};

}  // namespace vxJson::detail
