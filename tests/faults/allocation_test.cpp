// Each allocation of an operation fails in turn: std::bad_alloc reaches the caller, nothing leaks, and the objects stay
// usable.
#include "commands/CommandManager.h"
#include "configuration/Storage.h"
#include "projection/ProjectionRegistry.h"
#include "projection/base64/Base64.h"
#include "tests/faults/Allocation.h"
#include "uistrings/UIStrings.h"
#include "xml/XmlDocument.h"
#include "xml/XmlFile.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>

namespace
{
const WCHAR* const s_pFile = TEXT("allocation_test.tmp");

boost::shared_ptr<VLT::CConfiguration> MakeConfiguration(const WCHAR* pId, const WCHAR* pCfg)
{
    auto pConfiguration = boost::make_shared<VLT::CConfiguration>();
    pConfiguration->SetId(pId);
    pConfiguration->SetCfg(pCfg);
    return pConfiguration;
}

void FillStorage(VLT::CStorage& storage)
{
    storage.AddConfiguration(MakeConfiguration(TEXT("one"), TEXT("first")));
    storage.AddConfiguration(MakeConfiguration(TEXT("two"), TEXT("\u0159\u20AC"))); // not ASCII
}

void FillFile(const char* pBytes)
{
    std::ofstream(std::filesystem::path(s_pFile), std::ios::binary) << pBytes;
}

class AllocationFailure : public testing::Test
{
public:
    ~AllocationFailure() override { std::filesystem::remove(s_pFile); }
};
} // namespace

TEST_F(AllocationFailure, InTheXmlDocument)
{
    const WString deep =
        TEXT("<r>") + Repeated(TEXT("<a b='&lt;'>"), 1100) + Repeated(TEXT("</a>"), 1099) + TEXT("</x></r>");
    Allocation::FailEach(
        [&](auto perform)
        {
            CXmlDocument document;
            document.SetText(TEXT("<c/>"));
            perform([&] { document.SetText(deep.c_str()); });
            document.SetText(deep.c_str());
            EXPECT_TRUE(document.FindElement(TEXT("r")));
            document.EnterElement();
            EXPECT_TRUE(document.FindElement(TEXT("a")));
            EXPECT_EQ(document.GetAttribute(TEXT("b")), TEXT("<"));
        });
}

// Operations that leave their arguments as they are, or set a text.
TEST_F(AllocationFailure, InSingleOperations)
{
    FillFile("\xEF\xBB\xBFtext \xC3\xBC");
    CXmlDocument document;
    document.SetText(TEXT("<a b='&lt; and some more text'/>"));
    document.FindElement(TEXT("a"));
    CProjectionRegistry registry;
    registry.m_definitions.push_back(boost::make_shared<CProjectionDefinition>());
    registry.m_definitions[0]->m_name = TEXT("\u0159 and a longer name");
    const CString xml = registry.GetXML();
    const CString value = EncodeTextValue(TEXT("\u0158\u00EDp \xD83D\xDE00 \xD800"));

    const std::pair<const char*, std::function<CString()>> rows[] = {
        {"CXmlDocument", [] { return CXmlDocument().m_result; }},
        {"GetAttribute", [&] { return document.GetAttribute(TEXT("b")); }},
        {"EncodeTextValue, ASCII", [] { return EncodeTextValue(TEXT("plain")); }},
        {"EncodeTextValue, one byte", [] { return EncodeTextValue(TEXT("M\u00FCller")); }},
        {"EncodeTextValue, Unicode", [] { return EncodeTextValue(TEXT("\u0158\u00EDp \xD83D\xDE00 \xD800")); }},
        {"DecodeTextValue, ASCII", [] { return DecodeTextValue(TEXT("cGxhaW4=")); }},
        {"DecodeTextValue, Unicode", [&] { return DecodeTextValue(value); }},
        {"CProjectionRegistry::GetXML", [&] { return registry.GetXML(); }},
        {"CProjectionRegistry::ParseXML", [&] { return registry.ParseXML(xml) == 1 ? registry.GetXML() : CString(); }},
        {"ReadTextFile",
         []
         {
             CString text, result;
             return ReadTextFile(s_pFile, text, &result) ? text : CString();
         }},
        {"WriteTextFile",
         []
         {
             CString result;
             return CString(WriteTextFile(s_pFile, TEXT("text \u00FC"), &result) ? TEXT("written") : TEXT(""));
         }},
    };
    for (const auto& [pName, operation] : rows)
    {
        SCOPED_TRACE(pName);
        const CString expected = operation();
        Allocation::FailEach(
            [&, operation = operation](auto perform)
            {
                perform([&] { operation(); });
                EXPECT_EQ(operation(), expected);
            });
    }
}

