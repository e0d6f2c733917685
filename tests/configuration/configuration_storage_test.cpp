#include "configuration/ConfigurationStorage.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <memory>
#include <stdexcept>
#include <vector>

using VLT::CConfigurationStorage;
using VLT::IConfigurationHandler;

namespace
{
/// Notes its calls in the order in which they come.
class CNotingHandler : public IConfigurationHandler
{
public:
    explicit CNotingHandler(std::vector<CString>& notes) : m_notes(notes) {}
    ~CNotingHandler() override { m_notes.push_back(TEXT("gone")); }

    int OpenStorage() override
    {
        m_notes.push_back(TEXT("open"));
        return 7;
    }
    void CloseStorage() override
    {
        CConfigurationStorage::Instance()->RegisterHandler(nullptr); // must not pull the ground away under this call
        m_notes.push_back(TEXT("close"));
    }
    CString LoadConfigurationById(const WCHAR* pId) override { return TEXT("text of ") + CString(pId); }
    int SaveConfiguration(const WCHAR* pId, const WCHAR* pCfg) override
    {
        m_notes.push_back(pId + CString(TEXT("=")) + pCfg);
        return pCfg == nullptr ? throw std::runtime_error("no text") : -2;
    }

private:
    std::vector<CString>& m_notes;
};

void ExpectNoHandler(IConfigurationHandler& storage)
{
    EXPECT_EQ(storage.OpenStorage(), 0);
    EXPECT_TRUE(storage.LoadConfigurationById(TEXT("PRJ_REGISTRY")).IsEmpty());
    EXPECT_EQ(storage.SaveConfiguration(TEXT("PRJ_REGISTRY"), TEXT("")), 0);
    storage.CloseStorage();
}
} // namespace

TEST(ConfigurationStorage, ForwardsToTheLastRegisteredHandler)
{
    CConfigurationStorage& storage = *CConfigurationStorage::Instance();
    EXPECT_EQ(CConfigurationStorage::Instance(), &storage);
    ExpectNoHandler(storage);

    std::vector<CString> first;
    std::vector<CString> second;
    storage.RegisterHandler(boost::make_shared<CNotingHandler>(first));
    EXPECT_EQ(storage.OpenStorage(), 7);
    EXPECT_TRUE(storage.LoadConfigurationById(TEXT("A")) == TEXT("text of A"));
    EXPECT_EQ(storage.SaveConfiguration(TEXT("A"), TEXT("B")), -2);
    EXPECT_THROW(storage.SaveConfiguration(TEXT("A"), nullptr), std::runtime_error);
    storage.RegisterHandler(boost::make_shared<CNotingHandler>(second));
    EXPECT_EQ(first, (std::vector<CString>{TEXT("open"), TEXT("A=B"), TEXT("A="), TEXT("gone")}));

    storage.CloseStorage();
    EXPECT_EQ(second, (std::vector<CString>{TEXT("close"), TEXT("gone")}));
    ExpectNoHandler(storage);
}

TEST(ConfigurationStorage, ACopyKeepsItsOwnHandler)
{
    CConfigurationStorage& storage = *CConfigurationStorage::Instance();
    std::vector<CString> notes;
    storage.RegisterHandler(boost::make_shared<CNotingHandler>(notes));
    // Only the interface gives a way to free a copy.
    const std::unique_ptr<IConfigurationHandler> pCopy(new CConfigurationStorage(storage));
    storage.RegisterHandler(nullptr);
    EXPECT_EQ(pCopy->OpenStorage(), 7);
    static_cast<CConfigurationStorage&>(*pCopy) = storage;
    EXPECT_EQ(notes, (std::vector<CString>{TEXT("open"), TEXT("gone")}));
    ExpectNoHandler(*pCopy);
}
