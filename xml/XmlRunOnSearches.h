#pragma once
/// Keeps searches for attributes that leave their start tag linear in the text.
#include <afxstr.h>

#include <map>
#include <optional>
#include <unordered_map>
#include <vector>

/// The outcomes of attribute searches that went on after the end of their start tag, as in "<a b=>", where the > is a
/// value. Such a search can run to the end of the text, and so can the search from every element on its way. But two
/// searches for one name are the same from the first token on that both come to, so the later one takes the outcome of
/// the earlier one there. Offsets count UTF-16 code units.
class CRunOnSearches
{
public:
    /// Where the value stands, as XmlScanner has it.
    struct COutcome
    {
        bool isFound;
        int first;
        int last;
    };
    using Offsets = std::vector<int>;

    /// For the search for a name that comes to a token after its start tag, with nothing matched yet: the outcome if an
    /// earlier search came by. Otherwise passed notes the token if it is the first one in its part of the text.
    std::optional<COutcome> Join(const CString& name, int token, Offsets& passed) const;
    /// Stores the outcome of the search that passed those tokens.
    void Add(const CString& name, const Offsets& passed, COutcome outcome);
    void Clear() { m_outcomes.clear(); }

private:
    std::map<CString, std::unordered_map<int, COutcome>> m_outcomes; ///< by name and offset of a token
};
