#pragma once
/// Finds the ends of start tags, for many tags at once.
#include "xml/fast/XmlVector.h"

#include <climits>

/// The index of consecutive blocks: where quotes are open and where tags end.
struct XmlTagBlocks
{
    static constexpr int Capacity = 32; ///< blocks
    static constexpr int NoEnd = INT_MAX;

    int first = 0;             ///< offset of the first block
    unsigned length = 0;       ///< units in the index
    WCHAR openQuote = 0;       ///< open after these blocks, before indexing: in front of them; 0: none
    uint64_t inside[Capacity]; ///< of each block, a bit for each unit from an opening quote to before the closing one
    int tagEnds[Capacity * UnitsPerBlock + 1]; ///< offsets of the > outside quotes, then NoEnd
};

/// Finds the end of each start tag of a text, in order. A few blocks of the text are indexed at a time; most tags are
/// answered from the index. Reading the index and extending it are separate, so that the loop that reads tags calls
/// nothing.
class CTagIndex
{
public:
    static constexpr int NotFound = XmlTagBlocks::NoEnd;

    /// pText: length units, borrowed.
    // cppcheck-suppress uninitMemberVar ; the blocks beyond m_blocks.length are not read
    CTagIndex(const WCHAR* pText, int length) : m_pText(pText), m_length(length) {}

    /// Returns the offset of the first > outside quotes from that unit on. The unit is in the name of a start tag that
    /// lies after that of the last call, or is the same. NotFound if the index does not tell; then Extend may help.
    int Find(int from)
    {
        const int end = IsOutsideQuotes(from - 1) || from == m_extendedFor ? FindIndexedEnd(from) : NotFound;
        if (end == NotFound)
            m_missing = from;
        return end;
    }

    /// Extends the index so that it answers the last call of Find. False if that was answered, if there is no such >,
    /// if a NUL is on the way, which ends the text, or if a quote is in the tag's name. There it protects nothing, and
    /// the search from each of many such tags could go on to the end of the text.
    bool Extend();

private:
    /// Whether the index has that unit and no quote is open there. Quotes in the text between tags can be taken for
    /// quotes in a tag; then the index is of no use and starts anew.
    bool IsOutsideQuotes(int offset) const
    {
        const auto unit = static_cast<unsigned>(offset - m_blocks.first); // huge for a unit in front of the blocks
        return unit < m_blocks.length && (m_blocks.inside[unit / UnitsPerBlock] >> unit % UnitsPerBlock & 1) == 0;
    }
    int FindIndexedEnd(int from)
    {
        while (m_blocks.tagEnds[m_nextEnd] < from)
            ++m_nextEnd;
        return m_blocks.tagEnds[m_nextEnd];
    }
    bool IndexNextBlocks();
    bool IndexFrom(int first);
    void IndexLastUnits(int first);

    const WCHAR* const m_pText;
    const int m_length;
    int m_missing = NotFound;     ///< what the last Find was asked for, if the index did not tell
    int m_extendedFor = NotFound; ///< the Find that Extend worked for: its tag may begin in front of the blocks
    int m_blocksAtOnce = 1;
    int m_nextEnd = 0; ///< the first of m_blocks.tagEnds not yet passed
    XmlTagBlocks m_blocks;
};
