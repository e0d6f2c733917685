// Searches for texts whose work grows faster than their length. Each text is prefix, A repeated, B repeated and suffix,
// all made of a few snippets; the search goes through the short ones in order, then takes longer ones at random.
// Work is the processor time of this thread, for each unit read or given out: what a text takes by itself, such as
// the same long value for many elements, is not counted against it.
#include "configuration/Storage.h"
#include "projection/ProjectionRegistry.h"
#include "xml/XmlDocument.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace
{
constexpr const char* s_usage =
    "usage: growth_search [--seconds N] [--seed N]\n"
    "Searches for texts for which parsing with attribute reads, CStorage::ParseXML or CProjectionRegistry::ParseXML\n"
    "takes time that grows faster than the text: a prefix, A repeated, B repeated and a suffix. Prints each such\n"
    "grammar, as short as it can be made.\n"
    "Options:\n"
    "  --seconds N   how long to search (60)\n"
    "  --seed N      for the random part (1)\n"
    "  --help        this text\n"
    "Exit code 0: nothing found. 1: something was found. 2: wrong usage.\n";

using Snippets = std::vector<WString>;

Snippets SplitAtBars(const WString& text)
{
    Snippets snippets(1);
    for (const WCHAR unit : text)
        if (unit == TEXT('|'))
            snippets.emplace_back();
        else
            snippets.back() += unit;
    return snippets;
}

const Snippets s_snippets = SplitAtBars(
    TEXT("<a|<a>|<a[|<a id=|</a|</a>|</a=>|<b>|</b>|<|/|>|/>|<1| |=|\"|'|[|]|a|id| id=|x=\"|&|&amp;|&#|;|")
        TEXT("<!--|-->|-|<![CDATA[|]]>|<?|?>|<!D|!|\\|\n|\u00e9|<configuration id=|<projectionDefinition name="));

/// Prefixes and suffixes.
const std::vector<std::pair<WString, WString>> s_frames = {
    {TEXT(""), TEXT("")},
    {TEXT("<a>"), TEXT("</a>")},
    {TEXT("<storage>"), TEXT("</storage>")},
    {TEXT("<projectionRegistry>"), TEXT("</projectionRegistry>")},
    {TEXT("<a x=\""), TEXT("\"/>")},
};

struct Grammar
{
    Snippets prefix;
    Snippets a;
    Snippets b;
    Snippets suffix;

    bool operator<(const Grammar& other) const
    {
        return std::tie(prefix, a, b, suffix) < std::tie(other.prefix, other.a, other.b, other.suffix);
    }
};

WString Joined(const Snippets& snippets)
{
    WString text;
    for (const WString& snippet : snippets)
        text += snippet;
    return text;
}

/// The text of about that many units.
WString MakeText(const Grammar& grammar, size_t units)
{
    const WString a = Joined(grammar.a);
    const WString b = Joined(grammar.b);
    const size_t count = units / std::max<size_t>(a.size() + b.size(), 1) + 1;
    WString text = Joined(grammar.prefix);
    for (const WString& part : {a, b})
        for (size_t i = 0; i < count; ++i)
            text += part;
    return text + Joined(grammar.suffix);
}

// The operations. Each gives the number of units that it gave out.

/// The attribute "id" of every element.
size_t ReadAttributes(const WString& text)
{
    CXmlDocument document;
    document.ParseInPlace(text);
    if (!document.FindElement(nullptr))
        return 0;
    size_t units = 0;
    for (int i = 1; i < document.m_usedPositions; ++i)
        units += static_cast<size_t>(document.GetAttributeAt(i, TEXT("id")).GetLength());
    return units;
}

size_t ReadStorage(const WString& text)
{
    VLT::CStorage storage;
    storage.ParseXML(text.c_str());
    size_t units = 0;
    for (const auto& pRecord : *storage.GetConfigurationVector())
        units += static_cast<size_t>(pRecord->GetId().GetLength() + pRecord->GetCfg().GetLength());
    return units;
}

size_t ReadRegistry(const WString& text)
{
    CProjectionRegistry registry;
    registry.ParseXML(text.c_str());
    size_t units = 0;
    for (const auto& pDefinition : registry.m_definitions)
        for (const CString* pText : {&pDefinition->m_name, &pDefinition->m_layerName, &pDefinition->m_entityId})
            units += static_cast<size_t>(pText->GetLength());
    return units;
}

struct Operation
{
    const char* pName;
    const WCHAR* pRoot; ///< without which the operation only parses
    size_t (*run)(const WString& text);
};

constexpr Operation s_operations[] = {
    {"parse and attributes", TEXT(""), ReadAttributes},
    {"CStorage::ParseXML", TEXT("<storage"), ReadStorage},
    {"CProjectionRegistry::ParseXML", TEXT("<projectionRegistry"), ReadRegistry},
};

double ProcessorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Nanoseconds for each unit read or given out: the best of some runs.
double WorkPerUnit(const Operation& operation, const Grammar& grammar, size_t units, int runs)
{
    constexpr double longRun = 0.1; // seconds: needs no second look
    const WString text = MakeText(grammar, units);
    double best = 0;
    for (int i = 0; i < runs; ++i)
    {
        const double start = ProcessorSeconds();
        const size_t given = operation.run(text);
        const double seconds = ProcessorSeconds() - start;
        const double work = seconds * 1e9 / static_cast<double>(text.size() + given);
        best = i == 0 ? work : std::min(best, work);
        if (seconds > longRun)
            break;
    }
    return best;
}

/// A quick look, which passes over nearly all texts.
bool MayGrow(const Operation& operation, const Grammar& grammar)
{
    constexpr size_t units = 2000;
    return Joined(grammar.prefix).find(operation.pRoot) != WString::npos &&
           WorkPerUnit(operation, grammar, 8 * units, 2) > 1.6 * WorkPerUnit(operation, grammar, units, 2);
}

/// The work for each unit has to grow with each of several doublings: caches and other programs make it grow with some.
bool Grows(const Operation& operation, const Grammar& grammar)
{
    double previous = WorkPerUnit(operation, grammar, 32000, 5);
    for (const size_t units : {64000, 128000, 256000, 512000})
    {
        const double work = WorkPerUnit(operation, grammar, units, 5);
        if (work < 1.4 * previous)
            return false;
        previous = work;
    }
    return true;
}

/// Leaves out every snippet without which the work still grows.
Grammar Shortened(const Operation& operation, Grammar grammar)
{
    for (Snippets Grammar::*pPart : {&Grammar::prefix, &Grammar::a, &Grammar::b, &Grammar::suffix})
        for (size_t i = (grammar.*pPart).size(); i-- > 0;)
        {
            Grammar shorter = grammar;
            (shorter.*pPart).erase((shorter.*pPart).begin() + static_cast<std::ptrdiff_t>(i));
            if (Grows(operation, shorter))
                grammar = shorter;
        }
    return grammar;
}

std::string Readable(const Snippets& snippets)
{
    std::string readable = "\"";
    for (const WCHAR unit : Joined(snippets))
    {
        char escaped[16];
        const bool isPlain = unit >= ' ' && unit < 0x7F && unit != '"' && unit != '\\';
        std::snprintf(escaped, sizeof escaped, isPlain ? "%c" : "\\u%04x", unit);
        readable += escaped;
    }
    return readable + '"';
}

void Print(const Operation& operation, const Grammar& grammar)
{
    std::printf("%s: prefix %s, A %s, B %s, suffix %s\n", operation.pName, Readable(grammar.prefix).c_str(),
                Readable(grammar.a).c_str(), Readable(grammar.b).c_str(), Readable(grammar.suffix).c_str());
    for (const size_t units : {8000, 32000, 128000})
        std::printf("  %zu units: %.0f ns a unit\n", units, WorkPerUnit(operation, grammar, units, 3));
    std::fflush(stdout);
}

/// Hands out the grammars: first all with A of up to two snippets and no B in each frame, then random ones.
class CGrammars
{
public:
    explicit CGrammars(unsigned seed) : m_random(seed) {}

    Grammar Next()
    {
        const size_t count = s_snippets.size();
        const size_t frame = m_next / (count * (count + 1));
        if (frame >= s_frames.size())
            return Random();
        const size_t pair = m_next++ % (count * (count + 1));
        Grammar grammar{{s_frames[frame].first}, {s_snippets[pair % count]}, {}, {s_frames[frame].second}};
        if (pair >= count)
            grammar.a.push_back(s_snippets[pair / count - 1]);
        return grammar;
    }

private:
    size_t Below(size_t limit) { return std::uniform_int_distribution<size_t>(0, limit - 1)(m_random); }
    Snippets RandomSnippets(size_t least, size_t most)
    {
        Snippets snippets(least + Below(most - least + 1));
        for (WString& snippet : snippets)
            snippet = s_snippets[Below(s_snippets.size())];
        return snippets;
    }
    Grammar Random()
    {
        Grammar grammar{RandomSnippets(0, 2), RandomSnippets(1, 4), RandomSnippets(0, 3), RandomSnippets(0, 2)};
        const auto& [before, after] = s_frames[Below(s_frames.size())];
        grammar.prefix.insert(grammar.prefix.begin(), before);
        grammar.suffix.push_back(after);
        return grammar;
    }

    std::mt19937 m_random;
    size_t m_next = 0;
};

/// The number of findings.
size_t Search(double seconds, unsigned seed)
{
    using Clock = std::chrono::steady_clock;
    constexpr size_t enough = 20;
    const auto start = Clock::now();
    const auto passed = [&] { return std::chrono::duration<double>(Clock::now() - start).count(); };
    CGrammars grammars(seed);
    std::set<std::pair<const char*, Grammar>> found;
    size_t tried = 0;
    for (double nextReport = 10; passed() < seconds && found.size() < enough; ++tried)
    {
        if (passed() >= nextReport)
        {
            std::fprintf(stderr, "%.0f of %.0f s, %zu grammars, %zu found\n", passed(), seconds, tried, found.size());
            nextReport += 10;
        }
        const Grammar grammar = grammars.Next();
        for (const Operation& operation : s_operations)
        {
            if (!MayGrow(operation, grammar) || !Grows(operation, grammar))
                continue;
            const Grammar shortened = Shortened(operation, grammar);
            if (found.emplace(operation.pName, shortened).second)
                Print(operation, shortened);
            break;
        }
    }
    std::printf("%zu grammars, %zu found\n", tried, found.size());
    return found.size();
}

/// A number above 0, or 0.
unsigned NumberFrom(const char* pText)
{
    char* pEnd = nullptr;
    const unsigned long number = pText == nullptr ? 0 : std::strtoul(pText, &pEnd, 10);
    return pEnd == nullptr || *pEnd != 0 || number > 1'000'000'000 ? 0 : static_cast<unsigned>(number);
}
} // namespace

int main(int count, char** ppArguments)
{
    unsigned seconds = 60;
    unsigned seed = 1;
    for (int i = 1; i < count; i += 2)
    {
        const std::string option = ppArguments[i];
        if (option == "--help")
        {
            std::fputs(s_usage, stdout);
            return 0;
        }
        const unsigned number = NumberFrom(ppArguments[i + 1]); // the last one is null
        if (number == 0 || (option != "--seconds" && option != "--seed"))
        {
            std::fprintf(stderr, "growth_search: %s wants a number above 0, or is no option\n%s", option.c_str(),
                         s_usage);
            return 2;
        }
        (option == "--seconds" ? seconds : seed) = number;
    }
    return Search(seconds, seed) == 0 ? 0 : 1;
}
