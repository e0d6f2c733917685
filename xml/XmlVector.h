#pragma once
/// Searches in UTF-16 text, 64 units a step, with the SSE2 that every x86-64 has. Nothing behind the given length is
/// read. Offsets and lengths count units.
#include "platform/text.h"

#include <bit>
#include <cstdint>
#include <emmintrin.h>

constexpr int UnitsPerBlock = 64;

/// 16 units as bytes. Those of 0x100 to 0x7FFF become 0xFF, those above become 0: a byte below 0xFF stands for itself,
/// but a 0 has to be looked at again.
inline __m128i PackUnits(const WCHAR* pUnits)
{
    const auto* pHalves = reinterpret_cast<const __m128i*>(pUnits);
    return _mm_packus_epi16(_mm_loadu_si128(pHalves), _mm_loadu_si128(pHalves + 1));
}

/// A block of text, packed.
struct PackedBlock
{
    explicit PackedBlock(const WCHAR* pUnits)
        : parts{PackUnits(pUnits), PackUnits(pUnits + 16), PackUnits(pUnits + 32), PackUnits(pUnits + 48)}
    {
    }

    /// A bit for each unit of that value, which is ASCII; the lowest is the first unit's.
    uint64_t Marks(WCHAR unit) const
    {
        const __m128i wanted = _mm_set1_epi8(static_cast<char>(unit));
        uint64_t marks = 0;
        for (int i = 3; i >= 0; --i)
            marks = marks << 16 | static_cast<uint64_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(parts[i], wanted)));
        return marks;
    }

    /// Whether a unit of that value stands in it, or anything that may be a NUL.
    bool MayHold(WCHAR unit) const
    {
        const __m128i wanted = _mm_set1_epi8(static_cast<char>(unit));
        const __m128i found =
            _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(parts[0], wanted), _mm_cmpeq_epi8(parts[1], wanted)),
                         _mm_or_si128(_mm_cmpeq_epi8(parts[2], wanted), _mm_cmpeq_epi8(parts[3], wanted)));
        return _mm_movemask_epi8(_mm_or_si128(found, ZeroBytes())) != 0;
    }
    bool MayHoldNul() const { return _mm_movemask_epi8(ZeroBytes()) != 0; }

    __m128i parts[4];

private:
    __m128i ZeroBytes() const
    {
        const __m128i least = _mm_min_epu8(_mm_min_epu8(parts[0], parts[1]), _mm_min_epu8(parts[2], parts[3]));
        return _mm_cmpeq_epi8(least, _mm_setzero_si128());
    }
};

/// The offset of the first unit from that one on that is the wanted one, which is ASCII, or NUL; length if there is
/// none.
inline int FindUnit(const WCHAR* pText, int from, int length, WCHAR unit)
{
    for (; length - from >= UnitsPerBlock; from += UnitsPerBlock)
    {
        const PackedBlock block(pText + from);
        if (!block.MayHold(unit))
            continue;
        for (uint64_t marks = block.Marks(unit) | block.Marks(0); marks != 0; marks &= marks - 1)
        {
            const int at = from + std::countr_zero(marks);
            if (pText[at] == unit || pText[at] == 0)
                return at;
        }
    }
    while (from < length && pText[from] != unit && pText[from] != 0)
        ++from;
    return from;
}

/// A bit for each unit from an odd quote to the one before the next, given a bit for each quote: the exclusive or of
/// all bits up to that one.
inline uint64_t InsideQuotes(uint64_t quotes)
{
    for (int shift = 1; shift < UnitsPerBlock; shift *= 2)
        quotes ^= quotes << shift;
    return quotes;
}

/// Finds where start tags end. Keeps the marks of the block that it looked at last, since short tags share one.
class CTagEndFinder
{
public:
    static constexpr int NotFound = -1;

    CTagEndFinder(const WCHAR* pText, int length) : m_pText(pText), m_length(length) {}

    /// The offset of the first > from that unit on which stands outside quotes. NotFound if that would take it into a
    /// block with a NUL, or into the last units, which fill no block: those are for a reader that goes unit by unit.
    int Find(int from);
    /// Of the last Find: the offset of the first quote, or NotFound.
    int GetFirstQuote() const { return m_firstQuote; }

private:
    bool Load(int block);
    int WalkQuotes(uint64_t from, WCHAR& open) const;

    const WCHAR* m_pText;
    int m_length;
    int m_block = NotFound; ///< offset of the block that the marks are of
    uint64_t m_greater = 0;
    uint64_t m_double = 0;
    uint64_t m_single = 0;
    int m_firstQuote = NotFound;
};

inline bool CTagEndFinder::Load(int block)
{
    if (block == m_block)
        return true;
    if (m_length - block < UnitsPerBlock)
        return false;
    const PackedBlock packed(m_pText + block);
    for (uint64_t zeros = packed.MayHoldNul() ? packed.Marks(0) : 0; zeros != 0; zeros &= zeros - 1)
        if (m_pText[block + std::countr_zero(zeros)] == 0)
            return false;
    m_block = block;
    m_greater = packed.Marks(TEXT('>'));
    m_double = packed.Marks(TEXT('"'));
    m_single = packed.Marks(TEXT('\''));
    return true;
}

inline int CTagEndFinder::Find(int from)
{
    m_firstQuote = NotFound;
    WCHAR open = 0; // the quote that the block starts in
    for (;;)
    {
        const int block = from & -UnitsPerBlock;
        const uint64_t ahead = ~uint64_t{0} << (from & (UnitsPerBlock - 1));
        if (!Load(block))
            return NotFound;
        const uint64_t doubles = m_double & ahead;
        const uint64_t singles = m_single & ahead;
        const uint64_t quotes = doubles | singles;
        if (m_firstQuote == NotFound && quotes != 0)
            m_firstQuote = block + std::countr_zero(quotes);
        from = block + UnitsPerBlock;

        // A quote of one kind says nothing inside the other.
        if (open != 0 && (open == TEXT('"') ? doubles : singles) == 0)
        {
            from = FindUnit(m_pText, from, m_length, open);
            continue;
        }
        if (doubles != 0 && singles != 0)
        {
            const int end = WalkQuotes(ahead, open);
            if (end != NotFound)
                return end;
            continue;
        }
        const uint64_t inside = InsideQuotes(quotes) ^ (open != 0 ? ~uint64_t{0} : 0);
        if (const uint64_t ends = m_greater & ahead & ~inside)
            return block + std::countr_zero(ends);
        if (inside >> (UnitsPerBlock - 1) == 0)
            open = 0;
        else if (quotes != 0)
            open = doubles != 0 ? TEXT('"') : TEXT('\'');
    }
}

/// For a block with quotes of both kinds: one by one. Returns where the tag ends; NotFound: not in this block.
inline int CTagEndFinder::WalkQuotes(uint64_t ahead, WCHAR& open) const
{
    for (;;)
    {
        const uint64_t quotes = open == 0 ? m_double | m_single : open == TEXT('"') ? m_double : m_single;
        const uint64_t marks = ahead & (open == 0 ? quotes | m_greater : quotes);
        if (marks == 0)
            return NotFound;
        const uint64_t mark = marks & (~marks + 1);
        if ((mark & quotes) == 0)
            return m_block + std::countr_zero(marks);
        open = open != 0 ? WCHAR{0} : (mark & m_double) != 0 ? TEXT('"') : TEXT('\'');
        ahead = ~(mark | (mark - 1));
    }
}
