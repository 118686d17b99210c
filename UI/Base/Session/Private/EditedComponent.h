#pragma once

#include "Server/Base/StrongRef.h"
#include "Server/DataModel/ComponentsListener.h"
#include "Server/Scene/Node.h"

#include <string>

namespace Vu {

class AssetSession;

/// Shows the component that a session edits by itself (AssetSession::editedComponent) as it is, and the rest
/// of the model as a ghost; leaves its environment when it is gone. Made by AssetSession.
class EditedComponent : private Vs::ComponentsListener
{
public:
    explicit EditedComponent(AssetSession& session);
    ~EditedComponent() override;
    EditedComponent(const EditedComponent&) = delete;
    EditedComponent& operator=(const EditedComponent&) = delete;

    /// Another component is edited, or none any more.
    void show();

private:
    void assetComponentsChanged(Vs::ComponentsEvent* event) override;
    void dropSelection();

    AssetSession& m_session;
    std::string m_shown;
    Vs::StrongRef<Rendra::Graphics::Node> m_node; ///< Of what is edited.
};

} // namespace Vu
