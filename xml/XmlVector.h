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
    // The first units alone, since what is sought is often near. Marked are units of 0x8000 and above, too.
    if (length - from >= 16)
    {
        const __m128i units = PackUnits(pText + from);
        const __m128i found = _mm_or_si128(_mm_cmpeq_epi8(units, _mm_set1_epi8(static_cast<char>(unit))),
                                           _mm_cmpeq_epi8(units, _mm_setzero_si128()));
        for (unsigned marks = static_cast<unsigned>(_mm_movemask_epi8(found)); marks != 0; marks &= marks - 1)
        {
            const int at = from + std::countr_zero(marks);
            if (pText[at] == unit || pText[at] == 0)
                return at;
        }
        from += 16;
    }
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

/// Finds where start tags end. Goes over the text once, block by block, and keeps what it knows of the block that it
/// has come to, since short tags share one.
class CTagEndFinder
{
public:
    static constexpr int NotFound = -1;

    CTagEndFinder(const WCHAR* pText, int length) : m_pText(pText), m_length(length) {}

    /// The offset of the first > from that unit on which stands outside quotes; that unit is no quote. NotFound if the
    /// way there leads into a block with a NUL, or into the last units, which fill no block: those are for a reader
    /// that goes unit by unit.
    int Find(int from);
    /// Of the last Find: the offset of the first quote, or NotFound.
    int GetFirstQuote() const { return m_firstQuote; }

private:
    bool Load(int block, uint64_t ahead);
    bool LoadNext();
    uint64_t WalkQuotes(uint64_t doubles, uint64_t singles);
    bool IsOutside(int from) const;

    const WCHAR* m_pText;
    int m_length;
    int m_firstQuote = NotFound;
    int m_block = NotFound; ///< the offset of the block
    WCHAR m_open = 0;       ///< the quote that is open behind it
    uint64_t m_quotes = 0;  ///< a bit for each quote in it, and so on
    uint64_t m_inside = 0;  ///< from an opening quote to before the closing one
    uint64_t m_ends = 0;    ///< > outside quotes
};
