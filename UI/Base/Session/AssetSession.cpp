#include "UI/Base/Session/AssetSession.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Types/Uuid.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Session/AssetGraphicsView.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/Environment.h"
#include "UI/Base/Session/Private/EditedComponent.h"
#include "UI/Base/Session/Private/SelectionDisplay.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/Session/SessionEvents.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Session/SessionTranscriptingHelper.h"
#include "UI/Base/View/ViewMgr.h"

namespace Vu {
namespace {

AssetSessionSerializableObjectFactory theFactory;

/// Between a document and the name of its asset.
constexpr wchar_t kBar = L'|';

Vs::Asset* findByGuid(const boost::uuids::uuid& guid)
{
    const Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    for (unsigned i = 0; i < documents->documents(); ++i) {
        const Vs::Document* document = documents->document(i);
        for (unsigned j = 0; j < document->assets(); ++j)
            if (document->asset(j)->guid() == guid)
                return document->asset(j);
    }
    return nullptr;
}

} // namespace

AssetSession::AssetSession(Vs::Asset* asset, DocumentSession* documentSession)
    : m_asset(asset),
      m_documentSession(documentSession),
      m_selection(std::make_unique<Vs::SelectionMgr>()),
      m_selectionDisplay(std::make_unique<SelectionDisplay>(asset, m_selection.get())),
      m_views(std::make_unique<ViewMgr>()),
      m_editedComponent(std::make_unique<EditedComponent>(*this))
{
    Vs::require(asset && documentSession, "a session is that of an asset in a document");
    m_selection->selectionState()->source(
        [this](std::vector<const Vs::SelectionFilter*>& filters) { pickFilters(filters); });
}

AssetSession::~AssetSession() = default;

/// Those of the input that takes the clicks.
void AssetSession::pickFilters(std::vector<const Vs::SelectionFilter*>& filters) const
{
    const auto* picking =
        SelectionCommandInput::currentOf(m_commands ? m_commands->activeCommand() : nullptr);
    if (picking)
        picking->pickFilters(filters);
}

ViewMgr* AssetSession::viewManager()
{
    if (!m_firstViewMade) {
        m_firstViewMade = true;
        createView();
    }
    return m_views.get();
}

GraphicsView* AssetSession::createView()
{
    m_firstViewMade = true;
    auto view = AssetGraphicsView::make(this);
    if (!view)
        return nullptr;
    GraphicsView* made = view.get();
    made->createScene();
    if (const GraphicsView* first = m_views->graphicsView())
        made->copyCamera(*first);
    m_views->add(std::move(view));
    return made;
}

EnvironmentDefinition* AssetSession::activeEnvironment() const
{
    return m_environment ? m_environment->environmentDefinition() : nullptr;
}

/// Takes the state of that environment out of those beneath the active one; null if it is none of them.
std::unique_ptr<EnvironmentState> AssetSession::stateOnWayBack(const EnvironmentDefinition* definition)
{
    for (EnvironmentState* state = m_environment.get(); state; state = state->returnState())
        if (state->returnState() && state->returnState()->environmentDefinition() == definition)
            return std::move(state->m_returnState);
    return nullptr;
}

void AssetSession::leaveEnvironment()
{
    const EnvironmentState* back = m_environment ? m_environment->returnState() : nullptr;
    activateEnvironment(back ? back->environmentDefinition() : nullptr, false);
}

std::string AssetSession::editedComponent() const
{
    const EnvironmentState* state = m_environment.get();
    while (state && state->component().empty())
        state = state->returnState();
    return state ? state->component() : std::string();
}

void AssetSession::activateEnvironment(EnvironmentDefinition* definition, bool onTop)
{
    activate(definition, onTop, {});
}

void AssetSession::enterComponent(EnvironmentDefinition* definition, const std::string& component)
{
    activate(definition, true, component);
}

void AssetSession::activate(EnvironmentDefinition* definition, bool onTop, const std::string& component)
{
    if (EnvironmentDefinition* left = activeEnvironment())
        left->onDeactivate(this);
    if (!definition) {
        m_environment.reset();
    } else {
        std::unique_ptr<EnvironmentState> next = onTop ? nullptr : stateOnWayBack(definition);
        if (!next) {
            next = std::make_unique<EnvironmentState>(this, definition,
                                                      onTop ? std::move(m_environment) : nullptr);
            next->m_component = component;
        }
        m_environment = std::move(next);
        definition->onActivate(this);
    }
    m_editedComponent->show();
    for (const Vs::Timing timing : {Vs::Timing::After, Vs::Timing::Notification}) {
        EnvironmentEvent event(this, definition, timing);
        SessionEventSource::get()->fireEnvironmentActivated(&event);
    }
}

std::wstring AssetSession::serialize() const
{
    // The guid of an asset that was never saved is another one when a transcript is played.
    const Vs::Document* document = m_asset->document();
    return document->isOnDisk() ? Vs::fromUuid(m_asset->guid())
                                : Vs::fromUuid(document->identifier()) + kBar + m_asset->name();
}

std::string AssetSession::factoryName() const
{
    return AssetSessionSerializableObjectFactory::kName;
}

Vs::SerializableObject* AssetSessionSerializableObjectFactory::deserialize(const std::wstring& text,
                                                                           bool create)
{
    SessionMgr* sessions = SessionMgr::get();
    const SessionTranscriptingHelper* transcripts = SessionTranscriptingHelper::get();
    const auto sessionOf = [&](Vs::Asset* asset) {
        return create ? sessions->assetSession(asset) : sessions->getOpenAssetSession(asset);
    };
    const boost::uuids::uuid guid = Vs::fromString(text);
    if (!guid.is_nil())
        return sessionOf(findByGuid(transcripts->actual(guid)));
    // A path may contain any character; in "path|name" only the last bar separates. An identifier contains no
    // bar.
    const size_t first = text.find(kBar);
    const bool byIdentifier = first != std::wstring::npos && !Vs::fromString(text.substr(0, first)).is_nil();
    const size_t bar = byIdentifier ? first : text.rfind(kBar);
    const Vs::Document* document = nullptr;
    if (bar != std::wstring::npos)
        document = transcripts->document(text.substr(0, bar));
    else if (const DocumentSession* current = sessions->currentDocumentSession())
        document = current->document();
    if (!document)
        return nullptr;
    return sessionOf(document->bestAsset(bar == std::wstring::npos ? text : text.substr(bar + 1)));
}

} // namespace Vu
