#include "benchmarks/Documents.h"
#include "benchmarks/Jobs.h"
#include "xml/XmlDocument.h"

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

/// A text of which the parse should cost no more for a unit when it is twice as long.
struct GrowingText
{
    std::string name;
    int64_t count; ///< what the name says, for the shorter of two texts
    bool isWellFormed;
    std::function<WString(int64_t count)> make;
};

std::vector<GrowingText> OrdinaryTexts()
{
    std::vector<GrowingText> texts;
    for (const char* pKind = BenchDocumentKinds; *pKind != 0; ++pKind)
        for (const int64_t size : {1000000, 4000000})
            texts.push_back({std::string("document ") + *pKind + " " + SizeName(size), size, true,
                             [kind = *pKind](int64_t count) { return MakeBenchDocument(kind, count).text; }});
    return texts;
}

std::vector<GrowingText> HostileTexts()
{
    return {
        {"1,000,000 levels", 1000000, true,
         [](int64_t n) { return Repeated(TEXT("<a>"), n) + Repeated(TEXT("</a>"), n); }},
        {"10,000,000 siblings", 10000000, true,
         [](int64_t n) { return TEXT("<r>") + Repeated(TEXT("<a/>"), n) + TEXT("</r>"); }},
        {"1,000,000 levels unended", 1000000, false, [](int64_t n) { return Repeated(TEXT("<a>"), n); }},
        {"strange end tags below 100,000 levels", 100000, false,
         [](int64_t n) { return Repeated(TEXT("<a>"), n) + Repeated(TEXT("</b>"), n) + Repeated(TEXT("</a>"), n); }},
        {"end tags over two unended, 100,000", 100000, false,
         [](int64_t n) { return TEXT("<r>") + Repeated(TEXT("<a><b><c></a></b>"), n) + TEXT("</r>"); }},
        {"a quote that never closes, 1,000,000", 1000000, false,
         [](int64_t n) { return TEXT("<r><a b=\"") + Repeated(TEXT("<a b='c'/>"), n) + TEXT("</r>"); }},
        {"quotes in names, 1,000,000", 1000000, true,
         [](int64_t n) { return TEXT("<r>") + Repeated(TEXT("<a\"b/>"), n) + TEXT("</r>"); }},
        {"references in a value, 1,000,000", 1000000, true,
         [](int64_t n) { return TEXT("<r a=\"") + Repeated(TEXT("&#1234567&lt"), n) + TEXT("\"/>"); }},
        {"broken tags, 1,000,000", 1000000, false,
         [](int64_t n) { return TEXT("<r>") + Repeated(TEXT("<1<!-"), n) + TEXT("</r>"); }},
    };
}

/// Parses the text and reads an attribute "a" of the root, which most do not have.
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
    }
    bool Finish() override
    {
        m_document.reset();
        return m_isWellFormed == m_growing.isWellFormed;
    }
    int64_t GetLength() const { return m_text.GetLength(); }

private:
    const GrowingText& m_growing;
    CString m_text;
    std::optional<CXmlDocument> m_document;
    bool m_isWellFormed = false;
};
} // namespace

void RunDoublingJob(const BenchOptions& options, CReport& report)
{
    const auto measure = [&](const char* pJob, const std::vector<GrowingText>& texts)
    {
        for (const GrowingText& growing : texts)
        {
            if (!IsSelected(options, std::string(pJob) + " " + growing.name))
                continue;
            const int64_t count = options.quick ? growing.count / 10 : growing.count;
            CParseText once(growing, count);
            CParseText twice(growing, count * 2);
            const double onceSeconds = MeasureAlone(once, options);
            report.AddDoubling(pJob, growing.name, once.GetLength(), onceSeconds, MeasureAlone(twice, options));
        }
    };
    std::printf("\nTime when the text doubles\n  %-34s %-24s %12s %14s\n", "job", "text", "M char/s", "growth");
    measure("doubling", OrdinaryTexts());
    measure("hostile", HostileTexts());
}
