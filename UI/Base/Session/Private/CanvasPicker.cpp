#include "UI/Base/Session/Private/CanvasPicker.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/SelectionFilter.h"
#include "Server/DataModel/Selection/Solids.h"
#include "Server/Scene/AreaPicker.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Server/Scene/SceneNodes.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Program/CanvasBand.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Base/View/SceneEvaluator.h"

#include <algorithm>
#include <map>
#include <set>

namespace Vu {

using Leaf = Vs::ObjectPath::Leaf;
using Rendra::Graphics::GroupNode;
using Rendra::Graphics::Node;
using Rendra::Graphics::Part;

namespace {

/// Which kinds of objects are wanted.
class Wanted
{
public:
    explicit Wanted(const Vs::SelectionFilter* filter) : m_filter(filter) {}
    bool operator()(Leaf leaf) const
    {
        return m_filter ? m_filter->mayAccept(leaf) : leaf == Leaf::Component;
    }

private:
    const Vs::SelectionFilter* m_filter;
};

Leaf leafOf(Part part)
{
    return part == Part::Vertex ? Leaf::Vertex : part == Part::Edge ? Leaf::Edge : Leaf::Face;
}

/// Of the deepest node that stands for a component.
const std::string& componentOf(const std::vector<Vs::StrongRef<Node>>& path,
                               const Vs::Scene::SceneAssetAdapter& scene)
{
    static const std::string none;
    for (auto node = path.rbegin(); node != path.rend(); ++node)
        if (const std::string& id = scene.componentId(node->get()); !id.empty())
            return id;
    return none;
}

/// Whether only what is seen in the view may be picked there.
bool visibleOnly(GroupNode* fragment)
{
    return Vs::Scene::GraphicsOptionGroup::get()->selectClosestItemOnly() &&
           Vs::Scene::viewFragmentNodeData(fragment)->renderParams(0)->visualStyle() != Vs::Scene::kWireframe;
}

unsigned partsWanted(const Wanted& wanted)
{
    unsigned parts = 0;
    for (const Part part : {Part::Face, Part::Edge, Part::Vertex})
        parts |= wanted(leafOf(part)) ? 1u << unsigned(part) : 0;
    return parts;
}

using FacesOfComponents = std::map<std::string, std::set<uint32_t>>;

FacesOfComponents facesIn(const GroupNode& fragment, const Vs::Scene::Projection& projection,
                          const Vs::Scene::AreaWish& wish, const Vs::Scene::SceneAssetAdapter& scene)
{
    FacesOfComponents faces;
    for (const auto& picked : pickArea(fragment, projection, wish))
        if (const std::string& component = componentOf(picked.path, scene); !component.empty() && picked.part)
            faces[component].insert(picked.part->index);
    return faces;
}

/// The solids of parts that have several of them, by their faces: a solid lies in the rectangle if all of
/// its faces do, and is seen if one of them is.
std::vector<Vs::ObjectPath> solidsIn(const GroupNode& fragment, const Vs::Scene::Projection& projection,
                                     Vs::Scene::AreaWish wish, const AssetSession& session,
                                     const Vs::Scene::SceneAssetAdapter& scene)
{
    wish.bodies = false;
    wish.parts = 1u << unsigned(Part::Face);
    Vs::Scene::AreaWish whole = wish, seen = wish;
    whole.visibleOnly = whole.visibleOnly && whole.crossing;
    seen.crossing = true;
    FacesOfComponents visible = facesIn(fragment, projection, seen, scene);
    std::vector<Vs::ObjectPath> solids;
    for (const auto& [id, faces] : facesIn(fragment, projection, whole, scene)) {
        const Vs::Component* component = session.asset()->findComponent(id);
        const uint32_t count = component ? Vs::solidCount(*component) : 0;
        for (uint32_t solid = 0; count > 1 && solid < count; ++solid) {
            const std::vector<uint32_t> own = Vs::facesOfSolid(*component, solid);
            const auto isIn = [&](uint32_t face) { return faces.contains(face); };
            const auto isSeen = [&](uint32_t face) { return visible[id].contains(face); };
            if ((wish.crossing ? std::ranges::any_of(own, isIn) : std::ranges::all_of(own, isIn)) &&
                std::ranges::any_of(own, isSeen))
                solids.push_back({id, Leaf::Solid, solid});
        }
    }
    return solids;
}

} // namespace

bool shows(const GraphicsCanvas* canvas, const AssetSession& session)
{
    const Vs::Scene::ViewFragment* fragment =
        canvas && canvas->view() ? canvas->view()->modelFragment() : nullptr;
    return fragment && fragment->data()->sceneAssetAdapter() == session.asset()->adapter();
}

std::vector<Vs::StrongRef<Vs::Selection>> objectsUnder(const MouseEvent& event, const AssetSession& session,
                                                       const Vs::SelectionFilter* filter)
{
    std::vector<Vs::StrongRef<Vs::Selection>> objects;
    SceneEvaluator* evaluator = SceneEvaluator::get(event.position());
    const auto* scene = Vs::cast<Vs::Scene::SceneAssetAdapter>(session.asset()->adapter());
    if (!evaluator || !scene)
        return objects;
    const Wanted wanted(filter);
    const bool closestOnly = Vs::Scene::GraphicsOptionGroup::get()->selectClosestItemOnly();
    const Vs::Scene::PickWish wish{.vertices = wanted(Leaf::Vertex),
                                   .edges = wanted(Leaf::Edge),
                                   .visibleOnly = visibleOnly(evaluator->viewFragmentNode())};
    for (const auto& picked : evaluator->sceneSelections(wish)) {
        const std::string& component = componentOf(picked->scenePath(), *scene);
        if (component.empty())
            continue;
        const auto add = [&](Leaf leaf, uint32_t index) {
            if (wanted(leaf))
                objects.emplace_back(new Vs::LogicalSelection(
                    session.asset(), Vs::ObjectPath{component, leaf, index}, picked));
        };
        const auto& part = picked->part();
        if (part)
            add(leafOf(part->part), part->index);
        if (part && part->part != Part::Face)
            continue;
        const Vs::Component* holder =
            part && wanted(Leaf::Solid) ? session.asset()->findComponent(component) : nullptr;
        if (const auto solid = holder ? Vs::solidOfFace(*holder, part->index) : std::nullopt)
            add(Leaf::Solid, *solid);
        add(Leaf::Body, 0);
        add(Leaf::Component, 0);
        if (closestOnly)
            break;
    }
    return objects;
}

std::vector<Vs::StrongRef<Vs::Selection>> objectsIn(const GraphicsCanvas& canvas, const CanvasBand& band,
                                                    const AssetSession& session,
                                                    const Vs::SelectionFilter* filter)
{
    std::vector<Vs::StrongRef<Vs::Selection>> objects;
    const Vs::Scene::ViewFragment* fragment = canvas.view() ? canvas.view()->modelFragment() : nullptr;
    const auto* scene = Vs::cast<Vs::Scene::SceneAssetAdapter>(session.asset()->adapter());
    if (!fragment || !scene)
        return objects;
    const Wanted wanted(filter);
    const bool components = wanted(Leaf::Component), bodies = components || wanted(Leaf::Body);
    const double height = canvas.height();
    const Vs::Scene::AreaWish wish{.left = band.left(),
                                   .bottom = height - band.bottom(),
                                   .right = band.right(),
                                   .top = height - band.top(),
                                   .crossing = band.crossing(),
                                   .visibleOnly = visibleOnly(fragment->viewFragmentNode()),
                                   .bodies = bodies,
                                   .parts = bodies ? 0 : partsWanted(wanted)};
    const Vs::Scene::Projection projection(*fragment->camera(), canvas.width(), height);
    for (const auto& picked : pickArea(*fragment->viewFragmentNode(), projection, wish)) {
        const std::string& component = componentOf(picked.path, *scene);
        if (component.empty())
            continue;
        const Leaf leaf = picked.part ? leafOf(picked.part->part) : components ? Leaf::Component : Leaf::Body;
        objects.emplace_back(new Vs::LogicalSelection(
            session.asset(), Vs::ObjectPath{component, leaf, picked.part ? picked.part->index : 0}, nullptr));
    }
    // Whole components or bodies have their solids in them.
    if (!bodies && wanted(Leaf::Solid))
        for (const Vs::ObjectPath& solid :
             solidsIn(*fragment->viewFragmentNode(), projection, wish, session, *scene))
            objects.emplace_back(new Vs::LogicalSelection(session.asset(), solid, nullptr));
    return objects;
}

} // namespace Vu
