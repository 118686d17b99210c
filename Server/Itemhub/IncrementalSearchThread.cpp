#include "Server/Itemhub/IncrementalSearchThread.h"

#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Itemhub/ItemhubUtilities.h"

namespace Vs {

IncrementalSearchThread::IncrementalSearchThread(std::wstring query, bool mode)
    : m_query(std::move(query)), m_mode(mode)
{
}

IncrementalSearchThread::~IncrementalSearchThread()
{
    requestInterruption();
    wait();
}

void IncrementalSearchThread::run()
{
    ItemhubSearchResultsEvent::Items found;
    std::wstring failure;
    try {
        const Network::Watch watch{[this](auto, auto) { return !isInterruptionRequested(); }};
        found = ItemhubUtilities::get()->search(m_query, watch);
    } catch (const Itemhub::ItemStore::Cancelled&) {
        return;
    } catch (...) {
        failure = ItemhubUtilities::currentFailure();
    }
    // This object belongs to the main thread, which receives finished() after this.
    QMetaObject::invokeMethod(
        this,
        [this, found, failure] {
            ItemhubSearchResultsEvent event(m_query, m_mode, found, failure);
            ItemhubEventSource::get()->fireSearchResultsReceived(&event);
        },
        Qt::QueuedConnection);
}

} // namespace Vs
