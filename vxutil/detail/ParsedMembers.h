#pragma once

#include <VxUtil/vxJson.h>

#include <memory>
#include <vector>

namespace vxJson::detail {

/// A member of an object that is being read, or an element of an array; the key is part of the
/// text.
struct ParsedMember {
    std::string_view key;
    Value value;
};

/// A stack of parsed members, addressed by their positions from the bottom. It grows by segments: a
/// vector would hold three times its members while it grows, several times the final value.
class ParsedMembers {
  public:
    std::size_t GetSize() const noexcept { return size_; }
    ParsedMember& operator[](std::size_t i) noexcept {
        return segments_[i / kSegmentMembers][i % kSegmentMembers];
    }
    ParsedMember& GetTop() noexcept { return *top_; }

    /// Adds a null value.
    void Push(std::string_view key) {
        if (size_ == segments_.size() * kSegmentMembers) {
            // A segment without an owner would leak if the vector could not grow.
            std::unique_ptr<ParsedMember[]> segment(new ParsedMember[kSegmentMembers]);
            segments_.push_back(std::move(segment));
        }
        top_ = &(*this)[size_++];
        top_->key = key;
    }

    /// Removes the members from position `size` on, which must not be the bottom.
    void Shrink(std::size_t size) noexcept {
        while (size_ > size) {
            Value& value = (*this)[--size_].value;
            if (!value.isNull()) value = Value();
        }
        top_ = &(*this)[size_ - 1];
    }

  private:
    static constexpr std::size_t kSegmentMembers = 64;

    std::vector<std::unique_ptr<ParsedMember[]>> segments_;
    std::size_t size_ = 0;
    ParsedMember* top_ = nullptr;
};

}  // namespace vxJson::detail
