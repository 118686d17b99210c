#include "Server/Scene/Node.h"

#include "Server/Base/Require.h"

#include <algorithm>

namespace Rendra::Graphics {

namespace {

uint64_t nextRevision()
{
    static uint64_t last = 0;
    return ++last;
}

uint64_t nextId()
{
    static uint64_t last = 0;
    return ++last;
}

} // namespace

Node::Node()
    : m_id(nextId()), m_revision(nextRevision()), m_subtreeRevision(m_revision), m_placesRevision(m_revision)
{
    Vs::assertMainThread();
}

const std::string& Node::name() const
{
    static const std::string none;
    return m_name ? *m_name : none;
}

void Node::touch()
{
    m_placesRevision = m_subtreeRevision = m_revision = nextRevision();
    touchParents();
}

void Node::touchLook()
{
    m_subtreeRevision = m_revision = nextRevision();
    touchParents();
}

void Node::touchParents()
{
    for (GroupNode* parent : m_parents) {
        parent->m_subtreeRevision = m_subtreeRevision;
        if (m_placesRevision == m_subtreeRevision)
            parent->m_placesRevision = m_placesRevision;
        parent->touchParents();
    }
}

void Node::losesParent(const GroupNode* parent)
{
    const auto found = std::find(m_parents.begin(), m_parents.end(), parent);
    if (found != m_parents.end())
        m_parents.erase(found);
}

const BBox& Node::boundingBox() const
{
    if (m_boundsRevision != m_placesRevision) {
        m_bounds = m_visible ? ownBounds().transformed(m_transform) : BBox();
        m_boundsRevision = m_placesRevision;
    }
    return m_bounds;
}

Vs::StrongRef<GroupNode> GroupNode::make(const std::string& name)
{
    Vs::StrongRef<GroupNode> node(new GroupNode);
    if (!name.empty())
        node->m_name = std::make_unique<const std::string>(name);
    return node;
}

GroupNode::~GroupNode()
{
    for (const auto& child : m_children)
        child->losesParent(this);
}

void GroupNode::touchChildren()
{
    m_childrenRevision = m_placesRevision = m_subtreeRevision = nextRevision();
    touchParents();
}

bool GroupNode::has(const Node* child) const
{
    return std::find(child->m_parents.begin(), child->m_parents.end(), this) != child->m_parents.end();
}

BBox GroupNode::ownBounds() const
{
    BBox box;
    for (const auto& child : m_children)
        box.add(child->boundingBox());
    return box;
}

Vs::StrongRef<BodyNode> BodyNode::make(std::shared_ptr<const Vs::BodyMesh> mesh, const Vs::Colour& bodyColour)
{
    Vs::StrongRef<BodyNode> node(new BodyNode);
    node->m_mesh = std::move(mesh);
    node->m_bodyColour = bodyColour;
    return node;
}

BBox BodyNode::ownBounds() const
{
    return m_mesh ? m_mesh->bounds : BBox();
}

} // namespace Rendra::Graphics

namespace Rendra::Scene {

Vs::StrongRef<Graphics::GroupNode> MakeGroupNode(const std::string& name)
{
    return Graphics::GroupNode::make(name);
}

} // namespace Rendra::Scene
