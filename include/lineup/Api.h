#pragma once

/// Marks what liblineup offers to programs. What stands in the inline namespace `parts` is offered to this
/// product's own libraries, programs and tests alone: its headers are not installed, and it may change with every
/// version.
#define LINEUP_API __attribute__((visibility("default")))
