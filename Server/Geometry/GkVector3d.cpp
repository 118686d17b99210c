#include "Server/Geometry/GkVector3d.h"

#include "Server/Geometry/GkMatrix3d.h"

constinit const GkVector3d GkVector3d::kXAxis{1, 0, 0};
constinit const GkVector3d GkVector3d::kYAxis{0, 1, 0};
constinit const GkVector3d GkVector3d::kZAxis{0, 0, 1};

GkVector3d GkVector3d::normal() const
{
    const double size = length();
    return size > 0 ? *this / size : *this;
}

GkVector3d GkVector3d::perpVector() const
{
    // Crossing with the axis that this vector follows least is best conditioned. With the operands in this
    // order, looking down at a model with the result as up puts its back at the top, and from below its
    // front.
    const double ax = std::abs(x), ay = std::abs(y), az = std::abs(z);
    const GkVector3d& axis = ax <= ay && ax <= az ? kXAxis : ay <= az ? kYAxis : kZAxis;
    return axis.crossProduct(*this).normal();
}

bool GkVector3d::isParallelTo(const GkVector3d& v, const GkTol& tol) const
{
    return normal().crossProduct(v.normal()).length() <= tol.equalVector;
}

bool GkVector3d::isEqualTo(const GkVector3d& v, const GkTol& tol) const
{
    return (*this - v).length() <= tol.equalVector;
}

double GkVector3d::angleTo(const GkVector3d& v) const
{
    return std::atan2(crossProduct(v).length(), dotProduct(v));
}

GkVector3d& GkVector3d::rotateBy(double radians, const GkVector3d& axis)
{
    return transformBy(GkMatrix3d::rotation(radians, axis));
}

GkVector3d& GkVector3d::transformBy(const GkMatrix3d& matrix)
{
    return *this = matrix * *this;
}
