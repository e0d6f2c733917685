#include "projection/ProjectionRegistry.h"

#include "projection/base64/Base64.h"
#include "projection/base64/StoredAttribute.h"
#include "xml/XmlAttributeReader.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <charconv>
#include <climits>
#include <iterator>
#include <limits>
#include <string_view>
#include <utility>

namespace
{
using Units = std::basic_string_view<WCHAR>;

// An element without texts and with numbers of one digit.
constexpr Units ShortestElement =
    TEXT("<projectionDefinition name=\"\" showInLS=\"0\" showInCS=\"0\" showInEditor=\"0\" layerName=\"\" ")
        TEXT("entityId=\"\" isActive=\"0\" />");
constexpr Units Start = TEXT("<projectionDefinition");
constexpr Units Name = TEXT("name");
constexpr Units ShowInLS = TEXT("showInLS");
constexpr Units ShowInCS = TEXT("showInCS");
constexpr Units ShowInEditor = TEXT("showInEditor");
constexpr Units LayerName = TEXT("layerName");
constexpr Units EntityId = TEXT("entityId");
constexpr Units IsActive = TEXT("isActive");
constexpr Units End = TEXT(" />");
constexpr Units RegistryStart = TEXT("<projectionRegistry>");
constexpr Units RegistryEnd = TEXT("</projectionRegistry>");

void Append(Units units, CString& target)
{
    target.Append(units.data(), static_cast<int>(units.size()));
}

void AppendAttributeStart(Units name, CString& target)
{
    Append(TEXT(" "), target);
    Append(name, target);
    Append(TEXT("=\""), target);
}

void AppendText(Units name, const CString& text, CString& target)
{
    AppendAttributeStart(name, target);
    AppendTextValue(text, target);
    Append(TEXT("\""), target);
}

void AppendNumber(Units name, int number, CString& target)
{
    char digits[std::numeric_limits<int>::digits10 + 2];
    const char* const pEnd = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    WCHAR units[std::size(digits)];
    const WCHAR* const pUnitsEnd = std::copy(static_cast<const char*>(digits), pEnd, units);
    AppendAttributeStart(name, target);
    Append({units, pUnitsEnd}, target);
    Append(TEXT("\""), target);
}

void AppendElement(const CProjectionDefinition& definition, CString& target)
{
    Append(Start, target);
    AppendText(Name, definition.m_name, target);
    AppendNumber(ShowInLS, definition.m_showInLS, target);
    AppendNumber(ShowInCS, definition.m_showInCS, target);
    AppendNumber(ShowInEditor, definition.m_showInEditor, target);
    AppendText(LayerName, definition.m_layerName, target);
    AppendText(EntityId, definition.m_entityId, target);
    AppendNumber(IsActive, definition.m_isActive, target);
    Append(End, target);
}

/// The length of the element with ASCII texts and numbers of one digit.
size_t UsualLength(const CProjectionDefinition& definition)
{
    return ShortestElement.size() + LengthOfAsciiValue(definition.m_name) + LengthOfAsciiValue(definition.m_layerName) +
           LengthOfAsciiValue(definition.m_entityId);
}
} // namespace

CString CProjectionDefinition::GetXML()
{
    CString element;
    element.GetBuffer(static_cast<int>(std::min<size_t>(UsualLength(*this), INT_MAX)));
    AppendElement(*this, element);
    return element;
}

CString CProjectionRegistry::GetConfigurationId()
{
    return TEXT("PRJ_REGISTRY");
}

CString CProjectionRegistry::GetXML()
{
    size_t length = RegistryStart.size() + RegistryEnd.size();
    for (const auto& pDefinition : m_definitions)
        length += UsualLength(*pDefinition);
    CString text;
    text.GetBuffer(static_cast<int>(std::min<size_t>(length, INT_MAX)));
    Append(RegistryStart, text);
    for (const auto& pDefinition : m_definitions)
        AppendElement(*pDefinition, text);
    Append(RegistryEnd, text);
    return text;
}

int CProjectionRegistry::ParseXML(const WCHAR* pXml)
{
    // Empty from here on, but released at the end: the text may stand in one of them.
    const auto earlierDefinitions = std::exchange(m_definitions, {});
    if (pXml == nullptr)
        pXml = TEXT("");
    CXmlDocument document({pXml, wcslen(pXml)}); // a fault in the text is no reason to leave out what can be read
    if (!document.FindElement(TEXT("projectionRegistry")))
        return 0;
    document.EnterElement();
    while (document.FindElement(TEXT("projectionDefinition")))
    {
        auto pDefinition = boost::make_shared<CProjectionDefinition>();
        CXmlAttributeReader attributes(document);
        pDefinition->m_name = ReadTextAttribute(attributes, Name);
        pDefinition->m_showInLS = ReadNumberAttribute(attributes, ShowInLS);
        pDefinition->m_showInCS = ReadNumberAttribute(attributes, ShowInCS);
        pDefinition->m_showInEditor = ReadNumberAttribute(attributes, ShowInEditor);
        pDefinition->m_layerName = ReadTextAttribute(attributes, LayerName);
        pDefinition->m_entityId = ReadTextAttribute(attributes, EntityId);
        pDefinition->m_isActive = ReadNumberAttribute(attributes, IsActive);
        m_definitions.push_back(std::move(pDefinition));
    }
    return 1;
}
