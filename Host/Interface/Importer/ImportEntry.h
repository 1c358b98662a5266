#pragma once

#include <cstdint>

struct imStdParms;

/// The one function that an importer bundle exports: serves the request named by `selector`
/// (an ImportSelector) and returns an ImportResult. What param1 and param2 carry stands beside each
/// selector. Requests may be issued from several threads at once as long as they write to different
/// memory; only kImportGetPrefs is bound to the host's UI thread.
using ImportEntryFunction = std::int32_t(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2);

/// The name a host looks the function up by.
inline constexpr const char* kImportEntryName = "xImportEntry";
