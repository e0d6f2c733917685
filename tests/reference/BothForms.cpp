#include "tests/reference/BothForms.h"

#include "platform/compiler.h"

#include <array>
#include <cstdio>

std::string Printable(const WString& text)
{
    std::string result;
    for (const WCHAR c : text)
    {
        char hex[16];
        std::snprintf(hex, sizeof hex, "\\x%x\" \"", static_cast<unsigned>(c));
        result += c < 0x20 || c > 0x7E ? hex : std::string(c == '"' || c == '\\', '\\') + static_cast<char>(c);
    }
    return "\"" + result + "\"";
}

std::string CBothForms::Compare(const WString& text)
{
    CompareWith(text, s_sse2Loops);
    if (HasAvx2())
        CompareWith(text, s_avx2Loops);
    return m_difference;
}

void CBothForms::CompareWith(const WString& text, const XmlVectorLoops& loops)
{
    UseVectorLoops(loops);
    m_module.m_text = m_plain.m_text = CString(text.c_str(), static_cast<int>(text.size()));
    m_module.m_result.Empty();
    m_plain.m_result.Empty();
    Same("Parse", m_module.Parse(), m_plain.Parse());
    CompareTables();
    Same("Parse again", m_module.Parse(), m_plain.Parse());
    CompareTables();
    Walk();
}

void CBothForms::CompareTables()
{
    Same("m_result", m_module.m_result, m_plain.m_result);
    Same("m_faultOffset", m_module.m_faultOffset, m_plain.m_faultOffset);
    Same("m_capacity", m_module.m_capacity, m_plain.m_capacity);
    Same("m_segmentSlots", m_module.m_segmentSlots, m_plain.m_segmentSlots);
    Same("m_usedPositions", m_module.m_usedPositions, static_cast<int64_t>(m_plain.m_records.size()));
    CompareCursors();
    const auto fields = [](const XmlElementPosition& r)
    {
        return std::array<int64_t, 8>{r.start,  r.length,     r.tagLengths,  r.levelAndFlags,
                                      r.parent, r.firstChild, r.nextSibling, r.prevSibling};
    };
    const char* const names[] = {"start",  "length",     "tagLengths",  "levelAndFlags",
                                 "parent", "firstChild", "nextSibling", "prevSibling"};
    for (int i = 0; m_difference.empty() && i < m_module.m_usedPositions; ++i)
        if (const auto module = fields(m_module.At(i)), plain = fields(m_plain.m_records[i]); module != plain)
            for (size_t field = 0; field < module.size(); ++field)
                Same(("record " + std::to_string(i) + " " + names[field]).c_str(), module[field], plain[field]);
}

// From every element, in a long table from some: its attributes, and its children, by each name.
void CBothForms::Walk()
{
    static constexpr const WCHAR* s_names[] = {TEXT("a"),        TEXT("a[1]"),       TEXT("b="),
                                               TEXT("\u00FC x"), TEXT("b\u00FC"),    TEXT(""),
                                               TEXT("a\"b"),     TEXT("longerName"), nullptr};
    const int used = m_module.m_usedPositions;
    for (int i = 0; m_difference.empty() && i < used; i += used / 40 + 1)
        for (const WCHAR* pName : s_names)
        {
            m_module.m_parentPos = m_plain.m_parentPos = m_plain.m_records[i].parent;
            m_module.m_currentPos = m_plain.m_currentPos = i;
            m_module.m_nodeType = m_plain.m_nodeType = i == 0 ? 0 : NodeElement;
            Same("GetAttribute", m_module.GetAttribute(pName), m_plain.GetAttribute(i, pName));
            Same("GetAttributeAt", m_module.GetAttributeAt(used - 1, pName), m_plain.GetAttribute(used - 1, pName));
            m_module.EnterElement();
            m_plain.EnterElement();
            CompareCursors();
            bool found = true;
            for (int count = 0; found && count < 20; ++count)
            {
                found = m_module.FindElement(pName);
                Same("FindElement", found, m_plain.FindElement(pName));
                CompareCursors();
            }
        }
}

void CBothForms::CompareCursors()
{
    Same("m_parentPos", m_module.m_parentPos, m_plain.m_parentPos);
    Same("m_currentPos", m_module.m_currentPos, m_plain.m_currentPos);
    Same("m_nodeType", m_module.m_nodeType, m_plain.m_nodeType);
}

void CBothForms::Same(const char* pWhat, int64_t module, int64_t plain)
{
    if (module != plain && m_difference.empty())
        m_difference = pWhat + (": " + std::to_string(module)) + " in the module, plainly " + std::to_string(plain);
}

void CBothForms::Same(const char* pWhat, const CString& module, const CString& plain)
{
    const auto units = [](const CString& text)
    { return WString(text.GetString(), static_cast<size_t>(text.GetLength())); };
    if (m_difference.empty() && units(module) != units(plain))
        m_difference = pWhat + (": " + Printable(units(module))) + " in the module, plainly " + Printable(units(plain));
}
