#include "Server/DataModel/Measure/ModelLines.h"

#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Model/ModelBody.h"
#include "Server/DataModel/Private/ProgressText.h"

namespace Vs {

namespace {

struct Visible
{
    std::vector<MeasuredShape> bodies;
    std::shared_ptr<ModelSource> source;
};

void collect(const Component& component, const GkMatrix3d& placement, Visible& visible)
{
    if (!component.visible)
        return;
    if (const auto* body = cast<ModelBody>(component.body.get())) {
        visible.bodies.push_back({body->entry(), ObjectPath::Leaf::Body, 0, placement});
        visible.source = body->source();
    }
    for (const auto& child : component.children)
        collect(*child, placement * child->placement, visible);
}

} // namespace

LineDrawing modelLines(const Asset& asset, const GkVector3d& direction, const GkVector3d& up, bool hidden)
{
    assertMainThread();
    Visible visible;
    const Component& root = asset.data().root();
    collect(root, root.placement, visible);
    if (visible.bodies.empty())
        throw std::runtime_error(Strings::narrow(ProgressText::nothingToDraw()));
    return visible.source->withKernel(
        [&](ModelKernel& kernel) { return kernel.lines(visible.bodies, direction, up, hidden); });
}

} // namespace Vs
