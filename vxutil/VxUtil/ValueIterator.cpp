#include <VxUtil/vxJson.h>

#include "vxutil/detail/Cursor.h"

namespace vxJson {

using detail::Array;
using detail::Object;

ValueIterator Value::begin() {
    return ValueIterator(*this, false);
}
ValueIterator Value::end() {
    return ValueIterator(*this, true);
}
ValueConstIterator Value::begin() const {
    return ValueConstIterator(*this, false);
}
ValueConstIterator Value::end() const {
    return ValueConstIterator(*this, true);
}

ValueIteratorBase::ValueIteratorBase(const Value& value, bool atEnd) noexcept {
    if (!value.HoldsContainer()) return;
    container_ = value.plain_.container;
    if (!atEnd) return;
    if (container_->isObject) {
        const auto& object = static_cast<const Object&>(*container_);
        chunk_ = static_cast<std::uint32_t>(object.GetChunkCount() - 1);
        at_ = object.GetChunk(chunk_).count;
    } else {
        at_ = value.size();
    }
}

Value& ValueIteratorBase::deref() const noexcept {
    if (!container_->isObject) return static_cast<Array*>(container_)->begin()[at_];
    return static_cast<Object*>(container_)->GetChunk(chunk_).entries[at_].member->value;
}

const std::string& ValueIteratorBase::key() const noexcept {
    if (!container_->isObject) return Value().asBinary();
    return static_cast<Object*>(container_)->GetChunk(chunk_).entries[at_].member->key;
}

void ValueIteratorBase::increment() noexcept {
    ++at_;
    if (!container_->isObject) return;
    const auto& object = static_cast<const Object&>(*container_);
    if (at_ == object.GetChunk(chunk_).count && chunk_ + 1 < object.GetChunkCount()) {
        ++chunk_;
        at_ = 0;
    }
}

bool ValueIteratorBase::isEqual(const ValueIteratorBase& other) const noexcept {
    return container_ == other.container_ && chunk_ == other.chunk_ && at_ == other.at_;
}

}  // namespace vxJson
