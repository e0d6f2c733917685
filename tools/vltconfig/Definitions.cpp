#include "tools/vltconfig/Definitions.h"

#include <boost/make_shared.hpp>

bool HasSameField(const CProjectionDefinition& left, const CProjectionDefinition& right, const DefinitionField& field)
{
    return field.pText != nullptr ? left.*field.pText == right.*field.pText
                                  : left.*field.pNumber == right.*field.pNumber;
}

std::string FieldText(const CProjectionDefinition& definition, const DefinitionField& field)
{
    if (field.pNumber != nullptr)
        return std::to_string(definition.*field.pNumber);
    std::string text(1, '"');
    text += Printable(ViewOf(definition.*field.pText), Backslash::Double);
    return text += '"';
}

std::optional<std::vector<CProjectionDefinition>> ReadDefinitions(TextView id, TextView cfg)
{
    CProjectionRegistry registry;
    if (id != ViewOf(CProjectionRegistry::GetConfigurationId()) || registry.ParseXML(WString(cfg).c_str()) == 0 ||
        ViewOf(registry.GetXML()) != cfg)
        return std::nullopt;
    std::vector<CProjectionDefinition> definitions;
    for (const auto& pDefinition : registry.m_definitions)
        definitions.push_back(*pDefinition);
    return definitions;
}

CString MakeRegistryText(const std::vector<CProjectionDefinition>& definitions)
{
    CProjectionRegistry registry;
    for (const CProjectionDefinition& definition : definitions)
        registry.m_definitions.push_back(boost::make_shared<CProjectionDefinition>(definition));
    return registry.GetXML();
}
