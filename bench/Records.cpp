// The stored form and the keys of a record with 1 MB of command output.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "bench/BenchData.h"
#include "bench/Cases.h"
#include "records/CDEDataShowCommand.h"

namespace {

constexpr std::int64_t kBytes = 1000000;

void Fill(CDEDataShowCommand& record) {
    record.SetCommand("show running-config");
    record.SetData(ConfigurationText(kBytes));
    record.SetTime(1600000000000);
}

void OdJson(benchmark::State& state) {
    CDEDataShowCommand record;
    Fill(record);
    for (auto _ : state) benchmark::DoNotOptimize(record.GetODJson());
    state.SetBytesProcessed(state.iterations() * kBytes);
}

void Keys(benchmark::State& state) {
    CDEDataShowCommand record;
    Fill(record);
    for (auto _ : state) {
        benchmark::DoNotOptimize(record.GetMetaMD5());
        benchmark::DoNotOptimize(record.GetDataMD5());
    }
    state.SetBytesProcessed(state.iterations() * kBytes);
}

}  // namespace

void RegisterRecords() {
    benchmark::RegisterBenchmark("record_odjson/library", OdJson);
    benchmark::RegisterBenchmark("record_keys/library", Keys);
}
