#pragma once
/// The XML element of a record, shared by CConfiguration and CStorage.
#include "configuration/Configuration.h"

namespace VLT
{
/// Access to the fields without copying them. A member of the exported class would be exported too.
struct ConfigurationFields
{
    static CString& Id(CConfiguration& configuration) { return configuration.m_id; }
    static CString& Cfg(CConfiguration& configuration) { return configuration.m_cfg; }
};

/// Appends <configuration id="..." cfg="..." /> with both fields in base64.
void AppendConfigurationElement(CConfiguration& configuration, CString& target);

/// The length of the element in UTF-16 code units if both fields are ASCII; otherwise a lower bound.
size_t LengthOfConfigurationElement(CConfiguration& configuration);
} // namespace VLT
