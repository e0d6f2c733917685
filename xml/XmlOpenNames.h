#pragma once
/// Finds the open element that an end tag ends, however many elements are open and whatever their names look like.
#include "platform/text.h"

#include <algorithm>
#include <map>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

/// The names of the open elements. An end tag ends the innermost element whose name it equals up to the name's end or
/// up to one of "=[]" in it: </a> ends <a>, <a=b> and <a[1]>, but </a=> ends none of these.
/// So every name is entered under each of its beginnings that end at such a unit, and one look-up answers for all
/// names. A beginning is stored as the one before it and the part that follows, which keeps the work linear in the
/// names.
class COpenNames
{
public:
    using Name = std::basic_string_view<WCHAR>;

    /// Takes over the list of elements open now: table indexes, outermost first. nameOf gives the name of an index; the
    /// names must stay where they are.
    template <typename NameOf>
    void Follow(std::span<const int> open, NameOf nameOf);

    /// The depth of the innermost element that an end tag of that name ends, 1 for the outermost; 0 if there is none.
    int FindInnermost(Name name) const;

private:
    struct CBeginning
    {
        int number;        ///< counted from 1; 0 is the empty beginning
        int innermost = 0; ///< depth of the innermost open element with this beginning, 0 for none
    };
    struct CEntry
    {
        CBeginning* pBeginning;
        int outer; ///< its innermost element before this one was entered
    };
    struct CElement
    {
        int index;
        size_t firstEntry;
    };

    void Enter(int index, Name name);
    void RemoveLast();

    std::map<std::pair<int, Name>, CBeginning> m_beginnings; ///< by the number of the one before and the last part
    std::vector<CElement> m_elements;                        ///< outermost first
    std::vector<CEntry> m_entries;                           ///< of all elements, in their order
};

template <typename NameOf>
void COpenNames::Follow(std::span<const int> open, NameOf nameOf)
{
    // An element that was opened later has a greater index, so what is still open is a common beginning of both lists.
    while (m_elements.size() > open.size() ||
           (!m_elements.empty() && m_elements.back().index != open[m_elements.size() - 1]))
        RemoveLast();
    for (size_t i = m_elements.size(); i < open.size(); ++i)
        Enter(open[i], nameOf(open[i]));
}
