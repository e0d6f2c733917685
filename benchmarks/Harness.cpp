#include "benchmarks/Harness.h"

#include "benchmarks/Caches.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace
{
constexpr double NoTime = std::numeric_limits<double>::infinity();

double Median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    const size_t middle = values.size() / 2;
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(middle), values.end());
    return values[middle];
}

/// Seconds of one run, or NoTime after a wrong result.
double RunOnce(IContestant& contestant, Timing timing)
{
    using Clock = std::chrono::steady_clock;
    const bool isWhole = timing.isCold || timing.batch > 0;
    if (timing.isCold)
        EmptyCaches();
    if (!isWhole)
        contestant.Prepare();
    const int runs = std::max(timing.batch, 1);
    const auto start = Clock::now();
    for (int i = 0; i < runs; ++i)
    {
        if (isWhole)
            contestant.Prepare();
        contestant.Run();
    }
    const std::chrono::duration<double> taken = Clock::now() - start;
    return contestant.Finish() ? taken.count() / runs : NoTime;
}

/// A contestant's turn in a round: the fastest of as many runs as the turn has time for, or the median of some cold
/// ones. The first run does not count: it pays for the heap as the contestant before left it, such as with a million
/// free blocks to be sorted.
double RunTurn(IContestant& contestant, double turnSeconds, Timing timing)
{
    constexpr size_t coldRuns = 15;
    if (RunOnce(contestant, timing) == NoTime)
        return NoTime;
    std::vector<double> times;
    double total = 0;
    while (timing.isCold ? times.size() < coldRuns : total < turnSeconds)
    {
        const double taken = RunOnce(contestant, timing);
        if (taken == NoTime)
            return NoTime;
        times.push_back(taken);
        total += taken * std::max(timing.batch, 1);
    }
    return timing.isCold ? Median(times) : *std::min_element(times.begin(), times.end());
}

const char* NameOf(Role role)
{
    switch (role)
    {
    case Role::Ours:
        return "ours";
    case Role::OursToo:
        return "ours too";
    case Role::Peer:
        return "peer";
    case Role::NoDocument:
        return "no document";
    default:
        return "limit";
    }
}

std::string Quoted(const std::string& text)
{
    std::string quoted = "\"";
    for (const char character : text)
    {
        if (character == '"' || character == '\\')
            quoted += '\\';
        quoted += character;
    }
    return quoted + '"';
}

/// Three digits or so, with the unit that suits them.
std::string TimeText(double seconds)
{
    const struct
    {
        double unit;
        const char* pName;
    } units[] = {{1, "s"}, {1e-3, "ms"}, {1e-6, "us"}, {1e-9, "ns"}};
    const auto* pUnit = std::find_if(std::begin(units), std::end(units) - 1,
                                     [&](const auto& candidate) { return seconds >= candidate.unit; });
    const double count = seconds / pUnit->unit;
    char text[32];
    std::snprintf(text, sizeof text, "%.*f %s", count < 10 ? 2 : count < 100 ? 1 : 0, count, pUnit->pName);
    return text;
}

std::string RatioText(double ratio)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2fx", ratio);
    return text;
}

double Rate(int64_t work, double seconds)
{
    return static_cast<double>(work) / seconds / 1e6;
}
} // namespace

std::vector<Standing> Compete(const Contestants& contestants, const BenchOptions& options, Timing timing)
{
    const size_t count = contestants.size();
    std::vector<Standing> standings(count);
    std::vector<std::vector<double>> ratios(count);
    for (size_t i = 0; i < count; ++i)
        standings[i] = {contestants[i]->GetName(), contestants[i]->GetRole(), NoTime, 0, true};

    for (int round = 0; round < options.rounds; ++round)
    {
        std::vector<double> times(count, NoTime);
        for (size_t turn = 0; turn < count; ++turn)
        {
            const size_t i = (turn + static_cast<size_t>(round)) % count;
            if (!standings[i].isCorrect)
                continue;
            times[i] = RunTurn(*contestants[i], options.turnSeconds, timing);
            standings[i].isCorrect = times[i] != NoTime;
            standings[i].seconds = std::min(standings[i].seconds, times[i]);
        }
        for (size_t i = 0; i < count; ++i)
            if (times[i] != NoTime && times[0] != NoTime)
                ratios[i].push_back(times[i] / times[0]);
    }
    for (size_t i = 0; i < count; ++i)
        standings[i].ratio = Median(ratios[i]);
    return standings;
}

