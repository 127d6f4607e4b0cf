#include <benchmark/benchmark.h>

#include <string>

#include "bench/Cases.h"

namespace {

std::string Compiler() {
#ifdef __clang__
    return "clang++ " + std::to_string(__clang_major__);
#else
    return "g++ " + std::to_string(__GNUC__);
#endif
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::AddCustomContext("compiler", Compiler());
    RegisterBson();
    RegisterDecoding();
    RegisterHeaders();
    RegisterJson();
    RegisterPacking();
    RegisterReader();
    RegisterRecords();
    RegisterRenaming();
    RegisterSelection();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
