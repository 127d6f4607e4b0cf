// The header of a packed buffer with a schema of 40 items, and a whole frame with all of its
// values.

#include <benchmark/benchmark.h>

#include <msgpack.hpp>
#include <sstream>
#include <stdexcept>

#include "bench/BenchData.h"
#include "bench/Cases.h"
#include "structure/CDEStructureDataHelper.h"
#include "tests/support/SameDocument.h"
#include "tests/support/TextRoute.h"

namespace {

/// Unpacks the three objects, prints the schema and parses the text.
bool PlainHeader(const std::string& blob, std::string& name, vxJson::Value& schema, int& offset) {
    std::size_t end = 0;
    if (msgpack::unpack(blob.data(), blob.size(), end).get().as<int>() != 1) return false;
    name = msgpack::unpack(blob.data(), blob.size(), end).get().as<std::string>();
    const msgpack::object_handle object = msgpack::unpack(blob.data(), blob.size(), end);
    std::stringstream text;
    text << object.get();
    vxJson::Reader().parse(text, schema, true);
    offset = static_cast<int>(end);
    return true;
}

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

struct Frame {
    std::string bytes;
    vxJson::Value offsets;
};

Frame DeviceFrame() {
    const Unit unit = DeviceOverview();
    return {unit.Frame(), unit.offsets};
}

template <typename Read, typename Decode>
void ReadFrame(const Frame& frame, const Read& read, const Decode& decode,
               rapidjson::Document& document) {
    static const vxJson::Value kEverything;
    std::string name;
    vxJson::Value schema;
    int offset = 0;
    read(frame.bytes, name, schema, offset);
    decode(frame.bytes.data() + offset, static_cast<int>(frame.bytes.size()) - offset, schema,
           frame.offsets, kEverything, document);
}

void ReadFrameByLibrary(const Frame& frame, rapidjson::Document& document) {
    ReadFrame(frame, CDEStructureDataHelper::GetBinaryDataInfo,
              CDEStructureDataHelper::ParseBinaryDataToJson, document);
}

void ReadFramePlainly(const Frame& frame, rapidjson::Document& document) {
    ReadFrame(frame, PlainHeader, TextRoute::ParseBinaryDataToJson, document);
}

template <typename Read>
void WholeFrame(benchmark::State& state, const Read& read) {
    const Frame frame = DeviceFrame();
    for (auto _ : state) {
        rapidjson::Document document;
        read(frame, document);
        benchmark::DoNotOptimize(document);
    }
}

void RequireSameFrames() {
    const Frame frame = DeviceFrame();
    rapidjson::Document library, plain;
    ReadFrameByLibrary(frame, library);
    ReadFramePlainly(frame, plain);
    const testing::AssertionResult same = SameDocument(library, plain);
    if (!same || library.Size() != 13) throw std::runtime_error(same.message());
}

}  // namespace

void RegisterHeaders() {
    RequireSameFrames();
    benchmark::RegisterBenchmark("header/library", [](auto& state) {
        ReadHeader(state, CDEStructureDataHelper::GetBinaryDataInfo);
    });
    benchmark::RegisterBenchmark("header/plain",
                                 [](auto& state) { ReadHeader(state, PlainHeader); });
    benchmark::RegisterBenchmark("frame/library",
                                 [](auto& state) { WholeFrame(state, ReadFrameByLibrary); });
    benchmark::RegisterBenchmark("frame/plain",
                                 [](auto& state) { WholeFrame(state, ReadFramePlainly); });
}
