#include "tests/support/test_host.h"

#include "framework/mod_kd_startup.h"
#include "framework/mod_main.h"
#include "platform/com/runtime.h"
#include "tests/support/host_objects.h"

namespace kdvq::testing {

namespace {

unsigned long Register(const com::CLSID& clsid, com::CreateFunction create) {
    com::ComPtr<com::IClassFactory> factory = com::MakeClassFactory(std::move(create));
    return com::RegisterClassObject(clsid, factory.Get());
}

}  // namespace

TestHost::TestHost()
    : transcript_(std::make_shared<Transcript>()),
      inputAnswer_(std::make_shared<std::string>()),
      registry_(std::make_shared<std::map<std::string, std::string>>()) {
    SetLogTranscript(transcript_);
    cookies_.push_back(Register(CLSID_KDLogger, CreateLogger));
    cookies_.push_back(Register(CLSID_KDResourceStrings, CreateResourceStrings));
    cookies_.push_back(Register(CLSID_KDCategoryService, CreateCategoryService));
    cookies_.push_back(Register(CLSID_KDInputBox, [transcript = transcript_, answer = inputAnswer_](
                                                      com::REFIID iid, void** out) {
        return CreateInputBox(transcript, answer, iid, out);
    }));
    cookies_.push_back(Register(CLSID_KDRegistry, [transcript = transcript_, values = registry_](
                                                      com::REFIID iid, void** out) {
        return CreateRegistryComponent(transcript, values, iid, out);
    }));
    SetProbeAvailable(true);

    ResetSupportedExtensionCacheForThisThread();
    if (ThreadGlobals().Empty()) kdMain();
}

TestHost::~TestHost() {
    SetProbeAvailable(false);
    for (unsigned long cookie : cookies_) com::RevokeClassObject(cookie);
    SetLogTranscript(nullptr);
}

void TestHost::SetProbeAvailable(bool available) {
    if (available && probeCookie_ == 0) {
        probeCookie_ = Register(CLSID_KDProbe, CreateProbe);
    } else if (!available && probeCookie_ != 0) {
        com::RevokeClassObject(probeCookie_);
        probeCookie_ = 0;
    }
}

com::ComPtr<IKDLogin> TestHost::Login(ado::Connection* connection, const std::string& prefix) {
    return NewLogin(connection, prefix);
}

com::ComPtr<IKDProgressCallback> TestHost::Callback() { return NewRecordingCallback(transcript_); }

com::ComPtr<ado::Connection> TestHost::ScriptedConnection(const std::string& providerName,
                                                         ado::ScriptedProvider** provider) {
    auto scripted = std::make_unique<ado::ScriptedProvider>(
        providerName, [transcript = transcript_](const std::string& line) { transcript->Add(line); });
    if (provider) *provider = scripted.get();
    com::ComPtr<ado::Connection> connection = ado::NewConnection();
    connection->OpenWith(std::move(scripted));
    return connection;
}

std::string TestHost::UpgraderCategory() { return kUpgraderCategoryText; }

}  // namespace kdvq::testing
