#pragma once
/// Compares the module's document with its plain second form, for tests and fuzzing.
#include "tests/reference/PlainXml.h"
#include "xml/XmlDocument.h"

#include <string>

/// Keeps both documents, so that what has held a text before is compared with what is fresh.
class CBothForms
{
public:
    /// Parses the text with each version of the hot loops, twice, so that the table and the messages of the first time
    /// are there at the second, and walks. Returns the first thing in which the two forms differ; empty if they agree.
    std::string Compare(const WString& text);

private:
    void CompareWith(const WString& text, const XmlVectorLoops& loops);
    void CompareTables();
    void CompareCursors();
    void Walk();
    void Same(const char* pWhat, int64_t module, int64_t plain);
    void Same(const char* pWhat, const CString& module, const CString& plain);

    CXmlDocument m_module;
    CPlainXml m_plain;
    std::string m_difference;
};

/// ASCII as it is, other units as escape sequences, in quotes: a literal to paste into a test.
std::string Printable(const WString& text);
