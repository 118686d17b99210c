#include "UI/Base/Window/MainWindow.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/HeldFiles.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/ProgressBar.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/DocumentWatch.h"
#include "UI/Base/Session/Environment.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Window/AreaStage.h"
#include "UI/Base/Window/BellButton.h"
#include "UI/Base/Window/BrowserPanel.h"
#include "UI/Base/Window/CanvasMenu.h"
#include "UI/Base/Window/CommandBox.h"
#include "UI/Base/Window/CommandButton.h"
#include "UI/Base/Window/CommandMenu.h"
#include "UI/Base/Window/CommandPanel.h"
#include "UI/Base/Window/DropTarget.h"
#include "UI/Base/Window/HotKeys.h"
#include "UI/Base/Window/KeyTable.h"
#include "UI/Base/Window/KeysOverlay.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/ProgressPanel.h"
#include "UI/Base/Window/StatusFields.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/ToastStack.h"
#include "UI/Base/Window/TourOverlay.h"
#include "UI/Base/Window/WindowContents.h"
#include "UI/Base/Window/WindowKeys.h"
#include "UI/Base/Window/WindowMenus.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QStatusBar>

#include <boost/algorithm/string/join.hpp>

#include <algorithm>
#include <string>

namespace Vu {
namespace {

constexpr int kFirstWidth = 1280;
constexpr int kFirstHeight = 800;
/// Roughly the height of a window manager's title bar.
constexpr int kTitleBar = 36;
constexpr int kMessageTime = 15000;
constexpr const wchar_t* kExitCommand = L"ExitApplicationCommand";

/// The identifier of the environment that the user is in; empty outside of any.
std::wstring activeEnvironment()
{
    const AssetSession* session = SessionMgr::get()->activeAssetSession();
    const EnvironmentDefinition* environment = session ? session->activeEnvironment() : nullptr;
    return environment ? environment->id() : std::wstring();
}

/// Its text is its name, unless it is empty.
void showIn(QLabel* label, const QString& text)
{
    label->setText(text.simplified());
    PlainText::setTooltip(label, text);
    label->setAccessibleName(text.isEmpty() ? QString::fromStdWString(localized("StatusMessage", "Messages"))
                                            : QString());
}

} // namespace

MainWindow::MainWindow(WorkspaceWindow* owner)
    : m_owner(owner),
      m_contents(std::make_unique<WindowContents>(*owner, this)),
      m_progress(new ProgressPanel(this)),
      m_message(PlainText::label(this)),
      m_fields(new StatusFields(this)),
      m_readOnly(PlainText::label(this)),
      m_bell(new BellButton(m_progress, this)),
      m_toasts(new ToastStack(this)),
      m_drops(new DropTarget(this)),
      m_panel(new CommandPanel(owner->workspace(), this)),
      m_keys(std::make_unique<WindowKeys>(*this, *m_panel,
                                          [this](const QString& text) { message(text, false); })),
      m_stage(new AreaStage({[this](Area& area, QWidget* parent) { return m_contents->make(area, parent); },
                             [this](const QWidget* widget) { return m_contents->isShared(widget); },
                             [this](QWidget* leaving) { m_contents->keepWhatStays(leaving); }},
                            this))
{
    setCentralWidget(m_stage);
    restoreSize();
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_message->setContentsMargins(kMargin, 0, 0, 0);
    showIn(m_message, {});
    // A long message must not widen the window.
    m_message->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    statusBar()->addWidget(m_message, 1);
    m_readOnly->setObjectName(QStringLiteral("readOnly"));
    statusBar()->addPermanentWidget(m_fields);
    statusBar()->addPermanentWidget(m_readOnly);
    statusBar()->addPermanentWidget(m_progress);
    statusBar()->addPermanentWidget(m_bell);
    statusBar()->setSizeGripEnabled(false);

    m_rebuildTimer.setSingleShot(true);
    m_refreshTimer.setSingleShot(true);
    connect(&m_rebuildTimer, &QTimer::timeout, this, [this] { rebuild(); });
    connect(&m_refreshTimer, &QTimer::timeout, this, [this] { refresh(); });
    bindHotKeys();
    new CanvasMenu(this);
    const std::wstring problems = addMenus(*this);

    m_subscriptions.add(Vs::AssetEventSource::get(), this);
    m_subscriptions.add(Vs::DocumentEventSource::get(), this);
    m_subscriptions.add(DocumentRemarkSource::get(), this);
    m_subscriptions.add(CommandEventSource::get(), this);
    m_subscriptions.add(SessionEventSource::get(), this);
    m_subscriptions.add(WorkspaceEventSource::get(), this);
    m_subscriptions.add(ToolbarManager::get(), this);
    m_subscriptions.add(AlertEventSource::get(), this);
    rebuild();
    if (const QStringList ofKeys = KeyTable::get()->problems(); !ofKeys.isEmpty())
        message(ofKeys.join(QLatin1Char('\n')), true);
    if (!problems.empty())
        message(QString::fromStdWString(problems), true);
}

MainWindow::~MainWindow()
{
    UIBaseOptionGroup::get()->windowGeometry(QString::fromLatin1(saveGeometry().toBase64()).toStdWString());
    delete m_stage; // While its buttons can still be listed.
    m_subscriptions.clear();
}

void MainWindow::restoreSize()
{
    const QString kept = QString::fromStdWString(UIBaseOptionGroup::get()->windowGeometry());
    if (!kept.isEmpty() && restoreGeometry(QByteArray::fromBase64(kept.toLatin1())))
        return;
    QSize size(kFirstWidth, kFirstHeight);
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        size = size.boundedTo(screen->availableSize() - QSize(2 * kMargin, kTitleBar));
    resize(size);
}

BrowserPanel* MainWindow::browser()
{
    return m_contents->browser();
}

CommandBox* MainWindow::commandBox()
{
    return m_contents->commandBox();
}

const std::vector<CommandButton*>& MainWindow::buttons() const
{
    return m_contents->buttons();
}

void MainWindow::rebuild()
{
    m_rebuildTimer.stop();
    m_contents->environment(activeEnvironment());
    Area* root = m_owner->area();
    std::vector<Area*> layouts;
    for (Layout* layout : m_owner->arrangementManager()->layouts())
        layouts.push_back(layout);
    m_stage->show(root, layouts);
    if (root)
        m_contents->follow(*root, *m_stage);
    tellUnknownCommands();
    m_panel->refresh();
    m_keys->findKeyboard(*statusBar());
    refresh();
}

void MainWindow::rebuildSoon()
{
    if (!m_stage->isResizing())
        m_rebuildTimer.start(0);
}

void MainWindow::refreshSoon()
{
    if (!m_refreshTimer.isActive())
        m_refreshTimer.start(0);
}

void MainWindow::settleLayout()
{
    if (m_rebuildTimer.isActive())
        rebuild();
    else if (m_refreshTimer.isActive())
        refresh();
    m_panel->settle();
    QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
}

void MainWindow::refresh()
{
    m_refreshTimer.stop();
    if (m_contents->environment() != activeEnvironment()) {
        rebuild();
        return;
    }
    QString title;
    const AssetSession* session = SessionMgr::get()->activeAssetSession();
    const Vs::Document* document = session ? session->documentSession()->document() : nullptr;
    if (document)
        title = QString::fromStdWString(document->displayName())
                    // Doubled, Qt's placeholder for a changed document stays literal in a name.
                    .replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")) +
                QStringLiteral("[*]") + showHolder(document) + remarkOn(*document) +
                QStringLiteral(" \u2013 ");
    else
        m_readOnly->hide();
    setWindowTitle(title + QStringLiteral("Quillet"));
    setWindowModified(document && document->isDirty(false));
    for (CommandButton* button : buttons())
        button->refresh();
    m_fields->refresh();
}

/// The title's remark about it.
QString MainWindow::showHolder(const Vs::Document* document)
{
    const Vs::FileUser* user = Vs::HeldFiles::holder(document);
    m_readOnly->setVisible(user != nullptr);
    if (!user)
        return {};
    const QString readOnly = QString::fromStdWString(localized("ReadOnly", "read only"));
    m_readOnly->setText(readOnly);
    PlainText::setTooltip(m_readOnly, QString::fromStdWString(DocumentWatch::whoHasIt(*user)));
    return QStringLiteral(" (") + readOnly + QLatin1Char(')');
}

QString MainWindow::remarkOn(const Vs::Document& document)
{
    const std::wstring remark = DocumentRemark::of(document);
    return remark.empty() ? QString()
                          : QStringLiteral(" (") + QString::fromStdWString(remark) + QLatin1Char(')');
}

void MainWindow::bindHotKeys()
{
    new HotKeys(this, [this](CommandDefinition* definition) { runHotKey(definition); });
    HotKeys::add(this, Qt::CTRL | Qt::Key_L, [this] {
        if (CommandBox* box = m_contents->existingCommandBox(); box && box->isVisible())
            box->edit()->setFocus(Qt::ShortcutFocusReason);
    });
    HotKeys::add(this, Qt::CTRL | Qt::Key_F, [this] {
        if (BrowserPanel* panel = m_contents->browser(); panel->isVisible())
            panel->filter()->setFocus(Qt::ShortcutFocusReason);
    });
    for (const Qt::Key arrow : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down})
        HotKeys::add(this, Qt::CTRL | arrow, [this, arrow] { m_keys->point(arrow); });
    HotKeys::add(this, Qt::Key_Question, [this] { KeysOverlay::toggle(this); });
}

