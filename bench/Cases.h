#pragma once

// Each function registers the benchmarks of one source file under names of the form case/contender,
// from which bench/report.py computes ratios.
void RegisterBson();
void RegisterDecoding();
void RegisterHeaders();
void RegisterJson();
void RegisterPacking();
void RegisterReader();
void RegisterRecords();
void RegisterRenaming();
void RegisterSelection();
