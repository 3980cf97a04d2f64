// Creating classes: from the process's own class objects, and from a
// library found in the registry that is loaded and started per thread.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <thread>

#include "platform/com/error_info.h"
#include "platform/com/runtime.h"
#include "tests/platform/module/error_text.h"
#include "tests/platform/module/fixture.h"

namespace com {
namespace {

const std::string kModulePath = KDVQ_TEST_MODULE_PATH;

bool ModuleLoaded() {
    void* handle = dlopen(kModulePath.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle) dlclose(handle);
    return handle != nullptr;
}

ComPtr<fixture::IWidget> NewWidget(HRESULT* hr = nullptr) {
    return CreateInstance<fixture::IWidget>(fixture::CLSID_Widget, fixture::IID_IWidget, hr);
}

std::string PlatformPath() { return ModulePathOf(reinterpret_cast<const void*>(&FormatGuid)); }

using fixture::RaisedFor;

// A stand-in widget the process registers itself.
class ProcessWidget : public Object<ProcessWidget, fixture::IWidget> {
public:
    int32_t StartupsOnThisThread() override { return 99; }
    HRESULT Refuse() override { return E_FAIL; }
};

class RuntimeTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(RegisterServer(kModulePath), S_OK); }
    // Each test starts with the library unloaded: its start-ups count from one.
    void TearDown() override {
        CoFreeUnusedLibraries();
        EXPECT_FALSE(ModuleLoaded()) << "a test left the library loaded";
    }
    fixture::ScopedRegistryFile registryFile_;
};

TEST_F(RuntimeTest, ProcessClassObjectsComeBeforeTheRegistry) {
    const unsigned long cookie = RegisterClassObject(
        fixture::CLSID_Widget,
        MakeClassFactory([](REFIID iid, void** out) { return ProcessWidget::Create()->QueryInterface(iid, out); })
            .Get());
    EXPECT_EQ(NewWidget()->StartupsOnThisThread(), 99);
    EXPECT_FALSE(ModuleLoaded());
    RevokeClassObject(cookie);
    EXPECT_EQ(NewWidget()->StartupsOnThisThread(), 1);  // now from the library
}

TEST_F(RuntimeTest, LibraryStartsOncePerThread) {
    auto first = NewWidget();
    auto second = NewWidget();
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->StartupsOnThisThread(), 1);
    int32_t onOtherThread = 0;
    std::thread([&] {
        auto w = NewWidget();
        onOtherThread = w->StartupsOnThisThread() + NewWidget()->StartupsOnThisThread();
    }).join();
    EXPECT_EQ(onOtherThread, 2);  // once there, seen by both objects
    EXPECT_EQ(second->StartupsOnThisThread(), 1);
}

// What a caller raises for a call's result and the error info the callee
// stored, across the boundary and from library objects.
TEST_F(RuntimeTest, FailuresCarryTheirErrorInfo) {
    struct Case {
        const char* situation;
        std::function<HRESULT()> call;
        std::string raised;
    };
    const std::vector<Case> cases = {
        {"success raises nothing", [] { return Guard([] {}); }, "nothing"},
        {"a standard exception", [] { return Guard([] { throw std::logic_error("broken"); }); }, "440||broken"},
        {"out of memory", [] { return Guard([] { throw std::bad_alloc(); }); }, "7||Out of memory"},
        {"anything else thrown", [] { return Guard([] { throw 42; }); }, "440||Unknown failure"},
        {"a Basic number without a text of its own", [] { return Guard([] { automation::RaiseBasic(31999); }); },
         "31999||Application-defined or object-defined error"},
        {"a result without info", [] { return E_NOINTERFACE; }, "-2147467262||No such interface supported"},
        {"a Basic number without info", [] { return HResultFromBasicError(13); }, "13||Type mismatch"},
        {"info beside a result of the callee's own keeps the result's number",
         [] {
             Guard([] { throw automation::BasicError(5, "registration", "no category service"); });
             return SELFREG_E_CLASS;
         },
         "-2147220991|registration|no category service"},
        {"a boundary forgets info nobody collected",
         [] {
             SetErrorInfo({6, "old", "old failure"});
             Guard([] {});
             return E_FAIL;
         },
         "-2147467259||Unspecified error"},
        {"an unknown result", [] { return static_cast<HRESULT>(0x80070002u); }, "-2147024894||Automation error"},
        {"a method of a library object fails", [] { return NewWidget()->Refuse(); }, "5|kdvqFixture|widget refused"},
        {"a creation function raises",
         [] {
             auto factory = MakeClassFactory([](REFIID, void**) -> HRESULT { automation::RaiseBasic(7, "maker"); });
             ComPtr<IUnknown> object;
             return factory->CreateInstance(nullptr, IID_IUnknown, object.PutVoid());
         },
         "7|maker|Out of memory"},
        {"the library lacks the interface",
         [] {
             ComPtr<IClassFactory> wrong;
             return CoCreateInstance(fixture::CLSID_Widget, IID_IClassFactory, wrong.PutVoid());
         },
         "-2147467262||No such interface supported"},
        {"a class no longer registered",
         [] {
             UnregisterServer(kModulePath);
             HRESULT hr = S_OK;
             NewWidget(&hr);
             return hr;
         },
         "-2147221164|kdplatform|Class not registered: {6A18E58E-159D-4015-AFA0-3773EDB7E105}"},
        {"the registered library is missing",
         [] {
             Registry registry = Registry::Load();
             registry.RegisterClass({fixture::CLSID_Widget, "x", "x", "/nonexistent/libx.so", {}});
             registry.Save();
             HRESULT hr = S_OK;
             NewWidget(&hr);
             return hr;
         },
         "48|kdplatform|Error in loading DLL: /nonexistent/libx.so: cannot open shared object file: No such file or "
         "directory"},
        {"no such library to register", [] { return RegisterServer("/nonexistent/liby.so"); },
         "48|kdplatform|Error in loading DLL: /nonexistent/liby.so: cannot open shared object file: No such file or "
         "directory"},
        {"a library without registration", [] { return RegisterServer(PlatformPath()); },
         "453|kdplatform|Specified DLL function not found: DllRegisterServer in " + PlatformPath()},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.situation);
        EXPECT_EQ(RaisedFor(c.call()), c.raised);
        EXPECT_EQ(TakeErrorInfo().number, 0);  // Check consumed the info
    }
}

TEST(ModuleInfoTest, NamesTheModuleHoldingAnAddress) {
    void* handle = dlopen(kModulePath.c_str(), RTLD_LAZY);
    ASSERT_NE(handle, nullptr);
    const void* inModule = dlsym(handle, "DllGetClassObject");
    EXPECT_EQ(ModuleNameOf(inModule), "kdvq_test_module");
    dlclose(handle);
    EXPECT_EQ(ModuleNameOf(reinterpret_cast<const void*>(&FormatGuid)), "kdplatform");
}

}  // namespace
}  // namespace com
