#pragma once

#include "Server/Base/StrongRef.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vs {
class Request;
}
namespace Vs::NameView {
class NamedView;
class NamedViews;
} // namespace Vs::NameView

namespace Vu::Commands {

/// The named views of the active asset; null if there is none, or it has none.
Vs::NameView::NamedViews* namedViewsOfAsset();
/// The named view that is selected in the active session; null unless it is the only thing selected.
Vs::StrongRef<Vs::NameView::NamedView> selectedNamedView();

/// What the definitions of named view commands share.
class NamedViewCmdDef : public Vs::Implements<NamedViewCmdDef, CommandDefinition>
{
public:
    using Implements::Implements;

    /// "NamedViewName": the view; the selected one if it isn't given.
    static const Vs::UniqueString* namedViewNameArgumentName();

protected:
    /// The active asset has named views.
    bool onIsApplicable(CommandContext* context) const override;
};

/// What the commands share: looking at named views, or keeping one, leaves the active command alone.
class NamedViewCmd : public Vs::Implements<NamedViewCmd, SimpleCommand>
{
public:
    ECommandType onCommandType() const override;

protected:
    NamedViewCmd(NamedViewCmdDef* definition, CommandContext* context) : Implements(definition, context) {}

    /// The argument, or else the selected view's name; empty if there is neither.
    std::wstring viewName() const;
    void runAndDestroy(Vs::Request* request, Vs::Status& status);
};

/// Keeps what the active view shows under a generated name.
class AddNamedViewCmdDef : public RowDefinition<AddNamedViewCmdDef, NamedViewCmdDef>
{
public:
    static const CommandRow kRow;
    /// The name that the next view gets; empty without named views.
    static std::wstring generateNamedViewName();

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
    /// On the folder of the named views.
    bool onAddToContextMenu() override;
};

class AddNamedViewCmd : public Vs::Implements<AddNamedViewCmd, NamedViewCmd>
{
protected:
    friend class AddNamedViewCmdDef;
    using Implements::Implements;
    void onExecute(Vs::Status& status) override;
};

/// Deletes a named view.
class RemoveNamedViewCmdDef : public RowDefinition<RemoveNamedViewCmdDef, NamedViewCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
    bool onAddToContextMenu() override;
};

class RemoveNamedViewCmd : public Vs::Implements<RemoveNamedViewCmd, NamedViewCmd>
{
protected:
    friend class RemoveNamedViewCmdDef;
    using Implements::Implements;
    void onExecute(Vs::Status& status) override;
};

/// Glides to the camera of a named view.
class RestoreCameraCmdDef : public RowDefinition<RestoreCameraCmdDef, NamedViewCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class RestoreCameraCmd : public Vs::Implements<RestoreCameraCmd, NamedViewCmd>
{
protected:
    friend class RestoreCameraCmdDef;
    using Implements::Implements;
    void onExecute(Vs::Status& status) override;
};

/// Keeps what the active view shows under a name that there is.
class UpdateNamedViewCameraCmdDef : public RowDefinition<UpdateNamedViewCameraCmdDef, NamedViewCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
    bool onAddToContextMenu() override;
};

class UpdateNamedViewCameraCmd : public Vs::Implements<UpdateNamedViewCameraCmd, NamedViewCmd>
{
protected:
    friend class UpdateNamedViewCameraCmdDef;
    using Implements::Implements;
    void onExecute(Vs::Status& status) override;
};

/// Gives a named view another name.
class UpdateNamedViewNameCmdDef : public RowDefinition<UpdateNamedViewNameCmdDef, NamedViewCmdDef>
{
public:
    static const CommandRow kRow;
    static const Vs::UniqueString* newNamedViewNameArgumentName();

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class UpdateNamedViewNameCmd : public Vs::Implements<UpdateNamedViewNameCmd, NamedViewCmd>
{
protected:
    friend class UpdateNamedViewNameCmdDef;
    using Implements::Implements;
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
