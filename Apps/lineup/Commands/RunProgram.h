#pragma once

namespace cli {

/// Does what stands on the command line, and says on standard error what went wrong.
/// @return the exit status: 0 done, 1 failed, 2 used wrongly, or what the command says
[[nodiscard]] int RunProgram(int argc, char** argv);

}  // namespace cli
