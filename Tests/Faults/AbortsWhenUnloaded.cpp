// Ends the process when it is unloaded.
#include "Tests/Support/RightImporter.h"

#include <cstdlib>

namespace {

struct Unloading {
    Unloading() = default;
    Unloading(const Unloading&) = delete;
    Unloading& operator=(const Unloading&) = delete;
    ~Unloading() { std::abort(); }
};
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): destroyed with the module
const Unloading gUnloading;

}  // namespace

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    return test::ServeRightly(selector, stdParms, param1, param2);
}
