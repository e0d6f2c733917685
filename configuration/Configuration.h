#pragma once
#include "configuration/Export.h"
#include "platform/mfc/atlstr.h"
#include "platform/text.h"

namespace VLT
{
/// One stored configuration: an identifier and a text, both free; neither is checked or trimmed.
/// Texts given in are NUL-terminated UTF-16; null counts as the empty text.
class VLT_API CConfiguration
{
public:
    CConfiguration();
    CConfiguration(const CConfiguration& other);
    CConfiguration& operator=(const CConfiguration& other);
    virtual ~CConfiguration();

    /// Sets both fields of the target to those of this record. Onto itself it changes nothing.
    void MakeDeepCopy(CConfiguration& target);

    /// Does not reach the map of a CStorage that holds this record: its key stays the identifier that arrived.
    void SetId(const WCHAR* pId);
    CString GetId() const;
    void SetCfg(const WCHAR* pCfg);
    CString GetCfg() const;

    /// The record's element, <configuration id="..." cfg="..." />, with both fields in base64; no line break.
    CString GetXML();
    /// Appends the same element at the stream's write position, whatever width or fill the stream has.
    void GetXML(WStringStream& stream);

private:
    friend struct ConfigurationFields; // the module's own way to long texts, without a copy

    CString m_id;
    CString m_cfg;
};
} // namespace VLT
