#include "benchmarks/Jobs.h"
#include "benchmarks/Limits.h"
#include "benchmarks/XmlPeers.h"

namespace
{
class CParse : public IContestant
{
public:
    CParse(std::unique_ptr<IXmlReader> pReader, const BenchDocument& document)
        : m_pReader(std::move(pReader)), m_elements(document.elements)
    {
    }

    std::string GetName() const override { return m_pReader->GetName(); }
    Role GetRole() const override { return m_pReader->GetRole(); }
    void Prepare() override { m_pReader->Restore(); }
    void Run() override { m_isRead = m_pReader->Parse(); }
    bool Finish() override
    {
        const bool isRight = m_isRead && m_pReader->CountElements() == m_elements;
        m_pReader->Discard();
        return isRight;
    }

private:
    std::unique_ptr<IXmlReader> m_pReader;
    int64_t m_elements;
    bool m_isRead = false;
};

class CReadAttributes : public IContestant
{
public:
    CReadAttributes(std::unique_ptr<IXmlReader> pReader, const BenchDocument& document)
        : m_pReader(std::move(pReader)), m_expected(document.attributes)
    {
    }

    std::string GetName() const override { return m_pReader->GetName(); }
    Role GetRole() const override { return m_pReader->GetRole(); }
    void Prepare() override { m_pReader->Restore(); }
    void Run() override { m_totals = m_pReader->Parse() ? m_pReader->ReadAttributes() : ValueTotals{}; }
    bool Finish() override
    {
        m_pReader->Discard();
        return m_totals == m_expected;
    }

private:
    std::unique_ptr<IXmlReader> m_pReader;
    ValueTotals m_expected;
    ValueTotals m_totals;
};

Contestants MakeParseAndLimits(const BenchDocument& document)
{
    Contestants contestants = MakeParse(document);
    for (auto& pLimit : MakeLimits(document))
        contestants.push_back(std::move(pLimit));
    return contestants;
}

Contestants MakeReadAttributes(const BenchDocument& document)
{
    Contestants contestants;
    for (auto& pReader : MakeXmlReaders(document))
        if (pReader->GetRole() != Role::NoDocument)
            contestants.push_back(std::make_unique<CReadAttributes>(std::move(pReader), document));
    return contestants;
}
} // namespace

Contestants MakeParse(const BenchDocument& document)
{
    Contestants contestants;
    for (auto& pReader : MakeXmlReaders(document))
        contestants.push_back(std::make_unique<CParse>(std::move(pReader), document));
    return contestants;
}

std::vector<Job> XmlJobs()
{
    return {{"parse", 'A', MakeParseAndLimits, 5, 3.5, 1.8},    {"parse", 'B', MakeParseAndLimits, 3.5, 3, 0.95},
            {"parse", 'C', MakeParseAndLimits, 1.4, 1.3, 0.32}, {"parse", 'D', MakeParseAndLimits, 4.5, 2.5, 1.8},
            {"parse", 'E', MakeParseAndLimits, 1.2, 1.1, 0.3},  {"attributes", 'A', MakeReadAttributes, 0, 1.5},
            {"attributes", 'B', MakeReadAttributes, 0, 1.3}};
}
