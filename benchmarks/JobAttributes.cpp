#include "benchmarks/Jobs.h"
#include "benchmarks/XmlPeers.h"

namespace
{
class CReadAttributes : public IContestant
{
public:
    CReadAttributes(std::unique_ptr<IXmlReader> pReader, const BenchDocument& document)
        : m_pReader(std::move(pReader)), m_expected(document.totals)
    {
    }

    std::string GetName() const override { return m_pReader->GetName(); }
    Role GetRole() const override { return m_pReader->GetRole(); }
    void Prepare() override { m_pReader->Restore(); }
    void Run() override { m_totals = m_pReader->Parse() ? m_pReader->ReadAttributes() : AttributeTotals{}; }
    bool Finish() override
    {
        m_pReader->Discard();
        return m_totals == m_expected;
    }

private:
    std::unique_ptr<IXmlReader> m_pReader;
    AttributeTotals m_expected;
    AttributeTotals m_totals;
};

struct Goal
{
    char document;
    double large; ///< against the best peer, from 10 million characters on
};
constexpr Goal s_goals[] = {{'A', 1.5}, {'B', 1.3}};
} // namespace

void RunAttributesJob(const BenchOptions& options, CReport& report)
{
    for (const int64_t size : options.sizes)
        for (const Goal& goal : s_goals)
        {
            const std::string title = std::string(1, goal.document) + " " + SizeName(size);
            if (!IsSelected(options, "attributes " + title))
                continue;
            const BenchDocument document = MakeBenchDocument(goal.document, size);
            Contestants contestants;
            for (auto& pReader : MakeXmlReaders(document))
                if (pReader->GetRole() != Role::NoDocument)
                    contestants.push_back(std::make_unique<CReadAttributes>(std::move(pReader), document));
            report.AddRace("attributes", title, document.GetLength(), Compete(contestants, options),
                           size < 10000000 ? 0 : goal.large, 0);
        }
}
