#include "Server/Translate/StepNumbers.h"

#include <StepGeom_BSplineCurveWithKnots.hxx>
#include <StepGeom_BSplineSurfaceWithKnots.hxx>
#include <StepGeom_CartesianPoint.hxx>
#include <StepGeom_Circle.hxx>
#include <StepGeom_ConicalSurface.hxx>
#include <StepGeom_CylindricalSurface.hxx>
#include <StepGeom_Direction.hxx>
#include <StepGeom_Ellipse.hxx>
#include <StepGeom_GeometricRepresentationItem.hxx>
#include <StepGeom_SphericalSurface.hxx>
#include <StepGeom_ToroidalSurface.hxx>
#include <StepGeom_Vector.hxx>
#include <TColStd_HArray1OfReal.hxx>

#include <cmath>

namespace Vs::Translate {

namespace {

constexpr double kLargest = 1e9;

// Anything that isn't a number is none of these.
bool isSensible(double number)
{
    return std::abs(number) < kLargest;
}

bool isLength(double number)
{
    return number > 0 && isSensible(number);
}

bool isDirection(const Handle(StepGeom_Direction) & direction)
{
    double squares = 0;
    for (int i = 1; i <= direction->NbDirectionRatios(); ++i)
        squares += direction->DirectionRatiosValue(i) * direction->DirectionRatiosValue(i);
    return squares > 0 && isSensible(squares);
}

bool isPlace(const Handle(StepGeom_CartesianPoint) & point)
{
    for (int i = 1; i <= point->NbCoordinates(); ++i)
        if (!isSensible(point->CoordinatesValue(i)))
            return false;
    return true;
}

bool rise(const Handle(TColStd_HArray1OfReal) & knots)
{
    for (int i = knots.IsNull() ? 1 : knots->Lower(); !knots.IsNull() && i <= knots->Upper(); ++i)
        if (!isSensible(knots->Value(i)) || (i > knots->Lower() && knots->Value(i) <= knots->Value(i - 1)))
            return false;
    return true;
}

/// Whether the entity is of that kind, and fails the test.
template <class Entity, class Test>
bool fails(const Handle(Standard_Transient) & entity, Test passes)
{
    const Handle(Entity) one = Handle(Entity)::DownCast(entity);
    return !one.IsNull() && !passes(one);
}

} // namespace

bool hasAbsurdNumber(const Handle(Standard_Transient) & entity)
{
    // The most frequent ones first, and no further checks for them.
    if (entity->IsKind(STANDARD_TYPE(StepGeom_CartesianPoint)))
        return fails<StepGeom_CartesianPoint>(entity, isPlace);
    if (entity->IsKind(STANDARD_TYPE(StepGeom_Direction)))
        return fails<StepGeom_Direction>(entity, isDirection);
    if (!entity->IsKind(STANDARD_TYPE(StepGeom_GeometricRepresentationItem)))
        return false;
    return fails<StepGeom_Vector>(entity, [](const auto& one) { return isSensible(one->Magnitude()); }) ||
           fails<StepGeom_Circle>(entity, [](const auto& one) { return isLength(one->Radius()); }) ||
           fails<StepGeom_Ellipse>(
               entity,
               [](const auto& one) { return isLength(one->SemiAxis1()) && isLength(one->SemiAxis2()); }) ||
           fails<StepGeom_CylindricalSurface>(entity,
                                              [](const auto& one) { return isLength(one->Radius()); }) ||
           fails<StepGeom_SphericalSurface>(entity,
                                            [](const auto& one) { return isLength(one->Radius()); }) ||
           fails<StepGeom_ConicalSurface>(entity,
                                          [](const auto& one) { return isSensible(one->Radius()); }) ||
           fails<StepGeom_ToroidalSurface>(entity,
                                           [](const auto& one) {
                                               return isLength(one->MajorRadius()) &&
                                                      isLength(one->MinorRadius());
                                           }) ||
           fails<StepGeom_BSplineCurveWithKnots>(entity,
                                                 [](const auto& one) { return rise(one->Knots()); }) ||
           fails<StepGeom_BSplineSurfaceWithKnots>(
               entity, [](const auto& one) { return rise(one->UKnots()) && rise(one->VKnots()); });
}

} // namespace Vs::Translate
