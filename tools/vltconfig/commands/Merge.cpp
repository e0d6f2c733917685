#include <afxstr.h> // the framework before the Windows headers

#include "platform/win32/utf8.h"
#include "tools/vltconfig/Definitions.h"
#include "tools/vltconfig/KeyedPairs.h"
#include "tools/vltconfig/Store.h"

#include <map>

namespace
{
/// An item in the three lists; null where it is missing.
template <typename Item>
struct Versions
{
    const Item* pBase = nullptr;
    const Item* pOurs = nullptr;
    const Item* pTheirs = nullptr;
};

/// The items of the lists under their keys; those of one key are told apart by their order.
template <typename Item, typename KeyOf>
class CVersionTable
{
public:
    CVersionTable(const std::vector<Item>& base, const std::vector<Item>& ours, const std::vector<Item>& theirs,
                  KeyOf keyOf)
        : m_keyOf(keyOf)
    {
        Enter(ours, &Versions<Item>::pOurs, true);
        Enter(theirs, &Versions<Item>::pTheirs, true);
        Enter(base, &Versions<Item>::pBase, false);
    }

    /// In our order, and then those that only they have in theirs.
    std::vector<Versions<Item>> Get() const
    {
        std::vector<Versions<Item>> versions;
        for (const auto& key : m_order)
            versions.push_back(m_versions.at(key));
        return versions;
    }

private:
    using Key = std::pair<TextView, int>;

    void Enter(const std::vector<Item>& items, const Item* Versions<Item>::*pVersion, bool isWanted)
    {
        std::map<TextView, int> counts;
        for (const Item& item : items)
        {
            const Key key(m_keyOf(item), counts[m_keyOf(item)]++);
            const auto [entry, isNew] = m_versions.try_emplace(key);
            entry->second.*pVersion = &item;
            if (isNew && isWanted)
                m_order.push_back(key);
        }
    }

    KeyOf m_keyOf;
    std::map<Key, Versions<Item>> m_versions;
    std::vector<Key> m_order;
};

/// The version to take: null is none, and conflicts is set if both sides have changed the item differently.
template <typename Item, typename AreSame>
const Item* Choose(const Versions<Item>& versions, AreSame areSame, bool& conflicts)
{
    const auto same = [&](const Item* pLeft, const Item* pRight)
    { return pLeft == pRight || (pLeft != nullptr && pRight != nullptr && areSame(*pLeft, *pRight)); };
    conflicts = false;
    if (same(versions.pOurs, versions.pTheirs) || same(versions.pBase, versions.pTheirs))
        return versions.pOurs;
    if (same(versions.pBase, versions.pOurs))
        return versions.pTheirs;
    conflicts = true;
    return versions.pOurs;
}

class CMerge
{
public:
    void MergeRecords(const std::vector<Record>& base, const std::vector<Record>& ours,
                      const std::vector<Record>& theirs, CRecordList& result)
    {
        const auto idOf = [](const Record& record) { return record.id; };
        const auto isSame = [](const Record& left, const Record& right) { return left.cfg == right.cfg; };
        for (const Versions<Record>& versions : CVersionTable(base, ours, theirs, idOf).Get())
        {
            bool conflicts = false;
            const Record* pChosen = Choose(versions, isSame, conflicts);
            if (conflicts && MergeRegistry(versions, result))
                continue;
            if (conflicts)
                NameConflict(WString(TEXT("record '")) + WString(KeyOf(versions).id) + TEXT("'"));
            if (pChosen != nullptr)
                result.Add(pChosen->id, pChosen->cfg);
        }
    }
    size_t GetConflictCount() const { return m_conflicts; }

private:
    using Definitions = std::vector<CProjectionDefinition>;

    template <typename Item>
    static const Item& KeyOf(const Versions<Item>& versions)
    {
        return versions.pOurs != nullptr ? *versions.pOurs : *versions.pTheirs;
    }

    void NameConflict(const WString& what)
    {
        Complain(TEXT("conflict: ") + what + TEXT(" was changed on both sides; ours stays"));
        ++m_conflicts;
    }

