#include "xml/XmlPlainAttributes.h"
#include "xml/XmlScanner.h"
#include "xml/XmlVector.h"

#include <algorithm>

namespace
{
constexpr PlainAttribute s_notPlain{PlainAttribute::NotPlain};
constexpr uint64_t AllUnits = ~uint64_t{0};

/// The tag as far as it was read: what its last units say of the first ones of the next block.
struct Before
{
    uint64_t inside = 0; ///< quotes, in every bit
    uint64_t equals = 0; ///< of the last unit
    uint64_t names = 0;  ///< likewise
    uint64_t lasts = 0;  ///< of the last two
};

/// A start tag, read block by block. What a block holds does not depend on where things stand in the one before, so
/// that the processor can go ahead with several.
class CPlainTag
{
public:
    CPlainTag(const WCHAR* pText, int length, int tagName, const WCHAR* pName)
        : m_pText(pText), m_length(length), m_tagName(tagName), m_pName(pName)
    {
    }

    PlainAttribute Find();

private:
    bool IsAsked(int quote) const;
    PlainAttribute ValueFrom(int first, int block, uint64_t closes) const;

    const WCHAR* const m_pText;
    const int m_length;
    const int m_tagName;
    const WCHAR* const m_pName;
    int m_nameLength = 0;
};

PlainAttribute CPlainTag::Find()
{
    while (!EndsAskedName(m_pName[m_nameLength]))
        ++m_nameLength;
    if (m_pName[m_nameLength] != 0 || m_nameLength == 0)
        return s_notPlain;
    const WCHAR lastUnit = m_pName[m_nameLength - 1];
    if (lastUnit >= 0x80 || !StartsName(m_pText[m_tagName]))
        return s_notPlain;

    const auto pMarkTag = VectorSteps().pMarkTag;
    Before before;
    for (int block = m_tagName;;)
    {
        TagMarks marks;
        if (m_length - block < UnitsPerBlock || !pMarkTag(m_pText + block, lastUnit, marks))
            return s_notPlain;
        const uint64_t inside = marks.inside ^ before.inside; // from an opening quote to before the closing one
        const uint64_t opens = marks.doubles & inside;
        const uint64_t closes = marks.doubles & ~inside;
        const uint64_t outside = ~(inside | marks.doubles);
        const uint64_t stops = marks.others & outside;
        const uint64_t equals = marks.equals & outside;
        const uint64_t names = outside & ~(equals | stops | marks.spaces);

        // Behind every name a =, but for the tag's own, and behind every = a quote.
        const uint64_t behindEquals = equals << 1 | before.equals;
        uint64_t nameEnds = (names << 1 | before.names) & ~names;
        if (block == m_tagName)
            nameEnds &= nameEnds - 1;
        const uint64_t faults = (nameEnds ^ equals) | (behindEquals ^ opens);
        const uint64_t upToStop = stops ^ (stops - 1);
        if ((faults & upToStop) != 0)
            return s_notPlain;

        for (uint64_t asked = opens & (marks.lasts << 2 | before.lasts) & upToStop; asked != 0; asked &= asked - 1)
        {
            const int quote = block + std::countr_zero(asked);
            if (IsAsked(quote))
                return ValueFrom(quote + 1, block, closes);
        }
        if (stops != 0)
            return m_pText[block + std::countr_zero(stops)] == TEXT('\'') ? s_notPlain
                                                                          : PlainAttribute{PlainAttribute::Missing};

        before = {.inside = 0 - (inside >> (UnitsPerBlock - 1)),
                  .equals = equals >> (UnitsPerBlock - 1),
                  .names = names >> (UnitsPerBlock - 1),
                  .lasts = marks.lasts >> (UnitsPerBlock - 2)};
        block += UnitsPerBlock;
        if (inside == AllUnits)
            block = FindUnit(m_pText, block, m_length, TEXT('"'));
    }
}

/// Whether the value in that opening quote, which a = stands before, has the name.
bool CPlainTag::IsAsked(int quote) const
{
    const int name = quote - 1 - m_nameLength;
    if (name <= m_tagName || !std::equal(m_pName, m_pName + m_nameLength, m_pText + name))
        return false;
    const WCHAR before = m_pText[name - 1];
    return IsXmlSpace(before) || before == TEXT('"');
}

/// closes: the closing quotes of the block, in which or before which the value begins.
PlainAttribute CPlainTag::ValueFrom(int first, int block, uint64_t closes) const
{
    const uint64_t ahead = first - block < UnitsPerBlock ? closes & AllUnits << (first - block) : 0;
    if (ahead != 0)
        return {PlainAttribute::Found, first, block + std::countr_zero(ahead)};
    const int next = block + UnitsPerBlock;
    const int end = FindUnit(m_pText, next, next + std::min(UnitsPerStep, m_length - next), TEXT('"'));
    return {m_pText[end] == TEXT('"') ? PlainAttribute::Found : PlainAttribute::Open, first, end};
}
} // namespace

PlainAttribute FindPlainAttribute(const WCHAR* pText, int length, int tagName, const WCHAR* pName)
{
    return CPlainTag(pText, length, tagName, pName).Find();
}
