#pragma once

// Each function registers the benchmarks of one source under names of the form case/contender,
// which is how bench/report.py finds the two sides of a ratio.
void RegisterBson();
void RegisterDecoding();
void RegisterHeaders();
void RegisterJson();
void RegisterPacking();
void RegisterRecords();
void RegisterRenaming();
void RegisterSelection();
