#pragma once
/// What the systems do differently, for console.cpp.
#include <cstdio>

/// Keeps files that the program opens from becoming a standard stream that was closed when it started.
void ReserveStandardStreams();
/// No translation of line ends.
void SetBinaryMode(FILE* pStream);
