#pragma once

// Stands in for the system's header where there is no Mac: what the plug-in uses of it, under the system's own
// names and types. Builds on a Mac take the system's.

#if defined(__cplusplus)
extern "C" {
#endif

typedef const struct __CFString* CFStringRef;
typedef struct __CFBundle* CFBundleRef;

/// A constant string: the compiler lays out the object that the system's would point at.
#define CFSTR(literal) ((CFStringRef)__builtin___CFStringMakeConstantString(literal))

extern CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier);

#if defined(__cplusplus)
}
#endif
