#pragma once

#include "UI/Base/Command/InteractiveCommandBase.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Commands/CommandRow.h"

namespace Vu {
class SelectionCommandInput;
}

namespace Vu::Commands {

/// The resting command: active while the user has no other tool.
class SelectCmdDef : public Vs::Implements<SelectCmdDef, CommandDefinition>
{
public:
    static Info* info();
    SelectCmdDef();
    /// For definitions derived from it; the identity outlives the definition.
    explicit SelectCmdDef(Info* identity);

    /// Whether the command's mouse events are written to a transcript, from its next activation on. Default
    /// false.
    bool recordMouseEvent() const { return m_recordMouseEvent; }
    void recordMouseEvent(bool value) { m_recordMouseEvent = value; }

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;

private:
    bool m_recordMouseEvent = false;
};

/// Takes what is clicked as the session's selection, which outlives the command. Escape clears the selection,
/// and S highlights all smart bodies (Vs::Body::smart).
class SelectCmd : public Vs::Implements<SelectCmd, InteractiveCommandBase>, public MouseEventSite
{
public:
    SelectionCommandInput* selectionCommandInput() const { return m_selectionInput; }

protected:
    friend class SelectCmdDef;
    SelectCmd(SelectCmdDef* definition, CommandContext* context);
    ~SelectCmd() override;

    void onActivate() override;
    void onDeactivate() override;
    void onKeyPress(KeyEvent* event) override;
    void onKeyRelease(KeyEvent* event) override;

private:
    bool IsNeedToRecordMouseEvent() const;

    SelectionCommandInput* m_selectionInput; ///< Owned by the input set.
};

} // namespace Vu::Commands
