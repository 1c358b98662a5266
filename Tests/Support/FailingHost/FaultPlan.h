#pragma once

#include "Tests/Support/FakeToolkit/CallLog.h"

#include <cstddef>
#include <new>
#include <string_view>

/// A host whose services fail on demand. A program that links FailingServices.cpp has services of its own in
/// front of the host's: they do what the host's do until a plan says that a call fails. One thread.
namespace test {

/// What a failing service throws. It is made without memory, since memory may be what fails.
class HostFailure : public std::bad_alloc {
public:
    explicit HostFailure(const char* service) noexcept : mService(service) {}
    [[nodiscard]] const char* what() const noexcept override { return mService; }

private:
    const char* mService;
};

/// How a call fails.
enum class Way {
    Throws,    ///< throws HostFailure
    Nothing,   ///< answers with nothing: null, false, no text
    Nonsense,  ///< answers with what makes no sense
};

/// While one lives, the `failing`-th call of a service fails, counted from 1 and from its construction on.
class FaultPlan {
public:
    FaultPlan(std::string_view service, Way way, int failing);
    ~FaultPlan();
    FaultPlan(const FaultPlan&) = delete;
    FaultPlan& operator=(const FaultPlan&) = delete;

    /// The calls so far.
    [[nodiscard]] int Calls() const { return mCalls; }
    [[nodiscard]] bool HasStruck() const { return mCalls >= mFailing; }

    /// Told by a service that it is called: throws when the call fails by throwing, else says how to answer.
    /// Without a plan every answer is right. `service` must last as long as the program.
    static Answer Called(const char* service);

private:
    std::string_view mService;
    Way mWay;
    int mFailing;
    int mCalls = 0;
};

/// The blocks of memory that were taken and not given back: from the small-block allocator, and with new.
[[nodiscard]] std::ptrdiff_t SmallBlocksTaken();
[[nodiscard]] std::ptrdiff_t BlocksTaken();

}  // namespace test
