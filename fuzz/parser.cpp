// Input: UTF-16LE text. For any text, the table points into it, its links form a tree in document order, and the plain
// document of the tests gives the same table, messages, elements and attributes.
#include "fuzz/Fuzz.h"
#include "tests/reference/BothForms.h"
#include "xml/XmlAttributes.h"
#include "xml/XmlDocument.h"

#include <algorithm>
#include <string>
#include <vector>

namespace
{
// End tags of 2^10 units and more lose bits of their length; shorter texts have none.
constexpr int s_exactTagLengths = 1 << 10;

int StartTagLength(const XmlElementPosition& element)
{
    return static_cast<int>(element.tagLengths & StartTagLengthMask);
}

int EndTagLength(const XmlElementPosition& element)
{
    return static_cast<int>(element.tagLengths >> StartTagLengthBits);
}

/// Checks the table of one parsed document.
class CTableCheck
{
public:
    CTableCheck(const CXmlDocument& document, bool isFaultless)
        : m_document(document),
          m_pText(document.m_text.GetString()),
          m_end(static_cast<int>(wcslen(m_pText))),
          m_isFaultless(isFaultless)
    {
    }

    void Run()
    {
        const XmlElementPosition& root = m_document.At(0);
        Require(root.start == 0 && root.length == m_document.m_text.GetLength(), "record 0 is the whole text");
        Require(root.parent == 0 && root.nextSibling == 0, "record 0 is nobody's child");
        for (int i = 1; i < m_document.m_usedPositions; ++i)
            CheckPlace(m_document.At(i));
        VisitInOrder();
        Require(m_visited == m_document.m_usedPositions - 1, "the links reach every element");
        Require(!m_isFaultless || m_unended == 0, "a faultless text has no unended element");
    }

private:
    /// One element by itself.
    void CheckPlace(const XmlElementPosition& element) const
    {
        Require(element.start >= 0 && element.length > 0 && element.length <= m_end - element.start,
                "an element lies inside the text");
        const WCHAR* pElement = m_pText + element.start;
        const int startTag = StartTagLength(element);
        Require(pElement[0] == TEXT('<') && startTag <= element.length && pElement[startTag - 1] == TEXT('>'),
                "the start tag's length matches it");
        if (m_end >= s_exactTagLengths)
            return;
        const int endTag = EndTagLength(element);
        if (endTag == 0)
        {
            Require(element.length == startTag, "without an end tag the start tag is all");
            return;
        }
        const WCHAR* pEndTag = pElement + element.length - endTag;
        Require(startTag + endTag <= element.length && wcsncmp(pEndTag, TEXT("</"), 2) == 0 &&
                    pEndTag[endTag - 1] == TEXT('>'),
                "the end tag's length matches it");
        Require((element.levelAndFlags & UnendedFlag) == 0, "an ended element is not unended");
    }

    /// Walks the links depth first. If the elements come in the order of their indexes, there is no loop. There can be
    /// too many levels for recursion.
    void VisitInOrder()
    {
        std::vector<int> open{0};
        int previous = 0; // sibling
        int next = m_document.At(0).firstChild;
        for (;;)
        {
            if (next == 0)
            {
                CloseChain(open.back(), previous);
                previous = open.back();
                open.pop_back();
                if (open.empty())
                    return;
                next = m_document.At(previous).nextSibling;
                continue;
            }
            Require(next == ++m_visited && next < m_document.m_usedPositions, "elements link in document order");
            CheckLinks(next, open, previous);
            open.push_back(next);
            previous = 0;
            next = m_document.At(next).firstChild;
        }
    }

    void CheckLinks(int index, const std::vector<int>& open, int previous)
    {
        const XmlElementPosition& element = m_document.At(index);
        const XmlElementPosition& parent = m_document.At(open.back());
        Require(element.parent == open.back(), "a child knows its parent");
        const bool isFirst = previous == 0;
        Require(isFirst || element.prevSibling == previous, "a later sibling knows the one before");
        Require(!isFirst || (element.levelAndFlags & FirstChildFlag) != 0, "a first child is marked");
        const int from = isFirst ? parent.start : m_document.At(previous).start + m_document.At(previous).length;
        Require(element.start >= from, "siblings do not overlap");
        Require(open.back() == 0 || element.start + element.length <= parent.start + parent.length,
                "a child lies inside its parent");
        const unsigned level = element.levelAndFlags & LevelMask;
        const auto depth = static_cast<unsigned>(open.size() - 1);
        Require(level >= (depth & LevelMask), "an element keeps the level at which it was met, or rose from there");
        if ((element.levelAndFlags & UnendedFlag) != 0)
        {
            ++m_unended;
            Require(element.firstChild == 0, "an unended element has no children");
        }
        if (!m_isFaultless)
            return;
        Require(level == (depth & LevelMask), "the level is the depth");
        Require(isFirst == ((element.levelAndFlags & FirstChildFlag) != 0), "only a first child is marked");
    }

    void CloseChain(int parent, int last) const
    {
        const int first = m_document.At(parent).firstChild;
        Require(first == 0 || !m_isFaultless || m_document.At(first).prevSibling == last,
                "a first child knows the last one of its chain");
    }

    const CXmlDocument& m_document;
    const WCHAR* m_pText;
    int m_end; ///< of the text as the parser sees it: up to the first NUL
    bool m_isFaultless;
    int m_visited = 0;
    int m_unended = 0;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t size)
{
    const CExactText text(pData, size);
    CXmlDocument document;
    document.m_text = CString(text.Get(), text.GetLength());
    document.m_result.Empty();
    const bool isFaultless = document.Parse();
    Require(isFaultless == document.m_result.IsEmpty(), "there is a message if there is a fault");
    CTableCheck(document, isFaultless).Run();

    const std::string difference = CBothForms().Compare(WString(text.Get(), static_cast<size_t>(text.GetLength())));
    Require(difference.empty(), difference.c_str());

    const int half = text.GetLength() / 2; // cuts through references
    Require(DecodeEntities(text.Get(), half).GetLength() <= half, "a decoded value is no longer than its text");

    // A document that already has a table parses the next text as a new document does.
    CXmlDocument fresh;
    Require(document.SetText(text.Get()) == fresh.SetText(text.Get()) && document.m_result == fresh.m_result &&
                document.m_usedPositions == fresh.m_usedPositions,
            "a used document parses as a new one");
    return 0;
}
