#pragma once

#include "Tests/Mac/Loader/LinkOpcodes.h"
#include "Tests/Mac/Loader/MachOFile.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace test {

/// A macOS bundle in this process's memory, linked and initialised, as a Mac's loader leaves it. Its code runs here
/// because the processor and the calling convention are the same. It stays until the process ends: what it has
/// registered to be called then is code of its own.
class MachOImage {
public:
    /// Gives the address of a symbol, spelt as in the file, of a library; an empty library is the process itself.
    /// Throws when it is missing.
    using Resolver = std::function<void*(const std::string& library, const std::string& symbol)>;

    /// Throws std::runtime_error with a sentence when the file cannot be loaded, and whatever `resolve` throws.
    MachOImage(const MachOFile& file, const Resolver& resolve);

    /// The address of what the file exports under this name, spelt as in the file; null when it does not.
    [[nodiscard]] void* Find(const std::string& symbol) const;

    /// The address of what the file puts at `address`.
    template <class T = std::uint8_t>
    [[nodiscard]] T* At(std::uint64_t address) const {
        return reinterpret_cast<T*>(mBase + address);
    }

private:
    void Map();
    void Rebase();
    void Bind(const std::vector<test::Bind>& binds, const Resolver& resolve);
    void Protect() const;
    void Initialise() const;
    [[nodiscard]] std::uint64_t& PointerAt(const Place& place) const;

    const MachOFile& mFile;
    std::uint8_t* mBase = nullptr;  ///< where the file's address 0 lies
};

}  // namespace test
