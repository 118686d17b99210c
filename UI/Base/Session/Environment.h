#pragma once

#include "Server/Base/Object.h"

#include <memory>
#include <string>
#include <vector>

namespace Vu {

class AssetSession;

/// A mode of work with its own command set. Registers itself with EnvironmentDefinitionMgr for as long as it
/// lives.
class EnvironmentDefinition : public Vs::Implements<EnvironmentDefinition>
{
public:
    EnvironmentDefinition(std::wstring id, std::wstring name);
    ~EnvironmentDefinition() override;

    const std::wstring& id() const { return m_id; }
    /// What the user reads.
    const std::wstring& name() const { return m_name; }

    bool isApplicable(const AssetSession* session) const { return session && onIsApplicable(session); }
    /// Whether the commands of the environment with that id also belong here, so that they don't leave it.
    bool offers(const std::wstring& id) const { return id == m_id || onOffers(id); }

protected:
    virtual bool onIsApplicable(const AssetSession* session) const = 0;
    virtual void onActivate(AssetSession*) {}
    virtual void onDeactivate(AssetSession*) {}
    virtual bool onOffers(const std::wstring& /*id*/) const { return false; }

private:
    friend class AssetSession;
    std::wstring m_id;
    std::wstring m_name;
};

/// All environments, in the order of their registration, which is also the order in which they are cycled
/// through.
class EnvironmentDefinitionMgr : public Vs::Implements<EnvironmentDefinitionMgr>
{
public:
    static EnvironmentDefinitionMgr* get();

    const std::vector<EnvironmentDefinition*>& definitions() const { return m_definitions; }
    /// Null if there is none.
    EnvironmentDefinition* findEnvironmentDefinitionById(const std::wstring& id) const;

private:
    friend class EnvironmentDefinition;
    std::vector<EnvironmentDefinition*> m_definitions;
};

/// An environment that a session is in, with the way back to where it was entered from.
class EnvironmentState : public Vs::Implements<EnvironmentState>
{
public:
    EnvironmentState(AssetSession* session, EnvironmentDefinition* definition,
                     std::unique_ptr<EnvironmentState> returnState)
        : m_session(session), m_definition(definition), m_returnState(std::move(returnState))
    {
    }

    AssetSession* assetSession() const { return m_session; }
    EnvironmentDefinition* environmentDefinition() const { return m_definition; }
    /// Null for an environment that was entered directly.
    EnvironmentState* returnState() const { return m_returnState.get(); }
    /// The component (Component::id) that it was entered for; empty where it is for the whole model.
    const std::string& component() const { return m_component; }

    /// Whether returning restores the camera.
    bool copyCameraOnReturn() const { return m_copyCamera; }
    void copyCameraOnReturn(bool value) { m_copyCamera = value; }

private:
    friend class AssetSession;
    AssetSession* m_session;
    EnvironmentDefinition* m_definition;
    std::unique_ptr<EnvironmentState> m_returnState;
    std::string m_component;
    bool m_copyCamera = false;
};

/// The environment of the debug commands: applicable everywhere as soon as the debug dialog is switched on.
class DebugEnvironmentDef : public Vs::Implements<DebugEnvironmentDef, EnvironmentDefinition>
{
public:
    static constexpr const wchar_t* kId = L"DebugEnvironment";
    DebugEnvironmentDef() : Implements(kId, L"Debug") {}

protected:
    bool onIsApplicable(const AssetSession* session) const override;
};

} // namespace Vu
