#include "Host/Interface/Core/Localizer.h"

#include <lineup/services/LocalizerSetup.h>
#include "Host/Services/Bundles/LoadedBundles.h"
#include "Host/Services/Text/Catalogue.h"
#include "Host/Services/Text/LanguageName.h"
#include "Host/Services/Text/UnicodeText.h"

#include <algorithm>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace zelcore::config {

namespace {

constexpr std::string_view kKeyStart = "$$$/";

std::string_view DefaultText(std::string_view key) {
    const auto equals = key.find('=');
    return equals == std::string_view::npos ? key : key.substr(equals + 1);
}

class CatalogueLocalizer : public Localizer {
public:
    [[nodiscard]] Brio::String GetLocalizedString(std::string_view key) const override {
        if (!key.starts_with(kKeyStart)) {
            return FromUtf8(key);
        }
        const auto translation = Translate(std::string(key));
        return FromUtf8(translation ? std::string_view(*translation) : DefaultText(key));
    }

    void AddFolder(const fs::path& folder) {
        const std::lock_guard lock(mMutex);
        if (std::find(mFolders.begin(), mFolders.end(), folder) == mFolders.end()) {
            mFolders.push_back(folder);
        }
        mRead = false;
    }

    void SetLanguage(std::string_view language) {
        const std::lock_guard lock(mMutex);
        mLanguage = language.empty() ? LanguageOfEnvironment() : ParseLanguageName(language);
        mRead = false;
    }

private:
    std::optional<std::string> Translate(const std::string& key) const {
        const std::lock_guard lock(mMutex);
        ReadCatalogues();
        for (const Catalogue& catalogue : mCatalogues) {
            if (auto text = catalogue.Find(key)) {
                return text;
            }
        }
        return std::nullopt;
    }

    // Reads what is not read yet: after a change of setup, and when bundles came or went.
    void ReadCatalogues() const {
        auto bundles = LoadedBundles();
        if (mRead && bundles == mBundles) {
            return;
        }
        mRead = false;
        mBundles = std::move(bundles);
        mCatalogues.clear();
        for (const fs::path& folder : mFolders) {
            mCatalogues.emplace_back(folder, mLanguage);
        }
        for (const auto* const bundle : mBundles) {
            mCatalogues.emplace_back(bundle->folder / "Contents" / "Resources" / "locale", mLanguage);
        }
        mRead = true;
    }

    mutable std::mutex mMutex;
    LanguageName mLanguage = LanguageOfEnvironment();
    std::vector<fs::path> mFolders;
    mutable bool mRead = false;
    mutable std::vector<CFBundleRef> mBundles;
    mutable std::vector<Catalogue> mCatalogues;
};

CatalogueLocalizer& TheLocalizer() {
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): the localiser guards itself
    static auto* const localizer = new CatalogueLocalizer();  // texts may be asked for until the very end
    return *localizer;
}

}  // namespace

Localizer& Localizer::Get() {
    return TheLocalizer();
}

void AddCatalogues(const fs::path& folder) {
    TheLocalizer().AddFolder(folder);
}

void SetLanguage(std::string_view language) {
    TheLocalizer().SetLanguage(language);
}

}  // namespace zelcore::config
