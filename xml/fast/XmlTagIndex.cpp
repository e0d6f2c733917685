#include "xml/fast/XmlTagIndex.h"

#include <algorithm>
#include <iterator>
#include <utility>

bool CTagIndex::Extend()
{
    const int from = std::exchange(m_missing, NotFound);
    if (from == NotFound || IsIn(m_pText[FindTagNameEnd(m_pText, from, m_length)], XmlQuote))
        return false;
    if (!IsOutsideQuotes(from - 1))
    {
        m_blocksAtOnce = 1;
        m_blocks.openQuote = 0;
        if (!IndexFrom(from))
            return false;
    }
    m_extendedFor = from;
    while (FindIndexedEnd(from) == NotFound)
        if (!IndexNextBlocks())
            return false;
    return true;
}

/// Replaces the blocks by those that follow them, twice as many each time. The middle of a long value is left out.
bool CTagIndex::IndexNextBlocks()
{
    const int next = m_blocks.first + static_cast<int>(m_blocks.length);
    const int close = m_blocks.openQuote == 0 ? next : FindUnit(m_pText, next, m_length, m_blocks.openQuote);
    if (close - next >= UnitsPerBlock)
    {
        m_blocksAtOnce = 1;
        return IndexFrom(close);
    }
    m_blocksAtOnce = std::min(m_blocksAtOnce * 2, XmlTagBlocks::Capacity);
    return IndexFrom(next);
}

bool CTagIndex::IndexFrom(int first)
{
    m_blocks.first = first;
    m_nextEnd = 0;
    const int blocksLeft = (m_length - first) / UnitsPerBlock;
    if (blocksLeft > 0)
        VectorLoops().pIndexBlocks(m_pText + first, std::min(m_blocksAtOnce, blocksLeft), m_blocks);
    else
        IndexLastUnits(first);
    return m_blocks.length != 0;
}

/// Indexes the last units of the text, which do not fill a block, with spaces after them.
void CTagIndex::IndexLastUnits(int first)
{
    WCHAR block[UnitsPerBlock];
    WCHAR* const pEnd = std::copy(m_pText + first, m_pText + m_length, block);
    std::fill(pEnd, std::end(block), TEXT(' '));
    VectorLoops().pIndexBlocks(block, 1, m_blocks);
    m_blocks.length = std::min(m_blocks.length, static_cast<unsigned>(m_length - first));
}
