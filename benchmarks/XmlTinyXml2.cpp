#include "benchmarks/XmlPeers.h"

#include <optional>
#include <tinyxml2.h>

namespace
{
/// Refuses what is deeper than some hundred levels.
class CTinyXml2Reader : public IXmlReader
{
public:
    explicit CTinyXml2Reader(const BenchDocument& document) : m_source(document) {}

    std::string GetName() const override { return "tinyxml2"; }
    Role GetRole() const override { return Role::Peer; }

    bool Parse() override
    {
        m_document.emplace();
        return m_document->Parse(m_source.narrowText.data(), m_source.narrowText.size()) == tinyxml2::XML_SUCCESS;
    }
    int64_t CountElements() override
    {
        class CCounter : public tinyxml2::XMLVisitor
        {
        public:
            bool VisitEnter(const tinyxml2::XMLElement&, const tinyxml2::XMLAttribute*) override
            {
                ++count;
                return true;
            }
            int64_t count = 0;
        } counter;
        m_document->Accept(&counter);
        return counter.count;
    }
    ValueTotals ReadAttributes() override
    {
        ValueTotals totals;
        const char* pName = m_source.childName.c_str();
        const tinyxml2::XMLElement* pChild = m_document->RootElement()->FirstChildElement(pName);
        for (; pChild != nullptr; pChild = pChild->NextSiblingElement(pName))
        {
            const std::string first = pChild->Attribute(m_source.firstAttribute.c_str());
            const std::string second = pChild->Attribute(m_source.secondAttribute.c_str());
            totals.Add(first.data(), first.size());
            totals.Add(second.data(), second.size());
        }
        return totals;
    }
    void Discard() override { m_document.reset(); }

private:
    const BenchDocument& m_source;
    std::optional<tinyxml2::XMLDocument> m_document;
};
} // namespace

XmlReaders MakeTinyXml2Readers(const BenchDocument& document)
{
    XmlReaders readers;
    readers.push_back(std::make_unique<CTinyXml2Reader>(document));
    return readers;
}
