#pragma once

/// Marks a function or object that the host's libraries offer to plug-ins. What stands in an inline namespace
/// `parts` is offered to the host's own libraries and tests alone.
#define ZEL_API __attribute__((visibility("default")))