void CReport::AddRace(const std::string& title, int64_t work, const std::vector<Standing>& standings, double goal,
                      double limitGoal)
{
    std::printf("\n%s\n  %-46s %-12s %10s %10s %15s\n", title.c_str(), "contestant", "role", "time", "M char/s",
                "ours is faster");
    const Standing* pBest = nullptr;
    const Standing* pLimit = nullptr;
    for (const Standing& standing : standings)
    {
        if (!standing.isCorrect)
        {
            // A peer may have limits, such as a greatest depth. Ours may not.
            std::printf("  %-46s %-12s %10s\n", standing.name.c_str(), NameOf(standing.role), "no result");
            m_hasFaults |= standing.role == Role::Ours || standing.role == Role::OursToo;
            continue;
        }
        std::printf("  %-46s %-12s %10s %10.0f %14.2fx\n", standing.name.c_str(), NameOf(standing.role),
                    TimeText(standing.seconds).c_str(), Rate(work, standing.seconds), standing.ratio);
        if (standing.role == Role::Peer && (pBest == nullptr || standing.ratio < pBest->ratio))
            pBest = &standing;
        if (standing.role == Role::Limit)
            pLimit = &standing;
        std::ostringstream record;
        record << "{\"job\": " << Quoted(title) << ", \"characters\": " << work
               << ", \"contestant\": " << Quoted(standing.name) << ", \"role\": " << Quoted(NameOf(standing.role))
               << ", \"seconds\": " << standing.seconds
               << ", \"millionCharactersPerSecond\": " << Rate(work, standing.seconds)
               << ", \"oursIsFasterBy\": " << standing.ratio << "}";
        m_records.push_back(record.str());
    }
    if (pBest != nullptr)
        m_summaries.push_back({title, standings[0].seconds, pBest->name, pBest->seconds, pBest->ratio, goal});
    if (pLimit != nullptr && limitGoal > 0)
        m_summaries.push_back({title, standings[0].seconds, pLimit->name, pLimit->seconds, pLimit->ratio, limitGoal});
    std::fflush(stdout);
}

void CReport::AddMemory(const std::string& title, int64_t elements, const std::vector<Footprint>& footprints)
{
    std::printf("\n%s, %lld elements\n  %-34s %-12s %12s %14s\n", title.c_str(), static_cast<long long>(elements),
                "document", "role", "kB", "at most");
    for (const Footprint& footprint : footprints)
    {
        std::printf("  %-34s %-12s %12lld", footprint.name.c_str(), NameOf(footprint.role),
                    static_cast<long long>(footprint.bytes / 1000));
        if (footprint.allowed != 0)
            std::printf(" %14lld", static_cast<long long>(footprint.allowed / 1000));
        std::printf("\n");
        m_hasFaults |= footprint.allowed != 0 && footprint.bytes > footprint.allowed;
        std::ostringstream record;
        record << "{\"job\": " << Quoted(title) << ", \"contestant\": " << Quoted(footprint.name)
               << ", \"bytes\": " << footprint.bytes << ", \"allowed\": " << footprint.allowed << "}";
        m_records.push_back(record.str());
    }
    std::fflush(stdout);
}

void CReport::AddDoubling(const std::string& title, const std::vector<Standing>& standings, double greatest)
{
    std::vector<double> steps;
    std::ostringstream list;
    for (size_t i = 1; i < standings.size(); ++i)
    {
        m_hasFaults |= !standings[i].isCorrect || !standings[i - 1].isCorrect;
        steps.push_back(standings[i].seconds / standings[i - 1].seconds);
        list << (i == 1 ? "" : ", ") << std::round(steps.back() * 100) / 100;
    }
    const double growth = Median(steps);
    std::printf("  %-40s %8.2fx%s   %s\n", title.c_str(), growth, growth <= greatest ? " " : "!", list.str().c_str());
    std::ostringstream record;
    record << "{\"job\": " << Quoted(title) << ", \"growth\": " << growth << ", \"steps\": [" << list.str() << "]}";
    m_records.push_back(record.str());
    std::fflush(stdout);
}

void CReport::PrintSummary() const
{
    if (m_summaries.empty())
        return;
    std::printf("\nOurs against the best peer and the limit\n\n| %-42s | %9s | %-46s | %9s | %7s | %13s |\n", "job",
                "ours", "against", "its time", "ratio", "goal");
    std::printf("|---|---|---|---|---|---|\n");
    for (const Summary& summary : m_summaries)
    {
        std::string goal = summary.goal > 0 ? RatioText(summary.goal) : "";
        goal += summary.ratio < summary.goal ? ", missed" : "";
        std::printf("| %-42s | %9s | %-46s | %9s | %7s | %13s |\n", summary.title.c_str(),
                    TimeText(summary.seconds).c_str(), summary.rival.c_str(), TimeText(summary.rivalSeconds).c_str(),
                    RatioText(summary.ratio).c_str(), goal.c_str());
    }
}

void CReport::WriteJson(const std::string& path) const
{
    std::ofstream file(path);
    file << "[\n";
    for (size_t i = 0; i < m_records.size(); ++i)
        file << "  " << m_records[i] << (i + 1 < m_records.size() ? ",\n" : "\n");
    file << "]\n";
    if (!file.flush())
        throw std::runtime_error("cannot write " + path);
}
