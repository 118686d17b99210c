#pragma once

#include "Server/Base/StrongRef.h"
#include "Server/Scene/SceneNodes.h"
#include "UI/Base/View/GraphicsView.h"

namespace Vu::Commands {

/// The graphics view of the home screen. It shows no model; its node holds what the home screen draws.
class ManagementGraphicsView : public Vs::Implements<ManagementGraphicsView, GraphicsView>
{
public:
    static ManagementGraphicsView* make();
    ~ManagementGraphicsView() override;

    Rendra::Graphics::GroupNode* sceneNode() const override;
    Rendra::Graphics::GroupNode* createScene() override;
    void releaseScene() override;

    void createViewNode();

private:
    ManagementGraphicsView();

    Vs::StrongRef<Rendra::Graphics::GroupNode> m_node;
    static Vs::Segment* s_segment;
    Vs::StrongRef<Vs::Scene::Viewport> m_viewport;
};

} // namespace Vu::Commands
