#pragma once

#include "Server/Base/Status.h"
#include "Server/DataModel/ModelBuilder.h"

#include <span>

namespace Vu::Design {

/// One row per primitive: its command, its text line and how it is built.
struct PrimitiveRow
{
    struct Size
    {
        const char* name; ///< Of the argument.
        double ordinary;  ///< In mm.
    };
    using Build = const Vs::Component* (*)(Vs::ModelBuilder&, const double* sizes,
                                           const Vs::ModelBuilder::Look&, Vs::Status&);

    const wchar_t* key;
    const char* title;
    const char* tooltip;
    std::span<const Size> sizes;
    Build build;
};

extern const PrimitiveRow kBox;
extern const PrimitiveRow kCylinder;
extern const PrimitiveRow kSphere;

} // namespace Vu::Design
