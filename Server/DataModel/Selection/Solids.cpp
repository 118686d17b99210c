#include "Server/DataModel/Selection/Solids.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Model/ModelBody.h"

#include <algorithm>

namespace Vs {
namespace {

const std::vector<uint32_t>& solidsOfFaces(const Component& component)
{
    static const std::vector<uint32_t> none;
    const auto* body = cast<ModelBody>(component.body.get());
    return body ? body->solidsOfFaces() : none;
}

} // namespace

uint32_t solidCount(const Component& component)
{
    uint32_t count = 0;
    for (const uint32_t solid : solidsOfFaces(component))
        if (solid != ModelKernel::kNoSolid)
            count = std::max(count, solid + 1);
    return count;
}

std::optional<uint32_t> solidOfFace(const Component& component, uint32_t face)
{
    const std::vector<uint32_t>& solids = solidsOfFaces(component);
    if (face >= solids.size() || solids[face] == ModelKernel::kNoSolid || solidCount(component) < 2)
        return std::nullopt;
    return solids[face];
}

std::vector<uint32_t> facesOfSolid(const Component& component, uint32_t solid)
{
    const std::vector<uint32_t>& solids = solidsOfFaces(component);
    std::vector<uint32_t> faces;
    for (uint32_t face = 0; face < solids.size(); ++face)
        if (solids[face] == solid && solid != ModelKernel::kNoSolid)
            faces.push_back(face);
    return faces;
}

} // namespace Vs
