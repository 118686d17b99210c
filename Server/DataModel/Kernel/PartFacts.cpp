#include "Server/DataModel/Kernel/PartFacts.h"

#include "Server/DataModel/Kernel/MeasureParts.h"
#include "Server/DataModel/Kernel/RoundForm.h"
#include "Server/DataModel/Kernel/ShapeForm.h"
#include "Server/DataModel/Kernel/SubShapes.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRep_Tool.hxx>
#include <Standard_Failure.hxx>
#include <TopoDS.hxx>

#include <limits>

namespace Vs::Kernel {

namespace {

using Form = PartFacts::Form;
using Leaf = ObjectPath::Leaf;

GkVector3d toVector(const gp_Dir& direction)
{
    return {direction.X(), direction.Y(), direction.Z()};
}

Form formOf(RoundForm::Kind kind)
{
    switch (kind) {
    case RoundForm::Kind::Cylinder:
        return Form::Cylinder;
    case RoundForm::Kind::Cone:
        return Form::Cone;
    case RoundForm::Kind::Sphere:
        return Form::Sphere;
    default:
        return Form::Torus;
    }
}

/// Whether the outside of the body is on the side of the axis, or of the centre.
bool isConcave(const TopoDS_Face& face, const RoundForm& round)
{
    if (round.kind == RoundForm::Kind::Torus || BRep_Tool::Surface(face).IsNull())
        return false;
    const BRepAdaptor_Surface surface(face);
    gp_Pnt point;
    gp_Vec u, v;
    surface.D1((surface.FirstUParameter() + surface.LastUParameter()) / 2,
               (surface.FirstVParameter() + surface.LastVParameter()) / 2, point, u, v);
    gp_Vec outwards(round.axis.Location(), point);
    if (round.kind != RoundForm::Kind::Sphere) {
        const gp_Vec along(round.axis.Direction());
        outwards -= along * outwards.Dot(along);
    }
    const double side = u.Crossed(v).Dot(outwards);
    return (face.Orientation() == TopAbs_REVERSED ? -side : side) < 0;
}

PartFacts factsOfFace(const TopoDS_Shape& face)
{
    PartFacts facts{.form = Form::Freeform};
    if (const std::optional<gp_Pln> plane = planeOf(face)) {
        facts.form = Form::Plane;
        facts.direction = toVector(plane->Axis().Direction());
        facts.place = toPoint(plane->Location());
    } else if (const std::optional<RoundForm> round = roundFormOf(TopoDS::Face(face))) {
        facts.form = formOf(round->kind);
        if (facts.form != Form::Sphere)
            facts.direction = toVector(round->axis.Direction());
        facts.place = toPoint(round->axis.Location());
        facts.radius = round->radius;
        facts.concave = isConcave(TopoDS::Face(face), *round);
    }
    return facts;
}

PartFacts factsOfEdge(const TopoDS_Shape& edge)
{
    PartFacts facts{.form = Form::Curve};
    if (!BRep_Tool::IsGeometric(TopoDS::Edge(edge)))
        return facts;
    if (const std::optional<gp_Lin> line = lineOf(edge)) {
        facts.form = Form::Line;
        facts.direction = toVector(line->Direction());
        facts.place = toPoint(line->Location());
    } else if (const auto circle = circleOf(BRepAdaptor_Curve(TopoDS::Edge(edge)))) {
        facts.form = Form::Circle;
        facts.direction = toVector(circle->Axis().Direction());
        facts.place = toPoint(circle->Location());
        facts.radius = circle->Radius();
    }
    return facts;
}

/// A part at which the kernel fails is one of no particular form.
template <class Find>
PartFacts factsOr(Form otherwise, Find&& find)
{
    try {
        return find();
    } catch (const Standard_Failure&) {
        return {.form = otherwise};
    }
}

} // namespace

BodyParts partsOf(const SubShapes& shapes)
{
    BodyParts parts;
    for (uint32_t i = 0; i < shapes.count(Leaf::Face); ++i) {
        parts.faces.push_back(
            factsOr(Form::Freeform, [&] { return factsOfFace(shapes.part(Leaf::Face, i)); }));
        parts.faces.back().bounds = shapes.edgesOf(i);
    }
    for (uint32_t i = 0; i < shapes.count(Leaf::Edge); ++i) {
        parts.edges.push_back(factsOr(Form::Curve, [&] { return factsOfEdge(shapes.part(Leaf::Edge, i)); }));
        parts.edges.back().bounds = shapes.verticesOf(i);
    }
    for (uint32_t i = 0; i < shapes.count(Leaf::Vertex); ++i)
        parts.vertices.push_back(
            {.form = Form::Vertex,
             .place = toPoint(BRep_Tool::Pnt(TopoDS::Vertex(shapes.part(Leaf::Vertex, i))))});
    return parts;
}

std::vector<PartExtent> extentsOf(const SubShapes& shapes, ObjectPath::Leaf leaf)
{
    std::vector<PartExtent> extents(shapes.count(leaf), {std::numeric_limits<double>::quiet_NaN(), {}});
    const EMeasureType type = leaf == Leaf::Face ? EMeasureType::Area : EMeasureType::Length;
    for (uint32_t i = 0; i < extents.size(); ++i) {
        try {
            if (const ShapeAnswer answer = measurePart(shapes, shapes.part(leaf, i), type);
                answer.why == NoAnswer::None)
                extents[i] = {answer.result.value, answer.result.point1};
        } catch (const Standard_Failure&) {
            // It stays without a size.
        }
    }
    return extents;
}

} // namespace Vs::Kernel
