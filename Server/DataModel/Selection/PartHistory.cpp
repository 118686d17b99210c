#include "Server/DataModel/Selection/PartHistory.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Model/ModelBody.h"
#include "Server/DataModel/Model/ModelData.h"

#include <memory>
#include <stdexcept>

namespace Vs {

const std::vector<ReshapedBody>& reshapedBodies(const Asset& asset)
{
    return asset.data().reshaped();
}

bool showsPreview(const Asset& asset)
{
    const TransactionNode* open = asset.data().history().open();
    return open && open->isPreview();
}

std::optional<ObjectPath> successorOf(const ObjectPath& path, uint64_t revision, const Asset& asset)
{
    const Component* component = asset.findComponent(path.component);
    const auto* body = component ? cast<ModelBody>(component->body.get()) : nullptr;
    if (!path.isPartOfBody() || (body && body->revision() == revision))
        return component ? std::optional(path) : std::nullopt;
    if (!body)
        return std::nullopt;
    std::shared_ptr<const PartSuccessors> parts;
    try {
        parts = body->source()->withKernel(
            [&](ModelKernel& kernel) { return kernel.successors(revision, body->revision()); });
    } catch (const std::runtime_error&) {
        // What can't be tracked is given up.
    }
    const std::optional<uint32_t> index = parts ? parts->of(path.leaf, path.index) : std::nullopt;
    return index ? std::optional(ObjectPath{path.component, path.leaf, *index}) : std::nullopt;
}

} // namespace Vs
