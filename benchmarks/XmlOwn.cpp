#include "benchmarks/XmlPeers.h"
#include "xml/XmlDocument.h"

#include <optional>

namespace
{
/// CXmlDocument over a text where it stands, as the module uses it, or over a copy of its own.
class COwnReader : public IXmlReader
{
public:
    COwnReader(const BenchDocument& document, bool copiesText)
        : m_text(document.text.c_str(), static_cast<int>(document.text.size())),
          m_copiesText(copiesText),
          m_childName(document.childName.begin(), document.childName.end()),
          m_first(document.firstAttribute.begin(), document.firstAttribute.end()),
          m_second(document.secondAttribute.begin(), document.secondAttribute.end())
    {
    }

    std::string GetName() const override
    {
        return m_copiesText ? "CXmlDocument, SetText" : "CXmlDocument, text in place";
    }
    Role GetRole() const override { return m_copiesText ? Role::OursToo : Role::Ours; }

    bool Parse() override
    {
        m_document.emplace();
        if (m_copiesText)
            return m_document->SetText(m_text);
        return m_document->ParseInPlace({m_text.GetString(), static_cast<size_t>(m_text.GetLength())});
    }
    int64_t CountElements() override { return m_document->m_usedPositions - 1; }
    ValueTotals ReadAttributes() override
    {
        ValueTotals totals;
        m_document->FindElement(nullptr);
        m_document->EnterElement();
        while (m_document->FindElement(m_childName.c_str()))
        {
            const CString first = m_document->GetAttribute(m_first.c_str());
            const CString second = m_document->GetAttribute(m_second.c_str());
            totals.Add(first.GetString(), static_cast<size_t>(first.GetLength()));
            totals.Add(second.GetString(), static_cast<size_t>(second.GetLength()));
        }
        return totals;
    }
    void Discard() override { m_document.reset(); }

private:
    CString m_text;
    bool m_copiesText;
    WString m_childName;
    WString m_first;
    WString m_second;
    std::optional<CXmlDocument> m_document;
};
} // namespace

XmlReaders MakeOwnReaders(const BenchDocument& document)
{
    XmlReaders readers;
    readers.push_back(std::make_unique<COwnReader>(document, false));
    readers.push_back(std::make_unique<COwnReader>(document, true));
    return readers;
}

XmlReaders MakeXmlReaders(const BenchDocument& document)
{
    XmlReaders readers;
    for (const auto make : {MakeOwnReaders, MakePugixmlReaders, MakeRapidXmlReaders, MakeTinyXml2Readers,
                            MakeLibxml2Readers, MakeExpatReaders})
        for (auto& pReader : make(document))
            readers.push_back(std::move(pReader));
    return readers;
}
