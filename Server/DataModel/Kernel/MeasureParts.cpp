#include "Server/DataModel/Kernel/MeasureParts.h"

#include "Server/DataModel/Kernel/Integrals.h"
#include "Server/DataModel/Kernel/Measure.h"
#include "Server/DataModel/Kernel/RoundForm.h"
#include "Server/DataModel/Kernel/ShapeForm.h"
#include "Server/DataModel/Kernel/ShortestDistance.h"
#include "Server/DataModel/Kernel/SubShapes.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRep_Tool.hxx>
#include <GCPnts_AbscissaPoint.hxx>
#include <Precision.hxx>
#include <TopoDS.hxx>

#include <cmath>

namespace Vs::Kernel {

namespace {

constexpr double kPrecision = 1e-6;

ShapeAnswer refuse(NoAnswer why, ShapeKind kind)
{
    return {why, kind, false, {}};
}

ShapeAnswer answer(double value, double smallest, ShapeKind kind)
{
    if (!std::isfinite(value) || value < smallest)
        return refuse(NoAnswer::Degenerate, kind);
    ShapeAnswer result{NoAnswer::None, kind, false, {}};
    result.result.value = value;
    return result;
}

double lengthOf(const TopoDS_Shape& edge)
{
    // Its own precision is that of the whole, but halved for the sum over a spline's pieces.
    return GCPnts_AbscissaPoint::Length(BRepAdaptor_Curve(TopoDS::Edge(edge)), kPrecision / 10);
}

// Of what isn't straight: a line also lies on circles, though on none that is told.
std::optional<gp_Circ> circleAlong(const TopoDS_Shape& edge)
{
    return kindOf(edge) == ShapeKind::Circle ? circleOf(BRepAdaptor_Curve(TopoDS::Edge(edge))) : std::nullopt;
}

std::optional<RoundForm> roundForm(const TopoDS_Shape& part)
{
    return part.ShapeType() == TopAbs_FACE && kindOf(part) != ShapeKind::Plane
               ? roundFormOf(TopoDS::Face(part))
               : std::nullopt;
}

std::optional<double> radiusOf(const TopoDS_Shape& part)
{
    if (part.ShapeType() == TopAbs_EDGE) {
        const std::optional<gp_Circ> circle = circleAlong(part);
        return circle ? std::optional(circle->Radius()) : std::nullopt;
    }
    const std::optional<RoundForm> round = roundForm(part);
    return round && round->radius > 0 ? std::optional(round->radius) : std::nullopt;
}

gp_Pnt middleOfFace(const TopoDS_Shape& face)
{
    const std::optional<RoundForm> round = roundForm(face);
    if (round && round->kind == RoundForm::Kind::Sphere)
        return round->axis.Location();
    if (BRep_Tool::Surface(TopoDS::Face(face)).IsNull()) {
        const GkPoint3d centre = measureShape(face, BodyMeasure::Area).areaCentre;
        return {centre.x, centre.y, centre.z};
    }
    return integratedArea(face).CentreOfMass();
}

gp_Pnt middleOf(const TopoDS_Shape& part)
{
    if (part.ShapeType() == TopAbs_VERTEX)
        return BRep_Tool::Pnt(TopoDS::Vertex(part));
    if (part.ShapeType() == TopAbs_FACE)
        return middleOfFace(part);
    if (const std::optional<gp_Circ> circle = circleAlong(part))
        return circle->Location();
    const BRepAdaptor_Curve curve(TopoDS::Edge(part));
    const GCPnts_AbscissaPoint half(kPrecision, curve, lengthOf(part) / 2, curve.FirstParameter());
    return curve.Value(half.IsDone() ? half.Parameter()
                                     : (curve.FirstParameter() + curve.LastParameter()) / 2);
}

ShapeAnswer measureLoop(const SubShapes& shapes, const TopoDS_Shape& face, ShapeKind kind)
{
    const std::vector<uint32_t> loop = shapes.loop(TopoDS::Face(face));
    if (loop.empty())
        return refuse(NoAnswer::WrongKind, kind);
    double sum = 0;
    for (const uint32_t edge : loop)
        sum += lengthOf(shapes.part(ObjectPath::Leaf::Edge, edge));
    return answer(sum, Precision::Confusion(), kind);
}

// As a body, which is all of its solids.
ShapeAnswer measureSolid(const TopoDS_Shape& solid, EMeasureType type)
{
    const bool area = type == EMeasureType::Area;
    if (!area && type != EMeasureType::Volume &&
        !(type >= EMeasureType::PositionX && type <= EMeasureType::PositionZ))
        return refuse(NoAnswer::WrongKind, ShapeKind::Body);
    const BodyProperties found = measureShape(solid, area ? BodyMeasure::Area : BodyMeasure::Volume);
    if (!area && !found.closed)
        return refuse(NoAnswer::Open, ShapeKind::Body);
    ShapeAnswer result = answer(area ? found.area : found.volume, 0, ShapeKind::Body);
    result.result.point1 = result.result.point2 = result.result.point3 =
        area ? found.areaCentre : found.volumeCentre;
    return result;
}

ShapeAnswer measureValue(const SubShapes& shapes, const TopoDS_Shape& part, EMeasureType type, ShapeKind kind)
{
    const bool face = part.ShapeType() == TopAbs_FACE;
    switch (type) {
    case EMeasureType::Length:
        return part.ShapeType() == TopAbs_EDGE ? answer(lengthOf(part), Precision::Confusion(), kind)
                                               : refuse(NoAnswer::WrongKind, kind);
    case EMeasureType::Radius:
        if (const auto radius = radiusOf(part))
            return answer(*radius, Precision::Confusion(), kind);
        return refuse(NoAnswer::WrongKind, kind);
    case EMeasureType::Area:
        return face ? answer(measureShape(part, BodyMeasure::Area).area, Precision::SquareConfusion(), kind)
                    : refuse(NoAnswer::WrongKind, kind);
    case EMeasureType::LoopLength:
        return face ? measureLoop(shapes, part, kind) : refuse(NoAnswer::WrongKind, kind);
    case EMeasureType::PositionX:
    case EMeasureType::PositionY:
    case EMeasureType::PositionZ:
        return {NoAnswer::None, kind, false, {}};
    default:
        return refuse(NoAnswer::WrongKind, kind);
    }
}

} // namespace

ShapeAnswer measurePart(const SubShapes& shapes, const TopoDS_Shape& part, EMeasureType type)
{
    if (part.ShapeType() == TopAbs_SOLID)
        return measureSolid(part, type);
    const ShapeKind kind = kindOf(part);
    if (const NoAnswer why = faultOfPart(part); why != NoAnswer::None)
        return refuse(why, kind);
    ShapeAnswer result = measureValue(shapes, part, type, kind);
    if (result.why == NoAnswer::None) {
        const GkPoint3d place = toPoint(middleOf(part));
        result.result.point1 = result.result.point2 = result.result.point3 = place;
    }
    return result;
}

ShapeAnswer measureDistance(const TopoDS_Shape& first, const TopoDS_Shape& second)
{
    for (const TopoDS_Shape* shape : {&first, &second})
        if (const NoAnswer why = fault(*shape); why != NoAnswer::None && why != NoAnswer::Triangles)
            return {why, kindOf(*shape), shape == &second, {}};
    const std::optional<ShortestDistance> shortest = shortestDistance(first, second);
    if (!shortest)
        return refuse(NoAnswer::Degenerate, kindOf(first));
    ShapeAnswer result{NoAnswer::None, kindOf(first), false, {}};
    result.result = {shortest->value, toPoint(shortest->first), toPoint(shortest->second),
                     toPoint(shortest->second)};
    return result;
}

} // namespace Vs::Kernel
