#pragma once
/// What command-line programs need of the system in both builds.
#include "platform/text.h"

#include <cstdio>
#include <vector>

/// The program's arguments without its own name, UTF-16 (from UTF-8 outside Windows).
std::vector<WString> GetProgramArguments();
/// Writes text as UTF-8; a lone surrogate becomes U+FFFD.
void PrintText(FILE* pStream, const WString& text);
/// The whole of standard input as UTF-16, read as UTF-8 with no translation of line ends.
WString ReadStandardInput();
/// Writes the bytes as they are, with no translation of line ends.
void WriteStandardOutput(const std::string& bytes);
