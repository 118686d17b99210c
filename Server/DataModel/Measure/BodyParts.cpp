#include "Server/DataModel/Measure/BodyParts.h"

#include "Server/DataModel/Model/ModelBody.h"

#include <stdexcept>

namespace Vs {

namespace {

constexpr const char* kNoShape = "the body has no exact shape.";

} // namespace

BodyParts bodyParts(Body& body)
{
    auto* model = cast<ModelBody>(&body);
    if (!model)
        throw std::runtime_error(kNoShape);
    return model->source()->withKernel([&](ModelKernel& kernel) {
        // What came from a file has no kernel shape yet.
        if (model->revision() == 0)
            model->revision(kernel.revision(model->entry()));
        BodyParts parts = kernel.parts(model->entry());
        parts.revision = model->revision();
        return parts;
    });
}

std::vector<PartExtent> extentsOfParts(const Body& body, ObjectPath::Leaf leaf)
{
    const auto* model = cast<ModelBody>(&body);
    if (!model)
        throw std::runtime_error(kNoShape);
    return model->extents(leaf);
}

} // namespace Vs
