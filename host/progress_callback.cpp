#include "host/progress_callback.h"

#include "platform/com/error_info.h"

namespace kdhost {

com::HRESULT ProgressCallback::StepFinished(const std::string& text) {
    return com::Guard([&] { digest_ ? digest_->StepFinished(text) : console_.StepFinished(text); });
}

com::HRESULT ProgressCallback::StepStarting(const std::string& text) {
    return com::Guard([&] { digest_ ? digest_->StepStarting(text) : console_.StepStarting(text); });
}

}  // namespace kdhost
