#include "UI/Base/Window/MainWindow.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/HeldFiles.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/InteractiveCommandBase.h"
#include "UI/Base/Command/KeyEvents.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/AreaContents.h"
#include "UI/Base/Program/ProgressBar.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/DocumentWatch.h"
#include "UI/Base/Session/Environment.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/Window/AreaStage.h"
#include "UI/Base/Window/BellButton.h"
#include "UI/Base/Window/BrowserPanel.h"
#include "UI/Base/Window/CanvasMenu.h"
#include "UI/Base/Window/CommandBox.h"
#include "UI/Base/Window/CommandButton.h"
#include "UI/Base/Window/CommandPanel.h"
#include "UI/Base/Window/DroppedFiles.h"
#include "UI/Base/Window/HotKeys.h"
#include "UI/Base/Window/HudFrame.h"
#include "UI/Base/Window/KeyTable.h"
#include "UI/Base/Window/KeysOverlay.h"
#include "UI/Base/Window/LocalPath.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/ProgressPanel.h"
#include "UI/Base/Window/RestingCommand.h"
#include "UI/Base/Window/RovingFocus.h"
#include "UI/Base/Window/StatusFields.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/ToastStack.h"
#include "UI/Base/Window/ToolbarStrip.h"
#include "UI/Base/Window/TourOverlay.h"
#include "UI/Base/Window/ViewKeys.h"
#include "UI/Base/Window/WindowMenus.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QScreen>
#include <QStatusBar>

#include <boost/algorithm/string/join.hpp>

#include <algorithm>
#include <string>

