#include "structure/detail/SchemaBuilder.h"

#include <memory>
#include <sstream>
#include <utility>

#include "contracts/detail/Values.h"

namespace dataengine::detail {
namespace {

/// Returns a value that a JSON value cannot be assigned or grow into; all are parsed once.
const vxJson::Value& Prototype(int index) {
    // Never destroyed, because destructors of static objects may still read frames.
    static const vxJson::Value& prototypes = *[] {
        std::istringstream text("[false,true,[],{}]");
        auto values = std::make_unique<vxJson::Value>(NullValue());
        vxJson::Reader().parse(text, *values, false);
        return values.release();
    }();
    return prototypes[index];
}
constexpr int kFalse = 0, kTrue = 1, kEmptyArray = 2, kEmptyObject = 3;

}  // namespace

bool SchemaBuilder::Element() {
    if (container_ != nullptr) slot_ = &container_->append(NullValue());
    return true;
}

bool SchemaBuilder::Boolean(bool value) {
    *slot_ = Prototype(value ? kTrue : kFalse);
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

SchemaBuilder::Place SchemaBuilder::BeginArray(std::uint32_t count) {
    if (count == 0) *slot_ = Prototype(kEmptyArray);
    return std::exchange(container_, slot_);
}

SchemaBuilder::Place SchemaBuilder::BeginMap(std::uint32_t count) {
    if (count == 0) *slot_ = Prototype(kEmptyObject);
    return std::exchange(container_, slot_);
}

}  // namespace dataengine::detail
