#include "UI/Commands/Selection/SmartBodies.h"

#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/Scene/SceneAssetAdapter.h"

#include <unordered_set>

namespace Vu::Commands {
namespace {

/// Walks through the components, what is in one before its own body.
class Walk
{
public:
    explicit Walk(Vs::Asset& asset) : m_scene(Vs::cast<Vs::Scene::SceneAssetAdapter>(asset.adapter())) {}

    void through(const Vs::Component& component)
    {
        for (const auto& inner : component.children)
            if (isVisible(*inner))
                through(*inner);
        // Where it occurs again it says the same.
        if (component.body && m_seen.insert(component.body.get()).second &&
            component.body->smart(nullptr, nullptr, nullptr, nullptr, nullptr))
            paths.push_back({component.id, Vs::ObjectPath::Leaf::Body, 0});
    }

    std::vector<Vs::ObjectPath> paths;

private:
    bool isVisible(const Vs::Component& component) const
    {
        const Rendra::Graphics::Node* node = m_scene ? m_scene->node(component.id) : nullptr;
        return node && node->visible();
    }

    const Vs::Scene::SceneAssetAdapter* m_scene;
    std::unordered_set<const Vs::Body*> m_seen;
};

} // namespace

std::vector<Vs::ObjectPath> smartBodies(Vs::Asset& asset)
{
    Walk walk(asset);
    walk.through(*asset.components());
    return std::move(walk.paths);
}

} // namespace Vu::Commands
