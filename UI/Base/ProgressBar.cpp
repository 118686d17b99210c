#include "UI/Base/ProgressBar.h"

#include "UI/Base/Application.h"
#include "UI/Base/Window/ProgressPanel.h"
#include "UI/Base/WorkspaceWindow.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPointer>

#include <algorithm>

namespace Vu {
namespace {
/// Events are looked at this often while work runs; more often would slow the work, less often the person.
constexpr int kInterval = 30;
} // namespace

struct ProgressBar::Data
{
    std::unique_ptr<BusyFilter> filter;
    QPointer<ProgressPanel> panel;
    QElapsedTimer sinceEvents;
};

ProgressBar* ProgressBar::get()
{
    static auto* const bar = new ProgressBar;
    return bar;
}

ProgressBar::ProgressBar() : m_data(std::make_unique<Data>())
{
    Vs::Progress::sink(this);
}

ProgressBar::~ProgressBar() = default;

void ProgressBar::begin(const std::wstring& title)
{
    ++m_depth;
    WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
    if (!m_enabled || !window || !window->shown())
        return;
    m_data->panel = window->progressPanel();
    m_data->panel->begin(QString::fromStdWString(title));
    if (!m_data->filter)
        m_data->filter = std::make_unique<BusyFilter>(m_data->panel);
    m_data->sinceEvents.start();
    QCoreApplication::processEvents();
}

bool ProgressBar::update(double fraction, const std::wstring& step)
{
    if (!m_data->panel || !m_enabled)
        return true;
    if (m_data->sinceEvents.elapsed() >= kInterval) {
        m_data->panel->show(std::clamp(fraction, 0.0, 1.0), QString::fromStdWString(step));
        QCoreApplication::processEvents(QEventLoop::AllEvents, kInterval);
        m_data->sinceEvents.restart();
    }
    // The button itself asks Vs::Progress, which is what the work looks at.
    return !m_data->panel || !m_data->panel->cancelled();
}

void ProgressBar::end()
{
    if (--m_depth > 0)
        return;
    m_depth = 0;
    m_data->filter.reset();
    if (m_data->panel)
        m_data->panel->end();
    m_data->panel = nullptr;
    // What waited for the work to end.
    Application::get()->resumeTasks();
}

} // namespace Vu
