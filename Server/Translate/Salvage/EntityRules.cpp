#include "Server/Translate/Salvage/EntityRules.h"

#include <array>
#include <deque>
#include <string>
#include <unordered_map>

namespace Vs::Translate::Salvage {

namespace {

// clang-format off
constexpr std::array<std::string_view, static_cast<size_t>(Role::Count)> kRoleNames = {
    "point", "direction", "vector", "placement", "position", "axis", "curve", "surface", "pcurve",
    "parameters", "vertex", "edge", "oriented", "loop", "bound", "face", "shell", "solid", "shells",
    "representation", "map", "transformation", "relationship", "context", "unit", "measure", "exponents",
    "property", "definition", "formation", "product", "productcontext", "definitioncontext",
    "application", "style", "sidestyle", "fillstyle", "fillcolour", "colour", "item", "other"};
// clang-format on

struct Row
{
    std::string_view entity; ///< With a "+" in front as part of a complex instance.
    std::string_view roles;
    /// One word per parameter; "?" after one that may be omitted, "*" after one that may be derived, "[" and
    /// "]" around a list that must be whole, "{" and "}" around one in which some may be missing.
    std::string_view values;
};

// The parameters as ISO 10303-42, -41, -43, -44 and -46 have them, as far as the kernel reads them. An item
// is whatever may stand in a representation.
// clang-format off
constexpr Row kRows[] = {
    {"CARTESIAN_POINT", "point item", "text [number]"},
    {"DIRECTION", "direction item", "text [number]"},
    {"VECTOR", "vector item", "text direction number"},
    {"AXIS1_PLACEMENT", "axis item", "text point direction?"},
    {"AXIS2_PLACEMENT_2D", "position item", "text point direction?"},
    {"AXIS2_PLACEMENT_3D", "placement position item transformation", "text point direction? direction?"},

    {"PLANE", "surface item", "text placement"},
    {"CYLINDRICAL_SURFACE", "surface item", "text placement positive"},
    {"CONICAL_SURFACE", "surface item", "text placement number positive"},
    {"SPHERICAL_SURFACE", "surface item", "text placement positive"},
    {"TOROIDAL_SURFACE", "surface item", "text placement positive positive"},
    {"DEGENERATE_TOROIDAL_SURFACE", "surface item", "text placement positive positive logical"},
    {"SURFACE_OF_LINEAR_EXTRUSION", "surface item", "text curve vector"},
    {"SURFACE_OF_REVOLUTION", "surface item", "text curve axis"},
    {"OFFSET_SURFACE", "surface item", "text surface number logical"},
    {"RECTANGULAR_TRIMMED_SURFACE", "surface item", "text surface number number number number logical logical"},
    {"B_SPLINE_SURFACE_WITH_KNOTS", "surface item", "text count count [[point]] word logical logical logical [count] [count] [number] [number] word"},
    {"BEZIER_SURFACE", "surface item", "text count count [[point]] word logical logical logical"},
    {"+B_SPLINE_SURFACE", "surface item", "count count [[point]] word logical logical logical"},
    {"+B_SPLINE_SURFACE_WITH_KNOTS", "surface item", "[count] [count] [number] [number] word"},
    {"+RATIONAL_B_SPLINE_SURFACE", "surface item", "[[positive]]"},
    {"QUASI_UNIFORM_SURFACE", "surface item", "text count count [[point]] word logical logical logical"},
    {"UNIFORM_SURFACE", "surface item", "text count count [[point]] word logical logical logical"},
    {"SURFACE_REPLICA", "surface item", "..."},
    {"CURVE_BOUNDED_SURFACE", "surface item", "..."},
    {"RECTANGULAR_COMPOSITE_SURFACE", "surface item", "..."},
    {"+SURFACE", "surface item", ""},

    {"LINE", "curve item", "text point vector"},
    {"CIRCLE", "curve item", "text position positive"},
    {"ELLIPSE", "curve item", "text position positive positive"},
    {"HYPERBOLA", "curve item", "text position positive positive"},
    {"PARABOLA", "curve item", "text position positive"},
    {"POLYLINE", "curve item", "text [point]"},
    {"TRIMMED_CURVE", "curve item", "text curve any any logical word"},
    {"COMPOSITE_CURVE", "curve item", "text [any] logical"},
    {"OFFSET_CURVE_3D", "curve item", "text curve number logical direction"},
    {"B_SPLINE_CURVE_WITH_KNOTS", "curve item", "text count [point] word logical logical [count] [number] word"},
    {"BEZIER_CURVE", "curve item", "text count [point] word logical logical"},
    {"+B_SPLINE_CURVE", "curve item", "count [point] word logical logical"},
    {"+B_SPLINE_CURVE_WITH_KNOTS", "curve item", "[count] [number] word"},
    {"+RATIONAL_B_SPLINE_CURVE", "curve item", "[positive]"},
    {"QUASI_UNIFORM_CURVE", "curve item", "text count [point] word logical logical"},
    {"UNIFORM_CURVE", "curve item", "text count [point] word logical logical"},
    {"CURVE_REPLICA", "curve item", "..."},
    {"COMPOSITE_CURVE_ON_SURFACE", "curve item", "..."},
    {"BOUNDARY_CURVE", "curve item", "..."},
    {"OUTER_BOUNDARY_CURVE", "curve item", "..."},
    {"DEGENERATE_PCURVE", "pcurve item", "..."},
    {"+CURVE", "curve item", ""},
    {"SURFACE_CURVE", "curve item", "text curve [pcurve] word"},
    {"SEAM_CURVE", "curve item", "text curve [pcurve] word"},
    {"INTERSECTION_CURVE", "curve item", "text curve [pcurve] word"},
    {"PCURVE", "pcurve curve item", "text surface parameters"},
    {"DEFINITIONAL_REPRESENTATION", "parameters", "text [curve] context"},

    {"VERTEX_POINT", "vertex item", "text point"},
    {"EDGE_CURVE", "edge item", "text vertex vertex curve logical"},
    {"ORIENTED_EDGE", "oriented edge item", "text derived derived edge logical"},
    {"EDGE_LOOP", "loop item", "text [oriented]"},
    {"VERTEX_LOOP", "loop item", "text vertex"},
    {"POLY_LOOP", "loop item", "text [point]"},
    {"FACE_BOUND", "bound item", "text loop logical"},
    {"FACE_OUTER_BOUND", "bound item", "text loop logical"},
    {"ADVANCED_FACE", "face item", "text [bound] surface logical"},
    {"FACE_SURFACE", "face item", "text [bound] surface logical"},
    {"OPEN_SHELL", "shell item", "text {face}"},
    {"CLOSED_SHELL", "shell item", "text {face}"},
    {"CONNECTED_FACE_SET", "shell item", "text {face}"},
    {"ORIENTED_CLOSED_SHELL", "shell item", "text derived shell logical"},
    {"ORIENTED_OPEN_SHELL", "shell item", "text derived shell logical"},
    {"MANIFOLD_SOLID_BREP", "solid item", "text shell"},
    {"FACETED_BREP", "solid item", "text shell"},
    {"BREP_WITH_VOIDS", "solid item", "text shell [shell]"},
    {"SHELL_BASED_SURFACE_MODEL", "shells item", "text {shell}"},
    {"FACE_BASED_SURFACE_MODEL", "shells item", "text {shell}"},
    {"GEOMETRIC_SET", "item", "text {item}"},
    {"GEOMETRIC_CURVE_SET", "item", "text {item}"},

    {"+REPRESENTATION", "representation", "text {item} context"},
    {"REPRESENTATION", "representation", "text {item} context"},
    {"SHAPE_REPRESENTATION", "representation", "text {item} context"},
    {"ADVANCED_BREP_SHAPE_REPRESENTATION", "representation", "text {item} context"},
    {"FACETED_BREP_SHAPE_REPRESENTATION", "representation", "text {item} context"},
    {"MANIFOLD_SURFACE_SHAPE_REPRESENTATION", "representation", "text {item} context"},
    {"GEOMETRICALLY_BOUNDED_SURFACE_SHAPE_REPRESENTATION", "representation", "text {item} context"},
    {"GEOMETRICALLY_BOUNDED_WIREFRAME_SHAPE_REPRESENTATION", "representation", "text {item} context"},
    {"MECHANICAL_DESIGN_GEOMETRIC_PRESENTATION_REPRESENTATION", "representation", "text {item} context"},
    {"TESSELLATED_SHAPE_REPRESENTATION", "representation", "text {item} context"},
    {"CONSTRUCTIVE_GEOMETRY_REPRESENTATION", "representation", "text {item} context"},
    {"EDGE_BASED_WIREFRAME_SHAPE_REPRESENTATION", "representation", "text {item} context"},
    {"SHELL_BASED_WIREFRAME_SHAPE_REPRESENTATION", "representation", "text {item} context"},
    {"SHAPE_REPRESENTATION_WITH_PARAMETERS", "representation", "text {any} context"},
    {"DRAUGHTING_MODEL", "representation", "text {item} context"},
    {"MAPPED_ITEM", "item", "text map item"},
    {"REPRESENTATION_MAP", "map", "item representation"},
    {"ITEM_DEFINED_TRANSFORMATION", "transformation", "text text placement placement"},
    {"SHAPE_REPRESENTATION_RELATIONSHIP", "relationship", "text text representation representation"},
    {"REPRESENTATION_RELATIONSHIP", "relationship", "text text representation representation"},
    {"+REPRESENTATION_RELATIONSHIP", "relationship", "text text representation representation"},
    {"+REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION", "relationship", "transformation"},
    {"+SHAPE_REPRESENTATION_RELATIONSHIP", "relationship", ""},
    {"CONTEXT_DEPENDENT_SHAPE_REPRESENTATION", "other", "relationship property"},
    {"SHAPE_DEFINITION_REPRESENTATION", "other", "property representation"},

    {"+GEOMETRIC_REPRESENTATION_CONTEXT", "context", "count"},
    {"+PARAMETRIC_REPRESENTATION_CONTEXT", "context", ""},
    {"+GLOBAL_UNCERTAINTY_ASSIGNED_CONTEXT", "context", "{measure}"},
    {"+GLOBAL_UNIT_ASSIGNED_CONTEXT", "context", "[unit]"},
    {"+REPRESENTATION_CONTEXT", "context", "text text"},
    {"GEOMETRIC_REPRESENTATION_CONTEXT", "context", "text text count"},
    {"PARAMETRIC_REPRESENTATION_CONTEXT", "context", "text text"},
    {"REPRESENTATION_CONTEXT", "context", "text text"},
    {"UNCERTAINTY_MEASURE_WITH_UNIT", "measure", "typed unit text text"},
    {"LENGTH_MEASURE_WITH_UNIT", "measure", "typed unit"},
    {"PLANE_ANGLE_MEASURE_WITH_UNIT", "measure", "typed unit"},
    {"SOLID_ANGLE_MEASURE_WITH_UNIT", "measure", "typed unit"},
    {"MEASURE_WITH_UNIT", "measure", "typed unit"},
    {"+MEASURE_WITH_UNIT", "measure", "typed unit"},
    {"+CONVERSION_BASED_UNIT", "unit", "text measure"},
    {"+NAMED_UNIT", "unit", "exponents*"},
    {"NAMED_UNIT", "unit", "exponents*"},
    {"CONTEXT_DEPENDENT_UNIT", "unit", "..."},
    {"DERIVED_UNIT", "unit", "[any]"},
    {"+SI_UNIT", "unit", "word? word"},
    {"DIMENSIONAL_EXPONENTS", "exponents", "number number number number number number number"},

    {"PRODUCT", "product", "text text text {productcontext}"},
    {"PRODUCT_DEFINITION_FORMATION", "formation", "text text product"},
    {"PRODUCT_DEFINITION_FORMATION_WITH_SPECIFIED_SOURCE", "formation", "text text product word"},
    {"PRODUCT_DEFINITION", "definition", "text text formation definitioncontext"},
    {"PRODUCT_DEFINITION_WITH_ASSOCIATED_DOCUMENTS", "definition", "text text formation definitioncontext {any}"},
    {"NEXT_ASSEMBLY_USAGE_OCCURRENCE", "definition", "text text text definition definition text"},
    {"PROPERTY_DEFINITION", "property", "text text any"},
    {"PRODUCT_DEFINITION_SHAPE", "property", "text text any"},
    {"SHAPE_ASPECT", "definition", "text text property logical"},
    {"PRODUCT_CONTEXT", "productcontext", "text application text"},
    {"MECHANICAL_CONTEXT", "productcontext", "text application text"},
    {"PRODUCT_DEFINITION_CONTEXT", "definitioncontext", "text application text"},
    {"DESIGN_CONTEXT", "definitioncontext", "text application text"},
    {"APPLICATION_CONTEXT", "application", "text"},
    {"PRODUCT_RELATED_PRODUCT_CATEGORY", "other", "text text {product}"},

    {"STYLED_ITEM", "item", "text {style} item"},
    {"OVER_RIDING_STYLED_ITEM", "item", "text {style} item item"},
    {"PRESENTATION_STYLE_ASSIGNMENT", "style", "{any}"},
    {"PRESENTATION_STYLE_BY_CONTEXT", "style", "{any} any"},
    {"SURFACE_STYLE_USAGE", "other", "word sidestyle"},
    {"SURFACE_SIDE_STYLE", "sidestyle", "text {any}"},
    {"SURFACE_STYLE_FILL_AREA", "other", "fillstyle"},
    {"FILL_AREA_STYLE", "fillstyle", "text {fillcolour}"},
    {"FILL_AREA_STYLE_COLOUR", "fillcolour", "text colour"},
    {"COLOUR_RGB", "colour", "text share share share"},
    {"DRAUGHTING_PRE_DEFINED_COLOUR", "colour", "text"},
    {"CURVE_STYLE", "other", "text any any colour"},
    {"PRESENTATION_LAYER_ASSIGNMENT", "other", "text text {any}"},
};
// clang-format on

Role roleNamed(std::string_view name)
{
    for (size_t i = 0; i < kRoleNames.size(); ++i)
        if (kRoleNames[i] == name)
            return Role(i);
    return Role::Count;
}

/// The next word of a row; empty at its end.
std::string_view nextWord(std::string_view& text)
{
    const size_t begin = text.find_first_not_of(' ');
    text.remove_prefix(std::min(begin, text.size()));
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(word.size());
    return word;
}

class Rules
{
public:
    Rules()
    {
        for (const Row& row : kRows)
            m_rules.emplace(row.entity, make(row));
    }

