#include "benchmarks/Documents.h"
#include "benchmarks/Jobs.h"
#include "benchmarks/Limits.h"
#include "xml/XmlDocument.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <optional>

namespace
{
WString Repeated(const WString& text, int64_t count)
{
    WString repeated;
    repeated.reserve(text.size() * static_cast<size_t>(count));
    for (; count > 0; --count)
        repeated += text;
    return repeated;
}

/// A text whose parse should cost no more per unit when the text is twice as long.
struct GrowingText
{
    std::string name;
    int64_t count; ///< of the last text but one
    bool isWellFormed;
    std::function<WString(int64_t count)> make;
    bool readsChildren = false; ///< their attribute "a" too
};

std::vector<GrowingText> HostileTexts()
{
    return {
        {"1,000,000 levels", 1000000, true,
         [](int64_t n) { return Repeated(TEXT("<a>"), n) + Repeated(TEXT("</a>"), n); }},
        {"10,000,000 siblings", 10000000, true,
         [](int64_t n) { return TEXT("<r>") + Repeated(TEXT("<a/>"), n) + TEXT("</r>"); }},
        {"1,000,000 levels unended", 1000000, false, [](int64_t n) { return Repeated(TEXT("<a>"), n); }},
        {"strange end tags below 1,000,000 levels", 1000000, false,
         [](int64_t n) { return Repeated(TEXT("<a>"), n) + Repeated(TEXT("</b>"), n) + Repeated(TEXT("</a>"), n); }},
        {"end tags over two unended, 100,000", 100000, false,
         [](int64_t n) { return TEXT("<r>") + Repeated(TEXT("<a><b><c></a></b>"), n) + TEXT("</r>"); }},
        {"a quote that never closes, 1,000,000", 1000000, false,
         [](int64_t n) { return TEXT("<r><a b=\"") + Repeated(TEXT("<a b='c'/>"), n) + TEXT("</r>"); }},
        {"quotes that never close, 1,000,000", 1000000, false, [](int64_t n) { return Repeated(TEXT("<1\"<2'"), n); }},
        {"quotes in names, 1,000,000", 1000000, true,
         [](int64_t n) { return TEXT("<r>") + Repeated(TEXT("<a\"b/>"), n) + TEXT("</r>"); }},
        {"an attribute of 100 MB", 100000000, true,
         [](int64_t n) { return TEXT("<r a=\"") + WString(static_cast<size_t>(n), TEXT('x')) + TEXT("\"/>"); }},
        {"a start tag of 2^23", 1 << 23, true,
         [](int64_t n) { return TEXT("<r") + Repeated(TEXT(" b='c'"), n / 6) + TEXT("/>"); }},
        {"start tags beyond 2^22, and end tags beyond 2^10, 8", 8, true,
         [](int64_t n)
         {
             const WString name((1 << 22) + 1, TEXT('n'));
             return TEXT("<r>") + Repeated(TEXT("<") + name + TEXT("></") + name + TEXT(">"), n) + TEXT("</r>");
         }},
        {"end tags of 2^11, 10,000", 10000, true,
         [](int64_t n)
         { return TEXT("<r>") + Repeated(TEXT("<a></a") + WString(2048, TEXT(' ')) + TEXT(">"), n) + TEXT("</r>"); }},
        {"entities in a value, 10,000,000", 10000000, true,
         [](int64_t n) { return TEXT("<r a=\"") + Repeated(TEXT("&amp;"), n) + TEXT("\"/>"); }},
        {"broken references in a value, 1,000,000", 1000000, true,
         [](int64_t n) { return TEXT("<r a=\"") + Repeated(TEXT("&#1234567&lt"), n) + TEXT("\"/>"); }},
        {"broken tags, 1,000,000", 1000000, false,
         [](int64_t n) { return TEXT("<r>") + Repeated(TEXT("<1<!-"), n) + TEXT("</r>"); }},
        {"end tags that match up to a =, 1,000,000", 1000000, false,
         [](int64_t n) { return Repeated(TEXT("<a></a=>"), n); }},
        {"attributes without a value, 1,000,000", 1000000, false,
         [](int64_t n) { return TEXT("<r>") + Repeated(TEXT("<c b=>"), n) + TEXT("</r>"); }, true},
        {"quotes in which every tag ends, 1,000,000", 1000000, false,
         [](int64_t n) { return TEXT("<r>") + Repeated(TEXT("<c=\"<b>c=\""), n) + TEXT("</r>"); }, true},
    };
}

/// Parses the text and reads an attribute "a" of the root and perhaps of its children, which most do not have.
class CParseText : public IContestant
{
public:
    CParseText(const GrowingText& growing, int64_t count) : m_growing(growing)
    {
        const WString text = growing.make(count);
        m_text = CString(text.c_str(), static_cast<int>(text.size()));
    }

    std::string GetName() const override { return m_growing.name; }
    Role GetRole() const override { return Role::Ours; }
    void Run() override
    {
        m_document.emplace();
        m_document->m_text = m_text;
        m_isWellFormed = m_document->Parse();
        m_document->FindElement(nullptr);
        m_document->GetAttribute(TEXT("a"));
        m_document->EnterElement();
        while (m_growing.readsChildren && m_document->FindElement(nullptr))
            m_document->GetAttribute(TEXT("a"));
    }
    bool Finish() override
    {
        m_document.reset();
        return m_isWellFormed == m_growing.isWellFormed;
    }

private:
    const GrowingText& m_growing;
    CString m_text;
    std::optional<CXmlDocument> m_document;
    bool m_isWellFormed = false;
};
} // namespace

void RunDoublingJob(const BenchOptions& options, CReport& report)
{
    std::printf("\nGrowth of the time when the text doubles, median and steps; ! marks growth beyond the limit\n");
    constexpr int64_t smallest = 125000;
    const int sizeCount = options.quick ? 6 : 9; // enough that no step from one cache to the next is the median
    std::vector<Job> jobs = AllJobs();
    jobs.push_back({"loads of the text", 'D', MakeLoadLimit}); // shows the steps between caches
    for (const Job& job : jobs)
    {
        const std::string title = std::string("doubling ") + job.name + " " + job.document;
        if (!IsSelected(options, title))
            continue;
        std::vector<BenchDocument> documents;
        for (int i = 0; i < sizeCount; ++i)
            documents.push_back(MakeBenchDocument(job.document, smallest << i));
        Contestants sizes;
        for (const BenchDocument& document : documents)
            sizes.push_back(std::move(job.make(document).front()));
        report.AddDoubling(title, Compete(sizes, options), 2.2);
    }
    for (const GrowingText& growing : HostileTexts())
    {
        if (!IsSelected(options, "hostile " + growing.name))
            continue;
        const int64_t greatest = options.quick && growing.count > 256 ? growing.count / 8 : growing.count * 2;
        Contestants sizes;
        for (const int64_t divisor : {16, 8, 4, 2, 1})
            sizes.push_back(std::make_unique<CParseText>(growing, greatest / divisor));
        report.AddDoubling("hostile " + growing.name, Compete(sizes, options), 2.3);
    }
}
