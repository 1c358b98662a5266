#include "Apps/lineup/Commands/RunProgram.h"
#include "Apps/lineup/Terminal/Interrupt.h"
#include "Apps/lineup/Terminal/StandardStreams.h"

// NOLINTNEXTLINE(bugprone-exception-escape): when not even a message can be made, ending is what is left
int main(int argc, char** argv) {
    cli::FillStandardStreams();
    cli::PrepareForSignals();
    const int code = cli::RunProgram(argc, argv);
    if (const int signal = cli::Interrupted(); signal != 0) {
        cli::EndBy(signal);
    }
    return code;
}
