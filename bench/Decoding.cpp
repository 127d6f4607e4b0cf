// Whole units, decoded by the library and by its alternatives. Every contender creates and destroys
// its result within the measured time of each round.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <msgpack.hpp>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "bench/BenchData.h"
#include "bench/Cases.h"
#include "structure/CDEStructureDataHelper.h"
#include "tests/support/SameDocument.h"
#include "tests/support/TextRoute.h"

namespace {

using SharedUnit = std::shared_ptr<const Unit>;

const vxJson::Value kEverything;

template <typename Decode>
void DecodeUnit(benchmark::State& state, const Unit& unit, const Decode& decode) {
    for (auto _ : state) {
        rapidjson::Document document;
        if (!decode(unit.payload.data(), unit.Length(), unit.schema, unit.offsets, kEverything,
                    document))
            state.SkipWithError("the unit does not decode");
        benchmark::DoNotOptimize(document);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * unit.Length());
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

void Library(benchmark::State& state, const SharedUnit& unit) {
    DecodeUnit(state, *unit, CDEStructureDataHelper::ParseBinaryDataToJson);
}

void Text(benchmark::State& state, const SharedUnit& unit) {
    DecodeUnit(state, *unit, TextRoute::ParseBinaryDataToJson);
}

void Unpack(benchmark::State& state, const SharedUnit& unit) {
    for (auto _ : state) {
        for (const std::size_t offset : unit->values) {
            const msgpack::object_handle handle =
                msgpack::unpack(unit->payload.data() + offset, unit->payload.size() - offset);
            benchmark::DoNotOptimize(handle.get());
        }
    }
}

void Nlohmann(benchmark::State& state, const SharedUnit& unit) {
    for (auto _ : state) {
        for (const std::size_t offset : unit->values) {
            const nlohmann::json value = nlohmann::json::from_msgpack(
                unit->payload.data() + offset, unit->payload.data() + unit->payload.size(), false);
            benchmark::DoNotOptimize(value);
        }
    }
}

std::uint64_t ReadOnce(const std::string& bytes) {
    std::uint64_t sum = 0;
    for (std::size_t at = 0; at + sizeof sum <= bytes.size(); at += sizeof sum) {
        std::uint64_t word;
        std::memcpy(&word, bytes.data() + at, sizeof word);
        sum += word;
    }
    return sum;
}

/// The least work of any decoder: reads the packed bytes once, and writes as many bytes into fresh
/// memory as the decoded document takes in its pool.
void Floor(benchmark::State& state, const SharedUnit& unit) {
    rapidjson::Document document;
    CDEStructureDataHelper::ParseBinaryDataToJson(
        unit->payload.data(), unit->Length(), unit->schema, unit->offsets, kEverything, document);
    const std::size_t size = document.GetAllocator().Size();
    for (auto _ : state) {
        benchmark::DoNotOptimize(ReadOnce(unit->payload));
        void* memory = std::malloc(size);
        if (memory == nullptr) throw std::bad_alloc();
        std::memset(memory, 0x5a, size);
        benchmark::DoNotOptimize(memory);
        benchmark::ClobberMemory();
        std::free(memory);
    }
    state.counters["documentBytes"] = static_cast<double>(size);
}

/// Throws if the documents of the library and of the text route differ.
void RequireSameDocuments(const Unit& unit) {
    rapidjson::Document library, text;
    CDEStructureDataHelper::ParseBinaryDataToJson(unit.payload.data(), unit.Length(), unit.schema,
                                                  unit.offsets, kEverything, library);
    TextRoute::ParseBinaryDataToJson(unit.payload.data(), unit.Length(), unit.schema, unit.offsets,
                                     kEverything, text);
    const testing::AssertionResult same = SameDocument(library, text);
    if (!same) throw std::runtime_error(same.message());
}

void Register(const std::string& name, Unit unit) {
    RequireSameDocuments(unit);
    const SharedUnit shared = std::make_shared<const Unit>(std::move(unit));
    const std::string prefix = "decode_" + name;
    benchmark::RegisterBenchmark((prefix + "/library").c_str(), Library, shared);
    benchmark::RegisterBenchmark((prefix + "/text").c_str(), Text, shared);
    benchmark::RegisterBenchmark((prefix + "/unpack").c_str(), Unpack, shared);
    benchmark::RegisterBenchmark((prefix + "/floor").c_str(), Floor, shared);
    benchmark::RegisterBenchmark((prefix + "/nlohmann").c_str(), Nlohmann, shared);
}

}  // namespace

void RegisterDecoding() {
    Register("leaves", ScalarLeaves(100));
    Register("interfaces", InterfaceTable(200));
    Register("routes", RouteTable(50000));
    Register("integers", Integers(1000000));
    Register("floats", Floats(300000));
    Register("three_decimals", ThreeDecimals(300000));
    Register("integers32", Integers32(1000000));
    Register("configuration", ConfigurationLeaf(200000));

    const SharedUnit shared = std::make_shared<const Unit>(InterfaceTable(200));
    for (const int threads : {1, 2})
        benchmark::RegisterBenchmark("decode_threads", Library, shared)
            ->Threads(threads)
            ->UseRealTime();
}
