#pragma once

#include "UI/Base/Program/Private/Display.h"
#include "UI/Base/Window/MainWindow.h"

namespace Vu {

/// The widgets of a workspace window, as the workspace sees them.
class QtWindow : public WindowFrame
{
public:
    explicit QtWindow(WorkspaceWindow* owner);
    ~QtWindow() override;

    MainWindow* mainWindow() const override { return m_window.get(); }
    QWidget* widget() const override { return m_window.get(); }
    std::shared_ptr<ProgressDisplay> progress() const override { return m_progress; }

    void show() override { m_window->show(); }
    void bringToFront() override;
    bool minimized() const override { return m_window->isMinimized(); }
    bool maximized() const override { return m_window->isMaximized(); }
    bool fullScreen() const override { return m_window->isFullScreen(); }
    void showNormal() override { m_window->showNormal(); }
    void showMinimized() override { m_window->showMinimized(); }
    void showMaximized() override { m_window->showMaximized(); }
    void showFullScreen() override { m_window->showFullScreen(); }

    void message(const std::wstring& text) override;
    bool showTour(const std::vector<TourStep>& steps) override;
    void toggleSearch() override;
    void refresh() override { m_window->refreshSoon(); }
    void rebuild() override { m_window->rebuildSoon(); }
    void settleLayout() override { m_window->settleLayout(); }
    bool picture(Vs::Scene::Image& image) override;

private:
    std::unique_ptr<MainWindow> m_window;
    std::shared_ptr<ProgressDisplay> m_progress;
};

} // namespace Vu
