#include "benchmarks/XmlPeers.h"

#include <cstring>
#include <libxml/parser.h>
#include <libxml/tree.h>

namespace
{
struct DocumentFree
{
    void operator()(xmlDoc* pDocument) const { xmlFreeDoc(pDocument); }
};

const xmlChar* Xml(const std::string& text)
{
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

class CLibxml2Reader : public IXmlReader
{
public:
    explicit CLibxml2Reader(const BenchDocument& document) : m_source(document) {}

    std::string GetName() const override { return "libxml2"; }
    Role GetRole() const override { return Role::Peer; }

    bool Parse() override
    {
        m_pDocument.reset(xmlReadMemory(m_source.narrowText.data(), static_cast<int>(m_source.narrowText.size()),
                                        nullptr, nullptr, XML_PARSE_HUGE | XML_PARSE_COMPACT | XML_PARSE_NONET));
        return m_pDocument != nullptr;
    }
    int64_t CountElements() override
    {
        int64_t count = 0;
        const xmlNode* const pDocument = reinterpret_cast<const xmlNode*>(m_pDocument.get());
        const xmlNode* pNode = xmlDocGetRootElement(m_pDocument.get());
        while (pNode != pDocument)
        {
            count += pNode->type == XML_ELEMENT_NODE ? 1 : 0;
            if (pNode->children != nullptr)
            {
                pNode = pNode->children;
                continue;
            }
            while (pNode != pDocument && pNode->next == nullptr)
                pNode = pNode->parent;
            pNode = pNode == pDocument ? pNode : pNode->next;
        }
        return count;
    }
    ValueTotals ReadAttributes() override
    {
        ValueTotals totals;
        xmlNode* pChild = xmlDocGetRootElement(m_pDocument.get())->children;
        for (; pChild != nullptr; pChild = pChild->next)
        {
            if (pChild->type != XML_ELEMENT_NODE || !xmlStrEqual(pChild->name, Xml(m_source.childName)))
                continue;
            AddValue(totals, pChild, m_source.firstAttribute);
            AddValue(totals, pChild, m_source.secondAttribute);
        }
        return totals;
    }
    void Discard() override { m_pDocument.reset(); }

private:
    static void AddValue(ValueTotals& totals, xmlNode* pNode, const std::string& name)
    {
        xmlChar* pValue = xmlGetNoNsProp(pNode, Xml(name)); // a string of its own
        totals.Add(pValue, std::strlen(reinterpret_cast<const char*>(pValue)));
        xmlFree(pValue);
    }

    const BenchDocument& m_source;
    std::unique_ptr<xmlDoc, DocumentFree> m_pDocument;
};
} // namespace

XmlReaders MakeLibxml2Readers(const BenchDocument& document)
{
    XmlReaders readers;
    readers.push_back(std::make_unique<CLibxml2Reader>(document));
    return readers;
}
