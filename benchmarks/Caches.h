#pragma once

/// Pushes what ran and was read before out of the processor's own caches, for code and for data, and makes it forget
/// the branches that it has seen. A cache that it shares with other cores may keep some.
void EmptyCaches();