// Whatever a failed operation leaves in a storage, vector and map agree.
TEST_F(AllocationFailure, InTheStorage)
{
    VLT::CStorage filled;
    FillStorage(filled);
    const CString xml = filled.GetXML();
    filled.Save(s_pFile);

    using Operation = void (*)(VLT::CStorage&, const CString&);
    const std::pair<const char*, Operation> rows[] = {
        {"GetXML", [](VLT::CStorage& storage, const CString&) { storage.GetXML(); }},
        {"ParseXML", [](VLT::CStorage& storage, const CString& text) { storage.ParseXML(text); }},
        {"Load", [](VLT::CStorage& storage, const CString&) { storage.Load(s_pFile); }},
        {"Save", [](VLT::CStorage& storage, const CString&) { storage.Save(TEXT("allocation_test_2.tmp")); }},
        {"AddConfiguration", [](VLT::CStorage& storage, const CString&) { FillStorage(storage); }},
        {"MakeDeepCopy",
         [](VLT::CStorage& storage, const CString&)
         {
             VLT::CStorage copy;
             storage.MakeDeepCopy(copy);
         }},
    };
    for (const auto& [pName, operation] : rows)
    {
        SCOPED_TRACE(pName);
        Allocation::FailEach(
            [&, operation = operation](auto perform)
            {
                VLT::CStorage storage;
                FillStorage(storage);
                perform([&] { operation(storage, xml); });
                const auto& records = *storage.GetConfigurationVector();
                for (const auto& pConfiguration : records)
                    EXPECT_TRUE(pConfiguration && storage.GetConfigurationById(pConfiguration->GetId()));
                for (const auto& [id, pConfiguration] : *storage.GetConfigurationMapById())
                    EXPECT_EQ(std::count(records.begin(), records.end(), pConfiguration), 1);
                EXPECT_EQ(storage.ParseXML(xml), 1);
                EXPECT_EQ(storage.GetXML(), xml);
            });
    }
    std::filesystem::remove("allocation_test_2.tmp");
}

// No other test of this program creates the manager. A failed call must not keep it: the next call registers the
// commands.
TEST_F(AllocationFailure, InTheCommandManager)
{
    Allocation::FailEach([](auto perform) { perform([] { VLT::CCommandManager::Instance(); }); });
    EXPECT_EQ(VLT::CCommandManager::Instance()->IsNativeCommandAvailable(TEXT("CMD_DEFINE_PROJ_ENTITIES")), 1);
}

// The process has one table: strings of a failed load stay in it, and later loads add to them.
TEST_F(AllocationFailure, InTheStringTable)
{
    const std::string longLine(3000, 'x');
    for (const std::string mark : {"", "\xEF\xBB\xBF"})
    {
        const std::string bytes = mark + "2 two\n3 " + longLine + "\n4 four\n";
        Allocation::FailEach(
            [&](auto perform)
            {
                FillFile(bytes.c_str()); // fails on Windows if the last load left the file open
                perform([] { CUIStrings::LoadFile(TEXT("scarce"), s_pFile); });
            },
            Allocation::Blocks::MayStay);
        CUIStrings* const pStrings = CUIStrings::Instance(); // sets the host's language
        CUIStrings::m_currentLanguage = TEXT("scarce");
        EXPECT_EQ(pStrings->Lookup(4), TEXT("four"));
    }
}
