#include "Server/DataModel/Kernel/MeasureAngle.h"

#include "Server/DataModel/Kernel/ShapeForm.h"

#include <BRep_Tool.hxx>
#include <Precision.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Vertex.hxx>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Vs::Kernel {

namespace {

/// An angle as a dimension draws it: two directions from one point.
struct Legs
{
    gp_Dir first, second;
    gp_Pnt apex;
};

/// A direction and where it is, of one of the two kinds that a shape can have.
struct Form
{
    std::optional<gp_Lin> line;
    std::optional<gp_Pln> plane;
    gp_Pnt middle;
};

/// Each leg runs to the side where its shape is.
void turnToShapes(Legs& legs, const Form& first, const Form& second)
{
    if (gp_Vec(legs.apex, first.middle).Dot(gp_Vec(legs.first)) < 0)
        legs.first.Reverse();
    if (gp_Vec(legs.apex, second.middle).Dot(gp_Vec(legs.second)) < 0)
        legs.second.Reverse();
}

// Two undirected lines enclose an acute angle. A right angle stays one.
void makeAcute(Legs& legs, const Form& first, const Form& second)
{
    turnToShapes(legs, first, second);
    if (legs.first.Dot(legs.second) < -Precision::Angular())
        legs.second.Reverse();
}

gp_Pnt along(const gp_Pnt& from, const gp_Dir& direction, double distance)
{
    return from.Translated(gp_Vec(direction) * distance);
}

/// The point of the first line that is nearest to the second; of parallel ones the first's own.
gp_Pnt nearest(const gp_Lin& first, const gp_Lin& second)
{
    const gp_Vec normal = gp_Vec(first.Direction()).Crossed(gp_Vec(second.Direction()));
    const double square = normal.SquareMagnitude();
    if (square < Precision::SquareConfusion())
        return first.Location();
    const gp_Vec between(first.Location(), second.Location());
    const double way = between.Crossed(gp_Vec(second.Direction())).Dot(normal) / square;
    return along(first.Location(), first.Direction(), way);
}

/// Where the line meets the plane; its own point if it never does.
gp_Pnt meet(const gp_Pnt& from, const gp_Dir& direction, const gp_Pln& plane)
{
    const gp_Dir& normal = plane.Axis().Direction();
    const double slope = normal.Dot(direction);
    if (std::abs(slope) < Precision::Angular())
        return from;
    return along(from, direction, gp_Vec(from, plane.Location()).Dot(gp_Vec(normal)) / slope);
}

Legs ofLines(const Form& first, const Form& second)
{
    Legs legs{first.line->Direction(), second.line->Direction(), nearest(*first.line, *second.line)};
    makeAcute(legs, first, second);
    return legs;
}

Legs ofPlanes(const Form& first, const Form& second)
{
    const gp_Dir n1 = first.plane->Axis().Direction(), n2 = second.plane->Axis().Direction();
    if (n1.IsParallel(n2, Precision::Angular())) {
        const gp_Dir any = first.plane->XAxis().Direction();
        return {any, any, first.middle};
    }
    const gp_Dir common = n1.Crossed(n2);
    Legs legs{common.Crossed(n1), common.Crossed(n2), {}};
    legs.apex = meet(first.middle, legs.first, *second.plane);
    makeAcute(legs, first, second);
    return legs;
}

Legs ofLineAndPlane(const Form& line, const Form& plane)
{
    const gp_Dir direction = line.line->Direction(), normal = plane.plane->Axis().Direction();
    const gp_Pnt apex = meet(line.line->Location(), direction, *plane.plane);
    const gp_Vec shadow = gp_Vec(direction) - gp_Vec(normal) * normal.Dot(direction);
    if (shadow.Magnitude() < Precision::Angular())
        return {direction, plane.plane->XAxis().Direction(), apex};
    return {direction, gp_Dir(shadow), apex};
}

TopoDS_Shape shared(const TopoDS_Shape& first, const TopoDS_Shape& second, TopAbs_ShapeEnum kind)
{
    TopTools_IndexedMapOfShape parts;
    TopExp::MapShapes(first, kind, parts);
    for (TopExp_Explorer each(second, kind); each.More(); each.Next())
        if (parts.Contains(each.Current()))
            return each.Current();
    return {};
}

/// Two straight edges as they leave the vertex that they share.
bool leaveVertex(Legs& legs, const TopoDS_Shape& first, const TopoDS_Shape& second, const Form& form1,
                 const Form& form2)
{
    const TopoDS_Shape vertex = shared(first, second, TopAbs_VERTEX);
    if (vertex.IsNull())
        return false;
    legs.apex = BRep_Tool::Pnt(TopoDS::Vertex(vertex));
    const gp_Vec one(legs.apex, form1.middle), two(legs.apex, form2.middle);
    if (one.Magnitude() < Precision::Confusion() || two.Magnitude() < Precision::Confusion())
        return false;
    legs.first = gp_Dir(one);
    legs.second = gp_Dir(two);
    return true;
}

/// Two flat faces within the body, from the edge that they share: the normals point outwards.
bool leaveEdge(Legs& legs, const TopoDS_Shape& first, const TopoDS_Shape& second, const Form& form1,
               const Form& form2)
{
    if (shared(first, second, TopAbs_EDGE).IsNull())
        return false;
    const double wanted =
        std::numbers::pi - form1.plane->Axis().Direction().Angle(form2.plane->Axis().Direction());
    turnToShapes(legs, form1, form2);
    const double angle = legs.first.Angle(legs.second);
    // A face may have its middle on the other side.
    if (std::abs(std::numbers::pi - angle - wanted) + Precision::Angular() < std::abs(angle - wanted))
        legs.second.Reverse();
    return true;
}

Form formOf(const TopoDS_Shape& shape, const GkPoint3d& middle)
{
    return {lineOf(shape), planeOf(shape), gp_Pnt(middle.x, middle.y, middle.z)};
}

} // namespace

