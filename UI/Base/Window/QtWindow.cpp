#include "UI/Base/Window/QtWindow.h"

#include "UI/Base/Window/ProgressPanel.h"

namespace Vu {
namespace {

class PanelProgress : public ProgressDisplay
{
public:
    explicit PanelProgress(ProgressPanel* panel) : m_panel(panel) {}

    void begin(const std::wstring& title) override
    {
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
    }
    bool cancelled() const override { return m_panel->cancelled(); }

private:
    ProgressPanel* m_panel;
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

void QtWindow::message(const std::wstring& text, bool isError)
{
    m_window->message(QString::fromStdWString(text), isError);
}

} // namespace Vu
