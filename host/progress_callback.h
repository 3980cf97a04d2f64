#pragma once
// The host's progress callback: the upgraders' step texts go to the
// console as they happen, or through a digest that decides which to show.
#include "framework/host_interfaces.h"
#include "host/console.h"
#include "host/host_identifiers.h"
#include "host/host_object.h"
#include "host/progress_digest.h"

namespace kdhost {

class ProgressCallback : public HostObject<ProgressCallback, kdvq::IKDProgressCallback> {
public:
    explicit ProgressCallback(Console& console, ProgressDigest* digest = nullptr)
        : console_(console), digest_(digest) {}
    static const com::IID& InterfaceIid() { return kIidProgressCallback; }

    com::HRESULT Operation1() override { return com::E_NOTIMPL; }
    com::HRESULT Operation2() override { return com::E_NOTIMPL; }
    com::HRESULT StepFinished(const std::string& text) override;
    com::HRESULT StepStarting(const std::string& text) override;

private:
    Console& console_;
    ProgressDigest* digest_;
};

}  // namespace kdhost