    const EntityRule* find(std::string_view entity, bool isPart) const
    {
        const auto found = m_rules.find(isPart ? '+' + std::string(entity) : std::string(entity));
        return found == m_rules.end() ? nullptr : &found->second;
    }

private:
    EntityRule make(const Row& row)
    {
        EntityRule rule{.hasValues = row.values != "..."};
        for (std::string_view text = row.roles, word = nextWord(text); !word.empty(); word = nextWord(text))
            rule.roles.set(static_cast<size_t>(roleNamed(word)));
        for (std::string_view text = rule.hasValues ? row.values : "", word = nextWord(text); !word.empty();
             word = nextWord(text))
            rule.values.push_back(value(word));
        return rule;
    }

    ValueRule value(std::string_view word)
    {
        using Kind = ValueRule::Kind;
        constexpr std::pair<std::string_view, Kind> kKinds[] = {
            {"any", Kind::Any},         {"text", Kind::Text},     {"word", Kind::Word},
            {"logical", Kind::Logical}, {"number", Kind::Number}, {"positive", Kind::Positive},
            {"share", Kind::Share},     {"count", Kind::Count},   {"derived", Kind::Derived},
            {"typed", Kind::Typed}};
        ValueRule rule;
        rule.isOptional = word.ends_with('?');
        rule.isDerivable = word.ends_with('*');
        word.remove_suffix(rule.isOptional || rule.isDerivable);
        if (word.starts_with('[') || word.starts_with('{')) {
            rule.kind = word[0] == '[' ? Kind::List : Kind::Some;
            rule.inner = &m_inner.emplace_back(value(word.substr(1, word.size() - 2)));
            return rule;
        }
        for (const auto& [name, kind] : kKinds) {
            if (name == word) {
                rule.kind = kind;
                return rule;
            }
        }
        rule.kind = Kind::Reference;
        rule.role = roleNamed(word);
        return rule;
    }

    std::deque<ValueRule> m_inner;
    std::unordered_map<std::string, EntityRule> m_rules;
};

} // namespace

const EntityRule* ruleOf(std::string_view entity, bool isPart)
{
    static const Rules rules;
    return rules.find(entity, isPart);
}

} // namespace Vs::Translate::Salvage
