// The executable of every bundle of the table: the name that it is loaded by says which fault it has.
#include "Tests/Faults/Faults.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <string>

extern "C" ZEL_API ImportEntryFunction xImportEntry;

namespace {

faults::Fault FindOwn() {
    Dl_info module{};
    dladdr(reinterpret_cast<void*>(&xImportEntry), &module);
    const std::string name = std::filesystem::path(module.dli_fname).stem().string();
    for (const faults::Fault& fault : faults::Faults()) {
        if (fault.bundle == name) {
            return fault;
        }
    }
    std::fprintf(stderr, "unknown fault: %s\n", name.c_str());
    std::abort();
}

// As long as the module is loaded.
struct Own {
    faults::Fault fault = FindOwn();
    Own() = default;
    Own(const Own&) = delete;
    Own& operator=(const Own&) = delete;
    ~Own() {
        if (fault.abortsWhenUnloaded) {
            std::abort();
        }
    }
};

const Own kOwn;

}  // namespace

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    const faults::Request asked{.selector = selector, .stdParms = stdParms, .param1 = param1, .param2 = param2};
    const bool isWrong = !kOwn.fault.selector || *kOwn.fault.selector == selector;
    return isWrong ? kOwn.fault.serve(asked) : asked.Rightly();
}
