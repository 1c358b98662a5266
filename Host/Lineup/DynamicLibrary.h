#pragma once

#include <filesystem>
#include <memory>

namespace lineup {

/// A loaded shared object; unloaded when destroyed. Movable.
class DynamicLibrary {
public:
    /// Throws Error when the file cannot be loaded.
    explicit DynamicLibrary(const std::filesystem::path& file);

    /// The address of an exported symbol, or null.
    [[nodiscard]] void* Find(const char* symbol) const noexcept;

private:
    struct Unload {
        void operator()(void* handle) const noexcept;
    };
    std::unique_ptr<void, Unload> mHandle;
};

}  // namespace lineup
