#include "tests/support/host_objects.h"

#include <cstdio>
#include <functional>
#include <mutex>
#include <utility>

#include "platform/automation/basic_error.h"
#include "platform/com/error_info.h"

namespace kdvq::testing {

namespace {

std::mutex logMutex;
std::shared_ptr<Transcript> logTranscript;
bool refuseNextReport = false;
// One hook for all the host's services: the library keeps the resource
// strings for the thread, beyond any one TestHost.
std::function<bool()> serviceFails;

bool ServiceFails() { return serviceFails && serviceFails(); }

template <class T, class... Args>
com::HRESULT CreateAs(com::REFIID iid, void** out, Args&&... args) {
    return T::Create(std::forward<Args>(args)...)->QueryInterface(iid, out);
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

}  // namespace

void SetLogTranscript(std::shared_ptr<Transcript> transcript) {
    std::lock_guard<std::mutex> lock(logMutex);
    logTranscript = std::move(transcript);
    refuseNextReport = false;
    serviceFails = nullptr;
}

void RefuseNextReport() {
    std::lock_guard<std::mutex> lock(logMutex);
    refuseNextReport = true;
}

void SetHostServiceFailure(std::function<bool()> fails) { serviceFails = std::move(fails); }

com::HRESULT CreateLogger(com::REFIID iid, void** out) { return CreateAs<Logger>(iid, out); }
com::HRESULT CreateResourceStrings(com::REFIID iid, void** out) { return CreateAs<ResourceStrings>(iid, out); }
com::HRESULT CreateCategoryService(com::REFIID iid, void** out) { return CreateAs<CategoryService>(iid, out); }
com::HRESULT CreateInputBox(std::shared_ptr<Transcript> transcript, std::shared_ptr<std::string> answer,
                            com::REFIID iid, void** out) {
    return CreateAs<TestInputBox>(iid, out, std::move(transcript), std::move(answer));
}
com::HRESULT CreateRegistryComponent(std::shared_ptr<Transcript> transcript,
                                     std::shared_ptr<std::map<std::string, std::string>> values, com::REFIID iid,
                                     void** out) {
    return CreateAs<RegistryComponent>(iid, out, std::move(transcript), std::move(values));
}
com::HRESULT CreateProbe(com::REFIID iid, void** out) { return CreateAs<Probe>(iid, out); }

com::ComPtr<IKDLogin> NewLogin(ado::Connection* connection, const std::string& prefix) {
    return Login::Create(connection ? connection->Unknown() : nullptr, prefix);
}

com::ComPtr<IKDLogin> NewLoginHanding(com::IUnknown* object) {
    return Login::Create(object, "");
}

com::ComPtr<IKDProgressCallback> NewRecordingCallback(std::shared_ptr<Transcript> transcript) {
    return RecordingCallback::Create(std::move(transcript));
}

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

}  // namespace kdvq::testing
