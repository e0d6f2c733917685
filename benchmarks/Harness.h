#pragma once
/// Measures the contestants of one job against each other. All run in one process, in turn, for several rounds, each
/// round in another order, so that a disturbance of the machine hits them alike. The result is the median over the
/// rounds of the ratio within a round.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

enum class Role
{
    Ours,
    OursToo, ///< another entry point of the module, for comparison
    Peer,
    NoDocument, ///< leaves no document to walk: shown, but not counted as a peer
    Limit,      ///< an upper bound that the machine sets
};

/// One way to do a job.
class IContestant
{
public:
    virtual ~IContestant() = default;
    virtual std::string GetName() const = 0;
    virtual Role GetRole() const = 0;
    /// Called before each run.
    virtual void Prepare() {}
    /// The job. Drops what an earlier run made.
    virtual void Run() = 0;
    /// Checks the last run's result and drops it. Not timed. False: the result was wrong.
    virtual bool Finish() = 0;
};

using Contestants = std::vector<std::unique_ptr<IContestant>>;

struct BenchOptions
{
    bool quick = false;
    std::string filter; ///< a part of a title; empty: everything
    int rounds = 7;
    double turnSeconds = 0.1; ///< the least time that a contestant runs in a round
    std::vector<int64_t> sizes{1000000, 64000000};
    std::string jsonPath;
};

/// The result of one contestant.
struct Standing
{
    std::string name;
    Role role = Role::Peer;
    double seconds = 0;     ///< of one run: the fastest turn of all
    double ratio = 0;       ///< its time divided by ours, the median over the rounds; 1 for ours
    bool isCorrect = false; ///< after every run
};

/// How the runs of a race are timed.
struct Timing
{
    /// 0: each run by itself, without Prepare and Finish. Otherwise that many runs with one reading of the clock, for
    /// jobs that are too short to be timed alone. Each of them includes Prepare, and dropping what the last one made.
    int batch = 0;
    /// The caches are emptied before each run, which includes Prepare; the median counts instead of the fastest.
    bool isCold = false;
};

/// Runs the contestants, the first of which is ours. A contestant that gave a wrong result leaves the race.
std::vector<Standing> Compete(const Contestants& contestants, const BenchOptions& options, Timing timing = {});

/// The memory of a parsed document.
struct Footprint
{
    std::string name;
    Role role;
    int64_t bytes;
    int64_t allowed; ///< 0: no limit
};

/// Prints the tables and collects them for the JSON file.
class CReport
{
public:
    /// work: characters of one run. goal: the wanted ratio to the best peer. limitGoal: the wanted ratio to the last
    /// contestant of Role::Limit. 0 for either: none.
    void AddRace(const std::string& title, int64_t work, const std::vector<Standing>& standings, double goal,
                 double limitGoal);
    void AddMemory(const std::string& title, int64_t elements, const std::vector<Footprint>& footprints);
    /// The standings of ours with inputs of which each is twice as long as the one before. greatest: the limit for the
    /// median growth of the time.
    void AddDoubling(const std::string& title, const std::vector<Standing>& standings, double greatest);

    /// One table of all races, in Markdown: best peer, ratio, goal.
    void PrintSummary() const;
    /// Throws std::runtime_error if the file cannot be written.
    void WriteJson(const std::string& path) const;
    bool HasFaults() const { return m_hasFaults; }

private:
    struct Summary
    {
        std::string title;
        double seconds;
        std::string rival;
        double rivalSeconds;
        double ratio;
        double goal; ///< 0: none
    };

    std::vector<std::string> m_records; ///< JSON objects
    std::vector<Summary> m_summaries;
    bool m_hasFaults = false;
};
