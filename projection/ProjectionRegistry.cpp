#include "projection/ProjectionRegistry.h"

#include "platform/mfc/decimal.h"
#include "projection/Base64.h"
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
    CXmlDocument document;
    document.SetText(pXml); // a fault in the text is no reason to leave out what can be read
    if (!document.FindElement(TEXT("projectionRegistry")))
        return 0;
    document.EnterElement();
    while (document.FindElement(TEXT("projectionDefinition")))
    {
        const auto pDefinition = boost::make_shared<CProjectionDefinition>();
        pDefinition->m_name = DecodeTextValue(document.GetAttribute(TEXT("name")));
        pDefinition->m_showInLS = DecimalToInt(document.GetAttribute(TEXT("showInLS")));
        pDefinition->m_showInCS = DecimalToInt(document.GetAttribute(TEXT("showInCS")));
        pDefinition->m_showInEditor = DecimalToInt(document.GetAttribute(TEXT("showInEditor")));
        pDefinition->m_layerName = DecodeTextValue(document.GetAttribute(TEXT("layerName")));
        pDefinition->m_entityId = DecodeTextValue(document.GetAttribute(TEXT("entityId")));
        pDefinition->m_isActive = DecimalToInt(document.GetAttribute(TEXT("isActive")));
        m_definitions.push_back(pDefinition);
    }
    return 1;
}
