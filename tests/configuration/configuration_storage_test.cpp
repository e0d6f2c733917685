#include "tests/support/RecordingHandler.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>
#include <memory>

using VLT::CConfigurationStorage;
using VLT::IConfigurationHandler;

namespace
{
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
    ExpectNoHandler(storage);
    const auto pFirst = boost::make_shared<CRecordingHandler>();
    pFirst->m_opens = 7;
    pFirst->m_saves = -2;
    storage.RegisterHandler(pFirst);
    EXPECT_EQ(storage.OpenStorage(), 7);
    EXPECT_EQ(storage.SaveConfiguration(TEXT("PRJ_REGISTRY"), TEXT("B")), -2);
    EXPECT_EQ(storage.LoadConfigurationById(TEXT("PRJ_REGISTRY")), TEXT("B"));
    EXPECT_EQ(pFirst->m_calls, (Calls{"open", "save", "load"}));
    pFirst->m_inside = [](const std::string&) { throw 1; };
    EXPECT_THROW(storage.LoadConfigurationById(TEXT("PRJ_REGISTRY")), int);

    // Only the interface has a public destructor.
    std::unique_ptr<IConfigurationHandler> pCopy(new CConfigurationStorage(storage));
    auto pSecond = boost::make_shared<CRecordingHandler>();
    storage.RegisterHandler(pSecond);
    EXPECT_EQ(pFirst.use_count(), 2) << "the copy keeps its handler";
    static_cast<CConfigurationStorage&>(*pCopy) = storage;
    EXPECT_EQ(pFirst.use_count(), 1);
    pCopy.reset();

    // A handler that unregisters itself inside a call lives until the call returns.
    const boost::weak_ptr<CRecordingHandler> pWatched = pSecond;
    bool isAlive = false;
    std::exchange(pSecond, nullptr)->m_inside = [&](const std::string&)
    {
        storage.RegisterHandler(nullptr);
        isAlive = !pWatched.expired();
    };
    storage.CloseStorage();
    EXPECT_TRUE(isAlive && pWatched.expired());
    ExpectNoHandler(storage);
}
