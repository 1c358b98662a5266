#pragma once

#include "Host/Interface/Brio/InterfaceRef.h"
#include "Src/ToneSettingsDialog/IToneSettingsDialogDataExchange.h"

#include <cstdint>

/// One copy of the settings, carried to the dialog and back, and whether the person cancelled. Made with
/// new and no references; the first AddRef makes it the caller's, the Release of the last one deletes it.
/// References may be taken and dropped on any thread.
class ToneSettingsDialogDataExchange : public IToneSettingsDialogDataExchange {
public:
    ToneSettingsDialogDataExchange() = default;
    ~ToneSettingsDialogDataExchange() override = default;
    ToneSettingsDialogDataExchange(const ToneSettingsDialogDataExchange&) = delete;
    ToneSettingsDialogDataExchange& operator=(const ToneSettingsDialogDataExchange&) = delete;

    std::int32_t AddRef() override;
    std::int32_t Release() override;

    /// Answers the id of IToneSettingsDialogDataExchange and no other. The answer carries no reference:
    /// who keeps it takes one.
    Brio::Result QueryMap(const CFUUIDBytes& id, void** out) override;

    Brio::BrioUnknown* GetBrioUnknown() override;
    void SetPrefs(const BarsAndToneInfo& info) override;
    void GetPrefs(BarsAndToneInfo& info) override;
    void UserCancelled() override;

    /// The object as its root, with a reference of its own.
    virtual operator Brio::InterfaceRef<Brio::BrioUnknown>() noexcept;  // NOLINT(google-explicit-constructor)

private:
    volatile std::int32_t mRefCount = 0;
    BarsAndToneInfo mInfo;

public:
    /// The person left the dialog with Cancel. Read by the creator, who holds the class; the interface
    /// has no operation for it.
    // NOLINTNEXTLINE(misc-non-private-member-variables-in-classes)
    bool mUserCancelled = false;
};
