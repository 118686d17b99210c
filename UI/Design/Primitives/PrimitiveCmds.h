#pragma once

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Design/Primitives/PrimitiveTable.h"

namespace Vu::Design {

/// Base of the commands that add a primitive to the active design. Started by hand, such a command asks for
/// everything in a panel. Any other start adds the part at once: lengths are in mm and given as real
/// arguments, named like the row's sizes; all of them, or none for a primitive of default size. The text
/// argument "Origin", as "x,y,z", moves it, and "Direction", likewise, is the direction of its z axis.
class PrimitiveCmdDef : public Vs::Implements<PrimitiveCmdDef, CommandDefinition>
{
public:
    static const Vs::UniqueString* originArgumentName();
    static const Vs::UniqueString* directionArgumentName();

protected:
    /// Both must outlive the definition.
    PrimitiveCmdDef(Info* info, const PrimitiveRow& row);

    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
    /// Someone who adds a part by hand or by line will go on modelling.
    std::wstring onPreferredEnvironment() override;

private:
    const PrimitiveRow& m_row;
};

/// The command of one row.
template <const PrimitiveRow& kRow>
class PrimitiveCmdDefOf : public Vs::Implements<PrimitiveCmdDefOf<kRow>, PrimitiveCmdDef>
{
public:
    PrimitiveCmdDefOf() : Vs::Implements<PrimitiveCmdDefOf<kRow>, PrimitiveCmdDef>(info(), kRow) {}
    static Info* info()
    {
        static Info record = makeInfo(kRow.look);
        return &record;
    }
};

using BoxCmdDef = PrimitiveCmdDefOf<kBox>;           ///< "BoxCommand", with "Dx", "Dy", "Dz".
using CylinderCmdDef = PrimitiveCmdDefOf<kCylinder>; ///< "CylinderCommand", with "Radius", "Height".
using SphereCmdDef = PrimitiveCmdDefOf<kSphere>;     ///< "SphereCommand", with "Radius".
using ConeCmdDef = PrimitiveCmdDefOf<kCone>;         ///< "ConeCommand", with "Radius", "TopRadius", "Height".
using TorusCmdDef = PrimitiveCmdDefOf<kTorus>;       ///< "TorusCommand", with "Radius", "TubeRadius".

} // namespace Vu::Design
