#pragma once
// The host's objects as the library sees them: identifiers and the slot
// positions of the operations the library calls. Operations the library
// never calls keep their slots as placeholders so that every operation sits
// at the position the host's interfaces give it.
#include <cstdint>
#include <string>

#include "platform/automation/variant.h"
#include "platform/com/guid.h"
#include "platform/com/unknown.h"

namespace kdvq {

using automation::Variant;
using automation::VariantArray;
using com::HRESULT;

// ---- identifiers -------------------------------------------------------------
extern const com::IID IID_IKDLogin;               // {179800A4-5BC8-41C3-B857-1EF2F045B358}
extern const com::IID IID_IKDProgressCallback;    // {57B5B8E9-BE86-4571-B245-7358A9504B53}
extern const com::CLSID CLSID_KDResourceStrings;  // {0AF7A416-1189-11D4-AC1D-00500462E2B6}
extern const com::IID IID_IKDResourceStrings;     // {6D66DE00-4176-11D4-80D9-0050DA5BE899}
extern const com::CLSID CLSID_KDCategoryService;  // {E08ED4D7-544F-11D4-A7A4-0001031AE99A}
extern const com::IID IID_IKDCategoryService;     // {0823B540-EA47-11D3-BAFD-005004D30CD2}
extern const com::CLSID CLSID_KDLogger;           // {D1F92352-E34F-4008-B021-C3674CC3B86C}
extern const com::IID IID_IKDLogger;              // {D7741612-4BE7-42F2-B8C5-CF17ABACC2E2}
extern const com::CLSID CLSID_KDInputBox;         // {00071E45-1FD4-450E-9AD2-BED5678CA745}
extern const com::IID IID_IKDInputBox;            // {99B2BA35-9D71-4A31-95FC-78487FB58DFF}
extern const com::CLSID CLSID_KDRegistry;         // {0375C4E3-8679-11D3-BD36-00500462EE0B}
extern const com::IID IID_IKDRegistry;            // {0375C4E1-8679-11D3-BD36-00500462EE0B}
extern const com::CLSID CLSID_KDProbe;            // {EFA2E41D-540A-11D4-A7A4-0001031AE99A}
extern const com::IID IID_IKDProbe;               // {4ACFD951-D6D2-11D4-9A56-0001031AE963}

// The category code whose identifier the upgraders register under.
constexpr int32_t kUpgraderCategoryCode = 122;

// ---- interfaces (operations counted after the three of IUnknown) -------------

// Login: operation 4 gives the open repository connection, operation 12
// the table prefix.
struct IKDLogin : com::IUnknown {
    virtual HRESULT Operation1() = 0;
    virtual HRESULT Operation2() = 0;
    virtual HRESULT Operation3() = 0;
    virtual HRESULT GetConnection(com::IUnknown** connection) = 0;  // 4
    virtual HRESULT Operation5() = 0;
    virtual HRESULT Operation6() = 0;
    virtual HRESULT Operation7() = 0;
    virtual HRESULT Operation8() = 0;
    virtual HRESULT Operation9() = 0;
    virtual HRESULT Operation10() = 0;
    virtual HRESULT Operation11() = 0;
    virtual HRESULT GetTablePrefix(std::string* prefix) = 0;  // 12
};

// Progress callback: operation 3 takes the outcome of the step just
// finished, operation 4 the description of the step about to run.
struct IKDProgressCallback : com::IUnknown {
    virtual HRESULT Operation1() = 0;
    virtual HRESULT Operation2() = 0;
    virtual HRESULT StepFinished(const std::string& text) = 0;  // 3
    virtual HRESULT StepStarting(const std::string& text) = 0;  // 4
};

// Resource strings: operation 1 initialises with the library's name,
// operation 2 returns string id with the substitution values.
struct IKDResourceStrings : com::IUnknown {
    virtual HRESULT Initialize(const std::string& libraryName) = 0;  // 1
    virtual HRESULT GetString(int32_t id, const VariantArray& values, std::string* text) = 0;  // 2
};

// Category service: operation 1 maps a category code to its identifier text.
struct IKDCategoryService : com::IUnknown {
    virtual HRESULT GetCategory(int32_t code, std::string* categoryId) = 0;  // 1
};

// Logger: operation 1 takes a text and a level (1 failure, 2 tolerated).
struct IKDLogger : com::IUnknown {
    virtual HRESULT Log(const std::string& text, int32_t level) = 0;  // 1
};

// Input box: operation 1 asks the user for a text; the last four arguments
// are optional (Empty when omitted).
struct IKDInputBox : com::IUnknown {
    virtual HRESULT InputBox(const std::string& prompt, const std::string& title, const std::string& defaultText,
                             const Variant& xPos, const Variant& yPos, const Variant& helpFile,
                             const Variant& context, std::string* answer) = 0;  // 1
};

// Registry component: operation 1 opens a key (hive, mode, key name);
// operation 3 reads a value (name, variant type, default).
struct IKDRegistry : com::IUnknown {
    virtual HRESULT OpenKey(int32_t hive, int32_t mode, const std::string& keyName) = 0;  // 1
    virtual HRESULT Operation2() = 0;
    virtual HRESULT ReadValue(const std::string& valueName, int32_t varType, const Variant& defaultValue,
                              Variant* value) = 0;  // 3
};

constexpr int32_t kHkeyLocalMachine = static_cast<int32_t>(0x80000002u);

// The probe component: only its creation matters.
struct IKDProbe : com::IUnknown {};

}  // namespace kdvq

template <> struct com::InterfaceId<kdvq::IKDLogin> { static const com::IID& Get() { return kdvq::IID_IKDLogin; } };
template <> struct com::InterfaceId<kdvq::IKDProgressCallback> { static const com::IID& Get() { return kdvq::IID_IKDProgressCallback; } };
template <> struct com::InterfaceId<kdvq::IKDResourceStrings> { static const com::IID& Get() { return kdvq::IID_IKDResourceStrings; } };
template <> struct com::InterfaceId<kdvq::IKDCategoryService> { static const com::IID& Get() { return kdvq::IID_IKDCategoryService; } };
template <> struct com::InterfaceId<kdvq::IKDLogger> { static const com::IID& Get() { return kdvq::IID_IKDLogger; } };
template <> struct com::InterfaceId<kdvq::IKDInputBox> { static const com::IID& Get() { return kdvq::IID_IKDInputBox; } };
template <> struct com::InterfaceId<kdvq::IKDRegistry> { static const com::IID& Get() { return kdvq::IID_IKDRegistry; } };
template <> struct com::InterfaceId<kdvq::IKDProbe> { static const com::IID& Get() { return kdvq::IID_IKDProbe; } };
