#include "UI/Base/Window/PropertyValues.h"

#include "Server/Body/MeshPoints.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Geometry/BBox.h"

#include <cmath>
#include <map>
#include <numeric>
#include <unordered_set>

namespace Vu {
namespace {

using Leaf = Vs::ObjectPath::Leaf;

PropertyValues::Kind kindOf(Leaf leaf, const Vs::Component& component)
{
    switch (leaf) {
    case Leaf::Component:
        return component.body ? PropertyValues::Part : PropertyValues::Assembly;
    case Leaf::Body:
        return PropertyValues::Body;
    case Leaf::Solid:
        return PropertyValues::Solid;
    case Leaf::Face:
        return PropertyValues::Face;
    case Leaf::Edge:
        return PropertyValues::Edge;
    case Leaf::Vertex:
        break;
    }
    return PropertyValues::Vertex;
}

/// Whether all faces are flat, so that their triangles have the exact size. Too many faces are not checked.
bool isFlat(const Vs::BodyMesh& mesh)
{
    constexpr size_t kMost = 1'000'000;
    // Normals have the precision of a float.
    constexpr float kSameDirection = 1e-5f;
    if (mesh.triangles.size() > kMost)
        return false;
    for (const Vs::BodyMesh::Face& face : mesh.faces) {
        const size_t first = 3 * size_t(face.firstTriangle), end = first + 3 * size_t(face.triangleCount);
        for (size_t i = first; i < end; ++i)
            for (size_t axis = 0; axis < 3; ++axis)
                if (std::abs(mesh.normals[3 * size_t(mesh.triangles[i]) + axis] -
                             mesh.normals[3 * size_t(mesh.triangles[first]) + axis]) > kSameDirection)
                    return false;
    }
    return true;
}

/// Collects what is selected, thing after thing.
class Collector
{
public:
    Collector(const Vs::Asset& asset, std::unordered_set<std::string> selected)
        : m_asset(asset), m_selected(std::move(selected))
    {
    }

    void add(const Vs::LogicalSelection& selection)
    {
        const Vs::ObjectPath& path = selection.path();
        Vs::Status gone;
        const Vs::Component* component = Vs::resolvePath(path, m_asset, gone);
        if (!component)
            return;
        ++m_values.counts[kindOf(path.leaf, *component)];
        m_values.isRoot = m_values.isRoot || (path.leaf == Leaf::Component && !path.isQualifiedAndPoppable());
        m_values.name.add(component->name.empty() && component->body ? component->body->name()
                                                                     : component->name);
        m_values.colour.add(colourOf(path, *component));
        const GkMatrix3d placement = Vs::placementOf(path, m_asset).value_or(GkMatrix3d());
        if (path.leaf == Leaf::Component)
            addPlace(placement * GkPoint3d());
        if (path.isPartOfBody())
            addPart(path, *component, placement);
        // Things inside something that is selected as well are counted once.
        else if (!isWithinSelected(path.component))
            addBodies(*component, placement, path.leaf == Leaf::Component && !component->body);
    }

    PropertyValues result()
    {
        for (const auto& [key, count] : m_bodies)
            m_values.parts.push_back({key.first, key.second, count});
        if (!m_bodies.empty() && !m_places.empty())
            m_values.parts.clear();
        else
            m_values.parts.insert(m_values.parts.end(), m_places.begin(), m_places.end());
        if (m_only && m_values.all() == 1 && m_bodies.size() == 1 && m_bodies.begin()->second == 1)
            m_values.size = *m_only;
        else if (!m_box.isEmpty() && m_places.empty())
            m_values.size = m_box.high() - m_box.low();
        return std::move(m_values);
    }

private:
    static std::optional<Vs::Colour> colourOf(const Vs::ObjectPath& path, const Vs::Component& component)
    {
        if (path.leaf == Leaf::Component)
            return component.colour ? component.colour
                   : component.body ? std::optional(component.body->colour())
                                    : std::nullopt;
        if (!component.body)
            return std::nullopt;
        if (path.leaf == Leaf::Face)
            if (const auto mesh = component.body->mesh(); mesh && path.index < mesh->faces.size())
                if (const int32_t own = mesh->faces[path.index].colour; own >= 0)
                    return mesh->colours[static_cast<size_t>(own)];
        return component.body->colour();
    }

