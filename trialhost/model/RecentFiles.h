#pragma once
#include "platform/text.h"

#include <vector>

/// The storage files that were opened last, newest first; at most eight, each once (case counts on no file system of
/// Windows, so it does not here).
class CRecentFiles
{
public:
    static constexpr size_t s_maximum = 8;

    explicit CRecentFiles(std::vector<WString> paths = {});

    /// Puts the file in front.
    void Add(const WString& path);
    const std::vector<WString>& GetPaths() const { return m_paths; }

private:
    std::vector<WString> m_paths;
};
