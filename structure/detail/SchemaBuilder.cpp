#include "structure/detail/SchemaBuilder.h"

#include <utility>

#include "contracts/detail/JsonValues.h"

namespace dataengine::detail {
bool SchemaBuilder::Element() {
    if (container_ != nullptr) slot_ = &container_->append(NullValue());
    return true;
}

bool SchemaBuilder::Boolean(bool value) {
    *slot_ = BoolValue(value);
    return true;
}

bool SchemaBuilder::Integer(PackedInteger integer) {
    if (integer.isNegative) {
        *slot_ = static_cast<long long>(integer.bits);
    } else {
        *slot_ = static_cast<unsigned long long>(integer.bits);
    }
    return true;
}

bool SchemaBuilder::Str(const char* bytes, std::size_t size) {
    std::string text(bytes, size);
    if (!isKey_) {
        *slot_ = std::move(text);
        return true;
    }
    isKey_ = false;
    if (size != 0 && text.front() == '$') return false;
    slot_ = &(*container_)[text];
    if (!slot_->isNull()) *slot_ = NullValue();  // the last of repeated keys wins
    return true;
}

SchemaBuilder::Context SchemaBuilder::BeginArray(std::uint32_t count) {
    if (count == 0) *slot_ = EmptyArray();
    return std::exchange(container_, slot_);
}

SchemaBuilder::Context SchemaBuilder::BeginMap(std::uint32_t count) {
    if (count == 0) *slot_ = EmptyObject();
    return std::exchange(container_, slot_);
}

}  // namespace dataengine::detail
