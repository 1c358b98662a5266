#pragma once

namespace test {

/// The bundle's module, loaded on first use with a plain dlopen and kept for the life of the process.
/// Throws std::runtime_error with the loader's words when it cannot be loaded.
void* BundledModule();

}  // namespace test
