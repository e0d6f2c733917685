// Input: UTF-16LE text, parsed as a storage and as a registry, and cut at its NULs into the texts of records. Writing
// and reading again gives the same records.
#include "configuration/Storage.h"
#include "fuzz/Fuzz.h"
#include "projection/ProjectionRegistry.h"

#include <boost/make_shared.hpp>
#include <map>
#include <vector>

namespace
{
/// The map holds exactly the first record of each identifier. Only for a storage that was just read.
void RequireMapOfFirsts(VLT::CStorage& storage)
{
    std::map<CString, boost::shared_ptr<VLT::CConfiguration>> firsts;
    for (const auto& pRecord : *storage.GetConfigurationVector())
        firsts.emplace(pRecord->GetId(), pRecord);
    Require(firsts == *storage.GetConfigurationMapById(), "the map holds the first record of each identifier");
}

void RequireRoundTrip(VLT::CStorage& storage)
{
    RequireMapOfFirsts(storage);
    const CString xml = storage.GetXML();
    VLT::CStorage back;
    Require(back.ParseXML(xml) == 1, "a storage reads what it wrote");
    RequireMapOfFirsts(back);
    const auto& written = *storage.GetConfigurationVector();
    const auto& read = *back.GetConfigurationVector();
    Require(written.size() == read.size(), "as many records come back");
    for (size_t i = 0; i < written.size(); ++i)
        Require(written[i]->GetId() == read[i]->GetId() && written[i]->GetCfg() == read[i]->GetCfg(),
                "each record comes back");
    Require(back.GetXML() == xml, "the same records give the same text");
}

void RequireRoundTrip(CProjectionRegistry& registry)
{
    const CString xml = registry.GetXML();
    CProjectionRegistry back;
    Require(back.ParseXML(xml) == 1, "a registry reads what it wrote");
    Require(registry.m_definitions.size() == back.m_definitions.size(), "as many definitions come back");
    for (size_t i = 0; i < registry.m_definitions.size(); ++i)
    {
        const CProjectionDefinition& written = *registry.m_definitions[i];
        const CProjectionDefinition& read = *back.m_definitions[i];
        Require(written.m_name == read.m_name && written.m_layerName == read.m_layerName &&
                    written.m_entityId == read.m_entityId,
                "a definition's texts come back");
        Require(written.m_showInLS == read.m_showInLS && written.m_showInCS == read.m_showInCS &&
                    written.m_showInEditor == read.m_showInEditor && written.m_isActive == read.m_isActive,
                "a definition's numbers come back");
    }
    Require(back.GetXML() == xml, "the same definitions give the same text");
}

std::vector<CString> CutAtNuls(const CExactText& text)
{
    std::vector<CString> pieces;
    const WCHAR* pEnd = text.Get() + text.GetLength();
    for (const WCHAR* pPiece = text.Get(); pPiece <= pEnd; pPiece += wcslen(pPiece) + 1)
        pieces.emplace_back(pPiece);
    return pieces;
}

int NumberFrom(const CString& text)
{
    unsigned number = 0;
    for (int i = 0; i < text.GetLength(); ++i)
        number = number * 65'536 + text.GetAt(i);
    return static_cast<int>(number);
}

void RoundTripOfTexts(const std::vector<CString>& texts)
{
    VLT::CStorage storage;
    CProjectionRegistry registry;
    for (size_t i = 0; i < texts.size(); ++i)
    {
        const CString& next = texts[(i + 1) % texts.size()];
        const auto pRecord = boost::make_shared<VLT::CConfiguration>();
        pRecord->SetId(texts[i]);
        pRecord->SetCfg(next);
        storage.AddConfiguration(pRecord);

        const auto pDefinition = boost::make_shared<CProjectionDefinition>();
        pDefinition->m_name = texts[i];
        pDefinition->m_layerName = next;
        pDefinition->m_showInLS = NumberFrom(texts[i]);
        pDefinition->m_isActive = NumberFrom(next);
        registry.m_definitions.push_back(pDefinition);
    }
    RequireRoundTrip(storage);
    RequireRoundTrip(registry);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t size)
{
    const CExactText text(pData, size);
    VLT::CStorage storage;
    Require(storage.ParseXML(text.Get()) == 1 || storage.GetConfigurationVector()->empty(),
            "without a storage there are no records");
    RequireRoundTrip(storage);
    CProjectionRegistry registry;
    Require(registry.ParseXML(text.Get()) == 1 || registry.m_definitions.empty(),
            "without a registry there are no definitions");
    RequireRoundTrip(registry);
    RoundTripOfTexts(CutAtNuls(text));
    return 0;
}
