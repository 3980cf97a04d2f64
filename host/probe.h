#pragma once
// The probe component: the marking upgraders only test that it can be
// created, which tells them the host that marks system tables is present.
#include "framework/host_interfaces.h"
#include "host/host_identifiers.h"
#include "host/host_object.h"

namespace kdhost {

class Probe : public HostObject<Probe, kdvq::IKDProbe> {
public:
    static const com::IID& InterfaceIid() { return kIidProbe; }
};

}  // namespace kdhost
