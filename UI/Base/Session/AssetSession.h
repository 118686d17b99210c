#pragma once

#include "Server/Base/SerializableObject.h"

#include <memory>
#include <string>
#include <vector>

namespace Vs {
class Asset;
class SelectionFilter;
class SelectionMgr;
} // namespace Vs

namespace Vu {

class CommandMgr;
class DocumentSession;
class EnvironmentDefinition;
class EditedComponent;
class EnvironmentState;
class GraphicsView;
class SelectionDisplay;
class ViewMgr;

/// The user interface's state of an open asset: its commands, its views, its environment. Owned by
/// SessionMgr. As text it is the asset's guid; in a document that was
/// never saved, the document's identifier, a bar and the asset's name.
class AssetSession : public Vs::Implements<AssetSession, Vs::SerializableObject>
{
public:
    AssetSession(Vs::Asset* asset, DocumentSession* documentSession);
    ~AssetSession() override;

    Vs::Asset* asset() const { return m_asset; }
    DocumentSession* documentSession() const { return m_documentSession; }

    /// The manager of the commands that run on this asset; made with the session.
    CommandMgr* commandManager() const { return m_commands.get(); }

    /// What is selected in this session. Never null.
    Vs::SelectionMgr* selectionManager() const { return m_selection.get(); }

    /// The views on this asset. The first view is made at the first call, if the asset has a scene.
    ViewMgr* viewManager();
    /// One more view on this asset, which starts with the camera of the first one.
    GraphicsView* createView();

    /// Null until an environment is entered.
    EnvironmentDefinition* activeEnvironment() const;
    EnvironmentState* activeEnvironmentState() const { return m_environment.get(); }
    /// Enters an environment. With `onTop`, the new state returns to the one that was active. Without, one on
    /// the way back is returned to, keeping its own way back; for any other, the way back is forgotten. Null
    /// leaves the environment.
    void activateEnvironment(EnvironmentDefinition* definition, bool onTop);

    /// Enters an environment on top, to edit that component alone; see editedComponent.
    void enterComponent(EnvironmentDefinition* definition, const std::string& component);
    /// Goes back to where the active environment was entered from; out of all of them, if it was entered
    /// directly.
    void leaveEnvironment();

    /// The component (Component::id) that is edited by itself: what is new goes into it, and the rest of the
    /// model is a ghost that can't be picked. Empty where the whole model is edited. When the component is
    /// gone from the model, its environment is left.
    std::string editedComponent() const;

    std::wstring serialize() const override;
    std::string factoryName() const override;

private:
    friend class SessionMgr;
    void activate(EnvironmentDefinition* definition, bool onTop, const std::string& component);
    std::unique_ptr<EnvironmentState> stateOnWayBack(const EnvironmentDefinition* definition);
    void pickFilters(std::vector<const Vs::SelectionFilter*>& filters) const;

    Vs::Asset* m_asset;
    DocumentSession* m_documentSession;
    std::unique_ptr<Vs::SelectionMgr> m_selection;
    std::unique_ptr<SelectionDisplay> m_selectionDisplay;
    std::unique_ptr<ViewMgr> m_views;
    std::unique_ptr<EnvironmentState> m_environment;
    std::unique_ptr<CommandMgr> m_commands;
    bool m_firstViewMade = false;
    std::unique_ptr<EditedComponent> m_editedComponent;
};

/// Finds sessions by the asset's guid, by "<document path or identifier>|<asset name>", or by asset name in
/// the current document: "AssetSessionSerializableObjectFactory" in transcripts.
class AssetSessionSerializableObjectFactory : public Vs::SerializableObjectFactory
{
public:
    static constexpr const char* kName = "AssetSessionSerializableObjectFactory";
    AssetSessionSerializableObjectFactory() : SerializableObjectFactory(kName) {}
    Vs::SerializableObject* deserialize(const std::wstring& text, bool create) override;
};

} // namespace Vu
