#pragma once
#include <afxstr.h>

#include <string>
#include <vector>

/// UTF-8; a lone surrogate becomes U+FFFD.
std::string ToUtf8(const CString& text);
/// UTF-8 on one line of at most that many units: control characters and backslashes escaped, the end cut to an
/// ellipsis.
std::string ToOneLine(const CString& text, int units);

/// Rows of UTF-8 cells, printed in columns as wide as their widest cell in code points.
class CTable
{
public:
    explicit CTable(std::vector<std::string> header) { AddRow(std::move(header)); }
    void AddRow(std::vector<std::string> cells) { m_rows.push_back(std::move(cells)); }
    void Print() const;

private:
    std::vector<std::vector<std::string>> m_rows;
};
