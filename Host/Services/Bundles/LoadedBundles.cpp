#include "Host/Services/Bundles/LoadedBundles.h"

#include <lineup/services/Bundle.h>

#include <link.h>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>

namespace fs = std::filesystem;

namespace zelcore {

namespace {

// How often modules have been loaded and unloaded so far: the list of modules is the same while this is.
unsigned long long CountLoads() {
    unsigned long long loads = 0;
    dl_iterate_phdr(
        [](dl_phdr_info* module, std::size_t, void* result) {
            *static_cast<unsigned long long*>(result) = module->dlpi_adds + module->dlpi_subs;
            return 1;
        },
        &loads);
    return loads;
}

std::vector<fs::path> LoadedModules() {
    std::vector<fs::path> modules;
    dl_iterate_phdr(
        [](dl_phdr_info* module, std::size_t, void* result) {
            static_cast<std::vector<fs::path>*>(result)->emplace_back(module->dlpi_name);
            return 0;
        },
        &modules);
    return modules;
}

// The folder of the bundle that `module` is the executable of, as its path tells.
std::optional<fs::path> BundleFolder(const fs::path& module) {
    std::error_code error;
    const fs::path path = fs::absolute(module, error).lexically_normal();
    const fs::path platform = path.parent_path();
    const fs::path contents = platform.parent_path();
    if (error || path.extension() != ".so" || platform.filename() != ZEL_PLATFORM_FOLDER ||
        contents.filename() != "Contents") {
        return std::nullopt;
    }
    return contents.parent_path();
}

class Registry {
public:
    std::vector<CFBundleRef> Loaded() {
        const std::lock_guard lock(mMutex);
        const unsigned long long loads = CountLoads();
        if (loads != mLoads) {
            mLoaded.clear();
            for (const fs::path& module : LoadedModules()) {
                AddBundleOf(module);
            }
            mLoads = loads;
        }
        return mLoaded;
    }

private:
    void AddBundleOf(const fs::path& module) {
        const auto folder = BundleFolder(module);
        if (!folder) {
            return;
        }
        auto& handle = mHandles[*folder];
        if (!handle) {
            try {
                handle = std::make_unique<__CFBundle>(__CFBundle{*folder, Bundle(*folder).Identifier()});
            } catch (const BundleError&) {
                return;  // a module in a folder of that form, but no bundle
            }
        }
        mLoaded.push_back(handle.get());
    }

    std::mutex mMutex;
    unsigned long long mLoads = 0;
    std::vector<CFBundleRef> mLoaded;
    std::map<fs::path, std::unique_ptr<__CFBundle>> mHandles;
};

}  // namespace

std::vector<CFBundleRef> LoadedBundles() {
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): the registry guards itself
    static auto* const registry = new Registry();  // handles outlive every static object
    return registry->Loaded();
}

}  // namespace zelcore
