#include "Server/Geometry/GkPoint3d.h"

#include "Server/Geometry/GkMatrix3d.h"

constinit const GkPoint3d GkPoint3d::kOrigin{};

GkPoint3d& GkPoint3d::transformBy(const GkMatrix3d& matrix)
{
    return *this = matrix * *this;
}

GkPoint3d& GkPoint3d::rotateBy(double radians, const GkVector3d& axis, const GkPoint3d& centre)
{
    return transformBy(GkMatrix3d::rotation(radians, axis, centre));
}