    bool isWithinSelected(const std::string& id) const
    {
        for (size_t slash = id.rfind('/'); slash != std::string::npos && slash > 0;
             slash = id.rfind('/', slash - 1))
            if (m_selected.contains(id.substr(0, slash)))
                return true;
        return !id.empty() && m_selected.contains(std::string());
    }

    void addBodies(const Vs::Component& component, const GkMatrix3d& placement, bool isBelow)
    {
        if (component.body) {
            const double scale = Vs::scaleOf(placement);
            const bool isNew = m_bodies[{component.body, scale}]++ == 0;
            m_values.partsWithin += isBelow;
            const auto mesh = component.body->mesh();
            if (mesh && isNew && m_values.isSizeExact)
                m_values.isSizeExact = isFlat(*mesh);
            if (mesh && !mesh->bounds.isEmpty()) {
                m_box.add(boxOf(*mesh, placement, scale));
                if (!m_only)
                    m_only = (mesh->bounds.high() - mesh->bounds.low()) * scale;
            }
        }
        for (const auto& child : component.children)
            addBodies(*child, placement * child->placement, isBelow);
    }

    /// The box of a rotated mesh is smaller than that around its rotated box; with too many triangles the
    /// difference isn't worth the wait.
    BBox boxOf(const Vs::BodyMesh& mesh, const GkMatrix3d& placement, double scale)
    {
        constexpr double kSame = 1e-9;
        constexpr size_t kMostPoints = 500'000;
        const BBox around = mesh.bounds.transformed(placement);
        const size_t points = mesh.positions.size() / 3;
        if (around.diagonal() <= mesh.bounds.diagonal() * scale * (1 + kSame) ||
            m_points + points > kMostPoints)
            return around;
        m_points += points;
        BBox box;
        for (size_t i = 0; i < points; ++i)
            box.add(placement * Vs::pointAt(mesh.positions, i));
        return box;
    }

    void addPart(const Vs::ObjectPath& path, const Vs::Component& component, const GkMatrix3d& placement)
    {
        if (!component.body)
            return;
        m_places.push_back({component.body, Vs::scaleOf(placement), 1, path.leaf, path.index});
        if (path.leaf != Leaf::Vertex)
            return;
        if (const auto mesh = component.body->mesh(); mesh && 3 * path.index + 2 < mesh->vertexPoints.size())
            addPlace(placement * Vs::pointAt(mesh->vertexPoints, path.index));
    }

    void addPlace(const GkPoint3d& place)
    {
        // Rotation has cost the last digits.
        constexpr double kDigits = 1e9;
        const double places[] = {place.x, place.y, place.z};
        for (size_t axis = 0; axis < 3; ++axis)
            m_values.place[axis].add(std::round(places[axis] * kDigits) / kDigits);
    }

    struct Less
    {
        bool operator()(const std::pair<Vs::StrongRef<Vs::Body>, double>& a,
                        const std::pair<Vs::StrongRef<Vs::Body>, double>& b) const
        {
            return std::pair(a.first.get(), a.second) < std::pair(b.first.get(), b.second);
        }
    };

    const Vs::Asset& m_asset;
    std::unordered_set<std::string> m_selected;
    PropertyValues m_values;
    std::map<std::pair<Vs::StrongRef<Vs::Body>, double>, size_t, Less> m_bodies; ///< By body and scale.
    std::vector<Vs::PartToMeasure> m_places;
    BBox m_box;                       ///< Around whole things.
    size_t m_points = 0;              ///< Inspected individually so far.
    std::optional<GkVector3d> m_only; ///< The size of the first body, along its own axes.
};

} // namespace

size_t PropertyValues::all() const
{
    return std::accumulate(counts.begin(), counts.end(), size_t(0));
}

PropertyValues valuesOf(Vs::SelectionMgr& manager, const Vs::Asset& asset)
{
    std::vector<const Vs::LogicalSelection*> things;
    std::unordered_set<std::string> components;
    for (const auto& selection : manager.selectionSet().selections()) {
        const auto* object = Vs::cast<Vs::LogicalSelection>(selection.get());
        if (!object || object->asset() != &asset)
            continue;
        things.push_back(object);
        if (object->path().leaf == Leaf::Component)
            components.insert(object->componentId());
    }
    Collector collector(asset, std::move(components));
    for (const Vs::LogicalSelection* thing : things)
        collector.add(*thing);
    return collector.result();
}

} // namespace Vu
