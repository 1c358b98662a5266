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

    /// The library called `name` that belongs to liblineup, loaded when first asked for and kept until the process
    /// ends: what it made and what it threw may outlive whoever asked. Throws Error as the constructor does. Any
    /// thread.
    [[nodiscard]] static const DynamicLibrary& Companion(const char* name);

    /// The address of an exported symbol, or null.
    [[nodiscard]] void* Find(const char* symbol) const noexcept;

    /// The function that is exported as `symbol`. Without one throws Error, whose text begins with `cannot`, as
    /// "cannot send".
    template <class Type>
    [[nodiscard]] Type& Function(const char* symbol, const char* cannot) const {
        return *reinterpret_cast<Type*>(Require(symbol, cannot));
    }

private:
    [[nodiscard]] void* Require(const char* symbol, const char* cannot) const;

    struct Unload {
        void operator()(void* handle) const noexcept;
    };
    std::filesystem::path mFile;
    std::unique_ptr<void, Unload> mHandle;
};

}  // namespace parts
}  // namespace lineup
