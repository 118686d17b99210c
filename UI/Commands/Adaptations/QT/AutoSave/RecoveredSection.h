#pragma once

#include "Server/DataModel/Recovery/AutoSaveEvents.h"
#include "Server/DataModel/Recovery/AutoSavedFileInfo.h"
#include "UI/Commands/Adaptations/QT/Shell/TileSection.h"

namespace Vu::Commands {

/// What crashed runs left: a row for each of the newest files, with buttons for its actions. The section is
/// absent as long as there is nothing, or nothing has been looked up yet.
class RecoveredSection : public TileSection, private Vs::AutoSaveEventSite
{
public:
    explicit RecoveredSection(QWidget* parent);

private:
    void autoSavedRecoveryFilesFound(Vs::AutoSaveEvent*) override { fillSoon(); }
    void autoSavedRecoveryFileDeleted(Vs::AutoSaveEvent*) override { fillSoon(); }
    void autoSavedRecoveryFileKept(Vs::AutoSaveEvent*) override { fillSoon(); }
    void autoSavedDocumentLeft(Vs::AutoSaveEvent*) override { fillSoon(); }

    /// After the event, since one of the rows may be the caller.
    void fillSoon();
    void fill();
    QWidget* makeMore(size_t count, QWidget* parent);
    QWidget* makeRow(const Vs::AutoSavedFileInfo& file, QWidget* parent);

    bool m_filling = false;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
