#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/StrongRef.h"
#include "Server/Body/BodyMesh.h"
#include "Server/Geometry/GkPlacement.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Vs::Scene {
class NodeChange;
}

namespace Rendra::Graphics {

class BodyNode;
class GroupNode;

/// How a node stands out from its surroundings.
enum class Highlight : uint8_t { None, Pointed, Selected };

/// What a node of the scene stands for at a higher level: the data of a view or of a fragment.
class NodeData : public Vs::Implements<NodeData>
{
public:
    /// For data with a source (Scene::INodeSource): the source is being destroyed.
    virtual void clearSource() {}
};

/// What a body consists of, as numbered in its mesh.
enum class Part : uint8_t { Face, Edge, Vertex };

/// A part of a body that is itself highlighted.
struct LitPart
{
    Part part;
    uint32_t index; ///< In BodyMesh::faces, edgeStarts or vertexPoints.
    Highlight highlight;
    friend bool operator==(const LitPart&, const LitPart&) = default;
};

/// A node of the scene. A node may be in several groups (one model in two views); it is shared by StrongRefs
/// and is changed only by a NodeChange. Main thread only.
class Node : public Vs::Implements<Node, Vs::SharedObject>
{
public:
    ~Node() override = default;

    /// Never 0, never used again in this process.
    uint64_t id() const { return m_id; }
    /// Empty for most.
    const std::string& name() const;
    /// What it represents to whoever made it and set this (NodeChange::owner); null for most. Nodes don't use
    /// it.
    const void* owner() const { return m_owner; }
    /// To the coordinates of the parent group.
    GkMatrix3d transform() const { return m_place.matrix(); }
    /// A hidden node hides everything below it.
    bool visible() const { return m_visible; }
    /// Applies to all bodies below that have no deeper colour.
    const std::optional<Vs::Colour>& colour() const { return m_colour; }
    /// Applies to all below; the stronger of several wins.
    Highlight highlight() const { return m_highlight; }
    /// Whether bodies here and below are drawn faintly and can't be picked; a deeper node's setting wins.
    const std::optional<bool>& ghost() const { return m_ghost; }

    /// The box around everything visible here and below, in the coordinates of the parent group. A group
    /// caches its box until something below changes.
    BBox boundingBox() const { return m_visible ? m_place.placed(ownBounds()) : BBox(); }

    /// The number of the last change of this node itself, not of its descendants; the numbers of all nodes
    /// come from one counter.
    uint64_t revision() const { return m_revision; }
    /// The number of the last change of this node or of any descendant.
    virtual uint64_t subtreeRevision() const { return m_revision; }
    /// The number of the last change of shapes or placements here or below, not of colours and highlights.
    uint64_t placesRevision() const { return m_placesRevision; }

protected:
    Node();
    /// In this node's own coordinates.
    virtual BBox ownBounds() const = 0;

private:
    friend class BodyNode;
    friend class GroupNode;
    friend class Vs::Scene::NodeChange;
    // Attributes that only few nodes have.
    struct Rare
    {
        std::string name;
        std::vector<GroupNode*> otherParents;
        std::vector<LitPart> litParts; // of a body
    };

    void touch();
    /// Only the look has changed.
    void touchLook();
    void touchParents(bool places);
    void hangsUnder(GroupNode* parent);
    void losesParent(const GroupNode* parent);
    bool isUnder(const GroupNode* parent) const;
    Rare& rare();

    // There are as many nodes as parts, so the members are ordered to leave no gaps.
    Highlight m_highlight = Highlight::None;
    bool m_visible = true;
    std::optional<bool> m_ghost;
    uint64_t m_id;
    uint64_t m_revision;
    uint64_t m_placesRevision;
    const void* m_owner = nullptr;
    GroupNode* m_parent = nullptr; // Not owned: a group removes itself when it is destroyed.
    std::unique_ptr<Rare> m_rare;  // null for none
    GkPlacement m_place;
    std::optional<Vs::Colour> m_colour;
};

/// A node with others below it.
class GroupNode : public Vs::Implements<GroupNode, Node>
{
public:
    static Vs::StrongRef<GroupNode> make(const std::string& name = {});
    ~GroupNode() override;

    const std::vector<Vs::StrongRef<Node>>& children() const { return m_children; }
    [[nodiscard]] bool has(const Node* child) const;
    uint64_t subtreeRevision() const override { return std::max(revision(), m_subtreeRevision); }
    /// The number of the last change of the list of children.
    uint64_t childrenRevision() const { return m_childrenRevision; }

    /// What this group represents; null for most. See viewNodeData and viewFragmentNodeData.
    NodeData* data() const { return m_data.get(); }

protected:
    GroupNode() = default;
    BBox ownBounds() const override;

private:
    friend class Node;
    friend class Vs::Scene::NodeChange;
    void touchChildren();
    void touchBelow(uint64_t revision, bool places);

    std::vector<Vs::StrongRef<Node>> m_children;
    std::unique_ptr<NodeData> m_data;
    uint64_t m_childrenRevision = 0;
    uint64_t m_subtreeRevision = 0; // of the last change below
    mutable uint64_t m_boundsRevision = 0;
    mutable BBox m_bounds; // in its own coordinates
};

/// A node that shows the mesh of a body.
class BodyNode : public Vs::Implements<BodyNode, Node>
{
public:
    static Vs::StrongRef<BodyNode> make(std::shared_ptr<const Vs::BodyMesh> mesh,
                                        const Vs::Colour& bodyColour);

    /// Null as long as the mesh is still being made; nothing is drawn until then.
    const std::shared_ptr<const Vs::BodyMesh>& mesh() const { return m_mesh; }
    /// Used where neither a face nor a node above has its own colour.
    const Vs::Colour& bodyColour() const { return m_bodyColour; }
    /// In no particular order.
    const std::vector<LitPart>& litParts() const;

protected:
    BodyNode() = default;
    BBox ownBounds() const override;

private:
    friend class Vs::Scene::NodeChange;
    Vs::Colour m_bodyColour;
    std::shared_ptr<const Vs::BodyMesh> m_mesh;
};

} // namespace Rendra::Graphics

namespace Rendra::Scene {
/// An empty group of a segment.
Vs::StrongRef<Graphics::GroupNode> MakeGroupNode(const std::string& name = {});
} // namespace Rendra::Scene
