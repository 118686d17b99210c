#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/Status.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/Info.h"
#include "UI/Base/Command/InputControlHandler.h"

#include <memory>
#include <string>
#include <vector>

namespace Vu {

class CommandBase;
class InputControl;

/// Says what a command is and whether it can run now, and makes it each time it runs. A definition lives as
/// long as its add-in; constructing it registers it with CommandDefinitionMgr under its Info's key,
/// destroying it unregisters it and cancels those of its commands that still run; for them
/// CommandBase::commandDefinition is null from then on, because only this base class is left. Main thread
/// only.
class CommandDefinition : public Vs::Implements<CommandDefinition, Vs::Object, IButtonControlHandler>
{
public:
    ~CommandDefinition() override;

    Info* info() const { return m_info; }
    /// The key of `info()`.
    const std::wstring& id() const { return m_info->key(); }

    /// Whether the command could run in this context: its own answer, which any CommandEventSite may veto. An
    /// exception counts as no.
    [[nodiscard]] bool isApplicable(CommandContext* context) const;
    [[nodiscard]] bool isVisible(CommandContext* context) const;
    /// Visible and applicable.
    [[nodiscard]] bool isAvailable(CommandContext* context) const;

    /// Makes the command and tells the CommandEventSites; null if the definition refuses. For CommandMgr:
    /// nobody deletes a command made here unless a manager runs it.
    [[nodiscard]] CommandBase* createCommand(CommandContext* context);

    /// Runs the command in the manager of the context's asset session; without one in the active session's,
    /// and with none active in the global one. Doesn't ask whether it is applicable.
    Vs::Status executeCommand(const CommandContext& context);
    /// The same as a deferred task after the current event; errors become alerts.
    void executeLater(CommandContext context);

    /// What toolbars and menus draw for this command; owned by the definition.
    InputControl* inputControl();
    /// Refreshes the control's look.
    void updateInputControl(CommandContext* context);

    /// The environment to switch to before the command runs; empty for any.
    virtual std::wstring preferredEnvironment();
    /// Whether the canvas context menu lists the command.
    bool addToContextMenu() { return onAddToContextMenu(); }

    /// The command changes no document. Default false.
    bool readonly() const { return m_readonly; }
    /// The command's use is worth a usage report. Default true.
    bool reportable() const { return m_reportable; }
    /// The command can be recorded and replayed. Default true.
    bool scriptable() const { return m_scriptable; }
    const std::vector<const Vs::UniqueString*>& commandGroups() const { return m_groups; }

    /// The identifier of the resting command, the one that is active when no other tool is: "SelectCommand".
    static const std::wstring& selectCommandId();

    /// Runs the command in the active context, deferred, if it is available.
    void runByHand(ECommandAccessPoint point);
    /// The click on the command's button.
    void onClicked() override { runByHand(ECommandAccessPoint::Toolbar); }

protected:
    /// The record is not owned and must outlive the definition. A null record, an empty key and a key that is
    /// taken are remembered; see CommandDefinitionMgr::validate.
    explicit CommandDefinition(Info* info);

    void readonly(bool value) { m_readonly = value; }
    void reportable(bool value) { m_reportable = value; }
    void scriptable(bool value) { m_scriptable = value; }
    /// Joining a group twice changes nothing.
    void joinCommandGroup(const Vs::UniqueString* group);

    /// Default true.
    virtual bool onIsApplicable(CommandContext* context) const;
    /// Default true.
    virtual bool onIsVisible(CommandContext* context) const;
    /// Makes the command with `(this, context)`; null refuses the run, quietly.
    virtual CommandBase* onCreateCommand(CommandContext* context) = 0;
    /// The default enables the control when the command is applicable and shows it when it is visible.
    virtual void onUpdateInputControl(CommandContext* context);
    /// The default is a ButtonControl whose click runs the command. A control that an override makes is owned
    /// by it.
    virtual InputControl* onInputControl();
    /// Default empty.
    virtual std::wstring onPreferredEnvironment();
    /// Default false.
    virtual bool onAddToContextMenu();

private:
    Info* m_info;
    std::vector<const Vs::UniqueString*> m_groups;
    std::unique_ptr<InputControl> m_button;
    bool m_readonly = false;
    bool m_reportable = true;
    bool m_scriptable = true;
};

} // namespace Vu
