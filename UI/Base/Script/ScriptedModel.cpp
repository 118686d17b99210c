#include "UI/Base/Script/ScriptedModel.h"

#include "Server/Base/Exception.h"
#include "Server/Base/ScriptModel.h"
#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Script/ScriptedCommands.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionEvents.h"

#include <boost/uuid/uuid_io.hpp>

#include <algorithm>
#include <functional>
#include <utility>

namespace Vu {

namespace {

using Buffer = Vs::ScriptModel::Buffer;

template <class Number>
Buffer bufferOf(const char* name, const std::vector<Number>& numbers, size_t columns,
                const std::shared_ptr<const Vs::BodyMesh>& owner)
{
    constexpr auto kind = std::is_same_v<Number, float> ? Buffer::Number::Float : Buffer::Number::Unsigned32;
    return {name, kind, numbers.size() / columns, columns, numbers.data(), owner};
}

/// Follows model changes from a script's first question on.
class Watch : public Vs::AssetEventSite,
              public SessionEventSite,
              public Vs::SelectionSetSite,
              public Vs::ScriptModel
{
public:
    static Watch& get()
    {
        // Never destroyed: models may close until the process ends.
        static auto* const watch = new Watch;
        return *watch;
    }

    uint64_t revision() override
    {
        begin();
        if (const Vs::Asset* active = ActiveAssetUtils::asset(); active != m_active) {
            m_active = active;
            ++m_revision;
        }
        return m_revision;
    }
    void forgetAdded() override
    {
        begin();
        m_added.clear();
    }
    void listen(std::function<void(const char*)> heard) override
    {
        begin();
        if (!m_heard)
            SessionEventSource::get()->subscribe(this);
        m_heard = std::move(heard);
        followSelection();
    }
    void define(Command command) override { ScriptedCommands::define(std::move(command)); }
    std::vector<Buffer> mesh(const std::wstring& component) override;

    const std::vector<std::string>& added(const Vs::Asset& asset) const
    {
        static const std::vector<std::string> none;
        return &asset == m_addedTo ? m_added : none;
    }

private:
    void begin()
    {
        if (!m_follows)
            Vs::AssetEventSource::get()->subscribe(this);
        m_follows = true;
    }
    /// Reported once the line has ended: a model can't be queried in the middle of a change.
    void happened(const char* what)
    {
        if (!m_heard || std::find(m_told.begin(), m_told.end(), what) != m_told.end())
            return;
        m_told.push_back(what);
        if (m_told.size() == 1)
            Application::get()->deferredTasks()->post([this] {
                for (const char* each : std::exchange(m_told, {}))
                    m_heard(each);
            });
    }
    void changed(const char* what)
    {
        ++m_revision;
        happened(what);
    }
    void followSelection()
    {
        Vs::SelectionSet* now = ActiveAssetUtils::selectionSet();
        if (now == m_selection)
            return;
        if (m_selection)
            m_selection->unsubscribe(this);
        m_selection = now;
        if (m_selection)
            m_selection->subscribe(this);
    }
    void currentSessionChanged(SessionEvent*) override
    {
        followSelection();
        happened(kDocument);
        happened(kSelection);
    }
    void sessionPostActivateForAsset(SessionEvent*) override { followSelection(); }
    void sessionClosed(SessionEvent* event) override
    {
        // Its selection goes with it.
        if (m_selection && m_selection == &event->assetSession()->selectionManager()->selectionSet()) {
            m_selection->unsubscribe(this);
            m_selection = nullptr;
        }
    }
    void selectionSetChanged() override { happened(kSelection); }
    void assetCreated(Vs::AssetEvent*) override { changed(kDocument); }
    void assetRenamed(Vs::AssetEvent*) override { changed(kDocument); }
    void assetDirtyChanged(Vs::AssetEvent*) override { happened(kDocument); }
    void assetComponentsChanged(Vs::ComponentsEvent* event) override
    {
        changed(kModel);
        const Vs::ComponentsEvent::Changes& changes = event->changes();
        if (changes.all || event->asset() != m_addedTo)
            m_added.clear();
        m_addedTo = event->asset();
        if (!m_added.empty())
            for (const std::string& gone : changes.removed)
                std::erase_if(m_added, [&](const std::string& id) { return Vs::isWithin(id, gone); });
        for (const Vs::Component* component : changes.added)
            m_added.push_back(component->id);
    }
    void assetClosed(Vs::AssetEvent* event) override
    {
        changed(kDocument);
        if (event->asset() == m_addedTo) {
            m_addedTo = nullptr;
            m_added.clear();
        }
        if (event->asset() == m_active)
            m_active = nullptr;
    }

    static constexpr const char* kModel = "model";
    static constexpr const char* kDocument = "document";
    static constexpr const char* kSelection = "selection";

    bool m_follows = false;
    std::function<void(const char*)> m_heard;
    std::vector<const char*> m_told; ///< Waiting to be reported.
    Vs::SelectionSet* m_selection = nullptr;
    uint64_t m_revision = 1;
    const Vs::Asset* m_active = nullptr;
    const Vs::Asset* m_addedTo = nullptr;
    std::vector<std::string> m_added;
};

std::vector<Buffer> Watch::mesh(const std::wstring& component)
{
    const Vs::Asset* asset = ActiveAssetUtils::asset();
    if (!asset)
        throw Vs::Exception(localized("ScriptNoModel", "There is no active model."));
    const Vs::Component& found = ScriptedModel::find(*asset, component);
    const auto mesh = found.body ? found.body->mesh() : nullptr;
    if (!mesh)
        throw Vs::Exception(localizedFormat("ScriptNoBody", "\"%1%\" has no body of its own.", found.name));
    static_assert(sizeof(Vs::BodyMesh::Face) == 3 * sizeof(uint32_t));
    return {bufferOf("positions", mesh->positions, 3, mesh),
            bufferOf("normals", mesh->normals, 3, mesh),
            bufferOf("triangles", mesh->triangles, 3, mesh),
            {"faces", Buffer::Number::Unsigned32, mesh->faces.size(), 3, mesh->faces.data(), mesh},
            bufferOf("edge_points", mesh->edgePoints, 3, mesh),
            bufferOf("edge_starts", mesh->edgeStarts, 1, mesh),
            bufferOf("vertices", mesh->vertexPoints, 3, mesh)};
}

/// Makes the watch available to scripts; it follows nothing until a script asks.
struct Known
{
    Known() { Vs::ScriptModel::set(&Watch::get()); }
} theKnown;

std::wstring modelPart(const Vs::Asset& asset)
{
    return Vs::Strings::widen(to_string(asset.guid())) + L'/';
}

} // namespace

std::wstring ScriptedModel::keyOf(const Vs::Asset& asset, const Vs::Component& component)
{
    return modelPart(asset) + Vs::Strings::widen(component.id);
}

const Vs::Component& ScriptedModel::find(const Vs::Asset& asset, const std::wstring& key)
{
    const std::wstring model = modelPart(asset);
    if (!key.starts_with(model))
        throw Vs::Exception(localized("ScriptOtherModel", "The component is of a model that isn't active."));
    const std::string id = Vs::Strings::narrow(key.substr(model.size()));
    const Vs::Component* found = id.empty() ? asset.components() : asset.findComponent(id);
    if (!found)
        throw Vs::Exception(localized("ScriptComponentGone", "The component isn't in the model any more."));
    return *found;
}

std::vector<std::string> ScriptedModel::added(const Vs::Asset& asset)
{
    return Watch::get().added(asset);
}

} // namespace Vu
