#include "Host/Lineup/Check/Reader/Decoder/Confinement/Confinement.h"

#include "Host/Lineup/Check/Reader/Protocol/Messages.h"

#include <climits>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace lineup::decoding {

namespace {

// Sanitizers look at the process with files, descriptors and system calls of their own, and take all the address
// space there is: with them, a decoder keeps its rights.
#if defined(LINEUP_SANITIZED)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

}  // namespace

void EndWithParent() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    close_range(kMessageDescriptor + 1, UINT_MAX, 0);
}

std::uint32_t GiveUpRights(InputKind kind) {
    EndWithParent();
    if (kIsSanitized) {
        return 0;
    }
    prctl(PR_SET_DUMPABLE, 0);
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    std::uint32_t givenUp = LimitResources(kind) ? kMemory : 0U;
    givenUp |= GiveUpFiles(kind) ? kFiles : 0U;
    givenUp |= GiveUpSystemCalls(kind) ? kSystemCalls : 0U;
    return givenUp;
}

}  // namespace lineup::decoding
