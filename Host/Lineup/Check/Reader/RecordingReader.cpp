#include "Host/Lineup/Check/Reader/RecordingReader.h"

#include <lineup/Exporter.h>
#include "Host/Lineup/Check/Reader/RecordingName.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace lineup {

inline namespace parts {

namespace {

using decoding::EndCause;

constexpr std::size_t kMostArrivals = 4096;

std::string WithCause(const std::string& sentence, const std::string& cause) {
    return cause.empty() ? sentence : fmt::format("{}: {}", sentence, cause);
}

std::string MissingProtection(std::uint32_t givenUp) {
    std::string text;
    const auto add = [&](std::uint32_t right, const char* words) {
        if ((givenUp & right) == 0) {
            text += (text.empty() ? "" : ", ") + std::string(words);
        }
    };
    add(decoding::kSystemCalls, "system calls are not filtered (seccomp)");
    add(decoding::kFiles, "files are not out of reach (Landlock)");
    add(decoding::kMemory, "memory has no limit");
    return text;
}

}  // namespace

RecordingReader::RecordingReader(std::unique_ptr<ByteInput> input, std::function<std::string()> ending,
                                 PictureListener* pictures)
    : mInput(std::move(input)), mEnding(std::move(ending)), mMessages(*mInput), mPictures(pictures) {
    try {
        ReadFacts();
    } catch (const Unreadable&) {
        throw;
    } catch (const Cancelled&) {
        throw;
    } catch (const Error& error) {
        throw Unreadable(Unreadable::Why::NoRecording, error.what());
    }
}

std::unique_ptr<RecordingReader> RecordingReader::Open(const std::string& recording, const DecoderSettings& settings,
                                                       const DecoderProcess::KeepGoing& keepGoing,
                                                       PictureListener* pictures) {
    auto process = std::make_unique<DecoderProcess>(ParseRecordingName(recording), settings, keepGoing);
    DecoderProcess* const decoder = process.get();
    return std::make_unique<RecordingReader>(
        std::move(process), [decoder] { return decoder->End(); }, pictures);
}

// Up to the first sample, or to the reason why none comes.
void RecordingReader::ReadFacts() {
    while (!mHasBegun) {
        const std::optional<DecoderMessage> message = mMessages.Next();
        if (!message) {
            throw Unreadable(Unreadable::Why::NoRecording, WithCause("the decoder ended too early", mEnding()));
        }
        if (const auto* const hello = std::get_if<decoding::Hello>(&*message)) {
            mGivenUp = hello->givenUp;
        } else if (const auto* const begin = std::get_if<decoding::Begin>(&*message)) {
            mBegin = *begin;
            mSeconds = begin->seconds > 0 ? std::optional(begin->seconds) : std::nullopt;
            mHasBegun = true;
            if (!mMessages.Tracks().empty()) {
                mTracks.emplace(mMessages.Tracks());
            }
        } else if (const auto* const end = std::get_if<decoding::End>(&*message)) {
            const bool isSilent = end->cause == static_cast<std::uint32_t>(EndCause::NoSound);
            throw Unreadable(isSilent ? Unreadable::Why::NoSound : Unreadable::Why::NoRecording,
                             FieldText(end->reason));
        } else {
            mPictures.TakeUp(*message);
        }
    }
    if (!mTracks && !mPictures.WantsMore()) {
        throw Unreadable(Unreadable::Why::NoSound, "it has no sound");
    }
}

void RecordingReader::TakeUp(const DecoderMessage& message) {
    if (const auto* const samples = std::get_if<DecodedSamples>(&message)) {
        mTracks->Add(*samples);
    } else if (const auto* const damage = std::get_if<decoding::Damage>(&message)) {
        mTracks->Add(*damage);
    } else if (const auto* const end = std::get_if<decoding::End>(&message)) {
        Finish(*end);
    } else if (const auto* const arrival = std::get_if<decoding::Arrival>(&message)) {
        if (mArrivals.size() < kMostArrivals) {
            mArrivals.push_back(*arrival);
        }
    } else {
        mPictures.TakeUp(message);
    }
}

void RecordingReader::Finish(const std::optional<decoding::End>& end) {
    const auto endsBy = [&end](EndCause cause) { return end && static_cast<EndCause>(end->cause) == cause; };
    mHasEnded = true;
    mHasBrokenOff = !end || endsBy(EndCause::CutShort) || endsBy(EndCause::NoMemory);
    if (mTracks) {
        mTracks->PadAll();
    }
    if (!end) {
        mEndedBecause = WithCause("the decoder ended too early", mEnding());
    } else if (!endsBy(EndCause::Whole)) {
        mEndedBecause = FieldText(end->reason);
    }
}

// A decoder that goes wrong on the way leaves what it has said until then.
void RecordingReader::Pump() {
    try {
        const std::optional<DecoderMessage> message = mMessages.Next();
        if (message) {
            TakeUp(*message);
        } else {
            Finish(std::nullopt);
        }
    } catch (const Cancelled&) {
        throw;
    } catch (const Error& error) {
        Finish(std::nullopt);
        mEndedBecause = error.what();
    }
}

std::size_t RecordingReader::Read(std::span<float* const> inputs, std::size_t most) {
    while (mTracks->Waiting() < most && !mHasEnded) {
        Pump();
    }
    const std::size_t count = std::min(most, mTracks->Waiting());
    mTracks->Take(inputs, count);
    return count;
}

void RecordingReader::ReadPictures() {
    constexpr std::size_t kAtOnce = 4096;
    std::vector<std::vector<float>> dropped(HasSound() ? static_cast<std::size_t>(Inputs()) : 0,
                                            std::vector<float>(kAtOnce));
    std::vector<float*> pointers;
    pointers.reserve(dropped.size());
    for (std::vector<float>& input : dropped) {
        pointers.push_back(input.data());
    }
    while (!mHasEnded && HasPictures() && mPictures.WantsMore()) {
        Pump();
        while (HasSound() && mTracks->Waiting() > 0) {
            mTracks->Take(pointers, std::min(mTracks->Waiting(), kAtOnce));
        }
    }
}

std::optional<int> RecordingReader::Bits() const {
    const std::uint32_t bits = mTracks->Facts().front().bits;
    const bool isSame = std::ranges::all_of(mTracks->Facts(), [bits](const auto& track) { return track.bits == bits; });
    return bits != 0 && isSame ? std::optional(static_cast<int>(bits)) : std::nullopt;
}

std::optional<bool> RecordingReader::Lossy() const {
    const auto has = [](std::uint32_t flag) {
        return [flag](const decoding::Track& track) { return track.flags == flag; };
    };
    if (std::ranges::any_of(mTracks->Facts(), has(decoding::kLossy))) {
        return true;
    }
    return std::ranges::all_of(mTracks->Facts(), has(decoding::kLossless)) ? std::optional(false) : std::nullopt;
}

std::vector<CheckNote> RecordingReader::Notes() const {
    std::vector<CheckNote> notes;
    if ((mGivenUp & decoding::kEverything) != decoding::kEverything) {
        notes.push_back({.id = "decoder-not-confined",
                         .part = CheckPart::Both,
                         .text = fmt::format("The recording was decoded with rights that decoding does not need: {}.",
                                             MissingProtection(mGivenUp))});
    }
    if (mBegin.leftOut > 0) {
        notes.push_back({.id = "inputs-left-out",
                         .text = fmt::format("The recording has {} channels more than the {} that are looked at.",
                                             mBegin.leftOut, decoding::kMostChannels)});
    }
    for (const decoding::Track& track : mMessages.Tracks()) {
        if (track.recordedRate != track.sampleRate) {
            notes.push_back({.id = "track-resampled",
                             .text = fmt::format("Track {} was converted from {} Hz to {} Hz, the rate of the first.",
                                                 track.index + 1, track.recordedRate, track.sampleRate)});
        }
    }
    return notes;
}

}  // namespace parts

}  // namespace lineup
