#pragma once

#include <VxUtil/vxJson.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>

namespace vxJson {

/// A position in a value. Valid until an element is added or removed.
///
/// Thread safety: distinct iterators may be used concurrently while no thread modifies the value.
class VXUTIL_EXPORT ValueIteratorBase {
  public:
    /// Constructs a singular iterator, which may only be assigned to and destroyed.
    ValueIteratorBase() noexcept = default;

    /// Returns the element at this position, which must not be the end.
    Value& deref() const noexcept;
    /// Returns the key of the member at this position, which must not be the end; "" in an array.
    const std::string& key() const noexcept;
    /// Advances to the next position. The current one must not be the end.
    void increment() noexcept;
    /// Returns whether both are the same position in the same value. @{
    bool isEqual(const ValueIteratorBase& other) const noexcept;
    bool operator==(const ValueIteratorBase& other) const noexcept { return isEqual(other); }
    bool operator!=(const ValueIteratorBase& other) const noexcept { return !isEqual(other); }
    /// @}

  protected:
    friend class Value;
    /// Constructs the first position in `value`, or the end.
    ValueIteratorBase(const Value& value, bool atEnd) noexcept;

  private:
    // The container is null if the value is not one. In an object, `at_` is a position within a
    // chunk of the index.
    detail::Container* container_ = nullptr;
    std::uint32_t chunk_ = 0;
    std::uint32_t at_ = 0;
};

namespace detail {

/// The operators of a forward iterator.
template <typename Derived, typename Element>
class ForwardIterator : public ValueIteratorBase {
  public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Value;
    using difference_type = std::ptrdiff_t;
    using pointer = Element*;
    using reference = Element&;

    reference operator*() const noexcept { return deref(); }
    pointer operator->() const noexcept { return &deref(); }
    Derived& operator++() noexcept {
        increment();
        return static_cast<Derived&>(*this);
    }
    Derived operator++(int) noexcept {
        const Derived before = static_cast<Derived&>(*this);
        increment();
        return before;
    }

  protected:
    using ValueIteratorBase::ValueIteratorBase;
};

}  // namespace detail

/// The forward iterator of a value; see Value::begin.
class VXUTIL_EXPORT ValueIterator : public detail::ForwardIterator<ValueIterator, Value> {
    friend class Value;
    using ForwardIterator::ForwardIterator;
};

/// The forward iterator of a const value, through which elements must not be changed.
class VXUTIL_EXPORT ValueConstIterator
    : public detail::ForwardIterator<ValueConstIterator, const Value> {
    friend class Value;
    using ForwardIterator::ForwardIterator;
};

/// The members of an object, for a range-based for loop; see Value::members.
template <typename Iterator>
class MemberRange {
  public:
    /// One member. Both references remain valid for the lifetime of the member.
    struct Member {
        const std::string& key;
        typename Iterator::reference value;
    };

    /// A position in the range. An input iterator, since it returns members by value.
    class iterator {
      public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Member;
        using difference_type = std::ptrdiff_t;
        using reference = Member;
        /// Keeps a member while operator-> is applied to it.
        struct pointer {
            Member member;
            const Member* operator->() const noexcept { return &member; }
        };

        iterator() noexcept = default;
        explicit iterator(Iterator at) noexcept : at_(at) {}
        reference operator*() const noexcept { return {at_.key(), *at_}; }
        pointer operator->() const noexcept { return {**this}; }
        iterator& operator++() noexcept {
            ++at_;
            return *this;
        }
        iterator operator++(int) noexcept { return iterator(at_++); }
        bool operator==(const iterator& other) const noexcept { return at_ == other.at_; }
        bool operator!=(const iterator& other) const noexcept { return at_ != other.at_; }

      private:
        Iterator at_;
    };

    MemberRange(Iterator begin, Iterator end) noexcept : begin_(begin), end_(end) {}
    iterator begin() const noexcept { return begin_; }
    iterator end() const noexcept { return end_; }

  private:
    iterator begin_;
    iterator end_;
};

inline MemberRange<ValueIterator> Value::members() & {
    return {isObject() ? begin() : end(), end()};
}
inline MemberRange<ValueConstIterator> Value::members() const& {
    return {isObject() ? begin() : end(), end()};
}

}  // namespace vxJson