namespace Vu {
namespace {

constexpr int kFirstWidth = 1280;
constexpr int kFirstHeight = 800;
/// About what a window manager adds at the top.
constexpr int kTitleBar = 36;
constexpr int kMessageTime = 15000;
constexpr const wchar_t* kDeleteCommand = L"DeleteCommand";
constexpr const wchar_t* kReturnCommand = L"ReturnToEnvironmentCommand";
constexpr const wchar_t* kExitCommand = L"ExitApplicationCommand";

void runByKey(const wchar_t* command)
{
    if (CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(command))
        definition->runByHand(ECommandAccessPoint::HotKey);
}

bool editsComponent()
{
    const AssetSession* session = SessionMgr::get()->activeAssetSession();
    return session && !session->editedComponent().empty();
}

/// The identifier of the environment that the user works in; empty outside of any.
std::wstring activeEnvironment()
{
    const AssetSession* session = SessionMgr::get()->activeAssetSession();
    const EnvironmentDefinition* environment = session ? session->activeEnvironment() : nullptr;
    return environment ? environment->id() : std::wstring();
}

std::vector<std::wstring> droppedFiles(const QMimeData* data)
{
    std::vector<std::wstring> paths;
    for (const QUrl& url : data->urls())
        if (url.isLocalFile())
            paths.push_back(pathOf(url));
    return paths;
}

/// False if no command is there that takes keys.
bool tellActiveCommand(void (IKeyEventHandler::*what)(KeyEvent*), const QKeyEvent& key)
{
    auto* handler = Vs::cast<IKeyEventHandler>(CommandBase::getActiveCommand());
    if (!handler)
        return false;
    constexpr unsigned kKnown = kShiftModifier | kControlModifier | kAltModifier;
    KeyEvent event(key.key(), static_cast<unsigned>(key.modifiers()) & kKnown);
    (handler->*what)(&event);
    return true;
}

} // namespace

MainWindow::MainWindow(WorkspaceWindow* owner)
    : m_owner(owner),
      m_attic(new QWidget(this)),
      m_progress(new ProgressPanel(this)),
      m_message(PlainText::label(this)),
      m_fields(new StatusFields(this)),
      m_readOnly(PlainText::label(this)),
      m_bell(new BellButton(m_progress, this)),
      m_toasts(new ToastStack(this)),
      m_panel(new CommandPanel(owner->workspace(), this)),
      m_stage(new AreaStage({[this](Area& area, QWidget* parent) { return contents(area, parent); },
                             [this](const QWidget* widget) { return isShared(widget); },
                             [this](QWidget* leaving) { keepWhatStays(leaving); }},
                            this))
{
    setCentralWidget(m_stage);
    m_attic->hide();
    setAcceptDrops(true);
    restoreSize();
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_message->setContentsMargins(kMargin, 0, 0, 0);
    // A long message must not make the window wider.
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

    Vs::AssetEventSource::get()->subscribe(this);
    Vs::DocumentEventSource::get()->subscribe(this);
    DocumentRemarkSource::get()->subscribe(this);
    CommandEventSource::get()->subscribe(this);
    SessionEventSource::get()->subscribe(this);
    WorkspaceEventSource::get()->subscribe(this);
    ToolbarManager::get()->subscribe(this);
    AlertEventSource::get()->subscribe(this);
    rebuild();
    if (const QStringList ofKeys = KeyTable::get()->problems(); !ofKeys.isEmpty())
        message(ofKeys.join(QLatin1Char('\n')), true);
    if (!problems.empty())
        message(QString::fromStdWString(problems), true);
}

MainWindow::~MainWindow()
{
    UIBaseOptionGroup::get()->windowGeometry(QString::fromLatin1(saveGeometry().toBase64()).toStdWString());
    delete m_stage; // While its buttons can still be told.
    Vs::AssetEventSource::get()->unsubscribe(this);
    Vs::DocumentEventSource::get()->unsubscribe(this);
    DocumentRemarkSource::get()->unsubscribe(this);
    CommandEventSource::get()->unsubscribe(this);
    SessionEventSource::get()->unsubscribe(this);
    WorkspaceEventSource::get()->unsubscribe(this);
    ToolbarManager::get()->unsubscribe(this);
    AlertEventSource::get()->unsubscribe(this);
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
    if (!m_browser)
        m_browser = new BrowserPanel(m_attic);
    return m_browser;
}

CommandBox* MainWindow::commandBox()
{
    if (!m_commandBox)
        m_commandBox = new CommandBox(m_attic);
    return m_commandBox;
}

/// Of each of these there is one, which stands wherever an area wants it.
bool MainWindow::isShared(const QWidget* widget) const
{
    return widget == m_browser || widget == m_commandBox ||
           std::any_of(m_strips.begin(), m_strips.end(),
                       [&](const auto& strip) { return strip.second == widget; });
}

void MainWindow::keepWhatStays(QWidget* leaving)
{
    for (GraphicsCanvas* canvas : GraphicsCanvas::existingCanvases())
        if (QWidget* widget = canvas->existingWidget(); widget && leaving->isAncestorOf(widget))
            widget->setParent(m_attic);
    if (isShared(leaving))
        leaving->setParent(m_attic);
}

void MainWindow::rememberButtons(size_t known)
{
    for (size_t i = known; i < m_buttons.size(); ++i)
        connect(m_buttons[i], &QObject::destroyed, this,
                [this, button = m_buttons[i]] { std::erase(m_buttons, button); });
}

ToolbarStrip* MainWindow::strip(const Area& area)
{
    ToolbarStrip*& strip = m_strips[{area.contents()->text(), area.name()}];
    if (!strip) {
        strip = new ToolbarStrip(m_attic);
        new RovingFocus(strip);
    }
    return strip;
}

/// Each gets the toolbars of its area. One that names no area of the layout stands in the first with its
/// contents.
void MainWindow::fillStrips()
{
    Area* root = m_owner->area();
    if (!root)
        return;
    for (const auto& [key, strip] : m_strips) {
        std::vector<Area*> areas;
        root->childrenByContents(Vs::UniqueString::find(key.first.c_str()), areas);
        const auto named = [&](const std::wstring& name) {
            return std::any_of(areas.begin(), areas.end(),
                               [&](const Area* each) { return each->name() == name; });
        };
        if (!named(key.second))
            continue;
        std::vector<const Toolbar*> shown;
        for (const Toolbar& toolbar : ToolbarManager::get()->toolbars()) {
            const std::wstring& place = named(toolbar.area) ? toolbar.area : areas.front()->name();
            if (toolbar.contents == key.first && place == key.second && toolbar.standsIn(m_environment))
                shown.push_back(&toolbar);
        }
        const size_t known = m_buttons.size();
        strip->toolbars(shown, m_buttons);
        rememberButtons(known);
    }
}

QWidget* MainWindow::canvasFrame(Area& area, QWidget* parent)
{
    auto* frame = new HudFrame(parent);
    frame->canvas(area.canvas());
    const size_t known = m_buttons.size();
    frame->addHuds(m_buttons);
    rememberButtons(known);
    m_canvasFrames.emplace_back(frame);
    return frame;
}

QWidget* MainWindow::contents(Area& area, QWidget* parent)
{
    const std::string key = area.contents() ? area.contents()->text() : std::string();
    QWidget* widget = nullptr;
    if (key == "GraphicsCanvas")
        return canvasFrame(area, parent);
    if (key == "BrowserWindow")
        widget = browser();
    else if (key == "TextCommands")
        widget = commandBox();
    else if (QWidget* brought = AreaContents::make(key, parent))
        return brought;
    else if (key.empty())
        return nullptr;
    else if (ToolbarStrip* toolbars = strip(area)) {
        fillStrips();
        if (toolbars->isEmpty())
            return nullptr;
        widget = toolbars;
    }
    widget->setParent(parent);
    widget->show();
    return widget;
}

void MainWindow::rebuild()
{
    m_rebuildTimer.stop();
    m_environment = activeEnvironment();
    fillStrips();
    Area* root = m_owner->area();
    std::vector<Area*> layouts;
    for (Layout* layout : m_owner->arrangementManager()->layouts())
        layouts.push_back(layout);
    m_stage->show(root, layouts);
    std::erase_if(m_canvasFrames, [](const auto& frame) { return frame.isNull(); });
    for (const QPointer<HudFrame>& frame : m_canvasFrames)
        if (root && frame->window() == this)
            frame->follow(*root, *m_stage);
    tellUnknownCommands();
    m_panel->refresh();
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
    if (m_environment != activeEnvironment()) {
        rebuild();
        return;
    }
    QString title;
    const AssetSession* session = SessionMgr::get()->activeAssetSession();
    const Vs::Document* document = session ? session->documentSession()->document() : nullptr;
    if (document)
        title = QString::fromStdWString(document->displayName())
                    // Two of Qt's marks for a changed document stand for one that is part of a name.
                    .replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")) +
                QStringLiteral("[*]") + showHolder(document) + remarkOn(*document) +
                QStringLiteral(" \u2013 ");
    else
        m_readOnly->hide();
    setWindowTitle(title + QStringLiteral("Quillet"));
    setWindowModified(document && document->isDirty(false));
    for (CommandButton* button : m_buttons)
        button->refresh();
    m_fields->refresh();
}

/// What the title says of it.
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
        if (m_commandBox && m_commandBox->isVisible())
            m_commandBox->edit()->setFocus(Qt::ShortcutFocusReason);
    });
    HotKeys::add(this, Qt::Key_Question, [this] { KeysOverlay::toggle(this); });
}

