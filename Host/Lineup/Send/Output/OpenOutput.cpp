#include <lineup/UsageError.h>
#include "Host/Lineup/Send/Output/FileOutput.h"
#include "Host/Lineup/Send/Output/StreamOutput.h"
#include "Host/Lineup/Send/Output/StreamUrl.h"
#include "Host/Lineup/Send/Output/UdpOutput.h"

namespace lineup {
inline namespace parts {

StreamOutput::~StreamOutput() = default;

std::unique_ptr<StreamOutput> OpenOutput(const SendSettings& settings) {
    const std::string scheme = settings.pipe ? std::string() : SchemeOf(settings.target);
    if (scheme.empty()) {
        return std::make_unique<FileOutput>(settings);
    }
    if (scheme == "udp") {
        return std::make_unique<UdpOutput>(ParseStreamUrl(settings.target), settings.notice);
    }
    throw UsageError("output", settings.target, "must begin with udp://, or be a file");
}

}  // namespace parts
}  // namespace lineup
