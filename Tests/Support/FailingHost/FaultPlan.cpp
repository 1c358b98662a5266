#include "Tests/Support/FailingHost/FaultPlan.h"

namespace test {

namespace {

FaultPlan* gPlan = nullptr;

}  // namespace

FaultPlan::FaultPlan(std::string_view service, Way way, int failing) : mService(service), mWay(way), mFailing(failing) {
    gPlan = this;
}

FaultPlan::~FaultPlan() {
    gPlan = nullptr;
}

Answer FaultPlan::Called(const char* service) {
    if (gPlan == nullptr || gPlan->mService != service || ++gPlan->mCalls != gPlan->mFailing) {
        return Answer::Right;
    }
    switch (gPlan->mWay) {
        case Way::Throws:
            throw HostFailure(service);
        case Way::Nothing:
            return Answer::Nothing;
        case Way::Nonsense:
            return Answer::Nonsense;
    }
    return Answer::Right;
}

}  // namespace test
