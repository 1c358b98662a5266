// Faults of the bundle, of its entry point and its lists, and of its life in a process.
#include "Tests/Faults/Faults.h"

#include <atomic>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <thread>

namespace faults {

namespace {

// An exception whose class, and the code of what(), are the bundle's own.
class OutOfTape : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "out of tape"; }
};

// Importers that do nothing but answer.
std::int32_t AnswerInitAlone(const Request& asked) {
    return asked.selector == kImportInit ? kImportInitAnswer : kImportUnsupported;
}

std::int32_t AnswerAnything(const Request& asked) {
    return asked.selector == kImportInit ? kImportInitAnswer : kImportNoError;
}

std::int32_t ServeOneThread(const Request& asked) {
    static std::thread::id owner;
    if (asked.selector == kImportInit) {
        owner = std::this_thread::get_id();
    } else if (std::this_thread::get_id() != owner) {
        return kImportUnsupported;
    }
    return asked.Rightly();
}

std::int32_t NeverReturn(const Request& asked) {
    static std::atomic<bool> forever{true};
    while (forever) {
    }
    return asked.Rightly();
}

}  // namespace

std::vector<Fault> LoadingFaults() {
    const auto rightly = [](const Request& asked) { return asked.Rightly(); };
    return {
        {"NothingWrong", "Gets nothing wrong: what the others are made of.", {}, rightly, {}},
        {"NoExecutable",
         "Has no executable.",
         {},
         nullptr,
         {{"bundle-layout", "has no executable for this platform"}},
         Executable::None},
        {"NoEntryPoint",
         "Exports a function, but not the one that hosts look for.",
         {},
         nullptr,
         {{"entry-point", "does not export xImportEntry"}, {"steady-tone", "does not export xImportEntry"}},
         Executable::Own},
        {"ExportsMore",
         "Exports a function beside its entry point.",
         {},
         nullptr,
         {{"entry-point", "anotherFunction", "warning"}},
         Executable::Own},
        {"WrongInitAnswer",
         "Answers Init with 0, as if it were any other request.",
         {},
         [](const Request&) { return kImportNoError; },
         {{"init-answer", "answered with 0 instead of 400"}}},
        {"InitTouchesReservedField",
         "Sets the one field between the capability flags, too.",
         kImportInit,
         [](const Request& asked) {
             static_cast<imImportInfoRec*>(asked.param1)->reserved40 = 1;
             return asked.Rightly();
         },
         {{"init-answer", "changed at byte 40"}}},
        {"RefusesEverything",
         "Initialises, and then serves no request at all.",
         {},
         AnswerInitAlone,
         {{"reserved-selector", "answered with 3 instead of 100"},
          {"settings-size", "the size of the settings is answered with 3"}}},
        {"ServesAnUnknownSelector",
         "Serves a selector that is not in use.",
         26,
         [](const Request&) { return kImportNoError; },
         {{"unknown-selectors", "selector 26 is answered with 0 instead of 3"}}},
        {"WritesForAnUnknownSelector",
         "Refuses a selector that is not in use, and writes to its record all the same.",
         26,
         Before<std::uint8_t>([](std::uint8_t& byte) { byte = 0x5A; }),
         {{"unknown-selectors", "param2 of selector 26 points at: changed"}}},
        {"FileFormatsDoNotEnd",
         "Lists its one file format again and again.",
         kImportGetIndFormat,
         [](const Request& asked) { return test::ServeRightly(asked.selector, nullptr, nullptr, asked.param2); },
         {{"file-formats", "listed twice"}}},
        {"AnotherFileType",
         "Offers a file type that is not that of Bars and Tone.",
         kImportGetIndFormat,
         After<imIndFormatRec>([](imIndFormatRec& format) { format.fileType = 0x41424344; }),
         {{"clip-file-type", "XQNV is not offered"}}},
        {"WritesPastThePixelFormats",
         "Writes to the record of an index past the end of the list.",
         kImportGetIndPixelFormat,
         Before<imIndPixelFormatRec>([](imIndPixelFormatRec& format) { format.pixelFormat = 0x37785556; }),
         {{"pixel-formats", "index 1, past the end of the list: changed at byte"}}},
        {"EndlessLists", "Offers a file type and a pixel format for every index.", {}, AnswerAnything, {}},
        {"Aborts",
         "Ends the process when it is asked for audio.",
         kImportAudio,
         [](const Request&) -> std::int32_t { std::abort(); },
         {{"audio-buffers", "SIGABRT (Aborted), in selector 25, audio of 0 samples from", "crashed"}}},
        {"ExitsAsIfAllWereWell",
         "Ends the process in good order when it is asked for audio.",
         kImportAudio,
         [](const Request&) -> std::int32_t { std::_Exit(0); },
         {{"audio-buffers", "exit code 0 before the check did, in selector 25", "crashed"}}},
        {"AbortsWhenUnloaded",
         "Ends the process when it is unloaded.",
         {},
         rightly,
         {{"init-answer", "SIGABRT (Aborted), while unloading the executable", "crashed"}},
         Executable::Table,
         true},
        {"NeverReturns",
         "Never comes back from an audio request.",
         kImportAudio,
         NeverReturn,
         {{"audio-buffers", "within 0.5 s, in selector 25", "timed out", "--timeout 0.5"}}},
        {"Throws",
         "Lets an exception out of an audio request.",
         kImportAudio,
         [](const Request&) -> std::int32_t { throw std::runtime_error("out of tape"); },
         {{"audio-buffers", "threw an exception: out of tape"}}},
        {"ThrowsItsOwnError",
         "Throws an exception whose class, and the code of what(), are its own.",
         {},
         [](const Request& asked) {
             if (asked.selector == kImportAudio) {
                 throw OutOfTape();
             }
             return AnswerAnything(asked);
         },
         {}},
        {"ServesOneThreadOnly",
         "Serves the thread alone that initialised it.",
         {},
         ServeOneThread,
         {{"concurrent-requests", "answered with 3 instead of 0"}}},
    };
}

}  // namespace faults
