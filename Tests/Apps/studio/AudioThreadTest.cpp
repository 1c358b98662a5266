#include <lineup/ToneChoice.h>
#include "Apps/studio/Sound/ClipPlayback.h"
#include "Apps/studio/Sound/PullDevice.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <dlfcn.h>
#include <new>
#include <pthread.h>
#include <vector>

namespace {

// What the thread under watch does that an audio thread must not.
thread_local bool watched = false;
thread_local int allocations = 0;
thread_local int locks = 0;

template <class Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

void* Allocate(std::size_t bytes) {
    allocations += watched ? 1 : 0;
    if (void* const memory = std::malloc(bytes == 0 ? 1 : bytes)) {
        return memory;
    }
    throw std::bad_alloc();
}

}  // namespace

// In front of the libraries' own, in every library of this program.
void* operator new(std::size_t bytes) {
    return Allocate(bytes);
}
void* operator new[](std::size_t bytes) {
    return Allocate(bytes);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
extern "C" __attribute__((visibility("default"))) int pthread_mutex_lock(pthread_mutex_t* mutex) {
    static auto* const next = Next<int(pthread_mutex_t*)>("pthread_mutex_lock");
    locks += watched ? 1 : 0;
    return next(mutex);
}

namespace {

struct Watch {
    Watch() {
        allocations = 0;
        locks = 0;
        watched = true;
    }
    ~Watch() { watched = false; }
};

class AudioThread : public testing::TestWithParam<const char*> {};

TEST(AudioThreadWatch, SeesWhatItIsToSee) {
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    const Watch watch;
    pthread_mutex_lock(&mutex);
    pthread_mutex_unlock(&mutex);
    ::operator delete(::operator new(8));
    EXPECT_EQ(allocations, 1);
    EXPECT_EQ(locks, 1);
}

// A clip, in turn, of a cycle's length and looped, with a seek in every pull.
TEST_P(AudioThread, PullsWithoutAllocatingOrLocking) {
    const auto plugin = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
    lineup::ToneChoice tone;
    if (*GetParam() != 0) {
        tone.ident = GetParam();
    }
    const auto clip = std::make_shared<const lineup::Clip>(plugin, lineup::MakeSettings(*plugin, tone));
    const auto playback = std::make_shared<studio::ClipPlayback>(
        clip, studio::SpeakerMap(clip->NumChannels(), clip->NumChannels()), 643200, 0);
    playback->SetLoop(true);
    studio::PullDevice device(playback, QAudioFormat::Float);
    ASSERT_TRUE(device.Open());
    EXPECT_TRUE(device.isSequential());  // it has neither a size nor places to go back to
    std::vector<char> bytes(static_cast<std::size_t>(4 * 960 * clip->NumChannels()));
    const auto size = static_cast<qint64>(bytes.size());
    EXPECT_EQ(device.read(bytes.data(), size), size);  // the first one may warm up what is below
    EXPECT_EQ(device.read(bytes.data(), size - 1), size - qint64{4} * clip->NumChannels()) << "no whole frames";
    EXPECT_GT(device.bytesAvailable(), size) << "it has an end";
    const Watch watch;
    qint64 pulled = 0;
    for (int i = 0; i < 1500; ++i) {
        if (i % 3 == 0) {
            playback->Seek(i * 421);
        }
        pulled += device.read(bytes.data(), size);
    }
    watched = false;
    EXPECT_EQ(pulled, 1500 * size);
    EXPECT_EQ(allocations, 0);
    EXPECT_EQ(locks, 0);
}

INSTANTIATE_TEST_SUITE_P(EveryTone, AudioThread, testing::Values("", "ebu-stereo-1000", "ebu-5.1", "blits"));

}  // namespace
