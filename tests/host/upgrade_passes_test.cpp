// The pass algorithm of an upgrade run, over upgraders made by the test and
// registered in the process, on a real SQLite repository.
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "framework/upgrader_interfaces.h"
#include "host/host_identifiers.h"
#include "host/host_object.h"
#include "host/login.h"
#include "host/repository_versions.h"
#include "host/upgrade_passes.h"
#include "platform/automation/collection.h"
#include "platform/com/error_info.h"
#include "platform/com/runtime.h"
#include "tests/host/case_transcript.h"
#include "tests/support/test_host.h"

namespace kdhost::testing {
namespace {

using Transcript = std::vector<std::string>;

enum class Behaviour { Succeed, AnswerFalse, RaiseInExecute, RaiseInEnabled };

// An upgrader of the core chain: enabled for from <= version < to, it
// writes `to` into the core version table. "Always" upgraders ignore the
// version, like the final ones.
struct FakeClass {
    std::string name;
    int32_t from = 0;
    int32_t to = 0;
    Behaviour behaviour = Behaviour::Succeed;
    bool always = false;
    std::vector<std::string> systemTables;
};

FakeClass Chain(const std::string& name, int32_t from, int32_t to, Behaviour behaviour = Behaviour::Succeed) {
    return {name, from, to, behaviour, false, {}};
}

FakeClass Final(const std::string& name, Behaviour behaviour, std::vector<std::string> systemTables = {}) {
    return {name, 0, 0, behaviour, true, std::move(systemTables)};
}

class FakeUpgrader : public HostObject<FakeUpgrader, kdvq::IKDVqDatabaseUpgrader> {
public:
    FakeUpgrader(FakeClass setup, std::shared_ptr<Transcript> transcript)
        : setup_(std::move(setup)), transcript_(std::move(transcript)) {}
    static const com::IID& InterfaceIid() { return kIidDatabaseUpgrader; }

    com::HRESULT Enabled(kdvq::IKDLogin* login, int32_t* version, automation::VARIANT_BOOL* result) override {
        transcript_->push_back("ASK " + setup_.name + " " + std::to_string(*version));
        if (setup_.behaviour == Behaviour::RaiseInEnabled) return Raise("Enabled broke");
        com::ComPtr<com::IUnknown> unknown;
        login->GetConnection(unknown.Put());
        connection_ = ado::ConnectionFromUnknown(unknown.Get());
        bool enabled = setup_.always || (setup_.from <= *version && *version < setup_.to);
        *result = enabled ? automation::VARIANT_TRUE : automation::VARIANT_FALSE;
        return com::S_OK;
    }
    com::HRESULT Name(std::string* result) override {
        *result = "the " + setup_.name;
        return com::S_OK;
    }
    com::HRESULT Description(std::string* result) override {
        *result = "";
        return com::S_OK;
    }
    com::HRESULT TavixSystemTables(automation::Variant* result) override {
        com::ComPtr<automation::Collection> tables = automation::Collection::Create();
        for (const std::string& table : setup_.systemTables) tables->Add(table);
        *result = automation::Variant(com::ComPtr<com::IUnknown>(tables->Unknown()));
        return com::S_OK;
    }
    com::HRESULT Execute(kdvq::IKDProgressCallback*, automation::VARIANT_BOOL* result) override {
        transcript_->push_back("EXEC " + setup_.name);
        if (setup_.behaviour == Behaviour::RaiseInExecute) return Raise("Execute broke");
        if (!setup_.always && setup_.behaviour == Behaviour::Succeed) {
            connection_->Execute("UPDATE KD_VQ_DB_VERSION SET VERSION = " + std::to_string(setup_.to));
        }
        *result = setup_.behaviour == Behaviour::Succeed ? automation::VARIANT_TRUE : automation::VARIANT_FALSE;
        return com::S_OK;
    }

private:
    static com::HRESULT Raise(const std::string& description) {
        return com::SetErrorInfo({5, "fake", description});
    }

