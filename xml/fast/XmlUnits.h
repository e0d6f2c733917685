#pragma once
/// The character classes of the XML engine, in one table, and short searches that use them.
/// All of it works on UTF-16 code units; lengths and offsets count them.
#include "platform/text.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <emmintrin.h>

/// A set of classes. NUL, which ends the text, is in each class that ends something.
enum XmlUnitClass : uint8_t
{
    XmlSpace = 1,
    XmlQuote = 2,
    NotNameStart = 4,        ///< cannot be the first unit of a tag's name
    EndsTagName = 8,         ///< ends the name in a tag for the parser
    EndsFoundName = 16,      ///< ends an element's name when an element is looked for; more than EndsTagName
    EndsAttributeName = 32,  ///< ends an attribute's name or a mark such as =
    EndsUnquotedValue = 64,  ///< ends an attribute's value that has no quotes
    EndsRequestedName = 128, ///< ends the name that a caller asks for
};

constexpr std::array<uint8_t, 128> MakeXmlUnitClasses()
{
    std::array<uint8_t, 128> classes{};
    const auto add = [&classes](const WCHAR* pUnits, int unitClasses)
    {
        for (; *pUnits != 0; ++pUnits)
            classes[*pUnits] = static_cast<uint8_t>(classes[*pUnits] | unitClasses);
    };
    classes[0] = EndsTagName | EndsFoundName | EndsAttributeName | EndsUnquotedValue | EndsRequestedName;
    add(TEXT(" \t\n\r"), XmlSpace | EndsTagName | EndsFoundName | EndsAttributeName | EndsUnquotedValue);
    add(TEXT("\"'"), XmlQuote);
    add(TEXT(">"), EndsTagName | EndsFoundName | EndsAttributeName | EndsUnquotedValue);
    add(TEXT("/"), EndsTagName | EndsFoundName | EndsAttributeName);
    add(TEXT("<=\\?!"), EndsFoundName);
    add(TEXT("=?"), EndsAttributeName);
    add(TEXT(" =/[]"), EndsRequestedName);
    for (int unit = 0; unit <= '9'; ++unit)
        classes[static_cast<size_t>(unit)] |= NotNameStart;
    add(TEXT(";<=>?@[\\]^`"), NotNameStart);
    return classes;
}
inline constexpr std::array<uint8_t, 128> XmlUnitClasses = MakeXmlUnitClasses();

/// Whether the unit is in one of the classes; nothing beyond ASCII is.
inline bool IsIn(WCHAR unit, unsigned classes)
{
    return unit < XmlUnitClasses.size() && (XmlUnitClasses[unit] & classes) != 0;
}

/// Whether the first length units of both are the same.
inline bool EqualUnits(const WCHAR* pLeft, const WCHAR* pRight, int length)
{
    constexpr int unitsPerWord = sizeof(uint64_t) / sizeof(WCHAR);
    const auto wordAt = [](const WCHAR* pUnits)
    {
        uint64_t word;
        std::memcpy(&word, pUnits, sizeof word);
        return word;
    };
    int i = 0;
    for (; length - i > unitsPerWord; i += unitsPerWord)
        if (wordAt(pLeft + i) != wordAt(pRight + i))
            return false;
    if (length >= unitsPerWord)
        return wordAt(pLeft + length - unitsPerWord) == wordAt(pRight + length - unitsPerWord);
    while (i < length && pLeft[i] == pRight[i])
        ++i;
    return i == length;
}

constexpr int UnitsPerStep = 16;

/// 16 units as bytes. ASCII keeps its value; other units become 0 or more than 0x7F. A 0 can come from a NUL or from a
/// unit of 0x8000 and above.
inline __m128i PackUnits(const WCHAR* pUnits)
{
    const auto* pHalves = reinterpret_cast<const __m128i*>(pUnits);
    return _mm_packus_epi16(_mm_loadu_si128(pHalves), _mm_loadu_si128(pHalves + 1));
}

/// A bit for each byte that is all ones; the lowest is the first byte's.
inline unsigned BitsOf(__m128i bytes)
{
    return static_cast<unsigned>(_mm_movemask_epi8(bytes));
}

constexpr int ShortUnits = 2 * UnitsPerStep;

/// A bit for each of ShortUnits units that is ", & or, possibly, NUL.
inline uint32_t FindValueStops(const WCHAR* pUnits)
{
    const auto stopsOf = [](__m128i bytes)
    {
        const auto equals = [bytes](char unit) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(unit)); };
        return BitsOf(_mm_or_si128(_mm_or_si128(equals('"'), equals('&')), equals(0)));
    };
    return stopsOf(PackUnits(pUnits)) | stopsOf(PackUnits(pUnits + UnitsPerStep)) << UnitsPerStep;
}

/// Returns the offset, from that one on, of the first unit that ends a tag's name or is a quote; length if there is
/// none.
inline int FindTagNameEnd(const WCHAR* pText, int from, int length)
{
    // Most units up to '/' end a name, and only > does above.
    const auto candidatesOf = [](const WCHAR* pUnits)
    {
        const __m128i bytes = PackUnits(pUnits);
        const __m128i slash = _mm_set1_epi8('/');
        return BitsOf(
            _mm_or_si128(_mm_cmpeq_epi8(_mm_max_epu8(bytes, slash), slash), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('>'))));
    };
    for (; length - from >= ShortUnits; from += ShortUnits)
        for (uint32_t candidates = candidatesOf(pText + from) | candidatesOf(pText + from + UnitsPerStep)
                                                                    << UnitsPerStep;
             candidates != 0; candidates &= candidates - 1)
        {
            const int at = from + std::countr_zero(candidates);
            if (IsIn(pText[at], EndsTagName | XmlQuote))
                return at;
        }
    while (from < length && !IsIn(pText[from], EndsTagName | XmlQuote))
        ++from;
    return from;
}
