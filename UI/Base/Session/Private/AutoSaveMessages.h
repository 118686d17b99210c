#pragma once

#include "Server/DataModel/Recovery/AutoSaveEvents.h"

#include <string>

namespace Vu {

/// What a user has to know about recovery files, as notifications. That nothing can be kept is shown as long
/// as it is so.
class AutoSaveMessages : private Vs::AutoSaveEventSite
{
public:
    AutoSaveMessages();

    /// The sender of the notification that nothing can be kept.
    static const std::wstring& failureClientID();

private:
    void autoSavedRecoveryFilesFound(Vs::AutoSaveEvent*) override;
    void autoSavedRecoveryFileKept(Vs::AutoSaveEvent* event) override;
    void autoSavedRecoveryFileDamaged(Vs::AutoSaveEvent* event) override;
    void autoSaveFailed(Vs::AutoSaveEvent* event) override;
    void autoSaveWorksAgain(Vs::AutoSaveEvent*) override;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
