#pragma once
#include "platform/console/console.h"
#include "tools/vltconfig/Commands.h"
#include <afxstr.h>

#include <string>
#include <string_view>
#include <vector>

using TextView = std::basic_string_view<WCHAR>;
inline TextView ViewOf(const CString& text)
{
    return {text.GetString(), static_cast<size_t>(text.GetLength())};
}

/// Prints a message with the program's name on standard error. Returns ExitFault.
int Complain(TextView message);
int Complain(const WString& path, TextView what);

/// One line of at most that many units; backslashes are doubled, and the end is cut to an ellipsis.
std::string ToOneLine(TextView text, size_t units);
/// "1 record", "2 records".
std::string Count(size_t count, const char* pNoun);
/// A text line by line, each after the prefix.
void PrintLines(const std::string& prefix, TextView text);

/// Rows of UTF-8 cells, printed in columns as wide as their widest cell in code points. On a terminal the header is
/// bold, and the last column is cut to its width.
class CTable
{
public:
    explicit CTable(std::vector<std::string> header) { AddRow(std::move(header)); }
    void AddRow(std::vector<std::string> cells) { m_rows.push_back(std::move(cells)); }
    /// isLong: nothing is cut.
    void Print(bool isLong = false) const;

private:
    std::vector<std::vector<std::string>> m_rows;
};
