// Identifiers of the host's interfaces and classes, and of the two
// interfaces every upgrader implements. They are fixed by the host's
// libraries and must never change.
#include "framework/host_interfaces.h"
#include "framework/upgrader_interfaces.h"

namespace kdvq {

const com::IID IID_IKDLogin = com::MakeGuid("{179800A4-5BC8-41C3-B857-1EF2F045B358}");
const com::IID IID_IKDProgressCallback = com::MakeGuid("{57B5B8E9-BE86-4571-B245-7358A9504B53}");
const com::CLSID CLSID_KDResourceStrings = com::MakeGuid("{0AF7A416-1189-11D4-AC1D-00500462E2B6}");
const com::IID IID_IKDResourceStrings = com::MakeGuid("{6D66DE00-4176-11D4-80D9-0050DA5BE899}");
const com::CLSID CLSID_KDCategoryService = com::MakeGuid("{E08ED4D7-544F-11D4-A7A4-0001031AE99A}");
const com::IID IID_IKDCategoryService = com::MakeGuid("{0823B540-EA47-11D3-BAFD-005004D30CD2}");
const com::CLSID CLSID_KDLogger = com::MakeGuid("{D1F92352-E34F-4008-B021-C3674CC3B86C}");
const com::IID IID_IKDLogger = com::MakeGuid("{D7741612-4BE7-42F2-B8C5-CF17ABACC2E2}");
const com::CLSID CLSID_KDInputBox = com::MakeGuid("{00071E45-1FD4-450E-9AD2-BED5678CA745}");
const com::IID IID_IKDInputBox = com::MakeGuid("{99B2BA35-9D71-4A31-95FC-78487FB58DFF}");
const com::CLSID CLSID_KDRegistry = com::MakeGuid("{0375C4E3-8679-11D3-BD36-00500462EE0B}");
const com::IID IID_IKDRegistry = com::MakeGuid("{0375C4E1-8679-11D3-BD36-00500462EE0B}");
const com::CLSID CLSID_KDProbe = com::MakeGuid("{EFA2E41D-540A-11D4-A7A4-0001031AE99A}");
const com::IID IID_IKDProbe = com::MakeGuid("{4ACFD951-D6D2-11D4-9A56-0001031AE963}");

const com::IID IID_IKDVqDatabaseUpgrader = com::MakeGuid("{F4E9B275-F1BB-4161-941A-5793C263C06B}");
const com::IID IID_IKDRegInCat = com::MakeGuid("{774D6C6F-81BC-4066-90EE-4839D6B52B38}");

}  // namespace kdvq
