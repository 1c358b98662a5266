#pragma once

namespace cli {

/// From now on SIGINT, SIGTERM and SIGHUP ask the program to stop instead of ending it, so that it can
/// tidy up; a second one ends it.
void WatchForInterrupts();

/// True once a person or the system has asked the program to stop. Any thread.
[[nodiscard]] bool Interrupted();

}  // namespace cli
