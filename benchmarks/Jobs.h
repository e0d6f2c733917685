#pragma once
/// The jobs of the benchmark, in one table, and what is done with them.
#include "benchmarks/Documents.h"
#include "benchmarks/Harness.h"

#include <functional>
#include <string>
#include <vector>

/// One job with one kind of document.
struct Job
{
    std::string name;
    char document; ///< the kind
    /// Ours first. The document outlives them.
    std::function<Contestants(const BenchDocument&)> make;
    double goal = 0;      ///< against the best peer, below 10 million characters; 0: none
    double largeGoal = 0; ///< and above
    double limitGoal = 0; ///< against the last of Role::Limit, below 10 million characters
    double largeLimitGoal = 0;

    std::string GetTitle(int64_t size) const;
};

/// From a text to a document that can be walked; the same and a string of each of two attributes of all children.
std::vector<Job> XmlJobs();
/// The contestants of the parse, ours first. The document outlives them.
Contestants MakeParse(const BenchDocument& document);
/// Whole operations of storage and registry.
std::vector<Job> StorageJobs();
/// Values of 4 KB, to base64 and back.
std::vector<Job> Base64Jobs();
/// A text to a file in UTF-8 and back.
std::vector<Job> FileJobs();
/// All of these.
std::vector<Job> AllJobs();

// Each prints its tables through the report, and leaves out what the filter leaves out.

/// Documents of a few hundred characters, warm and cold.
void RunSmallRaces(const BenchOptions& options, CReport& report);
/// Every job at every size, all contestants side by side.
void RunRaces(const BenchOptions& options, CReport& report);
/// What a parsed document takes of memory.
void RunMemoryJob(const BenchOptions& options, CReport& report);
/// How the time of ours grows when the input doubles, for every job and for hostile texts.
void RunDoublingJob(const BenchOptions& options, CReport& report);

/// Whether that part of the work was asked for.
bool IsSelected(const BenchOptions& options, const std::string& title);
