#include "benchmarks/Jobs.h"

namespace
{
constexpr int64_t LargeSize = 10000000;
}

std::string Job::GetTitle(int64_t size) const
{
    return name + " " + document + " " + SizeName(size);
}

std::vector<Job> AllJobs()
{
    std::vector<Job> all;
    for (const auto jobs : {XmlJobs, StorageJobs, Base64Jobs, FileJobs})
        for (Job& job : jobs())
            all.push_back(std::move(job));
    return all;
}

void RunRaces(const BenchOptions& options, CReport& report)
{
    for (const int64_t size : options.sizes)
        for (const Job& job : AllJobs())
        {
            if (!IsSelected(options, job.GetTitle(size)))
                continue;
            const BenchDocument document = MakeBenchDocument(job.document, size);
            const bool isLarge = size >= LargeSize;
            report.AddRace(job.GetTitle(size), document.GetLength(), Compete(job.make(document), options),
                           isLarge ? job.largeGoal : job.goal, isLarge ? job.largeLimitGoal : job.limitGoal);
        }
}
