#pragma once

#include <cstddef>
#include <string>

/// The strings of one group of names, private to the group's source. They are added one by one, in
/// row order, while the library is loaded, and destroyed together when it is unloaded.
template <std::size_t rows>
class NameArray {
  public:
    /// Public, so that a name can be bound to its element when the library is linked.
    std::string strings[rows];

  protected:
    void add(const char* text) { strings[size_++] = text; }
    void add(const std::string& model) { strings[size_++] = model; }

  private:
    std::size_t size_ = 0;
};
