// The checks of a transcript: lines that compare the active model with its state when the transcript was
// made.

#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommand.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Measure/MeasureMgr.h"
#include "Server/DataModel/ModelDigest.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectedPaths.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Commands/Transcripts/NormalValidationWidget.h"
#include "UI/Design/CheckedObjects.h"
#include "UI/Design/ExpectedValues.h"
#include "UI/Design/Localized.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/format.hpp>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Vu::Design {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;
using Values = std::vector<CheckedValue>;

constexpr const wchar_t* kExact = L"Exact";

std::wstring parameterIn(const TextCommandParameters& parameters, unsigned index)
{
    return index < parameters.parameters() ? parameters[index] : std::wstring();
}

template <Values (CheckedObjects::*measure)() const>
Values valuesOf(Vs::Asset& asset, const TextCommandParameters& parameters)
{
    const CheckedObjects::Choice choice = {.visibleOnly = parameters.hasFlag(L"VisibleOnly"),
                                           .eachBody = parameters.hasFlag(L"EachBody"),
                                           .exact = parameters.hasFlag(kExact)};
    return (CheckedObjects(asset, parameterIn(parameters, 1), choice).*measure)();
}

std::wstring selectionText(const Vs::Asset& asset)
{
    const AssetSession* session = SessionMgr::get()->activeAssetSession();
    std::vector<std::wstring> paths = Vs::pathTextsIn(session->selectionManager()->selectionSet(), asset);
    // The order is that of the clicks, which doesn't matter.
    std::sort(paths.begin(), paths.end());
    return boost::algorithm::join(paths, L" ");
}

std::wstring cameraText(const GraphicsView* view)
{
    const Vs::Scene::ViewFragment* fragment = view ? view->modelFragment() : nullptr;
    if (!fragment)
        throw Vs::Exception(localized("CheckNoCamera", "There is no view whose camera can be checked."));
    const Vs::Scene::Camera& camera = *fragment->camera();
    std::wstring text = camera.projection() == Vs::Scene::kParallelProjection ? L"parallel" : L"perspective";
    const GkPoint3d& position = camera.position();
    const GkPoint3d& target = camera.target();
    const GkVector3d up = camera.screenUp();
    // The number of digits to which cameras agree that came to the same place by different ways.
    for (const double number : {position.x, position.y, position.z, target.x, target.y, target.z, up.x, up.y,
                                up.z, camera.extentsWidth(), camera.extentsHeight()})
        text += (boost::wformat(L" %.5g") % (std::abs(number) < 1e-6 ? 0.0 : number)).str();
    return text;
}

/// "camera" for the shown one; of several split views the second is "camera of view 2".
std::vector<std::pair<std::wstring, const GraphicsView*>> views()
{
    std::vector<GraphicsCanvas*> canvases;
    GraphicsCanvas::allCanvases(canvases);
    std::erase_if(canvases, [](const GraphicsCanvas* canvas) { return !canvas->view(); });
    if (canvases.size() < 2)
        return {{L"camera", ActiveAssetUtils::graphicsView()}};
    std::vector<std::pair<std::wstring, const GraphicsView*>> all;
    for (const GraphicsCanvas* canvas : canvases)
        all.emplace_back(all.empty() ? L"camera" : L"camera of view " + std::to_wstring(all.size() + 1),
                         canvas->view());
    return all;
}

std::wstring numbers(std::initializer_list<double> all)
{
    std::wstring text;
    for (const double number : all)
        text += (text.empty() ? L"" : L",") +
                (boost::wformat(L"%.7g") % (std::abs(number) < 1e-6 ? 0.0 : number)).str();
    return text;
}

/// Each component separately, so that a differing digest can be explained.
class Reasons
{
public:
    explicit Reasons(const Vs::Asset& asset)
    {
        add(*asset.components(), {});
        for (const auto& [key, value] : asset.settings())
            m_values.push_back({L"setting " + Vs::Strings::widen(key), L"value " + value});
    }
    const Values& values() const { return m_values; }

private:
    /// More would make references too long to review.
    static constexpr size_t kMost = 500;

    void add(const Vs::Component& component, const std::wstring& path)
    {
        const std::vector<std::wstring> paths = Vs::childPaths(component, path);
        for (size_t i = 0; i < paths.size() && m_values.size() < kMost; ++i) {
            const Vs::Component& child = *component.children[i];
            m_values.push_back({L"component " + paths[i], textOf(child)});
            add(child, paths[i]);
        }
    }
    std::wstring textOf(const Vs::Component& component)
    {
        const GkMatrix3d placement = component.placement;
        const auto& m = placement.entry;
        std::wstring text = L"place " + numbers({m[0][3], m[1][3], m[2][3]});
        text += L"; axes " +
                numbers({m[0][0], m[1][0], m[2][0], m[0][1], m[1][1], m[2][1], m[0][2], m[1][2], m[2][2]});
        text += L"; colour " + (component.colour ? colourText(*component.colour) : std::wstring(L"none"));
        text += L"; shape " +
                (component.body ? (boost::wformat(L"%016x") % m_bodies.of(*component.body)).str() : L"none");
        return text + L"; visible " + (component.visible ? L"yes" : L"no");
    }

