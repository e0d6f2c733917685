#include "tools/vltconfig/RecordList.h"

#include "tools/vltconfig/StorageReader.h"

#include <algorithm>

bool CRecordList::Read(const WString& path, bool toleratesFaults)
{
    CStorageReader reader;
    if (!reader.Open(path))
    {
        Complain(path, ViewOf(reader.GetFault().message));
        return false;
    }
    reader.ReadRecords([&](const CString& id, const CString& cfg) { Add(ViewOf(id), ViewOf(cfg)); });
    m_isFaultless = reader.IsFaultless();
    if (!m_isFaultless && !toleratesFaults)
        Complain(path, WString(reader.GetFault().message) +
                           TEXT("; 'vltconfig check' tells where, 'vltconfig repair' saves what can be read"));
    return m_isFaultless || toleratesFaults;
}

void CRecordList::Add(TextView id, TextView cfg)
{
    m_records.push_back({Keep(id), Keep(cfg)});
}

TextView CRecordList::Keep(TextView text)
{
    constexpr size_t blockUnits = 1 << 20;
    if (text.size() > m_free)
    {
        m_free = std::max(blockUnits, text.size());
        m_blocks.push_back(std::make_unique_for_overwrite<WCHAR[]>(m_free));
        m_blockUnits = m_free;
    }
    WCHAR* pText = m_blocks.empty() ? nullptr : m_blocks.back().get() + (m_blockUnits - m_free);
    std::copy(text.begin(), text.end(), pText);
    m_free -= text.size();
    return {pText, text.size()};
}
