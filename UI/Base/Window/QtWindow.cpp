#include "UI/Base/Window/QtWindow.h"

#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Window/CanvasWidget.h"
#include "UI/Base/Window/ProgressPanel.h"
#include "UI/Base/Window/QtPictures.h"
#include "UI/Base/Window/TourOverlay.h"
#include "UI/Base/Window/WindowSearch.h"

#include <QApplication>
#include <QElapsedTimer>

namespace Vu {
namespace {

/// In milliseconds: a user who has waited less has hardly switched away.
constexpr qint64 kLongWork = 4000;
constexpr qint64 kSecond = 1000;
/// What a panel shows may change what it asks for next.
constexpr int kRefreshes = 3;

class PanelProgress : public ProgressDisplay
{
public:
    explicit PanelProgress(ProgressPanel* panel) : m_panel(panel) {}

    void begin(const std::wstring& title) override
    {
        m_title = title;
        m_clock.start();
        m_panel->begin(QString::fromStdWString(title));
        if (!m_filter)
            m_filter = std::make_unique<BusyFilter>(m_panel);
    }
    void show(double fraction, const std::wstring& step) override
    {
        m_panel->show(fraction, QString::fromStdWString(step));
    }
    void end() override
    {
        m_filter.reset();
        m_panel->end();
        if (m_clock.elapsed() >= kLongWork && !m_panel->cancelled() && !QApplication::activeWindow())
            tellEnd();
    }
    bool cancelled() const override { return m_panel->cancelled(); }

private:
    /// For a user who has switched to another window.
    void tellEnd() const
    {
        Vs::NotificationRequest request;
        request.title = m_title;
        request.text = localizedFormat("WorkEnded", "Ended after %1% seconds.", m_clock.elapsed() / kSecond);
        request.clientID = L"Work";
        Vs::NotificationCenter::get()->sendNotification(std::move(request));
    }

    ProgressPanel* m_panel;
    std::wstring m_title;
    QElapsedTimer m_clock;
    std::unique_ptr<BusyFilter> m_filter;
};

} // namespace

QtWindow::QtWindow(WorkspaceWindow* owner)
    : m_window(std::make_unique<MainWindow>(owner)),
      m_progress(std::make_shared<PanelProgress>(m_window->progressPanel()))
{
}

QtWindow::~QtWindow()
{
    m_progress.reset();
}

void QtWindow::bringToFront()
{
    m_window->raise();
    m_window->activateWindow();
}

bool QtWindow::showTour(const std::vector<TourStep>& steps)
{
    return TourOverlay::show(m_window.get(), steps) != nullptr;
}

void QtWindow::toggleSearch()
{
    Vu::toggleSearch(m_window.get());
}

bool QtWindow::picture(Vs::Scene::Image& image)
{
    if (!m_window->isVisible())
        return false;
    // What lines before have changed is to be seen, which the panels put off for as long as lines run.
    for (int refresh = 0; refresh < kRefreshes; ++refresh)
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    settleCanvases(m_window.get());
    // The line that asks for the picture must not be in it.
    ProgressPanel* panel = m_window->progressPanel();
    const bool busy = panel->isVisible();
    panel->setVisible(false);
    const bool taken = QtPictures::takePicture(m_window->grab().toImage(), image);
    panel->setVisible(busy);
    return taken;
}

void QtWindow::message(const std::wstring& text)
{
    m_window->message(QString::fromStdWString(text), false);
}

} // namespace Vu
