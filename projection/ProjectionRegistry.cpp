#include "projection/ProjectionRegistry.h"

#include "projection/base64/Base64.h"
#include "projection/base64/StoredAttribute.h"
#include "xml/XmlDocument.h"

#include <boost/make_shared.hpp>
#include <utility>

CString CProjectionDefinition::GetXML()
{
    CString element;
    element.Format(TEXT("<projectionDefinition name=\"%s\" showInLS=\"%d\" showInCS=\"%d\" showInEditor=\"%d\" ")
                       TEXT("layerName=\"%s\" entityId=\"%s\" isActive=\"%d\" />"),
                   EncodeTextValue(m_name).GetString(), m_showInLS, m_showInCS, m_showInEditor,
                   EncodeTextValue(m_layerName).GetString(), EncodeTextValue(m_entityId).GetString(), m_isActive);
    return element;
}

CString CProjectionRegistry::GetConfigurationId()
{
    return TEXT("PRJ_REGISTRY");
}

CString CProjectionRegistry::GetXML()
{
    CString text = TEXT("<projectionRegistry>");
    for (const auto& pDefinition : m_definitions)
        text += pDefinition->GetXML();
    text += TEXT("</projectionRegistry>");
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
        const auto pDefinition = boost::make_shared<CProjectionDefinition>();
        pDefinition->m_name = GetTextAttribute(document, TEXT("name"));
        pDefinition->m_showInLS = GetNumberAttribute(document, TEXT("showInLS"));
        pDefinition->m_showInCS = GetNumberAttribute(document, TEXT("showInCS"));
        pDefinition->m_showInEditor = GetNumberAttribute(document, TEXT("showInEditor"));
        pDefinition->m_layerName = GetTextAttribute(document, TEXT("layerName"));
        pDefinition->m_entityId = GetTextAttribute(document, TEXT("entityId"));
        pDefinition->m_isActive = GetNumberAttribute(document, TEXT("isActive"));
        m_definitions.push_back(pDefinition);
    }
    return 1;
}
