// The scripted provider's transcript lines of row writes and transactions.
// Its rules for statements and queries (native errors, descriptions, the
// latest rule winning, unknown queries, handlers) are what every golden
// transcript of the upgraders is made of, compared whole there.
#include <gtest/gtest.h>

#include "platform/ado/scripted/scripted_provider.h"
#include "tests/platform/ado_test_util.h"

namespace {

using automation::Variant;
using Lines = std::vector<std::string>;

class ScriptedProviderTest : public ::testing::Test {
protected:
    void SetUp() override {
        auto provider = std::make_unique<ado::ScriptedProvider>("SQLOLEDB", [this](const std::string& line) {
            lines_.push_back(line);
        });
        provider_ = provider.get();
        connection_ = ado::NewConnection();
        connection_->OpenWith(std::move(provider));
    }

    ado::ScriptedProvider* provider_ = nullptr;
    com::ComPtr<ado::Connection> connection_;
    Lines lines_;
};

TEST_F(ScriptedProviderTest, RowWritesAndTransactions) {
    provider_->AnswerQuery("select VERSION, NAME from PFX_KD_VQ_DB_VERSION v where 1=1",
                           {{"VERSION", "NAME"}, {{Variant::Long(1200), Variant("core")}, {Variant::Long(7), Variant::Null()}}});
    connection_->BeginTrans();
    com::ComPtr<ado::Recordset> rs =
        ado_test::OpenEditable(connection_.Get(), "select VERSION, NAME from PFX_KD_VQ_DB_VERSION v where 1=1");
    rs->MoveNext();
    rs->Set("NAME", "it's");
    rs->Set("VERSION", Variant::Integer(9));
    rs->Update();
    rs->AddNew();
    rs->Set("VERSION", 1206);
    rs->Save();
    rs->Set("NAME", Variant::Null());
    rs->MoveFirst();  // writes the pending edit of the added row (row 3)
    connection_->CommitTrans();
    connection_->BeginTrans();
    connection_->RollbackTrans();
    EXPECT_EQ(lines_, (Lines{"BEGIN", "OPEN select VERSION, NAME from PFX_KD_VQ_DB_VERSION v where 1=1",
                             "UPDATE PFX_KD_VQ_DB_VERSION #2 SET NAME='it's', VERSION=9",
                             "INSERT PFX_KD_VQ_DB_VERSION (VERSION=1206)", "UPDATE PFX_KD_VQ_DB_VERSION #3 SET NAME=Null",
                             "COMMIT", "BEGIN", "ROLLBACK"}));
}

TEST_F(ScriptedProviderTest, QueriesOverSeveralTablesAreReadOnly) {
    provider_->AnswerQuery("SELECT A FROM T, U", {{"A"}, {{Variant::Long(1)}}});
    com::ComPtr<ado::Recordset> join = ado_test::OpenEditable(connection_.Get(), "SELECT A FROM T, U");
    EXPECT_EQ(ado_test::ErrorOf([&] { join->Set("A", 5); }), ado::adErrFeatureNotAvailable);
    EXPECT_EQ(lines_, (Lines{"OPEN SELECT A FROM T, U"}));
}

}  // namespace
