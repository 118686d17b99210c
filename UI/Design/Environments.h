#pragma once

#include "UI/Base/Session/Environment.h"
#include "UI/Base/Session/SessionEvents.h"

namespace Vu::Design {

/// Building: the commands that create and change solids. Every session starts here.
class ModellingEnvironment : public Vs::Implements<ModellingEnvironment, EnvironmentDefinition>
{
public:
    static constexpr const wchar_t* kId = L"ModellingEnvironment";
    ModellingEnvironment();

protected:
    bool onIsApplicable(const AssetSession*) const override { return true; }
};

/// Viewing, measuring and sharing what others have built.
class ReviewEnvironment : public Vs::Implements<ReviewEnvironment, EnvironmentDefinition>
{
public:
    static constexpr const wchar_t* kId = L"ReviewEnvironment";
    ReviewEnvironment();

protected:
    bool onIsApplicable(const AssetSession*) const override { return true; }
};

/// Building within one component, on top of the environment that it was entered from: new parts go into it,
/// and the rest of the model is a ghost.
class ComponentEnvironment : public Vs::Implements<ComponentEnvironment, EnvironmentDefinition>
{
public:
    static constexpr const wchar_t* kId = L"ComponentEnvironment";
    ComponentEnvironment();

protected:
    /// Only if the session is in one already: entering needs a component.
    bool onIsApplicable(const AssetSession* session) const override;
    bool onOffers(const std::wstring& id) const override { return id == ModellingEnvironment::kId; }
};

/// The environments of this add-in, in the order in which they are cycled through. Puts new sessions into the
/// first one.
class Environments : private SessionEventSite
{
public:
    Environments();
    Environments(const Environments&) = delete;
    Environments& operator=(const Environments&) = delete;

private:
    void sessionCreated(SessionEvent* event) override;

    ModellingEnvironment m_modelling;
    ReviewEnvironment m_review;
    ComponentEnvironment m_component;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Design
