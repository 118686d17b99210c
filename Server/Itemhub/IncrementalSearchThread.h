#pragma once

#include <QThread>

#include <string>

namespace Vs {

/// One search at the lifecycle service, on its own thread. Create it on the main thread, start() it, and
/// delete it on finished(): ItemhubEventSite::searchResultsReceived is called before that. Destroying it
/// cancels the search.
class IncrementalSearchThread : public QThread
{
public:
    /// `mode` is passed back in the event, and has no meaning here.
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
