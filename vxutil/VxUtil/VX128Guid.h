#pragma once

#include <array>
#include <cstdint>
#include <string>

#include <VxUtil/VxUtilExport.h>

/// A 128-bit identifier. The identifier with all bytes zero is invalid.
///
/// Thread safety: distinct objects may be used concurrently.
class VXUTIL_EXPORT VX128Guid {
  public:
    /// Constructs the invalid identifier.
    VX128Guid() = default;

    /// Parses 8-4-4-4-12 hexadecimal digits, in upper or lower case.
    ///
    /// Throws std::invalid_argument if `text` does not have this form.
    explicit VX128Guid(const std::string& text);

    /// Returns whether any byte is other than zero.
    bool IsValid() const noexcept { return *this != VX128Guid(); }

    /// Returns the identifier in lower-case hexadecimal digits: 8-4-4-4-12 if `hyphens` is true,
    /// else 32 digits. The digits of an invalid identifier are zeros.
    std::string ToUUIDString(bool hyphens) const;

    /// Compare the bytes. @{
    bool operator==(const VX128Guid& other) const noexcept { return bytes_ == other.bytes_; }
    bool operator!=(const VX128Guid& other) const noexcept { return bytes_ != other.bytes_; }
    /// @}

    /// Orders identifiers as their text does.
    bool operator<(const VX128Guid& other) const noexcept { return bytes_ < other.bytes_; }

  private:
    std::array<std::uint8_t, 16> bytes_{};
};
