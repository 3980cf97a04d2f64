#pragma once
// Registers the host's classes in this process for as long as the object
// lives, so that the upgrader library (and anything else created through
// the component runtime) finds the logger, the resource strings, the
// category service, the input box, the registry component and the probe.
#include <memory>
#include <vector>

#include "host/input_box.h"
#include "host/log_sink.h"
#include "host/settings.h"
#include "host/string_table.h"
#include "platform/com/unknown.h"

namespace kdhost {

struct HostConfiguration {
    std::shared_ptr<LogSink> log;
    std::shared_ptr<const StringTable> strings;
    std::shared_ptr<const InputBoxAnswers> answers;
    std::shared_ptr<const Settings> settings;
};

class HostServices {
public:
    explicit HostServices(const HostConfiguration& configuration);
    ~HostServices();
    HostServices(const HostServices&) = delete;
    HostServices& operator=(const HostServices&) = delete;

private:
    void Register(const com::CLSID& clsid, com::ComPtr<com::IClassFactory> factory);

    std::vector<unsigned long> cookies_;
    std::vector<com::ComPtr<com::IClassFactory>> factories_;
};

}  // namespace kdhost
