#include "Server/Translate/Shares/Stubs.h"

#include <array>

namespace Vs::Translate::Shares {

namespace {

enum StandIn : uint32_t { Point, Up, Place, Plane, Vertex, Loop, Bound, Face, Shell, Hollow, Along, Line };

class References
{
public:
    explicit References(uint32_t first) : m_first(first) {}
    std::string operator()(StandIn one) const { return '#' + std::to_string(m_first + one); }

private:
    uint32_t m_first;
};

/// What follows the name in a stub of that entity.
std::string parameters(std::string_view entity, const References& to)
{
    if (entity == "SHELL_BASED_SURFACE_MODEL")
        return '(' + to(Shell) + ')';
    if (entity == "BREP_WITH_VOIDS")
        return to(Shell) + ",(" + to(Hollow) + ')';
    if (entity == "MANIFOLD_SOLID_BREP" || entity == "FACETED_BREP")
        return to(Shell);
    if (entity == "CLOSED_SHELL" || entity == "OPEN_SHELL")
        return '(' + to(Face) + ')';
    if (entity == "ADVANCED_FACE" || entity == "FACE_SURFACE")
        return '(' + to(Bound) + ")," + to(Plane) + ",.T.";
    if (entity == "EDGE_CURVE")
        return to(Vertex) + ',' + to(Vertex) + ',' + to(Line) + ",.T.";
    return to(Point);
}

} // namespace

std::string stubOf(const Stub& stub, uint32_t first)
{
    return '#' + std::to_string(stub.number) + '=' + std::string(stub.entity) + '(' + std::string(stub.name) +
           ',' + parameters(stub.entity, References(first)) + ");\n";
}

std::string standIns(uint32_t first)
{
    const References to(first);
    const std::array<std::string, 12> statements = {
        "CARTESIAN_POINT('',(0.,0.,0.))",
        "DIRECTION('',(0.,0.,1.))",
        "AXIS2_PLACEMENT_3D(''," + to(Point) + ',' + to(Up) + ",$)",
        "PLANE(''," + to(Place) + ')',
        "VERTEX_POINT(''," + to(Point) + ')',
        "VERTEX_LOOP(''," + to(Vertex) + ')',
        "FACE_OUTER_BOUND(''," + to(Loop) + ",.T.)",
        "ADVANCED_FACE('',(" + to(Bound) + ")," + to(Plane) + ",.T.)",
        "CLOSED_SHELL('',(" + to(Face) + "))",
        "ORIENTED_CLOSED_SHELL('',*," + to(Shell) + ",.F.)",
        "VECTOR(''," + to(Up) + ",1.)",
        "LINE(''," + to(Point) + ',' + to(Along) + ')'};
    std::string text;
    for (const std::string& statement : statements)
        text += '#' + std::to_string(first++) + '=' + statement + ";\n";
    return text;
}

std::string_view nameIn(std::string_view statement)
{
    const size_t begin = statement.find('\'');
    if (begin == statement.npos)
        return "''";
    size_t end = begin + 1;
    for (; end < statement.size(); ++end) {
        if (statement[end] != '\'')
            continue;
        if (statement.substr(end + 1, 1) != "'")
            break;
        ++end;
    }
    return statement.substr(begin, end + 1 - begin);
}

} // namespace Vs::Translate::Shares
