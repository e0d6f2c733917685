#include "xml/XmlDocument.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <new>

CXmlDocument::CXmlDocument()
{
    Parse();
}

bool CXmlDocument::SetText(const WCHAR* pText)
{
    m_text = pText;
    m_result.Empty();
    return Parse();
}

bool CXmlDocument::Parse()
{
    return ParseUnits(m_text.GetString(), m_text.GetLength());
}

bool CXmlDocument::ParseInPlace(std::basic_string_view<WCHAR> text)
{
    if (text.size() > INT_MAX)
        throw std::bad_alloc(); // as a CString of that length
    m_text.Empty();
    m_result.Empty();
    return ParseUnits(text.data(), static_cast<int>(text.size()));
}

bool CXmlDocument::ParseUnits(const WCHAR* pUnits, int count)
{
    m_pUnits = pUnits;
    m_unitCount = count;
    m_runOnSearches.Clear();
    const CString previousResult = m_result;
    m_parentPos = m_currentPos = m_nodeType = 0;

    if (const WCHAR* pMessage = BuildTable())
        m_result = pMessage; // says more about the document than a fault inside it
    if (!previousResult.IsEmpty())
        m_result = m_result.IsEmpty() ? previousResult : previousResult + TEXT(", ") + m_result;

    const XmlElementPosition& document = At(0);
    return (document.levelAndFlags & DocumentIllFormedFlag) == 0 && document.firstChild != 0 &&
           At(document.firstChild).nextSibling == 0;
}

/// Returns what is wrong with the document as a whole, or null.
const WCHAR* CXmlDocument::BuildTable()
{
    m_usedPositions = 1;
    ReserveRecords(m_unitCount / 64 + 8); // a guess of an element for 64 units; more come by growth
    At(0) = {};
    if (m_unitCount == 0)
        return TEXT("Empty document");

    XmlScanner scanner{.text = m_pUnits};
    const int root = ParseElements(scanner);
    At(0).length = m_unitCount;
    if (root == 0)
        return TEXT("No root element");
    return At(root).nextSibling == 0 ? nullptr : TEXT("Root element has sibling");
}

bool CXmlDocument::ReserveRecords(int count)
{
    if (count == 0)
        count = m_usedPositions + (m_usedPositions >> 1);
    if (m_capacity >= count)
        return true;

    const int lastSegment = m_capacity == 0 ? 0 : (m_capacity - 1) >> SegmentBits;
    int newLast = (count - 1) >> SegmentBits;
    if (newLast > lastSegment + 1)
    {
        newLast = lastSegment + 1;
        count = (newLast + 1) << SegmentBits;
    }
    ReserveSlots(newLast);

    const int oldCount = m_capacity - (lastSegment << SegmentBits);
    const int newCount = count - (newLast << SegmentBits);
    if (lastSegment < newLast && oldCount < RecordsPerSegment)
        ResizeSegment(lastSegment, oldCount, RecordsPerSegment);
    ResizeSegment(newLast, lastSegment < newLast ? 0 : oldCount, newCount);
    m_capacity = count;
    return true;
}

void CXmlDocument::ReserveSlots(int lastSlot)
{
    if (m_segmentSlots > lastSlot)
        return;
    const int slots = lastSlot * 2 + 4;
    auto pGrown = std::make_unique<Segment[]>(static_cast<size_t>(slots));
    std::move(m_segments.get(), m_segments.get() + m_segmentSlots, pGrown.get());
    m_segments = std::move(pGrown);
    m_segmentSlots = slots;
}

/// Makes room for count records in a segment that has oldCount, which stay; none: it is not there yet. Reallocation can
/// mostly do so without moving them.
void CXmlDocument::ResizeSegment(int segment, int oldCount, int count)
{
    constexpr int few = 1024; // a whole segment is much to ask for so few
    Segment& slot = m_segments[static_cast<size_t>(segment)];
    if (oldCount <= few && count > few)
        MoveToRoom(slot, oldCount);
    void* pResized = std::realloc(slot.get(), static_cast<size_t>(count) * sizeof(XmlElementPosition));
    if (pResized == nullptr)
        throw std::bad_alloc();
    static_cast<void>(slot.release()); // it is part of the resized one now
    slot.reset(static_cast<XmlElementPosition*>(pResized));
}

/// To where there is room for a full segment. What is then cut off of that stays free behind it, to grow into.
void CXmlDocument::MoveToRoom(Segment& segment, int count)
{
    Segment moved(static_cast<XmlElementPosition*>(std::malloc(RecordsPerSegment * sizeof(XmlElementPosition))));
    if (!moved)
        return; // it may do without
    std::copy_n(segment.get(), count, moved.get());
    segment = std::move(moved);
}

std::span<XmlElementPosition> CXmlDocument::FreeRecords(int index)
{
    const int left = std::min(m_capacity - index, RecordsPerSegment - static_cast<int>(SlotOf(index)));
    return {&At(index), static_cast<size_t>(left)};
}
