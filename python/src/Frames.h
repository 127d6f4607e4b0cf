#pragma once

#include <pybind11/pybind11.h>
#include <rapidjson/document.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "python/src/Buffer.h"
#include "python/src/Values.h"
#include "structure/PackedFrameReader.h"
#include "variables/DDKey.h"

namespace dataengine::python {

namespace py = pybind11;

/// The names that a mapping gives to an item of a document and to its columns.
struct WantedNames {
    std::string item;
    std::vector<std::string> columns;
};

/// A reader that Python threads may share: calls of several threads run one after the other.
///
/// Invariant: a thread that holds the lock never waits for the GIL.
class Reader {
  public:
    /// `mapping` holds pairs of a wanted name and its variable, a name or a pair of parser and
    /// name. A variable without a parser belongs to `parser`, which is by default the name of the
    /// frame.
    Reader(const py::object& selection, const py::dict& mapping, const py::object& parser);

    bool HasMapping() const { return !mapping_.empty(); }

    /// The number of levels that values may nest.
    std::size_t Depth() const { return depth_; }
    void SetDepth(std::size_t depth) { depth_ = depth; }

    /// Calls `step` with the reader after it has opened `frame`, whose number is `id`. Releases the
    /// GIL meanwhile. Throws FrameFailure for whatever is wrong with the frame.
    template <typename Step>
    void Run(std::string_view frame, std::uint64_t id, const Step& step);

    /// Returns the wanted names for a document of the open frame. The caller holds the lock.
    const std::vector<WantedNames>& NamesFor(const rapidjson::Document& document);

  private:
    struct Mapped {
        std::string wanted;
        std::optional<std::string> parser;
        std::string variable;
    };

    void Open(std::string_view frame, std::uint64_t id);

    std::size_t depth_ = kAnyDepth;
    std::vector<Mapped> mapping_;
    std::optional<std::string> parser_;
    std::mutex lock_;  // guards the following
    PackedFrameReader reader_;
    std::string_view opened_;
    std::uint64_t openedId_ = 0;  // 0 if no frame is open
    std::string namesHeader_;     // the header for which names_ was built
    std::vector<WantedNames> names_;
};

/// A frame that a reader has opened. It keeps the reader and the bytes.
class Frame {
  public:
    Frame(std::shared_ptr<Reader> reader, const py::object& data);

    const std::string& Name() const { return name_; }
    int HeaderLength() const { return headerLength_; }
    py::object Schema() const;
    py::object Offsets() const;
    std::size_t Size() const { return buffer_.Bytes().size(); }

    py::dict Decode(const py::object& offsets) const;
    py::object Document(const py::object& offsets) const;
    void Check(const py::object& offsets) const;
    py::object Table(const std::string& name, const py::object& offsets) const;

  private:
    template <typename Step>
    void Run(const Step& step) const;
    void DecodeInto(rapidjson::Document& document, const py::object& offsets,
                    std::vector<WantedNames>* names) const;

    std::shared_ptr<Reader> reader_;
    Buffer buffer_;
    std::uint64_t id_;
    std::string name_;
    int headerLength_ = 0;
};

}  // namespace dataengine::python
