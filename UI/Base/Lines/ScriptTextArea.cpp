// The subject area "Script": answers in JSON, for programs. Lengths are in millimetres whatever unit the user
// sees.

#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommand.h"
#include "Server/Body/Body.h"
#include "Server/Body/BodyProperties.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/AllAssets.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectedPaths.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Lines/ScriptLines.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Script/ScriptedModel.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/GraphicsView.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Vu {

namespace {

using ScriptLines::activeAsset;
using ScriptLines::answer;
using ScriptLines::json;
using ScriptLines::kArea;
using ScriptLines::Place;
using ScriptLines::placeOf;
using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr AreaRow kScriptAreaRow = {kArea, L"Commands that describe to programs what there is, as JSON",
                                    true};

TextCommandResult documents(const TextCommandParameters&)
{
    QJsonArray list;
    const DocumentSession* session = SessionMgr::get()->activeDocumentSession();
    for (const Vs::Document* document : SessionMgr::get()->openDocuments()) {
        QJsonArray assets;
        for (unsigned k = 0; k < document->assets(); ++k)
            assets.append(json(document->asset(k)->name()));
        const AssetSession* shown =
            document->activeAsset() ? SessionMgr::get()->assetSession(document->activeAsset()) : nullptr;
        list.append(QJsonObject{{"session", json(shown ? shown->serialize() : std::wstring())},
                                {"name", json(document->displayName())},
                                {"path", json(document->path())},
                                {"changed", document->isDirty(true)},
                                {"active", session && session->document() == document},
                                {"assets", assets}});
    }
    return answer(QJsonDocument(list));
}

/// A colour as linear red, green, blue and opacity from 0 to 1; null without one.
QJsonValue colourJson(const std::optional<Vs::Colour>& colour)
{
    return colour ? QJsonValue(QJsonArray{colour->r, colour->g, colour->b, colour->a}) : QJsonValue();
}

QJsonObject describe(const Vs::Asset& asset, const Vs::Component& component, const std::wstring& path,
                     bool deep)
{
    QJsonObject object{{"id", json(ScriptedModel::keyOf(asset, component))},
                       {"path", json(path)},
                       {"name", json(component.name)},
                       {"visible", component.visible},
                       {"colour", colourJson(component.colour)},
                       {"placement", json(component.placement)}};
    if (component.body) {
        object["body"] = json(component.body->name());
        object["body colour"] = colourJson(component.body->colour());
    }
    QJsonArray children;
    const std::vector<std::wstring> paths = Vs::childPaths(component, path);
    for (size_t i = 0; i < paths.size(); ++i)
        if (deep)
            children.append(describe(asset, *component.children[i], paths[i], deep));
        else
            children.append(json(paths[i]));
    object["children"] = children;
    return object;
}

TextCommandResult component(const TextCommandParameters& parameters)
{
    const Vs::Asset& asset = activeAsset();
    const Place place = placeOf(asset, parameters);
    QJsonObject told = describe(asset, *place.component, place.path, parameters.hasFlag(L"Deep"));
    if (parameters.hasFlag(L"Place"))
        told["place"] = json(place.matrix);
    return answer(QJsonDocument(told));
}

TextCommandResult added(const TextCommandParameters&)
{
    const Vs::Asset& asset = activeAsset();
    QJsonArray all;
    for (const std::string& id : ScriptedModel::added(asset))
        if (const Vs::Component* component = asset.findComponent(id))
            all.append(describe(asset, *component, Vs::pathText({.component = id}, asset), false));
    return answer(QJsonDocument(all));
}

TextCommandResult body(const TextCommandParameters& parameters)
{
    const Place place = placeOf(activeAsset(), parameters);
    if (!place.component->body)
        throw Vs::Exception(
            localizedFormat("ScriptNoBody", "\"%1%\" has no body of its own.", place.component->name));
    Vs::Status status;
    auto properties = Vs::bodyProperties(*place.component->body, status);
    if (!properties)
        throw Vs::Exception(status.toString());
    properties = Vs::placed(*properties, place.matrix);
    const Vs::Spread inertia = Vs::inertiaOf(properties->spread);
    return answer(QJsonDocument(
        QJsonObject{{"name", json(place.component->body->name())},
                    {"volume", properties->volume},
                    {"area", properties->area},
                    {"closed", properties->closed},
                    {"centre", json(properties->closed ? properties->volumeCentre : properties->areaCentre)},
                    {"inertia", QJsonArray{QJsonArray{inertia.xx, inertia.xy, inertia.xz},
                                           QJsonArray{inertia.xy, inertia.yy, inertia.yz},
                                           QJsonArray{inertia.xz, inertia.yz, inertia.zz}}},
                    {"solids", properties->solids},
                    {"faces", properties->faces}}));
}

void addBounds(const Vs::Component& component, const GkMatrix3d& matrix, BBox& bounds)
{
    if (const auto mesh = component.body ? component.body->mesh() : nullptr)
        for (size_t i = 0; i + 2 < mesh->positions.size(); i += 3)
            bounds.add(matrix *
                       GkPoint3d(mesh->positions[i], mesh->positions[i + 1], mesh->positions[i + 2]));
    for (const auto& child : component.children)
        addBounds(*child, matrix * child->placement, bounds);
}

TextCommandResult bounds(const TextCommandParameters& parameters)
{
    const Place place = placeOf(activeAsset(), parameters);
    BBox box;
    addBounds(*place.component, place.matrix, box);
    return answer(
        QJsonDocument(box.isEmpty() ? QJsonArray() : QJsonArray{json(box.low()), json(box.high())}));
}

Vs::SelectionSet& selectionSet()
{
    activeAsset();
    return SessionMgr::get()->activeAssetSession()->selectionManager()->selectionSet();
}

TextCommandResult selection(const TextCommandParameters&)
{
    const Vs::Asset& asset = activeAsset();
    QJsonArray paths;
    for (const std::wstring& path : Vs::pathTextsIn(selectionSet(), asset))
        paths.append(json(path));
    return answer(QJsonDocument(paths));
}

TextCommandResult select(const TextCommandParameters& parameters)
{
    Vs::Asset& asset = activeAsset();
    std::vector<Vs::StrongRef<Vs::Selection>> chosen;
    for (unsigned i = 0; i < parameters.parameters(); ++i) {
        Vs::Status status;
        const auto path = Vs::findPath(asset, parameters[i], status);
        if (!path)
            return {1, status.toString()};
        chosen.emplace_back(new Vs::LogicalSelection(&asset, *path, nullptr));
    }
    selectionSet().replace(chosen);
    return {0, {}};
}

TextCommandResult camera(const TextCommandParameters&)
{
    const GraphicsView* view = ActiveAssetUtils::graphicsView();
    if (!view || view->viewFragments().empty())
        throw Vs::Exception(localized("ScriptNoView", "There is no active view."));
    const Vs::Scene::Camera& camera = *view->viewFragments().front()->camera();
    const GkVector3d& up = camera.up();
    return answer(QJsonDocument(QJsonObject{{"eye", json(camera.position())},
                                            {"target", json(camera.target())},
                                            {"up", QJsonArray{up.x, up.y, up.z}},
                                            {"near", camera.clipNear()},
                                            {"far", camera.clipFar()},
                                            {"width", camera.extentsWidth()},
                                            {"height", camera.extentsHeight()},
                                            {"projection", camera.projection()}}));
}

TextCommandResult settle(const TextCommandParameters&)
{
    Application::get()->flushDeferredTasks();
    return {0, {}};
}

TextCommandResult discard(const TextCommandParameters&)
{
    for (Vs::Asset* asset : Vs::allAssets(*activeAsset().document()))
        asset->markClean();
    return {0, {}};
}

// clang-format off
constexpr ScriptLines::Row kDocuments = {L"Documents", L"Gives the open documents", documents};
constexpr ScriptLines::Row kComponent = {L"Component", L"[<path>] [/Deep] [/Id] [/Place] Gives a component of the active model, or its root, and the paths of its children; /Deep gives all below it, /Place where it lies in the model. With /Id, here and elsewhere, the id stands in place of the path", component, "%s"};
constexpr ScriptLines::Row kAdded     = {L"Added",     L"Gives the components that were added to the active model since quillet.design has made something", added};
constexpr ScriptLines::Row kBody      = {L"Body",      L"<path> [/Id] Gives the measures of a body, in mm", body, "%s"};
constexpr ScriptLines::Row kBounds    = {L"Bounds",    L"[<path>] [/Id] Gives the lowest and the highest corner of a component or of the model; an empty list if there is nothing", bounds, "%s"};
constexpr ScriptLines::Row kSelection = {L"Selection", L"Gives the paths of what is selected", selection};
constexpr ScriptLines::Row kSelect    = {L"Select",    L"[<path>...] Selects these objects in place of all others", select};
constexpr ScriptLines::Row kCamera    = {L"Camera",    L"Gives the camera of the active view", camera};
constexpr ScriptLines::Row kDiscard   = {L"DiscardChanges", L"Lets the active document be closed without saving, and without a question", discard};
constexpr ScriptLines::Row kSettle    = {L"Settle",    L"Finishes what the lines before have left for later", settle};
// clang-format on

const SubjectArea<kScriptAreaRow> theArea;
ScriptLines::Line<kDocuments> theDocuments;
ScriptLines::Line<kComponent> theComponent;
ScriptLines::Line<kAdded> theAdded;
ScriptLines::Line<kBody> theBody;
ScriptLines::Line<kBounds> theBounds;
ScriptLines::Line<kSelection> theSelection;
ScriptLines::Line<kSelect> theSelect;
ScriptLines::Line<kCamera> theCamera;
ScriptLines::Line<kDiscard> theDiscard;
ScriptLines::Line<kSettle> theSettle;

} // namespace

} // namespace Vu
