#pragma once

#include "Server/Base/Object.h"

namespace Rendra::Graphics {
class GroupNode;
}

namespace Vs::Scene {

/// The owner of a node of the scene, which creates it on demand. A pure interface, to be used beside an
/// Object base: `class GraphicsView : public Implements<GraphicsView, Object, Scene::INodeSource>`.
class INodeSource
{
public:
    virtual ~INodeSource() = default;

    static const UniqueString* interfaceId()
    {
        static const UniqueString* const id = UniqueString::find("Vs::Scene::INodeSource");
        return id;
    }
    virtual const UniqueString* getInterfaceId() const = 0;
    virtual void* queryInterface(const UniqueString* key) const = 0;

    /// Null while there is none.
    virtual Rendra::Graphics::GroupNode* sceneNode() const = 0;
    /// Creates the node unless it exists, and returns it.
    virtual Rendra::Graphics::GroupNode* createScene() = 0;
    virtual void releaseScene() = 0;
};

} // namespace Vs::Scene
