#include "host/logger.h"

#include "platform/com/error_info.h"

namespace kdhost {

com::HRESULT Logger::Log(const std::string& text, int32_t level) {
    return com::Guard([&] { sink_->Write(text, level); });
}

}  // namespace kdhost
