#pragma once

#include "Server/Geometry/GkPoint2d.h"
#include "Server/Scene/Node.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Rendra::Graphics {

/// A picture in the scene, of constant size on the screen. Immutable once it is shared.
struct Texture
{
    int width = 0, height = 0;   ///< In the picture's own pixels.
    std::vector<uint8_t> pixels; ///< RGBA, not premultiplied, top row first, without gaps.
    GkPoint2d anchor;            ///< The point at the node's position, in pixels from the picture's middle.
    double scale = 1;            ///< Logical pixels of the screen per pixel of the picture.
    double occludedOpacity = 1;  ///< Its opacity through whatever hides it, from 0 to 1.
};

enum class EBillboard {
    None = 0,
    FacesViewer = 1, ///< Upright on the screen, whatever the camera does.
};

struct Billboard
{
    GkPoint3d origin;
    GkVector3d normal{0, 0, 1};
    EBillboard kind = EBillboard::None;
};

/// Drawn to help the user, and not a body: reticles, markers. Its lines count in the bounds of the scene, its
/// picture does not, and neither can be picked.
class GeometryNode : public Vs::Implements<GeometryNode, Node>
{
public:
    static Vs::StrongRef<GeometryNode> make();

    using Polyline = std::vector<GkPoint3d>;
    const std::vector<Polyline>& polylines() const { return m_polylines; }
    /// Null for none.
    const std::shared_ptr<const Texture>& texture() const { return m_texture; }
    const Billboard& billBoard() const { return m_billboard; }
    /// Nodes of a higher priority are drawn later, and so over the others; a picture is drawn in front of its
    /// place by this many of its half sizes.
    int depthPriority() const { return m_depthPriority; }
    /// Whether its lines count in the bounds of the scene. Default true.
    bool countsInBounds() const { return m_countsInBounds; }
    /// Identifies the content to its maker; means nothing to the scene.
    int clientType() const { return m_clientType; }

protected:
    GeometryNode() = default;
    BBox ownBounds() const override;

private:
    friend class Vs::Scene::NodeChange;
    std::vector<Polyline> m_polylines;
    std::shared_ptr<const Texture> m_texture;
    Billboard m_billboard;
    int m_depthPriority = 0;
    int m_clientType = 0;
    bool m_countsInBounds = true;
};

/// How the geometry below a node looks where something hides it.
struct OccludedEffect
{
    std::string name;
    Vs::Colour colour{1, 1, 1, 1}; ///< Multiplied with the geometry's own.
    float opacity = -1;            ///< Below 0, the geometry's own; lines use all of theirs.
};

/// How the lines below a node are drawn.
struct LineStyle
{
    float weight = 1; ///< Times the usual width.
    Vs::Colour colour{1, 1, 1, 1};
};

/// A place at which geometry is shown: moving the marker means moving its instance.
class InstanceNode : public Vs::Implements<InstanceNode, GroupNode>
{
public:
    static Vs::StrongRef<InstanceNode> make();

    /// Applies to all geometry below that has no deeper effect.
    const std::optional<OccludedEffect>& occludedEffect() const { return m_occludedEffect; }
    /// The same; replaces the colours below.
    const std::optional<LineStyle>& lineStyle() const { return m_lineStyle; }

protected:
    InstanceNode() = default;

private:
    friend class Vs::Scene::NodeChange;
    std::optional<OccludedEffect> m_occludedEffect;
    std::optional<LineStyle> m_lineStyle;
};

} // namespace Rendra::Graphics
