// The interface table as a document and as JSON values, packed by the library and by hand.

#include <benchmark/benchmark.h>

#include <memory>
#include <msgpack.hpp>
#include <string>
#include <vector>

#include "bench/BenchData.h"
#include "bench/Cases.h"
#include "structure/CDEStructureDataHelper.h"
#include "structure/PackedFrameWriter.h"
#include "tests/support/Texts.h"

namespace {

using Packer = msgpack::packer<msgpack::sbuffer>;
using SharedDocument = std::shared_ptr<const rapidjson::Document>;

SharedDocument Interfaces() {
    const Unit unit = InterfaceTable(200);
    auto document = std::make_shared<rapidjson::Document>();
    CDEStructureDataHelper::ParseBinaryDataToJson(unit.payload.data(), unit.Length(), unit.schema,
                                                  unit.offsets, vxJson::Value(), *document);
    return document;
}

void Library(benchmark::State& state, const SharedDocument& document) {
    for (auto _ : state) {
        dataengine::PackedFrameWriter writer("interfaces");
        writer.AddItems(*document);
        benchmark::DoNotOptimize(writer);
    }
}

void PackCell(Packer& packer, const rapidjson::Value& cell) {
    if (cell.IsString())
        packer.pack_str(cell.GetStringLength())
            .pack_str_body(cell.GetString(), cell.GetStringLength());
    else if (cell.IsUint64())
        packer.pack(cell.GetUint64());
    else if (cell.IsDouble())
        packer.pack(cell.GetDouble());
    else
        packer.pack(cell.GetBool());
}

/// Packs only the columns, whose kinds are known: no names, no schema, no offsets.
void ByHand(benchmark::State& state, const SharedDocument& document) {
    for (auto _ : state) {
        msgpack::sbuffer buffer;
        Packer packer(buffer);
        for (const rapidjson::Value& column : (*document)[0]["column"].GetArray()) {
            const rapidjson::Value& cells = column["value"];
            packer.pack_array(cells.Size());
            for (const rapidjson::Value& cell : cells.GetArray()) PackCell(packer, cell);
        }
        benchmark::DoNotOptimize(buffer.data());
    }
}

/// The columns of the interface table.
struct Columns {
    std::vector<std::string> names;
    std::vector<vxJson::Value> values;
};
using SharedColumns = std::shared_ptr<const Columns>;

SharedColumns ValuesOf(const rapidjson::Document& document) {
    auto columns = std::make_shared<Columns>();
    for (const rapidjson::Value& column : document[0]["column"].GetArray()) {
        columns->names.emplace_back(column["name"].GetString());
        columns->values.push_back(Json(Text(column["value"])));
    }
    return columns;
}

void LibraryFromValues(benchmark::State& state, const SharedColumns& columns) {
    for (auto _ : state) {
        dataengine::PackedFrameWriter writer("interfaces");
        auto table = writer.AddTable("ifTable", false, {});
        for (std::size_t i = 0; i < columns->names.size(); ++i)
            table.AddColumn(columns->names[i], 1, columns->values[i]);
        benchmark::DoNotOptimize(writer);
    }
}

void PackCell(Packer& packer, const vxJson::Value& cell) {
    if (cell.isString()) {
        const std::string& text = cell.asBinary();
        packer.pack_str(static_cast<std::uint32_t>(text.size()))
            .pack_str_body(text.data(), static_cast<std::uint32_t>(text.size()));
    } else if (cell.isInteger()) {
        packer.pack(static_cast<std::uint64_t>(cell.asInt64()));
    } else if (cell.isDouble()) {
        packer.pack(cell.asDouble());
    } else {
        packer.pack(cell.asBool());
    }
}

void ByHandFromValues(benchmark::State& state, const SharedColumns& columns) {
    for (auto _ : state) {
        msgpack::sbuffer buffer;
        Packer packer(buffer);
        for (const vxJson::Value& cells : columns->values) {
            packer.pack_array(cells.size());
            for (const vxJson::Value& cell : cells) PackCell(packer, cell);
        }
        benchmark::DoNotOptimize(buffer.data());
    }
}

}  // namespace

void RegisterPacking() {
    const SharedDocument document = Interfaces();
    const SharedColumns columns = ValuesOf(*document);
    benchmark::RegisterBenchmark("pack_interfaces/library", Library, document);
    benchmark::RegisterBenchmark("pack_interfaces/packer", ByHand, document);
    benchmark::RegisterBenchmark("pack_values/library", LibraryFromValues, columns);
    benchmark::RegisterBenchmark("pack_values/packer", ByHandFromValues, columns);
}
