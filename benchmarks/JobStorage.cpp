#include "benchmarks/Jobs.h"
#include "benchmarks/TemporaryFile.h"
#include "benchmarks/XmlPeers.h"
#include "configuration/Storage.h"
#include "projection/ProjectionRegistry.h"

#include <cstring>

namespace
{
ValueTotals TotalsOf(VLT::CStorage& storage)
{
    ValueTotals totals;
    for (const auto& pConfiguration : *storage.GetConfigurationVector())
        for (const CString& text : {pConfiguration->GetId(), pConfiguration->GetCfg()})
            totals.Add(text.GetString(), static_cast<size_t>(text.GetLength()));
    return totals;
}

/// Fills a storage from the document.
class CFillStorage : public IContestant
{
public:
    explicit CFillStorage(const BenchDocument& document) : m_document(document) {}

    Role GetRole() const override { return Role::Ours; }
    bool Finish() override
    {
        const bool isRight = TotalsOf(m_storage) == m_document.texts;
        m_storage.Clear();
        return isRight;
    }

protected:
    const BenchDocument& m_document;
    VLT::CStorage m_storage;
};

class CParseStorage : public CFillStorage
{
public:
    using CFillStorage::CFillStorage;
    std::string GetName() const override { return "CStorage::ParseXML"; }
    void Run() override { m_storage.ParseXML(m_document.text.c_str()); }
};

class CLoadStorage : public CFillStorage
{
public:
    explicit CLoadStorage(const BenchDocument& document) : CFillStorage(document) { m_file.Write(document.narrowText); }
    std::string GetName() const override { return "CStorage::Load"; }
    void Run() override { m_storage.Load(m_file.GetPath()); }

private:
    CTemporaryFile m_file;
};

/// A peer that reads the records.
class CReadRecords : public IContestant
{
public:
    CReadRecords(std::unique_ptr<IXmlReader> pReader, const BenchDocument& document)
        : m_pReader(std::move(pReader)), m_document(document)
    {
    }

    std::string GetName() const override { return m_pReader->GetName(); }
    Role GetRole() const override { return m_pReader->GetRole(); }
    void Prepare() override { m_pReader->Restore(); }
    void Run() override
    {
        if (m_pReader->Parse())
            m_records = m_pReader->ReadRecords();
    }
    bool Finish() override
    {
        ValueTotals totals;
        for (const StoredRecord& record : m_records)
            for (const std::u16string* pText : {&record.id, &record.cfg})
                totals.Add(pText->data(), pText->size());
        m_records = {};
        m_pReader->Discard();
        return totals == m_document.texts;
    }

private:
    std::unique_ptr<IXmlReader> m_pReader;
    const BenchDocument& m_document;
    StoredRecords m_records;
};

/// Must write the document's text again.
class CWriteStorage : public IContestant
{
public:
    explicit CWriteStorage(const BenchDocument& document) : m_document(document)
    {
        m_storage.ParseXML(document.text.c_str());
    }
    std::string GetName() const override { return "CStorage::GetXML"; }
    Role GetRole() const override { return Role::Ours; }
    void Run() override { m_text = m_storage.GetXML(); }
    bool Finish() override
    {
        const bool isRight = m_document.text == m_text.GetString();
        m_text.Empty();
        return isRight;
    }

protected:
    const BenchDocument& m_document;
    VLT::CStorage m_storage;

private:
    CString m_text;
};

class CSaveStorage : public CWriteStorage
{
public:
    using CWriteStorage::CWriteStorage;
    std::string GetName() const override { return "CStorage::Save"; }
    void Run() override { m_storage.Save(m_file.GetPath()); }
    bool Finish() override { return m_file.TakeContent() == m_document.narrowText; }

private:
    CTemporaryFile m_file;
};

/// memcpy of the result into newly allocated memory.
class CCopyResult : public IContestant
{
public:
    explicit CCopyResult(const BenchDocument& document) : m_text(document.text) {}
    std::string GetName() const override { return "memcpy of the result"; }
    Role GetRole() const override { return Role::Limit; }
    void Run() override
    {
        m_pCopy = std::make_unique_for_overwrite<WCHAR[]>(m_text.size());
        std::memcpy(m_pCopy.get(), m_text.data(), m_text.size() * sizeof(WCHAR));
    }
    bool Finish() override
    {
        const bool isRight = m_pCopy[m_text.size() - 1] == m_text.back();
        m_pCopy.reset();
        return isRight;
    }

private:
    const WString& m_text;
    std::unique_ptr<WCHAR[]> m_pCopy;
};

class CParseRegistry : public IContestant
{
public:
    explicit CParseRegistry(const BenchDocument& document) : m_document(document) {}
    std::string GetName() const override { return "CProjectionRegistry::ParseXML"; }
    Role GetRole() const override { return Role::Ours; }
    void Run() override { m_registry.ParseXML(m_document.text.c_str()); }
    bool Finish() override
    {
        ValueTotals totals;
        for (const auto& pDefinition : m_registry.m_definitions)
            for (const CString& text : {pDefinition->m_name, pDefinition->m_entityId})
                totals.Add(text.GetString(), static_cast<size_t>(text.GetLength()));
        m_registry.m_definitions.clear();
        return totals == m_document.texts;
    }

private:
    const BenchDocument& m_document;
    CProjectionRegistry m_registry;
};

template <typename Contestant>
Contestants MakeAlone(const BenchDocument& document)
{
    Contestants contestants;
    contestants.push_back(std::make_unique<Contestant>(document));
    return contestants;
}

Contestants MakeReadStorage(const BenchDocument& document)
{
    Contestants contestants = MakeAlone<CParseStorage>(document);
    for (const auto make : {MakePugixmlReaders, MakeRapidXmlReaders})
        for (auto& pReader : make(document))
            contestants.push_back(std::make_unique<CReadRecords>(std::move(pReader), document));
    return contestants;
}

Contestants MakeWriteStorage(const BenchDocument& document)
{
    Contestants contestants = MakeAlone<CWriteStorage>(document);
    contestants.push_back(std::make_unique<CCopyResult>(document));
    return contestants;
}
} // namespace

std::vector<Job> StorageJobs()
{
    return {{"read storage", 'A', MakeReadStorage, 2.5, 2.5},
            {"write storage", 'A', MakeWriteStorage, 0, 0, 0.25, 0.25},
            {"load storage", 'A', MakeAlone<CLoadStorage>},
            {"save storage", 'A', MakeAlone<CSaveStorage>},
            {"read registry", 'B', MakeAlone<CParseRegistry>}};
}
