// The importer's entry point: sequences of requests, decoded from the input, to the built bundle.
#include "Tests/Fuzz/EntryPoint/Session.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Session(fuzz::Bytes(data, size)).Run();
    return 0;
}
