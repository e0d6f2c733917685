#pragma once
/// Finds an attribute in a plain start tag, block by block. Part of each vector form, for whose processor it is
/// compiled.
#include "platform/compiler.h"
#include "xml/XmlScanner.h"
#include "xml/fast/XmlPlainAttributes.h"
#include "xml/fast/XmlVector.h"

/// Of a block of text: a bit for each unit of that kind; the lowest is the first unit's.
struct TagMarks
{
    uint64_t doubles; ///< "
    uint64_t inside;  ///< from an odd one of them to before the next
    uint64_t equals;  ///< =
    uint64_t stops;   ///< > / ? '
    uint64_t firsts;  ///< the first unit of the name that is asked for
    uint64_t lasts;   ///< its last unit
};

/// What the units read so far say of the first ones of the next block.
struct TagBefore
{
    uint64_t inside = 0; ///< quotes, in every bit
    uint64_t equals = 0; ///< of the last unit
    uint64_t lasts = 0;  ///< where a name may end that began in front
};

/// Whether the name of an attribute, or the beginning of one, stands there; the units are the first of that name.
inline bool StartsAttribute(const WCHAR* pText, int tagName, int first, const WCHAR* pName, int nameLength)
{
    if (first <= tagName)
        return false;
    const WCHAR inFront = pText[first - 1];
    return (IsXmlSpace(inFront) || inFront == TEXT('"')) && EqualUnits(pText + first, pName, nameLength);
}

/// As FindPlainAttribute. MarkTag marks a block for two ASCII units, and returns false if it has a NUL, or may have
/// one. What a block holds does not depend on where things stand in the one before, so that the processor can go ahead
/// with several.
template <bool (*MarkTag)(const WCHAR* pBlock, WCHAR first, WCHAR last, TagMarks& marks)>
VELTRANO_FORCE_INLINE PlainAttribute FindInPlainTag(const WCHAR* pText, int length, int tagName, const WCHAR* pName)
{
    constexpr PlainAttribute notPlain{PlainAttribute::NotPlain};
    const int nameLength = PlainLength(pName);
    if (pName[nameLength] != 0 || nameLength == 0 || nameLength > UnitsPerBlock)
        return notPlain;
    const WCHAR firstUnit = pName[0];
    const WCHAR lastUnit = pName[nameLength - 1];
    if ((firstUnit | lastUnit) >= 0x80)
        return notPlain;

    TagBefore before;
    for (int block = tagName;;)
    {
        FetchAhead(pText + block);
        TagMarks marks;
        if (length - block < UnitsPerBlock || !MarkTag(pText + block, firstUnit, lastUnit, marks))
            return notPlain;
        const uint64_t inside = marks.inside ^ before.inside; // from an opening quote to before the closing one
        const uint64_t outside = ~(inside | marks.doubles);
        const uint64_t stops = marks.stops & outside;
        const uint64_t upToStop = stops ^ (stops - 1);

        // Behind every = a quote, and none opens elsewhere.
        const uint64_t equals = marks.equals & outside;
        const uint64_t faults = (equals << 1 | before.equals) ^ (marks.doubles & inside);
        if ((faults & upToStop) != 0)
            return notPlain;

        const uint64_t lasts = marks.lasts & (marks.firsts << (nameLength - 1) | before.lasts);
        for (uint64_t asked = lasts & outside & upToStop; asked != 0; asked &= asked - 1)
        {
            const int behind = block + std::countr_zero(asked) + 1;
            if (!StartsAttribute(pText, tagName, behind - nameLength, pName, nameLength))
                continue;
            if (pText[behind] == TEXT('=') && pText[behind + 1] == TEXT('"'))
                return {PlainAttribute::Found, behind + 2};
            if (EndsAttributeName(pText[behind]))
                return notPlain;
        }
        if (stops != 0)
            return {pText[block + std::countr_zero(stops)] == TEXT('\'') ? PlainAttribute::NotPlain
                                                                         : PlainAttribute::Missing};

        before = {.inside = 0 - (inside >> (UnitsPerBlock - 1)),
                  .equals = equals >> (UnitsPerBlock - 1),
                  .lasts = marks.firsts >> 1 >> (UnitsPerBlock - nameLength)};
        block += UnitsPerBlock;
        if (inside == ~uint64_t{0})
            block = FindUnit(pText, block, length, TEXT('"'));
    }
}
