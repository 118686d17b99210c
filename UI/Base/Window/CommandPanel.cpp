#include "UI/Base/Window/CommandPanel.h"

#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDialog.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/View/AutoCamViewFragment.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/Window/InputField.h"
#include "UI/Base/Window/InputForm.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Workspace/HUDManager.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"

#include <QApplication>
#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollArea>

#include <algorithm>
#include <utility>

namespace Vu {
namespace {

/// Wide enough for typical texts of lists and selections; narrower in a small view, so that most of that is
/// left to the model.
constexpr int kWidth = 370, kLeastWidth = 290;
constexpr double kShareOfView = 0.38;
/// From the canvas's edges.
constexpr int kDistance = 12;
/// The margin that keeps the head and foot of the panel inside the window, however it is dragged.
constexpr int kGrip = 40;

/// What blocks the command, as a line for the user.
struct Problem
{
    QString text; ///< Empty if nothing does.
    bool isError = true;
};

/// Where the orientation cube of the view ends; 0 if it shows none.
int cubeBottom(const GraphicsCanvas& canvas)
{
    double bottom = 0;
    if (const GraphicsView* view = canvas.view())
        for (const Vs::Scene::ViewFragment* fragment : view->viewFragments())
            if (const auto* cube = Vs::cast<AutoCamViewFragment>(fragment))
                bottom = std::max(bottom, cube->place().top + cube->place().size);
    return int(bottom);
}

/// Errors come before what is merely missing yet.
Problem problemOf(const CommandBase& command)
{
    Problem missing;
    for (const auto& input : command.commandInputSet()->inputs()) {
        const std::wstring why = input->whyInvalid();
        if (why.empty() || (input->isAwaiting() && !missing.text.isEmpty()))
            continue;
        const QString text =
            QString::fromStdWString(localizedFormat("InputProblem", "%1%: %2%", input->info()->name(), why));
        if (!input->isAwaiting())
            return {text};
        missing = {text, false};
    }
    if (!missing.text.isEmpty())
        return missing;
    for (const Alert& alert : command.commandManager()->GetAlertController()->alerts())
        if (alert.blocking)
            return {QString::fromStdWString(alert.text)};
    return {};
}

/// Missing values can wait if there are steps to keep; errors must be corrected first, or the previous value
/// would be used.
bool mayCommit(CommandBase& command, const Problem& problem)
{
    return problem.text.isEmpty() || (!problem.isError && command.getPossibleMidCommandUndoContext() ==
                                                              EMidCommandUndoRedoContext::Step);
}

} // namespace

CommandPanel::CommandPanel(const Workspace* workspace, QWidget* parent)
    : QFrame(parent),
      m_workspace(workspace),
      m_head(makeHead()),
      m_scroll(new QScrollArea(this)),
      m_message(PlainText::label(this)),
      m_foot(new QWidget(this)),
      m_ok(new QPushButton(QString::fromStdWString(localized("PanelOk", "OK")), m_foot))
{
    setObjectName(QStringLiteral("commandPanel"));
    setAutoFillBackground(true);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(1, 1, 1, 1);
    column->setSpacing(0);
    column->addWidget(m_head);
    column->addWidget(m_scroll, 1);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_message->setObjectName(QStringLiteral("inputMessage"));
    m_message->setWordWrap(true);
    m_message->setContentsMargins(2 * kMargin, kMargin, 2 * kMargin, 0);
    column->addWidget(m_message);
    fillFoot();
    column->addWidget(m_foot);
    m_soon.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, [this] { refresh(); });
    parent->installEventFilter(this);
    m_subscriptions.add(CommandEventSource::get(), this);
    m_subscriptions.add(SessionEventSource::get(), this);
    hide();
}

CommandPanel::~CommandPanel()
{
    close();
    m_subscriptions.clear();
}

QWidget* CommandPanel::makeHead()
{
    auto* head = new QFrame(this);
    head->setObjectName(QStringLiteral("panelHead"));
    head->setCursor(Qt::SizeAllCursor);
    head->installEventFilter(this);
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(2 * kMargin, kMargin, kMargin, kMargin);
    m_icon = PlainText::label(head);
    m_title = PlainText::label(head);
    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    row->addWidget(m_icon);
    row->addWidget(m_title, 1);
    return head;
}

