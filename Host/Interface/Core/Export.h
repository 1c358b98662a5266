#pragma once

/// Marks a function or object that the host's libraries offer to plug-ins.
#define ZEL_API __attribute__((visibility("default")))
