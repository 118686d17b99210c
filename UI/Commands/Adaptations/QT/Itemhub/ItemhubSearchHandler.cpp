#include "UI/Commands/Adaptations/QT/Itemhub/ItemhubSearchHandler.h"

#include "Server/Itemhub/IncrementalSearchThread.h"
#include "UI/Commands/Adaptations/QT/Itemhub/QTSearchResultPanel.h"

#include <utility>

namespace Vu {

using Panel = Commands::QTSearchResultPanel;

ItemhubSearchHandler::ItemhubSearchHandler(Panel* panel, QObject* parent) : QObject(parent), m_panel(panel)
{
    m_subscriptions.add(Vs::ItemhubEventSource::get(), this);
}

ItemhubSearchHandler::~ItemhubSearchHandler()
{
    m_subscriptions.clear();
    delete m_thread;
}

void ItemhubSearchHandler::search(const std::wstring& text)
{
    if (text.empty()) {
        m_current.clear();
        m_pending.clear();
        if (m_panel)
            m_panel->clearResults();
    } else if (m_thread) {
        m_pending = text;
    } else {
        m_pending.clear();
        m_current = text;
        start(false);
    }
}

void ItemhubSearchHandler::searchAgain()
{
    if (!m_thread)
        start(true);
}

void ItemhubSearchHandler::start(bool mode)
{
    if (m_current.empty())
        return;
    m_thread = new Vs::IncrementalSearchThread(m_current, mode);
    connect(m_thread, &QThread::finished, this, &ItemhubSearchHandler::onThreadFinished);
    if (m_panel) {
        m_panel->showSection(Panel::kMessage, false);
        m_panel->showSection(Panel::kMore, false);
        m_panel->showSection(Panel::kSearching, true);
        if (!mode) {
            m_panel->clearSelection();
            m_panel->clearResults();
        }
    }
    m_mode = mode;
    m_thread->start();
}

void ItemhubSearchHandler::onThreadFinished()
{
    delete std::exchange(m_thread, nullptr);
    if (!m_pending.empty() && m_pending != m_current) {
        m_current = std::exchange(m_pending, {});
        start(false);
    } else if (m_panel) {
        m_panel->showSection(Panel::kSearching, false);
    }
}

// Nobody wants results for a text that has been replaced meanwhile.
void ItemhubSearchHandler::searchResultsReceived(Vs::ItemhubSearchResultsEvent* event)
{
    if (m_panel && m_thread && event->query() == m_current && (m_pending.empty() || m_pending == m_current))
        m_panel->results(*event, m_mode);
}

} // namespace Vu
