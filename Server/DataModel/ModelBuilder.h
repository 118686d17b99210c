#pragma once

#include "Server/Base/Require.h"
#include "Server/Base/Status.h"
#include "Server/Body/BodyMesh.h"
#include "Server/Geometry/GkMatrix3d.h"

#include <optional>
#include <string>

namespace Vs {

class Asset;
class Component;

/// Adds parts to an asset's tree. Each operation runs in a transaction of its own, or in the one that is
/// open; gives the new component, or null with a message if a size isn't a finite number from 1e-4 to 1e7 mm
/// or the placement isn't a rigid motion.
class ModelBuilder
{
public:
    struct Look
    {
        GkMatrix3d placement;
        std::wstring name; ///< Empty: the kind's name with a number behind it.
        std::optional<Colour> colour;
    };

    explicit ModelBuilder(Asset* asset) : m_asset(asset)
    {
        require(asset != nullptr, "parts are added to an asset");
    }

    /// A box from the placement's origin to (dx, dy, dz), in mm.
    const Component* box(double dx, double dy, double dz, const Look& look, Status& status);
    /// A cylinder about the placement's z axis, standing on its origin.
    const Component* cylinder(double radius, double height, const Look& look, Status& status);
    /// A sphere about the placement's origin.
    const Component* sphere(double radius, const Look& look, Status& status);
    /// A cone about the placement's z axis, standing on its origin; of its two radii one may be zero. Where
    /// they are equal it is a cylinder.
    const Component* cone(double radius, double topRadius, double height, const Look& look, Status& status);
    /// A ring about the placement's z axis, with its middle in the origin. The tube's radius is less than the
    /// ring's, which reaches to the middle of the tube.
    const Component* torus(double radius, double tubeRadius, const Look& look, Status& status);

    /// The range of all sizes, in mm.
    static constexpr double kSmallestSize = 1e-4;
    static constexpr double kLargestSize = 1e7;

private:
    Asset* m_asset;
};

} // namespace Vs
