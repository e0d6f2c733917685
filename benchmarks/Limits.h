#pragma once
/// What the machine can do with a text at best: passes over it that any reader of 16-bit text has to make, or nearly.
#include "benchmarks/Documents.h"
#include "benchmarks/Harness.h"

// The document must outlive them.

/// memcpy of the text, its loads alone, and a pass with SSE2 that stores the position of every < > and ".
Contestants MakeLimits(const BenchDocument& document);
/// The loads alone.
Contestants MakeLoadLimit(const BenchDocument& document);
