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

/// Searches the lifecycle service as the user types. One search runs at a time, and only the last text typed
/// meanwhile is searched for: a burst of letters costs two searches, however long it is. Main thread only;
/// the thread only sends the request.
class ItemhubSearchHandler : public QObject, private Vs::ItemhubEventSite
{
    Q_OBJECT

public:
    /// Results are shown by the panel, which may be null, and may be destroyed earlier.
    ItemhubSearchHandler(Commands::QTSearchResultPanel* panel, QObject* parent);
    ~ItemhubSearchHandler() override;

    /// Sets the text to search for. An empty text starts nothing, and clears the results.
    void search(const std::wstring& text);
    /// Repeats the last search, leaving the present results until the answer arrives.
    void searchAgain();

    /// The text last searched for, or being searched for.
    const std::wstring& currentQuery() const { return m_current; }
    /// The text waiting for the running search to end; empty for none.
    const std::wstring& pendingQuery() const { return m_pending; }
    bool isSearching() const { return m_thread != nullptr; }

private slots:
    void onThreadFinished();

private:
    void start(bool mode);
    void searchResultsReceived(Vs::ItemhubSearchResultsEvent* event) override;

    std::wstring m_current;
    std::wstring m_pending;
    bool m_mode = false; ///< For the running search: whether the shown results stay until it has ended.
    QPointer<Commands::QTSearchResultPanel> m_panel;
    Vs::IncrementalSearchThread* m_thread = nullptr; ///< Null while no search runs.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
