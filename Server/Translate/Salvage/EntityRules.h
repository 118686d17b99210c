#pragma once

#include <bitset>
#include <optional>
#include <string_view>
#include <vector>

namespace Vs::Translate::Salvage {

/// Kinds of instances, as far as others require them: what is acceptable where a curve is wanted.
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

/// What a parameter must be.
struct ValueRule
{
    enum class Kind : unsigned char {
        Any,  ///< Anything, but what it refers to must exist.
        Text, ///< Or omitted.
        Word,
        Logical,
        Number,
        Positive,
        Share, ///< From 0 to 1.
        Count, ///< A positive integer.
        Derived,
        Typed,     ///< A number, with or without its type.
        Reference, ///< A reference to an instance of the role.
        List,      ///< A list of `inner`, none of which may be missing; at least one.
        Some,      ///< The same, but the existing ones are enough; at least one.
    };
    Kind kind = Kind::Any;
    bool isOptional = false;  ///< May be omitted.
    bool isDerivable = false; ///< May be derived.
    Role role = Role::Item;
    const ValueRule* inner = nullptr;
};

/// What is known about an entity.
struct EntityRule
{
    Roles roles; ///< Of its instances.
    std::vector<ValueRule> values;
    bool hasValues = false; ///< Whether `values` lists its parameters; otherwise each may be anything.
};

/// The rule of an entity; null for an unknown one. As part of a complex instance an entity has only the
/// parameters that it adds to those of its supertypes, and so has another rule.
[[nodiscard]] const EntityRule* ruleOf(std::string_view entity, bool isPart);

} // namespace Vs::Translate::Salvage
