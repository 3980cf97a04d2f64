#include "host/progress_callback.h"

#include "platform/com/error_info.h"

namespace kdhost {

com::HRESULT ProgressCallback::StepFinished(const std::string& text) {
    return com::Guard([&] { console_.StepFinished(text); });
}

com::HRESULT ProgressCallback::StepStarting(const std::string& text) {
    return com::Guard([&] { console_.StepStarting(text); });
}

}  // namespace kdhost
