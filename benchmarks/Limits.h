#pragma once
/// What the machine can do with a text at best: passes over it that any reader of 16-bit text has to make, or nearly.
#include "benchmarks/Documents.h"
#include "benchmarks/Harness.h"

/// memcpy of the text, and a pass with SSE2 that stores the position of every < > and ". The document must outlive
/// them.
Contestants MakeLimits(const BenchDocument& document);
