#include "xml/fast/XmlTagEnds.h"

#include <algorithm>
#include <iterator>
#include <utility>

uint64_t WalkQuotes(const BlockMarks& marks, WCHAR& open)
{
    uint64_t inside = open != 0 ? ~uint64_t{0} : 0;
    uint64_t ahead = ~uint64_t{0};
    for (;;)
    {
        const uint64_t quotes = open == 0           ? marks.doubles | marks.singles
                                : open == TEXT('"') ? marks.doubles
                                                    : marks.singles;
        if ((quotes & ahead) == 0)
            return inside;
        const int next = std::countr_zero(quotes & ahead);
        inside ^= ~uint64_t{0} << next;
        ahead = ~uint64_t{1} << next;
        open = open != 0 ? WCHAR{0} : (marks.doubles >> next & 1) != 0 ? TEXT('"') : TEXT('\'');
    }
}

bool CTagEndFinder::ReadOn()
{
    const int from = std::exchange(m_wanted, NotFound);
    if (from == NotFound || (!IsOutside(from) && !Restart(from)))
        return false;
    m_readFor = from;
    while (KnownEnd(from) == NotFound)
        if (!ReadNext())
            return false;
    return true;
}

/// From that unit on, outside quotes. False: there is no further block.
bool CTagEndFinder::Restart(int from)
{
    m_blocksAtOnce = 1;
    m_known.open = 0;
    return Read(from);
}

/// The blocks behind the known ones, twice as many each time; but of a long value only the end.
bool CTagEndFinder::ReadNext()
{
    const int next = m_known.first + static_cast<int>(m_known.length);
    const int close = m_known.open == 0 ? next : FindUnit(m_pText, next, m_length, m_known.open);
    if (close - next >= UnitsPerBlock)
    {
        m_blocksAtOnce = 1;
        return Read(close);
    }
    m_blocksAtOnce = std::min(m_blocksAtOnce * 2, KnownBlocks::Most);
    return Read(next);
}

bool CTagEndFinder::Read(int first)
{
    m_known.first = first;
    if (m_length - first >= UnitsPerBlock)
        m_steps.pReadBlocks(m_pText + first, std::min(m_blocksAtOnce, (m_length - first) / UnitsPerBlock), m_known);
    else
        ReadLast(first);
    m_nextEnd = 0;
    return m_known.length != 0;
}

/// The last units of the text, which fill no block, with blanks behind them.
void CTagEndFinder::ReadLast(int first)
{
    WCHAR block[UnitsPerBlock];
    WCHAR* const pBlanks = std::copy(m_pText + first, m_pText + m_length, block);
    std::fill(pBlanks, std::end(block), TEXT(' '));
    m_steps.pReadBlocks(block, 1, m_known);
    m_known.length = std::min(m_known.length, static_cast<unsigned>(m_length - first));
}
