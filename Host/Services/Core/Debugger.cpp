#include "Host/Interface/Core/Contract.h"

#include <fstream>
#include <string>
#include <string_view>

namespace zelcore::debug {

bool IsDebuggerAttached() {
    constexpr std::string_view kTracer = "TracerPid:";
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(kTracer)) {
            return line.find_first_of("123456789", kTracer.size()) != std::string::npos;
        }
    }
    return false;
}

}  // namespace zelcore::debug
