#include "UI/Commands/Transcripts/DebugDialog.h"

#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"

namespace Vu {
namespace {

DebugDialog::Toolkit* installedToolkit = nullptr;

} // namespace

const Vs::Point2 DebugDialog::m_defaultPos = {400, 300};

DebugDialog* DebugDialog::get()
{
    static DebugDialog dialog;
    return &dialog;
}

DebugDialog::DebugDialog()
{
    m_subscriptions.add(ShellEventSource::get(), this);
}

DebugDialog::~DebugDialog()
{
    m_subscriptions.clear();
    clear();
}

void DebugDialog::clear()
{
    m_window.reset();
}

void DebugDialog::show()
{
    clear();
    if (!installedToolkit)
        return;
    m_window = installedToolkit->makeWindow();
    m_window->show(savedPos());
}

void DebugDialog::hide()
{
    if (m_window) {
        savePos(m_window->corner());
        m_window->hide();
    }
    clear();
}

void DebugDialog::shellActivated(ShellEvent* event)
{
    if (event->timing() == Vs::Timing::Notification && savedShowState())
        show();
}

void DebugDialog::shellDeactivated(ShellEvent* event)
{
    if (event->timing() == Vs::Timing::After && savedShowState())
        hide();
}

bool DebugDialog::savedShowState()
{
    const UIBaseOptionGroup* options = UIBaseOptionGroup::get();
    return options && options->showDebugDialog();
}

void DebugDialog::saveShowState(bool shown)
{
    if (UIBaseOptionGroup* options = UIBaseOptionGroup::get())
        options->showDebugDialog(shown);
}

Vs::Point2 DebugDialog::savedPos()
{
    const UIBaseOptionGroup* options = UIBaseOptionGroup::get();
    const Vs::Point2 corner = options ? options->debugDialogPos() : m_defaultPos;
    const bool visible = installedToolkit && installedToolkit->desktop().contains(corner.x, corner.y);
    return visible ? corner : m_defaultPos;
}

void DebugDialog::savePos(const Vs::Point2& corner)
{
    if (UIBaseOptionGroup* options = UIBaseOptionGroup::get())
        options->debugDialogPos(corner);
}

void DebugDialog::toolkit(Toolkit* toolkit)
{
    installedToolkit = toolkit;
    // The widgets come with the first window, when a shell is active already. The option is asked for later:
    // as libraries are loaded, nobody may have said yet where the options are.
    if (toolkit)
        Application::get()->deferredTasks()->post([] {
            if (savedShowState() && !get()->m_window)
                get()->show();
        });
}

} // namespace Vu
