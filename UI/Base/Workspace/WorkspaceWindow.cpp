#include "UI/Base/Workspace/WorkspaceWindow.h"

#include "Server/Base/Require.h"
#include "Server/Base/Warning.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Private/Display.h"
#include "UI/Base/Program/ProgressBar.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/Private/CanvasHost.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"

#include <optional>

namespace Vu {
namespace {

/// The window states by value.
enum WindowState { kNormal = 0, kMinimized = 1, kZoomed = 2 };

} // namespace

struct WorkspaceWindow::Data
{
    std::unique_ptr<WindowFrame> window;
    std::optional<Vs::WarningHandler> warnings; ///< While there is a window to show them.
    int stateBeforeShow = kNormal;
};

WorkspaceWindow::WorkspaceWindow(Workspace* workspace)
    : m_workspace(workspace),
      m_arrangements(std::make_unique<ArrangementMgr>(this)),
      m_data(std::make_unique<Data>())
{
}

WorkspaceWindow::~WorkspaceWindow()
{
    m_data->warnings.reset();
    // The arrangement's areas own the canvases, the window owns their widgets: the window goes first.
    m_data->window.reset();
}

WorkspaceWindow* WorkspaceWindow::activeWorkspaceWindow()
{
    const Workspace* workspace = WorkspaceMgr::activeWorkspace();
    return workspace ? workspace->window() : nullptr;
}

void WorkspaceWindow::invalidate(int what)
{
    if (what != 0)
        CanvasHost::get()->invalidateAll();
}

void WorkspaceWindow::forceImmediateRepaint()
{
    CanvasHost::get()->repaintAll();
}

Arrangement* WorkspaceWindow::activeArrangement() const
{
    return m_arrangements->arrangement();
}

Area* WorkspaceWindow::area() const
{
    const Arrangement* arrangement = activeArrangement();
    return arrangement ? arrangement->layout() : nullptr;
}

Area* WorkspaceWindow::area(const std::wstring& name) const
{
    Area* root = area();
    return root ? root->childByName(name, true) : nullptr;
}

void WorkspaceWindow::show()
{
    Vs::assertMainThread();
    if (!m_data->window) {
        Application::get()->needGui();
        ProgressBar::get(); // From now on progress can be shown.
        m_data->window = Display::get()->makeWindow(this);
        m_data->warnings.emplace([](const std::wstring& text) {
            // From any thread; the window is the main one's.
            Application::get()->deferredTasks()->post([text] { Application::get()->inform(text); });
        });
    }
    m_data->window->show();
    if (m_data->stateBeforeShow != kNormal)
        windowState(m_data->stateBeforeShow);
}

bool WorkspaceWindow::shown() const
{
    return m_data->window != nullptr;
}

QWidget* WorkspaceWindow::widget() const
{
    return m_data->window ? m_data->window->widget() : nullptr;
}

MainWindow* WorkspaceWindow::mainWindow() const
{
    return m_data->window ? m_data->window->mainWindow() : nullptr;
}

void WorkspaceWindow::activateWindow()
{
    if (!m_data->window)
        return;
    if (minimized())
        windowState(kNormal);
    m_data->window->bringToFront();
}

bool WorkspaceWindow::minimized() const
{
    return windowState() == kMinimized;
}

int WorkspaceWindow::windowState() const
{
    if (!m_data->window)
        return m_data->stateBeforeShow;
    if (m_data->window->minimized())
        return kMinimized;
    return m_data->window->maximized() ? kZoomed : kNormal;
}

void WorkspaceWindow::windowState(int state)
{
    Vs::require(state >= kNormal && state <= kZoomed, "a window is normal, minimized or zoomed");
    m_data->stateBeforeShow = state;
    if (!m_data->window)
        return;
    if (state == kMinimized)
        m_data->window->showMinimized();
    else if (state == kZoomed)
        m_data->window->showMaximized();
    else
        m_data->window->showNormal();
}

bool WorkspaceWindow::fullScreen() const
{
    return m_data->window && m_data->window->fullScreen();
}

void WorkspaceWindow::fullScreen(bool value)
{
    if (!m_data->window || value == fullScreen())
        return;
    if (value)
        m_data->window->showFullScreen();
    else
        m_data->window->showNormal();
}

void WorkspaceWindow::statusMessage(const std::wstring& text)
{
    if (m_data->window)
        m_data->window->message(text);
}

bool WorkspaceWindow::showTour(const std::vector<TourStep>& steps)
{
    return m_data->window && m_data->window->showTour(steps);
}

void WorkspaceWindow::toggleSearch()
{
    if (m_data->window)
        m_data->window->toggleSearch();
}

void WorkspaceWindow::refresh()
{
    if (m_data->window)
        m_data->window->refresh();
}

void WorkspaceWindow::settleLayout()
{
    if (m_data->window)
        m_data->window->settleLayout();
}

bool WorkspaceWindow::picture(Vs::Scene::Image& image)
{
    settleLayout();
    return m_data->window && m_data->window->picture(image);
}

std::shared_ptr<ProgressDisplay> WorkspaceWindow::progress() const
{
    return m_data->window ? m_data->window->progress() : nullptr;
}

void WorkspaceWindow::arrangementChanged()
{
    if (m_data->window)
        m_data->window->rebuild();
}

} // namespace Vu
