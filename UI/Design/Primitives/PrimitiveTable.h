#pragma once

#include "Server/Base/Status.h"
#include "Server/DataModel/ModelBuilder.h"
#include "UI/Design/CommandRow.h"

#include <span>
#include <string>

namespace Vu::Design {

/// One row per primitive: its command's name, its sizes and how it is built. Sizes are in mm and in the order
/// of `sizes`; positions are in the primitive's own coordinates, as in ModelBuilder.
struct PrimitiveRow
{
    struct Size
    {
        const char* name; ///< Of the argument, and of the panel's input.
        double ordinary;
        std::wstring (*title)();
        int axis; ///< The axis along which it is dragged: 0 for x, 1 for y, 2 for z.
        bool mayBeZero = false;

        [[nodiscard]] double smallest() const { return mayBeZero ? 0 : Vs::ModelBuilder::kSmallestSize; }
    };
    using Build = const Vs::Component* (*)(Vs::ModelBuilder&, const double* sizes,
                                           const Vs::ModelBuilder::Look&, Vs::Status&);

    CommandRow look;
    std::span<const Size> sizes;
    Build build;
    /// The point at which it stands on a face.
    GkVector3d (*foot)(const double* sizes);
    /// Where the grip of one of the sizes is.
    GkVector3d (*grip)(const double* sizes, size_t size);
    /// Why the sizes don't fit together, for the user; empty if they do.
    std::wstring (*whyInvalid)(const double* sizes);
};

extern const PrimitiveRow kBox;
extern const PrimitiveRow kCylinder;
extern const PrimitiveRow kSphere;
extern const PrimitiveRow kCone;
extern const PrimitiveRow kTorus;

} // namespace Vu::Design
