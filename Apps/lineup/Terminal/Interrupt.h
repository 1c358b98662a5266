#pragma once

namespace cli {

/// Sets up what signals do, once, at the start of the program: those that end it remove the unfinished files
/// first. A closed pipe and a file grown too large end nothing; they are errors of what was written. A
/// signal that the program was started to ignore stays ignored.
void PrepareForSignals();

/// From now on the first SIGINT, SIGTERM or SIGHUP asks the program to stop instead of ending it, so that it
/// can say what it did not finish; the next one ends it, or the end of `secondsToStop`: work may be in the middle of
/// something long, such as the encoding of one large picture. 0: it takes the time it needs.
void WatchForInterrupts(int secondsToStop = 0);

/// The signal by which a person or the system has asked the program to stop, or 0. Any thread.
[[nodiscard]] int Interrupted();

/// Ends the program by `signal`, so that a shell sees what ended it.
[[noreturn]] void EndBy(int signal);

}  // namespace cli
