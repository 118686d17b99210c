#include "Server/DataModel/Measure/Private/MeasureTexts.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Private/Texts.h"

namespace Vs::MeasureTexts {

using DataModel::localized, DataModel::localizedFormat;

namespace {

std::wstring nameOf(ShapeKind kind)
{
    switch (kind) {
    case ShapeKind::Vertex:
        return localized("MeasureVertex", "a vertex");
    case ShapeKind::Line:
        return localized("MeasureLine", "a straight edge");
    case ShapeKind::Circle:
        return localized("MeasureCircle", "a circle");
    case ShapeKind::Curve:
        return localized("MeasureCurve", "a curve");
    case ShapeKind::Plane:
        return localized("MeasurePlane", "a plane");
    case ShapeKind::Cylinder:
        return localized("MeasureCylinder", "a cylinder");
    case ShapeKind::Cone:
        return localized("MeasureCone", "a cone");
    case ShapeKind::Sphere:
        return localized("MeasureSphere", "a sphere");
    case ShapeKind::Face:
        return localized("MeasureFace", "a face of this form");
    case ShapeKind::Body:
        return localized("MeasureBody", "a body");
    case ShapeKind::Component:
        return localized("MeasureComponent", "a component");
    }
    return {};
}

std::wstring titleOf(ShapeKind kind)
{
    switch (kind) {
    case ShapeKind::Vertex:
        return localized("PartVertex", "Vertex");
    case ShapeKind::Line:
        return localized("PartLine", "Straight edge");
    case ShapeKind::Circle:
        return localized("PartCircle", "Circle");
    case ShapeKind::Curve:
        return localized("PartCurve", "Edge");
    case ShapeKind::Plane:
        return localized("PartPlane", "Plane");
    case ShapeKind::Cylinder:
        return localized("PartCylinder", "Cylinder");
    case ShapeKind::Cone:
        return localized("PartCone", "Cone");
    case ShapeKind::Sphere:
        return localized("PartSphere", "Sphere");
    default:
        return localized("PartFace", "Face");
    }
}

std::wstring nameOf(EMeasureType type)
{
    switch (type) {
    case EMeasureType::Length:
        return localized("MeasureLength", "length");
    case EMeasureType::Radius:
        return localized("MeasureRadius", "radius");
    case EMeasureType::Area:
        return localized("MeasureArea", "area");
    case EMeasureType::Volume:
        return localized("MeasureVolume", "volume");
    case EMeasureType::LoopLength:
        return localized("MeasureLoopLength", "loop length");
    case EMeasureType::Distance:
        return localized("MeasureDistance", "distance");
    case EMeasureType::Angle:
        return localized("MeasureAngle", "angle");
    case EMeasureType::PositionX:
    case EMeasureType::PositionY:
    case EMeasureType::PositionZ:
        return localized("MeasurePosition", "position");
    case EMeasureType::DeltaX:
    case EMeasureType::DeltaY:
    case EMeasureType::DeltaZ:
        return localized("MeasureDelta", "delta");
    }
    return {};
}

} // namespace

std::wstring reason(const std::wstring& name, NoAnswer why, ShapeKind kind, EMeasureType type)
{
    switch (why) {
    case NoAnswer::None:
        break;
    case NoAnswer::WrongKind:
        return localizedFormat("MeasureWrongKind", "\"%1%\": %2% has no %3%.", name, nameOf(kind),
                               nameOf(type));
    case NoAnswer::Degenerate:
        return localizedFormat("MeasureDegenerate", "\"%1%\" is degenerate and has no %2%.", name,
                               nameOf(type));
    case NoAnswer::Unbounded:
        return localizedFormat("MeasureUnbounded", "\"%1%\" extends to infinity and has no %2%.", name,
                               nameOf(type));
    case NoAnswer::Triangles:
        return localizedFormat("MeasureTriangles", "\"%1%\" consists of triangles only and has no exact %2%.",
                               name, nameOf(type));
    case NoAnswer::Missing:
        return localizedFormat("MeasureMissing", "\"%1%\" isn't in the exact shape of its body.", name);
    case NoAnswer::Parallel:
        return localizedFormat("MeasureParallel", "\"%1%\" is parallel to the other and has no %2%.", name,
                               nameOf(type));
    case NoAnswer::Open:
        return localizedFormat("MeasureOpen", "\"%1%\" is open and has no volume.", name);
    }
    return {};
}

std::wstring solidOf(size_t number, const std::wstring& name)
{
    return localizedFormat("SolidOf", "Solid %1% of %2%", number, name);
}

std::wstring partOf(ShapeKind kind, const std::wstring& name)
{
    return localizedFormat("PartOf", "%1% of %2%", titleOf(kind), name);
}

std::wstring kernelFailed(const std::wstring& name, const std::string& message)
{
    return localizedFormat("MeasureFailed", "\"%1%\" can't be measured: %2%", name, Strings::widen(message));
}

std::wstring noExactShape(const std::wstring& name)
{
    return localizedFormat("MeasureNoShape", "\"%1%\" has no shape to measure.", name);
}

std::wstring otherModel(const std::wstring& name)
{
    return localizedFormat("MeasureOtherModel",
                           "\"%1%\" belongs to another model; measure objects of one model.", name);
}

std::wstring samePlaces(const std::wstring& name)
{
    return localizedFormat("MeasureSamePlaces",
                           "\"%1%\" lies at the apex of the angle; an angle needs three places.", name);
}

std::wstring wrongCount(EMeasureType type)
{
    return localizedFormat("MeasureWrongCount", "The %1% can't be measured on that number of objects.",
                           nameOf(type));
}

std::wstring nothingSelected()
{
    return localized("MeasureNothing", "There is nothing to measure.");
}

std::wstring closedModel()
{
    return localized("MeasureClosedModel", "The objects to measure belong to a model that was closed.");
}

} // namespace Vs::MeasureTexts
