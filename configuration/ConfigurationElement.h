#pragma once
/// A record's text form, for the record and for the storage that writes many into one text.
#include "configuration/Configuration.h"

namespace VLT
{
/// The fields themselves. Not exported, as a member of the exported class would be.
struct ConfigurationFields
{
    static CString& Id(CConfiguration& configuration) { return configuration.m_id; }
    static CString& Cfg(CConfiguration& configuration) { return configuration.m_cfg; }
};

/// Appends <configuration id="..." cfg="..." />, with both fields in base64.
void AppendConfigurationElement(CConfiguration& configuration, CString& target);

/// The units of such an element, if both fields are ASCII; others need more.
size_t LengthOfConfigurationElement(CConfiguration& configuration);
} // namespace VLT