    Vs::BodyDigests m_bodies;
    Values m_values;
};

/// Of checks that take a description and nothing else.
void refuseSurplus(const TextCommandParameters& parameters)
{
    if (parameters.parameters() > 1)
        throw Vs::Exception(localizedFormat(
            "CheckSurplus", "\"%1%\" is one word too many. A description with blanks needs quotes.",
            parameters[1]));
}

Values digest(Vs::Asset& asset, const TextCommandParameters& parameters)
{
    refuseSurplus(parameters);
    Values values{{L"model", (boost::wformat(L"%016x") % Vs::modelDigest(asset)).str()}};
    if (parameters.hasFlag(L"Selection"))
        values.push_back({L"selection", selectionText(asset)});
    if (parameters.hasFlag(L"Camera"))
        for (const auto& [name, view] : views())
            values.push_back({name, cameraText(view)});
    const Values reasons = Reasons(asset).values();
    values.insert(values.end(), reasons.begin(), reasons.end());
    return values;
}

Values selection(Vs::Asset& asset, const TextCommandParameters& parameters)
{
    refuseSurplus(parameters);
    return {{L"selection", selectionText(asset)}};
}

Values distance(Vs::Asset& asset, const TextCommandParameters& parameters)
{
    if (parameters.parameters() < 3)
        throw Vs::Exception(localized("CheckTwoPaths", "The paths of two objects are needed."));
    Vs::StrongRef<Vs::LogicalSelection> ends[2];
    Vs::Status status;
    for (const unsigned i : {0u, 1u}) {
        const auto path = Vs::findPath(asset, parameters[i + 1], status);
        if (!path)
            throw Vs::Exception(status.toString());
        ends[i] = Vs::StrongRef<Vs::LogicalSelection>(new Vs::LogicalSelection(&asset, *path, nullptr));
    }
    Vs::MeasureResult result;
    if (!Vs::MeasureMgr::get()->measure(ends[0], ends[1], Vs::EMeasureType::Distance, result, &status))
        throw Vs::Exception(status.toString());
    constexpr double kRelative = 1e-4, kAbsolute = 1e-6;
    return {{L"distance", result.value, kRelative, kAbsolute, L"mm"}};
}

/// One row for each check: its line, and the options that the window offers.
struct CheckRow
{
    const wchar_t* area;
    const wchar_t* name;
    const wchar_t* help;
    const wchar_t* options;
    Values (*values)(Vs::Asset&, const TextCommandParameters&);
    bool inWindow = true; ///< Needs no more than a description.
};

// clang-format off
constexpr CheckRow kVolume = {L"Body",      L"CheckVolume", L"<description> [<path>] [= <value>...] [/VisibleOnly] [/EachBody] [/Exact] Compares the volume of the solids with the reference of this description, or with what the line says: = 6000 mm^3 +- 0.1 %", L"VisibleOnly/EachBody/Exact", valuesOf<&CheckedObjects::volumes>};
constexpr CheckRow kSkin   = {L"Body",      L"CheckArea",   L"<description> [<path>] [= <value>...] [/VisibleOnly] [/EachBody] [/Exact] Compares the area of the faces with the reference of this description, or with what the line says: = 6000 mm^3 +- 0.1 %", L"VisibleOnly/EachBody/Exact", valuesOf<&CheckedObjects::areas>};
constexpr CheckRow kBounds = {L"Body",      L"CheckBounds", L"<description> [<path>] [= <value>...] [/VisibleOnly] [/EachBody] [/Exact] Compares the box around the bodies with the reference of this description, or with what the line says: = 6000 mm^3 +- 0.1 %", L"VisibleOnly/EachBody/Exact", valuesOf<&CheckedObjects::bounds>};
constexpr CheckRow kCount  = {L"Component", L"CheckCount",  L"<description> [<path>] [= <value>...] [/VisibleOnly] Compares how many components and bodies there are with the reference of this description, or with what the line says: = 6000 mm^3 +- 0.1 %", L"VisibleOnly", valuesOf<&CheckedObjects::counts>};
constexpr CheckRow kCentre = {L"Body",      L"CheckCentre", L"<description> [<path>] [= <value>...] [/VisibleOnly] [/Exact] Compares the centre of mass of the solids with the reference of this description, or with what the line says: = 5,10,15 +- 0.01 mm", L"VisibleOnly/Exact", valuesOf<&CheckedObjects::centres>};
constexpr CheckRow kParts  = {L"Body",      L"CheckParts",  L"<description> [<path>] [= <value>...] [/VisibleOnly] Compares how many solids, faces and edges there are with the reference of this description, or with what the line says: = 1,6,12", L"VisibleOnly", valuesOf<&CheckedObjects::parts>};
constexpr CheckRow kFree   = {L"Body",      L"CheckFreeEdges", L"<description> [<path>] [= <value>...] [/VisibleOnly] Compares how many edges have one face alone, how many more than two, and how many bodies are open, with the reference of this description, or with what the line says: = 0,0,0", L"VisibleOnly", valuesOf<&CheckedObjects::freeEdges>};
constexpr CheckRow kColour = {L"Component", L"CheckColours", L"<description> [<path>] [= <value>...] [/VisibleOnly] Compares the colours of the components with the reference of this description, or with what the line says: = #ff0000ff", L"VisibleOnly", valuesOf<&CheckedObjects::colours>};
constexpr CheckRow kSelected = {L"Model",     L"CheckSelection", L"<description> [= <value>...] Compares what is selected with the reference of this description, or with what the line says: = Plate:1/Body1/Edge1", L"", selection};
constexpr CheckRow kDistance = {L"Measure", L"CheckDistance", L"<description> <path> <path> [= <value>...] Compares the shortest distance of two objects with the reference of this description, or with what the line says: = 40 mm +- 0.01 mm", L"", distance, false};
constexpr CheckRow kDigest = {L"Model",     L"CheckDigest", L"<description> [= <digest>] [/Selection] [/Camera] Compares names, places, colours, visibility, shapes and settings with the reference of this description", L"Selection/Camera", digest};
// clang-format on