ShapeAnswer measureAngle(const TopoDS_Shape& first, const TopoDS_Shape& second, const GkPoint3d& middle1,
                         const GkPoint3d& middle2)
{
    Form forms[2];
    for (const bool isSecond : {false, true}) {
        const TopoDS_Shape& shape = isSecond ? second : first;
        if (const NoAnswer why = faultOfPart(shape); why != NoAnswer::None)
            return {why, kindOf(shape), isSecond, {}};
        forms[isSecond] = formOf(shape, isSecond ? middle2 : middle1);
        if (!forms[isSecond].line && !forms[isSecond].plane)
            return {NoAnswer::WrongKind, kindOf(shape), isSecond, {}};
    }
    const auto& [one, two] = forms;
    Legs legs;
    bool meeting = false;
    if (one.line && two.line) {
        legs = ofLines(one, two);
        if (first.ShapeType() == TopAbs_EDGE && second.ShapeType() == TopAbs_EDGE)
            meeting = leaveVertex(legs, first, second, one, two);
    } else if (one.plane && two.plane) {
        legs = ofPlanes(one, two);
        if (first.ShapeType() == TopAbs_FACE && second.ShapeType() == TopAbs_FACE)
            meeting = leaveEdge(legs, first, second, one, two);
    } else if (one.line) {
        legs = ofLineAndPlane(one, two);
    } else {
        legs = ofLineAndPlane(two, one);
        std::swap(legs.first, legs.second);
    }
    if (!meeting && legs.first.IsParallel(legs.second, Precision::Angular()))
        return {NoAnswer::Parallel, kindOf(first), false, {}};
    const double reach = std::max({legs.apex.Distance(one.middle), legs.apex.Distance(two.middle), 1.0});
    ShapeAnswer result{NoAnswer::None, kindOf(first), false, {}};
    result.result = {legs.first.Angle(legs.second), toPoint(along(legs.apex, legs.first, reach)),
                     toPoint(legs.apex), toPoint(along(legs.apex, legs.second, reach))};
    return result;
}

} // namespace Vs::Kernel
