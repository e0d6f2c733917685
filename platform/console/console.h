#pragma once
/// What command-line programs need of the system in both builds.
#include "platform/text.h"

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

/// Runs the program with its arguments and gives its exit code. An exception becomes a message and exit code 1, and so
/// does output that cannot be written. A standard stream that is closed stays unusable: no file takes its place.
int RunConsoleProgram(const char* pName, int (*pRun)(const std::vector<WString>& arguments));

/// The program's arguments without its own name, UTF-16 (from UTF-8 outside Windows). Throws std::runtime_error for one
/// that is not valid Unicode: it would name another file.
std::vector<WString> GetProgramArguments();

/// Writes text as UTF-8; a lone surrogate becomes U+FFFD.
void PrintText(FILE* pStream, const WString& text);

enum class Backslash
{
    Keep,  ///< in messages and paths
    Double ///< where an escape must not be mistaken for text
};
/// UTF-8 for people: control characters, which could command a terminal, and lone surrogates become \x1b; and so on.
std::string Printable(std::basic_string_view<WCHAR> text, Backslash backslash = Backslash::Keep);

/// Appends the whole of standard input, with no translation of line ends. False if it cannot be read.
bool ReadStandardInput(std::string& bytes);
/// Writes the bytes as they are, with no translation of line ends.
void WriteStandardOutput(std::string_view bytes);

/// The offset of the first byte that does not continue well-formed UTF-8; npos if all do.
size_t FindInvalidUtf8(std::string_view bytes);

/// Whether the stream, one of the three standard ones, is a terminal.
bool IsTerminal(FILE* pStream);
/// The number of columns of the terminal that stdout writes to; 0 if stdout is not a terminal.
int GetTerminalWidth();
/// Whether stdout is a terminal that shows colours, and NO_COLOR is not set in the environment.
bool TakesColours();

/// Opens the file in the editor that VISUAL or EDITOR names, else the system's, and waits. False if it does not end
/// with exit code 0.
bool RunEditor(const WString& path);
