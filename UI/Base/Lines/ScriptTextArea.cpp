// The subject area "Script": answers in JSON, for programs. Lengths are in millimetres whatever the user
// sees.

#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommand.h"
#include "Server/Body/Body.h"
#include "Server/Body/BodyProperties.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
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

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kArea = L"Script";

class ScriptArea : public Vs::PythonEntry<ScriptArea, Vs::TextCommandSubjectArea>
{
public:
    ScriptArea() : PythonEntry(kArea, L"Commands that tell programs what there is, as JSON", true) {}
    Checks checks() const override { return Checks::Everything; }
};

QJsonArray json(const GkPoint3d& point)
{
    return {point.x, point.y, point.z};
}

QString json(const std::wstring& text)
{
    return QString::fromStdWString(text);
}

TextCommandResult answer(const QJsonDocument& document)
{
    return {0, QString::fromUtf8(document.toJson(QJsonDocument::Compact)).toStdWString()};
}

Vs::Asset& activeAsset()
{
    Vs::Asset* asset = ActiveAssetUtils::asset();
    if (!asset)
        throw Vs::Exception(localized("ScriptNoModel", "There is no active model."));
    return *asset;
}

/// The component and where its own coordinates lie in the model's.
struct Place
{
    const Vs::Component* component;
    std::wstring path; ///< Empty for the root.
    GkMatrix3d matrix;
};

Place placeOf(const Vs::Asset& asset, const TextCommandParameters& parameters)
{
    if (parameters.parameters() == 0 || parameters[0].empty())
        return {asset.components(), {}, {}};
    Vs::Status status;
    const auto path = Vs::findPath(asset, parameters[0], status);
    if (!path)
        throw Vs::Exception(status.toString());
    const Vs::ObjectPath component{.component = path->component};
    return {asset.findComponent(path->component), Vs::pathText(component, asset),
            Vs::placementOf(component, asset).value_or(GkMatrix3d())};
}

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

QJsonObject describe(const Vs::Component& component, const std::wstring& path, bool deep)
{
    QJsonArray rows;
    for (const auto& row : component.placement.entry)
        rows.append(QJsonArray{row[0], row[1], row[2], row[3]});
    QJsonObject object{{"path", json(path)},
                       {"name", json(component.name)},
                       {"visible", component.visible},
                       {"placement", rows}};
    if (component.body)
        object["body"] = json(component.body->name());
    QJsonArray children;
    const std::vector<std::wstring> paths = Vs::childPaths(component, path);
    for (size_t i = 0; i < paths.size(); ++i)
        if (deep)
            children.append(describe(*component.children[i], paths[i], deep));
        else
            children.append(json(paths[i]));
    object["children"] = children;
    return object;
}

TextCommandResult component(const TextCommandParameters& parameters)
{
    const Place place = placeOf(activeAsset(), parameters);
    return answer(QJsonDocument(describe(*place.component, place.path, parameters.hasFlag(L"Deep"))));
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
    return answer(QJsonDocument(QJsonObject{{"name", json(place.component->body->name())},
                                            {"volume", properties->volume},
                                            {"area", properties->area},
                                            {"closed", properties->closed},
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
    for (const auto& selected : selectionSet().selections())
        if (const auto* logical = Vs::cast<Vs::LogicalSelection>(selected.get()))
            paths.append(json(Vs::pathText(logical->path(), asset)));
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
    Vs::Document& document = *activeAsset().document();
    for (unsigned i = 0; i < document.assets(); ++i)
        document.asset(i)->markClean();
    for (unsigned i = 0; i < document.hiddenAssets(); ++i)
        document.hiddenAsset(i)->markClean();
    return {0, {}};
}

struct ScriptRow
{
    const wchar_t* name;
    const wchar_t* help;
    TextCommandResult (*run)(const TextCommandParameters&);
    const char* format = "";
};

template <const ScriptRow& kRow>
class TextCmdScript : public Vs::PythonEntry<TextCmdScript<kRow>, Vs::TextCommand>
{
public:
    TextCmdScript()
        : Vs::PythonEntry<TextCmdScript<kRow>, Vs::TextCommand>(kArea, kRow.name, kRow.help, kRow.format,
                                                                false, true)
    {
    }
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        return kRow.run(parameters);
    }
};

// clang-format off
constexpr ScriptRow kDocuments = {L"Documents", L"Tells the open documents", documents};
constexpr ScriptRow kComponent = {L"Component", L"[<path>] [/Deep] Tells a component of the active model, or its root, and the paths of its children; /Deep tells all below it", component, "%s"};
constexpr ScriptRow kBody      = {L"Body",      L"<path> Tells what a body measures, in mm", body, "%s"};
constexpr ScriptRow kBounds    = {L"Bounds",    L"[<path>] Tells the lowest and the highest corner of a component or of the model; an empty list if there is nothing", bounds, "%s"};
constexpr ScriptRow kSelection = {L"Selection", L"Tells the paths of what is selected", selection};
constexpr ScriptRow kSelect    = {L"Select",    L"[<path>...] Selects these objects in place of all others", select};
constexpr ScriptRow kCamera    = {L"Camera",    L"Tells the camera of the active view", camera};
constexpr ScriptRow kDiscard   = {L"DiscardChanges", L"Lets the active document be closed without saving, and without a question", discard};
constexpr ScriptRow kSettle    = {L"Settle",    L"Finishes what the lines before have left for later", settle};
// clang-format on

ScriptArea theArea;
TextCmdScript<kDocuments> theDocuments;
TextCmdScript<kComponent> theComponent;
TextCmdScript<kBody> theBody;
TextCmdScript<kBounds> theBounds;
TextCmdScript<kSelection> theSelection;
TextCmdScript<kSelect> theSelect;
TextCmdScript<kCamera> theCamera;
TextCmdScript<kDiscard> theDiscard;
TextCmdScript<kSettle> theSettle;

} // namespace

} // namespace Vu
