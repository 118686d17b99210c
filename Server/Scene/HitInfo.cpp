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
    return take(m_projection.worldToScreen(m_projection.view().inverse() * camera), result);
}

bool ViewFragmentTransformer::screenToWorld(const GkPoint3d& screen, GkPoint3d& result) const
{
    return take(m_projection.screenToWorld(screen), result);
}

StrongRef<SceneSelection> SceneSelection::find(GroupNode* viewNode, GroupNode* fragmentNode, double width,
                                               double height, double x, double y, bool background)
{
    const ViewFragmentNodeData* data = viewFragmentNodeData(fragmentNode);
    const Camera* camera = data ? data->camera() : nullptr;
    if (!camera)
        return nullptr;
    auto hit = makeStrong<RawHitInfo>();
    hit->m_viewNode = viewNode;
    hit->m_fragmentNode = fragmentNode;
    hit->m_transformer = makeStrong<ViewFragmentTransformer>(*camera, width, height);
    const Projection& projection = hit->m_transformer->projection();
    const double up = projection.height() - y;
    const double away = camera->distance();
    // A parallel view has no position that bodies would have to stand before.
    const double back = projection.perspective() ? 0 : away + fragmentNode->boundingBox().diagonal();
    const GkVector3d along = projection.rayDirection(x, up);
    const GkPoint3d start = projection.rayStart(x, up) - along * back;

    StrongRef<SceneSelection> selection(new SceneSelection);
    if (const auto picked = pick(*fragmentNode, start, along)) {
        selection->m_path = picked->path;
        hit->m_rayPoint = hit->m_hitPoint = picked->localPoint;
        hit->m_normal = picked->localNormal;
        hit->m_localToWorld = picked->localToWorld;
    } else if (!background || !data->supportSelectBackground() ||
               !hit->m_transformer->screenToWorld({x, up, away}, hit->m_rayPoint)) {
        return nullptr;
    }
    selection->m_hit = std::move(hit);
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
