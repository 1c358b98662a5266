// Hands the same private copy to every clip.
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Support/RightImporter.h"

#include <cstring>

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    static BarsAndToneInfo shared;
    if (selector == kImportGetInfo) {
        const std::int32_t result = test::ServeRightly(selector, param2);
        imFileInfoRec8& info = test::As<imFileInfoRec8>(param2);
        std::memcpy(&shared, info.privateData, sizeof shared);
        test::ServeRightly(kImportReleasePrivateData, info.privateData);
        info.privateData = &shared;
        return result;
    }
    if (selector == kImportReleasePrivateData) {
        return kImportNoError;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
