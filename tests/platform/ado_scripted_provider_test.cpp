// The scripted provider: its rules, and the transcript lines of everything
// done through it, compared whole.
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

    // Runs a statement; "ok" or the raised number.
    std::string Exec(const std::string& sql) {
        int32_t error = ado_test::ErrorOf([&] { connection_->Execute(sql); });
        return error ? std::to_string(error) : "ok";
    }

    ado::ScriptedProvider* provider_ = nullptr;
    com::ComPtr<ado::Connection> connection_;
    Lines lines_;
};

TEST_F(ScriptedProviderTest, StatementsByRule) {
    provider_->FailExecute("DROP TABLE X", {2261, 942}, "already there");
    provider_->FailExecute("DROP TABLE Y", {1});
    provider_->FailExecute("DROP TABLE Y", {2});  // the latest rule for a text wins
    EXPECT_EQ(Exec("CREATE TABLE X (A INT)"), "ok");
    EXPECT_EQ(Exec("DROP TABLE X"), std::to_string(ado::adErrCommandFailed));
    std::string failed = std::to_string(ado::adErrCommandFailed);
    EXPECT_EQ(ado_test::DescribeErrors(*connection_),
              (Lines{failed + "|2261|HY000|already there|SQLOLEDB", failed + "|942|HY000|already there|SQLOLEDB"}));
    EXPECT_EQ(Exec("DROP TABLE Y"), failed);
    EXPECT_EQ(lines_, (Lines{"EXEC CREATE TABLE X (A INT)", "EXEC DROP TABLE X => ERROR 2261,942",
                             "EXEC DROP TABLE Y => ERROR 2"}));
    EXPECT_EQ(connection_->Provider(), "SQLOLEDB");
}

TEST_F(ScriptedProviderTest, QueriesByRule) {
    provider_->AnswerQuery("SELECT A FROM T", {{"A"}, {{Variant::Long(1)}, {Variant::Long(2)}}});
    provider_->AnswerQueryPrefix("SELECT B FROM T WHERE ID=", {{"B"}, {{Variant("x")}}});
    provider_->FailQuery("SELECT * FROM GONE");
    auto count = [&](const std::string& sql) {
        int32_t n = -2;
        int32_t error = ado_test::ErrorOf([&] { n = ado_test::OpenEditable(connection_.Get(), sql)->RecordCount(); });
        return error ? "E" + std::to_string(error) : std::to_string(n);
    };
    EXPECT_EQ(count("SELECT A FROM T"), "2");
    EXPECT_EQ(count("SELECT B FROM T WHERE ID=17"), "1");
    EXPECT_EQ(count("SELECT * FROM GONE"), "E" + std::to_string(ado::adErrCommandFailed));
    EXPECT_EQ(connection_->GetErrors().Item(0).description, "table or view does not exist");
    EXPECT_EQ(count("SELECT * FROM UNKNOWN"), "E" + std::to_string(ado::adErrCommandFailed));
    provider_->SetUnknownQueriesSucceed(true);
    EXPECT_EQ(count("SELECT * FROM UNKNOWN"), "0");
    provider_->SetHandler([](const std::string& kind, const std::string& sql) -> std::optional<ado::ScriptedAnswer> {
        if (kind == "OPEN" && sql == "SELECT A FROM T") return ado::ScriptedAnswer{{}, "", {{"A"}, {}}};
        if (kind == "EXEC" && sql == "BAD") return ado::ScriptedAnswer{{1442}, "handled", {}};
        return std::nullopt;
    });
    EXPECT_EQ(count("SELECT A FROM T"), "0");
    EXPECT_EQ(Exec("BAD"), std::to_string(ado::adErrCommandFailed));
    EXPECT_EQ(lines_, (Lines{"OPEN SELECT A FROM T", "OPEN SELECT B FROM T WHERE ID=17",
                             "OPEN SELECT * FROM GONE => ERROR 942", "OPEN SELECT * FROM UNKNOWN => ERROR 942",
                             "OPEN SELECT * FROM UNKNOWN", "OPEN SELECT A FROM T", "EXEC BAD => ERROR 1442"}));
}

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

TEST_F(ScriptedProviderTest, FailingRowWritesAndReadOnlyJoins) {
    provider_->AnswerQuery("SELECT A FROM T", {{"A"}, {{Variant::Long(1)}}});
    provider_->AnswerQuery("SELECT A FROM T, U", {{"A"}, {{Variant::Long(1)}}});
    provider_->FailRowWrites("t", 2291);
    com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(connection_.Get(), "SELECT A FROM T");
    rs->Set("A", 5);
    EXPECT_EQ(ado_test::ErrorOf([&] { rs->Update(); }), ado::adErrCommandFailed);
    EXPECT_EQ(connection_->GetErrors().Item(0).nativeError, 2291);
    rs->CancelUpdate();
    com::ComPtr<ado::Recordset> join = ado_test::OpenEditable(connection_.Get(), "SELECT A FROM T, U");
    EXPECT_EQ(ado_test::ErrorOf([&] { join->Set("A", 5); }), ado::adErrFeatureNotAvailable);
    EXPECT_EQ(lines_, (Lines{"OPEN SELECT A FROM T", "UPDATE T #1 SET A=5 => ERROR 2291", "OPEN SELECT A FROM T, U"}));
}

}  // namespace
