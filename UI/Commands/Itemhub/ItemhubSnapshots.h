#pragma once

#include "Server/DataModel/Recovery/AutoSaveEvents.h"
#include "Server/Itemhub/ItemhubEvents.h"

#include <set>
#include <string>

namespace Vu::Commands {

/// Attaches the recovery files of items' documents to their items, for users who want that
/// (ItemhubOptionGroup::recoverySnapshots): what was closed without saving, or left behind by a crash, can
/// then be opened on another computer. Main thread only.
class ItemhubSnapshots : private Vs::AutoSaveEventSite, private Vs::ItemhubEventSite
{
public:
    ItemhubSnapshots();
    ~ItemhubSnapshots() override;
    ItemhubSnapshots(const ItemhubSnapshots&) = delete;
    ItemhubSnapshots& operator=(const ItemhubSnapshots&) = delete;

private:
    void autoSavedRecoveryFilesFound(Vs::AutoSaveEvent*) override { attachLater(); }
    void autoSavedDocumentLeft(Vs::AutoSaveEvent*) override { attachLater(); }
    void sessionChanged(Vs::ItemhubEvent* event) override;

    void attachLater();
    void attach();

    std::set<std::wstring> m_attached; ///< By path and time, so that none is attached twice.
    bool m_later = false;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
