#include "Host/Lineup/Check/Reader/Process/RecordingInput.h"

#include <lineup/Error.h>
#include "Host/Lineup/Check/Reader/Unreadable.h"

#include <fmt/format.h>

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace lineup {

namespace {

constexpr int kFirstOutOfTheWay = 10;

[[noreturn]] void Fail(const std::string& cause) {
    throw Unreadable(Unreadable::Why::NoRecording, cause);
}

std::string Cause(int error) {
    return error == ENOENT ? "there is no such file" : std::generic_category().message(error);
}

}  // namespace

Descriptor OutOfTheWay(int number) {
    Descriptor copy(fcntl(number, F_DUPFD_CLOEXEC, kFirstOutOfTheWay));
    if (copy.Number() < 0) {
        throw Error(fmt::format("cannot keep a file open: {}", std::generic_category().message(errno)));
    }
    return copy;
}

RecordingInput OpenRecording(const RecordingName& name) {
    if (name.kind == RecordingName::Kind::Url) {
        return {};
    }
    Descriptor opened;
    int number = STDIN_FILENO;
    if (name.kind == RecordingName::Kind::File) {
        number = open(name.text.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
        opened = Descriptor(number);
    }
    struct stat facts {};
    if (number < 0 || fstat(number, &facts) != 0) {
        Fail(Cause(errno));
    }
    if (S_ISDIR(facts.st_mode)) {
        Fail("it is a folder");
    }
    const bool isRegular = S_ISREG(facts.st_mode);
    if (isRegular && facts.st_size == 0) {
        Fail("it is empty");
    }
    return {.descriptor = OutOfTheWay(number), .canSeek = isRegular};
}

}  // namespace lineup
