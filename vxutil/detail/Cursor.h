#pragma once

#include "vxutil/detail/Array.h"
#include "vxutil/detail/Object.h"

namespace vxJson::detail {

/// A position among the elements of an array or the members of an object.
class Cursor {
  public:
    explicit Cursor(const Container& container) noexcept {
        if (container.isObject) {
            object_ = &static_cast<const Object&>(container);
            EnterChunk();
        } else {
            element_ = static_cast<const Array&>(container).begin();
            elementEnd_ = static_cast<const Array&>(container).end();
        }
    }

    bool IsInObject() const noexcept { return object_ != nullptr; }
    bool IsAtEnd() const noexcept {
        return IsInObject() ? entry_ == entryEnd_ : element_ == elementEnd_;
    }
    const std::string& GetKey() const noexcept { return entry_->member->key; }
    const Value& GetValue() const noexcept {
        return IsInObject() ? entry_->member->value : *element_;
    }
    void Advance() noexcept {
        if (!IsInObject()) {
            ++element_;
        } else if (++entry_ == entryEnd_ && chunk_ + 1 < object_->GetChunkCount()) {
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
        const Value* element_;
    };
    union {
        const Object::Entry* entryEnd_;
        const Value* elementEnd_;
    };
};

}  // namespace vxJson::detail