/// A command that is a list shows it; any other runs.
void MainWindow::runHotKey(CommandDefinition* definition)
{
    if (makeOnlyKind(*definition))
        return;
    if (!Vs::cast<ListControl>(definition->inputControl())) {
        definition->runByHand(ECommandAccessPoint::HotKey);
        return;
    }
    for (CommandButton* button : buttons())
        if (button->definition() == definition && button->isVisible() && button->isEnabled()) {
            button->showMenu();
            return;
        }
}

void MainWindow::tellUnknownCommands()
{
    if (m_toldUnknown)
        return;
    const std::vector<std::wstring> unknown = ToolbarManager::get()->unknownCommands();
    if (unknown.empty())
        return;
    m_toldUnknown = true;
    message(QString::fromStdWString(localizedFormat("ToolbarsUnknownCommands",
                                                    "Toolbars name commands that do not exist: %1%",
                                                    boost::algorithm::join(unknown, L", "))),
            false);
}

void MainWindow::message(const QString& text, bool isError)
{
    QPalette colours = palette();
    if (isError)
        colours.setColor(QPalette::WindowText, errorColour());
    m_message->setPalette(colours);
    showIn(m_message, text);
    QTimer::singleShot(kMessageTime, m_message, [this, shown = m_message->text()] {
        if (m_message->text() == shown)
            showIn(m_message, {});
    });
}

