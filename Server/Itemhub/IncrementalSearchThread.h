#pragma once

#include <QThread>

#include <string>

namespace Vs {

/// One search at the lifecycle service, on a thread of its own. Make it on the main thread, start() it, and
/// delete it when finished() has come: ItemhubEventSite::searchResultsReceived is told before. A destroyed
/// one gives its search up first.
class IncrementalSearchThread : public QThread
{
public:
    /// `mode` comes back in the event, and means nothing here.
    IncrementalSearchThread(std::wstring query, bool mode);
    ~IncrementalSearchThread() override;

    const std::wstring& query() const { return m_query; }
    bool mode() const { return m_mode; }

protected:
    void run() override;

private:
    std::wstring m_query;
    bool m_mode;
};

} // namespace Vs
