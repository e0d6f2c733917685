#pragma once
/// Cuts a text into XML nodes. Knows nothing of the tree. Texts are NUL-terminated and end at their first NUL; offsets
/// and lengths count UTF-16 code units.
#include "xml/fast/XmlUnits.h"

#include <afxstr.h>

/// The types of nodes.
enum XmlNodeType : int
{
    NodeEndOfText = -2,
    NodeError = -1, ///< a broken node, with a message in place of its name
    NodeEndTag = 0,
    NodeElement = 1, ///< a start tag or an empty-element tag
    NodeText = 2,    ///< text that is not all white space
    NodeWhitespace = 4,
    NodeCData = 8,
    NodeProcessingInstruction = 16,
    NodeComment = 32,
    NodeDoctype = 64, ///< a doctype with everything in it, or a single declaration
};

/// A cursor over a text, with the last token read.
struct XmlScanner
{
    int first = 0;      ///< offset of the token's first unit
    int last = -1;      ///< offset of its last unit; less than first for an empty token
    int next = 0;       ///< where scanning continues
    const WCHAR* text;  ///< NUL-terminated, borrowed; must outlive the scanner
    unsigned flags = 0; ///< QuotedTokenFlag
    int savedStart = 0; ///< ScanAttribute: where the white space before the matched name begins
    int savedGap = 0;   ///< ScanAttribute: length of that white space
};

/// In XmlScanner::flags: the token was in quotes.
constexpr unsigned QuotedTokenFlag = 0x8000;

/// One node of the text.
struct XmlNodeEntry
{
    int nodeType = NodeEndOfText; ///< an XmlNodeType
    int start = 0;                ///< offset of the first unit, for markup the <
    int length = 0;
    unsigned flags = 0; ///< EmptyElementFlag
    CString name;       ///< of an element or processing instruction; the message of a NodeError; else unchanged
};

/// In XmlNodeEntry::flags: the tag ended in "/>".
constexpr unsigned EmptyElementFlag = 0x10000;

/// Reads the node at scanner.next, moves scanner.next to the end of the node and fills entry. For an end tag the
/// scanner's token is the tag's name. Returns the node's type; NodeEndOfText at the end.
int ReadNode(XmlScanner& scanner, XmlNodeEntry& entry);

/// Returns the scanner's token; empty if it has none.
CString GetTokenText(const XmlScanner& scanner);

/// Whether the start tag with that > is an empty-element tag. The / counts directly after the name, white space or a
/// quote, so that the unquoted value in "<a href=x/>" keeps its slash. nameEnd: offset after the tag's name.
inline bool IsEmptyElementTag(const WCHAR* pText, int nameEnd, int tagEnd)
{
    const int slash = tagEnd - 1;
    if (slash < nameEnd || pText[slash] != TEXT('/'))
        return false;
    return slash == nameEnd || IsIn(pText[slash - 1], XmlSpace | XmlQuote);
}
