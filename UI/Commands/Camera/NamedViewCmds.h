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
    using Implements::Implements;

    ECommandType onCommandType() const override;

protected:
    /// The argument, or else the selected view's name; empty if there is neither.
    std::wstring viewName() const;
    void runAndDestroy(Vs::Request* request, Vs::Status& status);
};

class AddNamedViewCmd;

/// Saves what the active view shows under a generated name.
class AddNamedViewCmdDef : public CommandRowDefinition<AddNamedViewCmdDef, AddNamedViewCmd, NamedViewCmdDef>
{
public:
    static const CommandRow kRow;
    /// The name that the next view gets; empty without named views.
    static std::wstring generateNamedViewName();

protected:
    /// On the folder of the named views.
    bool onAddToContextMenu() override;
};

class AddNamedViewCmd : public Vs::Implements<AddNamedViewCmd, NamedViewCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

class RemoveNamedViewCmd;

/// Deletes a named view.
class RemoveNamedViewCmdDef
    : public CommandRowDefinition<RemoveNamedViewCmdDef, RemoveNamedViewCmd, NamedViewCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onAddToContextMenu() override;
};

class RemoveNamedViewCmd : public Vs::Implements<RemoveNamedViewCmd, NamedViewCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

class RestoreCameraCmd;

/// Glides to the camera of a named view.
class RestoreCameraCmdDef
    : public CommandRowDefinition<RestoreCameraCmdDef, RestoreCameraCmd, NamedViewCmdDef>
{
public:
    static const CommandRow kRow;
};

class RestoreCameraCmd : public Vs::Implements<RestoreCameraCmd, NamedViewCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

class UpdateNamedViewCameraCmd;

/// Saves what the active view shows under an existing name.
class UpdateNamedViewCameraCmdDef
    : public CommandRowDefinition<UpdateNamedViewCameraCmdDef, UpdateNamedViewCameraCmd, NamedViewCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onAddToContextMenu() override;
};

class UpdateNamedViewCameraCmd : public Vs::Implements<UpdateNamedViewCameraCmd, NamedViewCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

class UpdateNamedViewNameCmd;

/// Gives a named view another name.
class UpdateNamedViewNameCmdDef
    : public CommandRowDefinition<UpdateNamedViewNameCmdDef, UpdateNamedViewNameCmd, NamedViewCmdDef>
{
public:
    static const CommandRow kRow;
    static const Vs::UniqueString* newNamedViewNameArgumentName();
};

class UpdateNamedViewNameCmd : public Vs::Implements<UpdateNamedViewNameCmd, NamedViewCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
