#include "xml/XmlTable.h"

#include "xml/XmlDocument.h"

#include <algorithm>
#include <new>

namespace
{
XmlElementPosition* Resize(XmlElementPosition* pRecords, int count)
{
    void* pResized = std::realloc(pRecords, static_cast<size_t>(count) * sizeof(XmlElementPosition));
    if (pResized == nullptr)
        throw std::bad_alloc();
    return static_cast<XmlElementPosition*>(pResized);
}

/// Changes a segment of oldCount records, which are kept, to count records. oldCount 0: there is no segment yet.
void ResizeSegment(XmlSegment& segment, int oldCount, int count)
{
    // A segment that grows beyond a few records is moved where a full one fits. It can then grow in place, as what it
    // does not need yet stays free after it.
    constexpr int few = 1024;
    if (oldCount <= few && count > few)
    {
        XmlSegment moved(Resize(nullptr, RecordsPerSegment));
        std::copy_n(segment.get(), oldCount, moved.get());
        segment = std::move(moved);
    }
    XmlElementPosition* const pResized = Resize(segment.get(), count);
    static_cast<void>(segment.release()); // now part of pResized
    segment.reset(pResized);
}
} // namespace

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

    const auto segmentAt = [this](int segment) -> XmlSegment& { return m_segments[static_cast<size_t>(segment)]; };
    const int oldCount = m_capacity - (lastSegment << SegmentBits);
    const int newCount = count - (newLast << SegmentBits);
    if (lastSegment < newLast && oldCount < RecordsPerSegment)
        ResizeSegment(segmentAt(lastSegment), oldCount, RecordsPerSegment);
    ResizeSegment(segmentAt(newLast), lastSegment < newLast ? 0 : oldCount, newCount);
    m_capacity = count;
    return true;
}

void CXmlDocument::ReserveSlots(int lastSlot)
{
    if (m_segmentSlots > lastSlot)
        return;
    const int slots = lastSlot * 2 + 4;
    auto pGrown = std::make_unique<XmlSegment[]>(static_cast<size_t>(slots));
    std::move(m_segments.get(), m_segments.get() + m_segmentSlots, pGrown.get());
    m_segments = std::move(pGrown);
    m_segmentSlots = slots;
}
