#include <lineup/services/LocalizerSetup.h>
#include "Host/Interface/Core/Localizer.h"
#include "Host/Interface/Platform/CFBundle.h"
#include "Host/Services/Text/UnicodeText.h"
#include "Tests/Host/Services/Text/MessageCatalogue.h"
#include "Tests/Support/LoadedBundleCopy.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <thread>
#include <vector>

// Bundles come and go and the language changes while other threads ask for texts and bundles: every text is
// one of the two there are.
TEST(ServicesBehindDialogs, MayBeAskedOnManyThreadsWhileTheirSetupChanges) {
    constexpr int kThreads = 3;
    constexpr int kRounds = 200;
    const std::string key = "$$$/Test/Greeting=Hello";
    std::array<int, kThreads> wrong{};
    std::vector<std::thread> threads;
    for (int& count : wrong) {
        threads.emplace_back([&count, &key] {
            for (int round = 0; round < kRounds; ++round) {
                const auto text = zelcore::ToUtf8(zelcore::config::Localizer::Get().GetLocalizedString(key));
                count += text != "Hello" && text != "Hallo" ? 1 : 0;
                CFBundleGetBundleWithIdentifier("org.barsandtone.importer");
            }
        });
    }
    for (int round = 0; round < 10; ++round) {
        const test::LoadedBundleCopy bundle;
        bundle.AddResource("locale/de/LC_MESSAGES/BarsAndTone.mo", test::MessageCatalogue().Add(key, "Hallo").Bytes());
        zelcore::config::SetLanguage(round % 2 == 0 ? "de" : "C");
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, (std::array<int, kThreads>{}));
}
