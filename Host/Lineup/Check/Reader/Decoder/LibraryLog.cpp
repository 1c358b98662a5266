#include "Host/Lineup/Check/Reader/Decoder/LibraryLog.h"

#include "Host/Lineup/Check/Reader/Decoder/FfmpegOwners.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <utility>

extern "C" {
#include <libavutil/log.h>
}

namespace lineup::decoding {

namespace {

struct Complaint {
    std::mutex mutex;  // libraries of protocols have threads of their own
    std::string text;
};

Complaint& Last() {
    static Complaint complaint;
    return complaint;
}

void Listen(void*, int level, const char* format, va_list arguments) {
    if (level > AV_LOG_ERROR) {
        return;
    }
    std::array<char, 128> text{};
    if (std::vsnprintf(text.data(), text.size(), format, arguments) <= 0) {
        return;
    }
    std::string line = text.data();
    line.erase(line.find_last_not_of(" \n.") + 1);
    const std::lock_guard lock(Last().mutex);
    Last().text = std::move(line);
}

}  // namespace

void ListenToLibraries() {
    av_log_set_callback(Listen);
}

std::string TakeComplaint() {
    const std::lock_guard lock(Last().mutex);
    return std::exchange(Last().text, {});
}

std::string AvErrorText(int code) {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(code, text.data(), text.size());
    return text.data();
}

}  // namespace lineup::decoding