/// A command that is a list shows it; any other runs.
void MainWindow::runHotKey(CommandDefinition* definition)
{
    if (!Vs::cast<ListControl>(definition->inputControl())) {
        definition->runByHand(ECommandAccessPoint::HotKey);
        return;
    }
    for (CommandButton* button : m_buttons)
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
    m_message->setText(text.simplified());
    PlainText::setTooltip(m_message, text);
    QTimer::singleShot(kMessageTime, m_message, [label = m_message, shown = m_message->text()] {
        if (label->text() == shown)
            label->clear();
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
    m_message->clear();
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    // Whether the window goes is for the command to say: it asks about documents that were changed.
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
    if (!droppedFiles(event->mimeData()).empty())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    event->acceptProposedAction();
    openDroppedFiles(droppedFiles(event->mimeData()));
}

/// The widget of the view that is worked in, if this window shows it.
QWidget* MainWindow::viewWidget() const
{
    const GraphicsCanvas* canvas = SplitViewMgr::get()->activeCanvas();
    QWidget* widget = canvas ? canvas->existingWidget() : nullptr;
    return widget && widget->window() == this && widget->isVisible() ? widget : nullptr;
}

// What comes here, none of the widgets had a use for.
void MainWindow::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    QWidget* view = viewWidget();
    const bool isInView = view && QApplication::focusWidget() == view;
    if (isInView && moveViewByKey(*event))
        return;
    if (event->key() == Qt::Key_Escape && commandRests() && view && !isInView) {
        view->setFocus(Qt::ShortcutFocusReason);
        return;
    }
    if (isEnter && m_panel->command())
        m_panel->commit();
    else if (isEnter && commandRests() && editsComponent())
        runByKey(kReturnCommand);
    else if (event->matches(QKeySequence::Delete) && commandRests())
        runByKey(kDeleteCommand);
    else if (tellActiveCommand(&IKeyEventHandler::keyPress, *event))
        m_keysDown.insert(event->key());
    else
        QMainWindow::keyPressEvent(event);
}

// Who has picked something in the view goes on with the values.
bool MainWindow::focusNextPrevChild(bool next)
{
    const QWidget* focus = QApplication::focusWidget();
    if (m_panel->command() && focus && viewWidget() == focus)
        return m_panel->walk(next);
    return QMainWindow::focusNextPrevChild(next);
}

void MainWindow::keyReleaseEvent(QKeyEvent* event)
{
    // A line that is typed into takes the presses, but lets the releases through.
    if (event->isAutoRepeat() || m_keysDown.erase(event->key()) == 0)
        QMainWindow::keyReleaseEvent(event);
    else
        tellActiveCommand(&IKeyEventHandler::keyRelease, *event);
}

} // namespace Vu
