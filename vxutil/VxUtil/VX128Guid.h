#pragma once

#include <array>
#include <cstdint>
#include <string>

#include <VxUtil/VxUtilExport.h>

/// A 128-bit identifier. One whose bytes are all zero is invalid and names nothing.
///
/// Thread rule: distinct objects may be used at the same time.
class VXUTIL_EXPORT VX128Guid {
  public:
    /// The invalid identifier.
    VX128Guid() = default;

    /// Reads the form of 8-4-4-4-12 hexadecimal digits, in any case. Throws std::invalid_argument
    /// on any other text.
    explicit VX128Guid(const std::string& text);

    /// True unless all bytes are zero.
    bool IsValid() const noexcept { return *this != VX128Guid(); }

    /// The identifier in lower-case hexadecimal digits: 8-4-4-4-12 with true, 32 digits without
    /// hyphens with false. An invalid one gives zeros.
    std::string ToUUIDString(bool hyphens) const;

    /// Whether the bytes are equal. @{
    bool operator==(const VX128Guid& other) const noexcept { return bytes_ == other.bytes_; }
    bool operator!=(const VX128Guid& other) const noexcept { return bytes_ != other.bytes_; }
    /// @}

    /// The order of the texts.
    bool operator<(const VX128Guid& other) const noexcept { return bytes_ < other.bytes_; }

  private:
    std::array<std::uint8_t, 16> bytes_{};
};