void CommandPanel::fillFoot()
{
    auto* row = new QHBoxLayout(m_foot);
    row->setContentsMargins(2 * kMargin, 2 * kMargin, 2 * kMargin, 2 * kMargin);
    row->addStretch(1);
    m_ok->setObjectName(QStringLiteral("panelOk"));
    m_ok->setDefault(true);
    auto* cancelButton = new QPushButton(QString::fromStdWString(localized("PanelCancel", "Cancel")), m_foot);
    cancelButton->setObjectName(QStringLiteral("panelCancel"));
    row->addWidget(m_ok);
    row->addWidget(cancelButton);
    connect(m_ok, &QPushButton::clicked, this, [this] { commit(); });
    connect(cancelButton, &QPushButton::clicked, this, [this] { cancel(); });
}

/// The topmost command that has a panel: turning the view meanwhile doesn't hide it.
CommandBase* CommandPanel::wanted() const
{
    const CommandMgr* manager = CommandMgr::getActiveCommandManager();
    if (!manager || WorkspaceMgr::activeWorkspace() != m_workspace)
        return nullptr;
    const std::vector<CommandBase*>& stack = manager->commandStack();
    const auto top = std::find_if(stack.rbegin(), stack.rend(), [](const CommandBase* command) {
        return command->usesCommandDialog() && command->commandInputSet() &&
               (command->isActive() || command->isSuspended());
    });
    if (top == stack.rend())
        return nullptr;
    const CommandDialog* dialog = (*top)->commandDialog();
    return dialog && !dialog->shown() ? nullptr : *top;
}

void CommandPanel::commandsChanged()
{
    // A command that ended is released at once, before it is deleted; one that began is shown at the end of
    // the event.
    CommandBase* const command = wanted();
    if (m_command && command != m_command)
        close();
    m_soon.start(0);
}

void CommandPanel::commandInputChanged(CommandInputEvent* event)
{
    if (!Vs::cast<CommandInputHoverEvent>(event) && !Vs::cast<CommandInputQueryMRUCommandEvent>(event))
        m_soon.start(0);
}

void CommandPanel::refresh()
{
    m_soon.stop();
    CommandBase* const command = wanted();
    if (m_command && command != m_command)
        close();
    if (command && !m_command)
        open(command);
    if (m_command)
        showState();
}

void CommandPanel::open(CommandBase* command)
{
    m_command = command;
    m_manager = command->commandManager();
    CommandInputSetEventSource::get()->subscribe(this, command->commandInputSet());
    const Info& info = *command->commandDefinition()->info();
    m_title->setText(QString::fromStdWString(info.name()));
    m_icon->setPixmap(iconOf(info.icon()).pixmap(kIconSize, kIconSize));
    m_icon->setVisible(info.icon() != nullptr);
    m_form = new InputForm(*command->commandInputSet(), m_scroll);
    m_scroll->setWidget(m_form);
    m_form->installEventFilter(this);
    m_dragged = {};
    showState();
    show();
    place();
    if (InputField* first = m_form->firstField(false); first && !command->commandContext()->isByLine())
        first->setFocus(Qt::TabFocusReason);
}

void CommandPanel::close()
{
    if (!m_command)
        return;
    const QWidget* focus = QApplication::focusWidget();
    const bool hadFocus = focus && isAncestorOf(focus);
    m_form->forget();
    // A command that has ended may be gone already, and its inputs with it.
    const std::vector<CommandBase*>& running = m_manager->commandStack();
    if (std::find(running.begin(), running.end(), m_command) != running.end())
        CommandInputSetEventSource::get()->unsubscribe(this, m_command->commandInputSet());
    m_command = nullptr;
    // One of the widgets may be the sender of the click that ended the command.
    m_scroll->takeWidget()->deleteLater();
    m_form.clear();
    hide();
    const GraphicsCanvas* canvas = SplitViewMgr::get()->activeCanvas();
    if (QWidget* widget = canvas ? canvas->existingWidget() : nullptr; hadFocus && widget)
        widget->setFocus();
}

void CommandPanel::showState()
{
    m_form->refresh();
    const Problem problem = problemOf(*m_command);
    m_message->setText(problem.text);
    m_message->setVisible(!problem.text.isEmpty());
    QPalette colours = palette();
    if (problem.isError)
        colours.setColor(QPalette::WindowText, errorColour());
    m_message->setPalette(colours);
    m_ok->setEnabled(mayCommit(*m_command, problem));
    place();
}

