#include "Host/Lineup/Check/Reader/Decoder/DescriptorIo.h"

#include "Host/Lineup/Check/Reader/Protocol/Messages.h"

#include <cerrno>
#include <cstdint>
#include <sys/stat.h>
#include <unistd.h>

namespace lineup::decoding {

namespace {

constexpr int kBufferBytes = 1 << 18;

int ReadDescriptor(void*, std::uint8_t* buffer, int size) {
    while (true) {
        const ssize_t count = read(kInputDescriptor, buffer, static_cast<std::size_t>(size));
        if (count > 0) {
            return static_cast<int>(count);
        }
        if (count == 0) {
            return AVERROR_EOF;
        }
        if (errno != EINTR) {
            return AVERROR(errno);
        }
    }
}

std::int64_t SeekDescriptor(void*, std::int64_t offset, int whence) {
    if ((whence & AVSEEK_SIZE) != 0) {
        struct stat facts {};
        return fstat(kInputDescriptor, &facts) == 0 ? facts.st_size : AVERROR(errno);
    }
    const off_t position = lseek(kInputDescriptor, offset, whence & ~AVSEEK_FORCE);
    return position < 0 ? AVERROR(errno) : position;
}

}  // namespace

AvIoContext MakeDescriptorIo(bool canSeek) {
    auto* const buffer = RequireMemory(static_cast<unsigned char*>(av_malloc(kBufferBytes)));
    return AvIoContext(RequireMemory(avio_alloc_context(buffer, kBufferBytes, 0, nullptr, ReadDescriptor, nullptr,
                                                        canSeek ? SeekDescriptor : nullptr)));
}

}  // namespace lineup::decoding
