#pragma once

#include "Server/Base/Object.h"
#include "Server/Body/BodyMesh.h"
#include "Server/Body/BodyProperties.h"
#include "Server/Geometry/GkMatrix3d.h"

#include <memory>
#include <optional>
#include <string>

namespace Vs {

/// One unique shape of an asset. The kernel's own shape stays behind ShapeAccess; what draws and lists bodies
/// needs only this.
class Body : public Implements<Body, SharedObject>
{
public:
    virtual const std::wstring& name() const = 0;
    virtual Colour colour() const = 0;
    /// The mesh, or null as long as it is still being made.
    virtual std::shared_ptr<const BodyMesh> mesh() const = 0;

    /// Those of the properties that belong to `what`, and the counts; see bodyProperties.
    virtual std::optional<BodyProperties> properties(BodyMeasure what, Status& status) const = 0;

    /// Whether the body is smart: a solid that is nothing but a box, a cylinder or a sphere, by its exact
    /// shape; surfaces that are written as splines don't count. If so, what isn't null is filled with its
    /// kind ("Box", "Cylinder", "Sphere"), its placement within the component (a box stands on its corner, a
    /// cylinder on the middle of its base, a sphere is around its middle) and its sizes in mm: dx, dy, dz;
    /// radius, height; radius.
    virtual bool smart(std::wstring* /*kind*/, GkMatrix3d* /*placement*/, double* /*size1*/,
                       double* /*size2*/, double* /*size3*/) const
    {
        return false;
    }
};

} // namespace Vs
