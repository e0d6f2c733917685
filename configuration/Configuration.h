#pragma once
#include "configuration/Export.h"
#include "platform/text.h"
#include <afxstr.h>

namespace VLT
{
/// A stored configuration: an identifier and a text. Any text is allowed for both; neither is checked or trimmed.
/// Text arguments are NUL-terminated UTF-16 and copied; null counts as the empty text.
class VLT_API CConfiguration
{
public:
    CConfiguration();                                       ///< Both texts are empty.
    CConfiguration(const CConfiguration& other);            ///< Copies both texts.
    CConfiguration& operator=(const CConfiguration& other); ///< Copies both texts.
    virtual ~CConfiguration();

    /// Copies both texts to target. Nothing changes if target is this record.
    void MakeDeepCopy(CConfiguration& target);

    /// Sets the identifier. The map of a CStorage that holds this record keeps the key under which it was added.
    void SetId(const WCHAR* pId);
    CString GetId() const;          ///< Returns a copy of the identifier.
    void SetCfg(const WCHAR* pCfg); ///< Sets the text.
    CString GetCfg() const;         ///< Returns a copy of the text.

    /// Returns the record's element, `<configuration id="..." cfg="..." />`, with both texts in base64, without a line
    /// break.
    CString GetXML();
    /// Writes the same element to the stream. The stream's width and fill have no effect.
    void GetXML(WStringStream& stream);

private:
    friend struct ConfigurationFields; // lets the module read long texts without a copy

    CString m_id;
    CString m_cfg;
};
} // namespace VLT
