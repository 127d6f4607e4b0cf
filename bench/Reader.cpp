// Frames of one parser, read one after the other by one reader.

#include "structure/PackedFrameReader.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <msgpack.hpp>
#include <string>
#include <vector>

#include "bench/BenchData.h"
#include "bench/Cases.h"
#include "structure/CDEStructureDataHelper.h"

namespace {

using dataengine::PackedFrameReader;

void Read(benchmark::State& state, const Unit& unit, const vxJson::Value& selection) {
    const std::string frame = unit.Frame();
    PackedFrameReader reader(selection);
    for (auto _ : state) {
        rapidjson::Document document;
        if (!reader.Open(frame) || !reader.Decode(unit.offsets, document))
            state.SkipWithError("the frame does not decode");
        benchmark::DoNotOptimize(document);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

void Unpack(benchmark::State& state, const Unit& unit, const std::vector<std::size_t>& offsets) {
    for (auto _ : state) {
        for (const std::size_t offset : offsets) {
            const msgpack::object_handle handle =
                msgpack::unpack(unit.payload.data() + offset, unit.payload.size() - offset);
            benchmark::DoNotOptimize(handle.get());
        }
    }
}

// One column of the table, which is the last item.
constexpr int kTable = 12, kColumn = 1;

vxJson::Value OneColumn(const Unit& unit) {
    const vxJson::Value& table = unit.schema[kTable];
    vxJson::Value selection;
    selection[0]["table"] = table["name"];
    selection[0]["column"].append(table["column"][kColumn]["name"]);
    selection[0]["attributes"] = vxJson::Value(vxJson::arrayKind, false);
    return selection;
}

/// Frames whose headers differ in the unit's name, so that no header is the last one.
std::array<Unit, 2> Alternating() {
    return {DeviceOverview("device overview 1"), DeviceOverview("device overview 2")};
}

void NewHeadersByReader(benchmark::State& state) {
    const std::array<Unit, 2> units = Alternating();
    const std::array<std::string, 2> frames = {units[0].Frame(), units[1].Frame()};
    PackedFrameReader reader;
    std::size_t i = 0;
    for (auto _ : state) {
        i = 1 - i;
        rapidjson::Document document;
        reader.Open(frames[i]);
        reader.Decode(units[i].offsets, document);
        benchmark::DoNotOptimize(document);
    }
}

void NewHeadersByHelper(benchmark::State& state) {
    const std::array<Unit, 2> units = Alternating();
    const std::array<std::string, 2> frames = {units[0].Frame(), units[1].Frame()};
    const vxJson::Value all;
    std::size_t i = 0;
    for (auto _ : state) {
        i = 1 - i;
        rapidjson::Document document;
        std::string name;
        vxJson::Value schema;
        int header = 0;
        CDEStructureDataHelper::GetBinaryDataInfo(frames[i], name, schema, header);
        CDEStructureDataHelper::ParseBinaryDataToJson(frames[i].data() + header, units[i].Length(),
                                                      schema, units[i].offsets, all, document);
        benchmark::DoNotOptimize(document);
    }
}

}  // namespace

void RegisterReader() {
    const auto add = [](const char* name, auto run) {
        return benchmark::RegisterBenchmark(name, run);
    };
    const vxJson::Value all;
    add("frame/reader", [all](auto& state) { Read(state, DeviceOverview(), all); });
    add("frame/unpack", [](auto& state) {
        const Unit unit = DeviceOverview();
        Unpack(state, unit, unit.values);
    });
    add("decode_leaves/reader", [all](auto& state) { Read(state, ScalarLeaves(100), all); });
    add("column/reader", [](auto& state) {
        const Unit unit = DeviceOverview();
        Read(state, unit, OneColumn(unit));
    });
    add("column/unpack", [](auto& state) {
        const Unit unit = DeviceOverview();
        Unpack(state, unit, {unit.values[kTable + kColumn]});
    });
    add("new_headers/library", NewHeadersByHelper);
    add("new_headers/reader", NewHeadersByReader);
    for (const int threads : {1, 2})
        add("read_threads", [all](auto& state) { Read(state, DeviceOverview(), all); })
            ->Threads(threads)
            ->UseRealTime();
}
