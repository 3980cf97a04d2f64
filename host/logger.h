#pragma once
// The host's logger: every failure the upgraders report goes to the log
// sink with its level.
#include <memory>

#include "framework/host_interfaces.h"
#include "host/host_identifiers.h"
#include "host/host_object.h"
#include "host/log_sink.h"

namespace kdhost {

class Logger : public HostObject<Logger, kdvq::IKDLogger> {
public:
    explicit Logger(std::shared_ptr<LogSink> sink) : sink_(std::move(sink)) {}
    static const com::IID& InterfaceIid() { return kIidLogger; }

    com::HRESULT Log(const std::string& text, int32_t level) override;

private:
    std::shared_ptr<LogSink> sink_;
};

}  // namespace kdhost
