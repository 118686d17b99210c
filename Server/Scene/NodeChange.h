#pragma once

#include "Server/Scene/Node.h"

namespace Vs::Scene {

/// Changes a node of the scene. What is set to the value that it has already is no change, and nothing is
/// drawn again for it.
class NodeChange
{
public:
    /// `node` must not be null, and stays alive as long as the change.
    explicit NodeChange(Rendra::Graphics::Node* node) : m_node(node) {}

    NodeChange& name(const std::string& name);
    NodeChange& transform(const GkMatrix3d& transform);
    NodeChange& visible(bool visible);
    NodeChange& colour(const std::optional<Colour>& colour);
    NodeChange& highlight(Rendra::Graphics::Highlight highlight);

    /// Of a BodyNode; does nothing to others.
    NodeChange& mesh(std::shared_ptr<const BodyMesh> mesh);
    NodeChange& bodyColour(const Colour& colour);

    /// Of a GroupNode; do nothing to others. A node that is in the group already, or that the group itself
    /// hangs under, is not added.
    NodeChange& add(StrongRef<Rendra::Graphics::Node> child);
    NodeChange& remove(const Rendra::Graphics::Node* child);
    NodeChange& removeAll();
    NodeChange& data(std::unique_ptr<Rendra::Graphics::NodeData> data);
    /// Takes the source out of the data of a view's node: the view that it came from is going.
    NodeChange& clearSource();

private:
    Rendra::Graphics::Node* m_node;
};

} // namespace Vs::Scene
