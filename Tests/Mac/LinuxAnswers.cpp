// linux_answers BUNDLE: writes the answers of the bundle's executable for this system to standard output.
#include <lineup/services/Bundle.h>
#include "Tests/Mac/Answers/Answers.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <exception>
#include <span>

int main(int argc, char** argv) {
    const std::span arguments(argv, static_cast<std::size_t>(argc));
    try {
        const zelcore::Bundle bundle(arguments[1]);
        void* const module = dlopen(bundle.Executable().c_str(), RTLD_NOW | RTLD_LOCAL);
        void* const entry = module == nullptr ? nullptr : dlsym(module, kImportEntryName);
        if (entry == nullptr) {
            throw std::runtime_error(dlerror());
        }
        test::AnswerWriter answers(stdout);
        test::AskEverything(reinterpret_cast<ImportEntryFunction*>(entry), answers);
        return std::fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
