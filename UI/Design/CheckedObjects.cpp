#include "UI/Design/CheckedObjects.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Body/BodyProperties.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Measure/BodyParts.h"
#include "Server/DataModel/Measure/MeasureMgr.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "UI/Design/Localized.h"

#include <boost/format.hpp>

#include <algorithm>
#include <cmath>
#include <set>
#include <stdexcept>

namespace Vu::Design {
namespace {

/// Another version of the kernel, or a round trip through a file, may change the last digits.
constexpr double kTolerance = 1e-4;
/// The accuracy of measuring (MeasureMgr), for both values.
constexpr double kExactTolerance = 2e-6;
/// Boxes are those of meshes, whose facets deviate from round surfaces by a fraction of the size.
constexpr double kBoundsTolerance = 1e-3;
constexpr double kExactBoundsTolerance = 1e-6;

BBox boxOf(const CheckedObjects::Occurrence& occurrence)
{
    BBox box;
    const std::shared_ptr<const Vs::BodyMesh> mesh = occurrence.component->body->mesh();
    if (!mesh)
        return box;
    const std::vector<float>& at = mesh->positions;
    for (size_t i = 0; i + 2 < at.size(); i += 3)
        box.add(occurrence.placement * GkPoint3d(at[i], at[i + 1], at[i + 2]));
    return box;
}

Vs::BodyParts partsOf(const CheckedObjects::Occurrence& occurrence)
{
    try {
        return Vs::bodyParts(*occurrence.component->body);
    } catch (const std::runtime_error& error) {
        throw Vs::Exception(occurrence.component->name.text() + L": " + Vs::Strings::widen(error.what()));
    }
}

} // namespace

CheckedObjects::CheckedObjects(Vs::Asset& asset, std::wstring_view path, const Choice& choice)
    : m_asset(asset), m_choice(choice)
{
    if (path.empty()) {
        collect(*asset.components(), GkMatrix3d(), true);
        return;
    }
    Vs::Status status;
    const auto found = Vs::findPath(asset, path, status);
    const Vs::Component* component = found ? Vs::resolvePath(*found, asset, status) : nullptr;
    if (!component)
        throw Vs::Exception(status.toString());
    const GkMatrix3d placement = Vs::placementOf(*found, asset).value_or(GkMatrix3d());
    m_components.push_back({component, placement});
    collect(*component, placement, true);
}

void CheckedObjects::collect(const Vs::Component& component, const GkMatrix3d& placement, bool isTop)
{
    if (!isTop) {
        if (m_choice.visibleOnly && !component.visible)
            return;
        m_components.push_back({&component, placement});
    }
    if (component.body)
        m_bodies.push_back({&component, placement});
    for (const auto& child : component.children)
        collect(*child, placement * child->placement, false);
}

std::wstring CheckedObjects::nameOf(const wchar_t* value, const Occurrence& occurrence) const
{
    return value + (L" of " + Vs::pathText(Vs::ObjectPath{.component = occurrence.component->id}, m_asset));
}

std::vector<CheckedValue> CheckedObjects::measures(int type, const wchar_t* name, const wchar_t* unit) const
{
    const double tolerance = m_choice.exact ? kExactTolerance : kTolerance;
    std::vector<CheckedValue> values;
    double sum = 0;
    Vs::Status status;
    bool any = false;
    for (const Occurrence& each : m_bodies) {
        const Vs::StrongRef<Vs::LogicalSelection> selection(
            new Vs::LogicalSelection(&m_asset, each.component->id, nullptr));
        Vs::MeasureResult result;
        // A surface among solids has no volume, and adds none.
        if (!Vs::MeasureMgr::get()->measure(selection, Vs::EMeasureType(type), result, &status))
            continue;
        any = true;
        sum += result.value;
        if (m_choice.eachBody)
            values.push_back({nameOf(name, each), result.value, tolerance, 0, unit});
    }
    if (!any)
        throw Vs::Exception(m_bodies.empty() ? localized("CheckNoBody", "There is no body to check.")
                                             : status.toString());
    if (!m_choice.eachBody)
        values.push_back({name, sum, tolerance, 0, unit});
    return values;
}

std::vector<CheckedValue> CheckedObjects::volumes() const
{
    return measures(int(Vs::EMeasureType::Volume), L"volume", L"mm³");
}

std::vector<CheckedValue> CheckedObjects::areas() const
{
    return measures(int(Vs::EMeasureType::Area), L"area", L"mm²");
}

std::vector<CheckedValue> CheckedObjects::bounds() const
{
    std::vector<CheckedValue> values;
    const auto add = [&](const BBox& box, const std::wstring& behind) {
        const double tolerance = (m_choice.exact ? kExactBoundsTolerance : kBoundsTolerance) * box.diagonal();
        const double numbers[] = {box.low().x,  box.low().y,  box.low().z,
                                  box.high().x, box.high().y, box.high().z};
        constexpr const wchar_t* kNames[] = {L"low x", L"low y", L"low z", L"high x", L"high y", L"high z"};
        for (size_t i = 0; i < std::size(kNames); ++i)
            values.push_back({kNames[i] + behind, numbers[i], 0, tolerance, L"mm"});
    };
    BBox all;
    for (const Occurrence& each : m_bodies) {
        const BBox box = boxOf(each);
        all.add(box);
        if (m_choice.eachBody && !box.isEmpty())
            add(box, nameOf(L"", each));
    }
    if (all.isEmpty())
        throw Vs::Exception(localized("CheckNothingSeen", "There is nothing with bounds to check."));
    if (!m_choice.eachBody)
        add(all, {});
    return values;
}

std::vector<CheckedValue> CheckedObjects::counts() const
{
    std::set<const Vs::Body*> shapes;
    for (const Occurrence& each : m_bodies)
        shapes.insert(each.component->body.get());
    return {{L"components", double(m_components.size())},
            {L"bodies", double(m_bodies.size())},
            {L"different bodies", double(shapes.size())}};
}

std::vector<CheckedValue> CheckedObjects::centres() const
{
    double volume = 0;
    GkVector3d moment;
    Vs::Status status;
    BBox box;
    for (const Occurrence& each : m_bodies) {
        box.add(boxOf(each));
        const auto own = Vs::bodyProperties(*each.component->body, status);
        // A surface among solids weighs nothing.
        if (!own || !own->closed)
            continue;
        const Vs::BodyProperties found = Vs::placed(*own, each.placement);
        volume += found.volume;
        moment = moment + found.volumeCentre.asVector() * found.volume;
    }
    if (!(volume > 0))
        throw Vs::Exception(m_bodies.empty() ? localized("CheckNoBody", "There is no body to check.")
                                             : localized("CheckNoSolid", "There is no solid to check."));
    const GkVector3d centre = moment * (1 / volume);
    const double tolerance = (m_choice.exact ? kExactTolerance : kTolerance) * box.diagonal();
    return {{L"centre x", centre.x, 0, tolerance, L"mm"},
            {L"centre y", centre.y, 0, tolerance, L"mm"},
            {L"centre z", centre.z, 0, tolerance, L"mm"}};
}

std::vector<CheckedValue> CheckedObjects::parts() const
{
    double solids = 0, faces = 0, edges = 0;
    for (const Occurrence& each : m_bodies) {
        Vs::Status ignored;
        if (const auto own = Vs::bodyProperties(*each.component->body, ignored))
            solids += own->solids;
        const Vs::BodyParts found = partsOf(each);
        faces += static_cast<double>(found.faces.size());
        edges += static_cast<double>(found.edges.size());
    }
    return {{L"solids", solids}, {L"faces", faces}, {L"edges", edges}};
}

std::vector<CheckedValue> CheckedObjects::freeEdges() const
{
    double free = 0, shared = 0, open = 0;
    for (const Occurrence& each : m_bodies) {
        const Vs::BodyParts found = partsOf(each);
        std::vector<int> faces(found.edges.size());
        for (const Vs::PartFacts& face : found.faces)
            for (const uint32_t edge : face.bounds)
                ++faces[edge];
        free += static_cast<double>(std::count(faces.begin(), faces.end(), 1));
        shared += static_cast<double>(std::count_if(faces.begin(), faces.end(), [](int n) { return n > 2; }));
        Vs::Status ignored;
        const auto own = Vs::bodyProperties(*each.component->body, ignored);
        open += !own || !own->closed;
    }
    return {{L"free edges", free}, {L"edges of more than two faces", shared}, {L"open bodies", open}};
}

std::vector<CheckedValue> CheckedObjects::colours() const
{
    std::vector<CheckedValue> values;
    for (const Occurrence& each : m_components) {
        const Vs::Component& component = *each.component;
        if (component.colour || component.body)
            values.push_back({nameOf(L"colour", each),
                              colourText(component.colour.value_or(component.body ? component.body->colour()
                                                                                  : Vs::Colour()))});
    }
    if (values.empty())
        throw Vs::Exception(localized("CheckNoColour", "There is nothing that has a colour."));
    return values;
}

std::wstring colourText(const Vs::Colour& colour)
{
    const auto part = [](float value) { return std::lround(std::clamp(value, 0.0f, 1.0f) * 255); };
    return (boost::wformat(L"#%02x%02x%02x%02x") % part(colour.r) % part(colour.g) % part(colour.b) %
            part(colour.a))
        .str();
}

} // namespace Vu::Design
