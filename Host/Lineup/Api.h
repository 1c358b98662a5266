#pragma once

/// Marks what liblineup offers to programs.
#define LINEUP_API __attribute__((visibility("default")))
