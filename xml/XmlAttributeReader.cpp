#include "xml/XmlAttributeReader.h"

#include "xml/XmlNames.h"

CXmlAttributeReader::CXmlAttributeReader(const CXmlDocument& document) : m_document(document)
{
    if (document.m_nodeType != NodeElement)
        return;
    const int tagName = document.At(document.m_currentPos).start + 1;
    m_next = tagName + FirstToken(document.m_pUnits + tagName).length;
}

CXmlDocument::RawAttribute CXmlAttributeReader::Read(std::basic_string_view<WCHAR> name)
{
    if (m_openValue != 0)
        m_next = FindUnit(m_document.m_pUnits, m_openValue, m_document.m_unitCount, TEXT('"')) + 1;
    m_openValue = 0;
    if (m_next == 0 || !IsNext(name))
    {
        m_next = 0;
        return m_document.GetRawAttribute(name.data());
    }
    const int value = m_next + static_cast<int>(name.size()) + 3; // after the space, the = and the "
    const CXmlDocument::RawAttribute attribute =
        m_document.ReadPlainValue({PlainAttribute::Found, value}, m_document.m_currentPos);
    if (attribute.isOpen)
        m_openValue = value;
    else
        m_next = value + static_cast<int>(attribute.units.size()) + 1;
    return attribute;
}

/// Whether a space, the name and =" follow what was read so far.
bool CXmlAttributeReader::IsNext(std::basic_string_view<WCHAR> name) const
{
    const int length = static_cast<int>(name.size());
    if (m_document.m_unitCount - m_next < length + 3)
        return false;
    const WCHAR* const pNext = m_document.m_pUnits + m_next;
    return pNext[0] == TEXT(' ') && pNext[length + 1] == TEXT('=') && pNext[length + 2] == TEXT('"') &&
           EqualUnits(pNext + 1, name.data(), length);
}
