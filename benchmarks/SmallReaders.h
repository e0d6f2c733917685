#pragma once
/// Peers as a user of small documents has them: from the text to its root's children in one call, and the document gone
/// afterwards. Each takes a copy of the text if it writes into it.
#include <pugixml.hpp>
#include <rapidxml/rapidxml.hpp>
#include <string>
#include <string_view>

/// An attribute's name for readers of either unit.
struct AttributeName
{
    explicit AttributeName(const std::string& name) : narrow(name), wide(name.begin(), name.end()) {}
    template <typename Unit>
    const std::basic_string<Unit>& In() const
    {
        if constexpr (sizeof(Unit) == 1)
            return narrow;
        else
            return wide;
    }
    std::string narrow;
    std::u16string wide;
};

template <unsigned Options>
class CPugixmlChildren
{
public:
    static std::string GetName()
    {
        return Options == pugi::parse_default ? "pugixml in place" : "pugixml in place, parse_minimal";
    }

    explicit CPugixmlChildren(const std::string& text) : m_text(text) {}

    struct Child
    {
        std::string_view Get(const AttributeName& name) const { return node.attribute(name.narrow.c_str()).value(); }
        pugi::xml_node node;
    };

    /// Calls take for each child of the root.
    template <typename Take>
    void ForEachChild(Take take)
    {
        m_bytes = m_text;
        pugi::xml_document document;
        document.load_buffer_inplace(m_bytes.data(), m_bytes.size(), Options, pugi::encoding_utf8);
        for (const pugi::xml_node child : document.document_element().children())
            take(Child{child});
    }

private:
    std::string m_text;
    std::string m_bytes;
};

template <typename Unit, bool Fastest>
class CRapidXmlChildren
{
public:
    static std::string GetName()
    {
        return std::string("RapidXML over ") + (sizeof(Unit) == 1 ? "char" : "char16_t") +
               (Fastest ? ", parse_fastest" : "");
    }

    explicit CRapidXmlChildren(const std::string& text) : m_text(text.begin(), text.end()), m_units(m_text) {}

    struct Child
    {
        std::basic_string_view<Unit> Get(const AttributeName& name) const
        {
            const std::basic_string<Unit>& units = name.In<Unit>();
            const auto* const pAttribute = pNode->first_attribute(units.data(), units.size());
            return {pAttribute->value(), pAttribute->value_size()};
        }
        const rapidxml::xml_node<Unit>* pNode;
    };

    /// Calls take for each child of the root.
    template <typename Take>
    void ForEachChild(Take take)
    {
        if (!Fastest) // parse_fastest leaves the text as it is
            m_units = m_text;
        rapidxml::xml_document<Unit> document;
        document.template parse<Fastest ? rapidxml::parse_fastest : rapidxml::parse_default>(m_units.data());
        const auto* pChild = document.first_node()->first_node();
        for (; pChild != nullptr; pChild = pChild->next_sibling())
            take(Child{pChild});
    }

private:
    std::basic_string<Unit> m_text;
    std::basic_string<Unit> m_units;
};
