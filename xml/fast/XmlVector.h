#pragma once
/// Searches in UTF-16 text, many units a step. Nothing behind the given length is read. Offsets and lengths count
/// units.
#include "platform/text.h"

#include <atomic>
#include <bit>
#include <cstdint>
#include <cstring>
#include <emmintrin.h>

struct KnownBlocks;
struct PlainAttribute;

constexpr int UnitsPerBlock = 64;

/// What is worth having in a form for each width of vectors.
struct XmlVectorSteps
{
    /// As FindUnit.
    int (*pFindUnit)(const WCHAR* pText, int from, int length, WCHAR unit);
    /// Reads up to count blocks of the text from pBlocks on, which stand at known.first, up to one that has a NUL.
    void (*pReadBlocks)(const WCHAR* pBlocks, int count, KnownBlocks& known);
    /// As FindPlainAttribute.
    PlainAttribute (*pFindAttribute)(const WCHAR* pText, int length, int tagName, const WCHAR* pName);
    /// Copies units up to the first ", & or NUL, and length at most, for which pTo has room. Returns how many.
    int (*pCopyValue)(const WCHAR* pFrom, int length, WCHAR* pTo);
};

/// With the SSE2 that every x86-64 has.
extern const XmlVectorSteps s_sse2Steps;
/// With AVX2 and what came with it; only for a processor that HasAvx2.
extern const XmlVectorSteps s_avx2Steps;
/// The wider of those that this processor has.
const XmlVectorSteps& VectorSteps();

/// For each bit the exclusive or of all bits up to it: given a bit for each quote, one for each unit from an odd quote
/// to before the next.
inline uint64_t PrefixXor(uint64_t bits)
{
    for (int shift = 1; shift < UnitsPerBlock; shift *= 2)
        bits ^= bits << shift;
    return bits;
}

/// Whether the first length units of both are the same.
inline bool EqualUnits(const WCHAR* pLeft, const WCHAR* pRight, int length)
{
    constexpr int few = sizeof(uint64_t) / sizeof(WCHAR);
    const auto fewAt = [](const WCHAR* pUnits)
    {
        uint64_t units;
        std::memcpy(&units, pUnits, sizeof units);
        return units;
    };
    int i = 0;
    for (; length - i > few; i += few)
        if (fewAt(pLeft + i) != fewAt(pRight + i))
            return false;
    if (length >= few)
        return fewAt(pLeft + length - few) == fewAt(pRight + length - few);
    while (i < length && pLeft[i] == pRight[i])
        ++i;
    return i == length;
}

constexpr int UnitsPerStep = 16;

/// 16 units as bytes. Those of 0x100 to 0x7FFF become 0xFF, those above become 0: a byte below 0xFF stands for itself,
/// but a 0 has to be looked at again.
inline __m128i PackUnits(const WCHAR* pUnits)
{
    const auto* pHalves = reinterpret_cast<const __m128i*>(pUnits);
    return _mm_packus_epi16(_mm_loadu_si128(pHalves), _mm_loadu_si128(pHalves + 1));
}

/// A bit for each byte that is all ones.
inline unsigned MarksOf(__m128i bytes)
{
    return static_cast<unsigned>(_mm_movemask_epi8(bytes));
}

/// The prefetch distance in bytes: 4096 is best on Intel's processors, 512 on AMD's. VectorSteps sets it, so that
/// nothing is initialised when the library is loaded.
extern std::atomic<int> s_bytesAhead;

/// Asks for the text that a search will come to soon.
inline void FetchAhead(const WCHAR* pBlock)
{
    const char* const pAhead = reinterpret_cast<const char*>(pBlock) + s_bytesAhead.load(std::memory_order_relaxed);
    _mm_prefetch(pAhead, _MM_HINT_T0);
    _mm_prefetch(pAhead + 64, _MM_HINT_T0);
}

