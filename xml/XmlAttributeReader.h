#pragma once
/// Reads several attributes of one element.
#include "xml/XmlDocument.h"

/// Reads the attributes of a document's current element. Attributes that are asked for in the order of the text, from
/// the first one on and with a single space in front of each, as the module writes them, are found without a search.
/// Borrows the document, whose cursor must stay on the element.
class CXmlAttributeReader
{
public:
    explicit CXmlAttributeReader(const CXmlDocument& document);

    /// Returns the attribute of that name, as CXmlDocument::GetRawAttribute. No name may be asked for twice; names have
    /// only letters.
    CXmlDocument::RawAttribute Read(std::basic_string_view<WCHAR> name);
    /// Returns the decoded value, as CXmlDocument::GetAttribute.
    CString ReadDecoded(std::basic_string_view<WCHAR> name) const { return m_document.GetAttribute(name.data()); }

private:
    bool IsNext(std::basic_string_view<WCHAR> name) const;

    const CXmlDocument& m_document;
    int m_next = 0;      ///< offset after the attributes read so far; 0: they do not follow each other
    int m_openValue = 0; ///< offset of the last value if its end was not looked for; else 0
};
