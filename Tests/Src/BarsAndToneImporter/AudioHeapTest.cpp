#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Tests/Src/BarsAndToneImporter/SoundRequests.h"
#include "Tests/Support/CountedHeap.h"

#include <gtest/gtest.h>

#include <thread>

// A playback thread asks for audio: after its first request the heap, and with it the heap's lock, is left alone.

namespace {

using test::GuardedChannels;

struct Request {
    BarsAndToneInfo settings;
    std::uint32_t count;
};

std::vector<Request> Requests() {
    std::vector<Request> requests;
    for (const std::uint32_t count : {1U, 1920U, 4800U, 48'000U}) {
        for (const BarsAndToneInfo& settings : test::EverySound()) {
            requests.push_back({settings, count});
        }
    }
    return requests;
}

// What 100 requests take from the heap after the first: from every part of the longest cycle.
long long TakenAfterTheFirst(const Request& asked) {
    GuardedChannels channels(6, asked.count);
    imImportAudioRec7 record{};
    record.count = asked.count;
    record.buffers = channels.Pointers();
    BarsAndToneInfo settings = asked.settings;
    record.prefs = &settings;
    EXPECT_EQ(test::Request(kImportAudio, nullptr, &record), 0);
    const long long before = test::CountHeap().taken;
    for (int i = 1; i <= 100; ++i) {
        record.position += 7000;
        if (test::Request(kImportAudio, nullptr, &record) != 0) {
            return -1;
        }
    }
    return test::CountHeap().taken - before;
}

TEST(AudioHeap, IsNotTouchedAfterTheFirstRequest) {
    for (const Request& request : Requests()) {
        EXPECT_EQ(TakenAfterTheFirst(request), 0)
            << request.count << " samples of format " << static_cast<int>(request.settings.identifierFormat);
    }
}

TEST(AudioHeap, IsNotTouchedAfterTheFirstRequestOfAnyThread) {
    for (const Request& request : Requests()) {
        long long taken = -1;
        std::jthread([&] { taken = TakenAfterTheFirst(request); }).join();
        EXPECT_EQ(taken, 0) << request.count << " samples of format "
                            << static_cast<int>(request.settings.identifierFormat);
    }
}

}  // namespace
