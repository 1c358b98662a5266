// mac_answers BUNDLE: writes the answers of the bundle's executable for macOS to standard output.
#include "Tests/Mac/Answers/Answers.h"
#include "Tests/Mac/Loader/MacSystem.h"
#include "Tests/Mac/Loader/MachOImage.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>

int main(int argc, char** argv) {
    const std::span arguments(argv, static_cast<std::size_t>(argc));
    try {
        const std::filesystem::path bundle = arguments[1];
        const test::MachOFile file(bundle / "Contents" / "MacOS" / "BarsAndTone");
        const test::MachOImage image(file, test::MakeMacSystem(bundle));
        void* const entry = image.Find(std::string("_") + kImportEntryName);
        if (entry == nullptr) {
            throw std::runtime_error("the bundle has no entry point");
        }
        test::AnswerWriter answers(stdout);
        test::AskEverything(reinterpret_cast<ImportEntryFunction*>(entry), answers);
        return std::fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
