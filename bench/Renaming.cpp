// Renaming and rendering a document of 100 items with 1,000 columns in all, by a mapping of 10,000
// entries, a tenth of which belong to the parser of the document.

#include <benchmark/benchmark.h>

#include <chrono>
#include <map>
#include <string>
#include <vector>

#include "bench/Cases.h"
#include "bench/PlainRenaming.h"
#include "structure/CDEStructureDataHelper.h"

namespace {

constexpr int kLeaves = 50, kTables = 50, kColumns = 20, kRows = 3, kParsers = 10;

std::string Leaf(int leaf) {
    return "variable" + std::to_string(leaf);
}
std::string Table(int table) {
    return "table" + std::to_string(table);
}
std::string Column(int column) {
    return "column" + std::to_string(column);
}
std::string Parser(int parser) {
    return "parsers/routing/show-ip-route-" + std::to_string(parser);
}

rapidjson::Value Text(const std::string& text, rapidjson::Document& document) {
    return rapidjson::Value(text.c_str(), document.GetAllocator());
}

rapidjson::Document SourceDocument() {
    rapidjson::Document document(rapidjson::kArrayType);
    auto& allocator = document.GetAllocator();
    for (int leaf = 0; leaf < kLeaves; ++leaf) {
        rapidjson::Value item(rapidjson::kObjectType);
        item.AddMember("type", 1, allocator);
        item.AddMember("name", Text(Leaf(leaf), document), allocator);
        item.AddMember("value", leaf, allocator);
        document.PushBack(item, allocator);
    }
    for (int table = 0; table < kTables; ++table) {
        rapidjson::Value columns(rapidjson::kArrayType);
        for (int column = 0; column < kColumns; ++column) {
            rapidjson::Value values(rapidjson::kArrayType);
            for (int row = 0; row < kRows; ++row) values.PushBack(row * column, allocator);
            rapidjson::Value child(rapidjson::kObjectType);
            child.AddMember("type", 1, allocator);
            child.AddMember("name", Text(Column(column), document), allocator);
            child.AddMember("value", values, allocator);
            columns.PushBack(child, allocator);
        }
        rapidjson::Value item(rapidjson::kObjectType);
        item.AddMember("type", 11, allocator);
        item.AddMember("name", Text(Table(table), document), allocator);
        item.AddMember("column", columns, allocator);
        document.PushBack(item, allocator);
    }
    return document;
}

std::map<DDKey, DDKey> Mapping() {
    constexpr int kEntries = 10000;
    std::map<DDKey, DDKey> mapping;
    for (int entry = 0; entry < kEntries; ++entry) {
        const int variable = entry / kParsers;
        const std::string wanted = "Wanted" + std::to_string(entry);
        const DDKey key("", wanted + ".Name" + std::to_string(variable));
        mapping[key] = DDKey(Parser(entry % kParsers),
                             Table(variable / kColumns) + "." + Column(variable % kColumns));
    }
    return mapping;
}

/// Renaming changes the document, so each round gets a copy, which is made outside the measured
/// time.
template <typename Rename>
void RenameDocument(benchmark::State& state, const Rename& rename) {
    const rapidjson::Document source = SourceDocument();
    const std::map<DDKey, DDKey> mapping = Mapping();
    const std::string parser = Parser(3);
    for (auto _ : state) {
        rapidjson::Document document;
        document.CopyFrom(source, document.GetAllocator());
        std::vector<std::string> items;
        const auto begin = std::chrono::steady_clock::now();
        rename(mapping, parser, document, items);
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
        state.SetIterationTime(time.count());
        benchmark::DoNotOptimize(items);
    }
}

void Library(benchmark::State& state) {
    RenameDocument(state, CDEStructureDataHelper::PostDataProcessing);
}

void Plain(benchmark::State& state) {
    RenameDocument(state, PlainRenaming::Run);
}

}  // namespace

void RegisterRenaming() {
    benchmark::RegisterBenchmark("rename/library", Library)->UseManualTime();
    benchmark::RegisterBenchmark("rename/plain", Plain)->UseManualTime();
}
