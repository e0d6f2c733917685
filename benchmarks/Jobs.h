#pragma once
/// The jobs of the benchmark. Each prints its tables through the report, and leaves out what the filter leaves out.
#include "benchmarks/Harness.h"

/// From a text to a document that can be walked.
void RunParseJob(const BenchOptions& options, CReport& report);
/// The same, then over all children of the root, with a string of each of two attributes of each.
void RunAttributesJob(const BenchOptions& options, CReport& report);
/// How the time of ours grows when the input doubles, for every document and for hostile texts.
void RunDoublingJob(const BenchOptions& options, CReport& report);

/// Whether that part of the work was asked for.
bool IsSelected(const BenchOptions& options, const std::string& title);
