#pragma once
/// A record's text form, for the record and for the storage that writes many into one text.
#include "platform/mfc/atlstr.h"

/// Appends <configuration id="..." cfg="..." />, with both fields in base64.
void AppendConfigurationElement(const CString& id, const CString& cfg, CString& target);

/// The units of such an element, if both fields are ASCII; others need more.
size_t LengthOfConfigurationElement(const CString& id, const CString& cfg);