std::vector<std::wstring> optionsOf(const CheckRow& row)
{
    std::vector<std::wstring> options;
    if (*row.options)
        boost::algorithm::split(options, row.options, boost::algorithm::is_any_of(L"/"));
    return options;
}

/// The name of the reference: everything in the line that affects the result, regardless of the order of its
/// options.
std::wstring referenceName(const CheckRow& row, const TextCommandParameters& parameters)
{
    std::wstring name = row.area + std::wstring(L".") + row.name;
    for (unsigned i = 0; i < parameters.parameters(); ++i)
        name += L' ' + parameters[i];
    for (const std::wstring& option : optionsOf(row))
        if (option != kExact && parameters.hasFlag(option))
            name += L" /" + option;
    return name;
}

/// The index of the parameter "=", which the expected values follow. The first parameter is the description.
std::optional<unsigned> equalsSign(const TextCommandParameters& parameters)
{
    for (unsigned i = 1; i < parameters.parameters(); ++i)
        if (parameters[i] == L"=")
            return i;
    return std::nullopt;
}

TextCommandParameters before(unsigned sign, const TextCommandParameters& parameters)
{
    std::vector<std::wstring> words;
    for (unsigned i = 0; i < sign; ++i)
        words.push_back(parameters[i]);
    return {std::move(words), parameters.flags()};
}

std::wstring textBehind(unsigned sign, const TextCommandParameters& parameters)
{
    std::wstring text;
    for (unsigned i = sign + 1; i < parameters.parameters(); ++i)
        text += (text.empty() ? L"" : L" ") + parameters[i];
    return text;
}

template <const CheckRow& kRow>
class TextCmdCheck : public Vs::PythonEntry<TextCmdCheck<kRow>, Vs::TextCommand>
{
public:
    TextCmdCheck()
        : Vs::PythonEntry<TextCmdCheck<kRow>, Vs::TextCommand>(kRow.area, kRow.name, kRow.help, "%s%s", true,
                                                               true)
    {
        if (kRow.inWindow)
            m_controls.emplace(kRow.area, kRow.name, kRow.options);
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        const std::wstring name = referenceName(kRow, parameters);
        Vs::Asset* asset = ActiveAssetUtils::asset();
        if (!asset)
            return {1, localizedFormat("CheckNoModel", "%1%: there is no active model to check.", name)};
        try {
            const std::optional<unsigned> sign = equalsSign(parameters);
            return sign ? checkExpected(name, kRow.values(*asset, before(*sign, parameters)),
                                        textBehind(*sign, parameters))
                        : checkAgainstReference(name, kRow.values(*asset, parameters));
        } catch (const Vs::Exception& error) {
            return {1, localizedFormat("CheckImpossible", "%1%: %2%", name, error.message())};
        }
    }

private:
    std::optional<NormalValidationWidget> m_controls;
};

constexpr AreaRow kBodyAreaRow = {L"Body", L"Commands about the bodies of the active model"};

constexpr AreaRow kComponentAreaRow = {L"Component", L"Commands about the components of the active model"};

const SubjectArea<kBodyAreaRow> theBodyArea;
const SubjectArea<kComponentAreaRow> theComponentArea;
TextCmdCheck<kVolume> theVolume;
TextCmdCheck<kSkin> theSkin;
TextCmdCheck<kBounds> theBounds;
TextCmdCheck<kCount> theCount;
TextCmdCheck<kCentre> theCentre;
TextCmdCheck<kParts> theParts;
TextCmdCheck<kFree> theFreeEdges;
TextCmdCheck<kColour> theColours;
TextCmdCheck<kSelected> theSelection;
TextCmdCheck<kDistance> theDistance;
TextCmdCheck<kDigest> theDigest;

} // namespace
} // namespace Vu::Design
