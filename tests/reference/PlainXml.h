#pragma once
/// The XML document a second time, written to be read and not to be fast: the module's document is compared with it.
/// Nodes, attributes and references come from the module's plain scanner, which has tests of its own.
#include "xml/XmlTable.h"

#include <afxstr.h>

#include <vector>

class CPlainXml
{
public:
    CPlainXml() { Parse(); }

    bool Parse();
    bool FindElement(const WCHAR* pName);
    void EnterElement();
    CString GetAttribute(int position, const WCHAR* pName) const;

    CString m_text, m_result;
    int m_faultOffset = -1;
    int m_parentPos = 0, m_currentPos = 0, m_nodeType = 0;
    int m_capacity = 0, m_segmentSlots = 0;    ///< numbers only: the memory is the vector's own
    std::vector<XmlElementPosition> m_records; ///< the records in use

private:
    void ReserveRecords(int count);
    void ParseElements();
    void AddElement(int start, int length, int parent, size_t level);
    void CloseUnended(int element);
    void RecordFault(const CString& message, int offset);
};
