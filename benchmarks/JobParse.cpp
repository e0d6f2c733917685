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

struct Goals
{
    char document;
    double small;        ///< against the best peer, below 10 million characters
    double large;        ///< and above
    double smallToLimit; ///< against the pass that stores positions
};
constexpr Goals s_goals[] = {
    {'A', 5, 3.5, 1.8}, {'B', 3.5, 3, 0.95}, {'C', 1.4, 1.3, 0.32}, {'D', 4.5, 2.5, 1.8}, {'E', 1.2, 1.1, 0.3}};
} // namespace

void RunParseJob(const BenchOptions& options, CReport& report)
{
    for (const int64_t size : options.sizes)
        for (const Goals& goals : s_goals)
        {
            const std::string title = std::string(1, goals.document) + " " + SizeName(size);
            if (!IsSelected(options, "parse " + title))
                continue;
            const BenchDocument document = MakeBenchDocument(goals.document, size);
            Contestants contestants;
            for (auto& pReader : MakeXmlReaders(document))
                contestants.push_back(std::make_unique<CParse>(std::move(pReader), document));
            for (auto& pLimit : MakeLimits(document))
                contestants.push_back(std::move(pLimit));
            const bool isSmall = size < 10000000;
            report.AddRace("parse", title, document.GetLength(), Compete(contestants, options),
                           isSmall ? goals.small : goals.large, isSmall ? goals.smallToLimit : 0);
        }
}
