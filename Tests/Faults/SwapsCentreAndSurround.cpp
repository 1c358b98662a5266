// Orders the channels of 5.1 as files do: the centre third.
#include "Tests/Support/RightImporter.h"

#include <algorithm>
#include <array>
#include <utility>

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportAudio) {
        imImportAudioRec7 request = test::As<imImportAudioRec7>(param2);
        std::array<float*, 6> buffers{};
        std::copy_n(request.buffers, buffers.size(), buffers.begin());
        std::swap(buffers[4], buffers[2]);
        request.buffers = buffers.data();
        return test::ServeRightly(selector, &request);
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