void MainWindow::alertAdded(AlertController*, const Alert& alert)
{
    // Any other shows over the window.
    if (alert.blocking || alert.severity == EAlertSeverity::Information)
        message(QString::fromStdWString(alert.text), alert.severity == EAlertSeverity::Error);
}

void MainWindow::alertsCleared(AlertController*)
{
    showIn(m_message, {});
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    // The command decides whether the window closes: it asks about changed documents.
    event->ignore();
    if (ProgressBar::get()->busy())
        return;
    if (CommandDefinition* exit = CommandDefinitionMgr::get()->findCommandDefinitionById(kExitCommand)) {
        CommandContext context = CommandContext::activeContext();
        CommandMgr::get()->executeLater(exit, context);
    } else {
        Application::get()->exit(true);
    }
}

void MainWindow::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        WorkspaceMgr::activeWorkspace(m_owner->workspace());
    QMainWindow::changeEvent(event);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    m_drops->enter(*event);
}

void MainWindow::dragLeaveEvent(QDragLeaveEvent*)
{
    m_drops->leave();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    m_drops->drop(*event);
}

// None of the widgets has used what arrives here.
void MainWindow::keyPressEvent(QKeyEvent* event)
{
    if (!m_keys->press(*event))
        QMainWindow::keyPressEvent(event);
}

bool MainWindow::focusNextPrevChild(bool next)
{
    if (m_keys->walks())
        return m_panel->walk(next);
    const bool moved = QMainWindow::focusNextPrevChild(next);
    m_keys->tellIfInView();
    return moved;
}

void MainWindow::keyReleaseEvent(QKeyEvent* event)
{
    if (!m_keys->release(*event))
        QMainWindow::keyReleaseEvent(event);
}

} // namespace Vu
