#pragma once
/// The module's XML reader: a text with a table of element positions.
#include "xml/XmlRunOnSearches.h"
#include "xml/XmlScanner.h"
#include "xml/fast/XmlPlainAttributes.h"
#include <afxstr.h>

#include <cstdlib>
#include <memory>
#include <span>
#include <string_view>

/// Where an element lies in the text and how it links up: one record of the table. Links are table indexes, 0 for none.
/// The bit fields are filled without a check: what is too long for one loses its high bits and touches no other field.
struct XmlElementPosition
{
    int start;              ///< offset of the < of the start tag
    int length;             ///< through the > of the end tag; of an unended element that of its start tag
    unsigned tagLengths;    ///< low 22 bits: of the start tag; high 10 bits: of the end tag, 0 if there is none
    unsigned levelAndFlags; ///< low 16 bits: nesting level, 0 for a top-level element; high 16 bits: flags
    int parent;
    int firstChild;
    int nextSibling;
    int prevSibling; ///< in a first child the last one of the chain, so that appending needs no walk
};

constexpr int StartTagLengthBits = 22;
constexpr unsigned StartTagLengthMask = (1U << StartTagLengthBits) - 1;
constexpr unsigned LevelMask = 0xFFFF;

/// In XmlElementPosition::levelAndFlags.
constexpr unsigned FirstChildFlag = 0x80000;
constexpr unsigned UnendedFlag = 0x100000;           ///< the end tag never came
constexpr unsigned IllFormedFlag = 0x200000;         ///< a fault was met directly inside the element
constexpr unsigned DocumentIllFormedFlag = 0x800000; ///< only on record 0: the text has at least one fault

/// A document as one text and a table with a fixed-size record for each element. There are no node objects: a name or
/// an attribute is looked up in the text when it is asked for. Reads only, and tolerates everything: a damaged text
/// leaves a usable table too. Looks at the structure of tags and at nothing else.
/// All offsets and lengths count UTF-16 code units. For one thread; made on the stack for one task and dropped.
class CXmlDocument
{
public:
    /// A document without text: one segment of 8 records, m_result "Empty document".
    CXmlDocument();
    CXmlDocument(const CXmlDocument&) = delete;
    CXmlDocument& operator=(const CXmlDocument&) = delete;

    /// Takes a copy of the text, or the empty text for null, and parses it with an empty m_result.
    /// Returns the result of Parse.
    bool SetText(const WCHAR* pText);

    /// Rebuilds the table from m_text and puts the cursor before the first top-level element. True if the text has
    /// exactly one top-level element and no fault; otherwise m_result ends with a message about the first fault.
    /// What m_result held before, the report of the file reader, stays in front. A NUL in the text ends it here.
    bool Parse();

    /// The same with a text that is not copied and has a NUL behind it: it has to stay as it is as long as this
    /// document is in use. m_text and m_result are emptied first.
    bool ParseInPlace(std::basic_string_view<WCHAR> text);

    /// Moves the cursor to the next element of that name at its level; null or empty: to the next element.
    /// False: there is none, and the cursor stays. Names compare as in NameMatches.
    bool FindElement(const WCHAR* pName);

    /// Puts the cursor before the first child of the current element. Without a current element nothing changes.
    void EnterElement();

    /// The decoded value of an attribute of the current element; empty if there is no such attribute or element.
    CString GetAttribute(const WCHAR* pName) const;
    /// The same for the element at that table index, as long as the cursor stands on any element at all.
    CString GetAttributeAt(int position, const WCHAR* pName) const;

    /// An attribute's value as it stands in the text, with its references; good until that changes.
    struct RawAttribute
    {
        std::basic_string_view<WCHAR> units;
        /// Its end was not sought, as that costs as much as reading it: the units go on to the end of the start tag,
        /// and the first " of them ends the value. If there is none, GetRawAttribute knows the end.
        bool isOpen = false;
    };
    /// That of the current element; empty if there is no such attribute or element.
    std::basic_string_view<WCHAR> GetRawAttribute(const WCHAR* pName) const;
    /// The same; open if it is long.
    RawAttribute FindAttribute(const WCHAR* pName) const;

    /// Index of the next element of that name behind current, or from the first child of parent on if current is 0.
    /// 0 if there is none.
    int FindSibling(int parent, int current, const WCHAR* pName) const;

    /// Grows the table to count records, but by one segment at most; 0 asks for half as many again as are in use.
    /// Always true; an allocation that fails throws std::bad_alloc. New records are not cleared.
    bool ReserveRecords(int count);

    /// Fills the table from the scanner's text, which is m_pUnits, into a cleared record 0 and m_usedPositions 1.
    /// Leaves the first fault's message in m_result. Returns the index of the first element, 0 without one.
    int ParseElements(XmlScanner& scanner);

    /// The record of an index from 0 to m_usedPositions - 1. Good until the table grows.
    XmlElementPosition& At(int index) { return m_segments[SegmentOf(index)][SlotOf(index)]; }
    const XmlElementPosition& At(int index) const { return m_segments[SegmentOf(index)][SlotOf(index)]; }

    /// Those from that index on, which is below m_capacity, that lie in one piece.
    std::span<XmlElementPosition> FreeRecords(int index);

    struct CFree
    {
        void operator()(XmlElementPosition* pRecords) const { std::free(pRecords); }
    };
    using Segment = std::unique_ptr<XmlElementPosition[], CFree>; ///< of the C runtime's heap, where it can grow

    CString m_text; ///< the document, unless it was parsed in place; after a change of it call Parse first
    const WCHAR* m_pUnits = nullptr; ///< what the table is of: m_text's or those that were parsed in place
    int m_unitCount = 0;
    CString m_result;     ///< what the last load and parse had to say
    int m_parentPos = 0;  ///< whose children are walked; 0: the top level
    int m_currentPos = 0; ///< where the last successful find stopped; 0: before the first child
    int m_usedPositions = 0;
    int m_nodeType = 0; ///< NodeElement while m_currentPos names an element, else 0
    /// Slots of the segments. All segments in use but the last have RecordsPerSegment records and never move.
    std::unique_ptr<Segment[]> m_segments;
    int m_capacity = 0; ///< records of all segments
    int m_segmentSlots = 0;

private:
    static constexpr int SegmentBits = 16;
    static constexpr int RecordsPerSegment = 1 << SegmentBits;
    static constexpr size_t SegmentOf(int index) { return static_cast<size_t>(index >> SegmentBits); }
    static constexpr size_t SlotOf(int index) { return static_cast<size_t>(index & (RecordsPerSegment - 1)); }

    void ReserveSlots(int lastSlot);
    void ResizeSegment(int segment, int oldCount, int count);
    static void MoveToRoom(Segment& segment, int count);
    bool ParseUnits(const WCHAR* pUnits, int count);
    const WCHAR* BuildTable();
    bool IsInUse(int index) const { return index >= 0 && index < m_usedPositions; }
    bool HasName(int index, const WCHAR* pName) const;
    int ShortLength(PlainAttribute plain) const;
    void GetOtherAttribute(PlainAttribute plain, int position, const WCHAR* pName, CString& value) const;
    PlainAttribute FindPlainAt(int position, const WCHAR* pName) const;
    std::basic_string_view<WCHAR> RawUnits(PlainAttribute plain, int position, const WCHAR* pName) const;
    std::basic_string_view<WCHAR> UnitsToTagEnd(PlainAttribute plain, int position) const;
    int TagEnd(int position) const;

    mutable CRunOnSearches m_runOnSearches;
};
