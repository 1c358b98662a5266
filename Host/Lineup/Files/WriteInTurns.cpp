#include "Host/Lineup/Files/WriteInTurns.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

namespace lineup {
inline namespace parts {

namespace {

// One writes at a time, and making takes about as long as writing: more would wait.
constexpr unsigned kMostThreads = 3;

constexpr std::align_val_t kPage{4096};

struct FreePiece {
    void operator()(std::uint8_t* memory) const noexcept { ::operator delete[](memory, kPage); }
};
using PieceMemory = std::unique_ptr<std::uint8_t[], FreePiece>;

/// Who makes which piece, and whose turn it is to write.
class Turns {
public:
    explicit Turns(std::int64_t pieces) : mPieces(pieces) {}

    /// The next piece that nobody makes; none when all are being made.
    std::optional<std::int64_t> Next() {
        const std::lock_guard lock(mMutex);
        return mNext == mPieces ? std::nullopt : std::optional(mNext++);
    }

    /// Waits until all pieces before `piece` are written. False when something has failed.
    bool Await(std::int64_t piece) {
        std::unique_lock lock(mMutex);
        mChanged.wait(lock, [&] { return mFailure || mTurn == piece; });
        return !mFailure;
    }

    void Pass() {
        {
            const std::lock_guard lock(mMutex);
            ++mTurn;
        }
        mChanged.notify_all();
    }

    void Fail(std::exception_ptr failure) {
        {
            const std::lock_guard lock(mMutex);
            mFailure = mFailure ? mFailure : std::move(failure);
        }
        mChanged.notify_all();
    }

    void RethrowFailure() const {
        if (mFailure) {
            std::rethrow_exception(mFailure);
        }
    }

private:
    std::int64_t mPieces;
    std::mutex mMutex;
    std::condition_variable mChanged;
    std::int64_t mNext = 0;
    std::int64_t mTurn = 0;
    std::exception_ptr mFailure;  // the first
};

}  // namespace

void WriteInTurns(TargetFile& file, std::int64_t bytes, const std::function<MakePiece()>& makerForThread,
                  const std::function<void(std::int64_t)>& written) {
    constexpr auto kPiece = static_cast<std::int64_t>(kPieceBytes);
    const std::int64_t pieces = (bytes + kPiece - 1) / kPiece;
    Turns turns(pieces);
    const auto work = [&](bool tells) {
        try {
            const MakePiece make = makerForThread();
            const PieceMemory memory(new (kPage) std::uint8_t[kPieceBytes]);
            while (const auto piece = turns.Next()) {
                const std::int64_t at = *piece * kPiece;
                const std::span<std::uint8_t> room(memory.get(),
                                                   static_cast<std::size_t>(std::min(kPiece, bytes - at)));
                make(at, room);
                if (!turns.Await(*piece)) {
                    return;
                }
                if (!file.Write(room)) {
                    file.ThrowIfFailed();
                }
                turns.Pass();
                if (tells) {
                    written(at + static_cast<std::int64_t>(room.size()));
                }
            }
        } catch (...) {
            turns.Fail(std::current_exception());
        }
    };
    {
        std::vector<std::jthread> others;
        const auto useful = std::min<std::int64_t>(pieces, std::min(std::thread::hardware_concurrency(), kMostThreads));
        try {
            while (static_cast<std::int64_t>(others.size()) + 1 < useful) {
                others.emplace_back(work, false);
            }
        } catch (const std::system_error&) {  // the system gives no more threads: those that there are do it
        }
        work(true);
    }
    turns.RethrowFailure();
}

}  // namespace parts
}  // namespace lineup
