#include "xml/XmlRunOnSearches.h"

std::optional<CRunOnSearches::COutcome> CRunOnSearches::Join(const CString& name, int token, Offsets& passed) const
{
    constexpr int unitsPerPart = 64; // one noted token for so many units bounds the memory
    if (!passed.empty() && passed.back() / unitsPerPart == token / unitsPerPart)
        return std::nullopt;
    if (const auto ofName = m_outcomes.find(name); ofName != m_outcomes.end())
        if (const auto found = ofName->second.find(token); found != ofName->second.end())
            return found->second;
    passed.push_back(token);
    return std::nullopt;
}

void CRunOnSearches::Add(const CString& name, const Offsets& passed, COutcome outcome)
{
    for (const int token : passed)
        m_outcomes[name].emplace(token, outcome);
}
