#include "Server/Scene/LogicalToSceneSelectionFilter.h"

#include "Server/DataModel/Asset.h"
#include "Server/Scene/SceneAssetAdapter.h"

namespace Vs::Scene {
namespace {

/// The nodes from the asset's to the component's (whose id begins with those of the components above); empty
/// if one is missing.
NodePath pathTo(const SceneAssetAdapter& scene, const std::string& component)
{
    NodePath path{StrongRef<Rendra::Graphics::Node>(scene.rootNode())};
    for (size_t end = 0; end != std::string::npos;) {
        end = component.find('/', end + 1);
        Rendra::Graphics::Node* node = scene.node(component.substr(0, end));
        if (!node)
            return {};
        path.emplace_back(node);
    }
    return path;
}

} // namespace

StrongRef<SceneSelection> LogicalToSceneSelectionFilter::filter(const Selection* selection, Asset& asset)
{
    const auto* logical = cast<LogicalSelection>(selection);
    if (!logical || logical->asset() != &asset)
        return nullptr;
    if (SceneSelection* picked = filter(logical))
        return StrongRef<SceneSelection>(picked);
    const auto* scene = cast<SceneAssetAdapter>(asset.adapter());
    return scene ? SceneSelection::at(pathTo(*scene, logical->componentId())) : nullptr;
}

bool NetTransform(const NodePath& path, GkMatrix3d& matrix)
{
    if (path.empty())
        return false;
    matrix = GkMatrix3d();
    for (size_t i = 0; i + 1 < path.size(); ++i)
        matrix = matrix * path[i]->transform();
    return true;
}

} // namespace Vs::Scene
