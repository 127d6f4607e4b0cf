// The header of a packed buffer with a schema of 40 items.

#include <benchmark/benchmark.h>

#include "bench/BenchData.h"
#include "bench/Cases.h"
#include "structure/CDEStructureDataHelper.h"
#include "tests/support/TextRoute.h"

namespace {

template <typename Read>
void ReadHeader(benchmark::State& state, const Read& read) {
    const std::string blob = HeaderOf40Items();
    for (auto _ : state) {
        std::string name;
        vxJson::Value schema;
        int offset = 0;
        if (!read(blob, name, schema, offset) || schema.size() != 40)
            state.SkipWithError("the header does not read");
        benchmark::DoNotOptimize(offset);
    }
}

void Library(benchmark::State& state) {
    ReadHeader(state, CDEStructureDataHelper::GetBinaryDataInfo);
}

void Plain(benchmark::State& state) {
    ReadHeader(state, TextRoute::GetBinaryDataInfo);
}

}  // namespace

void RegisterHeaders() {
    benchmark::RegisterBenchmark("header/library", Library);
    benchmark::RegisterBenchmark("header/plain", Plain);
}
