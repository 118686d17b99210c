#pragma once

#include "Server/DataModel/Edit/ModelEdit.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Design/CommandRow.h"
#include "UI/Design/Edit/PreviewedCmd.h"

namespace Vu::Design {

/// One row per editing command: everything that is data.
using EditRow = CommandRow;

/// Base of the editing commands' definitions.
class EditCmdDefBase : public Vs::Implements<EditCmdDefBase, CommandDefinition>
{
protected:
    explicit EditCmdDefBase(Info* info);

    bool onIsApplicable(CommandContext* context) const override;
    /// Someone who edits by hand or by line will go on modelling.
    std::wstring onPreferredEnvironment() override;
};

template <class Cmd>
class EditCmdDef : public Vs::Implements<EditCmdDef<Cmd>, EditCmdDefBase>
{
public:
    static Info* info()
    {
        static Info record = makeInfo(Cmd::kRow);
        return &record;
    }
    EditCmdDef() : Vs::Implements<EditCmdDef<Cmd>, EditCmdDefBase>(info()) {}

protected:
    CommandBase* onCreateCommand(CommandContext* context) override { return new Cmd(this, context); }
};

/// A command that changes the exact model.
class EditCmd : public Vs::Implements<EditCmd, PreviewedCmd>
{
public:
    using Implements::Implements;

protected:
    /// The change that the inputs ask for, as in onMakeRequest.
    virtual Vs::ModelEdit onMakeEdit(const Vs::Asset& asset) = 0;
    /// Whether the change adds a group whose members are all deleted together. Default false.
    virtual bool onMakesGroup() const { return false; }

    OwnedRequest onMakeRequest(Vs::Asset& asset) final;
};

} // namespace Vu::Design
