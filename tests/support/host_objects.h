#pragma once
// The host objects of the test host, each recording what the library asked
// of it into a transcript.
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "framework/host_interfaces.h"
#include "platform/ado/ado.h"
#include "tests/support/test_host.h"

namespace kdvq::testing {

// The transcript the logger writes into. The library keeps its logger for
// the life of the thread, so the logger does not belong to one TestHost:
// it writes into whichever host is current.
// Setting it also ends the failures below.
void SetLogTranscript(std::shared_ptr<Transcript> transcript);

// The logger records its next report and then refuses it: the library's
// error routine checks the answer, so the failure leaves the handler that
// reported, even one that would log and go on, and climbs to the next.
// The refusal's description.
void RefuseNextReport();
inline const std::string kRefusedReport = "The log refused the report";
// Asked before every request to the resource strings, the category
// service, the registry component and the progress callback: answering true
// makes the request fail.
void SetHostServiceFailure(std::function<bool()> fails);

// The category identifier the category service answers for code 122.
inline const std::string kUpgraderCategoryText = "{9ADDD0F3-2471-4EC4-B342-85DB55EAAA60}";

// Creation functions for the class objects registered in the process.
com::HRESULT CreateLogger(com::REFIID iid, void** out);
com::HRESULT CreateResourceStrings(com::REFIID iid, void** out);
com::HRESULT CreateCategoryService(com::REFIID iid, void** out);
com::HRESULT CreateInputBox(std::shared_ptr<Transcript> transcript, std::shared_ptr<std::string> answer,
                            com::REFIID iid, void** out);
// Records "REGISTRY OPEN <hive> <mode> <key>" and
// "REGISTRY READ <value name> <variant type> <default>".
com::HRESULT CreateRegistryComponent(std::shared_ptr<Transcript> transcript,
                                     std::shared_ptr<std::map<std::string, std::string>> values, com::REFIID iid,
                                     void** out);
com::HRESULT CreateProbe(com::REFIID iid, void** out);

com::ComPtr<IKDLogin> NewLogin(ado::Connection* connection, const std::string& prefix);
// A login whose operation 4 hands out object (which may be no connection).
com::ComPtr<IKDLogin> NewLoginHanding(com::IUnknown* object);
com::ComPtr<IKDProgressCallback> NewRecordingCallback(std::shared_ptr<Transcript> transcript);

// "res<id>" or "res<id>(v1,v2,...)" with the values as text.
std::string ResourceText(int32_t id, const VariantArray& values);
// A logged text with CR and LF written as the two characters \r and \n.
std::string ShowControlCharacters(const std::string& text);

}  // namespace kdvq::testing