/// The offset of the first unit from that one on that is the wanted one, which is ASCII, or NUL; length if there is
/// none.
inline int FindUnit(const WCHAR* pText, int from, int length, WCHAR unit)
{
    // The first units alone, since what is sought is often near.
    if (length - from >= UnitsPerStep)
    {
        const __m128i units = PackUnits(pText + from);
        const __m128i found = _mm_or_si128(_mm_cmpeq_epi8(units, _mm_set1_epi8(static_cast<char>(unit))),
                                           _mm_cmpeq_epi8(units, _mm_setzero_si128()));
        for (unsigned marks = MarksOf(found); marks != 0; marks &= marks - 1)
        {
            const int at = from + std::countr_zero(marks);
            if (pText[at] == unit || pText[at] == 0)
                return at;
        }
        from += UnitsPerStep;
    }
    return VectorSteps().pFindUnit(pText, from, length, unit);
}

constexpr int ShortUnits = 2 * UnitsPerStep;

/// A bit for each of ShortUnits units that is ", & or NUL, or may be NUL; the lowest is the first unit's.
inline uint32_t ShortStops(const WCHAR* pUnits)
{
    const auto stops = [](__m128i units)
    {
        const auto marks = [units](char unit) { return _mm_cmpeq_epi8(units, _mm_set1_epi8(unit)); };
        return MarksOf(_mm_or_si128(_mm_or_si128(marks('"'), marks('&')), marks(0)));
    };
    return stops(PackUnits(pUnits)) | stops(PackUnits(pUnits + UnitsPerStep)) << UnitsPerStep;
}

/// What pCopyValue does, for few units: from that offset up to that end, of which it returns the one that it came to.
inline int CopyValueUnits(const WCHAR* pFrom, int offset, int end, WCHAR* pTo)
{
    const auto marks = [](__m128i units, char unit) { return _mm_cmpeq_epi8(units, _mm_set1_epi8(unit)); };
    for (; end - offset >= UnitsPerStep; offset += UnitsPerStep)
    {
        const __m128i units = PackUnits(pFrom + offset);
        if (MarksOf(_mm_or_si128(_mm_or_si128(marks(units, '"'), marks(units, '&')), marks(units, 0))) != 0)
            break;
        std::memcpy(pTo + offset, pFrom + offset, UnitsPerStep * sizeof(WCHAR));
    }
    for (; offset < end && pFrom[offset] != TEXT('"') && pFrom[offset] != TEXT('&') && pFrom[offset] != 0; ++offset)
        pTo[offset] = pFrom[offset];
    return offset;
}

/// The offset of the first unit from that one on that ends the name of a tag, or is a quote or NUL; length if there is
/// none.
inline int FindNameEnd(const WCHAR* pText, int from, int length)
{
    const auto endsName = [](WCHAR unit) // none is above 63
    { return unit < 64 && (uint64_t{0x4000808500002601} >> unit & 1) != 0; };
    static_assert((1ULL << '\t' | 1ULL << '\n' | 1ULL << '\r' | 1ULL << ' ' | 1ULL << '"' | 1ULL << '\'' | 1ULL << '/' |
                   1ULL << '>' | 1) == 0x4000808500002601);
    // All that ends a name is at most '/', but for the >. Little else is.
    const auto marksOf = [](const WCHAR* pUnits)
    {
        const __m128i units = PackUnits(pUnits);
        const __m128i slash = _mm_set1_epi8('/');
        return MarksOf(
            _mm_or_si128(_mm_cmpeq_epi8(_mm_max_epu8(units, slash), slash), _mm_cmpeq_epi8(units, _mm_set1_epi8('>'))));
    };
    for (; length - from >= ShortUnits; from += ShortUnits)
        for (uint32_t marks = marksOf(pText + from) | marksOf(pText + from + UnitsPerStep) << UnitsPerStep; marks != 0;
             marks &= marks - 1)
        {
            const int at = from + std::countr_zero(marks);
            if (endsName(pText[at]))
                return at;
        }
    while (from < length && !endsName(pText[from]))
        ++from;
    return from;
}
