// The interface table as a document, packed by the library and by hand.

#include <benchmark/benchmark.h>

#include <memory>
#include <msgpack.hpp>

#include "bench/BenchData.h"
#include "bench/Cases.h"
#include "structure/CDEStructureDataHelper.h"
#include "structure/PackedFrameWriter.h"

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

}  // namespace

void RegisterPacking() {
    const SharedDocument document = Interfaces();
    benchmark::RegisterBenchmark("pack_interfaces/library", Library, document);
    benchmark::RegisterBenchmark("pack_interfaces/packer", ByHand, document);
}
