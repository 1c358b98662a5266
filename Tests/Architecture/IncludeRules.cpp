#include "Tests/Architecture/IncludeRules.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string_view>

namespace test {

namespace {

using Names = std::vector<std::string_view>;

// What the two sides persist: all that the host knows of the plug-in.
constexpr std::string_view kSettingsRecord = "Src/BarsAndToneImporter/BarsAndToneInfo.h";

// Whose the headers of include/lineup are: they are held to the rules of their room.
struct RoomOfHeaders {
    std::string_view room;
    Names headers;
};

const std::vector<RoomOfHeaders> kRoomsOfHeaders = {
    {"Host/Lineup/Values/",
     {"Api.h", "Card.h", "ChannelLayout.h", "Disk.h", "Dither.h", "Error.h", "Idents.h", "Level.h", "Limits.h",
      "PictureAspect.h", "PictureFormat.h", "Rational.h", "Scan.h", "Timecode.h", "UsageError.h"}},
    {"Host/Lineup/Plugin/", {"BundleSearch.h", "DesktopToolkit.h", "Importer.h"}},
    {"Host/Lineup/Clip/", {"AudioReader.h", "Clip.h", "TimeAxis.h", "ToneChoice.h", "WaveformOverview.h"}},
    {"Host/Lineup/Files/", {"ClipDocument.h", "SettingsFile.h"}},
    {"Host/Lineup/Export/", {"ExportReport.h", "ExportSettings.h", "Exporter.h", "FormatTable.h", "StillPicture.h"}},
    {"Host/Lineup/Validation/", {"Validation.h"}},
    {"Host/Lineup/Check/", {"Check.h", "CheckReport.h", "CheckSettings.h", "Watch.h"}},
    {"Host/Lineup/Send/", {"Send.h", "SendClock.h", "SendSettings.h", "StreamTable.h"}},
};

// What the files of a folder may include beside their own folder and the C++ standard library. A name that
// ends with a slash stands for all below it. The longest folder that holds a file decides.
struct FolderRule {
    std::string_view folder;
    Names project;
    Names system;
};

const std::vector<FolderRule> kFolderRules = {
    {"Src/", {"Host/Interface/"}, {"boost/"}},
    {"Src/VectorPrimitives/", {"Host/Interface/Core/"}, {"arm_neon.h", "boost/", "immintrin.h"}},
    {"Src/ToneGenerator/",
     {"Src/VectorPrimitives/", "Host/Interface/Core/", "Host/Interface/Media/", "Host/Interface/Platform/"},
     {"boost/"}},
    {"Src/ToneGenerator/Sine/",
     {"Src/VectorPrimitives/", "Host/Interface/Core/"},
     {"arm_neon.h", "boost/", "immintrin.h"}},
    {"Src/BarsAndToneImporter/", {"Src/", "Host/Interface/"}, {"boost/"}},
    {"Src/ToneSettingsDialog/", {kSettingsRecord, "Host/Interface/"}, {"boost/"}},
    {"Host/Interface/", {}, {}},
    {"Host/Interface/UI/", {"Host/Interface/"}, {"boost/"}},
    {"Host/Interface/Platform/", {"Host/Interface/"}, {"CoreFoundation/", "libkern/", "string.h"}},
    {"Host/Services/",
     {"Host/Interface/"},
     {"boost/", "cpuid.h", "dlfcn.h", "immintrin.h", "link.h", "plist/", "sys/mman.h", "unistd.h"}},
    {"Host/Desktop/", {"Host/Interface/"}, {"boost/", "fmt/", "Q", "xcb/"}},
    {"Host/Lineup/Values/", {"Host/Interface/Media/", kSettingsRecord}, {"fmt/"}},
    {"Host/Lineup/Plugin/",
     {"Host/Interface/", "Host/Services/", kSettingsRecord, "Host/Lineup/Values/"},
     {"fmt/", "dlfcn.h", "fcntl.h", "sys/", "unistd.h"}},
    {"Host/Lineup/Clip/",
     {"Host/Interface/", "Host/Services/", kSettingsRecord, "Host/Lineup/Values/", "Host/Lineup/Plugin/"},
     {"fmt/"}},
    {"Host/Lineup/Picture/",
     {"Host/Interface/", "Host/Services/", "Host/Lineup/Values/", "Host/Lineup/Clip/"},
     {"fmt/", "zimg"}},
    {"Host/Lineup/Files/",
     {kSettingsRecord, "Host/Lineup/Values/"},
     {"fmt/", "nlohmann/", "fcntl.h", "poll.h", "sys/", "unistd.h"}},
    {"Host/Lineup/Export/",
     {"Host/Interface/", "Host/Services/", kSettingsRecord, "Host/Lineup/Values/", "Host/Lineup/Plugin/",
      "Host/Lineup/Clip/", "Host/Lineup/Picture/", "Host/Lineup/Files/"},
     {"fmt/", "fcntl.h", "immintrin.h", "poll.h", "sys/", "unistd.h"}},
    {"Host/Lineup/Export/Media/",
     {"Host/Interface/", "Host/Services/", kSettingsRecord, "Host/Lineup/Values/", "Host/Lineup/Plugin/",
      "Host/Lineup/Clip/", "Host/Lineup/Picture/", "Host/Lineup/Files/", "Host/Lineup/Export/"},
     {"fmt/", "libav", "libsw"}},
    {"Host/Lineup/Validation/",
     {"Host/Interface/", "Host/Services/", kSettingsRecord, "Host/Lineup/Values/",
      "Host/Lineup/Plugin/DynamicLibrary.h"},
     {"fmt/", "elf.h", "fcntl.h", "malloc.h", "spawn.h", "sys/", "unistd.h"}},
    {"Host/Lineup/Validation/Interface/",
     {"Host/Interface/", "Host/Services/", "Host/Lineup/Values/", "Host/Lineup/Validation/Examination/",
      "Host/Lineup/Validation/Probes/", "Host/Lineup/Validation/PromiseGroups.h"},
     {"fmt/", "elf.h", "malloc.h"}},
    {"Host/Lineup/Check/",
     {"Host/Interface/", "Host/Services/", kSettingsRecord, "Host/Lineup/Values/", "Host/Lineup/Plugin/",
      "Host/Lineup/Clip/", "Host/Lineup/Picture/", "Host/Lineup/Files/", "Host/Lineup/Export/"},
     {"fmt/"}},
    {"Host/Lineup/Check/Sound/Signal/", {"Host/Lineup/Values/"}, {}},
    {"Host/Lineup/Check/Sound/Find/",
     {"Host/Interface/", kSettingsRecord, "Host/Lineup/Values/", "Host/Lineup/Plugin/", "Host/Lineup/Clip/",
      "Host/Lineup/Check/CheckSettings.h", "Host/Lineup/Check/Sound/Signal/"},
     {}},
    {"Host/Lineup/Check/Sound/Measure/", {"Host/Lineup/Check/Sound/Signal/", "Host/Lineup/Check/Sound/Find/"}, {}},
    {"Host/Lineup/Check/Sound/Events/",
     {"Host/Lineup/Check/Sound/Signal/", "Host/Lineup/Check/Sound/Find/", "Host/Lineup/Check/Sound/Measure/"},
     {}},
    {"Host/Lineup/Check/Sound/Follow/",
     {"Host/Lineup/Values/", "Host/Lineup/Clip/", "Host/Lineup/Check/CheckReport.h", "Host/Lineup/Check/Sound/Signal/",
      "Host/Lineup/Check/Sound/Find/", "Host/Lineup/Check/Sound/Measure/", "Host/Lineup/Check/Sound/Events/"},
     {}},
    {"Host/Lineup/Check/Sound/Decide/",
     {"Host/Lineup/Values/", "Host/Lineup/Check/CheckReport.h", "Host/Lineup/Check/CheckSettings.h",
      "Host/Lineup/Check/Sound/Signal/", "Host/Lineup/Check/Sound/Find/", "Host/Lineup/Check/Sound/Measure/",
      "Host/Lineup/Check/Sound/Events/", "Host/Lineup/Check/Sound/Follow/"},
     {"fmt/"}},
    {"Host/Lineup/Check/Reader/",
     {"Host/Lineup/Values/", "Host/Lineup/Plugin/DynamicLibrary.h", "Host/Lineup/Check/",
      "Host/Lineup/Export/Exporter.h"},
     {"fmt/", "fcntl.h", "poll.h", "spawn.h", "sys/", "unistd.h"}},
    {"Host/Lineup/Check/Reader/Decoder/",
     {"Host/Lineup/Check/Reader/Protocol/"},
     {"fmt/", "libav", "libsw", "linux/", "fcntl.h", "sys/", "unistd.h"}},
    {"Host/Lineup/Send/",
     {"Host/Interface/", kSettingsRecord, "Host/Lineup/Values/", "Host/Lineup/Plugin/DynamicLibrary.h",
      "Host/Lineup/Clip/", "Host/Lineup/Export/"},
     {"fmt/", "fcntl.h", "netdb.h", "netinet/", "sys/", "unistd.h"}},
    {"Host/Lineup/Send/Media/",
     {"Host/Lineup/Values/", "Host/Lineup/Clip/", "Host/Lineup/Export/", "Host/Lineup/Send/"},
     {"fmt/", "libav", "libsw"}},
    {"Apps/",
     {"Host/Interface/", "Host/Services/", "Host/Lineup/", kSettingsRecord},
     {"boost/", "cairo", "CLI/", "fmt/", "nlohmann/", "fcntl.h", "poll.h", "signal.h", "sys/", "unistd.h"}},
    {"Apps/lanes/", {"Host/Interface/", "Host/Lineup/"}, {"fmt/"}},
    {"Apps/studio/",
     {"Apps/lanes/", "Apps/version/", "Host/Interface/", "Host/Services/", "Host/Lineup/", "Host/Desktop/",
      kSettingsRecord},
     {"boost/", "CLI/", "fmt/", "nlohmann/", "Q"}},
    {"Bridges/MLT/",
     {"Host/Interface/", "Host/Services/", "Host/Lineup/", kSettingsRecord},
     {"dlfcn.h", "fmt/", "framework/"}},
    {"Bridges/GStreamer/", {"Host/Lineup/", kSettingsRecord}, {"fmt/", "gst/"}},
    {"Tests/Bridges/",
     {"Bridges/MLT/", "Host/Interface/Frame/", "Host/Lineup/Plugin/Importer.h", kSettingsRecord, "Tests/Support/"},
     {"dlfcn.h", "framework/", "gmock/", "gtest/", "yaml-cpp/"}},
    {"Tests/Bridges/GStreamer/",
     {"Host/Lineup/Clip/", "Host/Lineup/Export/Exporter.h", "Host/Lineup/Picture/", "Host/Lineup/Plugin/Importer.h",
      "Host/Lineup/Files/", "Host/Lineup/Values/", kSettingsRecord, "Tests/Bridges/PlugInSound.h",
      "Tests/Host/Lineup/Check/Sound/SoundOf.h", "Tests/Support/"},
     {"gmock/", "gst/", "gtest/"}},
};

// What only these files may mention, tests aside.
struct PrivateName {
    std::string_view text;
    Names places;
};

const std::vector<PrivateName> kPrivateNames = {
    {"Host/Interface/Importer/ImportRecords.h",
     {"Src/BarsAndToneImporter/", "Host/Lineup/Plugin/Importer.cpp", "Host/Lineup/Validation/"}},
    {"kImportEntryName",
     {"Host/Interface/Importer/ImportEntry.h", "Host/Lineup/Plugin/Importer.cpp",
      "Host/Lineup/Validation/Examination/RawImporter.cpp", "Host/Lineup/Validation/Interface/LoadingChecks.cpp"}},
    {"dlopen(", {"Host/Lineup/Plugin/DynamicLibrary.cpp", "Host/Services/Text/CatalogueLibrary.cpp"}},
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

// `name` is what follows "lineup/" in an include, or "include/lineup/" in a path: the place in the tree that answers
// for it. Empty when no room does.
std::string PlaceOfDoor(std::string_view name) {
    constexpr std::string_view kInterface = "interface/";
    constexpr std::string_view kServices = "services/";
    if (name.starts_with(kInterface)) {
        return "Host/Interface/" + std::string(name.substr(kInterface.size()));
    }
    if (name.starts_with(kServices)) {
        return "Host/Services/" + std::string(name.substr(kServices.size()));
    }
    if (kSettingsRecord.ends_with("/" + std::string(name))) {
        return std::string(kSettingsRecord);
    }
    for (const RoomOfHeaders& room : kRoomsOfHeaders) {
        if (std::ranges::find(room.headers, name) != room.headers.end()) {
            return std::string(room.room) + std::string(name);
        }
    }
    return {};
}

// The file as if it lay in the folder that answers for it.
std::string PlaceOf(std::string_view path) {
    constexpr std::string_view kDoor = "include/lineup/";
    return path.starts_with(kDoor) ? PlaceOfDoor(path.substr(kDoor.size())) : std::string(path);
}

// Headers of the C++ standard library are the only ones with neither a folder nor an ending, but for Qt's.
bool IsStandard(std::string_view name) {
    return !name.empty() && name.find_first_of("./") == std::string_view::npos && name.front() != 'Q';
}

// The headers of the interface include each other by neighbourhood: they are installed under another name.
std::string Resolved(const Include& include, std::string_view from) {
    constexpr std::string_view kDoor = "lineup/";
    if (!include.quoted) {
        return include.name.starts_with(kDoor) ? PlaceOfDoor(include.name.substr(kDoor.size())) : "";
    }
    if (!from.starts_with("Host/Interface/")) {
        return std::string(include.name);
    }
    return (std::filesystem::path(from).parent_path() / include.name).lexically_normal().generic_string();
}

bool IsAllowed(const Include& include, const FolderRule& rule, std::string_view from) {
    const std::string project = Resolved(include, from);
    if (include.quoted || !project.empty()) {
        return project.starts_with(rule.folder) || StartsWithOneOf(project, rule.project);
    }
    return IsStandard(include.name) || StartsWithOneOf(include.name, rule.system);
}

}  // namespace

std::vector<std::string> BrokenIncludeRules(const SourceFile& file) {
    std::vector<std::string> complaints;
    const std::string place = PlaceOf(file.path);
    if (place.empty()) {
        return {file.path + ": no room answers for this header: it has no row in kRoomsOfHeaders"};
    }
    const FolderRule* const rule = FindRule(place);
    if (rule == nullptr) {
        return complaints;
    }
    int number = 0;
    for (const std::string& line : file.lines) {
        const std::string where = file.path + ":" + std::to_string(++number) + ": ";
        const auto include = ParseInclude(line);
        if (include && !IsAllowed(*include, *rule, place)) {
            complaints.push_back(where + std::string(rule->folder) + " may not include " + std::string(include->name));
        }
        for (const PrivateName& name : kPrivateNames) {
            if (line.find(name.text) != std::string::npos && !StartsWithOneOf(file.path, name.places)) {
                complaints.push_back(where + std::string(name.text) + " is for others: " + Join(name.places));
            }
        }
    }
    return complaints;
}

}  // namespace test
