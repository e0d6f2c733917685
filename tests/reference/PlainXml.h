#pragma once
/// The XML document a second time, written to be read and not to be fast: the module's document is compared with it.
/// It shares nothing with the module but the type of a code unit.

#include "platform/text.h"

#include <cstdint>
#include <vector>

struct CPlainRecord
{
    int32_t start, length;
    uint32_t tagLengths, levelAndFlags;
    int32_t parent, firstChild, nextSibling, prevSibling;
};

struct CPlainNode
{
    enum
    {
        Passed,
        Element,
        EmptyElement,
        EndTag,
        Error,
        EndOfText
    } kind;
    int32_t start, length;
    WString name; ///< of a tag; the message of a broken node
};

class CPlainXml
{
public:
    CPlainXml() { Parse(); }

    bool SetText(const WCHAR* pText);
    bool Parse();
    bool FindElement(const WCHAR* pName);
    void EnterElement();
    WString GetAttribute(const WCHAR* pName) const { return GetAttributeAt(m_currentPos, pName); }
    WString GetAttributeAt(int32_t position, const WCHAR* pName) const;
    static WString DecodeEntities(const WCHAR* pSource, int32_t length);

    WString m_text, m_result;
    int32_t m_parentPos = 0, m_currentPos = 0, m_nodeType = 0;
    int32_t m_capacity = 0, m_segmentSlots = 0; ///< numbers only: the memory is the vector's own
    std::vector<CPlainRecord> m_records;        ///< the records in use

private:
    void ReserveRecords(int32_t count);
    void ParseElements();
    CPlainNode ReadNode(int32_t start) const;
    int32_t ReadMarkup(int32_t start, bool inDoctype, CPlainNode& node) const;
    void AddElement(const CPlainNode& node, int32_t parent, uint32_t level);
    void CloseUnended(int32_t element);
    void RecordFault(const WString& message);
};
