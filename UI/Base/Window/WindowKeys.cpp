#include "UI/Base/Window/WindowKeys.h"

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/InteractiveCommandBase.h"
#include "UI/Base/Command/KeyEvents.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/Window/CommandPanel.h"
#include "UI/Base/Window/RestingCommand.h"
#include "UI/Base/Window/ViewKeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>

namespace Vu {
namespace {

constexpr const wchar_t* kDeleteCommand = L"DeleteCommand";
constexpr const wchar_t* kReturnCommand = L"ReturnToEnvironmentCommand";

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

/// Null unless one is shown that wants the focus before the user has chosen where it goes.
QWidget* firstOfContents(const QWidget& window)
{
    for (const QWidget* each : window.findChildren<QWidget*>())
        if (each->isVisibleTo(&window) && each->property("beginsWithKeyboard").toBool())
            for (QWidget* child : each->findChildren<QWidget*>())
                if (child->isVisibleTo(&window) && child->isEnabled() && child->focusPolicy() & Qt::TabFocus)
                    return child;
    return nullptr;
}

/// False if there is no command that takes keys.
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

/// The widget of the active view, if this window shows it.
QWidget* WindowKeys::viewWidget() const
{
    const GraphicsCanvas* canvas = SplitViewMgr::get()->activeCanvas();
    QWidget* widget = canvas ? canvas->existingWidget() : nullptr;
    return widget && widget->window() == &m_window && widget->isVisible() ? widget : nullptr;
}

bool WindowKeys::isInView() const
{
    const QWidget* focus = QApplication::focusWidget();
    return focus && viewWidget() == focus;
}

bool WindowKeys::point(int arrow)
{
    QWidget* view = viewWidget();
    if (!view || !m_pointer.point(arrow))
        return false;
    // Even from a field of the panel: the Space key comes next.
    view->setFocus(Qt::ShortcutFocusReason);
    return true;
}

// Qt passes it on to the next widget that accepts it, which would be one of the status bar.
void WindowKeys::findKeyboard(const QWidget& leftovers) const
{
    const QWidget* focus = m_window.focusWidget();
    if (focus && focus->isVisibleTo(&m_window) && !leftovers.isAncestorOf(focus))
        return;
    QWidget* view = viewWidget();
    if (QWidget* first = view ? view : firstOfContents(m_window))
        first->setFocus(Qt::OtherFocusReason);
}

void WindowKeys::tellIfInView() const
{
    if (isInView())
        m_tell(QString::fromStdWString(
            localized("ViewKeysHint", "Arrows turn the view. Ctrl and an arrow point at what lies in that "
                                      "direction, and Space selects it.")));
}

bool WindowKeys::press(const QKeyEvent& event)
{
    const bool isEnter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    QWidget* view = viewWidget();
    if (isInView() && (moveViewByKey(event) || m_pointer.click(event)))
        return true;
    if (event.key() == Qt::Key_Escape && commandRests() && view && !isInView()) {
        view->setFocus(Qt::ShortcutFocusReason);
        tellIfInView();
        return true;
    }
    if (isEnter && m_panel.command())
        m_panel.commit();
    else if (isEnter && commandRests() && editsComponent())
        runByKey(kReturnCommand);
    else if (event.matches(QKeySequence::Delete) && commandRests())
        runByKey(kDeleteCommand);
    else if (tellActiveCommand(&IKeyEventHandler::keyPress, event))
        m_down.insert(event.key());
    else
        return false;
    return true;
}

bool WindowKeys::release(const QKeyEvent& event)
{
    // An edit field takes the presses, but lets the releases through.
    if (event.isAutoRepeat() || m_down.erase(event.key()) == 0)
        return false;
    tellActiveCommand(&IKeyEventHandler::keyRelease, event);
    return true;
}

bool WindowKeys::walks() const
{
    return m_panel.command() && isInView();
}

} // namespace Vu
