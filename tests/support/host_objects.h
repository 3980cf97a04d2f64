#pragma once
// Failures of the test host's objects (see host_objects.cpp), for the tests
// that make the library's error handling climb, and a login handing out
// any object.
#include <functional>
#include <string>

#include "framework/host_interfaces.h"
#include "tests/support/test_host.h"

namespace kdvq::testing {

// The logger records its next report and then refuses it: the library's
// error routine checks the answer, so the failure leaves the handler that
// reported, even one that would log and go on, and climbs to the next.
// The refusal's description.
void RefuseNextReport();
inline const std::string kRefusedReport = "The log refused the report";
// Asked before every request to the resource strings, the category
// service, the registry component and the progress callback: answering true
// makes the request fail. A new TestHost ends both failures.
void SetHostServiceFailure(std::function<bool()> fails);

// A login whose operation 4 hands out object (which may be no connection).
com::ComPtr<IKDLogin> NewLoginHanding(com::IUnknown* object);

}  // namespace kdvq::testing
