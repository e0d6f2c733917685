#pragma once
/// Upper bounds for a reader of 16-bit text: the simplest passes over the text.
#include "benchmarks/Documents.h"
#include "benchmarks/Harness.h"

// The document must outlive them.

/// memcpy of the text, loads without further work, and an SSE2 pass that stores the position of every < > and ".
Contestants MakeLimits(const BenchDocument& document);
/// Only the loads.
Contestants MakeLoadLimit(const BenchDocument& document);
