#include "xml/XmlVector.h"

int CTagEndFinder::Find(int from)
{
    uint64_t ahead = ~uint64_t{0} << (from % UnitsPerBlock);
    m_firstQuote = NotFound;
    if (!IsOutside(from))
    {
        m_open = 0;
        if (!Load(from - from % UnitsPerBlock, ahead))
            return NotFound;
    }
    for (;;)
    {
        if (m_firstQuote == NotFound && (m_quotes & ahead) != 0)
            m_firstQuote = m_block + std::countr_zero(m_quotes & ahead);
        if (const uint64_t ends = m_ends & ahead)
            return m_block + std::countr_zero(ends);
        ahead = ~uint64_t{0};
        if (!LoadNext())
            return NotFound;
    }
}

/// Whether what is known of the block holds for a tag that starts there too: as long as only tags stand in it, it does.
bool CTagEndFinder::IsOutside(int from) const
{
    const int before = (from - 1) - m_block;
    return m_block != NotFound && before >= 0 && before < UnitsPerBlock - 1 && (m_inside >> before & 1) == 0;
}

/// The block behind this one, or the next that can have the end of the open quote.
bool CTagEndFinder::LoadNext()
{
    int next = m_block + UnitsPerBlock;
    if (m_open != 0 && m_quotes == 0)
        next = FindUnit(m_pText, next, m_length, m_open) & -UnitsPerBlock;
    return Load(next, ~uint64_t{0});
}

/// ahead: the units that count.
bool CTagEndFinder::Load(int block, uint64_t ahead)
{
    if (m_length - block < UnitsPerBlock)
        return false;
    const PackedBlock packed(m_pText + block);
    // Both are rare, and so one look at them will do.
    uint64_t singles = 0;
    if (packed.MayHold(TEXT('\'')))
    {
        singles = packed.Marks(TEXT('\'')) & ahead;
        for (uint64_t zeros = packed.Marks(0); zeros != 0; zeros &= zeros - 1)
            if (m_pText[block + std::countr_zero(zeros)] == 0)
                return false;
    }
    const uint64_t doubles = packed.Marks(TEXT('"')) & ahead;
    m_block = block;
    m_quotes = doubles | singles;
    if (singles == 0 && m_open != TEXT('\''))
    {
        m_inside = InsideQuotes(doubles) ^ (m_open != 0 ? ~uint64_t{0} : 0);
        m_open = m_inside >> (UnitsPerBlock - 1) != 0 ? TEXT('"') : WCHAR{0};
    }
    else
        m_inside = WalkQuotes(doubles, singles);
    m_ends = packed.Marks(TEXT('>')) & ~m_inside;
    return true;
}

/// For a block with single quotes: from one quote to the next, since those of one kind say nothing inside the other.
uint64_t CTagEndFinder::WalkQuotes(uint64_t doubles, uint64_t singles)
{
    uint64_t inside = m_open != 0 ? ~uint64_t{0} : 0;
    uint64_t ahead = ~uint64_t{0};
    for (;;)
    {
        const uint64_t marks = ahead & (m_open == 0 ? doubles | singles : m_open == TEXT('"') ? doubles : singles);
        if (marks == 0)
            return inside;
        const int mark = std::countr_zero(marks);
        inside ^= ~uint64_t{0} << mark;
        ahead = ~uint64_t{1} << mark;
        m_open = m_open != 0 ? WCHAR{0} : (doubles >> mark & 1) != 0 ? TEXT('"') : TEXT('\'');
    }
}
