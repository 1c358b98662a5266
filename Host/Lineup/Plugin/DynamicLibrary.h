#pragma once

#include <lineup/Api.h>

#include <filesystem>
#include <memory>

namespace lineup {
inline namespace parts {

/// A loaded shared object; unloaded when destroyed. Movable.
class LINEUP_API DynamicLibrary {
public:
    /// Throws Error when the file cannot be loaded.
    explicit DynamicLibrary(const std::filesystem::path& file);

    /// The path of the library called `name` that belongs to liblineup: in the same folder, as in a build tree,
    /// else in the folder "lineup" there, as installed.
    [[nodiscard]] static std::filesystem::path Beside(const char* name);

    /// The address of an exported symbol, or null.
    [[nodiscard]] void* Find(const char* symbol) const noexcept;

private:
    struct Unload {
        void operator()(void* handle) const noexcept;
    };
    std::unique_ptr<void, Unload> mHandle;
};

}  // namespace parts
}  // namespace lineup