void CommandPanel::place()
{
    if (!m_command)
        return;
    QWidget* const window = parentWidget();
    QPoint corner(kDistance, kDistance);
    int room = window->height() - 2 * kDistance, width = kWidth;
    const GraphicsCanvas* canvas = SplitViewMgr::get()->activeCanvas();
    const QWidget* widget = canvas ? canvas->existingWidget() : nullptr;
    if (widget && widget->window() == window) {
        corner += widget->mapTo(window, QPoint(0, 0));
        room = widget->height() - 2 * kDistance;
        width = std::clamp(int(kShareOfView * widget->width()), kLeastWidth, kWidth);
        if (const CommandDialog* dialog = m_command->commandDialog(); dialog && dialog->atRight()) {
            const int below = cubeBottom(*canvas);
            corner += QPoint(widget->width() - width - 2 * kDistance, below);
            room -= below;
        }
    }
    corner += m_dragged;
    // Not taken from the layout, which still has the size before scrolling.
    const QMargins margins = contentsMargins() + layout()->contentsMargins();
    const int inner = width - margins.left() - margins.right();
    const int fixed = margins.top() + margins.bottom() + m_head->sizeHint().height() +
                      m_foot->sizeHint().height() +
                      (m_message->isHidden() ? 0 : m_message->heightForWidth(inner));
    const int wished = fixed + m_form->sizeHint().height();
    resize(width, std::min(wished, std::max(room, fixed + kGrip)));
    corner.setX(std::clamp(corner.x(), kGrip - width, std::max(0, window->width() - kGrip)));
    corner.setY(std::clamp(corner.y(), 0, std::max(0, window->height() - kGrip)));
    move(corner);
    raise();
    // Displays of values in the view keep clear of the panel.
    if (std::exchange(m_told, geometry()) != geometry())
        HUDManager::get()->changed();
}

void CommandPanel::commit()
{
    if (!m_command)
        return;
    const CommandInUse inUse(m_command);
    m_form->enter();
    if (!m_command)
        return;
    if (!m_command->areInputsValidForCommit() && !mayCommit(*m_command, problemOf(*m_command))) {
        showState();
        if (InputField* wrong = m_form->firstField(true))
            wrong->setFocus(Qt::OtherFocusReason);
        return;
    }
    m_command->destroy(ETerminationReason::Commit);
}

void CommandPanel::cancel()
{
    if (m_command)
        m_command->destroy(ETerminationReason::Cancel);
}

// A command on top of it, such as a measurement for one of its fields, takes precedence.
void CommandPanel::cancelTopmost()
{
    CommandBase* over = m_command ? m_command->commandManager()->activeCommand() : nullptr;
    if (over && over != m_command)
        over->destroy(ETerminationReason::Cancel);
    else
        cancel();
}

void CommandPanel::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // On a button the key presses it.
        if (auto* button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
            button && isAncestorOf(button) && !button->isCheckable())
            button->click();
        else
            commit();
        break;
    case Qt::Key_Escape:
        cancelTopmost();
        break;
    default:
        QFrame::keyPressEvent(event);
    }
}

bool CommandPanel::walk(bool next)
{
    std::vector<QWidget*> stops;
    for (QWidget* child : findChildren<QWidget*>())
        if ((child->focusPolicy() & Qt::TabFocus) && !child->focusProxy() && child->isVisible() &&
            child->isEnabled())
            stops.push_back(child);
    if (stops.empty())
        return false;
    auto now = std::find(stops.begin(), stops.end(), QApplication::focusWidget());
    if (const InputField* picking = m_form ? m_form->pickingField() : nullptr; picking && now == stops.end())
        now = std::find(stops.begin(), stops.end(), picking->focusProxy());
    const size_t count = stops.size();
    size_t index = next ? 0 : count - 1;
    if (now != stops.end())
        index = (static_cast<size_t>(now - stops.begin()) + (next ? 1 : count - 1)) % count;
    stops[index]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    m_scroll->ensureWidgetVisible(stops[index]);
    return true;
}

bool CommandPanel::eventFilter(QObject* object, QEvent* event)
{
    const bool isRoomNew = object == parentWidget() && event->type() == QEvent::Resize;
    if (isRoomNew || (object == m_form && event->type() == QEvent::LayoutRequest))
        place();
    if (object != m_head)
        return QFrame::eventFilter(object, event);
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseMove)
        return false;
    const QPoint pointer = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
    if (event->type() == QEvent::MouseMove) {
        m_dragged += pointer - m_grabbed;
        place();
    }
    m_grabbed = pointer;
    return true;
}

// The canvas beneath gets neither the clicks nor the scrolling that the panel doesn't use.
bool CommandPanel::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
        event->accept();
        return true;
    case QEvent::LayoutRequest:
        place();
        break;
    default:
        break;
    }
    return QFrame::event(event);
}

} // namespace Vu
