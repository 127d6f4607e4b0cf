// The JSON value compared with nlohmann's on a document of 1 MB.

#include <VxUtil/vxJson.h>
#include <benchmark/benchmark.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "bench/BenchData.h"
#include "bench/Cases.h"
#include "tests/support/Texts.h"

namespace {

constexpr std::size_t kBytes = 1000000;

void ParseLibrary(benchmark::State& state) {
    const std::string text = InterfacesJson(kBytes);
    for (auto _ : state) {
        std::istringstream stream(text);
        vxJson::Value value;
        if (!vxJson::Reader().parse(stream, value, true)) state.SkipWithError("does not parse");
        benchmark::DoNotOptimize(value);
    }
}

void ParseNlohmann(benchmark::State& state) {
    const std::string text = InterfacesJson(kBytes);
    for (auto _ : state) {
        const nlohmann::json value = nlohmann::json::parse(text);
        benchmark::DoNotOptimize(value);
    }
}

void PrintLibrary(benchmark::State& state) {
    const vxJson::Value value = Json(InterfacesJson(kBytes));
    for (auto _ : state) benchmark::DoNotOptimize(value.toString(false));
}

void PrintNlohmann(benchmark::State& state) {
    const nlohmann::json value = nlohmann::json::parse(InterfacesJson(kBytes));
    for (auto _ : state) benchmark::DoNotOptimize(value.dump());
}

void CopyLibrary(benchmark::State& state) {
    const vxJson::Value value = Json(InterfacesJson(kBytes));
    for (auto _ : state) {
        const vxJson::Value copy(value);
        benchmark::DoNotOptimize(copy);
    }
}

void CopyNlohmann(benchmark::State& state) {
    const nlohmann::json value = nlohmann::json::parse(InterfacesJson(kBytes));
    for (auto _ : state) {
        const nlohmann::json copy(value);
        benchmark::DoNotOptimize(copy);
    }
}

/// Looks up three members of every interface: the first and the last by name, and an absent one.
void LookupLibrary(benchmark::State& state) {
    const vxJson::Value value = Json(InterfacesJson(kBytes));
    const int count = static_cast<int>(value.size());
    for (auto _ : state) {
        for (int i = 0; i < count; ++i) {
            const vxJson::Value& item = value[i];
            benchmark::DoNotOptimize(&item["ifAlias"]);
            benchmark::DoNotOptimize(&item["vlans"]);
            benchmark::DoNotOptimize(&item["description"]);
        }
    }
}

void LookupNlohmann(benchmark::State& state) {
    const nlohmann::json value = nlohmann::json::parse(InterfacesJson(kBytes));
    const std::size_t count = value.size();
    for (auto _ : state) {
        for (std::size_t i = 0; i < count; ++i) {
            const nlohmann::json& item = value[i];
            benchmark::DoNotOptimize(item.find("ifAlias"));
            benchmark::DoNotOptimize(item.find("vlans"));
            benchmark::DoNotOptimize(item.find("description"));
        }
    }
}

void PrintMiBOfBinary(benchmark::State& state) {
    const vxJson::Value value = vxJson::Value::Binary(ConfigurationText(1 << 20));
    for (auto _ : state) benchmark::DoNotOptimize(value.toString(false));
}

void PrintStringOfItsLength(benchmark::State& state) {
    const std::string text = vxJson::Value::Binary(ConfigurationText(1 << 20)).toString(false);
    const vxJson::Value value = std::string(text.size() - 2, 'x');
    for (auto _ : state) benchmark::DoNotOptimize(value.toString(false));
}

}  // namespace

void RegisterJson() {
    benchmark::RegisterBenchmark("json_parse/library", ParseLibrary);
    benchmark::RegisterBenchmark("json_parse/nlohmann", ParseNlohmann);
    benchmark::RegisterBenchmark("json_print/library", PrintLibrary);
    benchmark::RegisterBenchmark("json_print/nlohmann", PrintNlohmann);
    benchmark::RegisterBenchmark("json_binary/library", PrintMiBOfBinary);
    benchmark::RegisterBenchmark("json_binary/string", PrintStringOfItsLength);
    benchmark::RegisterBenchmark("json_copy/library", CopyLibrary);
    benchmark::RegisterBenchmark("json_copy/nlohmann", CopyNlohmann);
    benchmark::RegisterBenchmark("json_lookup/library", LookupLibrary);
    benchmark::RegisterBenchmark("json_lookup/nlohmann", LookupNlohmann);
}
