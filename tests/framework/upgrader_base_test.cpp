// How the skeleton every upgrader class follows chooses its dialect from
// the provider's text, through a small class of the test's own.
#include <gtest/gtest.h>

#include "framework/upgrader_base.h"
#include "tests/support/upgrader_run.h"

namespace kdvq {
namespace {

using automation::Variant;

// Enabled below 1206; each dialect runs one statement; writes 1206.
class SampleUpgrader : public UpgraderBase {
public:
    SampleUpgrader() : UpgraderBase("KDSampleUpgrader", "KDSampleUpgrade") {}
    static com::ComPtr<SampleUpgrader> New() { return com::ComPtr<SampleUpgrader>(new SampleUpgrader()); }

protected:
    bool IsEnabledFor(int32_t version) override { return version < 1206; }
    int32_t NameId() const override { return 232; }
    int32_t DescriptionId() const override { return 231; }
    bool UpgradeOracle() override { return Run("ORACLE STEP", "oracle step"); }
    bool UpgradeMSSQL() override { return Run("MSSQL STEP", "mssql step"); }
    std::string VersionTable() const override { return "KD_VQ_DB_VERSION"; }
    int32_t NewVersion() const override { return 1206; }
};

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
        testing::ScriptedRun run(c.provider);
        run.provider->AnswerQuery("select VERSION from KD_VQ_DB_VERSION", {{"VERSION"}, {{Variant::Long(1000)}}});
        auto upgrader = SampleUpgrader::New();
        ASSERT_TRUE(CallEnabled(upgrader.Get(), run.host.Login(run.cn.Get()).Get(), 1000));
        EXPECT_TRUE(CallExecute(upgrader.Get(), run.host.Callback().Get()));
        const std::string step = c.statement == "ORACLE" ? "oracle step" : "mssql step";
        EXPECT_EQ(run.host.Log().Lines(),
                  std::vector<std::string>({"START " + step, "EXEC " + c.statement + " STEP", "DONE res102",
                                            "OPEN select VERSION from KD_VQ_DB_VERSION",
                                            "UPDATE KD_VQ_DB_VERSION #1 SET VERSION=1206"}));
    }
}

}  // namespace
}  // namespace kdvq
