#pragma once

#include "Server/Base/Require.h"
#include "Server/Scene/GeometryNode.h"

namespace Vs::Scene {

/// Changes a node of the scene. Setting a value that is already set is not a change, and causes no redraw.
class NodeChange
{
public:
    /// New nodes, added to `parent` unless that is null. Geometry has one level of detail: what it shows
    /// keeps its size on the screen or is a handful of lines. `transient` ones, as all are today, are never
    /// saved.
    static StrongRef<Rendra::Graphics::GeometryNode>
    createLODGeometryNode(Rendra::Graphics::GroupNode* parent, bool transient);
    static StrongRef<Rendra::Graphics::InstanceNode> createInstanceNode(Rendra::Graphics::GroupNode* parent,
                                                                        bool transient);

    /// A group that can have effects and a line style. What is below is drawn in one pass, the first;
    /// `pickable` ones, which none are today, can be picked.
    static StrongRef<Rendra::Graphics::InstanceNode> createGroupNode(Rendra::Graphics::GroupNode* parent,
                                                                     int pass, bool pickable, bool transient);

    /// `node` must not be null, and must outlive the change.
    explicit NodeChange(Rendra::Graphics::Node* node) : m_node(node)
    {
        assertMainThread();
        require(node != nullptr, "a node that is changed is there");
    }

    NodeChange& name(const std::string& name);
    /// Node::owner.
    NodeChange& owner(const void* owner);
    /// Reserves room for this many more children of a group.
    NodeChange& expect(size_t coming);
    NodeChange& transform(const GkPlacement& transform);
    /// Moves the node's origin to `point`, without turning it. A point that is not finite changes nothing.
    NodeChange& transform(const GkPoint3d& point);
    NodeChange& visible(bool visible);
    NodeChange& colour(const std::optional<Colour>& colour);
    NodeChange& highlight(Rendra::Graphics::Highlight highlight);
    NodeChange& ghost(std::optional<bool> ghost);

    /// Of a BodyNode; does nothing to others.
    NodeChange& mesh(std::shared_ptr<const BodyMesh> mesh);
    NodeChange& bodyColour(const Colour& colour);
    NodeChange& litParts(std::vector<Rendra::Graphics::LitPart> parts);

    /// Of a GeometryNode; do nothing to others.
    NodeChange& polyline(std::vector<GkPoint3d> points);
    /// An arc about `normal`, from `from` to `to` radians from the direction of `reference`, whose length is
    /// the radius.
    NodeChange& arc(const GkPoint3d& centre, const GkVector3d& normal, const GkVector3d& reference,
                    double from, double to, int clientType = 0);
    NodeChange& texture(std::shared_ptr<const Rendra::Graphics::Texture> texture);
    NodeChange& billBoard(const GkPoint3d& origin, const GkVector3d& normal,
                          Rendra::Graphics::EBillboard kind);
    NodeChange& depthPriority(int priority);
    NodeChange& countsInBounds(bool counts);
    /// Of any node: the colour of all geometry and bodies below.
    NodeChange& colorEffect(const Colour& colour) { return this->colour(colour); }
    /// Of an InstanceNode; do nothing to others.
    NodeChange& lineStyle(float weight, const Colour& colour);
    NodeChange& occludedEffect(const std::string& name, const Colour& colour, float opacity);

    /// Of a GroupNode; do nothing to others. A node that is in the group already, or is one of its ancestors,
    /// is not added.
    NodeChange& add(StrongRef<Rendra::Graphics::Node> child);
    NodeChange& remove(const Rendra::Graphics::Node* child);
    NodeChange& removeAll();
    NodeChange& data(std::unique_ptr<Rendra::Graphics::NodeData> data);
    /// Clears the source in the data of a view's node: its view is being destroyed.
    NodeChange& clearSource();

private:
    Rendra::Graphics::Node* m_node;
};

} // namespace Vs::Scene
