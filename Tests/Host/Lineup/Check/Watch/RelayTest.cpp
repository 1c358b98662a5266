// A stream that is sent, relayed over UDP by somebody who loses and delays some of it, and watched at the other end.
#include <lineup/Clip.h>
#include <lineup/Send.h>
#include <lineup/ToneChoice.h>
#include <lineup/Watch.h>
#include "Tests/Host/Lineup/Check/Watch/UdpRelay.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace {

constexpr std::int64_t kSentRate = 48000;
constexpr std::int64_t kSentSeconds = 24;
constexpr double kWatched = 21;
constexpr double kPacket = 0.05;  // s: of SMPTE 302M, and what a datagram has of others

class Relay : public test::TestFolder {
protected:
    // What is sent in 24 seconds, as it goes over the network.
    [[nodiscard]] std::string Stream(const std::shared_ptr<const lineup::Importer>& importer) const {
        const lineup::Clip clip(importer, lineup::MakeSettings(*importer, {.ident = "ebu-stereo-1000"}));
        lineup::SendSettings settings;
        settings.target = (Folder() / "sent.ts").string();
        settings.videoCodec = lineup::kNoCodec;
        settings.audioCodec = "s302m";
        settings.timing = lineup::SendTiming::Free;
        settings.samples = kSentSeconds * kSentRate;
        lineup::Send(clip, settings);
        return test::ReadFile(settings.target);
    }
};

// What is told of it at the other end.
std::vector<lineup::WatchedFault> Faults(const std::shared_ptr<const lineup::Importer>& importer,
                                         const std::string& stream, const test::RelayDamage& damage) {
    const test::UdpRelay relay(stream, damage);
    std::vector<lineup::WatchedFault> faults;
    lineup::WatchListener listener;
    listener.onBegins = [&](const lineup::WatchedFault& fault) { faults.push_back(fault); };
    lineup::CheckSettings settings;
    settings.forSeconds = kWatched;
    const lineup::WatchReport report =
        lineup::Watch("udp://" + relay.Address() + "?fifo_size=100000", importer, settings, listener);
    EXPECT_EQ(report.expected, "ebu-stereo-1000");
    return faults;
}

TEST_F(Relay, LosesAndDelaysWhatTheWatchThenNames) {
    const auto importer = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
    const std::string stream = Stream(importer);
    const double datagrams = static_cast<double>(stream.size()) / test::UdpRelay::kDatagram;
    const auto datagramAt = [&](double seconds) {
        return static_cast<std::size_t>(datagrams * seconds / kSentSeconds);
    };
    const std::vector<double> damaged = {5.2, 8.6, 14.3};
    test::RelayDamage damage;
    damage.dropped = {datagramAt(damaged[0]), datagramAt(damaged[2])};
    damage.delayed = {{datagramAt(damaged[1]), 3}};
    EXPECT_EQ(Faults(importer, stream, {}).size(), 0U);
    const std::vector<lineup::WatchedFault> faults = Faults(importer, stream, damage);

    std::string text;
    for (const lineup::WatchedFault& fault : faults) {
        text += fault.fault.id + ": " + fault.fault.text + "\n";
    }
    for (const double at : damaged) {
        EXPECT_TRUE(std::ranges::any_of(faults,
                                        [at](const lineup::WatchedFault& fault) {
                                            return (fault.fault.id == "dropout" ||
                                                    fault.fault.id.starts_with("samples-")) &&
                                                   std::abs(fault.begins - at) < kPacket;
                                        }))
            << at << "\n"
            << text;
    }
    EXPECT_LE(faults.size(), 2 * damaged.size()) << text;
}

}  // namespace
