#pragma once
/// Measures contestants of one job side by side. All run in one process and in turn, for several rounds, each round in
/// another order, so that what disturbs the machine for a while disturbs them alike. What counts is the ratio within a
/// round, and of these the median.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

enum class Role
{
    Ours,
    OursToo, ///< another way into the module, for comparison
    Peer,
    NoDocument, ///< a library that leaves nothing to walk: shown, but no peer
    Limit,      ///< what the machine can do at best
};

/// One way to do a job.
class IContestant
{
public:
    virtual ~IContestant() = default;
    virtual std::string GetName() const = 0;
    virtual Role GetRole() const = 0;
    /// Before each run; not timed.
    virtual void Prepare() {}
    /// The job; timed.
    virtual void Run() = 0;
    /// Behind each run: drops what the run made and says whether it was right. Not timed.
    virtual bool Finish() = 0;
};

using Contestants = std::vector<std::unique_ptr<IContestant>>;

struct BenchOptions
{
    bool quick = false;
    std::string filter; ///< a part of "JOB DOCUMENT SIZE"; empty: everything
    int rounds = 7;
    double turnSeconds = 0.1; ///< how long a contestant runs in a round, at least
    std::vector<int64_t> sizes{1000000, 64000000};
    std::string jsonPath;
};

/// The result of one contestant.
struct Standing
{
    std::string name;
    Role role = Role::Peer;
    double seconds = 0;     ///< of one run: the fastest turn of all
    double ratio = 0;       ///< how many times as fast ours was in the same round, in the median; 1 for ours
    bool isCorrect = false; ///< every single run gave what it should
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

/// Runs the contestants, of which the first is ours. A contestant that gave a wrong result leaves the race.
std::vector<Standing> Compete(const Contestants& contestants, const BenchOptions& options, Timing timing = {});

/// What a parsed document takes.
struct Footprint
{
    std::string name;
    Role role;
    int64_t bytes;
    int64_t allowed; ///< of ours; 0: no limit
};

/// Prints the tables and collects them for the JSON file.
class CReport
{
public:
    /// A race over work characters; goal: the ratio to the best peer to be reached, limitGoal: that to the last
    /// contestant of Role::Limit; 0 for none.
    void AddRace(const std::string& title, int64_t work, const std::vector<Standing>& standings, double goal,
                 double limitGoal);
    void AddMemory(const std::string& title, int64_t elements, const std::vector<Footprint>& footprints);
    /// Of ours with one input and with ones of twice the size each, the smallest first; greatest: of the growth of the
    /// time from one to the next, in the median.
    void AddDoubling(const std::string& title, const std::vector<Standing>& standings, double greatest);

    /// Best peers, ratios and goals of all races, in one table.
    void PrintSummary() const;
    /// Throws std::runtime_error if the file cannot be written.
    void WriteJson(const std::string& path) const;
    bool HasFaults() const { return m_hasFaults; }

private:
    struct Summary
    {
        std::string title;
        std::string rival;
        double ratio;
        double goal;
    };

    std::vector<std::string> m_records; ///< JSON objects
    std::vector<Summary> m_summaries;
    bool m_hasFaults = false;
};
