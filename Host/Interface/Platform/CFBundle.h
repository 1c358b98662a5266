#pragma once

#if defined(__APPLE__)

#include <CoreFoundation/CFBundle.h>

#else

#include "../Core/Export.h"

/// A loaded bundle, and a constant string, as far as a plug-in needs them to find itself.
using CFBundleRef = struct __CFBundle*;
using CFStringRef = const char*;
#define CFSTR(literal) (literal)

/// The bundle with this identifier among those whose executable is loaded in this process, however it
/// was loaded; else null. The reference belongs to the system and lives as long as the
/// process. Any thread.
extern "C" ZEL_API CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier);

#endif