    /// False if the record does not hold definitions on both sides.
    bool MergeRegistry(const Versions<Record>& versions, CRecordList& result)
    {
        const auto read = [](const Record* pRecord)
        { return pRecord == nullptr ? std::nullopt : ReadDefinitions(pRecord->id, pRecord->cfg); };
        const auto base = read(versions.pBase).value_or(Definitions());
        const auto ours = read(versions.pOurs);
        const auto theirs = read(versions.pTheirs);
        if (!ours || !theirs)
            return false;
        const auto nameOf = [](const CProjectionDefinition& definition) { return ViewOf(definition.m_name); };
        Definitions merged;
        for (const auto& definition : CVersionTable(base, *ours, *theirs, nameOf).Get())
            MergeDefinition(definition, merged);
        result.Add(versions.pOurs->id, ViewOf(MakeRegistryText(merged)));
        return true;
    }

    void MergeDefinition(const Versions<CProjectionDefinition>& versions, Definitions& merged)
    {
        const auto isSame = [](const CProjectionDefinition& left, const CProjectionDefinition& right)
        {
            return std::all_of(std::begin(s_definitionFields), std::end(s_definitionFields),
                               [&](const DefinitionField& field) { return HasSameField(left, right, field); });
        };
        bool conflicts = false;
        const CProjectionDefinition* pChosen = Choose(versions, isSame, conflicts);
        const WString name = TEXT("definition '") + WString(ViewOf(KeyOf(versions).m_name)) + TEXT("'");
        if (conflicts && versions.pOurs != nullptr && versions.pTheirs != nullptr)
            merged.push_back(MergeFields(versions, name));
        else if (conflicts)
            NameConflict(name);
        if (pChosen != nullptr && (!conflicts || versions.pTheirs == nullptr))
            merged.push_back(*pChosen);
    }

    CProjectionDefinition MergeFields(const Versions<CProjectionDefinition>& versions, const WString& name)
    {
        CProjectionDefinition merged = *versions.pOurs;
        for (const DefinitionField& field : s_definitionFields)
        {
            const auto isSame = [&](const CProjectionDefinition& left, const CProjectionDefinition& right)
            { return HasSameField(left, right, field); };
            bool conflicts = false;
            const CProjectionDefinition* pChosen = Choose(versions, isSame, conflicts);
            if (conflicts)
                NameConflict(name + TEXT(", field ") + FromUtf8(field.pName));
            if (field.pText != nullptr)
                merged.*field.pText = pChosen->*field.pText;
            else
                merged.*field.pNumber = pChosen->*field.pNumber;
        }
        return merged;
    }

    size_t m_conflicts = 0;
};
} // namespace

void FillStorage(const std::vector<Record>& records, VLT::CStorage& storage)
{
    for (const Record& record : records)
    {
        const boost::shared_ptr<VLT::CConfiguration> pRecord(new VLT::CConfiguration);
        pRecord->SetId(WString(record.id).c_str());
        pRecord->SetCfg(WString(record.cfg).c_str());
        storage.AddConfiguration(pRecord);
    }
}

int MergeFiles(const WString& base, const WString& ours, const WString& theirs, const WString& output)
{
    CRecordList records[3];
    if (!records[0].Read(base) || !records[1].Read(ours) || !records[2].Read(theirs))
        return ExitWrongUse;
    CMerge merge;
    CRecordList merged;
    merge.MergeRecords(records[0].Get(), records[1].Get(), records[2].Get(), merged);
    VLT::CStorage storage;
    FillStorage(merged.Get(), storage);
    if (output.empty())
    {
        WriteStandardOutput(ToUtf8(ViewOf(storage.GetXML())));
    }
    else
    {
        VLT::CStorageFile file(output.c_str());
        if (SaveAll(file, storage) != ExitFine)
            return ExitWrongUse;
    }
    return merge.GetConflictCount() == 0 ? ExitFine : ExitFault;
}
