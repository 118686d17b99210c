#pragma once

#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/DocumentEvents.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Base/Session/SessionEvents.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Base/Workspace/WorkspaceEvents.h"

#include <QMainWindow>
#include <QTimer>

#include <memory>
#include <string>
#include <vector>

class QLabel;

namespace Vu {

class AreaStage;
class BellButton;
class BrowserPanel;
class CommandBox;
class CommandButton;
class CommandPanel;
class CommandDefinition;
class DropTarget;
class ProgressPanel;
class StatusFields;
class ToastStack;
class WindowContents;
class WindowKeys;
class WorkspaceWindow;

/// The widgets of a workspace window.
class MainWindow : public QMainWindow,
                   private Vs::AssetEventSite,
                   private Vs::DocumentEventSite,
                   private DocumentRemarkSite,
                   private CommandEventSite,
                   private SessionEventSite,
                   private WorkspaceEventSite,
                   private ToolbarEventSite,
                   private AlertEventSite
{
public:
    explicit MainWindow(WorkspaceWindow* owner);
    ~MainWindow() override;

    /// Updates to the areas of the active arrangement now.
    void rebuild();
    /// The same, plus title and buttons, at the end of the event.
    void rebuildSoon();
    void refreshSoon();
    /// Performs deferred updates and lays out what has changed, now.
    void settleLayout();

    void message(const QString& text, bool isError);
    BrowserPanel* browser();
    CommandBox* commandBox();
    ProgressPanel* progressPanel() const { return m_progress; }
    CommandPanel* commandPanel() const { return m_panel; }
    BellButton* bell() const { return m_bell; }
    ToastStack* toasts() const { return m_toasts; }
    const std::vector<CommandButton*>& buttons() const;

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    void assetDirtyChanged(Vs::AssetEvent*) override { refreshSoon(); }
    void assetComponentsChanged(Vs::ComponentsEvent*) override { refreshSoon(); }
    void assetSettingsChanged(Vs::AssetEvent*) override { refreshSoon(); }
    void documentUpdated(Vs::DocumentEvent*) override { refreshSoon(); }
    void documentSaved(Vs::DocumentEvent*) override { refreshSoon(); }
    void documentClosed(Vs::DocumentEvent*) override { refreshSoon(); }
    void documentRemarksChanged(Vs::Event*) override { refreshSoon(); }
    void commandAvailabilitiesChanged(Vs::Event*) override { refreshSoon(); }
    void currentSessionChanged(SessionEvent*) override { refreshSoon(); }
    void sessionPostActivateForAsset(SessionEvent*) override { refreshSoon(); }
    void environmentActivated(EnvironmentEvent*) override { refreshSoon(); }
    void workspaceShellActivated(WorkspaceShellEvent*) override { refreshSoon(); }
    void toolbarsChanged() override { rebuildSoon(); }
    void alertAdded(AlertController* controller, const Alert& alert) override;
    void alertsCleared(AlertController* controller) override;

    void restoreSize();
    void refresh();
    QString showHolder(const Vs::Document* document);
    static QString remarkOn(const Vs::Document& document);
    void bindHotKeys();
    void runHotKey(CommandDefinition* definition);
    void tellUnknownCommands();

    WorkspaceWindow* m_owner;
    std::unique_ptr<WindowContents> m_contents;
    ProgressPanel* m_progress;
    QLabel* m_message;
    StatusFields* m_fields;
    QLabel* m_readOnly; ///< Who has the shown document open, if somebody else has.
    BellButton* m_bell;
    ToastStack* m_toasts;
    DropTarget* m_drops;
    CommandPanel* m_panel;
    std::unique_ptr<WindowKeys> m_keys;
    AreaStage* m_stage;
    QTimer m_rebuildTimer, m_refreshTimer;
    bool m_toldUnknown = false;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
