#include "Host/Services/Core/CompanionLibrary.h"

#include <dlfcn.h>

namespace fs = std::filesystem;

namespace zelcore {
inline namespace parts {

fs::path FileOf(const void* address) {
    Dl_info info{};
    if (dladdr(address, &info) == 0) {
        return {};
    }
    std::error_code error;
    return fs::canonical(info.dli_fname, error);
}

fs::path CompanionLibrary(const fs::path& file, const char* name) {
    if (file.empty()) {
        return name;
    }
    const fs::path folder = file.parent_path();
    std::error_code error;
    return fs::exists(folder / name, error) ? folder / name : folder / ZEL_PRIVATE_FOLDER / name;
}

}  // namespace parts
}  // namespace zelcore
