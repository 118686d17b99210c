#pragma once

#include "Server/DataModel/FileChecks.h"
#include "Server/DataModel/IDocMgmtHandler.h"

namespace Vu {

/// What saving asks the user, and what it leaves behind for the user: a document that is saved for the first
/// time gets its name in a dialog, and becomes one of the recent documents; a file that is write-protected or
/// was changed by another program is replaced or left alone, as the user says. Where nobody can be asked the
/// save fails with a message. Damage of a file is told as well. Private to this library.
class SavingHandler : public Vs::IDocMgmtHandler,
                      private Vs::DocumentEventSite,
                      private Vs::FileDamageEventSite
{
public:
    SavingHandler();

    Vs::EDocMgmtOpCode onSavingUnnamed(const Documents& documents) override;
    Vs::EDocMgmtOpCode onSavingReadOnlyFiles(const Documents& documents) override;
    Vs::EDocMgmtOpCode onSavingChangedFiles(const Documents& documents) override;

private:
    void documentSaved(Vs::DocumentEvent* event) override;
    void fileDamaged(Vs::DocumentFailureEvent* event) override;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
