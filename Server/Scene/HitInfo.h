#pragma once

#include "Server/DataModel/Selection/Selection.h"
#include "Server/Scene/Picker.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/SceneNodes.h"

namespace Vs::Scene {

/// Between world, camera and screen coordinates, for a fragment's camera as it was when the transformer was
/// made: it doesn't follow the camera. Screen coordinates are those of Projection. Each operation returns
/// false, with `result` unchanged, if the result would not be a finite point.
class ViewFragmentTransformer : public Implements<ViewFragmentTransformer, SharedObject>
{
public:
    /// The size of the canvas in logical pixels.
    ViewFragmentTransformer(const Camera& camera, double width, double height)
        : m_projection(camera, width, height)
    {
    }

    bool modelToScreen(const GkPoint3d& model, GkPoint3d& result, const GkMatrix3d& localToWorld = {}) const;
    [[nodiscard]] bool cameraToScreen(const GkPoint3d& camera, GkPoint3d& result) const;
    bool screenToWorld(const GkPoint3d& screen, GkPoint3d& result) const;
    const Projection& projection() const { return m_projection; }

private:
    Projection m_projection;
};

/// What is at a place of a canvas. On a body: the point of its surface. Off all bodies: the point in the
/// plane of the camera's target, which is all that the background has.
class RawHitInfo : public Implements<RawHitInfo, SharedObject>
{
public:
    /// The node of the view, whose data have the view as their source.
    Rendra::Graphics::GroupNode* viewNode() const { return m_viewNode.get(); }
    Rendra::Graphics::GroupNode* viewFragmentNode() const { return m_fragmentNode.get(); }
    /// On a body the same as the hit point; on the background, which has no hit point (it stays the origin),
    /// where the ray intersects the plane of the target.
    const GkPoint3d& localRayPoint() const { return m_rayPoint; }
    const GkPoint3d& localHitPoint() const { return m_hitPoint; }
    /// Length one, towards the viewer; zero on the background, on an edge and at a vertex.
    const GkVector3d& localNormal() const { return m_normal; }
    const GkMatrix3d& localToWorldTransform() const { return m_localToWorld; }
    const ViewFragmentTransformer& viewFragmentTransformer() const { return *m_transformer; }

private:
    friend class SceneSelection;
    StrongRef<Rendra::Graphics::GroupNode> m_viewNode, m_fragmentNode;
    StrongRef<ViewFragmentTransformer> m_transformer;
    GkPoint3d m_rayPoint, m_hitPoint;
    GkVector3d m_normal;
    GkMatrix3d m_localToWorld;
};

/// Nodes from below a fragment downwards.
using NodePath = std::vector<StrongRef<Rendra::Graphics::Node>>;

/// What a place of a canvas selects.
class SceneSelection : public Implements<SceneSelection, Selection>
{
public:
    /// Finds what is at a place of a canvas, in logical pixels from its upper left corner. Null if nothing is
    /// and `background` is false, or if the fragment has no background to select.
    static StrongRef<SceneSelection> find(Rendra::Graphics::GroupNode* viewNode,
                                          Rendra::Graphics::GroupNode* fragmentNode, double width,
                                          double height, double x, double y, bool background);

    /// Everything that matches the wish at that place, ordered as by pickAt, without the background.
    static std::vector<StrongRef<SceneSelection>> findAll(Rendra::Graphics::GroupNode* viewNode,
                                                          Rendra::Graphics::GroupNode* fragmentNode,
                                                          double width, double height, double x, double y,
                                                          const PickWish& wish);
    /// The end of the path, given without a place of a canvas. Null for an empty path.
    static StrongRef<SceneSelection> at(NodePath path);

    /// The nodes from below the fragment down to the body; empty for the background.
    const NodePath& scenePath() const { return m_path; }
    /// Null for what was not picked.
    const RawHitInfo* hitInfo() const { return m_hit.get(); }
    /// The face, edge or vertex of that body; nothing on the background.
    const std::optional<PickedPart>& part() const { return m_part; }

    /// Equal if they end at the same node.
    bool isEqualTo(const Selection& other) const override;

private:
    SceneSelection() = default;
    static StrongRef<RawHitInfo> makeHit(Rendra::Graphics::GroupNode* viewNode,
                                         Rendra::Graphics::GroupNode* fragmentNode, double width,
                                         double height);
    static StrongRef<SceneSelection> of(const PickedPoint& picked, StrongRef<RawHitInfo> hit);

    NodePath m_path;
    StrongRef<RawHitInfo> m_hit;
    std::optional<PickedPart> m_part;
};

} // namespace Vs::Scene
