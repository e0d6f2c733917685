#include "benchmarks/Jobs.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <malloc.h>
#include <stdexcept>
#include <string_view>

namespace
{
constexpr const char* s_usage =
    "usage: bench [OPTION...]\n"
    "Measures the module against other libraries in one run and prints a table for each job, document and size.\n"
    "Small documents, warm and cold, with 1 to 300 definitions or records of 200 bytes:\n"
    "  small document made and dropped, small parse, small attributes, small read registry, small write registry,\n"
    "  small read storage, small write storage; peers give the same objects and the same text\n"
    "String tables of 100,000 texts:\n"
    "  strings load           CUIStrings::LoadFile in each encoding, against ICU's reader of text files with a map\n"
    "  strings load and read all, strings look up        against gettext and an ICU resource bundle\n"
    "Jobs, with the documents that they are for:\n"
    "  parse A..E             from a text in memory to a document that can be walked\n"
    "  attributes A, B        the same, and a string of each of two attributes of all children\n"
    "  read storage A         CStorage::ParseXML; peers give the same strings with OpenSSL's decoding\n"
    "  write storage A        CStorage::GetXML, against memcpy of the result\n"
    "  load storage A, save storage A, read registry B   only ours\n"
    "  encode 4 KB values D, decode 4 KB values D        EncodeTextValue, DecodeTextValue; peers code bytes\n"
    "  read file D, write file D                         ReadTextFile, WriteTextFile; peers convert with ICU\n"
    "  memory A..E            memory of a parsed document\n"
    "  doubling JOB           growth of our time from 125 kB to 32 MB in eight steps, for each job\n"
    "  hostile                the same for hostile texts, in four steps\n"
    "Options:\n"
    "  --quick          1 MB documents, three short rounds\n"
    "  --filter TEXT    only what has TEXT in its title, such as \"parse A\", \"small\", \"64 MB\", \"hostile\"\n"
    "  --rounds N       rounds of each race (7)\n"
    "  --json FILE      writes the results there too\n"
    "  --help           this text\n"
    "Exit code 0: all results of ours were right. 1: one was wrong, or the run failed. 2: wrong usage.\n";

/// False: wrong usage.
bool ReadOptions(int count, char** ppArguments, BenchOptions& options)
{
    for (int i = 1; i < count; ++i)
    {
        const std::string_view option = ppArguments[i];
        const char* pValue = i + 1 < count ? ppArguments[i + 1] : nullptr;
        if (option == "--quick")
        {
            options.quick = true;
            options.rounds = 3;
            options.turnSeconds = 0.02;
            options.sizes = {1000000};
            continue;
        }
        if (pValue == nullptr)
            return false;
        ++i;
        if (option == "--filter")
            options.filter = pValue;
        else if (option == "--json")
            options.jsonPath = pValue;
        else if (option == "--rounds")
            options.rounds = std::atoi(pValue);
        else
            return false;
    }
    return options.rounds > 0;
}

int RunAll(const BenchOptions& options)
{
    CReport report;
    RunSmallRaces(options, report);
    RunStringRaces(options, report);
    RunRaces(options, report);
    RunMemoryJob(options, report);
    RunDoublingJob(options, report);
    report.PrintSummary();
    if (!options.jsonPath.empty())
        report.WriteJson(options.jsonPath);
    return report.HasFaults() ? 1 : 0;
}
} // namespace

bool IsSelected(const BenchOptions& options, const std::string& title)
{
    return title.find(options.filter) != std::string::npos;
}

int main(int argumentCount, char** ppArguments)
{
    if (std::find(ppArguments, ppArguments + argumentCount, std::string_view("--help")) != ppArguments + argumentCount)
    {
        std::fputs(s_usage, stdout);
        return 0;
    }
    BenchOptions options;
    if (!ReadOptions(argumentCount, ppArguments, options))
    {
        std::fputs(s_usage, stderr);
        return 2;
    }
    // Keep freed memory in the heap for the next run of any contestant. Fresh pages from the system cost more than
    // most of what is measured here, and how much they cost differs between machines.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, INT_MAX);
    mallopt(M_TOP_PAD, 64 << 20);
    try
    {
        std::printf("Compiler %s, one thread; %d rounds, ratios are medians over the rounds\n", __VERSION__,
                    options.rounds);
        return RunAll(options);
    }
    catch (const std::exception& fault)
    {
        std::fprintf(stderr, "bench: %s\n", fault.what());
        return 1;
    }
}
