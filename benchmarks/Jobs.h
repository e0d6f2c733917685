#pragma once
/// The jobs of the benchmark, and the ways to run them.
#include "benchmarks/Documents.h"
#include "benchmarks/Harness.h"

#include <functional>
#include <string>
#include <vector>

/// One job with one kind of document.
struct Job
{
    std::string name;
    char document; ///< its kind
    /// Ours first. The document must outlive them.
    std::function<Contestants(const BenchDocument&)> make;
    // Wanted ratios, 0 for none: to the best peer and to the last contestant of Role::Limit. Large: from 10 million
    // characters on.
    double goal = 0;
    double largeGoal = 0;
    double limitGoal = 0;
    double largeLimitGoal = 0;

    std::string GetTitle(int64_t size) const;
};

/// Parsing a text, and parsing it and reading two attributes of every child of the root.
std::vector<Job> XmlJobs();
/// The contestants for parsing, ours first. The document must outlive them.
Contestants MakeParse(const BenchDocument& document);
/// Reading, writing, loading and saving a storage, and reading a registry.
std::vector<Job> StorageJobs();
/// Encoding and decoding values of 4 KB.
std::vector<Job> Base64Jobs();
/// Reading and writing a text file in UTF-8.
std::vector<Job> FileJobs();
std::vector<Job> AllJobs();

// Each of these adds the tables that the filter selects to the report.

/// Documents of a few hundred characters, warm and cold.
void RunSmallRaces(const BenchOptions& options, CReport& report);
/// String tables: loading them in each encoding, and looking texts up.
void RunStringRaces(const BenchOptions& options, CReport& report);
/// Every job at every size.
void RunRaces(const BenchOptions& options, CReport& report);
/// The memory of a parsed document.
void RunMemoryJob(const BenchOptions& options, CReport& report);
/// The growth of our time when the input doubles, for every job and for hostile texts.
void RunDoublingJob(const BenchOptions& options, CReport& report);

/// Whether the filter selects that title.
bool IsSelected(const BenchOptions& options, const std::string& title);
