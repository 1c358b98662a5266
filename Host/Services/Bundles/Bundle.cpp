#include <lineup/services/Bundle.h>
#include "Host/Services/Bundles/PlistCheck.h"

#include <plist/plist.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>

namespace fs = std::filesystem;

namespace zelcore {

namespace {

constexpr std::uintmax_t kLargestPlistBytes = 1U << 20U;

struct FreePlist {
    void operator()(void* node) const noexcept { plist_free(node); }
};
using Plist = std::unique_ptr<void, FreePlist>;

Plist ReadPlist(const fs::path& file) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(file, error);
    if (error) {
        throw BundleError("cannot read " + file.string() + ": " + error.message());
    }
    if (size > kLargestPlistBytes) {
        throw BundleError("cannot use " + file.string() + ": it is larger than 1 MiB, which no Info.plist is");
    }
    std::ifstream stream(file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream) {
        throw BundleError("cannot read " + file.string());
    }
    const PlistCheck check = CheckPlist(text);
    if (check == PlistCheck::TooMuch) {
        throw BundleError("cannot use " + file.string() + ": it holds more values, or lists deeper in one another, " +
                          "than any Info.plist does");
    }
    plist_t root = nullptr;
    if (check == PlistCheck::Sound) {
        // Of both forms that an Info.plist has; newer libraries would take others too.
        const auto length = static_cast<std::uint32_t>(text.size());
        (plist_is_binary(text.data(), length) != 0 ? plist_from_bin : plist_from_xml)(text.data(), length, &root);
    }
    Plist plist(root);
    if (!plist || plist_get_node_type(root) != PLIST_DICT) {
        throw BundleError("cannot use " + file.string() + ": it is not a property list with a dictionary");
    }
    return plist;
}

std::optional<std::string> FindString(const Plist& dictionary, const char* key) {
    auto* const node = plist_dict_get_item(dictionary.get(), key);
    if (node == nullptr || plist_get_node_type(node) != PLIST_STRING) {
        return std::nullopt;
    }
    std::uint64_t length = 0;
    const char* const text = plist_get_string_ptr(node, &length);
    return std::string(text, length);
}

std::string RequireString(const Plist& dictionary, const char* key, const fs::path& file) {
    auto text = FindString(dictionary, key);
    if (!text || text->empty()) {
        throw BundleError("cannot use " + file.string() + ": it has no string " + key);
    }
    return *std::move(text);
}

}  // namespace

Bundle::Bundle(const fs::path& folder) : mFolder(folder) {
    std::error_code error;
    if (!fs::is_directory(folder, error)) {
        throw BundleError("no bundle at " + folder.string() +
                          (fs::exists(folder, error) ? ": it is not a folder" : ": no such folder"));
    }
    const fs::path file = folder / "Contents" / "Info.plist";
    if (!fs::is_regular_file(file, error)) {
        throw BundleError("no bundle at " + folder.string() + ": it has no Contents/Info.plist");
    }
    const Plist plist = ReadPlist(file);
    mExecutableName = RequireString(plist, "CFBundleExecutable", file);
    mIdentifier = RequireString(plist, "CFBundleIdentifier", file);
    mVersion = FindString(plist, "CFBundleShortVersionString").value_or("");
    if (fs::path(mExecutableName).filename() != mExecutableName) {
        throw BundleError("cannot use " + file.string() + ": CFBundleExecutable is \"" + mExecutableName +
                          "\", which is not a plain file name");
    }
}

fs::path Bundle::Executable() const {
    fs::path file = mFolder / "Contents" / ZEL_PLATFORM_FOLDER / (mExecutableName + ".so");
    std::error_code error;
    if (!fs::is_regular_file(file, error)) {
        throw BundleError("the bundle " + mFolder.string() + " has no executable for this platform: it would be " +
                          file.string());
    }
    return file;
}

}  // namespace zelcore
