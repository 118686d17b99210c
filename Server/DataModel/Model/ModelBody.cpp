#include "Server/DataModel/Model/ModelBody.h"

#include "Server/Base/Strings.h"
#include "Server/Body/DividedMesh.h"
#include "Server/DataModel/Model/ModelFinerMesh.h"

#include <stdexcept>

namespace Vs {

// A body's lock is never held while waiting for the kernel: whoever is in the kernel may ask for a body. Two
// threads that ask for the same at once may both find it; the first one's answer stays.

std::shared_ptr<const BodyMesh> ModelBody::mesh() const
{
    std::unique_lock lock(m_mutex, std::defer_lock);
    // Whoever held it when this process was forked isn't there any more.
    if (!ForkedChild::is())
        lock.lock();
    else if (!lock.try_lock())
        return madeMesh();
    if (m_mesh)
        return m_mesh;
    lock.unlock();
    std::shared_ptr<const BodyMesh> made = madeMesh();
    if (!isOfTriangles(*made))
        made = withFinerMesh(std::move(made),
                             std::make_shared<ModelFinerMesh>(m_source, m_part.entry, m_fileIndex));
    lock.lock();
    if (!m_mesh)
        m_mesh = std::move(made);
    return m_mesh;
}

std::shared_ptr<const BodyMesh> ModelBody::madeMesh() const
{
    try {
        if (auto mesh = m_fileIndex >= 0 ? meshOfFile() : meshFor({}))
            return mesh;
    } catch (const std::runtime_error&) {
        // A shape that the kernel can't mesh is shown as nothing.
    }
    return std::make_shared<BodyMesh>();
}

// A file of the first layout knows no vertices; only the exact shape can tell their order.
std::shared_ptr<const BodyMesh> ModelBody::meshOfFile() const
{
    std::shared_ptr<BodyMesh> mesh = m_source->file->mesh(static_cast<size_t>(m_fileIndex));
    if (!mesh || m_source->file->hasVertexPoints())
        return mesh;
    try {
        mesh->vertexPoints = meshFor({})->vertexPoints;
    } catch (const std::runtime_error&) {
        // Vertices can't be picked then.
    }
    return mesh;
}

bool ModelBody::smart(std::wstring* kind, GkMatrix3d* placement, double* size1, double* size2,
                      double* size3) const
{
    std::optional<ModelKernel::Recognised> found;
    try {
        found = m_source->withKernel([&](ModelKernel& kernel) { return kernel.recognise(m_part.entry); });
    } catch (const std::runtime_error&) {
        // A shape that the kernel can't examine is not one of the simple ones.
    }
    if (!found)
        return false;
    constexpr const wchar_t* kKinds[] = {L"Box", L"Cylinder", L"Sphere"};
    if (kind)
        *kind = kKinds[static_cast<int>(found->kind)];
    if (placement)
        *placement = found->placement;
    double* const sizes[] = {size1, size2, size3};
    for (int i = 0; i < 3; ++i)
        if (sizes[i])
            *sizes[i] = found->sizes[i];
    return true;
}

size_t ModelBody::meshBytes() const
{
    const std::lock_guard lock(m_mutex);
    const auto bytesOf = [](const auto&... lists) { return (... + (lists.size() * sizeof(lists[0]))); };
    return m_mesh ? bytesOf(m_mesh->positions, m_mesh->normals, m_mesh->triangles, m_mesh->faces,
                            m_mesh->edgePoints, m_mesh->edgeStarts, m_mesh->vertexPoints)
                  : 0;
}

bool ModelBody::update(const PartTree::Body& part)
{
    const bool changed = part.name != m_part.name || part.colour != m_part.colour;
    m_part = part;
    return changed;
}

std::shared_ptr<const BodyMesh> ModelBody::meshFor(const TranslatorRefinement& refinement,
                                                   const std::function<bool(double)>& goOn) const
{
    return m_source->withKernel(
        [&](ModelKernel& kernel) { return kernel.mesh(m_part.entry, refinement, goOn); });
}

template <class Known, class Key, class Ask>
auto ModelBody::keptOr(Known& known, const Key& key, Ask&& ask) const
{
    std::unique_lock lock(m_mutex);
    if (const auto found = known.find(key); found != known.end())
        return found->second;
    lock.unlock();
    auto answer = m_source->withKernel(ask);
    lock.lock();
    return known.emplace(key, std::move(answer)).first->second;
}

std::optional<BodyProperties> ModelBody::properties(BodyMeasure what, Status& status) const
{
    try {
        return keptOr(m_properties, what,
                      [&](ModelKernel& kernel) { return kernel.properties(m_part.entry, what); });
    } catch (const std::runtime_error& error) {
        status.addError(L"\"" + m_part.name + L"\" can't be measured: " + Strings::widen(error.what()));
        return std::nullopt;
    }
}

const std::vector<uint32_t>& ModelBody::solidsOfFaces() const
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_solidsOfFaces)
            return *m_solidsOfFaces;
    }
    std::vector<uint32_t> found;
    try {
        found = m_source->withKernel([&](ModelKernel& kernel) { return kernel.solidsOfFaces(m_part.entry); });
    } catch (const std::runtime_error&) {
        // Then none of them is known to belong to a solid.
    }
    const std::lock_guard lock(m_mutex);
    if (!m_solidsOfFaces)
        m_solidsOfFaces = std::move(found);
    return *m_solidsOfFaces;
}

std::vector<PartExtent> ModelBody::extents(ObjectPath::Leaf leaf) const
{
    return keptOr(m_extents, leaf, [&](ModelKernel& kernel) { return kernel.extents(m_part.entry, leaf); });
}

ShapeAnswer ModelBody::measurePart(ObjectPath::Leaf leaf, uint32_t index, EMeasureType type) const
{
    const MeasuredShape part{m_part.entry, leaf, index, {}};
    return keptOr(m_answers, std::tuple(leaf, index, type),
                  [&](ModelKernel& kernel) { return kernel.measurePart(part, type); });
}

} // namespace Vs
