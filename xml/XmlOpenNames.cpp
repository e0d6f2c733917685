#include "xml/XmlOpenNames.h"

namespace
{
/// Removes and returns the first part of a name: up to the next of "=[]" after its first unit.
COpenNames::Name TakePart(COpenNames::Name& name)
{
    const COpenNames::Name part = name.substr(0, name.find_first_of(TEXT("=[]"), 1));
    name.remove_prefix(part.size());
    return part;
}
} // namespace

void COpenNames::Enter(int index, Name name)
{
    m_elements.push_back({index, m_entries.size()});
    const int depth = static_cast<int>(m_elements.size());
    for (int before = 0; !name.empty();)
    {
        const int newNumber = static_cast<int>(m_beginnings.size()) + 1;
        CBeginning& beginning = m_beginnings.try_emplace({before, TakePart(name)}, CBeginning{newNumber}).first->second;
        m_entries.push_back({&beginning, beginning.innermost});
        beginning.innermost = depth;
        before = beginning.number;
    }
}

void COpenNames::RemoveLast()
{
    for (const size_t first = m_elements.back().firstEntry; m_entries.size() > first; m_entries.pop_back())
        m_entries.back().pBeginning->innermost = m_entries.back().outer;
    m_elements.pop_back();
}

int COpenNames::FindInnermost(Name name) const
{
    CBeginning beginning{0};
    while (!name.empty())
    {
        const auto found = m_beginnings.find({beginning.number, TakePart(name)});
        if (found == m_beginnings.end())
            return 0;
        beginning = found->second;
    }
    return beginning.innermost;
}
