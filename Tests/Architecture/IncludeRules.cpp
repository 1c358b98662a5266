#include "Tests/Architecture/IncludeRules.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace test {

namespace {

using Names = std::vector<std::string_view>;

// What the files of a folder may include beside their own folder and the C++ standard library. A name that
// ends with a slash stands for all below it. The longest folder that holds a file decides.
struct FolderRule {
    std::string_view folder;
    Names project;
    Names system;
};

const std::vector<FolderRule> kFolderRules = {
    {"Src/", {"Host/Interface/"}, {"boost/"}},
    {"Src/VectorPrimitives/", {"Host/Interface/Core/"}, {"boost/", "immintrin.h"}},
    {"Src/ToneGenerator/",
     {"Src/VectorPrimitives/", "Host/Interface/Core/", "Host/Interface/Media/", "Host/Interface/Platform/"},
     {"boost/"}},
    {"Src/BarsAndToneImporter/", {"Src/", "Host/Interface/"}, {"boost/"}},
    {"Src/ToneSettingsDialog/", {"Src/BarsAndToneImporter/BarsAndToneInfo.h", "Host/Interface/"}, {"boost/"}},
    {"Host/Interface/", {}, {}},
    {"Host/Interface/UI/", {"Host/Interface/"}, {"boost/"}},
    {"Host/Interface/Platform/", {"Host/Interface/"}, {"CoreFoundation/", "libkern/", "string.h"}},
    {"Host/Services/",
     {"Host/Interface/"},
     {"boost/", "cpuid.h", "dlfcn.h", "immintrin.h", "link.h", "plist/", "sys/mman.h", "unistd.h"}},
    {"Host/Desktop/", {"Host/Interface/"}, {"boost/", "fmt/", "Q", "xcb/"}},
    {"Host/Lineup/",
     {"Host/Interface/", "Host/Services/", "Src/BarsAndToneImporter/BarsAndToneInfo.h"},
     {"boost/", "fmt/", "nlohmann/", "dlfcn.h", "fcntl.h", "sys/", "unistd.h"}},
    {"Host/Lineup/Export/",
     {"Host/Interface/", "Host/Services/", "Host/Lineup/", "Src/BarsAndToneImporter/BarsAndToneInfo.h"},
     {"boost/", "fmt/", "fcntl.h", "immintrin.h", "poll.h", "sys/", "unistd.h"}},
    {"Host/Lineup/Export/Media/",
     {"Host/Interface/", "Host/Services/", "Host/Lineup/", "Src/BarsAndToneImporter/BarsAndToneInfo.h"},
     {"boost/", "fmt/", "libav", "libsw", "zimg"}},
    {"Host/Lineup/Validation/",
     {"Host/Interface/", "Host/Services/", "Host/Lineup/Api.h", "Host/Lineup/DynamicLibrary.h", "Host/Lineup/Error.h",
      "Src/BarsAndToneImporter/BarsAndToneInfo.h"},
     {"fmt/", "elf.h", "fcntl.h", "malloc.h", "spawn.h", "sys/", "unistd.h"}},
    {"Apps/",
     {"Host/Interface/", "Host/Services/", "Host/Lineup/", "Src/BarsAndToneImporter/BarsAndToneInfo.h"},
     {"boost/", "cairo", "CLI/", "fmt/", "nlohmann/", "fcntl.h", "poll.h", "signal.h", "sys/", "unistd.h"}},
    {"Apps/studio/",
     {"Host/Interface/", "Host/Services/", "Host/Lineup/", "Host/Desktop/",
      "Src/BarsAndToneImporter/BarsAndToneInfo.h"},
     {"boost/", "CLI/", "fmt/", "nlohmann/", "Q"}},
    {"Bridges/MLT/",
     {"Host/Interface/", "Host/Services/", "Host/Lineup/", "Src/BarsAndToneImporter/BarsAndToneInfo.h"},
     {"dlfcn.h", "fmt/", "framework/"}},
    {"Tests/Bridges/",
     {"Bridges/MLT/", "Host/Interface/Frame/", "Host/Lineup/Importer.h", "Src/BarsAndToneImporter/BarsAndToneInfo.h",
      "Tests/Support/"},
     {"dlfcn.h", "framework/", "gmock/", "gtest/", "yaml-cpp/"}},
};

// What only these files may mention, tests aside.
struct PrivateName {
    std::string_view text;
    Names places;
};

const std::vector<PrivateName> kPrivateNames = {
    {"Host/Interface/Importer/ImportRecords.h",
     {"Src/BarsAndToneImporter/", "Host/Lineup/Importer.cpp", "Host/Lineup/Validation/"}},
    {"kImportEntryName",
     {"Host/Interface/Importer/ImportEntry.h", "Host/Lineup/Importer.cpp", "Host/Lineup/Validation/RawImporter.cpp",
      "Host/Lineup/Validation/LoadingChecks.cpp"}},
    {"dlopen(", {"Host/Lineup/DynamicLibrary.cpp", "Host/Services/CatalogueLibrary.cpp"}},
};

bool StartsWithOneOf(std::string_view text, const Names& starts) {
    return std::ranges::any_of(starts, [text](std::string_view start) { return text.starts_with(start); });
}

std::string Join(const Names& names) {
    std::string text;
    for (const std::string_view name : names) {
        text += (text.empty() ? "" : ", ") + std::string(name);
    }
    return text;
}

const FolderRule* FindRule(std::string_view path) {
    const FolderRule* found = nullptr;
    for (const FolderRule& rule : kFolderRules) {
        if (path.starts_with(rule.folder) && (found == nullptr || rule.folder.size() > found->folder.size())) {
            found = &rule;
        }
    }
    return found;
}

struct Include {
    std::string_view name;
    bool quoted;
};

std::optional<Include> ParseInclude(std::string_view line) {
    constexpr std::string_view kBlanks = " \t";
    constexpr std::string_view kWord = "include";
    const auto skipBlanks = [&] { line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size())); };
    skipBlanks();
    if (!line.starts_with('#')) {
        return std::nullopt;
    }
    line.remove_prefix(1);
    skipBlanks();
    if (!line.starts_with(kWord)) {
        return std::nullopt;
    }
    line.remove_prefix(kWord.size());
    skipBlanks();
    const bool quoted = line.starts_with('"');
    const std::size_t end = line.find(quoted ? '"' : '>', 1);
    if (end == std::string_view::npos) {
        return Include{line, quoted};  // a macro, or a line cut short: not a name that any rule allows
    }
    return Include{line.substr(1, end - 1), quoted};
}

