// Selection of one item among many, and of all items.

#include <benchmark/benchmark.h>

#include <string>

#include "bench/BenchData.h"
#include "bench/Cases.h"
#include "structure/CDEStructureDataHelper.h"
#include "tests/support/TextRoute.h"

namespace {

void Decode(benchmark::State& state, const Unit& unit, const vxJson::Value& fields) {
    for (auto _ : state) {
        rapidjson::Document document;
        CDEStructureDataHelper::ParseBinaryDataToJson(unit.payload.data(), unit.Length(),
                                                      unit.schema, unit.offsets, fields, document);
        benchmark::DoNotOptimize(document);
    }
}

vxJson::Value Only(const std::string& name) {
    vxJson::Value text, fields;
    text = name;
    fields.append(text);
    return fields;
}

std::string LastOf(int items) {
    return "variable" + std::to_string(items - 1);
}

void First(benchmark::State& state, int items) {
    Decode(state, ScalarLeaves(items), Only("variable0"));
}

void Last(benchmark::State& state, int items) {
    Decode(state, ScalarLeaves(items), Only(LastOf(items)));
}

void PlainWalk(benchmark::State& state, int items) {
    const Unit unit = ScalarLeaves(items);
    const std::string name = LastOf(items);
    for (auto _ : state) benchmark::DoNotOptimize(TextRoute::GetChildItemByName(name, unit.schema));
}

void Everything(benchmark::State& state, int items) {
    Decode(state, ScalarLeaves(items), vxJson::Value());
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * items);
}

}  // namespace

void RegisterSelection() {
    benchmark::RegisterBenchmark("select_first/of10", First, 10);
    benchmark::RegisterBenchmark("select_first/of10000", First, 10000);
    benchmark::RegisterBenchmark("select_last/of10000", Last, 10000);
    benchmark::RegisterBenchmark("select_last/walk10000", PlainWalk, 10000);
    benchmark::RegisterBenchmark("select_all/of1000", Everything, 1000);
    benchmark::RegisterBenchmark("select_all/of10000", Everything, 10000);
    benchmark::RegisterBenchmark("select_all/of100000", Everything, 100000);
}
