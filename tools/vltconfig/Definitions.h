#pragma once
#include "projection/ProjectionRegistry.h"
#include "tools/vltconfig/Output.h"

#include <optional>

/// A field of a projection definition: a text or a number.
struct DefinitionField
{
    const char* pName;
    CString CProjectionDefinition::*pText;
    int CProjectionDefinition::*pNumber;
};
constexpr DefinitionField s_definitionFields[] = {
    {"name", &CProjectionDefinition::m_name, nullptr},
    {"showInLS", nullptr, &CProjectionDefinition::m_showInLS},
    {"showInCS", nullptr, &CProjectionDefinition::m_showInCS},
    {"showInEditor", nullptr, &CProjectionDefinition::m_showInEditor},
    {"layerName", &CProjectionDefinition::m_layerName, nullptr},
    {"entityId", &CProjectionDefinition::m_entityId, nullptr},
    {"isActive", nullptr, &CProjectionDefinition::m_isActive},
};

bool HasSameField(const CProjectionDefinition& left, const CProjectionDefinition& right, const DefinitionField& field);
/// For people: a number, or a text in quotes.
std::string FieldText(const CProjectionDefinition& definition, const DefinitionField& field);

/// The definitions of a record, if it is PRJ_REGISTRY and its text says nothing else: so nothing is overlooked when the
/// definitions stand for the text.
std::optional<std::vector<CProjectionDefinition>> ReadDefinitions(TextView id, TextView cfg);
/// The text of the record PRJ_REGISTRY with these definitions.
CString MakeRegistryText(const std::vector<CProjectionDefinition>& definitions);
