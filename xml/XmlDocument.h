#pragma once
/// The module's XML reader: a text with a table of element positions.
#include "xml/XmlRunOnSearches.h"
#include "xml/XmlScanner.h"
#include "xml/XmlTable.h"
#include "xml/fast/XmlVector.h"

#include <afxstr.h>

#include <string_view>

/// A document as one text and a table with a fixed-size record for each element. There are no node objects: a name or
/// an attribute is looked up in the text when it is asked for. Reads only. Accepts any text: a damaged one leaves a
/// usable table too. Checks the structure of tags and nothing else.
/// Offsets and lengths count UTF-16 code units. For one thread; made on the stack for one task.
class CXmlDocument
{
public:
    /// Makes a document without text: one segment of 8 records, m_result "Empty document".
    CXmlDocument();
    /// Makes a document and parses the text in place, as ParseInPlace.
    explicit CXmlDocument(std::basic_string_view<WCHAR> text);
    CXmlDocument(const CXmlDocument&) = delete;
    CXmlDocument& operator=(const CXmlDocument&) = delete;

    /// Copies the text, null counting as the empty text, empties m_result and returns the result of Parse.
    bool SetText(const WCHAR* pText);

    /// Rebuilds the table from m_text and puts the cursor in front of the first top-level element. Returns true if the
    /// text has exactly one top-level element and no fault; otherwise m_result ends with a message about the first
    /// fault. What m_result held before, such as the report of ReadTextFile, stays in front of the message. A NUL in
    /// the text ends it here.
    bool Parse();

    /// Parses a text without copying it. The text must have a NUL after it and must not change while this document is
    /// in use. Empties m_text and m_result first. Throws std::bad_alloc for a text of 2^31 units or more.
    bool ParseInPlace(std::basic_string_view<WCHAR> text);

    /// Moves the cursor to the next element of that name at its level, or to the next element for a null or empty name.
    /// Returns false and leaves the cursor if there is none. Names compare as in NameMatches.
    bool FindElement(const WCHAR* pName);

    /// Puts the cursor in front of the first child of the current element. Without a current element nothing changes.
    void EnterElement();

    /// Returns the decoded value of an attribute of the current element; empty if there is no such attribute or
    /// element.
    CString GetAttribute(const WCHAR* pName) const;
    /// The same for the element at that table index, as long as the cursor is on any element.
    CString GetAttributeAt(int position, const WCHAR* pName) const;

    /// An attribute's value as it stands in the text, with its references. Valid until the text changes.
    struct RawAttribute
    {
        std::basic_string_view<WCHAR> units;
        /// True: the units go on to the end of the start tag, and the first " among them ends the value. So a long
        /// value is not searched for its end by someone who reads it anyway. If there is no ", use GetAttribute.
        bool isOpen = false;
    };
    /// Returns that of the current element; empty if there is no such attribute or element.
    RawAttribute GetRawAttribute(const WCHAR* pName) const;

    /// Grows the table to count records, by one segment at most; 0 asks for half as many again as are in use. New
    /// records are not cleared. Always true; throws std::bad_alloc if memory runs out.
    bool ReserveRecords(int count);

    /// Fills the table from the scanner's text; expects a cleared record 0 and m_usedPositions 1. Leaves the message of
    /// the first fault in m_result. Returns the index of the first element, 0 without one.
    int ParseElements(XmlScanner& scanner);

    /// Returns the record of an index from 0 to m_usedPositions - 1. Valid until the table grows.
    XmlElementPosition& At(int index) { return m_segments[SegmentOf(index)][SlotOf(index)]; }
    const XmlElementPosition& At(int index) const { return m_segments[SegmentOf(index)][SlotOf(index)]; }

    CString m_text;       ///< the document, unless it was parsed in place; call Parse after a change
    CString m_result;     ///< report of the last load and parse
    int m_parentPos = 0;  ///< the element whose children are walked; 0: the top level
    int m_currentPos = 0; ///< where the last successful find stopped; 0: in front of the first child
    int m_usedPositions = 0;
    int m_nodeType = 0; ///< NodeElement while m_currentPos is an element, else 0
    /// The slots of the segments. All segments but the last have RecordsPerSegment records and never move.
    std::unique_ptr<XmlSegment[]> m_segments;
    int m_capacity = 0; ///< records of all segments
    int m_segmentSlots = 0;
    int m_faultOffset = -1; ///< where the fault in m_result is; -1 if there is none

private:
    friend class CXmlAttributeReader;

    static constexpr size_t SegmentOf(int index) { return static_cast<size_t>(index >> SegmentBits); }
    static constexpr size_t SlotOf(int index) { return static_cast<size_t>(index & (RecordsPerSegment - 1)); }

    void ReserveSlots(int lastSlot);
    bool ParseUnits(std::basic_string_view<WCHAR> units);
    void BuildTable();
    void SetFault(const WCHAR* pMessage, int offset);

    bool IsInUse(int index) const { return index >= 0 && index < m_usedPositions; }
    int FindSibling(int parent, int current, const WCHAR* pName) const;
    bool HasName(int index, XmlName name) const;

    PlainAttribute FindPlainAttribute(int position, const WCHAR* pName) const;
    RawAttribute ReadPlainValue(PlainAttribute plain, int position) const;
    int ShortValueLength(PlainAttribute plain) const;
    void GetLongAttribute(PlainAttribute plain, int position, const WCHAR* pName, CString& value) const;
    std::basic_string_view<WCHAR> ClosedUnits(PlainAttribute plain, int position, const WCHAR* pName) const;
    std::basic_string_view<WCHAR> OpenUnits(PlainAttribute plain, int position) const;
    int StartTagEnd(int position) const;

    const WCHAR* m_pUnits = nullptr; ///< the text of the table: m_text's or the one parsed in place
    int m_unitCount = 0;
    mutable CRunOnSearches m_runOnSearches;
};
