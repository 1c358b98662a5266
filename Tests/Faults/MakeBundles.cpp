// make_fault_bundles MODULE FOLDER PLATFORM: a bundle for each row of the table, with the module as its executable.
#include "Tests/Faults/Faults.h"

#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;

void WriteInfo(const fs::path& file, const std::string& name) {
    std::ofstream(file) << R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<dict>
  <key>CFBundleExecutable</key>
  <string>)" << name << R"(</string>
  <key>CFBundleIdentifier</key>
  <string>org.barsandtone.test.)"
                        << name << R"(</string>
  <key>CFBundleShortVersionString</key>
  <string>1.0</string>
</dict>
</plist>
)";
}

}  // namespace

int main(int, char** arguments) {
    const fs::path module = arguments[1];
    const fs::path platform = arguments[3];
    for (const faults::Fault& fault : faults::Faults()) {
        if (fault.executable == faults::Executable::Own) {
            continue;
        }
        const std::string name = fault.bundle;
        const fs::path contents = fs::path(arguments[2]) / (name + ".bundle") / "Contents";
        fs::create_directories(contents / platform);
        WriteInfo(contents / "Info.plist", name);
        if (fault.executable == faults::Executable::Table) {
            // A file of its own: loaders know modules by their files. Anew, for one that is loaded stays as it is.
            const fs::path executable = contents / platform / (name + ".so");
            fs::remove(executable);
            fs::copy_file(module, executable);
        }
    }
}
