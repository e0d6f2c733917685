#include "xml/XmlDocument.h"

#include <algorithm>

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
    ReserveRecords(m_text.GetLength() / 64 + 8); // a guess of an element for 64 units; more come by growth
    At(0) = {};
    if (m_text.IsEmpty())
        return TEXT("Empty document");

    XmlScanner scanner{.text = m_text.GetString()};
    const int root = ParseElements(scanner);
    At(0).length = m_text.GetLength();
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
    if (lastSegment == newLast)
    {
        ReplaceSegment(lastSegment, oldCount, newCount);
    }
    else
    {
        if (oldCount < RecordsPerSegment)
            ReplaceSegment(lastSegment, oldCount, RecordsPerSegment);
        ReplaceSegment(newLast, 0, newCount);
    }
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

/// Puts a segment of newCount records in the place of one of oldCount, which may be 0, and keeps the old records.
void CXmlDocument::ReplaceSegment(int segment, int oldCount, int newCount)
{
    auto pGrown = std::make_unique_for_overwrite<XmlElementPosition[]>(static_cast<size_t>(newCount));
    Segment& slot = m_segments[static_cast<size_t>(segment)];
    std::copy_n(slot.get(), oldCount, pGrown.get());
    slot = std::move(pGrown);
}
