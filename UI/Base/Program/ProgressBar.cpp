#include "UI/Base/Program/ProgressBar.h"

#include "Server/Base/Require.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Private/ApplicationHost.h"
#include "UI/Base/Program/Private/Display.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>

namespace Vu {
namespace {
/// Events are processed this often while work runs; more often would slow down the work, less often the
/// person.
constexpr int kInterval = 30;
} // namespace

struct ProgressBar::Data
{
    std::weak_ptr<ProgressDisplay> display; ///< Goes with its window.
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

void ProgressBar::enable(bool value)
{
    m_enabled = value;
    if (!value)
        Application::get()->deferredTasks()->post([this] { m_enabled = !Application::get()->exiting(); });
}

void ProgressBar::begin(const std::wstring& title)
{
    ++m_depth;
    const std::shared_ptr<ProgressDisplay> display = ApplicationHost::get()->progress();
    if (!m_enabled || !display)
        return;
    m_data->display = display;
    display->begin(title);
    m_data->sinceEvents.start();
    QCoreApplication::processEvents();
}

bool ProgressBar::update(double fraction, const std::wstring& step)
{
    const std::shared_ptr<ProgressDisplay> display = m_data->display.lock();
    if (!display || !m_enabled)
        return true;
    if (m_data->sinceEvents.elapsed() >= kInterval) {
        display->show(std::clamp(fraction, 0.0, 1.0), step);
        QCoreApplication::processEvents(QEventLoop::AllEvents, kInterval);
        m_data->sinceEvents.restart();
    }
    // The button itself asks Vs::Progress, which is what the work looks at.
    return !display->cancelled();
}

void ProgressBar::end()
{
    Vs::require(m_depth > 0, "work that ends was begun");
    if (--m_depth > 0)
        return;
    m_depth = 0;
    if (const std::shared_ptr<ProgressDisplay> display = m_data->display.lock())
        display->end();
    m_data->display.reset();
    // What waited for the work to end.
    Application::get()->resumeTasks();
}

} // namespace Vu
