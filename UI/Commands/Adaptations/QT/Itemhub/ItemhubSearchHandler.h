#pragma once

#include "Server/Itemhub/ItemhubEvents.h"

#include <QObject>
#include <QPointer>

#include <string>

namespace Vs {
class IncrementalSearchThread;
}

namespace Vu {

namespace Commands {
class QTSearchResultPanel;
}

/// Searches the lifecycle service while somebody types. One search runs at a time, and of what is typed
/// meanwhile only the last is searched for: a burst of letters costs two searches, however long it is. Main
/// thread only; the thread does nothing but ask.
class ItemhubSearchHandler : public QObject, private Vs::ItemhubEventSite
{
    Q_OBJECT

public:
    /// What is found is shown by the panel, which may be null, and may go before.
    ItemhubSearchHandler(Commands::QTSearchResultPanel* panel, QObject* parent);
    ~ItemhubSearchHandler() override;

    /// What is to be searched for now. An empty text starts nothing, and takes away what was found.
    void search(const std::wstring& text);
    /// Asks once more for what was searched for last, and leaves what is shown until the answer comes.
    void searchAgain();

    /// The text that was searched for last, or is being searched for.
    const std::wstring& currentQuery() const { return m_current; }
    /// What waits for the running search to end; empty for nothing.
    const std::wstring& pendingQuery() const { return m_pending; }
    bool isSearching() const { return m_thread != nullptr; }

private slots:
    void onThreadFinished();

private:
    void start(bool mode);
    void searchResultsReceived(Vs::ItemhubSearchResultsEvent* event) override;

    std::wstring m_current;
    std::wstring m_pending;
    bool m_mode = false; ///< Of the running search: whether what is shown stays until it has ended.
    QPointer<Commands::QTSearchResultPanel> m_panel;
    Vs::IncrementalSearchThread* m_thread = nullptr; ///< Null while no search runs.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
