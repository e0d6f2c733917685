#include "benchmarks/XmlPeers.h"

#include <optional>
#include <pugixml.hpp>

namespace
{
enum class Input
{
    InPlace,        ///< bytes that the parser may write into
    InPlaceMinimal, ///< and without references, line ends, comments and the like
    Utf16           ///< converted by the parser into bytes of its own
};

class CPugixmlReader : public IXmlReader
{
public:
    CPugixmlReader(const BenchDocument& document, Input input) : m_source(document), m_input(input) {}

    std::string GetName() const override
    {
        switch (m_input)
        {
        case Input::InPlace:
            return "pugixml in place";
        case Input::InPlaceMinimal:
            return "pugixml in place, parse_minimal";
        default:
            return "pugixml from UTF-16";
        }
    }
    Role GetRole() const override { return Role::Peer; }

    void Restore() override
    {
        if (m_input != Input::Utf16)
            m_bytes = m_source.narrowText;
    }
    bool Parse() override
    {
        m_document.emplace();
        if (m_input == Input::Utf16)
            return m_document->load_buffer(m_source.text.data(), m_source.text.size() * 2, pugi::parse_default,
                                           pugi::encoding_utf16_le);
        return m_document->load_buffer_inplace(m_bytes.data(), m_bytes.size(),
                                               m_input == Input::InPlace ? pugi::parse_default : pugi::parse_minimal,
                                               pugi::encoding_utf8);
    }
    /// Without recursion: documents are deep.
    int64_t CountElements() override
    {
        int64_t count = 0;
        pugi::xml_node node = m_document->document_element();
        while (node)
        {
            count += node.type() == pugi::node_element ? 1 : 0;
            if (node.first_child())
            {
                node = node.first_child();
                continue;
            }
            while (node && !node.next_sibling())
                node = node.parent();
            node = node ? node.next_sibling() : node;
        }
        return count;
    }
    ValueTotals ReadAttributes() override
    {
        ValueTotals totals;
        for (const pugi::xml_node child : m_document->document_element().children(m_source.childName.c_str()))
        {
            const std::string first = child.attribute(m_source.firstAttribute.c_str()).value();
            const std::string second = child.attribute(m_source.secondAttribute.c_str()).value();
            totals.Add(first.data(), first.size());
            totals.Add(second.data(), second.size());
        }
        return totals;
    }
    StoredRecords ReadRecords() override
    {
        CStoredTexts texts;
        StoredRecords records;
        for (const pugi::xml_node child : m_document->document_element().children(m_source.childName.c_str()))
            records.push_back({texts.Decode(child.attribute(m_source.firstAttribute.c_str()).value()),
                               texts.Decode(child.attribute(m_source.secondAttribute.c_str()).value())});
        return records;
    }
    void Discard() override { m_document.reset(); }

private:
    const BenchDocument& m_source;
    Input m_input;
    std::string m_bytes;
    std::optional<pugi::xml_document> m_document;
};
} // namespace

XmlReaders MakePugixmlReaders(const BenchDocument& document)
{
    XmlReaders readers;
    for (const Input input : {Input::InPlace, Input::InPlaceMinimal, Input::Utf16})
        readers.push_back(std::make_unique<CPugixmlReader>(document, input));
    return readers;
}
