#pragma once

#include "Server/Translate/Salvage/IgesRecords.h"

#include <bitset>
#include <cstdint>
#include <vector>

namespace Vs::Translate::Salvage {

/// Kinds of entities, as far as others require them.
enum class IgesRole : unsigned char {
    Curve,
    Line,
    Surface,
    Point,
    Direction,
    CurveOnSurface,
    Boundary,
    Face, ///< By itself.
    Matrix,
    Colour,
    Levels,
    Vertices,
    Edges,
    Loop,
    ShellFace,
    Shell,
    Solid,
    Figure,
    Placement,
    Group,
    Property,
    Count
};
using IgesRoles = std::bitset<static_cast<size_t>(IgesRole::Count)>;

/// One reference of an entity to another.
struct IgesLink
{
    size_t place = 0; ///< Among the entity's values.
    uint32_t target = 0;
    IgesRoles roles;            ///< One of which the target must have.
    bool mayMiss = false;       ///< One of a list that need not be whole.
    bool isAlternative = false; ///< Another of the entity's links will do.
    bool isWhole = false;       ///< The target may lack no member.
    int index = 0;              ///< Of a member of the target's list; 0 for none.
};

/// A list that may lose members: how many there are, and how many values each has.
struct IgesList
{
    size_t count = 0; ///< The place of their number, which they follow.
    size_t each = 0;  ///< 0 for no list.
};

/// What the check of an entity by itself finds.
struct IgesFindings
{
    IgesRoles roles;
    std::vector<IgesLink> links;
    IgesList list;
    size_t size = 0; ///< How many values are its own; properties may follow.
    std::vector<uint32_t> properties;
    int members = 0;      ///< Of a list that others refer to by index.
    bool lostEnd = false; ///< The list has fewer members than it says.
    bool isSound = false;
};

/// Whether such entities are known to contribute to what is shown.
[[nodiscard]] bool isKnown(const IgesRecord& record);
/// Whether such an entity is what others call a face, by itself or in a shell.
[[nodiscard]] bool isFaceType(int type);

/// Checks an entity by itself: whether its parameters have the kinds and numbers that its type requires.
[[nodiscard]] IgesFindings checkEntity(const IgesRecord& record);

} // namespace Vs::Translate::Salvage
