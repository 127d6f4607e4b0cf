#pragma once

#include <cstdint>
#include <random>
#include <string>

/// Random msgpack bytes from a seed; the same seed gives the same bytes in every run of a program.
///
/// Values of all kinds in minimal and in wider encodings. Two in three hold nothing that spoils a
/// document, so that large ones decode as well: the others may hold ext, NaN, infinities, keys that
/// are no strings and `bin` that is no JSON string.
///
/// Thread rule: one generator belongs to one thread.
class RandomPacked {
  public:
    explicit RandomPacked(std::uint64_t seed) : engine_(seed) {}

    /// A number from 0 up to `bound`, which is not 0 and never reached.
    std::uint64_t Below(std::uint64_t bound) { return engine_() % bound; }
    bool OneIn(std::uint64_t chances) { return Below(chances) == 0; }

    /// One complete packed value, nested up to 30 deep.
    std::string Value();

    /// `bytes` with a few bits flipped, bytes set, inserted, removed or repeated.
    std::string Mutated(std::string bytes);

    /// A proper prefix of `bytes`.
    std::string Cut(const std::string& bytes) { return bytes.substr(0, Below(bytes.size())); }

  private:
    std::string Any(int depth);
    std::string Container(int depth);
    std::string Key(int depth);
    std::string Scalar();
    std::string Integer();
    std::string Float();
    std::string Str(const std::string& bytes);
    std::string Bin();
    std::string Ext();

    double Double();
    std::size_t Length();
    std::string Bytes();
    char Byte() { return static_cast<char>(Below(256)); }

    std::mt19937_64 engine_;
    bool maySpoil_ = false;
    int elementsLeft_ = 0;
};
