#include "Server/DataModel/Exchange/ExportedMeshes.h"

#include "Server/Base/Strings.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Model/ModelBody.h"
#include "Server/Types/LengthUnit.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <stdexcept>

namespace Vs::Exchange {

namespace {

constexpr uint32_t kNone = UINT32_MAX;
constexpr size_t kBufferSize = 1 << 18;

/// No value if it was cancelled; throws std::runtime_error if the body can't be meshed.
std::optional<std::shared_ptr<const BodyMesh>>
meshOf(const Body& body, const TranslatorRefinement& refinement, const std::function<bool(double)>& goOn)
{
    if (!goOn(0))
        return std::nullopt;
    const auto* own = cast<ModelBody>(&body);
    if (!own || refinement == TranslatorRefinement{})
        return body.mesh();
    bool cancelled = false;
    try {
        return own->meshFor(refinement, [&](double done) { return !(cancelled = !goOn(done)); });
    } catch (const std::runtime_error& error) {
        if (cancelled)
            return std::nullopt;
        throw std::runtime_error("\"" + Strings::narrow(body.name()) + "\" can't be meshed: " + error.what());
    }
}

void append(std::vector<float>& list, double x, double y, double z)
{
    list.insert(list.end(), {float(x), float(y), float(z)});
}

} // namespace

std::wstring nameOf(const Component& component)
{
    return component.name.empty() && component.body ? component.body->name() : component.name;
}

bool ExportedMeshes::make(const MeshExport& job)
{
    collect(job.root, {}, std::nullopt);
    for (size_t i = 0; i < m_occurrences.size(); ++i) {
        const auto [mesh, fresh] = m_meshes.try_emplace(m_occurrences[i].body);
        if (fresh) {
            const auto goOn = [&](double done) {
                return job.goOn(kShare * (double(i) + done) / double(m_occurrences.size()));
            };
            const auto made = meshOf(*m_occurrences[i].body, job.refinement, goOn);
            if (!made)
                return false;
            mesh->second = *made;
        }
        m_triangles += mesh->second ? mesh->second->triangles.size() / 3 : 0;
    }
    if (m_triangles == 0)
        throw std::runtime_error("there is nothing in the model that has a surface");
    return true;
}

const BodyMesh* ExportedMeshes::of(const Body* body) const
{
    const auto found = m_meshes.find(body);
    const BodyMesh* mesh = found == m_meshes.end() ? nullptr : found->second.get();
    return mesh && !mesh->triangles.empty() ? mesh : nullptr;
}

void ExportedMeshes::collect(const Component& component, const GkMatrix3d& parent,
                             const std::optional<Colour>& inherited)
{
    const GkMatrix3d placement = parent * component.placement;
    const std::optional<Colour> colour = component.colour ? component.colour : inherited;
    if (component.body)
        m_occurrences.push_back(
            {component.body.get(), placement, colour.value_or(component.body->colour()), nameOf(component)});
    for (const auto& child : component.children)
        collect(*child, placement, colour);
}

ColourGroups::Group& ColourGroups::groupOf(const Look& look)
{
    const auto found = std::find_if(m_groups.begin(), m_groups.end(),
                                    [&](const Group& group) { return group.look == look; });
    return found != m_groups.end() ? *found : m_groups.emplace_back(Group{look, {}, {}, {}});
}

void ColourGroups::add(const BodyMesh& mesh, const Colour& plain, const GkMatrix3d& placement)
{
    const double determinant = placement.det();
    const double scale = std::cbrt(std::abs(determinant));
    // For each group that this mesh is in, what has become of its vertices.
    std::vector<std::pair<Look, std::vector<uint32_t>>> taken;
    for (const BodyMesh::Face& face : mesh.faces) {
        const Look look{face.colour >= 0 ? mesh.colours[size_t(face.colour)] : plain, mesh.finishOf(face)};
        auto own =
            std::find_if(taken.begin(), taken.end(), [&](const auto& entry) { return entry.first == look; });
        if (own == taken.end())
            own = taken.insert(own, {look, std::vector<uint32_t>(mesh.positions.size() / 3, kNone)});
        Group& group = groupOf(look);
        const size_t begin = size_t(face.firstTriangle) * 3, end = begin + size_t(face.triangleCount) * 3;
        const size_t first = group.triangles.size();
        for (size_t i = begin; i < end; ++i) {
            uint32_t& vertex = own->second[mesh.triangles[i]];
            if (vertex == kNone) {
                vertex = uint32_t(group.positions.size() / 3);
                const float* p = &mesh.positions[size_t(mesh.triangles[i]) * 3];
                const float* n = &mesh.normals[size_t(mesh.triangles[i]) * 3];
                const GkPoint3d place = placement * GkPoint3d(p[0], p[1], p[2]);
                const GkVector3d normal = placement * GkVector3d(n[0], n[1], n[2]);
                append(group.positions, place.x, place.y, place.z);
                append(group.normals, normal.x / scale, normal.y / scale, normal.z / scale);
            }
            group.triangles.push_back(vertex);
        }
        // A mirrored placement turns the triangles over.
        for (size_t i = first; determinant < 0 && i < group.triangles.size(); i += 3)
            std::swap(group.triangles[i + 1], group.triangles[i + 2]);
    }
}

GkMatrix3d yUpwards(double unitInMillimetres)
{
    GkMatrix3d turn;
    turn.entry[1][1] = turn.entry[2][2] = 0;
    turn.entry[1][2] = 1;
    turn.entry[2][1] = -1;
    return GkMatrix3d::scaling(1 / unitInMillimetres) * turn;
}

GkMatrix3d towards(const MeshExport& job, UpAxis usual)
{
    const UpAxis axis = job.upAxis == UpAxis::Usual ? usual : job.upAxis;
    return axis == UpAxis::Y ? yUpwards(job.unit.millimetres) : GkMatrix3d::scaling(1 / job.unit.millimetres);
}

ExportFile::ExportFile(const std::wstring& path)
    : m_file(path), m_stream(std::fopen(m_file.scratch().c_str(), "wbe"))
{
    if (!m_stream)
        throw std::runtime_error(std::strerror(errno));
    std::setvbuf(m_stream.get(), nullptr, _IOFBF, kBufferSize);
}

void ExportFile::write(std::string_view bytes)
{
    if (!bytes.empty() && std::fwrite(bytes.data(), bytes.size(), 1, m_stream.get()) != 1)
        throw std::runtime_error(std::strerror(errno));
}

void ExportFile::commit()
{
    if (std::fflush(m_stream.get()) != 0)
        throw std::runtime_error(std::strerror(errno));
    m_file.commit();
}

bool exported(const MeshExport& job, Status& status, const std::function<bool()>& work)
{
    try {
        return work();
    } catch (const std::runtime_error& error) {
        status.addError(L"\"" + job.path + L"\" can't be written: " + Strings::widen(error.what()) + L".");
        return false;
    }
}

} // namespace Vs::Exchange
