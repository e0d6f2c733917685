#include "benchmarks/XmlPeers.h"

#include <expat.h>

namespace
{
/// Calls back for each tag and keeps nothing.
class CExpatReader : public IXmlReader
{
public:
    explicit CExpatReader(const BenchDocument& document) : m_source(document) {}

    std::string GetName() const override { return "Expat"; }
    Role GetRole() const override { return Role::NoDocument; }

    bool Parse() override
    {
        m_count = 0;
        const XML_Parser parser = XML_ParserCreate("UTF-8");
        XML_SetUserData(parser, &m_count);
        XML_SetElementHandler(
            parser, [](void* pCount, const XML_Char*, const XML_Char**) { ++*static_cast<int64_t*>(pCount); },
            [](void*, const XML_Char*) {});
        const bool isRead = XML_Parse(parser, m_source.narrowText.data(), static_cast<int>(m_source.narrowText.size()),
                                      XML_TRUE) == XML_STATUS_OK;
        XML_ParserFree(parser);
        return isRead;
    }
    int64_t CountElements() override { return m_count; }
    ValueTotals ReadAttributes() override { return {}; }
    void Discard() override {}

private:
    const BenchDocument& m_source;
    int64_t m_count = 0;
};
} // namespace

XmlReaders MakeExpatReaders(const BenchDocument& document)
{
    XmlReaders readers;
    readers.push_back(std::make_unique<CExpatReader>(document));
    return readers;
}