// Headers of the C++ standard library are the only ones with neither a folder nor an ending, but for Qt's.
bool IsStandard(std::string_view name) {
    return !name.empty() && name.find_first_of("./") == std::string_view::npos && name.front() != 'Q';
}

bool IsAllowed(const Include& include, const FolderRule& rule) {
    if (include.quoted) {
        return include.name.starts_with(rule.folder) || StartsWithOneOf(include.name, rule.project);
    }
    return IsStandard(include.name) || StartsWithOneOf(include.name, rule.system);
}

}  // namespace

std::vector<std::string> BrokenIncludeRules(const SourceFile& file) {
    std::vector<std::string> complaints;
    const FolderRule* const rule = FindRule(file.path);
    if (rule == nullptr) {
        return complaints;
    }
    int number = 0;
    for (const std::string& line : file.lines) {
        const std::string place = file.path + ":" + std::to_string(++number) + ": ";
        const auto include = ParseInclude(line);
        if (include && !IsAllowed(*include, *rule)) {
            complaints.push_back(place + std::string(rule->folder) + " may not include " + std::string(include->name));
        }
        for (const PrivateName& name : kPrivateNames) {
            if (line.find(name.text) != std::string::npos && !StartsWithOneOf(file.path, name.places)) {
                complaints.push_back(place + std::string(name.text) + " is for others: " + Join(name.places));
            }
        }
    }
    return complaints;
}

}  // namespace test
