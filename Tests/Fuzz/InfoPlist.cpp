// The description of a bundle: any bytes in the place of Info.plist give a bundle or a sentence.
#include <lineup/services/Bundle.h>
#include "Tests/Fuzz/Support/Require.h"
#include "Tests/Fuzz/Support/Scratch.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::Scratch scratch("Contents/Info.plist");
    scratch.Write({reinterpret_cast<const char*>(data), size});
    try {
        const zelcore::Bundle bundle(scratch.Folder());
        fuzz::Require(!bundle.Identifier().empty(), "a bundle has an identifier");
        const auto executable = bundle.Executable();
        fuzz::Require(executable.parent_path().parent_path() == scratch.Folder() / "Contents",
                      "an executable lies in its bundle");
    } catch (const zelcore::BundleError& error) {
        fuzz::Require(std::string_view(error.what()).find(scratch.Folder().string()) != std::string_view::npos,
                      "an error names the bundle");
    }
    return 0;
}
