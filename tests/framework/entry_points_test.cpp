// The library as the component runtime sees it: registration, creation by
// ProgID and the unload answer.
#include <gtest/gtest.h>

#include <filesystem>

#include "framework/upgrader_interfaces.h"
#include "library/class_table.h"
#include "library/entry_points.h"
#include "platform/com/runtime.h"
#include "tests/platform/module/fixture.h"
#include "tests/support/test_host.h"

namespace kdvq {
namespace {

// Each test registers into a registry file of its own.
class LibraryEntryPoints : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(com::RegisterServer(KDVQ_TEST_LIBRARY_PATH), com::S_OK); }
    com::CLSID ClassOf(const std::string& progId) {
        com::CLSID clsid;
        EXPECT_EQ(com::CLSIDFromProgID(progId, &clsid), com::S_OK);
        return clsid;
    }

    fixture::ScopedRegistryFile registryFile_;
    testing::TestHost host_;
};

TEST_F(LibraryEntryPoints, RegisterEveryClassInTheCategoryInDeclaredOrderAndUnregister) {
    com::Registry registry = com::Registry::Load();
    std::vector<std::string> names;
    std::vector<std::string> progIds;
    for (const com::ClassRegistration& c :
         registry.ClassesOfCategory(com::MakeGuid(testing::TestHost::UpgraderCategory().c_str()))) {
        names.push_back(c.name);
        progIds.push_back(c.progId);
        EXPECT_EQ(std::filesystem::canonical(c.libraryPath), std::filesystem::canonical(KDVQ_TEST_LIBRARY_PATH));
    }
    // The declared order is pinned by the table over every class.
    std::vector<std::string> declared;
    std::vector<std::string> expectedProgIds;
    for (const UpgraderClass& c : UpgraderClasses()) {
        declared.push_back(c.name);
        expectedProgIds.push_back(std::string("kdVqUpgraders.") + c.name);
    }
    EXPECT_EQ(names, declared);
    EXPECT_EQ(progIds, expectedProgIds);

    ASSERT_EQ(com::UnregisterServer(KDVQ_TEST_LIBRARY_PATH), com::S_OK);
    EXPECT_TRUE(com::Registry::Load().ClassesOfCategory(com::MakeGuid(testing::TestHost::UpgraderCategory().c_str())).empty());
    com::CLSID clsid;
    EXPECT_NE(com::CLSIDFromProgID("kdVqUpgraders.KDVqUpgrader830", &clsid), com::S_OK);
}

TEST_F(LibraryEntryPoints, CreatedByProgIdAndUnloadableWhenReleased) {
    ASSERT_EQ(DllCanUnloadNow(), com::S_OK);
    auto upgrader = com::CreateInstance<IKDVqDatabaseUpgrader>(ClassOf("kdVqUpgraders.KDUpgradeWFM902"),
                                                               IID_IKDVqDatabaseUpgrader);
    ASSERT_TRUE(upgrader);
    EXPECT_EQ(DllCanUnloadNow(), com::S_FALSE);
    auto registration = upgrader.As<IKDRegInCat>(IID_IKDRegInCat);
    EXPECT_TRUE(registration);
    upgrader.Reset();
    EXPECT_EQ(DllCanUnloadNow(), com::S_FALSE);
    registration.Reset();
    EXPECT_EQ(DllCanUnloadNow(), com::S_OK);
}

TEST_F(LibraryEntryPoints, FactoryLocksKeepTheLibrary) {
    com::ComPtr<com::IClassFactory> factory;
    ASSERT_EQ(DllGetClassObject(ClassOf("kdVqUpgraders.kdUpgradeWFM931"), com::IID_IClassFactory, factory.PutVoid()),
              com::S_OK);
    EXPECT_EQ(DllCanUnloadNow(), com::S_OK);
    factory->LockServer(true);
    EXPECT_EQ(DllCanUnloadNow(), com::S_FALSE);
    factory->LockServer(false);
    EXPECT_EQ(DllCanUnloadNow(), com::S_OK);

    com::ComPtr<com::IUnknown> aggregated;
    EXPECT_EQ(factory->CreateInstance(factory.Get(), IID_IKDVqDatabaseUpgrader, aggregated.PutVoid()),
              com::CLASS_E_NOAGGREGATION);

    com::ComPtr<com::IClassFactory> unknown;
    EXPECT_EQ(DllGetClassObject(com::MakeGuid("{00000000-1111-2222-3333-444444444444}"), com::IID_IClassFactory,
                                unknown.PutVoid()),
              com::CLASS_E_CLASSNOTAVAILABLE);
}

}  // namespace
}  // namespace kdvq
