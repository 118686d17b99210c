#pragma once

#include <bitset>
#include <optional>
#include <string_view>
#include <vector>

namespace Vs::Translate::Salvage {

/// Kinds of instances as far as others ask for them: what may stand where a curve is wanted.
enum class Role : unsigned char {
    Point,
    Direction,
    Vector,
    Placement,
    Position,
    Axis,
    Curve,
    Surface,
    ParameterCurve,
    Parameters,
    Vertex,
    Edge,
    OrientedEdge,
    Loop,
    Bound,
    Face,
    Shell,
    Solid,
    ShellModel,
    Representation,
    Map,
    Transformation,
    Relationship,
    Context,
    Unit,
    Measure,
    Exponents,
    Property,
    Definition,
    Formation,
    Product,
    ProductContext,
    DefinitionContext,
    Application,
    Style,
    SideStyle,
    FillStyle,
    FillColour,
    Colour,
    Item,
    Other,
    Count
};
using Roles = std::bitset<static_cast<size_t>(Role::Count)>;

/// What a parameter has to be.
struct ValueRule
{
    enum class Kind : unsigned char {
        Any,  ///< Whatever it is, what it refers to has to be there.
        Text, ///< Or omitted.
        Word,
        Logical,
        Number,
        Positive,
        Share, ///< From 0 to 1.
        Count, ///< An integer above 0.
        Derived,
        Typed,     ///< A number, with its type or without.
        Reference, ///< To an instance of the role.
        List,      ///< Of `inner`, of which none may be missing; at least one.
        Some,      ///< The same, but it does with those that are there; at least one.
    };
    Kind kind = Kind::Any;
    bool isOptional = false;  ///< May be omitted.
    bool isDerivable = false; ///< May be left to be derived.
    Role role = Role::Item;
    const ValueRule* inner = nullptr;
};

/// What is known of an entity.
struct EntityRule
{
    Roles roles; ///< Of its instances.
    std::vector<ValueRule> values;
    bool hasValues = false; ///< Whether `values` tells its parameters; else each may be anything.
};

/// The rule of an entity; null for one of which nothing is known. As part of a complex instance an entity has
/// only the parameters that it adds to those of its supertypes, and so has another rule.
[[nodiscard]] const EntityRule* ruleOf(std::string_view entity, bool isPart);

} // namespace Vs::Translate::Salvage
