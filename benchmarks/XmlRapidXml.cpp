#include "benchmarks/XmlPeers.h"

#include <optional>
#include <rapidxml/rapidxml.hpp>

namespace
{
template <typename Unit>
std::basic_string<Unit> Widened(const std::string& text)
{
    return {text.begin(), text.end()};
}

/// Fastest: parse_fastest, which leaves references and the ends of names and values alone; strings are made by size.
template <typename Unit, bool Fastest>
class CRapidXmlReader : public IXmlReader
{
public:
    explicit CRapidXmlReader(const BenchDocument& document)
        : m_original(Widened<Unit>(document.narrowText)),
          m_childName(Widened<Unit>(document.childName)),
          m_first(Widened<Unit>(document.firstAttribute)),
          m_second(Widened<Unit>(document.secondAttribute))
    {
    }

    std::string GetName() const override
    {
        return std::string("RapidXML over ") + (sizeof(Unit) == 1 ? "char" : "char16_t") +
               (Fastest ? ", parse_fastest" : "");
    }
    Role GetRole() const override { return Role::Peer; }

    void Restore() override
    {
        if (m_text.empty() || !Fastest) // parse_fastest leaves the text as it is
            m_text = m_original;
    }
    bool Parse() override
    {
        m_document.emplace();
        m_document->template parse<Fastest ? rapidxml::parse_fastest : rapidxml::parse_default>(m_text.data());
        return true;
    }
    int64_t CountElements() override
    {
        int64_t count = 0;
        const auto* pNode = m_document->first_node();
        while (pNode != nullptr)
        {
            count += pNode->type() == rapidxml::node_element ? 1 : 0;
            if (pNode->first_node() != nullptr)
            {
                pNode = pNode->first_node();
                continue;
            }
            while (pNode != nullptr && (pNode->parent() == nullptr || pNode->next_sibling() == nullptr))
                pNode = pNode->parent();
            pNode = pNode == nullptr ? nullptr : pNode->next_sibling();
        }
        return count;
    }
    ValueTotals ReadAttributes() override
    {
        ValueTotals totals;
        ForEachChild(
            [&](StringView firstValue, StringView secondValue)
            {
                const String first(firstValue);
                const String second(secondValue);
                totals.Add(first.data(), first.size());
                totals.Add(second.data(), second.size());
            });
        return totals;
    }
    StoredRecords ReadRecords() override
    {
        CStoredTexts texts;
        StoredRecords records;
        ForEachChild(
            [&](StringView first, StringView second) {
                records.push_back({texts.Decode(first), texts.Decode(second)});
            });
        return records;
    }
    void Discard() override { m_document.reset(); }

private:
    using String = std::basic_string<Unit>;
    using StringView = std::basic_string_view<Unit>;

    /// take: gets the two attributes.
    template <typename Take>
    void ForEachChild(Take take)
    {
        const auto* pRoot = m_document->first_node();
        for (const auto* pChild = pRoot->first_node(m_childName.data(), m_childName.size()); pChild != nullptr;
             pChild = pChild->next_sibling(m_childName.data(), m_childName.size()))
        {
            const auto* pFirst = pChild->first_attribute(m_first.data(), m_first.size());
            const auto* pSecond = pChild->first_attribute(m_second.data(), m_second.size());
            take(StringView(pFirst->value(), pFirst->value_size()),
                 StringView(pSecond->value(), pSecond->value_size()));
        }
    }

    std::basic_string<Unit> m_original;
    std::basic_string<Unit> m_childName;
    std::basic_string<Unit> m_first;
    std::basic_string<Unit> m_second;
    std::basic_string<Unit> m_text; ///< with what the parser wrote into it
    std::optional<rapidxml::xml_document<Unit>> m_document;
};
} // namespace

XmlReaders MakeRapidXmlReaders(const BenchDocument& document)
{
    XmlReaders readers;
    readers.push_back(std::make_unique<CRapidXmlReader<char, false>>(document));
    readers.push_back(std::make_unique<CRapidXmlReader<char, true>>(document));
    readers.push_back(std::make_unique<CRapidXmlReader<char16_t, false>>(document));
    readers.push_back(std::make_unique<CRapidXmlReader<char16_t, true>>(document));
    return readers;
}
