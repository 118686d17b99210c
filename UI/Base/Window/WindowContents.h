#pragma once

#include <QObject>
#include <QPointer>

#include <map>
#include <string>
#include <utility>
#include <vector>

class QWidget;

namespace Vu {

class Area;
class AreaStage;
class BrowserPanel;
class CommandBox;
class CommandButton;
class HudFrame;
class ToolbarStrip;
class WorkspaceWindow;

/// The contents of a window's areas: widgets that are created anew for each, and unique ones, which are moved
/// to wherever an area wants them and outlive a layout.
class WindowContents : public QObject
{
public:
    /// Both outlive it.
    WindowContents(const WorkspaceWindow& owner, QWidget* window);
    ~WindowContents() override;

    BrowserPanel* browser();
    CommandBox* commandBox();
    /// Null if none was wanted yet.
    CommandBox* existingCommandBox() const { return m_commandBox; }
    /// Those of all toolbars.
    const std::vector<CommandButton*>& buttons() const { return m_buttons; }

    /// The widget of an area without children; null for contents that nothing draws.
    QWidget* make(Area& area, QWidget* parent);
    /// Whether there is only one such widget for all layouts.
    bool isShared(const QWidget* widget) const;
    /// Removes from a widget about to be destroyed what is to outlive it.
    void keepWhatStays(QWidget* leaving);
    /// Shows the toolbars of that environment and of the areas that the window has now.
    void environment(const std::wstring& id);
    const std::wstring& environment() const { return m_environment; }
    /// Makes what lies over the views of the stage follow the areas below the root.
    void follow(Area& root, const AreaStage& stage);

private:
    ToolbarStrip* strip(const Area& area);
    void fillStrips();
    QWidget* canvasFrame(Area& area, QWidget* parent);
    void rememberButtons(size_t known);

    const WorkspaceWindow& m_owner;
    QPointer<QWidget> m_attic; ///< Keeps, unseen, the widgets that outlive a layout.
    QPointer<BrowserPanel> m_browser;
    QPointer<CommandBox> m_commandBox;
    /// By contents and name of their areas; they outlive a layout.
    std::map<std::pair<std::string, std::wstring>, ToolbarStrip*> m_strips;
    std::vector<QPointer<HudFrame>> m_canvasFrames;
    std::vector<CommandButton*> m_buttons;
    std::wstring m_environment; ///< Whose toolbars show.
};

} // namespace Vu
