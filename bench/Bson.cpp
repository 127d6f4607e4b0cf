// A record encoded as BSON: by Encode, by way of text, and field by field.

#include "bson/Bson.h"

#include <benchmark/benchmark.h>
#include <bson/bson.h>

#include <string>
#include <utility>

#include "bench/BenchData.h"
#include "bench/Cases.h"
#include "records/CDEDataShowCommand.h"

namespace {

void Fill(CDEDataShowCommand& record, int bytes) {
    record.SetCommand("show running-config");
    record.SetData(ConfigurationText(static_cast<std::size_t>(bytes)));
    record.SetTime(1600000000000);
}

void EncodeRecord(benchmark::State& state, int bytes) {
    CDEDataShowCommand record;
    Fill(record, bytes);
    for (auto _ : state) benchmark::DoNotOptimize(dataengine::bson::Encode(record.GetODJson()));
}

void ConvertText(benchmark::State& state, int bytes) {
    CDEDataShowCommand record;
    Fill(record, bytes);
    for (auto _ : state) {
        const std::string text = record.GetODJson().toString(false);
        bson_error_t error;
        bson_t* const document =
            bson_new_from_json(reinterpret_cast<const std::uint8_t*>(text.data()),
                               static_cast<ssize_t>(text.size()), &error);
        if (document == nullptr) state.SkipWithError(error.message);
        bson_destroy(document);
    }
}

void Append(bson_t& document, const char* key, const std::string& text) {
    bson_append_utf8(&document, key, -1, text.data(), static_cast<int>(text.size()));
}

/// The fields of CDEDataBase::GetODJson for a record without parameters.
void AppendFields(benchmark::State& state, int bytes) {
    CDEDataShowCommand record;
    Fill(record, bytes);
    for (auto _ : state) {
        bson_t document;
        bson_init(&document);
        const std::string& data = record.GetData();
        bson_append_binary(&document, "data", -1, BSON_SUBTYPE_BINARY,
                           reinterpret_cast<const std::uint8_t*>(data.data()),
                           static_cast<std::uint32_t>(data.size()));
        Append(document, "devId", record.GetDevId());
        bson_append_int32(&document, "flag", -1, record.GetFlag());
        Append(document, "md5", record.GetDataMD5());
        Append(document, "name", record.GetName());
        bson_append_date_time(&document, "time", -1, record.GetTime());
        Append(document, "type", "cmd");
        benchmark::DoNotOptimize(bson_get_data(&document));
        bson_destroy(&document);
    }
}

}  // namespace

void RegisterBson() {
    for (const auto& [group, bytes] : {std::pair("bson_1k", 1024), std::pair("bson_1m", 1 << 20)}) {
        const std::string name = group;
        benchmark::RegisterBenchmark((name + "/library").c_str(), EncodeRecord, bytes);
        benchmark::RegisterBenchmark((name + "/text").c_str(), ConvertText, bytes);
        benchmark::RegisterBenchmark((name + "/by_hand").c_str(), AppendFields, bytes);
    }
}
