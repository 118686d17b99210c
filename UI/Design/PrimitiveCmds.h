#pragma once

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/SimpleCommand.h"

namespace Vs {
class Request;
}

namespace Vu::Design {

/// What the commands that add a primitive to the active design share. Lengths are in mm and given as real
/// arguments; all of them, or none for a primitive of an ordinary size. The text argument "Origin", as
/// "x,y,z", moves it.
class PrimitiveCmdDef : public Vs::Implements<PrimitiveCmdDef, CommandDefinition>
{
public:
    using Implements::Implements;

    static const Vs::UniqueString* originArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    /// Whoever adds a part by hand or by line wants to go on modelling.
    std::wstring onPreferredEnvironment() override;
};

/// "BoxCommand", with "Dx", "Dy", "Dz".
class BoxCmdDef : public Vs::Implements<BoxCmdDef, PrimitiveCmdDef>
{
public:
    BoxCmdDef();
    static Info* info();

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
};

/// "CylinderCommand", with "Radius", "Height".
class CylinderCmdDef : public Vs::Implements<CylinderCmdDef, PrimitiveCmdDef>
{
public:
    CylinderCmdDef();
    static Info* info();

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
};

/// "SphereCommand", with "Radius".
class SphereCmdDef : public Vs::Implements<SphereCmdDef, PrimitiveCmdDef>
{
public:
    SphereCmdDef();
    static Info* info();

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
};

} // namespace Vu::Design
