#include <rapidjson/document.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "python/src/GilRelease.h"
#include "python/src/Module.h"
#include "python/src/Values.h"
#include "structure/PackedFrameWriter.h"

namespace dataengine::python {
namespace {

/// A writer that Python threads may share. A thread that holds the lock never waits for the GIL.
class Writer {
  public:
    explicit Writer(const py::handle& name) : writer_(FromText(name.ptr())) {}

    /// Calls `step` with the writer, without the GIL.
    template <typename Step>
    auto Run(const Step& step) {
        const GilRelease release;
        const std::lock_guard<std::mutex> guard(lock_);
        return step(writer_);
    }

  private:
    std::mutex lock_;
    PackedFrameWriter writer_;
};

/// A table that is being written. It keeps the writer.
class TableWriter {
  public:
    TableWriter(std::shared_ptr<Writer> writer, PackedFrameWriter::Table table)
        : writer_(std::move(writer)), table_(table) {}

    void AddColumn(const py::handle& name, int type, const py::handle& values) {
        const std::string text = FromText(name.ptr());
        const vxJson::Value value = FromPython(values);
        writer_->Run([&](PackedFrameWriter&) { table_.AddColumn(text, type, value); });
    }
    void AddAttribute(const py::handle& name, int type, const py::handle& value) {
        const std::string text = FromText(name.ptr());
        const vxJson::Value converted = FromPython(value);
        writer_->Run([&](PackedFrameWriter&) { table_.AddAttribute(text, type, converted); });
    }

  private:
    std::shared_ptr<Writer> writer_;
    PackedFrameWriter::Table table_;
};

void AddLeaf(Writer& writer, const py::handle& name, int type, const py::handle& value) {
    const std::string text = FromText(name.ptr());
    const vxJson::Value converted = FromPython(value);
    writer.Run([&](PackedFrameWriter& open) { open.AddLeaf(text, type, converted); });
}

TableWriter AddTable(const std::shared_ptr<Writer>& writer, const py::handle& name, bool hashSort,
                     const py::sequence& hashColumns) {
    const std::string text = FromText(name.ptr());
    std::vector<std::string> columns;
    for (const py::handle& column : hashColumns) columns.push_back(FromText(column.ptr()));
    return {writer, writer->Run([&](PackedFrameWriter& open) {
                return open.AddTable(text, hashSort, columns);
            })};
}

void AddItems(Writer& writer, const py::handle& items) {
    const std::string text = FromPython(items, Kinds::kJson).toString(false);
    writer.Run([&](PackedFrameWriter& open) {
        constexpr unsigned kFlags =
            rapidjson::kParseIterativeFlag | rapidjson::kParseFullPrecisionFlag;
        rapidjson::Document document;
        document.Parse<kFlags>(text.data(), text.size());
        open.AddItems(document);
    });
}

py::bytes FrameOf(Writer& writer) {
    return writer.Run([](PackedFrameWriter& open) { return open.Frame(); });
}

py::object OffsetsOf(Writer& writer) {
    return ToPython(writer.Run([](PackedFrameWriter& open) { return open.Offsets(); }));
}

int HeaderLengthOf(Writer& writer) {
    return writer.Run([](PackedFrameWriter& open) { return open.HeaderLength(); });
}

}  // namespace

void BindWriting(py::module_& module) {
    py::class_<TableWriter> table(module, "TableWriter", py::is_final());
    Seal(table);
    table.def("add_column", &TableWriter::AddColumn);
    table.def("add_attribute", &TableWriter::AddAttribute);
    py::class_<Writer, std::shared_ptr<Writer>> writer(module, "Writer", py::is_final());
    Seal(writer);
    writer.def("add_leaf", &AddLeaf);
    writer.def("add_table", &AddTable);
    writer.def("add_items", &AddItems);
    writer.def("frame", &FrameOf);
    writer.def("offsets", &OffsetsOf);
    writer.def("header_length", &HeaderLengthOf);
    module.def("new_writer", [](const py::handle& name) { return std::make_shared<Writer>(name); });
}

}  // namespace dataengine::python
