// The skeleton every upgrader class follows, through a small class of the
// test's own.
#include <gtest/gtest.h>

#include <optional>

#include "framework/upgrader_base.h"
#include "platform/automation/collection.h"
#include "platform/com/error_info.h"
#include "tests/support/test_host.h"

namespace kdvq {
namespace {

using automation::Variant;

// Enabled below 1206; each dialect runs one statement; writes 1206.
class SampleUpgrader : public UpgraderBase {
public:
    SampleUpgrader() : UpgraderBase("KDSampleUpgrader", "KDSampleUpgrade") {}
    static com::ComPtr<SampleUpgrader> New() { return com::ComPtr<SampleUpgrader>(new SampleUpgrader()); }

    std::optional<automation::BasicError> failure;  // raised inside UpgradeOracle

protected:
    bool IsEnabledFor(int32_t version) override { return version < 1206; }
    int32_t NameId() const override { return 232; }
    int32_t DescriptionId() const override { return 231; }
    bool UpgradeOracle() override {
        return Handled<bool>(Tag("UpgradeOracle"), [&] {
            if (failure) throw *failure;
            return Run("ORACLE STEP", "oracle step");
        });
    }
    bool UpgradeMSSQL() override { return Run("MSSQL STEP", "mssql step"); }
    std::string VersionTable() const override { return "KD_VQ_DB_VERSION"; }
    int32_t NewVersion() const override { return 1206; }
};

IKDVqDatabaseUpgrader* Upgrader(const com::ComPtr<UpgraderBase>& object) { return object.Get(); }

struct DialectCase {
    std::string provider;
    std::string statement;
};

TEST(UpgraderSkeleton, ProviderTextChoosesTheDialect) {
    const std::vector<DialectCase> cases = {
        {"OraOLEDB.Oracle", "ORACLE"},  {"OraOLEDB.Oracle.1", "ORACLE"}, {"ORACLE", "ORACLE"},
        {"oracle", "ORACLE"},           {"MSDAORA", "MSSQL"},            {"MSDAORA.1", "MSSQL"},
        {"SQLOLEDB", "MSSQL"},          {"Microsoft.Jet.OLEDB.4.0", "MSSQL"},
    };
    for (const DialectCase& c : cases) {
        SCOPED_TRACE(c.provider);
        testing::TestHost host;
        ado::ScriptedProvider* provider = nullptr;
        auto connection = host.ScriptedConnection(c.provider, &provider);
        provider->AnswerQuery("select VERSION from KD_VQ_DB_VERSION", {{"VERSION"}, {{Variant::Long(1000)}}});
        auto upgrader = SampleUpgrader::New();
        ASSERT_TRUE(CallEnabled(upgrader.Get(), host.Login(connection.Get()).Get(), 1000));
        EXPECT_TRUE(CallExecute(upgrader.Get(), host.Callback().Get()));
        const std::string step = c.statement == "ORACLE" ? "oracle step" : "mssql step";
        EXPECT_EQ(host.Log().Lines(),
                  std::vector<std::string>({"START " + step, "EXEC " + c.statement + " STEP", "DONE res102",
                                            "OPEN select VERSION from KD_VQ_DB_VERSION",
                                            "UPDATE KD_VQ_DB_VERSION #1 SET VERSION=1206"}));
    }
}

TEST(UpgraderSkeleton, FailureReachesTheHostWithItsChainOfTags) {
    testing::TestHost host;
    auto connection = host.ScriptedConnection("OraOLEDB.Oracle");
    auto upgrader = SampleUpgrader::New();
    upgrader->failure = automation::BasicError(3704, "ADODB.Recordset", "Operation is not allowed when the object is closed.");
    ASSERT_TRUE(CallEnabled(upgrader.Get(), host.Login(connection.Get()).Get(), 0));

    automation::VARIANT_BOOL result = automation::VARIANT_TRUE;
    com::HRESULT hr = Upgrader(upgrader)->Execute(host.Callback().Get(), &result);
    EXPECT_EQ(hr, com::HResultFromBasicError(3704));
    EXPECT_EQ(result, automation::VARIANT_FALSE);
    com::ErrorInfo info = com::TakeErrorInfo();
    EXPECT_EQ(info.number, 3704);
    EXPECT_EQ(info.source, "ADODB.Recordset");
    EXPECT_EQ(info.description,
              "KDSampleUpgrade::IKDVqDatabaseUpgrader_Execute\r\nKDSampleUpgrade::UpgradeOracle\r\nOperation is not "
              "allowed when the object is closed.");
    EXPECT_EQ(host.Log().Lines(),
              std::vector<std::string>(
                  {"LOG 1 kdVqUpgraders:\\r\\nKDSampleUpgrade::UpgradeOracle\\r\\nOperation is not allowed when the "
                   "object is closed.",
                   "LOG 1 kdVqUpgraders:\\r\\nKDSampleUpgrade::IKDVqDatabaseUpgrader_Execute\\r\\nKDSampleUpgrade::"
                   "UpgradeOracle\\r\\nOperation is not allowed when the object is closed."}));
}

TEST(UpgraderSkeleton, ExecuteWithoutEnabledFails) {
    testing::TestHost host;
    auto upgrader = SampleUpgrader::New();
    try {
        CallExecute(upgrader.Get(), host.Callback().Get());
        FAIL() << "not raised";
    } catch (const automation::BasicError& e) {
        EXPECT_EQ(e.Number(), 91);
        EXPECT_EQ(e.Description(),
                  "KDSampleUpgrade::IKDVqDatabaseUpgrader_Execute\r\nObject variable or With block variable not set");
    }
    EXPECT_EQ(host.Log().Lines(),
              std::vector<std::string>({"LOG 1 kdVqUpgraders:\\r\\nKDSampleUpgrade::IKDVqDatabaseUpgrader_Execute\\r\\n"
                                        "Object variable or With block variable not set"}));
}

TEST(UpgraderSkeleton, CategoriesToRegNamesTheUpgraderCategoryOnce) {
    testing::TestHost host;
    auto registration = SampleUpgrader::New().As<IKDRegInCat>(IID_IKDRegInCat);
    Variant categories;
    ASSERT_EQ(registration->CategoriesToReg(&categories), com::S_OK);
    auto list = automation::CollectionOf(categories);
    ASSERT_TRUE(list);
    ASSERT_EQ(list->Count(), 1);
    EXPECT_EQ(list->Item(1), Variant(testing::TestHost::UpgraderCategory()));
}

}  // namespace
}  // namespace kdvq
