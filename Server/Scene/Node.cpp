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

Node::Node() : m_id(nextId()), m_revision(nextRevision()), m_placesRevision(m_revision)
{
    Vs::assertMainThread();
}

const std::string& Node::name() const
{
    static const std::string none;
    return m_rare ? m_rare->name : none;
}

Node::Rare& Node::rare()
{
    if (!m_rare)
        m_rare = std::make_unique<Rare>();
    return *m_rare;
}

void Node::touch()
{
    m_placesRevision = m_revision = nextRevision();
    touchParents(true);
}

void Node::touchLook()
{
    m_revision = nextRevision();
    touchParents(false);
}

void Node::touchParents(bool places)
{
    const uint64_t revision = subtreeRevision();
    if (m_parent)
        m_parent->touchBelow(revision, places);
    if (m_rare)
        for (GroupNode* parent : m_rare->otherParents)
            parent->touchBelow(revision, places);
}

void Node::hangsUnder(GroupNode* parent)
{
    if (m_parent)
        rare().otherParents.push_back(parent);
    else
        m_parent = parent;
}

void Node::losesParent(const GroupNode* parent)
{
    if (m_rare)
        std::erase(m_rare->otherParents, parent);
    if (m_parent != parent)
        return;
    m_parent = nullptr;
    if (m_rare && !m_rare->otherParents.empty()) {
        m_parent = m_rare->otherParents.back();
        m_rare->otherParents.pop_back();
    }
}

bool Node::isUnder(const GroupNode* parent) const
{
    return m_parent == parent || (m_rare && std::ranges::count(m_rare->otherParents, parent) > 0);
}

Vs::StrongRef<GroupNode> GroupNode::make(const std::string& name)
{
    Vs::StrongRef<GroupNode> node(new GroupNode);
    if (!name.empty())
        node->rare().name = name;
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
    touchParents(true);
}

void GroupNode::touchBelow(uint64_t revision, bool places)
{
    m_subtreeRevision = revision;
    if (places)
        m_placesRevision = revision;
    touchParents(places);
}

bool GroupNode::has(const Node* child) const
{
    return child->isUnder(this);
}

BBox GroupNode::ownBounds() const
{
    if (m_boundsRevision != placesRevision()) {
        m_bounds = BBox();
        for (const auto& child : m_children)
            m_bounds.add(child->boundingBox());
        m_boundsRevision = placesRevision();
    }
    return m_bounds;
}

Vs::StrongRef<BodyNode> BodyNode::make(std::shared_ptr<const Vs::BodyMesh> mesh, const Vs::Colour& bodyColour)
{
    Vs::StrongRef<BodyNode> node(new BodyNode);
    node->m_mesh = std::move(mesh);
    node->m_bodyColour = bodyColour;
    return node;
}

const std::vector<LitPart>& BodyNode::litParts() const
{
    static const std::vector<LitPart> none;
    return m_rare ? m_rare->litParts : none;
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
