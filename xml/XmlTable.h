#pragma once
/// The table of element positions: its records and the memory they lie in.
#include <cstdlib>
#include <memory>

/// Where an element is in the text and how it is linked: one record of the table. Links are table indexes, 0 for none.
/// Offsets and lengths count UTF-16 code units. A length or level that is too large for its bits loses the high ones
/// and changes no other field.
struct XmlElementPosition
{
    int start;              ///< offset of the < of the start tag
    int length;             ///< through the > of the end tag; of an unended element only the start tag
    unsigned tagLengths;    ///< low 22 bits: start tag; high 10 bits: end tag, 0 if there is none
    unsigned levelAndFlags; ///< low 16 bits: nesting level, 0 for a top-level element; high 16 bits: flags
    int parent;
    int firstChild;
    int nextSibling;
    int prevSibling; ///< in a first child the last one of the chain, so that appending needs no walk
};

constexpr int StartTagLengthBits = 22;
constexpr unsigned StartTagLengthMask = (1U << StartTagLengthBits) - 1;
constexpr unsigned LevelMask = 0xFFFF;

/// In XmlElementPosition::levelAndFlags.
constexpr unsigned FirstChildFlag = 0x80000;
constexpr unsigned UnendedFlag = 0x100000;           ///< the end tag never came
constexpr unsigned IllFormedFlag = 0x200000;         ///< a fault was met directly inside the element
constexpr unsigned DocumentIllFormedFlag = 0x800000; ///< on record 0 only: the text has at least one fault

/// An index is a segment number and a slot in the segment.
constexpr int SegmentBits = 16;
constexpr int RecordsPerSegment = 1 << SegmentBits;

/// Part of the table. On the C runtime's heap, where it can often grow in place.
struct XmlSegmentDeleter
{
    void operator()(XmlElementPosition* pRecords) const { std::free(pRecords); }
};
using XmlSegment = std::unique_ptr<XmlElementPosition[], XmlSegmentDeleter>;
