// The pass algorithm of an upgrade run where upgraders fail, over upgraders
// made by the test and registered in the process, on a real SQLite
// repository. How a run climbs over passes, reads the core version at the
// start of each pass, and treats an upgrader that answers False is left to
// the end-to-end upgrades of the samples, which fail when any of that
// changes.
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "framework/upgrader_interfaces.h"
#include "host/host_identifiers.h"
#include "host/host_object.h"
#include "host/login.h"
#include "host/upgrade_passes.h"
#include "platform/com/error_info.h"
#include "platform/com/runtime.h"
#include "tests/support/test_host.h"
#include "tests/support/transcript_file.h"

namespace kdhost::testing {
namespace {

using Transcript = std::vector<std::string>;

enum class Behaviour { Succeed, RaiseInExecute, RaiseInEnabled };

// An upgrader of the core chain, enabled for from <= version < to.
struct FakeClass {
    std::string name;
    int32_t from = 0;
    int32_t to = 0;
    Behaviour behaviour = Behaviour::Succeed;
};

class FakeUpgrader : public HostObject<FakeUpgrader, kdvq::IKDVqDatabaseUpgrader> {
public:
    FakeUpgrader(FakeClass setup, std::shared_ptr<Transcript> transcript)
        : setup_(std::move(setup)), transcript_(std::move(transcript)) {}
    static const com::IID& InterfaceIid() { return kIidDatabaseUpgrader; }

    com::HRESULT Enabled(kdvq::IKDLogin*, int32_t* version, automation::VARIANT_BOOL* result) override {
        transcript_->push_back("ASK " + setup_.name + " " + std::to_string(*version));
        if (setup_.behaviour == Behaviour::RaiseInEnabled) return Raise("Enabled broke");
        bool enabled = setup_.from <= *version && *version < setup_.to;
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
    com::HRESULT TavixSystemTables(automation::Variant*) override { return com::E_NOTIMPL; }
    com::HRESULT Execute(kdvq::IKDProgressCallback*, automation::VARIANT_BOOL* result) override {
        transcript_->push_back("EXEC " + setup_.name);
        if (setup_.behaviour == Behaviour::RaiseInExecute) return Raise("Execute broke");
        *result = automation::VARIANT_TRUE;
        return com::S_OK;
    }

private:
    static com::HRESULT Raise(const std::string& description) {
        return com::SetErrorInfo({5, "fake", description});
    }

    FakeClass setup_;
    std::shared_ptr<Transcript> transcript_;
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
    void SystemTablesListed(const SystemTableList&) override {}

private:
    std::shared_ptr<Transcript> transcript_;
};

com::CLSID FakeClsid(size_t index) {
    char text[48];
    std::snprintf(text, sizeof text, "{5EE0F00D-0000-4000-8000-%012zX}", index + 1);
    return com::MakeGuid(text);
}

// A failure in Execute is recorded with its description, one in Enabled
// too and the upgrader is not asked again, a class that cannot be created
// counts as a failure; an upgrader of the chain is never asked in the final
// pass. The transcript is in transcripts/upgrade_passes_test.
TEST(UpgradePasses, RecordsEachKindOfFailureOnceAndGoesOn) {
    kdvq::testing::TempDir folder;
    std::string path = folder.File("repository.db");
    kdvq::testing::ExecAll(kdvq::testing::OpenSqlite(path).Get(),
                           "CREATE TABLE KD_VQ_DB_VERSION (VERSION INT);\nINSERT INTO KD_VQ_DB_VERSION VALUES (1100)");
    com::ComPtr<ado::Connection> connection = kdvq::testing::OpenSqlite(path);
    auto transcript = std::make_shared<Transcript>();
    const std::vector<FakeClass> fakes = {{"Upgrader830", 0, 1206, Behaviour::RaiseInExecute},
                                          {"Upgrader831", 0, 1206, Behaviour::RaiseInEnabled},
                                          {"Upgrader832", 1206, 1601}};
    std::vector<unsigned long> cookies;
    std::vector<UpgraderClassInfo> classes;
    for (size_t i = 0; i < fakes.size(); ++i) {
        com::ComPtr<com::IClassFactory> factory = FactoryOf<FakeUpgrader>(fakes[i], transcript);
        cookies.push_back(com::RegisterClassObject(FakeClsid(i), factory.Get()));
        classes.push_back({fakes[i].name, FakeClsid(i)});
    }
    classes.push_back({"Unregistered", FakeClsid(999)});

    com::ComPtr<Login> login = Login::Create(connection, "");
    RecordingObserver observer(transcript);
    RunResult result = RunUpgrade(classes, {connection.Get(), "", login.Get(), nullptr}, observer);
    for (unsigned long cookie : cookies) com::RevokeClassObject(cookie);
    kdvq::testing::ExpectTranscript("failures of every kind", *transcript);
    EXPECT_FALSE(result.Succeeded());
}

}  // namespace
}  // namespace kdhost::testing
