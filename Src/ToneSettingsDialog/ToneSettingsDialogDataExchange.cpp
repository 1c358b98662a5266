#include "Src/ToneSettingsDialog/ToneSettingsDialogDataExchange.h"

#include "Host/Interface/Platform/Atomic.h"

#include <cstring>

const CFUUIDBytes& GuidOf(const IToneSettingsDialogDataExchange* /*interface*/) {
    static const CFUUIDBytes id = {0x98, 0x34, 0xA4, 0x24, 0x22, 0xD7, 0x4E, 0x14,
                                   0x8F, 0x9A, 0x6E, 0x0C, 0x19, 0x49, 0x34, 0xD2};
    return id;
}

std::int32_t ToneSettingsDialogDataExchange::AddRef() {
    return OSAtomicAdd32Barrier(1, &mRefCount);
}

std::int32_t ToneSettingsDialogDataExchange::Release() {
    const std::int32_t count = OSAtomicAdd32Barrier(-1, &mRefCount);
    if (count == 0) {
        delete this;
    }
    return count;
}

Brio::Result ToneSettingsDialogDataExchange::QueryMap(const CFUUIDBytes& id, void** out) {
    IToneSettingsDialogDataExchange* const self = this;
    const bool known = std::memcmp(&id, &GuidOf(self), sizeof id) == 0;
    *out = known ? self : nullptr;
    return known ? Brio::kNoError : Brio::kNoInterfaceError;
}

Brio::BrioUnknown* ToneSettingsDialogDataExchange::GetBrioUnknown() {
    return this;
}

void ToneSettingsDialogDataExchange::SetPrefs(const BarsAndToneInfo& info) {
    mInfo = info;
    mUserCancelled = false;
}

void ToneSettingsDialogDataExchange::GetPrefs(BarsAndToneInfo& info) {
    info = mInfo;
}

void ToneSettingsDialogDataExchange::UserCancelled() {
    mUserCancelled = true;
}

ToneSettingsDialogDataExchange::operator Brio::InterfaceRef<Brio::BrioUnknown>() noexcept {
    return Brio::InterfaceRef<Brio::BrioUnknown>(GetBrioUnknown());
}
