#pragma once

#include "Server/Base/Object.h"

#include <memory>
#include <string>
#include <vector>

class QWidget;

namespace Vs::Scene {
struct Image;
}

namespace Vu {

class Area;
class Arrangement;
class ArrangementMgr;
class MainWindow;
class ProgressDisplay;
struct TourStep;
class Workspace;

/// What of the display is to be drawn anew.
enum EInvalidateType { kInvalidateScene = 1, kInvalidateOverlay = 2, kInvalidateAll = 255 };

/// The window of a workspace. It is there from the start; its widgets are made by `show()`, so that a run
/// without a window costs nothing.
class WorkspaceWindow : public Vs::Implements<WorkspaceWindow>
{
public:
    explicit WorkspaceWindow(Workspace* workspace);
    ~WorkspaceWindow() override;

    /// That of the active workspace; null before there is one.
    static WorkspaceWindow* activeWorkspaceWindow();
    /// Has all canvases drawn anew, once, at the end of the event; `what` is a sum of EInvalidateType.
    static void invalidate(int what);
    /// Has all canvases drawn now.
    static void forceImmediateRepaint();

    Workspace* workspace() const { return m_workspace; }
    ArrangementMgr* arrangementManager() const { return m_arrangements.get(); }
    /// Null if no shell has set one.
    Arrangement* activeArrangement() const;
    /// The root area of the active arrangement, or null.
    Area* area() const;
    /// The area of that name in the active arrangement, or null.
    Area* area(const std::wstring& name) const;

    /// Makes the widgets at the first call and shows the window.
    void show();
    bool shown() const;
    /// The top-level widget; null before `show()`.
    QWidget* widget() const;
    void activateWindow();
    bool minimized() const;

    /// 0 normal, 1 minimized, 2 zoomed.
    virtual int windowState() const;
    virtual void windowState(int state);
    bool fullScreen() const;
    void fullScreen(bool value);

    /// A line in the status bar; ignored before `show()`.
    void statusMessage(const std::wstring& text);
    /// Leads through the parts of the window. False before `show()`, or if none of the areas is shown.
    bool showTour(const std::vector<TourStep>& steps);
    /// Opens the field in which commands are searched by what they are called, or closes it. Does nothing
    /// before `show()`.
    void toggleSearch();
    /// Brings the title, toolbars and browser up to date at the end of the event.
    void refresh();
    /// The same, for this library and its tests.
    MainWindow* mainWindow() const;
    /// For ProgressBar: where progress is shown; null before `show()`.
    std::shared_ptr<ProgressDisplay> progress() const;
    /// Does now what `refresh` and a changed arrangement have put off to the end of the event, and gives all
    /// widgets their places. Not from within the painting of one. Does nothing before `show()`.
    void settleLayout();
    /// What the window shows, without its frame; false before `show()`.
    [[nodiscard]] bool picture(Vs::Scene::Image& image);
    /// For ArrangementMgr: has the areas laid out anew at the end of the event.
    void arrangementChanged();

private:
    struct Data;
    Workspace* m_workspace;
    std::unique_ptr<ArrangementMgr> m_arrangements;
    std::unique_ptr<Data> m_data;
};

} // namespace Vu
