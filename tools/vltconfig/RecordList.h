#pragma once
#include "tools/vltconfig/Output.h"

#include <memory>

/// A record of a CRecordList, good as long as that.
struct Record
{
    TextView id;
    TextView cfg;
};

/// All records of a file in its order, without the room that a string of each would take.
class CRecordList
{
public:
    /// Reads a file. False, after a message, if it cannot be read. A faulty one is read as far as it goes, with a
    /// message unless toleratesFaults.
    bool Read(const WString& path, bool toleratesFaults = false);
    void Add(TextView id, TextView cfg);

    const std::vector<Record>& Get() const { return m_records; }
    bool IsFaultless() const { return m_isFaultless; }

private:
    TextView Keep(TextView text);

    std::vector<std::unique_ptr<WCHAR[]>> m_blocks;
    size_t m_blockUnits = 0; ///< of the last block
    size_t m_free = 0;       ///< units left at its end
    std::vector<Record> m_records;
    bool m_isFaultless = true;
};
