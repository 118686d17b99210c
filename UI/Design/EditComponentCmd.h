#pragma once

#include "UI/Base/View/MouseEvents.h"
#include "UI/Design/CommandRow.h"

namespace Vu::Design {

/// "EditComponentCommand": enters the component that the text argument "Component" names by its path, or the
/// selected one. New parts then go into it; the rest is a ghost that can't be picked, until
/// "ReturnToEnvironmentCommand" leaves it. A component inside the one being edited is entered on top of that;
/// for any other, those that don't contain it are left first. The document doesn't change.
class EditComponentCmdDef : public RowDefinition<EditComponentCmdDef>
{
public:
    static const CommandRow kRow;
    static const Vs::UniqueString* componentArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
    bool onAddToContextMenu() override;
};

/// Runs the command for what is double-clicked in a view while the user has no tool active. Of nested
/// components, the outermost one that isn't entered yet is meant, unless it is the entire model.
class EditByDoubleClick : private MouseEventSite
{
public:
    EditByDoubleClick();
    EditByDoubleClick(const EditByDoubleClick&) = delete;
    EditByDoubleClick& operator=(const EditByDoubleClick&) = delete;

private:
    void mouseDoubleClick(MouseEvent* event) override;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Design
