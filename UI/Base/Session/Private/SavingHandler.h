#pragma once

#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/IDocMgmtHandler.h"

namespace Vu {

/// What saving asks of the user, and what it leaves behind for the user: a document that is saved for the
/// first time gets its name in a dialog, and becomes one of the recent documents. Where nobody can be asked
/// it stays without a name, and the save fails with a message. Private to this library.
class SavingHandler : public Vs::IDocMgmtHandler, private Vs::DocumentEventSite
{
public:
    SavingHandler();
    ~SavingHandler() override;

    Vs::EDocMgmtOpCode onSavingUnnamed(const Documents& documents) override;

private:
    void documentSaved(Vs::DocumentEvent* event) override;
};

} // namespace Vu
