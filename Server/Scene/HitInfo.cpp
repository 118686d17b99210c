#include "Server/Scene/HitInfo.h"

#include <cmath>

namespace Vs::Scene {

using Rendra::Graphics::GroupNode;

namespace {

bool take(const GkPoint3d& point, GkPoint3d& result)
{
    if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z))
        return false;
    result = point;
    return true;
}

} // namespace

bool ViewFragmentTransformer::modelToScreen(const GkPoint3d& model, GkPoint3d& result,
                                            const GkMatrix3d& localToWorld) const
{
    return take(m_projection.worldToScreen(localToWorld * model), result);
}

bool ViewFragmentTransformer::cameraToScreen(const GkPoint3d& camera, GkPoint3d& result) const
{
    return take(m_projection.cameraToScreen(camera), result);
}

bool ViewFragmentTransformer::screenToWorld(const GkPoint3d& screen, GkPoint3d& result) const
{
    return take(m_projection.screenToWorld(screen), result);
}

// Null without a camera.
StrongRef<RawHitInfo> SceneSelection::makeHit(GroupNode* viewNode, GroupNode* fragmentNode, double width,
                                              double height)
{
    const ViewFragmentNodeData* data = viewFragmentNodeData(fragmentNode);
    const Camera* camera = data ? data->camera() : nullptr;
    if (!camera)
        return nullptr;
    auto hit = makeStrong<RawHitInfo>();
    hit->m_viewNode = viewNode;
    hit->m_fragmentNode = fragmentNode;
    hit->m_transformer = makeStrong<ViewFragmentTransformer>(*camera, width, height);
    return hit;
}

StrongRef<SceneSelection> SceneSelection::of(const PickedPoint& picked, StrongRef<RawHitInfo> hit)
{
    hit->m_rayPoint = hit->m_hitPoint = picked.localPoint;
    hit->m_normal = picked.localNormal;
    hit->m_localToWorld = picked.localToWorld;
    StrongRef<SceneSelection> selection(new SceneSelection);
    selection->m_path = picked.path;
    selection->m_part = picked.part;
    selection->m_hit = std::move(hit);
    return selection;
}

StrongRef<SceneSelection> SceneSelection::find(GroupNode* viewNode, GroupNode* fragmentNode, double width,
                                               double height, double x, double y, bool background)
{
    StrongRef<RawHitInfo> hit = makeHit(viewNode, fragmentNode, width, height);
    if (!hit)
        return nullptr;
    const Projection& projection = hit->m_transformer->projection();
    if (const auto picked = pickAt(*fragmentNode, projection, x, projection.height() - y, {});
        !picked.empty())
        return of(picked.front(), std::move(hit));
    const ViewFragmentNodeData* data = viewFragmentNodeData(fragmentNode);
    const GkPoint3d place(x, projection.height() - y, data->camera()->distance());
    if (!background || !data->supportSelectBackground() ||
        !hit->m_transformer->screenToWorld(place, hit->m_rayPoint))
        return nullptr;
    StrongRef<SceneSelection> selection(new SceneSelection);
    selection->m_hit = std::move(hit);
    return selection;
}

std::vector<StrongRef<SceneSelection>> SceneSelection::findAll(GroupNode* viewNode, GroupNode* fragmentNode,
                                                               double width, double height, double x,
                                                               double y, const PickWish& wish)
{
    std::vector<StrongRef<SceneSelection>> found;
    const StrongRef<RawHitInfo> seen = makeHit(viewNode, fragmentNode, width, height);
    if (!seen)
        return found;
    const Projection& projection = seen->m_transformer->projection();
    for (const PickedPoint& picked : pickAt(*fragmentNode, projection, x, projection.height() - y, wish)) {
        auto hit = makeStrong<RawHitInfo>();
        hit->m_viewNode = seen->m_viewNode;
        hit->m_fragmentNode = seen->m_fragmentNode;
        hit->m_transformer = seen->m_transformer;
        found.push_back(of(picked, std::move(hit)));
    }
    return found;
}

StrongRef<SceneSelection> SceneSelection::at(NodePath path)
{
    if (path.empty())
        return nullptr;
    StrongRef<SceneSelection> selection(new SceneSelection);
    selection->m_path = std::move(path);
    return selection;
}

bool SceneSelection::isEqualTo(const Selection& other) const
{
    const auto* scene = cast<SceneSelection>(&other);
    if (!scene || m_path.empty() != scene->m_path.empty())
        return false;
    return m_path.empty() ? m_hit->viewFragmentNode() == scene->m_hit->viewFragmentNode()
                          : m_path.back() == scene->m_path.back();
}

} // namespace Vs::Scene