    FakeClass setup_;
    std::shared_ptr<Transcript> transcript_;
    com::ComPtr<ado::Connection> connection_;
};

class RecordingObserver : public RunObserver {
public:
    explicit RecordingObserver(std::shared_ptr<Transcript> transcript) : transcript_(std::move(transcript)) {}
    void PassStarting(int pass, int32_t coreVersion, bool final) override {
        transcript_->push_back(std::string(final ? "FINAL " : "") + "PASS " + std::to_string(pass) +
                               " core=" + std::to_string(coreVersion));
    }
    void UpgraderStarting(const std::string& className, const std::string& name) override {
        transcript_->push_back("START " + className + " (" + name + ")");
    }
    void UpgraderFinished(const UpgraderOutcome& o) override {
        transcript_->push_back("OUTCOME " + o.className + " pass=" + std::to_string(o.pass) +
                               " result=" + (o.result ? "true" : "false") +
                               " failure=" + (o.failure ? "true" : "false") +
                               (o.failedCall.empty() ? "" : " call=" + o.failedCall) +
                               (o.failedCall.empty() || o.failedCall == "create" ? "" : " error=" + o.error));
    }
    void SystemTablesListed(const SystemTableList& list) override {
        std::string names;
        for (const std::string& table : list.tables) names += (names.empty() ? "" : ",") + table;
        transcript_->push_back("TABLES " + list.part + " " + list.className + ": " + names);
    }

private:
    std::shared_ptr<Transcript> transcript_;
};

// The expected transcript of each scenario is a file in
// transcripts/upgrade_passes_test, named after the scenario's words.
struct Scenario {
    std::string name;
    std::vector<FakeClass> classes;  // in registration order
    bool succeeded;
};

void PrintTo(const Scenario& value, std::ostream* out) { *out << value.name; }

const std::vector<Scenario>& Scenarios() {
    static const std::vector<Scenario> scenarios = {
        {"ChainRegisteredOutOfOrderClimbsOverPasses",
         {Chain("Upgrader832", 1206, 1601), Chain("Upgrader830", 0, 1206)},
         true},
        {"EveryEnabledOfAPassGetsTheVersionReadAtItsStart",
         {Chain("Upgrader830", 0, 1206), Chain("Upgrader832", 1206, 1601)},
         true},
        {"AnUpgraderAnsweringFalseFailsTheRunAndIsNotOfferedAgain",
         {Chain("Upgrader830", 0, 1206, Behaviour::AnswerFalse), Chain("Upgrader832", 1206, 1601)},
         false},
        {"AFailureInExecuteIsRecordedWithItsDescription",
         {Chain("Upgrader830", 0, 1206, Behaviour::RaiseInExecute)},
         false},
        {"AFailureInEnabledIsRecordedAndNotAskedAgain",
         {Chain("Upgrader830", 0, 1206, Behaviour::RaiseInEnabled)},
         false},
        {"UpgradersThatMoveNoVersionRunOnceAfterTheChains",
         {Final("KDHideVqTables", Behaviour::Succeed, {"KD_VQ_CONFIG", "KD_VQ_USER"}), Chain("Upgrader830", 0, 1206),
          Final("KDCreateTableIndices", Behaviour::AnswerFalse),
          Final("KDHideSMTables", Behaviour::RaiseInExecute, {"KD_SESSION"})},
         false},    };
    return scenarios;
}

com::CLSID FakeClsid(size_t index) {
    char text[48];
    std::snprintf(text, sizeof text, "{5EE0F00D-0000-4000-8000-%012zX}", index + 1);
    return com::MakeGuid(text);
}

class UpgradePasses : public ::testing::TestWithParam<Scenario> {
protected:
    void SetUp() override {
        connection_ = kdvq::testing::OpenSqlite(CreateRepository());
        for (size_t i = 0; i < GetParam().classes.size(); ++i) {
            const FakeClass& setup = GetParam().classes[i];
            com::ComPtr<com::IClassFactory> factory = FactoryOf<FakeUpgrader>(setup, transcript_);
            cookies_.push_back(com::RegisterClassObject(FakeClsid(i), factory.Get()));
            classes_.push_back({setup.name, FakeClsid(i)});
        }
    }
    void TearDown() override {
        for (unsigned long cookie : cookies_) com::RevokeClassObject(cookie);
    }
    // A repository whose core part is at 1100.
    std::string CreateRepository() {
        std::string path = folder_.File("repository.db");
        kdvq::testing::ExecAll(kdvq::testing::OpenSqlite(path).Get(),
                               "CREATE TABLE KD_VQ_DB_VERSION (VERSION INT);\nINSERT INTO KD_VQ_DB_VERSION VALUES (1100)");
        return path;
    }

    kdvq::testing::TempDir folder_;
    com::ComPtr<ado::Connection> connection_;
    std::shared_ptr<Transcript> transcript_ = std::make_shared<Transcript>();
    std::vector<unsigned long> cookies_;
    std::vector<UpgraderClassInfo> classes_;
};

TEST_P(UpgradePasses, RunsEachApplicableUpgraderOncePassAfterPass) {
    com::ComPtr<Login> login = Login::Create(connection_, "");
    RecordingObserver observer(transcript_);
    RunResult result = RunUpgrade(classes_, {connection_.Get(), "", login.Get(), nullptr}, observer);
    kdvq::testing::ExpectTranscript(Words(GetParam().name), *transcript_);
    EXPECT_EQ(result.Succeeded(), GetParam().succeeded);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, UpgradePasses, ::testing::ValuesIn(Scenarios()),
                         [](const ::testing::TestParamInfo<Scenario>& info) { return info.param.name; });

// A class that cannot be created counts as a failure; a core version that
// cannot be read stops the run before its first pass.
TEST(UpgradePassesCreation, FailuresOutsideTheUpgraders) {
    for (bool versionTable : {true, false}) {
        SCOPED_TRACE(versionTable);
        kdvq::testing::TempDir folder;
        auto connection = ado::NewConnection();
        connection->Open("sqlite:" + folder.File("r.db") + "?mode=create");
        if (versionTable) connection->Execute("CREATE TABLE KD_VQ_DB_VERSION (VERSION INT)");
        com::ComPtr<Login> login = Login::Create(connection, "");
        auto transcript = std::make_shared<Transcript>();
        RecordingObserver observer(transcript);
        RunResult result = RunUpgrade({{"Unregistered", FakeClsid(999)}},
                                      {connection.Get(), "", login.Get(), nullptr}, observer);
        EXPECT_FALSE(result.Succeeded());
        if (versionTable) {
            EXPECT_EQ(*transcript, (Transcript{"PASS 1 core=0",
                                               "OUTCOME Unregistered pass=1 result=false failure=true call=create",
                                               "PASS 2 core=0", "FINAL PASS 3 core=0"}));
        } else {
            EXPECT_EQ(*transcript, Transcript{});
            EXPECT_EQ(result.interruption, "the core version could not be read (no such table: KD_VQ_DB_VERSION)");
        }
    }
}

}  // namespace
}  // namespace kdhost::testing
