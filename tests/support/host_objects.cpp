// The host objects of the test host, each recording what the library asked
// of it into a transcript, and the TestHost that registers them.
#include "tests/support/host_objects.h"

#include <cstdio>
#include <functional>
#include <mutex>
#include <utility>

#include "framework/mod_kd_startup.h"
#include "framework/mod_main.h"
#include "platform/automation/basic_error.h"
#include "platform/com/error_info.h"
#include "platform/com/runtime.h"

namespace kdvq::testing {

namespace {

std::mutex logMutex;
std::shared_ptr<Transcript> logTranscript;
bool refuseNextReport = false;
// One hook for all the host's services: the library keeps the resource
// strings for the thread, beyond any one TestHost.
std::function<bool()> serviceFails;

bool ServiceFails() { return serviceFails && serviceFails(); }

// The category identifier the category service answers for code 122.
const std::string kUpgraderCategoryText = "{9ADDD0F3-2471-4EC4-B342-85DB55EAAA60}";

// "res<id>" or "res<id>(v1,v2,...)" with the values as text.
std::string ResourceText(int32_t id, const VariantArray& values) {
    std::string text = "res" + std::to_string(id);
    if (values.items.empty()) return text;
    text += "(";
    for (size_t i = 0; i < values.items.size(); ++i) {
        if (i > 0) text += ",";
        text += values.items[i].CStr();
    }
    return text + ")";
}

// A logged text with CR and LF written as the two characters \r and \n.
std::string ShowControlCharacters(const std::string& text) {
    std::string shown;
    for (char c : text) {
        if (c == '\r') {
            shown += "\\r";
        } else if (c == '\n') {
            shown += "\\n";
        } else {
            shown += c;
        }
    }
    return shown;
}

class Logger : public com::Object<Logger, IKDLogger> {
public:
    HRESULT Log(const std::string& text, int32_t level) override {
        std::lock_guard<std::mutex> lock(logMutex);
        if (logTranscript) logTranscript->Add("LOG " + std::to_string(level) + " " + ShowControlCharacters(text));
        if (!std::exchange(refuseNextReport, false)) return com::S_OK;
        return com::Guard([] { throw automation::BasicError(1, "TestHost", kRefusedReport); });
    }
};

class ResourceStrings : public com::Object<ResourceStrings, IKDResourceStrings> {
public:
    HRESULT Initialize(const std::string&) override { return com::S_OK; }
    HRESULT GetString(int32_t id, const VariantArray& values, std::string* text) override {
        if (ServiceFails()) return com::E_FAIL;
        return com::Guard([&] { *text = ResourceText(id, values); });
    }
};

class CategoryService : public com::Object<CategoryService, IKDCategoryService> {
public:
    HRESULT GetCategory(int32_t code, std::string* categoryId) override {
        if (ServiceFails()) return com::E_FAIL;
        if (code != kUpgraderCategoryCode) return com::E_INVALIDARG;
        *categoryId = kUpgraderCategoryText;
        return com::S_OK;
    }
};

class TestInputBox : public com::Object<TestInputBox, IKDInputBox> {
public:
    TestInputBox(std::shared_ptr<Transcript> transcript, std::shared_ptr<std::string> answer)
        : transcript_(std::move(transcript)), answer_(std::move(answer)) {}
    HRESULT InputBox(const std::string& prompt, const std::string& title, const std::string&, const Variant&,
                     const Variant&, const Variant&, const Variant&, std::string* answer) override {
        transcript_->Add("INPUT " + prompt + "|" + title);
        *answer = *answer_;
        return com::S_OK;
    }

private:
    std::shared_ptr<Transcript> transcript_;
    std::shared_ptr<std::string> answer_;
};

class RegistryComponent : public com::Object<RegistryComponent, IKDRegistry> {
public:
    RegistryComponent(std::shared_ptr<Transcript> transcript, std::shared_ptr<std::map<std::string, std::string>> values)
        : transcript_(std::move(transcript)), values_(std::move(values)) {}
    HRESULT OpenKey(int32_t hive, int32_t mode, const std::string& keyName) override {
        if (ServiceFails()) return com::E_FAIL;
        char hiveText[16];
        std::snprintf(hiveText, sizeof hiveText, "0x%08X", static_cast<uint32_t>(hive));
        transcript_->Add("REGISTRY OPEN " + std::string(hiveText) + " " + std::to_string(mode) + " " + keyName);
        return com::S_OK;
    }
    HRESULT Operation2() override { return com::E_NOTIMPL; }
    HRESULT ReadValue(const std::string& valueName, int32_t varType, const Variant& defaultValue,
                      Variant* value) override {
        if (ServiceFails()) return com::E_FAIL;
        transcript_->Add("REGISTRY READ " + valueName + " " + std::to_string(varType) + " " + defaultValue.Describe());
        auto found = values_->find(valueName);
        *value = found == values_->end() ? defaultValue : Variant(found->second);
        return com::S_OK;
    }

private:
    std::shared_ptr<Transcript> transcript_;
    std::shared_ptr<std::map<std::string, std::string>> values_;
};

class Probe : public com::Object<Probe, IKDProbe> {};

class Login : public com::Object<Login, IKDLogin> {
public:
    Login(com::IUnknown* object, std::string prefix) : object_(object), prefix_(std::move(prefix)) {}
    HRESULT Operation1() override { return com::E_NOTIMPL; }
    HRESULT Operation2() override { return com::E_NOTIMPL; }
    HRESULT Operation3() override { return com::E_NOTIMPL; }
    HRESULT GetConnection(com::IUnknown** connection) override {
        *connection = object_.Get();
        if (*connection) (*connection)->AddRef();
        return com::S_OK;
    }
    HRESULT Operation5() override { return com::E_NOTIMPL; }
    HRESULT Operation6() override { return com::E_NOTIMPL; }
    HRESULT Operation7() override { return com::E_NOTIMPL; }
    HRESULT Operation8() override { return com::E_NOTIMPL; }
    HRESULT Operation9() override { return com::E_NOTIMPL; }
    HRESULT Operation10() override { return com::E_NOTIMPL; }
    HRESULT Operation11() override { return com::E_NOTIMPL; }
    HRESULT GetTablePrefix(std::string* prefix) override {
        *prefix = prefix_;
        return com::S_OK;
    }

private:
    com::ComPtr<com::IUnknown> object_;
    std::string prefix_;
};

class RecordingCallback : public com::Object<RecordingCallback, IKDProgressCallback> {
public:
    explicit RecordingCallback(std::shared_ptr<Transcript> transcript) : transcript_(std::move(transcript)) {}
    HRESULT Operation1() override { return com::E_NOTIMPL; }
    HRESULT Operation2() override { return com::E_NOTIMPL; }
    HRESULT StepFinished(const std::string& text) override {
        if (ServiceFails()) return com::E_FAIL;
        transcript_->Add("DONE " + text);
        return com::S_OK;
    }
    HRESULT StepStarting(const std::string& text) override {
        if (ServiceFails()) return com::E_FAIL;
        transcript_->Add("START " + text);
        return com::S_OK;
    }

private:
    std::shared_ptr<Transcript> transcript_;
};

// The transcript the logger writes into. The library keeps its logger for
// the life of the thread, so the logger does not belong to one TestHost:
// it writes into whichever host is current. Setting it also ends the
// failures of RefuseNextReport and SetHostServiceFailure.
void SetLogTranscript(std::shared_ptr<Transcript> transcript) {
    std::lock_guard<std::mutex> lock(logMutex);
    logTranscript = std::move(transcript);
    refuseNextReport = false;
    serviceFails = nullptr;
}

com::ComPtr<IKDLogin> NewLogin(ado::Connection* connection, const std::string& prefix) {
    return Login::Create(connection ? connection->Unknown() : nullptr, prefix);
}

// Registers, in this process, a class object creating T from args.
template <class T, class... Args>
unsigned long Register(const com::CLSID& clsid, Args... args) {
    com::ComPtr<com::IClassFactory> factory = com::MakeClassFactory(
        [args...](com::REFIID iid, void** out) { return T::Create(args...)->QueryInterface(iid, out); });
    return com::RegisterClassObject(clsid, factory.Get());
}

}  // namespace

void RefuseNextReport() {
    std::lock_guard<std::mutex> lock(logMutex);
    refuseNextReport = true;
}

void SetHostServiceFailure(std::function<bool()> fails) { serviceFails = std::move(fails); }

com::ComPtr<IKDLogin> NewLoginHanding(com::IUnknown* object) {
    return Login::Create(object, "");
}

TestHost::TestHost()
    : transcript_(std::make_shared<Transcript>()),
      inputAnswer_(std::make_shared<std::string>()),
      registry_(std::make_shared<std::map<std::string, std::string>>()) {
    SetLogTranscript(transcript_);
    cookies_.push_back(Register<Logger>(CLSID_KDLogger));
    cookies_.push_back(Register<ResourceStrings>(CLSID_KDResourceStrings));
    cookies_.push_back(Register<CategoryService>(CLSID_KDCategoryService));
    cookies_.push_back(Register<TestInputBox>(CLSID_KDInputBox, transcript_, inputAnswer_));
    cookies_.push_back(Register<RegistryComponent>(CLSID_KDRegistry, transcript_, registry_));
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
        probeCookie_ = Register<Probe>(CLSID_KDProbe);
    } else if (!available && probeCookie_ != 0) {
        com::RevokeClassObject(probeCookie_);
        probeCookie_ = 0;
    }
}

com::ComPtr<IKDLogin> TestHost::Login(ado::Connection* connection, const std::string& prefix) {
    return NewLogin(connection, prefix);
}

com::ComPtr<IKDProgressCallback> TestHost::Callback() { return RecordingCallback::Create(transcript_); }

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
