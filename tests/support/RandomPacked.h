#pragma once

#include <cstdint>
#include <random>
#include <string>

/// Generates random msgpack bytes from a seed: values of all kinds, in minimal and in wider
/// encodings. Two values in three contain nothing that makes a document null or needs the text
/// route, so that large documents are compared as well.
///
/// Thread safety: not safe for concurrent use.
class RandomPacked {
  public:
    explicit RandomPacked(std::uint64_t seed) : engine_(seed) {}

    /// Returns a number from 0 up to `bound`, exclusive.
    std::uint64_t Below(std::uint64_t bound) { return engine_() % bound; }
    bool OneIn(std::uint64_t chances) { return Below(chances) == 0; }

    /// Returns one complete packed value, nested up to 30 deep.
    std::string Value();

    /// Returns `bytes` with a few bytes set, inserted, removed or repeated.
    std::string Mutated(std::string bytes);

  private:
    std::string Any(int depth);
    std::string Map(int depth);
    std::string Head(unsigned shortForm, unsigned shortEnd, unsigned longForm, int width,
                     std::uint64_t number);
    std::string Integer();
    std::string Float();
    std::string Bin();
    std::string Ext();
    std::string Str();
    std::string Bytes();

    std::mt19937_64 engine_;
    bool isOdd_ = false;
    int elementsLeft_ = 0;
};
